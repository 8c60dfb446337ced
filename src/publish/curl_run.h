// One libcurl handle and the loop that drives it, so that windows stay painted while a server is slow.
#pragma once

#include <QByteArray>
#include <QElapsedTimer>
#include <QString>

#include <curl/curl.h>

#include <array>
#include <exception>
#include <functional>

namespace velloria::publish {

/// Called many times a second while a server is waited for; it may serve painting and timers, not the user's input.
/// False gives up what is running.
using KeepGoing = std::function<bool()>;

/// Runs one transfer after another on one handle, which keeps its connection between them. In one thread; a transfer
/// that fails is a result, not thrown.
///
///     CURL* easy = run.prepare(); // forgets the options of the last one
///     curl_easy_setopt(easy, CURLOPT_URL, address);
///     const CURLcode result = run.perform();
class CurlRun {
public:
    explicit CurlRun(KeepGoing keepGoing);
    ~CurlRun();
    CurlRun(const CurlRun&) = delete;
    CurlRun& operator=(const CurlRun&) = delete;

    /// Whether the library could be had at all; nothing else may be called when it could not.
    bool isReady() const { return m_multi && m_easy; }

    /// The handle with what every transfer has in common, forgetting the last one's options.
    CURL* prepare();
    /// Runs what has been prepared to its end. What the caller's function throws comes out here and in step, after the
    /// end of the transfer.
    CURLcode perform();

    /// The same in pieces: start, then step while isRunning, then result.
    void start();
    bool isRunning() const { return m_isRunning; }
    /// Moves the transfer on, waiting a moment for the server when there is nothing to do.
    void step();
    CURLcode result() const { return m_result; }
    /// The library's words for a failure, "" when it has none.
    QString words() const { return QString::fromUtf8(m_words.data()).simplified(); }
    /// What the encryption's library has found about the server's certificate; 0 is good.
    long verification() const;
    /// Ends the transfer where it is, if it runs.
    void stop();

private:
    bool wait();
    void throwWhatWasCaught();
    static int progressed(void* self, curl_off_t, curl_off_t, curl_off_t, curl_off_t);

    KeepGoing m_keepGoing;
    QElapsedTimer m_sincePainted;
    CURLM* m_multi = nullptr;
    CURL* m_easy = nullptr;
    bool m_isRunning = false;
    std::exception_ptr m_caught; ///< what the caller's function has thrown: nothing may fly through the library
    int m_idleMs = 0;            ///< how long the next wait for the server may take
    CURLcode m_result = CURLE_OK;
    std::array<char, CURL_ERROR_SIZE> m_words{};
};

} // namespace velloria::publish
