#include "platform/file_lock.h"

#include "platform/failure.h"
#include "platform/waiting.h"

#include <QFile>

#include <cerrno>
#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

using namespace Qt::StringLiterals;

namespace velloria::platform {

FileLock::FileLock(const QString& file)
    : m_name(QFile::encodeName(file)) {
    constexpr int kFlags = O_RDWR | O_CREAT | O_CLOEXEC | O_NOFOLLOW | O_NONBLOCK;
    for (;;) {
        m_descriptor = ::open(m_name.constData(), kFlags, 0600);
        if (m_descriptor < 0)
            throw Failure(u"ほかのプログラムとの重なりを調べられません。"_s, file, systemReason(errno),
                          u"何も変更していません。フォルダに書き込めるか確認してください。"_s);
        m_isHeld = ::flock(m_descriptor, LOCK_EX | LOCK_NB) == 0 || errno != EWOULDBLOCK;
        // Who held it before may have removed the file before our lock: the next program would make another one.
        struct stat status;
        if (!m_isHeld || ::fstat(m_descriptor, &status) != 0 || status.st_nlink > 0)
            return;
        ::close(m_descriptor);
    }
}

FileLock::~FileLock() {
    if (m_isHeld)
        ::unlink(m_name.constData()); // before the lock's end, or it might be the next one's file
    ::close(m_descriptor);
}

FileTurn::FileTurn(const QString& file, const QString& what) {
    using namespace std::chrono;
    constexpr minutes kPatience(5); // a dead program holds nothing: who works that long hangs
    const auto begin = steady_clock::now();
    for (m_lock.emplace(file); !m_lock->isHeld(); m_lock.emplace(file)) {
        const auto waited = duration_cast<milliseconds>(steady_clock::now() - begin);
        if (waited >= kPatience || !waitOn(what, waited))
            throw Failure(what, file, {}, u"何も変更していません。しばらくしてから、もう一度実行してください。"_s);
    }
}

} // namespace velloria::platform
