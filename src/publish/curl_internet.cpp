#include "publish/curl_internet.h"

#include "publish/internet_number.h"

namespace velloria::publish {

CurlInternet::CurlInternet(KeepGoing keepGoing)
    : m_keepGoing(std::move(keepGoing)) {}

bool CurlInternet::openSession() {
    closeSession();
    m_lastError = 0;
    m_isOpen = CurlRun({}).isReady();
    return m_isOpen || fail(kInternalError);
}

bool CurlInternet::connectFtp(const FtpLogin& login) {
    closeFtp();
    if (!m_isOpen)
        return fail(kWrongHandle);
    m_ftp = std::make_unique<FtpConnection>(m_keepGoing, FtpTrace([this](const QString& line) {
                                                if (m_trace)
                                                    m_trace(line);
                                            }));
    return onFtp([&](FtpConnection& ftp) { return ftp.open(login); });
}

bool CurlInternet::changeDirectory(const QString& name) {
    return onFtp([&](FtpConnection& ftp) { return ftp.changeDirectory(name); });
}

bool CurlInternet::createDirectory(const QString& name) {
    return onFtp([&](FtpConnection& ftp) { return ftp.createDirectory(name); });
}

bool CurlInternet::findFile(const QString& name) {
    return onFtp([&](FtpConnection& ftp) { return ftp.findFile(name); });
}

bool CurlInternet::findDirectory(const QString& name) {
    return onFtp([&](FtpConnection& ftp) { return ftp.findDirectory(name); });
}

bool CurlInternet::deleteFile(const QString& name) {
    return onFtp([&](FtpConnection& ftp) { return ftp.deleteFile(name); });
}

bool CurlInternet::putFile(const QString& localFile, const QString& name, TransferType type) {
    return onFtp([&](FtpConnection& ftp) { return ftp.putFile(localFile, name, type); });
}

bool CurlInternet::openUrl(const QString& url) {
    closeUrl();
    if (!m_isOpen)
        return fail(kWrongHandle);
    m_http = std::make_unique<HttpReader>(m_keepGoing);
    const bool isOpen = m_http->open(url);
    m_lastError = m_http->lastError();
    m_lastDetail = m_http->lastDetail();
    return isOpen;
}

QByteArray CurlInternet::readUrl() {
    if (!m_http) {
        fail(kWrongHandle);
        return {};
    }
    const QByteArray block = m_http->read();
    m_lastError = m_http->lastError();
    m_lastDetail = m_http->lastDetail();
    return block;
}

void CurlInternet::closeUrl() {
    m_http.reset();
}

void CurlInternet::closeFtp() {
    if (!m_ftp)
        return;
    m_lastResponse = m_ftp->lastResponse();
    m_ftp.reset();
}

void CurlInternet::closeSession() {
    closeFtp();
    closeUrl();
    m_isOpen = false;
}

QString CurlInternet::lastResponse() const {
    return m_ftp ? m_ftp->lastResponse() : m_lastResponse;
}

bool CurlInternet::fail(int number) {
    m_lastError = number;
    m_lastDetail.clear();
    return false;
}

template <typename Operation>
bool CurlInternet::onFtp(Operation operation) {
    if (!m_ftp)
        return fail(kWrongHandle);
    const bool isDone = operation(*m_ftp);
    m_lastError = m_ftp->lastError();
    m_lastDetail = m_ftp->lastDetail();
    return isDone;
}

} // namespace velloria::publish
