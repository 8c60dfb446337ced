// Plain text as the HTML of an entry.
#pragma once

#include <QString>

namespace velloria::exchange {

/// `text` with "&", "<", ">" and double quotes as references, for a text or the value of an attribute.
QString htmlText(QStringView text);

/// Plain text with LF between lines as paragraphs: empty lines part them, a single line end becomes "<br>". No
/// character is lost; of more than one empty line the rest stays as empty lines of the HTML.
QString htmlParagraphs(const QString& text);

} // namespace velloria::exchange
