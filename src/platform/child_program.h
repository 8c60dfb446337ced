// A program of our own that runs beside this one and writes to it.
#pragma once

#include <QByteArray>
#include <QString>
#include <QStringList>

#include <sys/types.h>

#include <chrono>
#include <optional>

namespace velloria::platform {

/// The folder of the running executable, "/" at its end. Needs no application object.
QString folderOfExecutable();

/// Starts a program and reads what it writes, as much as is asked for: while nobody reads, it waits. It hears nothing,
/// and its errors go where this program's go. No event is served. It ends with the object, whatever it is doing.
class ChildProgram {
public:
    /// Throws Failure, with the system's reason, when it can't be started.
    ChildProgram(const QString& file, const QStringList& arguments);
    ~ChildProgram();
    ChildProgram(const ChildProgram&) = delete;
    ChildProgram& operator=(const ChildProgram&) = delete;

    enum class Reading {
        Whole,
        End,   ///< its output ended before
        Silent ///< nothing came for so long
    };
    /// The next `count` bytes into `bytes`, or those that came before the end or the silence.
    Reading read(qint64 count, std::chrono::milliseconds silence, QByteArray& bytes);

    struct End {
        bool bySignal;
        int code; ///< the signal's number, or the exit status
    };
    /// How it ended; nothing when it still runs after so long.
    std::optional<End> waitForEnd(std::chrono::milliseconds limit);

private:
    bool fill(std::chrono::milliseconds silence, Reading& reading);

    pid_t m_id = -1; ///< -1 once it has ended
    int m_output = -1;
    std::optional<End> m_end;
    QByteArray m_buffer;
    qsizetype m_taken = 0; ///< of the buffer
};

} // namespace velloria::platform
