// A day's text of RedNotebook as HTML.
#pragma once

#include "exchange/formats/foreign_diary.h"
#include "exchange/formats/rednotebook_inline.h"

namespace velloria::exchange {

/// The words of a heading line "=== words ===" of any level; nothing for every other line.
std::optional<QString> redNotebookHeading(QStringView line);

/// Whether the line is a rule of twenty and more "=".
bool isRedNotebookRule(QStringView line);

/// Text with LF between lines as HTML: paragraphs, headings, nested lists, tables, quotes, verbatim, raw and HTML
/// blocks, rules. A comment is no part of it, as in RedNotebook itself, and counted.
QString redNotebookHtml(const QString& text, const RedNotebookLinks& links, Losses& losses);

} // namespace velloria::exchange
