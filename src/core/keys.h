// The settings of the user's "diary.ini".
#pragma once

#include "core/setting.h"

namespace velloria::core::keys {

inline constexpr SettingsSection kAll{SettingsFile::Diary, u"ALL"};
inline constexpr Setting kDataPath = kAll.path(u"DataPath");
inline constexpr Setting kSaveFilePath = kAll.path(u"SaveFilePath");
inline constexpr Setting kSaveFileName = kAll.path(u"SaveFileName");
inline constexpr Setting kDBVersion = kAll.number(u"DBVersion");
inline constexpr Setting kClipWithHTML = kAll.flag(u"ClipWithHTML");
inline constexpr Setting kRescue = kAll.text(u"Rescue", u"1");       ///< all but "0": what goes is kept
inline constexpr Setting kPrivateFiles = kAll.flag(u"PrivateFiles"); ///< 1: files of private entries go too
inline constexpr Setting kMenuLanguage = kAll.text(u"MenuLanguage");
inline constexpr Setting kImagePath = kAll.path(u"IMGPath");           ///< where the picture window begins
inline constexpr Setting kLogResistPath = kAll.path(u"LogResistPath"); ///< where the log register begins
inline constexpr Setting kLoadCustPath = kAll.path(u"LoadCustPath");   ///< where the import of customize sets begins
inline constexpr Setting kSaveCustPath = kAll.path(u"SaveCustPath");   ///< where their export begins

inline constexpr SettingsSection kInitialize{SettingsFile::Diary, u"Initialize"};
inline constexpr Setting kShowStartUpForm = kInitialize.flag(u"ShowStartUpForm");
inline constexpr Setting kWindowMaximize = kInitialize.flag(u"WindowMaximize");
inline constexpr Setting kWindowPosition = kInitialize.number(u"WindowPosition");

/// Where windows stood.
inline constexpr PlaceSettings kParentFormPlace = placeIn(u"ParentForm");
inline constexpr PlaceSettings kCalenderPlace = placeIn(u"Calender");
inline constexpr PlaceSettings kDiaryEditerPlace = placeIn(u"DiaryEditer");
inline constexpr PlaceSettings kBrowserPlace = placeIn(u"Browser");
inline constexpr PlaceSettings kMiniBrowserPlace = placeIn(u"miniBrowser");
inline constexpr PlaceSettings kPrevDiaryViewerPlace = placeIn(u"PrevDiaryViewer");
inline constexpr PlaceSettings kExportPlace = placeIn(u"Export");
inline constexpr PlaceSettings kFindPlace = placeIn(u"Find");
inline constexpr PlaceSettings kLogPlace = placeIn(u"Log");
inline constexpr PlaceSettings kPreferencePlace = placeIn(u"Preference");
inline constexpr PlaceSettings kExportCustFilePlace = placeIn(u"ExportCustFile");
inline constexpr PlaceSettings kMemoPlace = placeIn(u"Memo"); // of the memo program
inline constexpr PlaceSettings kBlogManagerPlace = placeIn(u"BlogManager");

inline constexpr SettingsSection kCustomize{SettingsFile::Diary, u"Customize"};
inline constexpr PlaceSettings kCustomizePlace =
    placeUnder(kCustomize.number(u"WindowPosTop"), kCustomize.number(u"WindowPosLeft"));
inline constexpr PlaceSettings kCustomizeSelectionPlace =
    placeUnder(kCustomize.number(u"CstSlct_WindowPosTop"), kCustomize.number(u"CstSlct_WindowPosLeft"));
inline constexpr SettingsSection kFrame{SettingsFile::Diary, u"Frame"};
inline constexpr PlaceSettings kFramePlace =
    placeUnder(kFrame.number(u"WindowPosTop"), kFrame.number(u"WindowPosLeft"));

inline constexpr SettingsSection kDiaryEditer{SettingsFile::Diary, u"DiaryEditer"};
inline constexpr Setting kContentsFontSize =
    kDiaryEditer.text(u"ContentsFontSize", u"12"); ///< in points, with fractions
inline constexpr Setting kPTagAdd = kDiaryEditer.text(u"P_TagAdd");

/// The blog that was picked last in the calendar, and in the window of the user's data of blogs.
inline constexpr Setting kSelectedBlog = SettingsSection{SettingsFile::Diary, u"Calender"}.text(u"Blog", u"mixi");
inline constexpr Setting kManagedBlog = SettingsSection{SettingsFile::Diary, u"BlogManager"}.text(u"Blog", u"mixi");

inline constexpr SettingsSection kBrowser{SettingsFile::Diary, u"Browser"};
inline constexpr Setting kUrlHistory = kBrowser.flag(u"URLHistory");
inline constexpr Setting kFindHistory = kBrowser.flag(u"FindHistory");
inline constexpr Setting kFindSite = kBrowser.number(u"FindSite"); ///< of 32 bits
inline constexpr Setting kFavoriteSort = kBrowser.flag(u"FavoriteSort");

inline constexpr Setting kDefaultLoadPath =
    SettingsSection{SettingsFile::Diary, u"FileResist"}.path(u"DefaultLoadPath");

/// What the picture window was left with.
inline constexpr SettingsSection kImageTag{SettingsFile::Diary, u"ImageTag"};
inline constexpr Setting kAddDivText = kImageTag.text(u"AddDivText");
inline constexpr Setting kTagOtherText = kImageTag.text(u"TagOtherText");

inline constexpr Setting kRealTime = kCustomize.flag(u"RealTime"); ///< each change of the look is shown at once

/// The author who signed the customize set that was exported last.
inline constexpr SettingsSection kExportCustFile{SettingsFile::Diary, u"ExportCustFile"};
inline constexpr Setting kExportCustName = kExportCustFile.text(u"Name");
inline constexpr Setting kExportCustUrl = kExportCustFile.text(u"URL");
inline constexpr Setting kExportCustEmail = kExportCustFile.text(u"E-Mail");

/// The user's web server.
inline constexpr SettingsSection kFtp{SettingsFile::Diary, u"FTP"};
inline constexpr Setting kFtpId = kFtp.text(u"ID");
inline constexpr Setting kFtpPass = kFtp.text(u"Pass"); ///< scrambled (convert/password_text.h)
inline constexpr Setting kFtpUrl = kFtp.text(u"URL");
inline constexpr Setting kFtpStartFolder = kFtp.text(u"StartFolder");
inline constexpr Setting kFtpPassive = kFtp.flag(u"PASV");
inline constexpr Setting kFtpPing = kFtp.flag(u"PING");
inline constexpr SettingsSection kFtp2{SettingsFile::Diary, u"FTP2"};
inline constexpr Setting kHtmlOnlyUpload = kFtp2.flag(u"HTMLOnlyUpload");
inline constexpr Setting kTls = kFtp2.text(u"TLS"); ///< 0 or empty off, 1 when offered, all else required
inline constexpr Setting kSoundFile = kFtp2.path(u"SoundFile");

/// Where the other files of the user are.
constexpr Setting iniFileNameIn(QStringView section) {
    return SettingsSection{SettingsFile::Diary, section}.path(u"IniFileName");
}
inline constexpr Setting kCustomizeIni = iniFileNameIn(u"Customize");
inline constexpr Setting kFrameIni = iniFileNameIn(u"Frame");
inline constexpr Setting kRssIni = iniFileNameIn(u"RSS");
inline constexpr Setting kHaloScanIni = iniFileNameIn(u"HaloScan");
inline constexpr Setting kBlogIni = iniFileNameIn(u"Blog");

} // namespace velloria::core::keys
