#include "publish/ftp_trace.h"

#include "platform/code_page.h"
#include "publish/ftp_wire.h"

#include <algorithm>

using namespace Qt::StringLiterals;

namespace velloria::publish {
namespace {

constexpr QByteArrayView kHidden = "****";
constexpr qsizetype kShortestAnywhere = 4;

bool isOfWord(const QByteArray& bytes, qsizetype at) {
    if (at < 0 || at >= bytes.size())
        return false;
    const auto byte = static_cast<unsigned char>(bytes[at]);
    return byte >= 0x80 || (byte >= '0' && byte <= '9') || (byte >= 'A' && byte <= 'Z') || (byte >= 'a' && byte <= 'z');
}

void removeSecret(QByteArray& bytes, const QByteArray& secret) {
    for (qsizetype at = bytes.indexOf(secret); at >= 0; at = bytes.indexOf(secret, at)) {
        const bool isWord = !isOfWord(bytes, at - 1) && !isOfWord(bytes, at + secret.size());
        if (secret.size() < kShortestAnywhere && !isWord) {
            ++at;
            continue;
        }
        bytes.replace(at, secret.size(), kHidden.toByteArray());
        at += kHidden.size();
    }
}

} // namespace

void FtpTrace::hide(const QString& secret) {
    for (const QByteArray& bytes : {platform::toCodePage(secret, platform::Missing::Question), secret.toUtf8()}) {
        if (!bytes.isEmpty() && !m_secrets.contains(bytes))
            m_secrets += bytes;
    }
    // The longest first: none of another one's ends may stay.
    std::ranges::sort(m_secrets, std::ranges::greater(), &QByteArray::size);
}

void FtpTrace::sent(QByteArrayView bytes) const {
    add(u"> "_s, bytes.startsWith("PASS") ? QByteArrayView("PASS ****") : bytes);
}

void FtpTrace::received(QByteArrayView bytes) const {
    add(u"< "_s, bytes);
}

void FtpTrace::remarked(QByteArrayView bytes) const {
    add(u"* "_s, bytes);
}

QByteArray FtpTrace::withoutSecrets(QByteArray bytes) const {
    for (const QByteArray& secret : m_secrets)
        removeSecret(bytes, secret);
    return bytes;
}

QString FtpTrace::shown(const QByteArray& bytes) const {
    return textFromWire(withoutSecrets(bytes)).simplified();
}

void FtpTrace::add(const QString& mark, QByteArrayView bytes) const {
    if (!m_trace)
        return;
    for (const QByteArray& line : bytes.toByteArray().split('\n')) {
        if (const QString text = shown(line); !text.isEmpty())
            m_trace(mark + text);
    }
}

} // namespace velloria::publish
