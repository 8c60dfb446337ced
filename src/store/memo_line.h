// A memo as one line of JSON, as the drafts and the rescue file of the memo program hold it. What toJson writes
// parseMemoLine reads back to the letter, but for the row.
#pragma once

#include "store/memo.h"

#include <QByteArray>
#include <QJsonObject>

namespace velloria::store {

/// Members PublishTime, Title, Memo, No, Category, IsPass; a missing value is null.
QJsonObject toJson(const Memo& memo);

/// Nothing for a line that is no memo. Members of other names are passed over.
std::optional<Memo> parseMemoLine(const QByteArray& line);

} // namespace velloria::store
