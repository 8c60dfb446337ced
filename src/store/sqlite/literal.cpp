#include "store/sqlite/literal.h"

#include "platform/failure.h"
#include "platform/like_pattern.h"

#include <algorithm>

using namespace Qt::StringLiterals;

namespace velloria::store::sqlite {

const QString& literal(const QString& file, const QString& value) {
    if (value.contains(u'"'))
        throw platform::Failure(
            u"日記データベースを処理できません。"_s, file, u"値に「\"」が含まれています: "_s + value,
            u"データベースは変更されていません。「\"」を取り除いてから、もう一度実行してください。"_s);
    return value;
}

const QString& pattern(const QString& file, const QString& value) {
    literal(file, value);
    try {
        platform::LikePattern{value};
    } catch (const platform::Failure& failure) {
        throw platform::Failure(failure.whatFailed(), file, failure.reason(), failure.advice());
    }
    return value;
}

MonthCondition daysBeginningWith(const QString& file, const QString& month) {
    pattern(file, month);
    const bool isPlain = !month.isEmpty() && std::all_of(month.begin(), month.end(),
                                                         [](QChar c) { return (c >= u'0' && c <= u'9') || c == u'/'; });
    if (!isPlain)
        return {"Day LIKE ?1 AND ?2 = ''", month + u'%', u""_s};
    // Day keys are plain digits and compare as bytes: the range uses the index and costs nothing for other months.
    QString end = month;
    end.back() = QChar(end.back().unicode() + 1);
    return {"Day >= ?1 AND Day < ?2", month, end};
}

} // namespace velloria::store::sqlite
