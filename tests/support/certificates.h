// Certificates for tests: an authority of its own, and what it vouches for.
#pragma once

#include <QString>
#include <QTemporaryDir>

namespace velloria::tests {

class Authority {
public:
    Authority();

    /// What a client must trust. The variable SSL_CERT_FILE tells it.
    QString file() const { return m_folder.filePath(QStringLiteral("authority.pem")); }
    /// A file with key and certificate of a server at that address, good for so many days from now.
    QString certificate(const QString& address, int days = 2) const;

private:
    void openssl(const QStringList& words) const;

    QTemporaryDir m_folder;
};

} // namespace velloria::tests
