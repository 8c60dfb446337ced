// The tables of a diary of any format and version, as they are copied into a fresh one.
#pragma once

#include <QByteArray>
#include <QString>
#include <QStringList>

#include <variant>
#include <vector>

namespace velloria::store {

/// NULL, a number (a Boolean is 0 or 1), or a text in UTF-8. A date is the text "yyyy/mm/dd", with " hh:nn:ss" behind
/// it when it has a time of day.
using OldValue = std::variant<std::monostate, qint64, QByteArray>;

/// One table at a time, from its first row to its last, in the order of its counting column where it has one. Nothing
/// of the file changes. What can't be read is thrown as platform::Failure, never passed over: next() ends a table only
/// when every row that was counted has come.
///
///     const std::unique_ptr<OldDiary> old = openOldDiary(file);
///     const qint64 count = old->open(u"LogDB"_s, {u"LogMonth"_s, u"LogFileName"_s});
///     for (std::vector<OldValue> row; old->next(row);)
///         copy(row);
class OldDiary {
public:
    virtual ~OldDiary() = default;

    /// Begins with a table and returns how many rows it has. Throws platform::Failure for a table or a column that is
    /// not there; names compare without regard to case.
    virtual qint64 open(const QString& table, const QStringList& columns) = 0;

    /// The next row's values in the order of the columns, their texts good until the next call; false behind the last
    /// row.
    virtual bool next(std::vector<OldValue>& row) = 0;
};

} // namespace velloria::store
