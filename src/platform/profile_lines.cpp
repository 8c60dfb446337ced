#include "platform/profile_lines.h"

#include "platform/code_page.h"

#include <algorithm>

using namespace Qt::StringLiterals;

namespace velloria::platform {
namespace {

QByteArrayView withoutOuter(QByteArrayView bytes, QByteArrayView blanks) {
    while (!bytes.isEmpty() && blanks.contains(bytes.front()))
        bytes = bytes.sliced(1);
    while (!bytes.isEmpty() && blanks.contains(bytes.back()))
        bytes.chop(1);
    return bytes;
}

/// Where the character `wanted` first stands, -1 when it is missing. A trail byte is no character.
qsizetype indexOfCharacter(QByteArrayView bytes, char wanted) {
    for (qsizetype at = 0; at < bytes.size(); at += characterLength(bytes, at)) {
        if (bytes[at] == wanted)
            return at;
    }
    return -1;
}

/// A text of the caller in the form in which it can stand in a line.
QByteArray stored(const QString& text) {
    QString line = text.left(text.indexOf(u'\0'));
    line.replace(u"\r\n"_s, u" "_s).replace(u'\r', u' ').replace(u'\n', u' ');
    return toCodePage(line);
}

} // namespace

QByteArrayView withoutBlanks(QByteArrayView bytes) {
    return withoutOuter(bytes, " \t\v");
}

QByteArrayView withoutQuotes(QByteArrayView value) {
    const bool isQuoted =
        value.size() >= 2 && value.front() == value.back() && (value.front() == '"' || value.front() == '\'');
    return isQuoted ? value.sliced(1, value.size() - 2) : value;
}

QString decoded(QByteArrayView bytes) {
    return decodeReferences(fromCodePage(bytes));
}

QByteArray comparable(QByteArrayView name) {
    // Lower case of UTF-8 is that of ASCII alone.
    const bool isPlain = std::all_of(name.begin(), name.end(), [](char c) { return uchar(c) < 0x80 && c != '&'; });
    return isPlain ? name.toByteArray().toLower() : decoded(name).toUtf8().toLower();
}

Line lineAt(QByteArrayView file, qsizetype begin) {
    Line line;
    line.begin = begin;
    line.end = begin;
    while (line.end < file.size() && file[line.end] != '\r' && file[line.end] != '\n')
        ++line.end;
    const QByteArrayView all = file.sliced(begin, line.end - begin);
    if (line.end < file.size())
        line.end += file.sliced(line.end).startsWith("\r\n") ? 2 : 1;

    const QByteArrayView text = withoutBlanks(all);
    if (text.startsWith('[')) {
        const QByteArrayView behind = text.sliced(1);
        const qsizetype close = indexOfCharacter(behind, ']');
        line.kind = LineKind::Header;
        line.name = withoutBlanks(close < 0 ? behind : behind.first(close));
    } else if (const qsizetype equal = indexOfCharacter(all, '='); equal >= 0 && !text.startsWith(';')) {
        line.kind = LineKind::Key;
        line.name = withoutBlanks(all.first(equal));
        line.value = withoutBlanks(all.sliced(equal + 1));
        line.behindEqual = begin + equal + 1;
    }
    return line;
}

QByteArray storedName(const QString& name) {
    const QByteArray bytes = stored(name);
    return withoutOuter(bytes, " ").toByteArray();
}

QByteArray storedValue(const QString& value) {
    const QByteArray bytes = stored(value);
    const QByteArrayView read = withoutBlanks(bytes);
    return withoutQuotes(read).size() < read.size() ? '"' + bytes + '"' : bytes;
}

Place placeOf(QByteArrayView file, const QString& section, const QString& key) {
    const QByteArray wantedSection = comparable(storedName(section));
    const QByteArray wantedKey = comparable(storedName(key));
    Place place;
    for (qsizetype at = 0; at < file.size();) {
        const Line line = lineAt(file, at);
        at = line.end;
        if (line.kind == LineKind::Header) {
            if (place.behindLastKey)
                break;
            if (comparable(line.name) == wantedSection)
                place.behindLastKey = line.end;
        } else if (line.kind == LineKind::Key && place.behindLastKey) {
            if (comparable(line.name) == wantedKey) {
                place.line = line;
                break;
            }
            place.behindLastKey = line.end;
        }
    }
    return place;
}

} // namespace velloria::platform
