#include "exchange/formats/foreign_diary.h"

using namespace Qt::StringLiterals;

namespace velloria::exchange {

QString Losses::text() const {
    QStringList counted;
    for (auto loss = m_counts.cbegin(); loss != m_counts.cend(); ++loss)
        counted += u"%1 %2件"_s.arg(loss.key()).arg(loss.value());
    return counted.isEmpty() ? QString() : u"持ち込めないもの: "_s + counted.join(u"、"_s);
}

} // namespace velloria::exchange
