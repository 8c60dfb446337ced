// The whole diary for other programs: a folder of Markdown files, or lines of JSON.
#pragma once

#include "core/run.h"

#include <QStringList>

#include <optional>

namespace velloria::exchange {

/// What a person must know after it.
struct DiaryExport {
    int entries = 0;
    int pictures = 0;    ///< copies beside the Markdown files
    QStringList missing; ///< files that texts lead to and "DiaryParts" lacks
    QStringList oddDays; ///< days that are no dates, one for each entry
    bool areOddDaysLeftOut = false;

    /// One line about it.
    QString text() const;
    /// Whether something is not as a person would expect.
    bool isUnusual() const { return !missing.isEmpty() || !oddDays.isEmpty(); }
};

/// Writes one file an entry, "yyyy-mm-dd-n.md", to a new or empty folder, and the pictures that the texts show to
/// "DiaryParts" below it; entries of odd days are left out. The import of it gives the diary back. The folder appears
/// when it is whole. Throws platform::Failure for a folder with anything in it, and for what the machine refuses; then
/// the folder is as it was.
std::optional<DiaryExport> exportMarkdown(const core::Run& run, const QString& folder);

/// Writes each entry as the line of JSON that `entry put --keep-time` takes, days in their order. Asks before it
/// replaces a file; nothing after a No. Throws platform::Failure, and the file is as it was.
std::optional<DiaryExport> exportJsonLines(const core::Run& run, const QString& file);

} // namespace velloria::exchange
