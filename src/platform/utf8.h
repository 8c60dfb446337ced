// UTF-8 read to the last character. Qt takes U+FEFF in front of any text for the signature of a file and drops it; in a
// diary it is a character that somebody wrote.
#pragma once

#include <QByteArray>
#include <QJsonDocument>
#include <QString>

namespace velloria::platform {

/// The text, with a U+FEFF in front where there is one. A byte that starts no character reads as U+FFFD. Never null.
QString fromUtf8(QByteArrayView utf8);

/// A whole file behind its signature; one without a signature as it is.
QByteArrayView withoutSignature(QByteArrayView file);

/// One document whose texts keep a U+FEFF in front. In front of the document itself it is an error: a file loses its
/// signature before. An escape that is half of a character ("\ud83d" alone) makes a text that is no valid UTF-16.
/// Other programs leave such halves where they cut a text: for whoever takes their number in `halves` they read as
/// U+FFFD.
QJsonDocument parseJson(const QByteArray& json, QJsonParseError* error, qsizetype* halves = nullptr);

} // namespace velloria::platform
