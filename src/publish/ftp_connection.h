// One FTP connection with a current directory, kept by the server from command to command.
#pragma once

#include "publish/curl_run.h"
#include "publish/ftp_replies.h"
#include "publish/internet.h"

#include <memory>
#include <optional>

namespace velloria::publish {

/// open comes first and close last; between them commands in any order, in one thread. A refusal is false with a
/// number, nothing is thrown but what painting throws while a server is waited for. Logs in once. A connection that is
/// lost is never made again in silence, because the new one would stand in another directory: everything after it fails
/// with 12030. Names travel as code page bytes; one that the code page lacks, or that holds a line end or NUL, is
/// refused before anything is sent.
class FtpConnection {
public:
    FtpConnection(KeepGoing keepGoing, FtpTrace trace);
    ~FtpConnection();

    /// Each is true when it went well and leaves its number in `lastError` when not; see Internet.
    bool open(const FtpLogin& login);
    bool changeDirectory(const QString& name) { return namedCommand("CWD", name); }
    bool createDirectory(const QString& name) { return namedCommand("MKD", name); }
    bool deleteFile(const QString& name) { return namedCommand("DELE", name); }
    bool findFile(const QString& name);
    bool findDirectory(const QString& name);
    bool putFile(const QString& localFile, const QString& name, TransferType type);
    /// Takes leave of the server, if it is still there.
    void close();

    int lastError() const { return m_lastError; }
    QString lastResponse() const;
    QString lastDetail() const { return m_detail; }

private:
    struct UrlCleanup {
        void operator()(CURLU* url) const { curl_url_cleanup(url); }
    };

    CURL* prepare(const QByteArray& name);
    bool run();
    bool fail(int number, const QString& detail = {});
    bool failed(CURLcode result);
    QString lastReply() const { return m_trace.shown(m_replies.last()); }
    bool namedCommand(const char* verb, const QString& name);
    bool command(const QByteArray& line);
    bool succeeded() const { return m_replies.lastCode() / 100 == 2; }

    bool findInList(const QByteArray& name);
    bool findByEntering(const QByteArray& name);
    bool knowsFacts();

    static int traced(CURL*, curl_infotype type, char* data, size_t size, void* self);
    static curl_socket_t opened(void* self, curlsocktype purpose, curl_sockaddr* address);

    CurlRun m_run;
    std::unique_ptr<CURLU, UrlCleanup> m_url; ///< of the operation in hand
    FtpReplies m_replies;
    FtpTrace m_trace;
    QByteArray m_host; ///< as the name service takes it
    QByteArray m_user;
    QByteArray m_password;
    QByteArray m_proxy;
    bool m_isPassive = false;
    Tls m_tls = Tls::Off;
    bool m_isOpen = false;
    bool m_isLost = false;
    std::optional<bool> m_knowsFacts; ///< whether the server has MLST
    int m_lastError = 0;
    QString m_detail; ///< of the last error
};

} // namespace velloria::publish
