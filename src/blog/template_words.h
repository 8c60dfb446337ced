// The words of blog templates. They are compared to the letter, with case; which of them an element understands, and
// what any other word means there, is told by the element's rows in template_check.cpp and done by the run.
#pragma once

#include <QStringView>

namespace velloria::blog::words {

// Instead of an address.
inline constexpr QStringView kRequired = u"Required"; ///< the user's data tell it
inline constexpr QStringView kNothing = u"Nothing";   ///< there is none; an empty value is another thing

// AutoLoginURL and LoginRedirect.
inline constexpr QStringView kTrue = u"TRUE";
inline constexpr QStringView kFalse = u"FALSE";
inline constexpr QStringView kFalseRenavigate = u"FALSERENAVIGATE"; ///< the same as FALSE
inline constexpr QStringView kRenavigate = u"RENAVIGATE";

// How an element is found, and how a form is sent.
inline constexpr QStringView kName = u"NAME";
inline constexpr QStringView kInput = u"INPUT";
inline constexpr QStringView kTextArea = u"TEXTAREA";
inline constexpr QStringView kSubmit = u"SUBMIT";
inline constexpr QStringView kSelect = u"SELECT";

// How a switch is set.
inline constexpr QStringView kNameCheckBox = u"NAMECHECKBOX";
inline constexpr QStringView kInputCheckBox = u"INPUTCHECKBOX";
inline constexpr QStringView kNameSelect = u"NAMESELECT";
inline constexpr QStringView kInputSelect = u"INPUTSELECT";
inline constexpr QStringView kDraftClickName = u"DRAFTCLICKNAME";
inline constexpr QStringView kDraftClickInput = u"DRAFTCLICKINPUT";

/// VALUE_x_No of NAMECHECKBOX and RADIO_VALUE_x_No of INPUTCHECKBOX: the box means the setting itself, else its
/// opposite.
inline constexpr QStringView kSameSense = u"1";

// Services with rules of their own, by the name that people see.
inline constexpr QStringView kAmebaBlog = u"アメーバブログ";
inline constexpr QStringView kYahooBlog = u"Yahoo!ブログ";

} // namespace velloria::blog::words
