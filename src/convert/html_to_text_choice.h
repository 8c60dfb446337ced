// What the settings window of the HTML to text converter shows, and how it comes out of the file and into it.
#pragma once

#include <QString>

#include <array>
#include <optional>
#include <span>

namespace velloria::convert {

/// The tags of the list of HTML mode, in its order; "HTML_" and the tag is the setting's name.
std::span<const QStringView> listedHtmlTags();

/// The check boxes of text mode by the setting's name, in the order in which they are set.
std::span<const QStringView> textModeBoxes();

/// As the window stands before it has read anything: what a missing key means.
struct HtmlToTextChoice {
    bool isTextMode = true;
    std::array<bool, 13> htmlTags{}; ///< by the order of listedHtmlTags()
    std::array<bool, 8> textBoxes;   ///< by the order of textModeBoxes()
    QString ruleLength;              ///< how many "-" a rule becomes, as it is typed
    int linkTagType = 1;             ///< any other than 0 to 2: none of the three

    HtmlToTextChoice();
};

/// Nothing when the file is missing or holds a number out of range.
std::optional<HtmlToTextChoice> readHtmlToTextChoice(const QString& file);

/// Writes every setting. Those that the window does not show become 0, and the link treatment takes the value of the
/// box for line breaks, whatever is chosen. False when the file did not take it. Throws platform::Failure, with the
/// file as it was, when the length of a rule is no number.
bool saveHtmlToTextChoice(const QString& file, const HtmlToTextChoice& choice);

} // namespace velloria::convert
