#include "publish/ftp_listing.h"

#include <algorithm>
#include <new>

namespace velloria::publish {

namespace {
constexpr qsizetype kLongestLine = 8192;
}

bool isPlainForListing(const QByteArray& name) {
    return !name.startsWith('-') &&
           std::ranges::none_of(name, [](char c) { return QByteArrayView("*?[]{}\\~ ").contains(c); });
}

FtpListing::FtpListing(QByteArray name)
    : m_name(std::move(name))
    , m_lineEnd(' ' + m_name) {
    m_line.reserve(kLongestLine);
}

size_t FtpListing::receive(char* data, size_t size, size_t count, void* self) {
    try {
        static_cast<FtpListing*>(self)->take({data, qsizetype(size * count)});
    } catch (const std::bad_alloc&) { // may not fly through the library
        return 0;
    }
    return size * count;
}

bool FtpListing::isFound() {
    endLine();
    return m_isFound;
}

void FtpListing::take(QByteArrayView bytes) {
    for (const char c : bytes) {
        if (c == '\n')
            endLine();
        else if (c != '\r' && m_line.size() < kLongestLine)
            m_line += c;
    }
}

void FtpListing::endLine() {
    // What a link leads to is not its name.
    const qsizetype arrow = m_line.startsWith('l') ? m_line.indexOf(" -> ") : -1;
    const QByteArrayView line = QByteArrayView(m_line).first(arrow < 0 ? m_line.size() : arrow);
    if (!line.isEmpty() && !line.startsWith("total "))
        m_isFound = m_isFound || m_name.isEmpty() || line == m_name || line.endsWith(m_lineEnd);
    m_line.truncate(0); // keeps its memory: a listing may have any number of lines
}

} // namespace velloria::publish
