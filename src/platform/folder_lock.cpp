#include "platform/failure.h"
#include "platform/file_write.h"
#include "platform/waiting.h"

#include <QFile>

#include <cerrno>
#include <chrono>
#include <fcntl.h>
#include <sys/file.h>
#include <unistd.h>

using namespace Qt::StringLiterals;

namespace velloria::platform {
namespace {

/// A change of a file takes milliseconds: who holds the lock longer hangs.
constexpr std::chrono::seconds kLockPatience(5);

} // namespace

FolderLock::FolderLock(const QString& folder)
    : m_descriptor(::open(folder.isEmpty() ? "." : QFile::encodeName(folder).constData(), O_RDONLY | O_CLOEXEC)) {
    if (m_descriptor < 0)
        throw Failure(u"フォルダを開けません。"_s, folder, systemReason(errno));
    const auto begin = std::chrono::steady_clock::now();
    while (::flock(m_descriptor, LOCK_EX | LOCK_NB) != 0) {
        if (errno == EINTR)
            continue;
        if (errno != EWOULDBLOCK)
            break; // some network disks know no locks: one writer at a time is then the user's own care
        const auto waited =
            std::chrono::duration_cast<std::chrono::milliseconds>(std::chrono::steady_clock::now() - begin);
        if (waited >= kLockPatience || !waitOn(u"フォルダ「%1」は他のプログラムが使用中です。"_s.arg(folder), waited)) {
            ::close(m_descriptor);
            throw Failure(u"フォルダは使用中です。"_s, folder, u"他のプログラムが処理を終えていません"_s,
                          u"そのプログラムを終了してから、もう一度実行してください。"_s);
        }
    }
}

FolderLock::~FolderLock() {
    ::close(m_descriptor);
}

} // namespace velloria::platform
