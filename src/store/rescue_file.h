// The rescue file: every text or row that a rule overwrites, drops or deletes, so that nobody loses what they wrote.
#pragma once

#include "store/entry.h"
#include "store/kept_lines.h"

namespace velloria::store {

/// "rescue.jsonl": a line of `entry put` each.
///
///     try {
///         diary.DeleteEntry(day, number, [&](const std::vector<Entry>& rows) { rescue.keep(rows, u"削除"_s); });
///     } catch (...) {
///         rescue.forget(); // the diary holds them still
///         throw;
///     }
class RescueFile : public KeptLines {
public:
    explicit RescueFile(const core::Run& run);

    /// Keeps the entries as keepLines tells.
    void keep(const std::vector<Entry>& entries, const QString& reason);
};

} // namespace velloria::store
