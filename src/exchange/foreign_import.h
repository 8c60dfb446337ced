// The import of another program's diary.
#pragma once

#include "core/run.h"
#include "exchange/formats/foreign_diary.h"
#include "platform/outcome.h"

namespace velloria::exchange {

/// The format of this name; null when there is none.
const ForeignFormat* foreignFormat(const QString& name);

/// Reads a file or folder of the format whole, shows what it would bring, and adds it all in one transaction as one
/// import group, behind what the days have. Pictures that lie beside it are copied to "DiaryParts" and registered for
/// their entries. Nothing is overwritten; a diary without a single entry is refused. `written` gets the days, in order,
/// once the entries are in the diary; the list of genres is made anew after it. Refused is the person's No. A failure
/// is thrown as platform::Failure and leaves diary, register and "DiaryParts" as they were, or says that the entries
/// were saved all the same.
platform::Outcome importForeignDiary(const core::Run& run, const ForeignFormat& format, const QString& path,
                                     const std::function<void(const QStringList& days)>& written);

} // namespace velloria::exchange
