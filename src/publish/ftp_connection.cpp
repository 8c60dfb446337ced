#include "publish/ftp_connection.h"

#include "publish/ftp_wire.h"
#include "publish/internet_number.h"
#include "publish/proxy.h"
#include "publish/upload_source.h"

#include <QUrl>

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

size_t swallow(char*, size_t size, size_t count, void*) {
    return size * count;
}

} // namespace

FtpConnection::FtpConnection(KeepGoing keepGoing)
    : m_run(std::move(keepGoing)) {}

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
    // Behind the login, whatever the server makes of this command.
    const bool isWelcome = command("NOOP") || m_replies.codeOf("NOOP") >= 500;
    const int number = m_lastError;
    m_isOpen = m_replies.codeOf("NOOP") != 0;
    if (!isWelcome) {
        close();
        return fail(number);
    }
    m_lastError = 0;
    return true;
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
    curl_slist* quit = curl_slist_append(nullptr, "*QUIT");
    curl_easy_setopt(easy, CURLOPT_QUOTE, quit);
    curl_easy_setopt(easy, CURLOPT_NOBODY, 1L);
    curl_easy_setopt(easy, CURLOPT_FORBID_REUSE, 1L);
    curl_easy_setopt(easy, CURLOPT_SERVER_RESPONSE_TIMEOUT, 2L);
    m_isOpen = true;
    m_run.perform();
    m_isOpen = false;
    curl_slist_free_all(quit);
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
    const CURLcode result = m_run.perform();
    if (m_isLost)
        return fail(kConnectionAborted);
    return result == CURLE_OK || fail(internetNumber(result, m_replies.lastCode()));
}

bool FtpConnection::fail(int number) {
    m_lastError = number;
    return false;
}

bool FtpConnection::namedCommand(const char* verb, const QString& name) {
    const std::optional<QByteArray> wire = wireName(name);
    return wire ? command(verb + (" " + *wire)) : fail(kInvalidUrl);
}

/// One command on the control connection. The asterisk keeps the library from dropping the connection on a refusal.
bool FtpConnection::command(const QByteArray& line) {
    CURL* easy = prepare({});
    curl_slist* quote = curl_slist_append(nullptr, ("*" + line).constData());
    curl_easy_setopt(easy, CURLOPT_QUOTE, quote);
    curl_easy_setopt(easy, CURLOPT_NOBODY, 1L);
    const bool ran = run();
    curl_slist_free_all(quote);
    return ran && (succeeded() || fail(kExtendedError));
}

int FtpConnection::traced(CURL*, curl_infotype type, char* data, size_t size, void* self) {
    FtpReplies& replies = static_cast<FtpConnection*>(self)->m_replies;
    if (type == CURLINFO_HEADER_OUT)
        replies.sent({data, qsizetype(size)});
    else if (type == CURLINFO_HEADER_IN)
        replies.received({data, qsizetype(size)});
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
