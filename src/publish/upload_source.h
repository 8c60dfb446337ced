// A local file on its way to a server.
#pragma once

#include "publish/internet.h"

#include <QFile>

namespace velloria::publish {

/// openError is asked first, then read until it gives 0; what the disk refuses is a number, nothing is thrown. Gives a
/// file piece by piece. As text the CR of each CR LF is left out, because the transfer library puts one before
/// every LF; all else goes as it is.
class UploadSource {
public:
    UploadSource(const QString& file, TransferType type);

    /// 0, or the number of the reason why the file can't be read: missing, no file, or refused.
    int openError() const { return m_openError; }
    /// Bytes that will come, -1 for a text.
    qint64 size() const { return m_type == TransferType::Binary ? m_file.size() : -1; }
    /// Fills at most `room` bytes (at least 2) and returns how many; 0 at the end, -1 when the disk refuses.
    qint64 read(char* buffer, qint64 room);
    bool hasFailed() const { return m_hasFailed; }

private:
    QFile m_file;
    TransferType m_type;
    int m_openError = 0;
    bool m_hasFailed = false;
    bool m_hasCr = false; ///< read, and not given on until the next byte is known
};

} // namespace velloria::publish
