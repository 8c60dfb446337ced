#include "platform/launcher.h"

#include "platform/descriptor.h"
#include "platform/directory.h"

#include <QCoreApplication>
#include <QDir>
#include <QFileInfo>
#include <QLibraryInfo>
#include <QProcess>

#include <csignal>
#include <fcntl.h>
#include <memory>
#include <utility>

using namespace Qt::StringLiterals;

namespace velloria::platform {
namespace {

QStringList searchFolders(const QString& home) {
    QStringList folders{home, QDir::currentPath(), QLibraryInfo::path(QLibraryInfo::LibrariesPath), u"/usr/local/lib"_s,
                        u"/usr/lib"_s};
    folders += qEnvironmentVariable("PATH").split(QDir::listSeparator());
    folders.removeAll(QString());
    return folders;
}

struct CommandLine {
    QString program;
    QStringList arguments;
};

CommandLine splitAtFirstProgram(const QString& home, const QString& line) {
    for (qsizetype blank = line.indexOf(u' ', 1); blank > 0; blank = line.indexOf(u' ', blank + 1)) {
        QString program;
        if (FindOnSearchPath(home, line.first(blank), program))
            return {program, QProcess::splitCommand(line.sliced(blank + 1))};
    }
    return {line, {}};
}

} // namespace

bool FindOnSearchPath(const QString& home, const QString& name, QString& path) {
    path.clear();
    if (name.isEmpty())
        return false;
    const QStringList folders = QDir::isAbsolutePath(name) ? QStringList{u"/"_s} : searchFolders(home);
    for (const QString& folder : folders) {
        const QString candidate = existingPath(QDir::cleanPath(QDir(folder).absoluteFilePath(name)));
        if (QFileInfo(candidate).isFile()) {
            path = candidate;
            return true;
        }
    }
    return false;
}

void endProcess(qint64 id) {
    if (id > 0) // 0 and less would be whole groups of them
        ::kill(pid_t(id), SIGKILL);
}

bool startWithInput(const QString& program, const QStringList& arguments, const QByteArray& input) {
    int ends[2] = {-1, -1};
    if (::pipe2(ends, O_CLOEXEC) != 0)
        return false;
    // Both stay open until the program has them, or its input could not be opened; the pipe has room for it all.
    const Descriptor reading(ends[0]);
    const Descriptor writing(ends[1]);
    if (::write(writing.value(), input.constData(), std::size_t(input.size())) != input.size())
        return false;
    QProcess process;
    process.setProgram(program);
    process.setArguments(arguments);
    process.setStandardInputFile(u"/dev/fd/%1"_s.arg(reading.value()));
    return process.startDetached();
}

cExecute::cExecute(QString home)
    : m_home(std::move(home)) {}

bool cExecute::ShellX(const QString& commandLine, Wait wait) {
    const CommandLine line = splitAtFirstProgram(m_home, commandLine);
    if (start(line.program, line.arguments, wait))
        return true;
    QStringList words = QProcess::splitCommand(commandLine);
    if (words.isEmpty())
        return false;
    const QString program = words.takeFirst();
    return start(program, words, wait);
}

bool cExecute::start(const QString& program, const QStringList& arguments, Wait wait) {
    QString file;
    if (!FindOnSearchPath(m_home, program, file))
        return false;
    if (wait == Wait::No)
        return QProcess::startDetached(file, arguments);

    auto process = std::make_unique<QProcess>();
    process->setProcessChannelMode(QProcess::ForwardedChannels);
    process->setInputChannelMode(QProcess::ForwardedInputChannel);
    process->start(file, arguments);
    if (!process->waitForStarted())
        return false;
    waitFor(*process);
    if (process->state() == QProcess::NotRunning)
        return true;
    // Deleting it now would end the program.
    QProcess* running = process.release();
    QObject::connect(running, &QProcess::finished, running, &QObject::deleteLater);
    return true;
}

void cExecute::waitFor(QProcess& process) const {
    constexpr int kStepMs = 100;
    while (!m_isStopped && process.state() != QProcess::NotRunning) {
        QCoreApplication::processEvents();
        process.waitForFinished(kStepMs);
    }
}

} // namespace velloria::platform
