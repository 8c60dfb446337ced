// Texts as they travel to an FTP server: plain functions. A text that can't travel is nothing, not a failure; who asks
// refuses it before anything is sent.
#pragma once

#include <QByteArray>
#include <QString>

#include <optional>

namespace velloria::publish {

/// The bytes of the code page; nothing for a text that it lacks, or that would end the command line before its end.
std::optional<QByteArray> wireText(const QString& text);

/// The same for the name of a file or folder, which may not be empty.
std::optional<QByteArray> wireName(const QString& name);

/// What a server has sent, as UTF-8 when it is that, else in the code page; the part before the first NUL.
QString textFromWire(const QByteArray& bytes);

/// A host name or number as the name service takes it, Japanese ones encoded; nothing for what is no host alone.
std::optional<QByteArray> wireHost(const QString& host);

} // namespace velloria::publish
