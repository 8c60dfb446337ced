// The settings of the files beside the program, and of a favourite.
#pragma once

#include "core/setting.h"

namespace velloria::core::keys {

/// "endpoints.ini": the maker's pages.
inline constexpr SettingsSection kMaker{SettingsFile::Endpoints, u"Maker"};
inline constexpr Setting kMakerHomePage = kMaker.text(u"HomePage");
inline constexpr Setting kMakerBlog = kMaker.text(u"Blog");
inline constexpr Setting kMakerNews = kMaker.text(u"News");
inline constexpr Setting kMakerSoftware = kMaker.text(u"Software");
inline constexpr Setting kMakerUpdateFolder = kMaker.text(u"UpdateFolder");
/// The browser's home page.
inline constexpr Setting kBrowserHome = SettingsSection{SettingsFile::Endpoints, u"Browser"}.text(u"Home");
/// The hosts of the search sites: the name of a key is the site's place in the list, from 0.
inline constexpr Setting kSearchHost = SettingsSection{SettingsFile::Endpoints, u"Search"}.text({});
inline constexpr SettingsSection kAmazon{SettingsFile::Endpoints, u"Amazon"};
inline constexpr Setting kAmazonSession = kAmazon.text(u"Session");
inline constexpr Setting kAmazonTag = kAmazon.text(u"Tag");
/// The comment service.
inline constexpr SettingsSection kHaloScan{SettingsFile::Endpoints, u"HaloScan"};
inline constexpr Setting kHaloScanScript = kHaloScan.text(u"Script");
inline constexpr Setting kHaloScanHome = kHaloScan.text(u"Home");
inline constexpr Setting kHaloScanLogo = kHaloScan.text(u"Logo");
inline constexpr Setting kHaloScanAlt = kHaloScan.text(u"Alt");

/// "update.txt": 1 once the update was made.
inline constexpr Setting kUpdated = SettingsSection{SettingsFile::Update, u"Update"}.flag(u"Updated");
/// The running version, written by the program itself for the updater. A version that is missing is the first one that
/// could be updated.
constexpr Setting versionIn(QStringView section, QStringView name = u"version") {
    return SettingsSection{SettingsFile::Update, section}.text(name, u"1.6.0");
}
inline constexpr Setting kRunningVersion = versionIn(u"CurrentVersion");
/// What the maker offers.
inline constexpr SettingsSection kPatch{SettingsFile::Update, u"Patch"};
inline constexpr Setting kPatchVersion = versionIn(kPatch.name);
inline constexpr Setting kPatchRequiredVersion = versionIn(kPatch.name, u"requiredversion");
inline constexpr Setting kPatchUrl = kPatch.text(u"URL_Full");
inline constexpr Setting kPatchFileName = kPatch.text(u"FileName");
inline constexpr SettingsSection kRelease{SettingsFile::Update, u"Release"};
inline constexpr Setting kReleaseVersion = versionIn(kRelease.name);
inline constexpr Setting kReleaseUrl = kRelease.text(u"URL_Full");
inline constexpr Setting kReleaseFileName = kRelease.text(u"FileName");

/// "velluser.ini": who logged in last.
inline constexpr Setting kPreviousUser = SettingsSection{SettingsFile::Users, u"Previous"}.text(u"ID");
/// A user's own keys stand in the section named by the id.
inline constexpr SettingsSection kUser{SettingsFile::Users, {}};
inline constexpr Setting kUserId = kUser.text(u"ID");
inline constexpr Setting kUserPass = kUser.text(u"Pass"); ///< scrambled (convert/password_text.h)
inline constexpr Setting kUserPath = kUser.path(u"Path");

inline constexpr Setting kShortcutUrl = SettingsSection{SettingsFile::Shortcut, u"InternetShortcut"}.text(u"URL");

} // namespace velloria::core::keys
