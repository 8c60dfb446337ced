// Markdown as HTML, with the extensions that sites are written in: tables, strikethrough, footnotes, bare addresses.
#pragma once

#include <QString>

namespace velloria::exchange {

enum class LineBreaks {
    Blanks, ///< as Markdown has it: a single line end is a blank
    Breaks, ///< as people see it who write in a program that shows it as one: "<br />"
};

/// HTML within the Markdown stays as it is. LF between lines.
QString htmlOfMarkdown(const QString& markdown, LineBreaks breaks = LineBreaks::Blanks);

} // namespace velloria::exchange
