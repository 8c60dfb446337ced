// Standard input, output and error of the command line tool, all UTF-8.
#pragma once

#include <QByteArray>
#include <QString>

#include <optional>

namespace velloria::cli {

enum class Echo { On, Off };

/// Control characters but tab and line feed as \uXXXX, which JSON reads as well: what a file or a name holds is not to
/// command the terminal.
QString harmless(const QString& text);

/// Comes before anything that opens a file: the number of a closed standard stream would go to that file, and results
/// into it. From here on reading and writing such a stream fails.
void occupyClosedStreams();

/// Results. Throws platform::Failure when they can't be written (a full disk, a closed pipe).
void writeOutput(const QByteArray& bytes);
void writeLine(const QString& line);

/// A line, or a part of one, on standard error.
void writeError(const QString& line);
void writeErrorPart(const QString& text);
bool standardErrorIsTerminal();
bool standardOutputIsTerminal();

/// All of standard input. Throws platform::Failure when it can't be read.
QByteArray readInput();

/// A line of standard input, and no more of it; on a terminal it is asked for and not shown. Nothing when there is no
/// line. Throws platform::Failure when it can't be read or is no UTF-8.
std::optional<QString> readSecretLine(const QString& prompt);

/// Asks on the terminal; nothing when standard input is none.
std::optional<QString> askOnTerminal(const QString& prompt, Echo echo);

} // namespace velloria::cli
