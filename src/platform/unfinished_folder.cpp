#include "platform/unfinished_folder.h"

#include "platform/descriptor.h"
#include "platform/failure.h"
#include "platform/file_write.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QRandomGenerator>

#include <cerrno>
#include <cstdio>
#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

using namespace Qt::StringLiterals;

namespace velloria::platform {
namespace {

/// The writer of a folder holds a lock on it: one of such a name without a lock was left by a run that was killed.
const QString kPrefix = u".velltmp-folder-"_s;

constexpr QDir::Filters kAll = QDir::AllEntries | QDir::Hidden | QDir::System | QDir::NoDotAndDotDot;

[[noreturn]] void refuse(const QString& folder, int errorNumber) {
    throw Failure(u"フォルダを作成できません。"_s, folder, systemReason(errorNumber), u"保存先を確認してください。"_s);
}

int opened(const QString& folder) {
    return ::open(QFile::encodeName(folder).constData(), O_RDONLY | O_DIRECTORY | O_CLOEXEC | O_NOFOLLOW);
}

/// False when another program took the new folder for a leftover before its lock. On a disk without locks nobody gets
/// one.
bool isMine(const Descriptor& folder) {
    if (::flock(folder.value(), LOCK_EX | LOCK_NB) != 0)
        return errno != EWOULDBLOCK;
    struct stat status;
    return ::fstat(folder.value(), &status) == 0 && status.st_nlink > 0;
}

bool isRenamed(const QString& from, const QString& to) {
    return std::rename(QFile::encodeName(from).constData(), QFile::encodeName(to).constData()) == 0;
}

void syncFolder(const QString& folder) {
    if (const Descriptor descriptor(opened(folder)); descriptor.value() >= 0)
        ::fsync(descriptor.value());
}

} // namespace

UnfinishedFolder::UnfinishedFolder(const QString& target)
    : m_target(QDir::cleanPath(target))
    , m_isNew(!QFileInfo::exists(m_target)) {
    refuseLostLink(m_target);
    // Inside of one that is there: the folder above may be anybody's, or another disk.
    const QString place = m_isNew ? QFileInfo(m_target).path() : m_target;
    makeFolder(place);
    removeLeftovers(place);
    do {
        m_path = place + u'/' + kPrefix + QString::number(QRandomGenerator::system()->generate64(), 36);
        if (::mkdir(QFile::encodeName(m_path).constData(), 0777) != 0)
            refuse(m_target, errno);
        m_lock = std::make_unique<Descriptor>(opened(m_path));
        if (m_lock->value() < 0 && errno != ENOENT) { // which would be another program that took it away
            const int reason = errno;
            QDir().rmdir(m_path);
            refuse(m_target, reason);
        }
    } while (m_lock->value() < 0 || !isMine(*m_lock));
}

UnfinishedFolder::~UnfinishedFolder() {
    if (m_isFinished)
        return;
    for (const QString& name : std::as_const(m_moved))
        isRenamed(m_target + u'/' + name, m_path + u'/' + name);
    QDir(m_path).removeRecursively();
}

void UnfinishedFolder::finish() {
    if (::syncfs(m_lock->value()) != 0)
        refuse(m_target, errno);
    if (!m_isNew)
        moveIn();
    else if (!isRenamed(m_path, m_target))
        refuse(m_target, errno);
    m_isFinished = true;
    syncFolder(m_isNew ? QFileInfo(m_target).path() : m_target);
}

void UnfinishedFolder::moveIn() {
    for (const QString& name : QDir(m_path).entryList(kAll)) {
        if (!isRenamed(m_path + u'/' + name, m_target + u'/' + name))
            refuse(m_target, errno);
        m_moved += name;
    }
    QDir().rmdir(m_path);
}

void UnfinishedFolder::removeLeftovers(const QString& folder) {
    for (const QString& name : QDir(folder).entryList({kPrefix + u'*'}, QDir::Dirs | QDir::Hidden)) {
        const QString left = folder + u'/' + name;
        const Descriptor descriptor(opened(left));
        if (descriptor.value() >= 0 && ::flock(descriptor.value(), LOCK_EX | LOCK_NB) == 0)
            QDir(left).removeRecursively();
    }
}

} // namespace velloria::platform
