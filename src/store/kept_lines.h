// A file of JSON lines that keeps what a change destroys.
#pragma once

#include "core/files.h"
#include "core/run.h"

#include <QJsonObject>

#include <vector>

namespace velloria::store {

/// A file in the user's folder, readable by its owner alone: an object a line, plus "Reason" and "Time". It is only
/// ever appended to; above 20 MB the oldest lines go, but none of those that one object of this class keeps. A last
/// line that was damaged moves to a file of its own. Key `Rescue` 0 of section `ALL` switches it off, for somebody who
/// deletes for privacy.
///
/// One object a command, in one thread; other programs may write at the same time.
class KeptLines {
public:
    /// Whether anything is kept at all.
    bool isOn() const { return m_isOn; }

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

protected:
    KeptLines(const core::Run& run, const core::File& file, const core::File& damagedFile);

    /// They are on the disk when it returns, since what destroys them may be a moment later. Throws platform::Failure
    /// when the file can't take them, so that this does not go on.
    void keepLines(std::vector<QJsonObject> lines, const QString& reason);

private:
    void append(const QByteArray& lines);

    QString m_file;
    core::File m_damagedFile;
    const platform::Clock& m_clock;
    bool m_isOn;
    qint64 m_begin = -1; ///< size of the file in front of the lines kept here; -1 when they can't be taken back
    qint64 m_end = -1;   ///< and behind them
};

} // namespace velloria::store
