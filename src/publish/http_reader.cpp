#include "publish/http_reader.h"

#include "publish/internet.h"
#include "publish/internet_number.h"
#include "publish/proxy.h"
#include "publish/tls_fault.h"

#include <QUrl>

#include <algorithm>
#include <memory>
#include <new>

using namespace Qt::StringLiterals;

namespace velloria::publish {

namespace {

constexpr qsizetype kBlock = 1024;
constexpr long kMostRedirections = 10;

long statusOf(CURL* easy) {
    long status = 0;
    curl_easy_getinfo(easy, CURLINFO_RESPONSE_CODE, &status);
    return status;
}

/// To the letter: a QUrl turns "%41" into "A", and then a signed address no longer fits its signature. Only what can't
/// travel in a request is encoded.
QByteArray onTheWire(const QString& text, const QUrl& url) {
    const bool canTravel =
        std::all_of(text.begin(), text.end(), [](QChar character) { return character > u' ' && character < u'\x7f'; });
    return canTravel ? text.toLatin1() : url.toEncoded();
}

/// For the life of the program: the one list of headers, the same for every request.
curl_slist* uncached() {
    static const std::unique_ptr<curl_slist, decltype(&curl_slist_free_all)> headers(
        curl_slist_append(curl_slist_append(nullptr, "Cache-Control: no-cache"), "Pragma: no-cache"),
        &curl_slist_free_all);
    return headers.get();
}

} // namespace

bool HttpReader::open(const QString& text) {
    close();
    if (!m_run.isReady())
        return fail(kInternalError);
    const QUrl url(text, QUrl::TolerantMode);
    const QString scheme = url.scheme();
    if (scheme != u"http"_s && scheme != u"https"_s)
        return fail(scheme.isEmpty() ? kInvalidUrl : kUnknownScheme);
    if (!url.isValid() || url.host().isEmpty())
        return fail(kInvalidUrl);

    m_host = url.host();
    m_isRefused = false;
    CURL* easy = m_run.prepare();
    curl_easy_setopt(easy, CURLOPT_URL, onTheWire(text, url).constData());
    curl_easy_setopt(easy, CURLOPT_USERAGENT, "Velloria");
    curl_easy_setopt(easy, CURLOPT_HTTPHEADER, uncached());
    curl_easy_setopt(easy, CURLOPT_PROTOCOLS_STR, "http,https");
    curl_easy_setopt(easy, CURLOPT_REDIR_PROTOCOLS_STR, "http,https");
    curl_easy_setopt(easy, CURLOPT_FOLLOWLOCATION, 1L);
    curl_easy_setopt(easy, CURLOPT_MAXREDIRS, kMostRedirections);
    if (const auto proxy = proxyFor(url))
        curl_easy_setopt(easy, CURLOPT_PROXY, proxy->constData());
    curl_easy_setopt(easy, CURLOPT_PREREQFUNCTION, &HttpReader::beforeRequest);
    curl_easy_setopt(easy, CURLOPT_PREREQDATA, this);
    curl_easy_setopt(easy, CURLOPT_HEADERFUNCTION, &HttpReader::header);
    curl_easy_setopt(easy, CURLOPT_HEADERDATA, this);
    curl_easy_setopt(easy, CURLOPT_WRITEFUNCTION, &HttpReader::body);
    curl_easy_setopt(easy, CURLOPT_WRITEDATA, this);
    m_easy = easy;
    m_run.start();
    while (m_run.isRunning() && !m_isAnswered)
        m_run.step();
    // An answer that was cut off after its head is an answer; its end is found on reading. One that was cut off within
    // it is none, though the library takes it for a whole one.
    if (m_isAnswered || (m_run.result() == CURLE_OK && m_isHeadWhole))
        return true;
    close();
    return failed();
}

QByteArray HttpReader::read() {
    fail(0);
    while (m_run.isRunning() && m_waiting.size() < kBlock)
        m_run.step();
    const QByteArray block = m_waiting.first(std::min(kBlock, m_waiting.size()));
    m_waiting.remove(0, block.size());
    if (block.isEmpty() && !m_run.isRunning() && m_run.result() != CURLE_OK)
        failed();
    return block;
}

void HttpReader::close() {
    m_run.stop();
    m_waiting.clear();
    m_isAnswered = false;
    m_isHeadWhole = false;
    m_isEncrypted = false;
    fail(0);
}

/// After a transfer that did not end well, or has brought no whole head.
bool HttpReader::failed() {
    if (m_isRefused)
        return fail(kRedirectionRefused, kNoWayOutOfEncryption);
    if (m_run.result() == CURLE_OK)
        return fail(kConnectionAborted);
    if (const std::optional<TlsFault> fault = tlsFault(m_run, m_host))
        return fail(fault->number, fault->text);
    return fail(internetNumber(m_run.result(), 0));
}

bool HttpReader::fail(int number, const QString& detail) {
    m_lastError = number;
    m_lastDetail = detail;
    return false;
}

/// Whoever asked for an encrypted page must not get another one that anybody on the line could have written.
int HttpReader::beforeRequest(void* self, char*, char*, int, int) {
    auto& reader = *static_cast<HttpReader*>(self);
    const char* url = nullptr;
    curl_easy_getinfo(reader.m_easy, CURLINFO_EFFECTIVE_URL, &url);
    const bool wasEncrypted = reader.m_isEncrypted;
    reader.m_isEncrypted = QByteArray(url).toLower().startsWith("https:");
    reader.m_isRefused = wasEncrypted && !reader.m_isEncrypted;
    return reader.m_isRefused ? CURL_PREREQFUNC_ABORT : CURL_PREREQFUNC_OK;
}

size_t HttpReader::header(char* data, size_t size, size_t count, void* self) {
    auto& reader = *static_cast<HttpReader*>(self);
    const QByteArrayView line(data, qsizetype(size * count));
    // The empty line ends a head; that of a redirection or of an interim answer is not the last one.
    reader.m_isHeadWhole = line == "\r\n" || line == "\n";
    const long status = statusOf(reader.m_easy);
    if (reader.m_isHeadWhole && (status / 100 == 2 || status >= 400))
        reader.m_isAnswered = true;
    return size * count;
}

size_t HttpReader::body(char* data, size_t size, size_t count, void* self) {
    auto& reader = *static_cast<HttpReader*>(self);
    reader.m_isAnswered = true; // what comes with a redirection that is followed never gets here
    try {
        if (statusOf(reader.m_easy) < 400)
            reader.m_waiting.append(data, qsizetype(size * count));
    } catch (const std::bad_alloc&) { // may not fly through the library
        return 0;
    }
    return size * count;
}

} // namespace velloria::publish
