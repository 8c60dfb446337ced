// The lines of a profile file, parsed by characters of code page 932: the second byte of `ゾ` is a "]". For
// the profile_*.cpp alone. All views point into the bytes that were handed in.
#pragma once

#include <QByteArray>
#include <QString>

#include <optional>

namespace velloria::platform {

enum class LineKind {
    Header,
    Key,
    Other, ///< a comment, an empty line, a line without "="
};

struct Line {
    LineKind kind = LineKind::Other;
    QByteArrayView name;       ///< of the section or the key, without outer blanks
    QByteArrayView value;      ///< of a key, without outer blanks but with its quotes
    qsizetype begin = 0;       ///< where the line starts in the file
    qsizetype behindEqual = 0; ///< of a key: where its value part starts in the file
    qsizetype end = 0;         ///< behind its line break
};

/// The line that starts at `begin`. No trail byte equals a line break, so a character cut in half ends with its line.
Line lineAt(QByteArrayView file, qsizetype begin);

/// Where a key is, or would go.
struct Place {
    std::optional<Line> line;               ///< the key's, if it is there
    std::optional<qsizetype> behindLastKey; ///< of the section, behind its header when it has no key; if it is there
};

Place placeOf(QByteArrayView file, const QString& section, const QString& key);

/// A caller's name as it stands in the file. It loses its blanks but keeps its tabs: the platform finds no such name.
QByteArray storedName(const QString& name);

/// A value as it stands in the file, in one more pair of quotes when reading would take away its own.
QByteArray storedValue(const QString& value);

/// What two equal names have in common.
QByteArray comparable(QByteArrayView name);

/// Bytes of the file as text, references turned back.
QString decoded(QByteArrayView bytes);

/// Without the pair of equal quotes, single or double, in which the whole value stands.
QByteArrayView withoutQuotes(QByteArrayView value);

/// Without blanks and tabs, vertical ones too, at both ends. The ideographic blank stays.
QByteArrayView withoutBlanks(QByteArrayView bytes);

} // namespace velloria::platform
