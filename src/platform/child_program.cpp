#include "platform/child_program.h"

#include "platform/failure.h"

#include <QFile>
#include <QFileInfo>

#include <csignal>
#include <memory>
#include <thread>
#include <vector>

#include <cerrno>
#include <fcntl.h>
#include <poll.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

using namespace Qt::StringLiterals;

namespace velloria::platform {
namespace {

using std::chrono::milliseconds;

constexpr qsizetype kMostBuffered = 64 * 1024;

/// How the child begins: no input, its output in the pipe, and none of the signals that this program leaves out.
class Beginning {
public:
    explicit Beginning(int output) {
        ::posix_spawn_file_actions_init(&files);
        ::posix_spawn_file_actions_addopen(&files, STDIN_FILENO, "/dev/null", O_RDONLY, 0);
        ::posix_spawn_file_actions_adddup2(&files, output, STDOUT_FILENO);
        sigset_t signals;
        sigemptyset(&signals);
        ::posix_spawnattr_init(&attributes);
        ::posix_spawnattr_setsigmask(&attributes, &signals);
        sigaddset(&signals, SIGPIPE);
        ::posix_spawnattr_setsigdefault(&attributes, &signals);
        ::posix_spawnattr_setflags(&attributes, POSIX_SPAWN_SETSIGMASK | POSIX_SPAWN_SETSIGDEF);
    }
    ~Beginning() {
        ::posix_spawn_file_actions_destroy(&files);
        ::posix_spawnattr_destroy(&attributes);
    }
    Beginning(const Beginning&) = delete;
    Beginning& operator=(const Beginning&) = delete;

    posix_spawn_file_actions_t files;
    posix_spawnattr_t attributes;
};

[[noreturn]] void refuseStart(const QString& file, int errorNumber) {
    throw Failure(u"プログラムを起動できません。"_s, file, systemReason(errorNumber));
}

} // namespace

QString folderOfExecutable() {
    const QString file = QFile::symLinkTarget(u"/proc/self/exe"_s);
    return file.first(file.lastIndexOf(u'/') + 1);
}

ChildProgram::ChildProgram(const QString& file, const QStringList& arguments) {
    std::vector<QByteArray> words{QFile::encodeName(file)};
    for (const QString& argument : arguments)
        words.push_back(QFile::encodeName(argument));
    std::vector<char*> pointers;
    for (QByteArray& word : words)
        pointers.push_back(word.data());
    pointers.push_back(nullptr);

    int ends[2];
    if (::pipe2(ends, O_CLOEXEC) != 0)
        refuseStart(file, errno);
    const Beginning beginning(ends[1]);
    const int error =
        ::posix_spawn(&m_id, pointers[0], &beginning.files, &beginning.attributes, pointers.data(), environ);
    ::close(ends[1]);
    if (error != 0) {
        ::close(ends[0]);
        refuseStart(file, error);
    }
    m_output = ends[0];
}

ChildProgram::~ChildProgram() {
    if (!m_end)
        ::kill(m_id, SIGKILL);
    ::close(m_output);
    waitForEnd(std::chrono::seconds(5));
}

bool ChildProgram::fill(milliseconds silence, Reading& reading) {
    const auto end = std::chrono::steady_clock::now() + silence;
    for (;;) {
        const auto left = std::chrono::duration_cast<milliseconds>(end - std::chrono::steady_clock::now());
        pollfd output{m_output, POLLIN, 0};
        const int ready = ::poll(&output, 1, int(std::max(left, milliseconds(0)).count()));
        if (ready < 0 && errno == EINTR)
            continue;
        if (ready == 0) {
            reading = Reading::Silent;
            return false;
        }
        m_buffer.resize(kMostBuffered);
        m_taken = 0;
        const ssize_t count = ::read(m_output, m_buffer.data(), size_t(kMostBuffered));
        m_buffer.resize(std::max<ssize_t>(count, 0));
        if (count > 0)
            return true;
        if (count < 0 && errno == EINTR)
            continue;
        reading = Reading::End;
        return false;
    }
}

ChildProgram::Reading ChildProgram::read(qint64 count, milliseconds silence, QByteArray& bytes) {
    bytes.clear();
    Reading reading = Reading::Whole;
    while (bytes.size() < count) {
        if (m_taken == m_buffer.size() && !fill(silence, reading))
            return reading;
        const qsizetype part = std::min<qsizetype>(count - bytes.size(), m_buffer.size() - m_taken);
        bytes.append(m_buffer.constData() + m_taken, part);
        m_taken += part;
    }
    return reading;
}

std::optional<ChildProgram::End> ChildProgram::waitForEnd(milliseconds limit) {
    const auto end = std::chrono::steady_clock::now() + limit;
    while (!m_end) {
        int status = 0;
        const pid_t ended = ::waitpid(m_id, &status, WNOHANG);
        if (ended == m_id)
            m_end = WIFSIGNALED(status) ? End{true, WTERMSIG(status)} : End{false, WEXITSTATUS(status)};
        else if (ended < 0 && errno != EINTR)
            m_end = End{false, -1}; // somebody else waited for it
        else if (std::chrono::steady_clock::now() >= end)
            return {};
        else
            std::this_thread::sleep_for(milliseconds(1));
    }
    return m_end;
}

} // namespace velloria::platform
