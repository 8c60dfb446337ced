// Plain text as the HTML of an entry.
#pragma once

#include <QString>

namespace velloria::exchange {

/// `text` with "&", "<" and ">" as references.
QString htmlText(QStringView text);

/// The same for the value of an attribute in double quotes.
QString htmlAttribute(QStringView text);

/// Plain text with LF between lines as paragraphs: empty lines part them, a single line end becomes "<br>". No
/// character is lost; of more than one empty line the rest stays as empty lines of the HTML.
QString htmlParagraphs(const QString& text);

/// A short piece of HTML as it reads, without its tags and trimmed: the other way of htmlText.
QString plainOfHtml(const QString& html);

} // namespace velloria::exchange
