#include "support/certificates.h"

#include <QFile>
#include <QProcess>

#include <stdexcept>

using namespace Qt::StringLiterals;

namespace velloria::tests {
namespace {

const QStringList kFreshKey{u"-newkey"_s, u"ec"_s, u"-pkeyopt"_s, u"ec_paramgen_curve:prime256v1"_s, u"-nodes"_s};

QByteArray contentOf(const QString& name) {
    QFile file(name);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : throw std::runtime_error("no certificate");
}

} // namespace

Authority::Authority() {
    openssl(QStringList{u"req"_s, u"-x509"_s, u"-keyout"_s, u"authority.key"_s, u"-out"_s, file(), u"-subj"_s,
                        u"/CN=authority"_s, u"-days"_s, u"2"_s} +
            kFreshKey);
}

QString Authority::certificate(const QString& address, int days) const {
    QFile names(m_folder.filePath(u"names"_s));
    if (!names.open(QIODevice::WriteOnly) || names.write("subjectAltName=IP:" + address.toLatin1() + '\n') < 0)
        throw std::runtime_error("no names");
    names.close();
    openssl(QStringList{u"req"_s, u"-new"_s, u"-keyout"_s, u"key"_s, u"-out"_s, u"request"_s, u"-subj"_s,
                        u"/CN="_s + address} +
            kFreshKey);
    openssl({u"x509"_s, u"-req"_s, u"-in"_s, u"request"_s, u"-CA"_s, file(), u"-CAkey"_s, u"authority.key"_s,
             u"-CAcreateserial"_s, u"-days"_s, QString::number(days), u"-extfile"_s, u"names"_s, u"-out"_s,
             u"certificate"_s});
    const QString both = m_folder.filePath(u"%1 %2.pem"_s.arg(address).arg(days));
    QFile out(both);
    if (!out.open(QIODevice::WriteOnly) || out.write(contentOf(m_folder.filePath(u"key"_s))) < 0 ||
        out.write(contentOf(m_folder.filePath(u"certificate"_s))) < 0)
        throw std::runtime_error("no certificate");
    return both;
}

void Authority::openssl(const QStringList& words) const {
    QProcess process;
    process.setWorkingDirectory(m_folder.path());
    process.start(u"openssl"_s, words);
    if (!process.waitForFinished(60000) || process.exitCode() != 0)
        throw std::runtime_error("openssl: " + process.readAllStandardError().toStdString());
}

} // namespace velloria::tests
