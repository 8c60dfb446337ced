// The first start and what lies in the folders: which files come from where.
#include "shell/startup.h"

#include "core/ini.h"
#include "platform/file_write.h"
#include "store/database_file.h"
#include "support/lock_watch.h"
#include "support/test_home.h"

#include <QDir>
#include <QStandardPaths>

#include <future>
#include <optional>

#include <sys/stat.h>

using namespace Qt::StringLiterals;

namespace velloria::tests {
namespace {

using platform::copyFile;
using platform::makeFolder;
using platform::removeFile;
using shell::StartResult;

class Startup : public FactoryHome {
protected:
    QString user(const QString& name = {}) const { return path(u"UserData/"_s + name); }
    QString setting(const QString& section, const QString& key) const {
        return core::ReadIniDef(user(u"diary.ini"_s), section, key, u"(missing)"_s);
    }
    void move(const QString& from, const QString& to) const {
        copyFile(path(from), path(to));
        removeFile(path(from));
    }
    /// A diary whose one entry tells it from others.
    void makeDiary(const QString& file, const QString& title) {
        copyFile(path(u"default.mdb"_s), file);
        store::Entry entry;
        entry.day = u"2004/05/06"_s;
        entry.title = title;
        store::DiaryStore(file, clock).saveEntries({entry}, store::PublishTime::Now, {});
    }
    QString firstTitle() const {
        const auto entries = store::DiaryStore(run).LoadDay(u"2004/05/06"_s);
        return entries.empty() ? u"(none)"_s : entries.back().title;
    }
};

TEST_F(Startup, WithFactoryFilesAloneMakesAWholeUser) {
    ASSERT_EQ(start(), StartResult::Ready);
    EXPECT_EQ(bytesOf(user(u"diary.mdb"_s)), bytesOf(path(u"default.mdb"_s)));
    EXPECT_EQ(setting(u"ALL"_s, u"DataPath"_s), user());
    EXPECT_EQ(setting(u"ALL"_s, u"MenuLanguage"_s), u"Japanese"_s);
    for (const QString& name : {u"Shinny.gif"_s, u"Cloudy.gif"_s, u"Rainy.gif"_s, u"Thunder.gif"_s, u"Snowy.gif"_s})
        EXPECT_EQ(bytesOf(user(u"DiaryParts/"_s + name)), bytesOf(path(name)));
    EXPECT_TRUE(QDir(user(u"DiaryLog"_s)).exists());
    EXPECT_TRUE(QDir(user(u"BlogTemplate"_s)).exists());
    EXPECT_EQ(bytesOf(user(u"Customize/Customize.ini"_s)), bytesOf(path(u"Customize.ini"_s)));
    EXPECT_EQ(bytesOf(user(u"ExportFormat/TEXT.ini"_s)), bytesOf(path(u"TEXT.txt"_s)));
    EXPECT_EQ(bytesOf(user(u"ExportFormat/HTML.ini"_s)), bytesOf(path(u"HTML.txt"_s)));
    EXPECT_EQ(boxes(), QStringList());
}

TEST_F(Startup, FillsTheSession) {
    ASSERT_EQ(start(), StartResult::Ready);
    EXPECT_EQ(session.dbFileName, u"diary.mdb"_s);
    EXPECT_EQ(session.MyPath, home.path() + u'/');
    EXPECT_EQ(session.UserPath, user());
    EXPECT_EQ(session.DataPath, user());
    EXPECT_EQ(session.FilePath, user());
    EXPECT_EQ(session.FileName, u""_s);
    EXPECT_EQ(session.DiaryIniFile, user(u"diary.ini"_s));
    EXPECT_EQ(session.Today, u"2004/05/06"_s);
    EXPECT_EQ(session.EnterDay, u"2004/05/06"_s);
    EXPECT_EQ(session.CurrentVersion, 220);
    EXPECT_FALSE(session.IsLogin);
    EXPECT_EQ(session.UserID, u""_s);
    EXPECT_EQ(session.FavoriteFolderPath,
              QStandardPaths::writableLocation(QStandardPaths::GenericDataLocation) + u"/velloria/Favorites/"_s);
    EXPECT_FALSE(session.IsLarkportDll || session.IsWrenportDll || session.IsChimerDll || session.IsVellInfoDll);
}

TEST_F(Startup, JoinsTheDigitsOfTheVersionWithoutPadding) {
    EXPECT_EQ((core::Version{2, 10, 3}.joined()), 2103);
    EXPECT_EQ((core::Version{1, 2, 3}.joined()), 123);
    EXPECT_EQ((core::Version{2, 10, 3}.text()), u"2.10.3"_s);
}

TEST_F(Startup, RemembersTheTargetOfTheFirstRunInMemoryOnly) {
    start();
    EXPECT_EQ(setting(u"ALL"_s, u"SaveFilePath"_s), u"(missing)"_s);
    start();
    EXPECT_EQ(session.FilePath, u""_s);
    EXPECT_EQ(session.DataPath, user());
}

TEST_F(Startup, ASecondOneChangesNothing) {
    start();
    const auto before = contentOf(home.path());
    setNow(u"2010/01/01 00:00:00"_s);
    ASSERT_EQ(start(), StartResult::Ready);
    EXPECT_EQ(contentOf(home.path()), before);
    EXPECT_EQ(session.Today, u"2010/01/01"_s);
    EXPECT_EQ(boxes(), QStringList());
}

TEST_F(Startup, ForTheFirstTimeWaitsForAnotherProgramThatMakesTheFiles) {
    makeFolder(path(u"UserData"_s));
    auto otherProgram = std::make_optional<platform::FolderLock>(path(u"UserData"_s));
    const int before = lockRefusals();
    auto result = std::async(std::launch::async, [&] { return start(); });
    // Either it stands before the lock, or it has gone past it.
    while (lockRefusals() - before < 2 && result.wait_for(std::chrono::milliseconds(1)) != std::future_status::ready) {
    }
    EXPECT_GE(lockRefusals() - before, 2);
    EXPECT_FALSE(exists(user(u"diary.ini"_s)) || exists(user(u"diary.mdb"_s)));
    makeDiary(user(u"diary.mdb"_s), u"of the other"_s);
    writeFile(user(u"diary.ini"_s), "[ALL]\r\nSaveFileName=other.htm\r\nDataPath=" + user().toUtf8() + "\r\n");
    otherProgram.reset();
    EXPECT_EQ(result.get(), StartResult::Ready);
    EXPECT_EQ(firstTitle(), u"of the other"_s);
    EXPECT_EQ(session.FileName, u"other.htm"_s);
}

TEST_F(Startup, ShowsTheHourglassUntilItsEnd) {
    start();
    ASSERT_EQ(desk.events.size(), 2);
    EXPECT_EQ(desk.events.at(0)[u"shape"_s], u"hourglass"_s);
    EXPECT_EQ(desk.events.at(1)[u"shape"_s], u"default"_s);
}

TEST_F(Startup, KeepsTheUsersFilesToTheirOwner) {
    const mode_t mask = ::umask(0022);
    start();
    ::umask(mask);
    EXPECT_EQ(modeOf(user()), 0700U);
    EXPECT_EQ(modeOf(user(u"diary.mdb"_s)), 0600U);
    EXPECT_EQ(modeOf(user(u"diary.ini"_s)), 0600U);
}

TEST_F(Startup, TheUsersSettingsComeBeforeThoseBesideTheProgram) {
    start();
    core::WriteIni(user(u"diary.ini"_s), u"ALL"_s, u"SaveFileName"_s, u"mine.htm"_s);
    writeFile(path(u"diary.ini"_s), "[ALL]\r\nSaveFileName=other.htm\r\n");
    start();
    EXPECT_EQ(session.FileName, u"mine.htm"_s);
}

TEST_F(Startup, SettingsOfTheOldLayoutAreCopiedAndStay) {
    makeFolder(path(u"data"_s));
    const QByteArray old =
        "[ALL]\r\nDataPath=" + path(u"data"_s).toUtf8() + "\r\nSaveFilePath=/site\r\nSaveFileName=x.htm\r\n";
    writeFile(path(u"diary.ini"_s), old);
    ASSERT_EQ(start(), StartResult::Ready);
    EXPECT_EQ(session.DataPath, path(u"data/"_s));
    EXPECT_EQ(session.FilePath, u"/site/"_s);
    EXPECT_EQ(session.FileName, u"x.htm"_s);
    EXPECT_TRUE(bytesOf(path(u"diary.ini"_s)) == old);
    EXPECT_TRUE(bytesOf(user(u"diary.ini"_s)).startsWith(old));
    EXPECT_EQ(modeOf(user(u"diary.ini"_s)), 0600U);
    EXPECT_TRUE(exists(path(u"data/Customize/Customize.ini"_s)));
    EXPECT_FALSE(exists(user(u"Customize"_s)));
}

TEST_F(Startup, TheUsersDiaryComesBeforeOneBesideTheProgram) {
    start();
    makeDiary(path(u"diary.mdb"_s), u"beside"_s);
    start();
    EXPECT_EQ(firstTitle(), u"(none)"_s);
}

TEST_F(Startup, ADiaryBesideTheProgramIsCopiedAndStays) {
    makeDiary(path(u"diary.mdb"_s), u"beside"_s);
    const QByteArray before = bytesOf(path(u"diary.mdb"_s));
    start();
    EXPECT_EQ(firstTitle(), u"beside"_s);
    EXPECT_TRUE(bytesOf(path(u"diary.mdb"_s)) == before);
    EXPECT_TRUE(bytesOf(user(u"diary.mdb"_s)) == before);
}

TEST_F(Startup, SettingsAndDiaryAreLookedForApart) {
    makeFolder(path(u"UserData"_s));
    makeDiary(user(u"diary.mdb"_s), u"mine"_s);
    start();
    EXPECT_EQ(firstTitle(), u"mine"_s);
    EXPECT_EQ(setting(u"ALL"_s, u"DataPath"_s), user());
}

TEST_F(Startup, ALeftJournalIsNotRolledIntoTheFreshDiary) {
    makeFolder(path(u"UserData"_s));
    writeFile(user(u"diary.mdb-journal"_s), "\xd9\xd5\x05\xf9\x20\xa1\x63\xd7 of another file");
    start();
    EXPECT_FALSE(exists(user(u"diary.mdb-journal"_s)));
    EXPECT_EQ(firstTitle(), u"(none)"_s);
}

TEST_F(Startup, WithoutDefaultSettingsAsksForTheDataFolder) {
    removeFile(path(u"default.ini"_s));
    makeFolder(path(u"data"_s));
    desk.answers = {path(u"data"_s)};
    ASSERT_EQ(start(), StartResult::Ready);
    EXPECT_EQ(boxes().size(), 1);
    EXPECT_EQ(setting(u"ALL"_s, u"DataPath"_s), path(u"data/"_s));
    EXPECT_EQ(modeOf(user(u"diary.ini"_s)), 0600U);
}

TEST_F(Startup, WithoutADefaultDiaryGoesOnUntilItIsNeeded) {
    removeFile(path(u"default.mdb"_s));
    const QString failure = failureOf([&] { start(); });
    EXPECT_TRUE(failure.contains(path(u"default.mdb"_s))) << failure.toStdString();
    EXPECT_FALSE(exists(user(u"diary.mdb"_s)));
    EXPECT_FALSE(exists(user(u"diarymdb.bak"_s)));
    EXPECT_EQ(setting(u"ALL"_s, u"DBVersion"_s), u"220"_s) << "as the factory file has it";
}

TEST_F(Startup, FindsFilesOfAWindowsDisk) {
    start();
    makeDiary(path(u"mine.mdb"_s), u"mine"_s);
    removeFile(user(u"diary.mdb"_s));
    core::WriteIni(user(u"diary.ini"_s), u"ALL"_s, u"SaveFileName"_s, u"mine.htm"_s);
    ASSERT_TRUE(QDir().rename(path(u"mine.mdb"_s), user(u"DIARY.MDB"_s)));
    ASSERT_TRUE(QDir().rename(user(u"diary.ini"_s), user(u"Diary.INI"_s)));
    ASSERT_TRUE(QDir().rename(path(u"UserData"_s), path(u"USERDATA"_s)));
    desk.answers = {path(u"USERDATA"_s)}; // the stored data folder is found all the same
    ASSERT_EQ(start(), StartResult::Ready);
    EXPECT_EQ(desk.answers.size(), 1);
    EXPECT_EQ(firstTitle(), u"mine"_s);
    EXPECT_EQ(session.FileName, u"mine.htm"_s);
    EXPECT_EQ(session.UserPath, path(u"USERDATA/"_s));
    EXPECT_FALSE(exists(path(u"UserData"_s)));
    EXPECT_FALSE(exists(path(u"USERDATA/diary.ini"_s)));
    EXPECT_FALSE(exists(path(u"USERDATA/diary.mdb"_s)));
}

TEST_F(Startup, FindsFactoryFilesOfAWindowsDisk) {
    for (const QString& name : {u"default.ini"_s, u"default.mdb"_s, u"Customize.ini"_s, u"TEXT.txt"_s, u"Shinny.gif"_s})
        ASSERT_TRUE(QDir().rename(path(name), path(name.toUpper() == name ? name.toLower() : name.toUpper())));
    ASSERT_EQ(start(), StartResult::Ready);
    EXPECT_TRUE(exists(user(u"diary.ini"_s)) && exists(user(u"diary.mdb"_s)));
    EXPECT_TRUE(exists(user(u"Customize/Customize.ini"_s)) && exists(user(u"ExportFormat/TEXT.ini"_s)));
    EXPECT_TRUE(exists(user(u"DiaryParts/Shinny.gif"_s)));
}

TEST_F(Startup, TellsWhichPluginsAreThere) {
    struct Plugin {
        QString file;
        bool core::Session::*flag;
    };
    const Plugin plugins[] = {{u"Larkport.dll"_s, &core::Session::IsLarkportDll},
                              {u"Wrenport.dll"_s, &core::Session::IsWrenportDll},
                              {u"VELLINFO.DLL"_s, &core::Session::IsVellInfoDll},
                              {u"Chimer.dll"_s, &core::Session::IsChimerDll}};
    for (const Plugin& present : plugins) {
        writeFile(path(present.file), "x");
        start();
        for (const Plugin& plugin : plugins)
            EXPECT_EQ(session.*plugin.flag, plugin.file == present.file) << plugin.file.toStdString();
        removeFile(path(present.file));
    }
}

TEST_F(Startup, AHomeThatItsOwnSettingsCouldNotNameIsRefusedTheFirstTime) {
    const auto startIn = [&](const QString& folder) {
        makeFolder(folder);
        for (const QString& name : QDir(home.path()).entryList(QDir::Files))
            copyFile(path(name), folder + u'/' + name);
        return failureOf([&] { shell::Startup(run).run(folder, std::nullopt); });
    };
    const qsizetype room = 255 - (home.path() + u"//UserData/Customize/Customize.ini"_s).size();
    const QString fits = path(QString(room, u'x'));
    EXPECT_EQ(startIn(fits), u""_s);
    EXPECT_EQ(startIn(fits), u""_s);
    const QString tooLong = path(QString(room + 1, u'y'));
    EXPECT_TRUE(startIn(tooLong).contains(tooLong));
    EXPECT_FALSE(exists(tooLong + u"/UserData"_s));
    EXPECT_NE(startIn(path(u"a&#12316;b"_s)), u""_s) << "it would come back as another name";

    // Settings that are there already name other folders.
    makeFolder(tooLong + u"/UserData"_s);
    makeFolder(path(u"data"_s));
    core::WriteIni(tooLong + u"/UserData/diary.ini"_s, u"ALL"_s, u"DataPath"_s, path(u"data"_s));
    EXPECT_EQ(startIn(tooLong), u""_s);
}

} // namespace
} // namespace velloria::tests
