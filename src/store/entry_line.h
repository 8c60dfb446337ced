// An entry as one line of JSON: what `entry put` takes and the rescue file holds. Both ways are plain functions, and
// what one of them writes the other reads back to the letter:
//
//     const QByteArray line = QJsonDocument(toJson(entry)).toJson(QJsonDocument::Compact);
//     const Entry same = parseEntryLine(line).entry;
#pragma once

#include "store/entry.h"

#include <QByteArray>
#include <QJsonObject>

namespace velloria::store {

/// A line that was read.
struct EntryLine {
    Entry entry;            ///< number 0 when the line names none; a missing import mark is null
    bool isRescued = false; ///< the line comes from the rescue file
};

/// Members Day, Number, Title, Contents, Extend, Excerpt, Weather, Genre, Private, PublishTime, ImportMark; a missing
/// value is null.
QJsonObject toJson(const Entry& entry);

/// Reads one line. A member that is left out is what an untouched editor saves: "", weather "-", genre "一般", public;
/// null is a missing value. Throws platform::Failure that says what is wrong: no JSON, a member of the wrong type or of
/// an unknown name, a day that does not exist, a number outside 1 to 32767, half a character (a lone
/// surrogate), an empty title.
EntryLine parseEntryLine(const QByteArray& line);

} // namespace velloria::store
