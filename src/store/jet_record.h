// What "velloria-jet" writes: records, each behind its length in four bytes, the lowest first.
#pragma once

#include "store/old_diary.h"

#include <QByteArray>

#include <optional>
#include <variant>
#include <vector>

namespace velloria::store::jet {

enum class Fault : quint8 { NoTable, NoColumn, Damaged, NotReadable };

/// Goes on in silence; the reader knows that the program lives.
struct Progress {};

struct Version {
    qint64 number;
};

/// Before the rows: how many there are.
struct Begin {
    qint64 count;
};

struct Row {
    std::vector<OldValue> values;
};

/// Behind the rows.
struct End {
    qint64 sent;
    qint64 defined; ///< the count in the table's definition; 0 as well when the file was not closed properly
};

/// In the place of the end.
struct Error {
    Fault fault;
    QString reason; ///< in Japanese
    qint64 read;
    qint64 expected; ///< -1 when nobody knows
};

using Record = std::variant<Progress, Version, Begin, Row, End, Error>;

/// Bytes of the length in front of each record.
inline constexpr qsizetype kLengthBytes = 4;
/// No record is longer: the program's memory has less room.
inline constexpr quint32 kLongestRecord = 400 * 1024 * 1024;

/// With the length in front.
QByteArray toBytes(const Record& record);
quint32 lengthOf(const QByteArray& bytes);
/// Behind the length; nothing when it is no record.
std::optional<Record> recordOf(const QByteArray& bytes);

} // namespace velloria::store::jet
