#include "publish/curl_run.h"

#include <algorithm>
#include <cstdlib>
#include <utility>

namespace velloria::publish {

namespace {

constexpr long kConnectTimeoutMs = 15000;
constexpr long kReceiveTimeoutSeconds = 30;
constexpr int kLongestPollMs = 50;
constexpr int kPaintEveryMs = 40;

bool hasLibrary() {
    static const bool isThere = curl_global_init(CURL_GLOBAL_DEFAULT) == CURLE_OK;
    return isThere;
}

} // namespace

CurlRun::CurlRun(KeepGoing keepGoing)
    : m_keepGoing(std::move(keepGoing)) {
    if (!hasLibrary())
        return;
    m_multi = curl_multi_init();
    m_easy = curl_easy_init();
    m_sincePainted.start();
}

CurlRun::~CurlRun() {
    stop();
    curl_easy_cleanup(m_easy);
    curl_multi_cleanup(m_multi);
}

CURL* CurlRun::prepare() {
    curl_easy_reset(m_easy);
    m_words[0] = '\0';
    curl_easy_setopt(m_easy, CURLOPT_ERRORBUFFER, m_words.data());
    curl_easy_setopt(m_easy, CURLOPT_CONNECTTIMEOUT_MS, kConnectTimeoutMs);
    // No bound on the whole: a big picture on a slow line takes its time, as long as something moves.
    curl_easy_setopt(m_easy, CURLOPT_LOW_SPEED_LIMIT, 1L);
    curl_easy_setopt(m_easy, CURLOPT_LOW_SPEED_TIME, kReceiveTimeoutSeconds);
    curl_easy_setopt(m_easy, CURLOPT_SERVER_RESPONSE_TIMEOUT, kReceiveTimeoutSeconds);
    curl_easy_setopt(m_easy, CURLOPT_ACCEPTTIMEOUT_MS, kReceiveTimeoutSeconds * 1000);
    curl_easy_setopt(m_easy, CURLOPT_SSL_OPTIONS, long{CURLSSLOPT_NATIVE_CA});
    // Whom to trust besides or instead is told as to other programs: the library leaves these variables alone.
    if (const char* file = std::getenv("SSL_CERT_FILE"))
        curl_easy_setopt(m_easy, CURLOPT_CAINFO, file);
    if (const char* folder = std::getenv("SSL_CERT_DIR"))
        curl_easy_setopt(m_easy, CURLOPT_CAPATH, folder);
    // A resolver that still waits must not hold up the end of a transfer that has been given up.
    curl_easy_setopt(m_easy, CURLOPT_QUICK_EXIT, 1L);
    // The library waits for a server's last word by itself; this is its only sign of life then.
    curl_easy_setopt(m_easy, CURLOPT_NOPROGRESS, 0L);
    curl_easy_setopt(m_easy, CURLOPT_XFERINFOFUNCTION, &CurlRun::progressed);
    curl_easy_setopt(m_easy, CURLOPT_XFERINFODATA, this);
    return m_easy;
}

CURLcode CurlRun::perform() {
    start();
    while (m_isRunning)
        step();
    return m_result;
}

void CurlRun::start() {
    m_result = CURLE_OK;
    m_caught = nullptr;
    m_idleMs = 0;
    m_isRunning = curl_multi_add_handle(m_multi, m_easy) == CURLM_OK;
    if (!m_isRunning)
        m_result = CURLE_FAILED_INIT;
}

void CurlRun::step() {
    int running = 0;
    if (curl_multi_perform(m_multi, &running) != CURLM_OK) {
        stop();
        m_result = CURLE_OUT_OF_MEMORY;
        return;
    }
    int left = 0;
    while (const CURLMsg* message = curl_multi_info_read(m_multi, &left)) {
        if (message->msg != CURLMSG_DONE)
            continue;
        m_result = message->data.result;
        curl_multi_remove_handle(m_multi, m_easy);
        m_isRunning = false;
        throwWhatWasCaught();
        return;
    }
    // At times the library has work left that no socket tells of, a connection for files to begin for one: it must soon
    // be called again, and only where nothing comes of that the waits grow long.
    int ready = 0;
    curl_multi_poll(m_multi, nullptr, 0, m_idleMs, &ready);
    m_idleMs = ready > 0 ? 0 : std::min(2 * m_idleMs + 1, kLongestPollMs);
    if (!wait()) {
        stop();
        m_result = CURLE_ABORTED_BY_CALLBACK;
    }
    throwWhatWasCaught();
}

long CurlRun::verification() const {
    long found = 0;
    curl_easy_getinfo(m_easy, CURLINFO_SSL_VERIFYRESULT, &found);
    return found;
}

void CurlRun::stop() {
    if (!m_isRunning)
        return;
    curl_multi_remove_handle(m_multi, m_easy);
    m_isRunning = false;
}

bool CurlRun::wait() {
    if (!m_keepGoing || m_sincePainted.elapsed() < kPaintEveryMs)
        return true;
    bool mayGoOn = false;
    try {
        mayGoOn = m_keepGoing();
    } catch (...) {
        m_caught = std::current_exception();
    }
    m_sincePainted.restart();
    return mayGoOn;
}

void CurlRun::throwWhatWasCaught() {
    if (m_caught)
        std::rethrow_exception(std::exchange(m_caught, nullptr));
}

int CurlRun::progressed(void* self, curl_off_t, curl_off_t, curl_off_t, curl_off_t) {
    return static_cast<CurlRun*>(self)->wait() ? 0 : 1;
}

} // namespace velloria::publish
