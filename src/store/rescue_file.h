// The rescue file: every text or row that a rule overwrites, drops or deletes, so that nobody loses what they wrote.
#pragma once

#include "core/run.h"
#include "store/entry.h"

#include <vector>

namespace velloria::store {

/// "rescue.jsonl" in the user's folder, readable by its owner alone: a line of `entry put` each, plus "Reason" and
/// "Time". It is only ever appended to; above 20 MB the oldest lines go, but none of those that one object of this
/// class keeps. A last line that was damaged moves to "rescue.damaged". Key `Rescue` 0 of section `ALL` switches it
/// off, for somebody who deletes for privacy.
///
///     try {
///         diary.DeleteEntry(day, number, [&](const std::vector<Entry>& rows) { rescue.keep(rows, u"削除"_s); });
///     } catch (...) {
///         rescue.forget(); // the diary holds them still
///         throw;
///     }
///
/// One object a command, in one thread; other programs may write at the same time.
class RescueFile {
public:
    explicit RescueFile(const core::Run& run);

    /// Whether anything is kept at all.
    bool isOn() const { return m_isOn; }

    /// Keeps the entries: they are on the disk when it returns, since what destroys them may be a moment later. Throws
    /// platform::Failure when the file can't take them, so that this does not go on.
    void keep(const std::vector<Entry>& entries, const QString& reason);

    /// Runs a change that keeps here what it destroys, and takes back what was kept when the change is refused.
    template <typename Change>
    auto guard(Change change) {
        try {
            return change();
        } catch (...) {
            forget();
            throw;
        }
    }

    /// Takes back what was kept: the change was refused, and the diary still holds it all. Lines stay where they can't
    /// be told apart any more, behind those of another program or in a file that was shortened.
    void forget();

private:
    void append(const QByteArray& lines);

    QString m_file;
    const platform::Clock& m_clock;
    bool m_isOn;
    qint64 m_begin = -1; ///< size of the file in front of the lines kept here; -1 when they can't be taken back
    qint64 m_end = -1;   ///< and behind them
};

} // namespace velloria::store
