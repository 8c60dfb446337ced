// The files and folders of the program, each named once, with the folder that it lies in.
//
//     platform::removeFile(core::files::kPreview.in(session));
//     const QString parts = platform::existingPath(core::files::kParts.below(session.FilePath));
//
// A folder brought from a Windows disk may spell a name in another case: platform::existingPath tells how it is spelt.
#pragma once

#include "core/session.h"

#include <QLatin1StringView>

namespace velloria::core {

/// A file or folder of the program. A folder's name bears no separator at its end.
struct File {
    QString Session::*folder; ///< where it lies
    QLatin1StringView name;   ///< in that folder

    /// Its full path.
    QString in(const Session& session) const { return session.*folder + name; }
    /// The path of what bears its name in another folder, which ends in a separator: the program's own copy, a part of
    /// the site.
    QString below(const QString& other) const { return other + name; }
};

namespace files {

constexpr File ofProgram(const char* name) {
    return {&Session::MyPath, QLatin1StringView(name)};
}

constexpr File ofUser(const char* name) {
    return {&Session::UserPath, QLatin1StringView(name)};
}

constexpr File ofData(const char* name) {
    return {&Session::DataPath, QLatin1StringView(name)};
}

/// Beside the program: what it comes with, and what is the same for every user.
inline constexpr File kUsers = ofProgram("velluser.ini");
inline constexpr File kUserData = ofProgram("UserData"); ///< the user's folder when there are no users
inline constexpr File kEndpoints = ofProgram("endpoints.ini");
inline constexpr File kFirstSettings = ofProgram("default.ini");
inline constexpr File kFirstDiary = ofProgram("default.mdb");
inline constexpr File kFirstCustomizeIni = ofProgram("Customize.ini");
inline constexpr File kFirstCustomize = ofProgram("Customize"); ///< further customize sets with their text pieces
inline constexpr File kFirstTextFormat = ofProgram("TEXT.txt");
inline constexpr File kFirstHtmlFormat = ofProgram("HTML.txt");
inline constexpr File kHtmlToText = ofProgram("HTML2TXT.ini");
inline constexpr File kFeedHtmlToText = ofProgram("HTML2TXT_RSS.ini");
inline constexpr File kColours = ofProgram("colorname.csv");
inline constexpr File kLogScript = ofProgram("JS_Log.txt");
inline constexpr File kTitlePicture = ofProgram("title.bmp");
inline constexpr File kSimpleManual = ofProgram("SimpleManual.mht");
inline constexpr File kManual = ofProgram("Manual.mht");
/// The customize set as it was before its dialog began to change it, and the name of that set.
inline constexpr File kCustomizeBackup = ofProgram("Customize.bak");
inline constexpr File kCustomizeBackupOf = ofProgram("Customize.bak.set");
inline constexpr File kMemo = ofProgram("VellMemo.exe");

/// The check for updates: what the maker offers, the archives that were saved, the updater and the copy that runs.
inline constexpr File kOffers = ofProgram("update.txt");
inline constexpr File kArchives = ofProgram("update.lst"); ///< names, one a line
inline constexpr File kUpdater = ofProgram("VellUpdater.exe");
inline constexpr File kUpdaterCopy = ofProgram("VellUpTmp.exe");
inline constexpr File kArchiveLibrary = ofProgram("UnLHA32.DLL");

/// Plug-ins.
inline constexpr File kChimer = ofProgram("Chimer.dll");
inline constexpr File kLarkport = ofProgram("Larkport.dll");
inline constexpr File kWrenport = ofProgram("Wrenport.dll");
inline constexpr File kVellInfo = ofProgram("VellInfo.dll");

/// In a user's own copy of the program folder: the plug-ins and the memo program that it has had, a name a line.
inline constexpr File kSeededList = ofProgram("seeded.lst");

/// The user's: settings, diary, and what keeps texts of it.
inline constexpr File kSettings = ofUser("diary.ini");
inline constexpr File kDiary = ofUser("diary.mdb");
inline constexpr File kBackup = ofUser("diarymdb.bak"); ///< older ones end in ".1" to ".3" behind that
inline constexpr File kBackupLock = ofUser("diarymdb.lock");
inline constexpr File kReplacedDiary = ofUser("diarymdb.replaced.bak");
/// A copy of the diary for each day, "diary-yyyymmdd.mdb" (store/backup_names.h), and the one that is being made.
inline constexpr File kBackups = ofUser("Backup");
inline constexpr File kBackupInWork = ofUser("Backup/diary-backup.tmp");
inline constexpr File kJetDiary = ofUser("diary_jet.mdb"); ///< as older programs left it; others end in "-2" and so on
/// What an update works on: a copy of the diary, and the one that is to take its place.
inline constexpr File kUpdatedDiary = ofUser("old.mdb");
inline constexpr File kFreshDiary = ofUser("new.mdb");
inline constexpr File kUpdateLock = ofUser("new.lock");
inline constexpr File kRescue = ofUser("rescue.jsonl");
inline constexpr File kDamagedRescue = ofUser("rescue.damaged");
inline constexpr File kDraft = ofUser("draft.json");
/// The same of the memo program.
inline constexpr File kMemoRescue = ofUser("memo_rescue.jsonl");
inline constexpr File kDamagedMemoRescue = ofUser("memo_rescue.damaged");
inline constexpr File kMemoDraft = ofUser("memo_draft.json");
inline constexpr File kAddressHistory = ofUser("URLHist.txt");
inline constexpr File kWordHistory = ofUser("FindHist.txt");
inline constexpr File kBrowserFolder = ofUser("Browser");
inline constexpr File kBrowserCache = ofUser("Browser/Cache");
inline constexpr File kPingServers = ofUser("PINGList.csv");

/// The upload: the pages to send, those of the last month that was made a log, the logs to send, what the last run has
/// sent; the lock of the one run, and its log.
inline constexpr File kPageList = ofUser("upload.tmp");
inline constexpr File kLogPageList = ofUser("uplogtmp.tmp");
inline constexpr File kLogList = ofUser("uploadlog.tmp");
inline constexpr File kSentList = ofUser("uploadold.tmp");
inline constexpr File kUploadLock = ofUser("upload.lock");
inline constexpr File kUploadLog = ofUser("upload.log");

/// Blogs: the protocol of the last run, and which entries were posted.
inline constexpr File kBlogLog = ofUser("blog.log");
inline constexpr File kBlogPosts = ofUser("blogposts.jsonl");

/// Local pages: they show private entries and never go to the site.
inline constexpr File kPreview = ofData("tmp.htm");
inline constexpr File kCustomizePreview = ofData("Customize.htm");
inline constexpr File kSetPicture = ofData("CustomizeSet.htm"); ///< a set that somebody may choose
inline constexpr File kSameDayPage = ofData("oldtmp.htm");
inline constexpr File kFindPage = ofData("findtmp.htm");
inline constexpr File kInformationPage = ofData("VellInfo_result.htm");

/// The working folders. Parts and logs lie below the site as well.
inline constexpr File kParts = ofData("DiaryParts");
inline constexpr File kLogs = ofData("DiaryLog");
inline constexpr File kLogParts = ofData("DiaryLog/DiaryParts");
inline constexpr File kCustomize = ofData("Customize");
/// Text pieces that the oldest programs kept in the diary.
inline constexpr File kDefaultHeader = ofData("Customize/default_up.htm");
inline constexpr File kDefaultFooter = ofData("Customize/default_down.htm");
inline constexpr File kDefaultLogHeader = ofData("Customize/default_up_log.htm");
inline constexpr File kDefaultLogFooter = ofData("Customize/default_down_log.htm");
inline constexpr File kExportFormats = ofData("ExportFormat");
inline constexpr File kBlogTemplates = ofData("BlogTemplate");
inline constexpr File kKeptPages = ofData("Kept"); ///< pages of somebody else that the end of a run puts aside

/// Settings files, where they lie until the user's settings name another place.
inline constexpr File kCustomizeIni = ofData("Customize/Customize.ini");
inline constexpr File kFrameIni = ofData("Frame.ini");
inline constexpr File kRssIni = ofData("RSS.ini");
inline constexpr File kHaloScanIni = ofData("HaloScan.ini");
inline constexpr File kBlogIni = ofData("Blog.ini");
inline constexpr File kBlogUserData = ofData("BlogUserData.ini"); ///< with passwords

inline constexpr File kGenres = ofData("Genre.csv");

} // namespace files
} // namespace velloria::core
