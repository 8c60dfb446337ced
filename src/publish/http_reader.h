// One file read over HTTP or HTTPS, block by block.
#pragma once

#include "publish/curl_run.h"

#include <QString>

namespace velloria::publish {

/// open, then read until "" comes, then close, in one thread; a failure is false or "" with a number, and nothing is
/// thrown but what painting throws meanwhile. Past all caches, redirections followed to other pages of the web only and
/// never from encryption to none, certificates checked. No more is held than what the network delivers between two
/// blocks.
class HttpReader {
public:
    explicit HttpReader(KeepGoing keepGoing)
        : m_run(std::move(keepGoing)) {}
    ~HttpReader() { close(); }

    /// True once the head of the answer is there. An answer that is a refusal has no bytes.
    bool open(const QString& url);
    /// The next 1024 bytes, fewer at the end; "" after it and after a failure.
    QByteArray read();
    void close();

    int lastError() const { return m_lastError; }
    /// See Internet.
    const QString& lastDetail() const { return m_lastDetail; }

private:
    bool fail(int number, const QString& detail = {});
    bool failed();
    static int beforeRequest(void* self, char*, char*, int, int);
    static size_t header(char* data, size_t size, size_t count, void* self);
    static size_t body(char* data, size_t size, size_t count, void* self);

    CurlRun m_run;
    CURL* m_easy = nullptr; ///< that of m_run
    QString m_host;
    QByteArray m_waiting;
    bool m_isHeadWhole = false; ///< the empty line behind the last head has come
    bool m_isAnswered = false;
    bool m_isEncrypted = false; ///< the last request
    bool m_isRefused = false;   ///< the redirection
    int m_lastError = 0;
    QString m_lastDetail;
};

} // namespace velloria::publish
