// Texts of the diary, HTML as it was typed, so that the notation leaves them as they are.
#pragma once

#include <string>
#include <string_view>

namespace velloria::plugins::wrenport {

/// The text with LF between its lines and without what XML forbids.
std::string shownText(std::string_view text);

/// A text of several lines in which nothing is a mark of the notation: references stand in the place of marks.
std::string shownHtml(std::string_view text);

/// A title as it stands behind the label of a heading, or without one.
std::string shownTitle(std::string_view title, bool hasLabel);

/// Undoes the references that the others made.
std::string withoutReferences(std::string_view text);

} // namespace velloria::plugins::wrenport
