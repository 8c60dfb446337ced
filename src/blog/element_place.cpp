#include "blog/element_place.h"

using namespace Qt::StringLiterals;

namespace velloria::blog {

QString shownPlace(const ElementPlace& place) {
    switch (place.by) {
    case ElementPlace::By::NameInForm:
        return u"フォーム %1 の「%2」"_s.arg(QString::number(place.form), place.name);
    case ElementPlace::By::InputIndex:
        return u"INPUT %1"_s.arg(place.index);
    case ElementPlace::By::TextAreaIndex:
        return u"TEXTAREA %1"_s.arg(place.index);
    case ElementPlace::By::InputName:
        return u"INPUT の「%1」"_s.arg(place.name);
    case ElementPlace::By::NameInDocument:
        break;
    }
    return u"「%1」"_s.arg(place.name);
}

} // namespace velloria::blog
