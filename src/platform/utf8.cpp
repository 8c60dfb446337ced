#include "platform/utf8.h"

using namespace Qt::StringLiterals;

namespace velloria::platform {
namespace {

constexpr QByteArrayView kSignature = "\xEF\xBB\xBF";

/// A backslash in front makes no escape of the character, which the parser is to refuse.
bool isBehindBackslash(const QByteArray& json, qsizetype at) {
    qsizetype backslashes = 0;
    while (at > backslashes && json[at - 1 - backslashes] == '\\')
        ++backslashes;
    return backslashes % 2 != 0;
}

/// The code of "\ud83d" at a backslash; 0 for anything else there.
char16_t escapedCode(QByteArrayView json, qsizetype at) {
    if (at + 6 > json.size() || json[at] != '\\' || json[at + 1] != 'u')
        return u'\0';
    bool isCode = false;
    const ushort code = json.sliced(at + 2, 4).toByteArray().toUShort(&isCode, 16);
    return isCode ? code : u'\0';
}

QByteArray withoutHalves(QByteArray json, qsizetype& halves) {
    constexpr qsizetype kEscape = 6;
    halves = 0;
    for (qsizetype at = json.indexOf('\\'); at >= 0; at = json.indexOf('\\', at)) {
        const char16_t code = escapedCode(json, at);
        if (QChar::isHighSurrogate(code) && QChar::isLowSurrogate(escapedCode(json, at + kEscape))) {
            at += 2 * kEscape;
        } else if (QChar::isSurrogate(code)) {
            json.replace(at, kEscape, "\\ufffd");
            at += kEscape;
            ++halves;
        } else {
            at += 2;
        }
    }
    return json;
}

} // namespace

QString fromUtf8(QByteArrayView utf8) {
    QString text = QString::fromUtf8(utf8);
    if (utf8.startsWith(kSignature))
        text.prepend(QChar(QChar::ByteOrderMark));
    return text.isNull() ? u""_s : text;
}

QByteArrayView withoutSignature(QByteArrayView file) {
    return file.startsWith(kSignature) ? file.sliced(kSignature.size()) : file;
}

QJsonDocument parseJson(const QByteArray& written, QJsonParseError* error, qsizetype* halves) {
    const QByteArray json = halves ? withoutHalves(written, *halves) : written;
    if (!json.contains(kSignature))
        return QJsonDocument::fromJson(json, error);
    // The parser reads each text as if it were a file. As an escape the character passes; outside of a text it is none.
    QByteArray escaped;
    qsizetype start = 0;
    for (qsizetype at = json.indexOf(kSignature); at >= 0; at = json.indexOf(kSignature, at + kSignature.size())) {
        if (isBehindBackslash(json, at))
            continue;
        escaped += QByteArrayView(json).sliced(start, at - start);
        escaped += "\\ufeff";
        start = at + kSignature.size();
    }
    escaped += QByteArrayView(json).sliced(start);
    return QJsonDocument::fromJson(escaped, error);
}

} // namespace velloria::platform
