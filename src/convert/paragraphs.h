// Plain paragraphs as paragraph tags.
#pragma once

#include "core/session.h"

#include <QString>

namespace velloria::convert {

/// The opening of a paragraph, "<P>", with the user's attributes if there are some.
QString paragraphOpening(const core::Session& session);

/// `text` with line ends of CR LF as paragraphs: two line ends part them, one becomes "<BR>" and a line end. `opening`
/// is the tag in front of each. The replacements run over the whole text in a fixed order, also over tags that stood in
/// it.
QString addParagraphTags(const QString& text, const QString& opening);

} // namespace velloria::convert
