// The network as the publishing routines see it: one session, one FTP connection with a current directory, one HTTP
// transfer at a time.
#pragma once

#include "publish/ftp_trace.h"

#include <QByteArray>
#include <QString>

namespace velloria::publish {

/// How a file goes up: text lets the server choose its line ends, binary keeps every byte.
enum class TransferType { Text, Binary };

/// Whether login and files go through an encrypted connection. The number of each is that of the setting.
enum class Tls { Off = 0, WhenOffered = 1, Required = 2 };

struct FtpLogin {
    QString host; ///< a name alone: no scheme, port or folder; the port is always 21
    QString user;
    QString password;
    bool isPassive = false;
    Tls tls = Tls::Off;
};

/// For one thread, the one that the windows have, which are painted while a server is waited for. A refusal is a value
/// and nothing to be thrown:
///
///     if (internet.openSession() && internet.connectFtp(login) && internet.changeDirectory(u"diary"_s))
///         internet.putFile(localFile, u"index.htm"_s, TransferType::Text);
///     const int number = internet.lastError(); // before the next call
///     internet.closeSession();                 // and what is open in it
///
/// Each call blocks until it is done. One that fails returns false and leaves its number in `lastError`, which the next
/// call changes. Names are bare ones within the connection's current directory; one that can't travel to the letter (a
/// line end in it, a character that the code page lacks) fails with 12005 before anything is sent. A lost connection is
/// not made again: the call that finds it lost and all after it fail with 12030.
class Internet {
public:
    virtual ~Internet() = default;

    /// Begins a session, with 15 seconds for connecting and 30 for an answer.
    virtual bool openSession() = 0;
    /// Logs in; the connection stays in the directory that the server gives it.
    virtual bool connectFtp(const FtpLogin& login) = 0;
    virtual bool changeDirectory(const QString& name) = 0;
    virtual bool createDirectory(const QString& name) = 0;
    /// Whether the server has a file of this name. When it has none, `lastError` is kNoMoreFiles.
    virtual bool findFile(const QString& name) = 0;
    /// The same for a directory.
    virtual bool findDirectory(const QString& name) = 0;
    virtual bool deleteFile(const QString& name) = 0;
    /// True once the server has confirmed the whole file. The number is 2 for a local file that is missing, 5 for one
    /// that can't be read.
    virtual bool putFile(const QString& localFile, const QString& name, TransferType type) = 0;

    /// Begins to read an address, past all caches.
    virtual bool openUrl(const QString& url) = 0;
    /// The next at most 1024 bytes; "" at the end and after a failure.
    virtual QByteArray readUrl() = 0;
    virtual void closeUrl() = 0;

    virtual void closeFtp() = 0;
    /// Ends the session and what is open in it.
    virtual void closeSession() = 0;

    /// The number of the last failure, 0 when none was recorded.
    virtual int lastError() const = 0;
    /// The server's last reply with its code, lines joined by CR LF, at most 254 bytes; 255 blanks for a longer one.
    virtual QString lastResponse() const = 0;
    /// What is known of the last failure beyond its number, in one line: the words of a refused login, what is wrong
    /// with a certificate, a reply too long for `lastResponse`. "" when the number says it all. After a login that
    /// went well: what is wrong with the connection all the same.
    virtual QString lastDetail() const = 0;

    /// Where all that passes on FTP connections goes from now on; may be empty.
    virtual void traceTo(Trace trace) = 0;
};

/// Why an encrypted connection is not left for another one.
inline const QString kNoWayOutOfEncryption =
    QStringLiteral("暗号化した接続から、暗号化しない接続への転送には応じません。");

// Numbers of `lastError` that the routines ask for themselves.
inline constexpr int kNoMoreFiles = 18;
inline constexpr int kExtendedError = 12003;

} // namespace velloria::publish
