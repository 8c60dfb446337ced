// Other programs: where they lie, and how they are started.
#pragma once

#include <QByteArray>
#include <QString>
#include <QStringList>

class QProcess;

namespace velloria::platform {

/// Looks for a file in `home`, the working folder, the system's library folders and the folders of the variable PATH,
/// in this order; in each by the exact name, then without regard to case. A full path is looked for where it says.
/// `path` becomes the full path, "" when there is no such file. A folder of that name does not count.
bool FindOnSearchPath(const QString& home, const QString& name, QString& path);

/// Ends another process at once, whatever it is doing. One that is gone already is none to end.
void endProcess(qint64 id);

/// Starts a program that goes on when this one ends, with `input`, at most 4,096 bytes, as all that its standard input
/// holds: unlike its arguments, other accounts of the machine can't read that. False when it could not be started.
bool startWithInput(const QString& program, const QStringList& arguments, const QByteArray& input);

enum class Wait { No, UntilItEnds };

/// Starts programs by a command line.
class cExecute {
public:
    /// `home` is looked in first for a program without a folder.
    explicit cExecute(QString home);

    /// Starts a program, which goes on when this one ends. The program is the part before the first blank behind
    /// which the search path has a file, and what follows are its arguments: a path with blanks needs no quotes unless
    /// a shorter part is a file too. A line that this does not start is taken apart at its quotes and blanks and tried
    /// once more. False when nothing could be started.
    ///
    /// Waiting serves events, the user's input too, so that other commands may run in here; it ends with the program or
    /// with stop().
    bool ShellX(const QString& commandLine, Wait wait);

    /// Ends the waiting of ShellX, now and later; the programs go on.
    void stop() { m_isStopped = true; }

private:
    bool start(const QString& program, const QStringList& arguments, Wait wait);
    void waitFor(QProcess& process) const;

    QString m_home;
    bool m_isStopped = false;
};

} // namespace velloria::platform
