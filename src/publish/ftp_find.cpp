#include "publish/ftp_connection.h"

#include "publish/ftp_wire.h"
#include "publish/internet_number.h"

#include <algorithm>
#include <new>

namespace velloria::publish {

namespace {

constexpr long kLongestListingMs = 60000;
constexpr int kServiceClosing = 421;

/// Whether the name's line was in a listing, read piece by piece without keeping it.
class ListingSearch {
public:
    /// Without a name every line is a find.
    explicit ListingSearch(QByteArray name)
        : m_name(std::move(name))
        , m_lineEnd(' ' + m_name) {
        m_line.reserve(kLongestLine);
    }

    static size_t receive(char* data, size_t size, size_t count, void* self) {
        try {
            static_cast<ListingSearch*>(self)->take({data, qsizetype(size * count)});
        } catch (const std::bad_alloc&) { // may not fly through the library
            return 0;
        }
        return size * count;
    }
    bool isFound() {
        endLine();
        return m_isFound;
    }

private:
    static constexpr qsizetype kLongestLine = 8192;

    void take(QByteArrayView bytes) {
        for (const char c : bytes) {
            if (c == '\n')
                endLine();
            else if (c != '\r' && m_line.size() < kLongestLine)
                m_line += c;
        }
    }
    void endLine() {
        // What a link leads to is not its name.
        const qsizetype arrow = m_line.startsWith('l') ? m_line.indexOf(" -> ") : -1;
        const QByteArrayView line = QByteArrayView(m_line).first(arrow < 0 ? m_line.size() : arrow);
        if (!line.isEmpty() && !line.startsWith("total "))
            m_isFound = m_isFound || m_name.isEmpty() || line == m_name || line.endsWith(m_lineEnd);
        m_line.truncate(0); // keeps its memory: a listing may have any number of lines
    }

    QByteArray m_name;
    QByteArray m_lineEnd;
    QByteArray m_line;
    bool m_isFound = false;
};

/// Servers take these for options and patterns.
bool isPlainForListing(const QByteArray& name) {
    return !name.startsWith('-') &&
           std::ranges::none_of(name, [](char c) { return QByteArrayView("*?[]{}\\~ ").contains(c); });
}

/// The directory in a reply such as 257 "/a ""quoted"" one" is current.
std::optional<QByteArray> quotedPath(const QByteArray& reply) {
    const qsizetype start = reply.indexOf('"');
    QByteArray path;
    for (qsizetype at = start + 1; start >= 0 && at < reply.size(); ++at) {
        if (reply[at] != '"')
            path += reply[at];
        else if (at + 1 < reply.size() && reply[at + 1] == '"')
            path += reply[at++];
        else
            return path.isEmpty() ? std::nullopt : std::optional(path);
    }
    return std::nullopt;
}

bool isUnknownCommand(int code) {
    return code == 500 || code == 501 || code == 502 || code == 503 || code == 504;
}

} // namespace

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
        return true; // what the library asks behind it does not matter
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

/// For servers that tell no sizes.
bool FtpConnection::findInList(const QByteArray& name) {
    const bool isPlain = isPlainForListing(name);
    ListingSearch search(isPlain ? QByteArray() : name);
    CURL* easy = prepare({});
    curl_easy_setopt(easy, CURLOPT_TIMEOUT_MS, kLongestListingMs); // one may go on and on
    const QByteArray list = isPlain ? "LIST " + name : QByteArray("LIST");
    curl_easy_setopt(easy, CURLOPT_CUSTOMREQUEST, list.constData());
    curl_easy_setopt(easy, CURLOPT_WRITEFUNCTION, &ListingSearch::receive);
    curl_easy_setopt(easy, CURLOPT_WRITEDATA, &search);
    const bool ran = run();
    const int code = m_replies.codeOf("LIST");
    if (code == 450 || code == 550)
        return fail(kNoMoreFiles);
    return ran && (search.isFound() || fail(kNoMoreFiles));
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

/// By going there and back. A listing would not do: that of an empty directory looks like that of none.
bool FtpConnection::findByEntering(const QByteArray& name) {
    if (!command("PWD"))
        return false;
    const std::optional<QByteArray> current = quotedPath(m_replies.last());
    if (!current)
        return fail(kExtendedError);
    if (!command("CWD " + name))
        return m_replies.codeOf("CWD") == 550 ? fail(kNoMoreFiles) : false;
    return command("CWD " + *current);
}

} // namespace velloria::publish
