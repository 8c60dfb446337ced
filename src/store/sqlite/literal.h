// Values that a statement takes as a literal. They pass through here on their way to Statement::bind:
//
//     rows.bind(literal(file, day));
#pragma once

#include <QString>

namespace velloria::store::sqlite {

/// `value`, unless it holds a double quote: that would end the literal of the old engine's statement, so the operation
/// fails with platform::Failure and changes nothing.
const QString& literal(const QString& file, const QString& value);

/// The same for a Like pattern. One with a "[" that is never closed fails too, whether there are rows to try it on or
/// not.
const QString& pattern(const QString& file, const QString& value);

/// A condition on a column of day keys that begin with `month`, and its two bound values.
struct MonthCondition {
    QByteArray sql; ///< "Day >= ?1 AND Day < ?2", or a Like when `month` holds anything but digits and "/"
    QString first;
    QString second;
};
MonthCondition daysBeginningWith(const QString& file, const QString& month);

} // namespace velloria::store::sqlite
