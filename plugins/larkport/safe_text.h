// Texts in a form that every reader of this format takes whole, and back. The readers know no escaping: a line of
// hyphens ends a text, one that begins with a key is swallowed, blank ends of lines and empty lines vanish, and a line
// is cut behind 8,191 bytes.
#pragma once

#include <string>
#include <string_view>

namespace velloria::plugins::larkport {

/// An HTML text that looks the same in a page, in lines that end in LF and none of which means anything to a reader.
/// What is added is a comment wherever there can be one, and "<p>" behind an empty line.
std::string safeText(std::string_view html);

/// Takes out what `safeText` has added; lines end in CR LF. That gives the very text back unless it had odd line ends,
/// or a tag, a comment or a script of it had to be changed.
std::string plainText(std::string_view safe);

/// A title or label as one line of readable length.
std::string safeLine(std::string_view text);

/// Any text as one line without meaning, for keys of our own, and back.
std::string escapedLine(std::string_view text);
std::string unescapedLine(std::string_view line);

} // namespace velloria::plugins::larkport
