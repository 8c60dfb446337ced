// The settings keys, each spelt once. An odd spelling is the file format's.
#pragma once

#include "core/ini.h"

#include <QLatin1StringView>

namespace velloria::core {

struct Key {
    QLatin1StringView section;
    QLatin1StringView name;
};

/// Keys of "diary.ini" that the shell and the commands use.
namespace keys {
inline constexpr QLatin1StringView kAll("ALL");
inline constexpr QLatin1StringView kIniFileName("IniFileName");

inline constexpr Key kDataPath{kAll, QLatin1StringView("DataPath")};
inline constexpr Key kSaveFilePath{kAll, QLatin1StringView("SaveFilePath")};
inline constexpr Key kSaveFileName{kAll, QLatin1StringView("SaveFileName")};
inline constexpr Key kDBVersion{kAll, QLatin1StringView("DBVersion")};
inline constexpr Key kClipWithHTML{kAll, QLatin1StringView("ClipWithHTML")};
inline constexpr Key kRescue{kAll, QLatin1StringView("Rescue")};
inline constexpr Key kPrivateFiles{kAll, QLatin1StringView("PrivateFiles")}; ///< 1: files of private entries go too
inline constexpr Key kMenuLanguage{kAll, QLatin1StringView("MenuLanguage")};

inline constexpr Key kShowStartUpForm{QLatin1StringView("Initialize"), QLatin1StringView("ShowStartUpForm")};
inline constexpr Key kWindowMaximize{QLatin1StringView("Initialize"), QLatin1StringView("WindowMaximize")};
inline constexpr Key kWindowPosition{QLatin1StringView("Initialize"), QLatin1StringView("WindowPosition")};

/// Sections of window places.
inline constexpr QLatin1StringView kParentForm("ParentForm");
inline constexpr QLatin1StringView kCalender("Calender");
inline constexpr QLatin1StringView kDiaryEditer("DiaryEditer");
inline constexpr QLatin1StringView kBrowser("Browser");
inline constexpr QLatin1StringView kExport("Export");
inline constexpr QLatin1StringView kFind("Find");
inline constexpr QLatin1StringView kLog("Log");

inline constexpr Key kContentsFontSize{kDiaryEditer, QLatin1StringView("ContentsFontSize")};
inline constexpr Key kPTagAdd{kDiaryEditer, QLatin1StringView("P_TagAdd")};
inline constexpr Key kSelectedBlog{kCalender, QLatin1StringView("Blog")};

/// Where file dialogs begin, and what the picture window was left with.
inline constexpr Key kImagePath{kAll, QLatin1StringView("IMGPath")};
inline constexpr Key kLogResistPath{kAll, QLatin1StringView("LogResistPath")};
inline constexpr Key kDefaultLoadPath{QLatin1StringView("FileResist"), QLatin1StringView("DefaultLoadPath")};
inline constexpr Key kAddDivText{QLatin1StringView("ImageTag"), QLatin1StringView("AddDivText")};
inline constexpr Key kTagOtherText{QLatin1StringView("ImageTag"), QLatin1StringView("TagOtherText")};

/// The user's web server.
inline constexpr QLatin1StringView kFtp("FTP");
inline constexpr QLatin1StringView kFtp2("FTP2");
inline constexpr Key kFtpId{kFtp, QLatin1StringView("ID")};
inline constexpr Key kFtpPass{kFtp, QLatin1StringView("Pass")};
inline constexpr Key kFtpUrl{kFtp, QLatin1StringView("URL")};
inline constexpr Key kFtpStartFolder{kFtp, QLatin1StringView("StartFolder")};
inline constexpr Key kFtpPassive{kFtp, QLatin1StringView("PASV")};
inline constexpr Key kFtpPing{kFtp, QLatin1StringView("PING")};
inline constexpr Key kHtmlOnlyUpload{kFtp2, QLatin1StringView("HTMLOnlyUpload")};
inline constexpr Key kTls{kFtp2, QLatin1StringView("TLS")}; ///< 0 or empty off, 1 when offered, all else required
inline constexpr Key kSoundFile{kFtp2, QLatin1StringView("SoundFile")};

inline constexpr Key kCustomizeIni{QLatin1StringView("Customize"), kIniFileName};
inline constexpr Key kFrameIni{QLatin1StringView("Frame"), kIniFileName};
inline constexpr Key kRssIni{QLatin1StringView("RSS"), kIniFileName};
inline constexpr Key kHaloScanIni{QLatin1StringView("HaloScan"), kIniFileName};
inline constexpr Key kBlogIni{QLatin1StringView("Blog"), kIniFileName};

/// "endpoints.ini": the maker's pages.
inline constexpr Key kMakerHomePage{QLatin1StringView("Maker"), QLatin1StringView("HomePage")};
inline constexpr Key kMakerBlog{QLatin1StringView("Maker"), QLatin1StringView("Blog")};
inline constexpr Key kMakerNews{QLatin1StringView("Maker"), QLatin1StringView("News")};
inline constexpr Key kMakerSoftware{QLatin1StringView("Maker"), QLatin1StringView("Software")};
inline constexpr Key kMakerUpdateFolder{QLatin1StringView("Maker"), QLatin1StringView("UpdateFolder")};

/// "update.txt": 1 once the update was made.
inline constexpr Key kUpdated{QLatin1StringView("Update"), QLatin1StringView("Updated")};
/// The running version, written by the program itself for the updater.
inline constexpr Key kRunningVersion{QLatin1StringView("CurrentVersion"), QLatin1StringView("version")};
/// What the maker offers: the sections, and the keys in each. `requiredversion` stands in the patch alone.
inline constexpr QLatin1StringView kPatch("Patch");
inline constexpr QLatin1StringView kRelease("Release");
inline constexpr QLatin1StringView kOfferVersion("version");
inline constexpr QLatin1StringView kOfferRequiredVersion("requiredversion");
inline constexpr QLatin1StringView kOfferUrl("URL_Full");
inline constexpr QLatin1StringView kOfferFileName("FileName");

/// "velluser.ini": the last login; a user's own keys stand in the section named by the id.
inline constexpr Key kPreviousUser{QLatin1StringView("Previous"), QLatin1StringView("ID")};
inline constexpr QLatin1StringView kUserId("ID");
inline constexpr QLatin1StringView kUserPass("Pass");
inline constexpr QLatin1StringView kUserPath("Path");
} // namespace keys

inline QString ReadIni(const QString& file, const Key& key) {
    return ReadIni(file, key.section, key.name);
}

inline qint16 ReadIniIntDef(const QString& file, const Key& key, qint16 defaultValue) {
    return ReadIniIntDef(file, key.section, key.name, defaultValue);
}

inline void WriteIni(const QString& file, const Key& key, const QString& value) {
    WriteIni(file, key.section, key.name, value);
}

} // namespace velloria::core
