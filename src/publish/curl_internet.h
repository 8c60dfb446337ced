// The network by libcurl.
#pragma once

#include "publish/ftp_connection.h"
#include "publish/http_reader.h"
#include "publish/internet.h"

namespace velloria::publish {

/// One session, in one thread. What `keepGoing` throws, and what is thrown by whoever paints in it, comes out of the
/// call that was waiting; all else is a number. `keepGoing` is called while a server is waited for, about 25 times a
/// second; when it returns false the call fails with 12017.
class CurlInternet : public Internet {
public:
    explicit CurlInternet(KeepGoing keepGoing = {});

    bool openSession() override;
    bool connectFtp(const FtpLogin& login) override;
    bool changeDirectory(const QString& name) override;
    bool createDirectory(const QString& name) override;
    bool findFile(const QString& name) override;
    bool findDirectory(const QString& name) override;
    bool deleteFile(const QString& name) override;
    bool putFile(const QString& localFile, const QString& name, TransferType type) override;

    bool openUrl(const QString& url) override;
    QByteArray readUrl() override;
    void closeUrl() override;

    void closeFtp() override;
    void closeSession() override;

    int lastError() const override { return m_lastError; }
    QString lastResponse() const override;
    QString lastDetail() const override { return m_lastDetail; }
    void traceTo(Trace trace) override { m_trace = std::move(trace); }

private:
    bool fail(int number);
    template <typename Operation>
    bool onFtp(Operation operation);

    KeepGoing m_keepGoing;
    Trace m_trace;
    bool m_isOpen = false;
    std::unique_ptr<FtpConnection> m_ftp;
    std::unique_ptr<HttpReader> m_http;
    QString m_lastResponse; ///< of a connection that is closed
    QString m_lastDetail;
    int m_lastError = 0;
};

} // namespace velloria::publish
