#include "publish/upload_source.h"

#include "publish/internet_number.h"

#include <QFileInfo>

namespace velloria::publish {

UploadSource::UploadSource(const QString& file, TransferType type)
    : m_file(file)
    , m_type(type) {
    const QFileInfo info(file);
    if (!info.exists())
        m_openError = kFileNotFound;
    else if (!info.isFile() || !m_file.open(QIODevice::ReadOnly | QIODevice::Unbuffered))
        m_openError = kAccessDenied;
}

qint64 UploadSource::read(char* buffer, qint64 room) {
    if (m_type == TransferType::Binary) {
        const qint64 count = m_file.read(buffer, room);
        m_hasFailed = count < 0;
        return count;
    }
    // A piece may be nothing but a CR that has to wait: read on then, because 0 would be the end.
    for (;;) {
        const qint64 held = m_hasCr ? 1 : 0;
        const qint64 count = m_file.read(buffer + held, room - held);
        m_hasFailed = count < 0;
        if (m_hasFailed)
            return -1;
        if (held)
            buffer[0] = '\r';
        m_hasCr = false;
        if (count == 0)
            return held;
        qint64 kept = 0;
        const qint64 end = held + count;
        for (qint64 at = 0; at < end; ++at) {
            if (buffer[at] == '\r' && at + 1 == end)
                m_hasCr = true;
            else if (buffer[at] != '\r' || buffer[at + 1] != '\n')
                buffer[kept++] = buffer[at];
        }
        if (kept > 0)
            return kept;
    }
}

} // namespace velloria::publish
