#include "store/entry.h"

using namespace Qt::StringLiterals;

namespace velloria::store {

Entry withDefaults(Entry entry) {
    const auto fill = [](QString& text, const QString& whenMissing) {
        if (text.isNull())
            text = whenMissing;
    };
    for (QString* text :
         {&entry.title, &entry.contents, &entry.extend, &entry.excerpt, &entry.publishTime, &entry.importMark})
        fill(*text, u""_s);
    fill(entry.weather, u"-"_s);
    fill(entry.genre, u"一般"_s);
    return entry;
}

} // namespace velloria::store
