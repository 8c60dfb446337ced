#include "publish/ftp_connection.h"

#include "publish/ftp_listing.h"
#include "publish/ftp_wire.h"
#include "publish/internet_number.h"
#include "publish/proxy.h"
#include "publish/tls_fault.h"
#include "publish/upload_source.h"

#include <QUrl>

#include <new>

#ifdef _WIN32
#include <winsock2.h>
#include <ws2tcpip.h>
#else
#include <netinet/in.h>
#include <sys/socket.h>
#endif

using namespace Qt::StringLiterals;

namespace velloria::publish {

namespace {

constexpr long kNeverTooOld = 86400; // seconds: a question to the user may stand open between two commands
constexpr int kControlPort = 21;
constexpr long kLongestListingMs = 60000;
constexpr int kServiceClosing = 421;
const QString kClearFiles = u"サーバーはログインを暗号化しましたが、ファイルを暗号化しません。"_s;

using CurlList = std::unique_ptr<curl_slist, decltype(&curl_slist_free_all)>;

int portOf(const sockaddr& address) {
    if (address.sa_family == AF_INET)
        return ntohs(reinterpret_cast<const sockaddr_in&>(address).sin_port);
    if (address.sa_family == AF_INET6)
        return ntohs(reinterpret_cast<const sockaddr_in6&>(address).sin6_port);
    return 0;
}

size_t readSource(char* buffer, size_t size, size_t count, void* source) {
    const qint64 got = static_cast<UploadSource*>(source)->read(buffer, qint64(size * count));
    return got < 0 ? CURL_READFUNC_ABORT : size_t(got);
}

/// Whether it was the connection for commands that broke off, and not that of a file, which is written to after a
/// preliminary reply. Where the server has told why, its words count.
bool endsConnection(CURLcode result, int lastReply) {
    return lastReply < 400 && (result == CURLE_RECV_ERROR || (result == CURLE_SEND_ERROR && lastReply / 100 != 1));
}

bool isUnknownCommand(int code) {
    return code == 500 || code == 501 || code == 502 || code == 503 || code == 504;
}

size_t swallow(char*, size_t size, size_t count, void*) {
    return size * count;
}

} // namespace

FtpConnection::FtpConnection(KeepGoing keepGoing, FtpTrace trace)
    : m_run(std::move(keepGoing))
    , m_trace(std::move(trace)) {}

FtpConnection::~FtpConnection() {
    close();
}

bool FtpConnection::open(const FtpLogin& login) {
    close();
    m_isLost = false;
    m_knowsFacts.reset();
    if (!m_run.isReady())
        return fail(kInternalError);
    const std::optional<QByteArray> host = wireHost(login.host);
    if (!host)
        return fail(kInvalidUrl);
    const std::optional<QByteArray> user = wireText(login.user);
    if (!user)
        return fail(kWrongUser);
    const std::optional<QByteArray> password = wireText(login.password);
    if (!password)
        return fail(kWrongPassword);
    m_host = *host;
    m_user = *user;
    m_password = *password;
    m_isPassive = login.isPassive;
    m_tls = login.tls;
    m_proxy = *proxyFor(QUrl(u"ftp://%1/"_s.arg(QString::fromLatin1(m_host))));
    m_trace.hide(login.password);
    m_trace.hide(QUrl(QString::fromUtf8(m_proxy)).password());
    // After the login, whatever the server makes of this command.
    const bool isWelcome = command("NOOP") || m_replies.codeOf("NOOP") >= 500;
    const int number = m_lastError;
    const QString detail = m_detail;
    m_isOpen = m_replies.codeOf("NOOP") != 0;
    // In active mode the library would send the files of an encrypted connection in clear.
    m_isPassive = m_isPassive || m_replies.codeOf("AUTH") / 100 == 2;
    if (!isWelcome) {
        close();
        return fail(number, detail);
    }
    m_lastError = 0;
    m_detail = m_replies.codeOf("PROT") / 100 > 2 ? kClearFiles : QString();
    return true;
}

/// Without the password, which a server may repeat in any answer.
QString FtpConnection::lastResponse() const {
    return m_replies.isTooLong() ? m_replies.lastText() : textFromWire(m_trace.withoutSecrets(m_replies.last()));
}

bool FtpConnection::findFile(const QString& name) {
    const std::optional<QByteArray> wire = wireName(name);
    if (!wire)
        return fail(kInvalidUrl);
    // The library asks for the size as binary: some servers refuse it for text, with the code of a missing file.
    CURL* easy = prepare(*wire);
    curl_easy_setopt(easy, CURLOPT_NOBODY, 1L);
    const bool ran = run();
    switch (m_replies.codeOf("SIZE")) {
    case 0:
        return ran ? fail(kConnectionAborted) : false;
    case 213:
        return true; // what the library asks after it does not matter
    case 550:
        return fail(kNoMoreFiles);
    case kServiceClosing:
    case 425:
    case 426:
    case 530:
        m_replies.recall("SIZE");
        return fail(kExtendedError);
    default:
        return findInList(*wire);
    }
}

bool FtpConnection::findDirectory(const QString& name) {
    const std::optional<QByteArray> wire = wireName(name);
    if (!wire)
        return fail(kInvalidUrl);
    if (!knowsFacts())
        return m_lastError == 0 && findByEntering(*wire);
    if (command("MLST " + *wire))
        return true;
    const int code = m_replies.codeOf("MLST");
    if (code == 550)
        return fail(kNoMoreFiles);
    return isUnknownCommand(code) && findByEntering(*wire);
}

bool FtpConnection::putFile(const QString& localFile, const QString& name, TransferType type) {
    const std::optional<QByteArray> wire = wireName(name);
    if (!wire)
        return fail(kInvalidUrl);
    UploadSource source(localFile, type);
    if (source.openError() != 0)
        return fail(source.openError());
    CURL* easy = prepare(*wire);
    curl_easy_setopt(easy, CURLOPT_UPLOAD, 1L);
    curl_easy_setopt(easy, CURLOPT_TRANSFERTEXT, long{type == TransferType::Text});
    curl_easy_setopt(easy, CURLOPT_INFILESIZE_LARGE, curl_off_t{source.size()});
    curl_easy_setopt(easy, CURLOPT_READFUNCTION, &readSource);
    curl_easy_setopt(easy, CURLOPT_READDATA, &source);
    if (!run())
        return source.hasFailed() ? fail(kAccessDenied) : false;
    return m_replies.codeOf("STOR") / 100 == 2 || fail(kConnectionAborted);
}

void FtpConnection::close() {
    if (!m_isOpen)
        return;
    m_isOpen = false;
    if (m_isLost)
        return;
    // Asked here and not left to the library, which would wait for the answer without a sign of life.
    CURL* easy = prepare({});
    const CurlList quit(curl_slist_append(nullptr, "*QUIT"), &curl_slist_free_all);
    curl_easy_setopt(easy, CURLOPT_QUOTE, quit.get());
    curl_easy_setopt(easy, CURLOPT_NOBODY, 1L);
    curl_easy_setopt(easy, CURLOPT_FORBID_REUSE, 1L);
    curl_easy_setopt(easy, CURLOPT_SERVER_RESPONSE_TIMEOUT, 2L);
    m_isOpen = true;
    try {
        m_run.perform();
    } catch (...) { // what was painting meanwhile; a farewell may come after another failure
        m_isLost = true;
    }
    m_isOpen = false;
}

/// What all operations share. An empty name stands for the current directory.
CURL* FtpConnection::prepare(const QByteArray& name) {
    m_replies.begin();
    CURL* easy = m_run.prepare();
    // Never an address as text: a host such as "user@server" or "server:2121" must fail and not be obeyed.
    CURLU* url = curl_url();
    curl_url_set(url, CURLUPART_SCHEME, "ftp", 0);
    curl_url_set(url, CURLUPART_HOST, m_host.constData(), 0);
    curl_url_set(url, CURLUPART_PATH, ("/" + name.toPercentEncoding()).constData(), 0);
    m_url.reset(url);
    curl_easy_setopt(easy, CURLOPT_CURLU, url);
    curl_easy_setopt(easy, CURLOPT_PATH_AS_IS, 1L);
    curl_easy_setopt(easy, CURLOPT_PROTOCOLS_STR, "ftp");
    curl_easy_setopt(easy, CURLOPT_USERNAME, m_user.constData());
    curl_easy_setopt(easy, CURLOPT_PASSWORD, m_password.constData());
    curl_easy_setopt(easy, CURLOPT_PROXY, m_proxy.constData());
    // Without change of directory: the server keeps the one that CWD has set.
    curl_easy_setopt(easy, CURLOPT_FTP_FILEMETHOD, long{CURLFTPMETHOD_NOCWD});
    curl_easy_setopt(easy, CURLOPT_MAXAGE_CONN, kNeverTooOld);
    curl_easy_setopt(easy, CURLOPT_TCP_KEEPALIVE, 1L);
    curl_easy_setopt(easy, CURLOPT_FTP_USE_EPSV, 0L);
    curl_easy_setopt(easy, CURLOPT_FTP_USE_EPRT, 0L);
    curl_easy_setopt(easy, CURLOPT_FTP_SKIP_PASV_IP, 1L);
    if (!m_isPassive)
        curl_easy_setopt(easy, CURLOPT_FTPPORT, "-");
    if (m_tls != Tls::Off) {
        const auto level = m_tls == Tls::Required ? CURLUSESSL_ALL : CURLUSESSL_TRY;
        curl_easy_setopt(easy, CURLOPT_USE_SSL, long{level});
        curl_easy_setopt(easy, CURLOPT_FTPSSLAUTH, long{CURLFTPAUTH_TLS});
        // Many servers refuse a file whose connection does not resume the encryption of this one, which the library
        // does for no more than one file with TLS 1.3.
        curl_easy_setopt(easy, CURLOPT_SSLVERSION, long{CURL_SSLVERSION_TLSv1_2} | CURL_SSLVERSION_MAX_TLSv1_2);
    }
    curl_easy_setopt(easy, CURLOPT_WRITEFUNCTION, &swallow);
    curl_easy_setopt(easy, CURLOPT_VERBOSE, 1L);
    curl_easy_setopt(easy, CURLOPT_DEBUGFUNCTION, &FtpConnection::traced);
    curl_easy_setopt(easy, CURLOPT_DEBUGDATA, this);
    curl_easy_setopt(easy, CURLOPT_OPENSOCKETFUNCTION, &FtpConnection::opened);
    curl_easy_setopt(easy, CURLOPT_OPENSOCKETDATA, this);
    return easy;
}

bool FtpConnection::run() {
    if (m_isLost)
        return fail(kConnectionAborted);
    m_lastError = 0;
    m_detail.clear();
    const CURLcode result = m_run.perform();
    m_isLost = m_isLost || (m_isOpen && endsConnection(result, m_replies.lastCode()));
    if (m_isLost)
        return fail(kConnectionAborted);
    return result == CURLE_OK || failed(result);
}

bool FtpConnection::failed(CURLcode result) {
    const bool isAgreed = m_replies.codeOf("AUTH") / 100 == 2;
    if (result == CURLE_USE_SSL_FAILED)
        return fail(kNotSecure, (isAgreed ? kClearFiles : u"サーバーは暗号化に応じません。"_s) + u' ' + lastReply());
    const std::optional<TlsFault> fault =
        m_replies.lastCode() < 400 ? tlsFault(m_run, QString::fromLatin1(m_host)) : std::nullopt;
    // A server that forgets the encryption of a file takes our greeting for its first bytes, and waits for more.
    const bool isSilent = result == CURLE_OPERATION_TIMEDOUT && m_run.words().contains(u"SSL"_s);
    if (m_isOpen && m_tls != Tls::Off && (isSilent || (fault && result == CURLE_SSL_CONNECT_ERROR)))
        return fail(kNotSecure, u"サーバーはログインを暗号化しましたが、ファイルを暗号化する約束を守りません。"_s);
    if (fault)
        return fail(fault->number, fault->text);
    const int number = internetNumber(result, m_replies.lastCode());
    return fail(number, number == kLoginFailure ? lastReply() : QString());
}

bool FtpConnection::fail(int number, const QString& detail) {
    m_lastError = number;
    m_detail = number == kExtendedError && m_replies.isTooLong() ? lastReply() : detail;
    return false;
}

bool FtpConnection::namedCommand(const char* verb, const QString& name) {
    const std::optional<QByteArray> wire = wireName(name);
    return wire ? command(verb + (" " + *wire)) : fail(kInvalidUrl);
}

/// One command on the control connection. The asterisk keeps the library from dropping the connection on a refusal.
bool FtpConnection::command(const QByteArray& line) {
    CURL* easy = prepare({});
    const CurlList quote(curl_slist_append(nullptr, ("*" + line).constData()), &curl_slist_free_all);
    curl_easy_setopt(easy, CURLOPT_QUOTE, quote.get());
    curl_easy_setopt(easy, CURLOPT_NOBODY, 1L);
    return run() && (succeeded() || fail(kExtendedError));
}

/// For servers that tell no sizes.
bool FtpConnection::findInList(const QByteArray& name) {
    const bool isPlain = isPlainForListing(name);
    FtpListing listing(isPlain ? QByteArray() : name);
    CURL* easy = prepare({});
    curl_easy_setopt(easy, CURLOPT_TIMEOUT_MS, kLongestListingMs); // one may go on and on
    const QByteArray list = isPlain ? "LIST " + name : QByteArray("LIST");
    curl_easy_setopt(easy, CURLOPT_CUSTOMREQUEST, list.constData());
    curl_easy_setopt(easy, CURLOPT_WRITEFUNCTION, &FtpListing::receive);
    curl_easy_setopt(easy, CURLOPT_WRITEDATA, &listing);
    const bool ran = run();
    const int code = m_replies.codeOf("LIST");
    if (code == 450 || code == 550)
        return fail(kNoMoreFiles);
    return ran && (listing.isFound() || fail(kNoMoreFiles));
}

/// By going there and back. A listing would not do: that of an empty directory looks like that of none.
bool FtpConnection::findByEntering(const QByteArray& name) {
    if (!command("PWD"))
        return false;
    const std::optional<QByteArray> current = m_replies.lastPath();
    if (!current)
        return fail(kExtendedError);
    if (!command("CWD " + name))
        return m_replies.codeOf("CWD") == 550 ? fail(kNoMoreFiles) : false;
    return command("CWD " + *current);
}

/// Asked once a connection. A server that gives no list of features has none.
bool FtpConnection::knowsFacts() {
    if (!m_knowsFacts) {
        const bool hasList = command("FEAT");
        const int code = m_replies.codeOf("FEAT");
        if (!hasList && (code == 0 || code == kServiceClosing))
            return false;
        m_lastError = 0;
        m_knowsFacts = hasList && m_replies.last().toUpper().contains("\r\n MLST");
    }
    return *m_knowsFacts;
}

int FtpConnection::traced(CURL*, curl_infotype type, char* data, size_t size, void* self) {
    FtpReplies& replies = static_cast<FtpConnection*>(self)->m_replies;
    const FtpTrace& trace = static_cast<FtpConnection*>(self)->m_trace;
    const QByteArrayView bytes(data, qsizetype(size));
    try {
        if (type == CURLINFO_HEADER_OUT) {
            replies.sent(bytes);
            trace.sent(bytes);
        } else if (type == CURLINFO_HEADER_IN) {
            replies.received(bytes);
            trace.received(bytes);
        } else if (type == CURLINFO_TEXT) {
            trace.remarked(bytes);
        }
    } catch (const std::bad_alloc&) { // may not fly through the library; a command without an answer has failed
    }
    return 0;
}

/// Lets the login and the connections for files pass, and no second login. That is told by the port; behind a proxy,
/// where all ports are the proxy's, by its coming before any reply. Port 0 is our own ear in active mode.
curl_socket_t FtpConnection::opened(void* self, curlsocktype, curl_sockaddr* address) {
    auto& connection = *static_cast<FtpConnection*>(self);
    const int port = portOf(address->addr);
    if (connection.m_isOpen && port != 0 && (port == kControlPort || connection.m_replies.count() == 0)) {
        connection.m_isLost = true;
        return CURL_SOCKET_BAD;
    }
    return socket(address->family, address->socktype, address->protocol);
}

} // namespace velloria::publish
