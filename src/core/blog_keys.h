// What a blog template says of its service, and what the user's data say of one blog.
//
// A template is "BlogTemplate/<name>.ini": written for one service, and by other people. The user's data are a section
// of that name in "BlogUserData.ini": inSection(blog_user::kLoginID, name).
#pragma once

#include "core/setting.h"

#include <array>

namespace velloria::core::keys {

namespace blog_template {
/// The name that people see.
inline constexpr Setting kBlog = SettingsSection{SettingsFile::BlogTemplate, u"General"}.text(u"Blog", u"Blog");

inline constexpr SettingsSection kSimple{SettingsFile::BlogTemplate, u"Simple"};
inline constexpr Setting kPostURL = kSimple.text(u"PostURL");
inline constexpr Setting kLoginURL = kSimple.text(u"LoginURL");
inline constexpr Setting kNextURL = kSimple.text(u"NextURL");
inline constexpr Setting kManageURL = kSimple.text(u"ManageURL");
inline constexpr Setting kHTML2TXT = kSimple.text(u"HTML2TXT");

inline constexpr Setting kFormLogin = kSimple.number(u"FORM_LOGIN", u"0");
inline constexpr Setting kFormPost = kSimple.number(u"FORM_POST", u"0");
inline constexpr Setting kFormConfirm = kSimple.number(u"FORM_CONFIRM", u"0");
inline constexpr Setting kCheckObject = kSimple.text(u"CheckObject");
inline constexpr Setting kAutoLoginURL = kSimple.text(u"AutoLoginURL", u"TRUE");
inline constexpr Setting kLoginRedirect = kSimple.text(u"LoginRedirect", u"FALSE");
/// Whether the page hears of each change as of one of a person's.
inline constexpr Setting kEvents = kSimple.text(u"Events", u"FALSE");

inline constexpr Setting kValueLoginID = kSimple.text(u"VALUE_LoginID");
inline constexpr Setting kTypeLoginID = kSimple.text(u"Type_LoginID", u"NAME");
inline constexpr Setting kValuePassword = kSimple.text(u"VALUE_Password");
inline constexpr Setting kTypePassword = kSimple.text(u"Type_Password", u"NAME");
inline constexpr Setting kValueNext = kSimple.text(u"VALUE_Next");
inline constexpr Setting kTypeNext = kSimple.text(u"Type_Next", u"NAME");
inline constexpr Setting kValueLogin = kSimple.text(u"VALUE_Login");
inline constexpr Setting kTypeLogin = kSimple.text(u"Type_Login", u"NAME");
inline constexpr Setting kValueTitle = kSimple.text(u"VALUE_Title");
inline constexpr Setting kTypeTitle = kSimple.text(u"Type_Title", u"NAME");
inline constexpr Setting kValueBody = kSimple.text(u"VALUE_Body");
inline constexpr Setting kTypeBody = kSimple.text(u"Type_Body", u"NAME");
inline constexpr Setting kValueGenre = kSimple.text(u"VALUE_Genre");
inline constexpr Setting kValueGenre2 = kSimple.text(u"VALUE_Genre2");
inline constexpr Setting kTypeGenre = kSimple.text(u"Type_Genre", u"SELECT");
inline constexpr Setting kValuePost = kSimple.text(u"VALUE_Post");
inline constexpr Setting kTypePost = kSimple.text(u"Type_Post", u"NAME");
inline constexpr Setting kValueConfirm = kSimple.text(u"VALUE_Confirm");
inline constexpr Setting kTypeConfirm = kSimple.text(u"Type_Confirm", u"NAME");

/// The rows of one switch. The two "RADIO" names are spelt differently in their ends.
struct SwitchRows {
    Setting type;
    Setting yes;
    Setting no;
    Setting radioYes;
    Setting radioNo;
};
inline constexpr SwitchRows kUnderWrite{kSimple.text(u"Type_UnderWrite", u"NAME"),
                                        kSimple.text(u"VALUE_UnderWrite_Yes"), kSimple.text(u"VALUE_UnderWrite_No"),
                                        kSimple.text(u"RADIO_VALUE_UnderWrite_YES"),
                                        kSimple.text(u"RADIO_VALUE_UnderWrite_No")};
inline constexpr SwitchRows kAcceptComment{
    kSimple.text(u"Type_AcceptComment", u"NAME"), kSimple.text(u"VALUE_AcceptComment_Yes"),
    kSimple.text(u"VALUE_AcceptComment_No"), kSimple.text(u"RADIO_VALUE_AcceptComment_YES"),
    kSimple.text(u"RADIO_VALUE_AcceptComment_No")};
inline constexpr SwitchRows kAcceptPing{kSimple.text(u"Type_AcceptPing", u"NAME"),
                                        kSimple.text(u"VALUE_AcceptPing_Yes"), kSimple.text(u"VALUE_AcceptPing_No"),
                                        kSimple.text(u"RADIO_VALUE_AcceptPing_YES"),
                                        kSimple.text(u"RADIO_VALUE_AcceptPing_No")};

/// Every row but those of the switches.
inline constexpr std::array kAllButSwitches{
    kBlog,        kPostURL,       kLoginURL,     kNextURL,      kManageURL,     kHTML2TXT,    kFormLogin,
    kFormPost,    kFormConfirm,   kCheckObject,  kAutoLoginURL, kLoginRedirect, kEvents,      kValueLoginID,
    kTypeLoginID, kValuePassword, kTypePassword, kValueNext,    kTypeNext,      kValueLogin,  kTypeLogin,
    kValueTitle,  kTypeTitle,     kValueBody,    kTypeBody,     kValueGenre,    kValueGenre2, kTypeGenre,
    kValuePost,   kTypePost,      kValueConfirm, kTypeConfirm};
inline constexpr std::array kSwitches{kUnderWrite, kAcceptComment, kAcceptPing};
} // namespace blog_template

namespace blog_user {
/// The section's name is that of the template.
inline constexpr SettingsSection kSection{SettingsFile::BlogUserData, {}};
inline constexpr Setting kLoginID = kSection.text(u"LoginID");
inline constexpr Setting kPassword = kSection.text(u"Password"); ///< scrambled
inline constexpr Setting kPostURL = kSection.text(u"PostURL");
inline constexpr Setting kNextURL = kSection.text(u"NextURL");
inline constexpr Setting kManagementURL = kSection.text(u"ManagementURL");
inline constexpr Setting kAccessURL = kSection.text(u"AccessURL");
inline constexpr std::array kAll{kLoginID, kPassword, kPostURL, kNextURL, kManagementURL, kAccessURL};
} // namespace blog_user

} // namespace velloria::core::keys
