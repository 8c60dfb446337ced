#include "publish/ftp_wire.h"

#include "platform/code_page.h"

#include <QStringDecoder>
#include <QUrl>

#include <algorithm>

namespace velloria::publish {

std::optional<QByteArray> wireText(const QString& text) {
    const auto endsLine = [](QChar c) { return c == u'\r' || c == u'\n' || c == u'\0'; };
    if (std::ranges::any_of(text, endsLine) || !platform::inCodePage(text))
        return std::nullopt;
    return platform::toCodePage(text, platform::Missing::Question);
}

std::optional<QByteArray> wireName(const QString& name) {
    return name.isEmpty() ? std::nullopt : wireText(name);
}

QString textFromWire(const QByteArray& bytes) {
    const qsizetype end = bytes.indexOf('\0');
    const QByteArray shown = end < 0 ? bytes : bytes.first(end);
    QStringDecoder decoder(QStringDecoder::Utf8, QStringDecoder::Flag::Stateless);
    QString text = decoder(shown);
    return decoder.hasError() ? platform::fromCodePage(shown) : text;
}

std::optional<QByteArray> wireHost(const QString& host) {
    const auto isForeign = [](QChar c) {
        return c.unicode() <= u' ' || c.unicode() == 0x7F || QStringView(u"/\\:@?#%[]<>\"'`^{}|,;&=+$()*!").contains(c);
    };
    if (host.isEmpty() || std::ranges::any_of(host, isForeign))
        return std::nullopt;
    const bool isAscii = std::ranges::all_of(host, [](QChar c) { return c.unicode() < 0x80; });
    const QByteArray name = isAscii ? host.toLatin1() : QUrl::toAce(host);
    return name.isEmpty() ? std::nullopt : std::optional(name);
}

} // namespace velloria::publish
