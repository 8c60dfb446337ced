#include "platform/instance_lock.h"

#include <QCryptographicHash>
#include <QFile>
#include <QStandardPaths>

#include <cerrno>
#include <fcntl.h>
#include <sys/file.h>
#include <unistd.h>

using namespace Qt::StringLiterals;

namespace velloria::platform {
namespace {

/// The folder of what runs belongs to one user; the session tells two logins of them apart.
QString fileOf(const QString& name) {
    const QByteArray key = (name + u'\n' + qEnvironmentVariable("XDG_SESSION_ID")).toUtf8();
    const QByteArray hash = QCryptographicHash::hash(key, QCryptographicHash::Sha256).toHex().left(32);
    return QStandardPaths::writableLocation(QStandardPaths::RuntimeLocation) + u"/velloria-"_s +
           QString::fromLatin1(hash) + u".lock"_s;
}

} // namespace

InstanceLock::InstanceLock(const QString& name)
    : m_descriptor(::open(QFile::encodeName(fileOf(name)).constData(), O_RDWR | O_CREAT | O_CLOEXEC, 0600)) {
    if (m_descriptor >= 0 && ::flock(m_descriptor, LOCK_EX | LOCK_NB) != 0)
        m_isHeld = errno != EWOULDBLOCK;
}

InstanceLock::~InstanceLock() {
    if (m_descriptor >= 0)
        ::close(m_descriptor);
}

} // namespace velloria::platform
