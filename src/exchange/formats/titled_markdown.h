// Markdown whose first line is the title.
#pragma once

#include <QString>

namespace velloria::exchange {

struct TitledMarkdown {
    QString title; ///< without any marks; "" when the text begins with no heading
    QString body;  ///< what stands behind it
};

/// Takes a heading that is the first line off a text.
TitledMarkdown titledMarkdown(const QString& markdown);

/// How a text without a title begins: its first line, a longer one cut.
QString firstWords(const QString& markdown);

/// A line of Markdown as it reads.
QString plainMarkdown(const QString& line);

} // namespace velloria::exchange
