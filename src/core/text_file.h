// Text files in code page 932: pieces of pages read whole, list and CSV files line by line.
#pragma once

#include <QString>
#include <QStringList>

#include <utility>

namespace velloria::core {

/// The whole file as it stands, line ends included; "" when the path is empty, names no file, or can't be read. What is
/// to be written back must be read otherwise.
QString ReadTextFile(const QString& path);

/// The lines of a list or CSV file with references turned back; CR LF and LF both end a line. A missing file has none.
/// Throws Failure for one that can't be read, and for a link that leads nowhere: taken for an empty list, it would soon
/// be one.
QStringList readLines(const QString& path);

/// The same of the text of such a file.
QStringList linesOf(QString text);

/// The first two of a line's fields, which commas part: white space in front of a field is skipped, and a field in
/// double quotes may hold commas. A field that is missing is "", one whose quotes never close ends with the line.
std::pair<QString, QString> twoFields(const QString& line);

/// Replaces the file by these lines, each with CR LF. Throws Failure.
void writeLines(const QString& path, const QStringList& lines);

} // namespace velloria::core
