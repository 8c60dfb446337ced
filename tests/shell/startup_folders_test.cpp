// The data folder, the working folders below it and the settings files that lie there.
#include "shell/startup.h"

#include "core/ini.h"
#include "platform/file_write.h"
#include "support/folder_turn.h"
#include "support/test_home.h"

#include <QDir>
#include <QDirIterator>

#include <fcntl.h>
#include <sys/stat.h>

using namespace Qt::StringLiterals;

namespace velloria::tests {
namespace {

using platform::makeFolder;
using platform::removeFile;
using shell::StartResult;

const QString kBadFolder =
    u"critical: データ保存先フォルダが不正です。\r\n有効なデータ保存先フォルダを指定して下さい。"_s;
const QString kRestart = u"information: Velloriaを再起動して、データ保存先フォルダを指定してください。"_s;

class StartupFolders : public TestHome {
protected:
    QString data(const QString& name) const { return session.DataPath + name; }
    QString setting(const QString& section, const QString& key) const {
        return core::ReadIniDef(path(u"UserData/diary.ini"_s), section, key, u"(missing)"_s);
    }
    void set(const QString& section, const QString& key, const QString& value) const {
        core::WriteIni(path(u"UserData/diary.ini"_s), section, key, value);
    }
    static void setTime(const QString& file, time_t seconds, long nanoseconds = 0) {
        const timespec times[2] = {{seconds, nanoseconds}, {seconds, nanoseconds}};
        ::utimensat(AT_FDCWD, QFile::encodeName(file).constData(), times, 0);
    }
    static time_t timeOf(const QString& file) {
        struct stat status {};
        ::stat(QFile::encodeName(file).constData(), &status);
        return status.st_mtim.tv_sec;
    }
};

TEST_F(StartupFolders, ADataPathWithoutSeparatorWorksAndIsNotRewritten) {
    makeFolder(path(u"data"_s));
    set(u"ALL"_s, u"DataPath"_s, path(u"data"_s));
    ASSERT_EQ(start(), StartResult::Ready);
    EXPECT_EQ(session.DataPath, path(u"data/"_s));
    EXPECT_EQ(setting(u"ALL"_s, u"DataPath"_s), path(u"data"_s));
    EXPECT_EQ(boxes(), QStringList());
}

TEST_F(StartupFolders, AreMadeInTurnWithOtherPrograms) {
    makeFolder(path(u"data"_s));
    set(u"ALL"_s, u"DataPath"_s, path(u"data/"_s));
    EXPECT_TRUE(waitsForTurn(path(u"data"_s), [&] { start(); }));
    EXPECT_TRUE(exists(path(u"data/ExportFormat/TEXT.ini"_s)));
}

TEST_F(StartupFolders, AFolderThatMeansNothingHereCountsAsUnset) {
    writeFile(path(u"file"_s), "x");
    const QString before = QDir::currentPath();
    const QTemporaryDir working;
    ASSERT_TRUE(QDir::setCurrent(working.path()));
    ASSERT_TRUE(QDir().mkdir(u"relative"_s));
    for (const QString& stored : {u""_s, u"C:\\Diary\\"_s, u"\\\\server\\diary\\"_s, u"relative"_s, u"relative/"_s,
                                  u"."_s, u"/nowhere/at/all/"_s, path(u"file"_s), u":/"_s}) {
        set(u"ALL"_s, u"DataPath"_s, stored);
        desk.events = {};
        desk.answers = {QJsonValue::Null};
        EXPECT_EQ(start(), StartResult::Ended) << stored.toStdString();
        EXPECT_EQ(boxes(), (QStringList{kBadFolder, kRestart})) << stored.toStdString();
        EXPECT_EQ(setting(u"ALL"_s, u"DataPath"_s), stored);
    }
    QDir::setCurrent(before);
    EXPECT_EQ(QDir(working.path()).entryList(QDir::AllEntries | QDir::NoDotAndDotDot), QStringList{u"relative"_s});
    EXPECT_TRUE(QDir(working.filePath(u"relative"_s)).isEmpty());
    EXPECT_FALSE(exists(u"/Customize"_s) || exists(u"/nowhere"_s));
}

TEST_F(StartupFolders, AMissingKeyIsLikeAnInvalidFolder) {
    core::DeleteIniKey(path(u"UserData/diary.ini"_s), u"ALL"_s, u"DataPath"_s);
    desk.answers = {u""_s};
    EXPECT_EQ(start(), StartResult::Ended);
    EXPECT_EQ(boxes(), (QStringList{kBadFolder, kRestart}));
    EXPECT_EQ(setting(u"ALL"_s, u"DataPath"_s), u"(missing)"_s);
}

TEST_F(StartupFolders, AChosenFolderIsWrittenWithItsSeparator) {
    makeFolder(path(u"new"_s));
    set(u"ALL"_s, u"DataPath"_s, u"/nowhere/"_s);
    desk.answers = {path(u"new"_s)};
    ASSERT_EQ(start(), StartResult::Ready);
    EXPECT_EQ(boxes(), QStringList{kBadFolder});
    EXPECT_EQ(setting(u"ALL"_s, u"DataPath"_s), path(u"new/"_s));
    EXPECT_EQ(session.DataPath, path(u"new/"_s));
    EXPECT_TRUE(exists(path(u"new/Customize/Customize.ini"_s)));
    for (const QJsonValue& event : desk.events) {
        if (event[u"event"_s] != u"file"_s)
            continue;
        EXPECT_EQ(event[u"mode"_s], u"folder"_s);
        EXPECT_EQ(event[u"title"_s], u"フォルダの選択"_s);
        EXPECT_EQ(event[u"folder"_s], path(u"UserData/"_s));
    }
}

TEST_F(StartupFolders, AFolderThatTheSettingsCantKeepIsRefusedBeforeAnythingIsWritten) {
    const QString longName(200, u'あ'); // 400 bytes on the page
    makeFolder(path(u"short"_s));
    set(u"ALL"_s, u"DataPath"_s, u"/nowhere/"_s);
    const QByteArray before = bytesOf(path(u"UserData/diary.ini"_s));
    desk.answers = {u"/tmp/"_s + longName, QJsonValue::Null};
    EXPECT_EQ(start(), StartResult::Ended);
    EXPECT_TRUE(bytesOf(path(u"UserData/diary.ini"_s)) == before);
    EXPECT_EQ(boxes().size(), 3);
    EXPECT_TRUE(boxes().at(1).startsWith(u"critical: フォルダの名前が長すぎて"_s));

    const QString edge = u"/tmp/"_s + QString(255 - 5 - 24, u'x'); // with "/Customize/Customize.ini" 255 bytes
    desk.answers = {edge + u'x', path(u"short"_s)};
    EXPECT_EQ(start(), StartResult::Ready);
    EXPECT_EQ(session.DataPath, path(u"short/"_s));
}

TEST_F(StartupFolders, ADataFolderKeepsEveryCharacterOfItsName) {
    for (const QString& name : {u"josé"_s, u"😀"_s, u"2〜3−4"_s, u"～"_s}) {
        makeFolder(path(name));
        set(u"ALL"_s, u"DataPath"_s, path(name));
        desk.events = {};
        ASSERT_EQ(start(), StartResult::Ready) << name.toStdString();
        EXPECT_EQ(session.DataPath, path(name) + u'/');
        EXPECT_EQ(boxes(), QStringList());
        ASSERT_EQ(start(), StartResult::Ready);
        EXPECT_EQ(session.DataPath, path(name) + u'/');
    }
}

TEST_F(StartupFolders, ATargetFolderGetsItsSeparatorOrNoneAtAll) {
    const struct {
        QString stored;
        QString folder;
    } cases[] = {{u"/site"_s, u"/site/"_s}, {u"/site/"_s, u"/site/"_s}, {u""_s, u""_s},
                 {u"C:\\site\\"_s, u""_s},  {u"site"_s, u""_s},         {u"/"_s, u"/"_s}};
    for (const auto& c : cases) {
        set(u"ALL"_s, u"SaveFilePath"_s, c.stored);
        set(u"ALL"_s, u"SaveFileName"_s, u"x.htm"_s);
        start();
        EXPECT_EQ(session.FilePath, c.folder) << c.stored.toStdString();
        EXPECT_EQ(session.FileName, u"x.htm"_s);
        EXPECT_EQ(setting(u"ALL"_s, u"SaveFilePath"_s), c.stored);
    }
}

TEST_F(StartupFolders, ExportFormatsComeOnlyWithTheirFolder) {
    writeFile(data(u"ExportFormat/HTML.ini"_s), "mine");
    removeFile(data(u"ExportFormat/TEXT.ini"_s));
    start();
    EXPECT_FALSE(exists(data(u"ExportFormat/TEXT.ini"_s)));
    EXPECT_EQ(bytesOf(data(u"ExportFormat/HTML.ini"_s)), "mine");
    ASSERT_TRUE(QDir(data(u"ExportFormat"_s)).removeRecursively());
    removeFile(path(u"HTML.txt"_s));
    start();
    EXPECT_TRUE(exists(data(u"ExportFormat/TEXT.ini"_s)));
    EXPECT_FALSE(exists(data(u"ExportFormat/HTML.ini"_s)));
}

TEST_F(StartupFolders, TheFactorySetIsCopiedWheneverItIsMissing) {
    writeFile(data(u"Customize/Customize.ini"_s), "[Mine]\r\n");
    start();
    EXPECT_EQ(bytesOf(data(u"Customize/Customize.ini"_s)), "[Mine]\r\n");
    removeFile(data(u"Customize/Customize.ini"_s));
    writeFile(data(u"Customize/Other.ini"_s), "x");
    start();
    EXPECT_EQ(bytesOf(data(u"Customize/Customize.ini"_s)), bytesOf(path(u"Customize.ini"_s)));
    removeFile(data(u"Customize/Customize.ini"_s));
    removeFile(path(u"Customize.ini"_s));
    EXPECT_EQ(start(), StartResult::Ready);
}

TEST_F(StartupFolders, WeatherPicturesGoByTheFirstAlone) {
    const QStringList others{u"Cloudy.gif"_s, u"Rainy.gif"_s, u"Thunder.gif"_s, u"Snowy.gif"_s};
    removeFile(data(u"DiaryParts/Cloudy.gif"_s));
    writeFile(data(u"DiaryParts/Rainy.gif"_s), "mine");
    start();
    EXPECT_FALSE(exists(data(u"DiaryParts/Cloudy.gif"_s)));
    EXPECT_EQ(bytesOf(data(u"DiaryParts/Rainy.gif"_s)), "mine");
    removeFile(data(u"DiaryParts/Shinny.gif"_s));
    start();
    for (const QString& name : others)
        EXPECT_EQ(bytesOf(data(u"DiaryParts/"_s + name)), bytesOf(path(name)));
}

TEST_F(StartupFolders, AStartThatWasCutOffIsMadeUpForByTheNext) {
    // Killed within the export formats: their folder does not have its name yet.
    ASSERT_TRUE(QDir(data(u"ExportFormat"_s)).removeRecursively());
    makeFolder(data(u"ExportFormat.new"_s));
    writeFile(data(u"ExportFormat.new/TEXT.ini"_s), "half");
    ASSERT_EQ(start(), StartResult::Ready);
    for (const QString& name : {u"TEXT"_s, u"HTML"_s})
        EXPECT_EQ(bytesOf(data(u"ExportFormat/"_s + name + u".ini"_s)), bytesOf(path(name + u".txt"_s)));
    EXPECT_EQ(QDir(data(u"ExportFormat"_s)).entryList(QDir::AllEntries | QDir::NoDotAndDotDot).size(), 2);
    EXPECT_FALSE(QDir(data(u"ExportFormat.new"_s)).exists());
    // No room after the first of the pictures.
    const QStringList pictures{u"Shinny.gif"_s, u"Cloudy.gif"_s, u"Rainy.gif"_s, u"Thunder.gif"_s, u"Snowy.gif"_s};
    for (const QString& name : pictures)
        removeFile(data(u"DiaryParts/"_s + name));
    ASSERT_TRUE(QDir(data(u"DiaryParts"_s)).mkdir(u"Rainy.gif"_s));
    EXPECT_NE(failureOf([&] { start(); }), u""_s);
    ASSERT_TRUE(QDir(data(u"DiaryParts"_s)).rmdir(u"Rainy.gif"_s));
    ASSERT_EQ(start(), StartResult::Ready);
    for (const QString& name : pictures)
        EXPECT_EQ(bytesOf(data(u"DiaryParts/"_s + name)), bytesOf(path(name))) << name.toStdString();
}

TEST_F(StartupFolders, AWeatherPictureThatTheProgramLacksEndsNoStart) {
    for (const QString& missing : {u"Rainy.gif"_s, u"Shinny.gif"_s}) {
        for (const QString& name : {u"Shinny.gif"_s, u"Cloudy.gif"_s, u"Rainy.gif"_s})
            removeFile(data(u"DiaryParts/"_s + name));
        removeFile(path(missing));
        ASSERT_EQ(start(), StartResult::Ready);
        EXPECT_EQ(bytesOf(data(u"DiaryParts/Cloudy.gif"_s)), bytesOf(path(u"Cloudy.gif"_s)));
        EXPECT_FALSE(exists(data(u"DiaryParts/"_s + missing)));
    }
    // Every start finds the first one missing now, and leaves what the user has of the others.
    writeFile(data(u"DiaryParts/Cloudy.gif"_s), "mine");
    ASSERT_EQ(start(), StartResult::Ready);
    EXPECT_EQ(bytesOf(data(u"DiaryParts/Cloudy.gif"_s)), "mine");
}

TEST_F(StartupFolders, ATemplateIsReplacedOnlyByALaterOne) {
    writeFile(path(u"hatena.BLG"_s), "factory");
    setTime(path(u"hatena.BLG"_s), 1'000'000'000);
    const QString target = data(u"BlogTemplate/hatena.ini"_s);
    start();
    EXPECT_EQ(bytesOf(target), "factory");
    EXPECT_EQ(timeOf(target), 1'000'000'000);

    const struct {
        time_t time;
        const char* bytes;
    } cases[] = {{1'000'000'000, "mine"}, {1'000'000'001, "mine"}, {999'999'999, "factory"}};
    for (const auto& c : cases) {
        writeFile(target, "mine");
        setTime(target, c.time);
        start();
        EXPECT_EQ(bytesOf(target), c.bytes) << c.time;
    }
}

TEST_F(StartupFolders, ATemplateIsLaterByPartsOfASecondToo) {
    writeFile(path(u"hatena.blg"_s), "factory");
    setTime(path(u"hatena.blg"_s), 1'000'000'000, 500'000'000);
    const QString target = data(u"BlogTemplate/hatena.ini"_s);
    const auto startOver = [&](time_t seconds, long nanoseconds) {
        writeFile(target, "mine");
        setTime(target, seconds, nanoseconds);
        start();
        return bytesOf(target);
    };
    start();
    writeFile(target, "mine");
    setTime(target, 1'000'000'000, 500'000'000);
    start();
    EXPECT_EQ(bytesOf(target), "mine") << "the copy has the time of what it was copied from, to the end";
    EXPECT_EQ(startOver(1'000'000'000, 499'000'000), "factory");
    // A disk that keeps every other second alone: the copy is later for ever, and what the user wrote into it stays.
    EXPECT_EQ(startOver(1'000'000'002, 0), "mine");
    EXPECT_EQ(startOver(1'000'000'000, 0), "factory");
}

TEST_F(StartupFolders, ANewFolderGetsEveryTemplate) {
    ASSERT_TRUE(QDir(data(u"BlogTemplate"_s)).removeRecursively());
    writeFile(path(u"old.blg"_s), "factory");
    setTime(path(u"old.blg"_s), 1);
    writeFile(path(u".hidden.blg"_s), "factory");
    ASSERT_EQ(start(), StartResult::Ready);
    EXPECT_EQ(bytesOf(data(u"BlogTemplate/old.ini"_s)), "factory");
    EXPECT_EQ(timeOf(data(u"BlogTemplate/old.ini"_s)), 1);
    for (const QString& name : QDir(home.path()).entryList({u"*.blg"_s}, QDir::Files | QDir::Hidden))
        EXPECT_TRUE(exists(data(u"BlogTemplate/"_s + name.chopped(4) + u".ini"_s))) << name.toStdString();
}

TEST_F(StartupFolders, AFolderIsNoTemplate) {
    ASSERT_TRUE(QDir().mkpath(path(u"folder.blg"_s)));
    writeFile(path(u"folder.blg/inside.blg"_s), "factory");
    ASSERT_EQ(::mkfifo(QFile::encodeName(path(u"pipe.blg"_s)).constData(), 0600), 0);
    ASSERT_TRUE(QFile::link(path(u"gone"_s), path(u"link.blg"_s)));
    ASSERT_EQ(start(), StartResult::Ready);
    for (const QString& name : {u"folder"_s, u"inside"_s, u"pipe"_s, u"link"_s})
        EXPECT_FALSE(exists(data(u"BlogTemplate/%1.ini"_s.arg(name)))) << name.toStdString();
}

TEST_F(StartupFolders, ATemplateThatCannotBeBroughtKeepsNobodyFromTheirDiary) {
    writeFile(path(u"a.blg"_s), "factory");
    writeFile(path(u"z.blg"_s), "factory");
    ASSERT_TRUE(QDir().mkpath(data(u"BlogTemplate/a.ini/taken"_s)));
    setTime(data(u"BlogTemplate/a.ini"_s), 1);
    ASSERT_EQ(start(), StartResult::Ready);
    EXPECT_TRUE(lastStatus().contains(data(u"BlogTemplate/a.ini"_s))) << lastStatus().toStdString();
    EXPECT_EQ(bytesOf(data(u"BlogTemplate/z.ini"_s)), "factory") << "the others come";

    ASSERT_TRUE(QDir(data(u"BlogTemplate/a.ini"_s)).removeRecursively());
    ASSERT_EQ(::chmod(QFile::encodeName(path(u"a.blg"_s)).constData(), 0), 0);
    ASSERT_EQ(::chmod(QFile::encodeName(home.path()).constData(), 0755), 0);
    for (QDirIterator all(path(u"UserData"_s), QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot,
                          QDirIterator::Subdirectories);
         all.hasNext();)
        ASSERT_EQ(::chmod(QFile::encodeName(all.next()).constData(), 0777), 0);
    ASSERT_EQ(::chmod(QFile::encodeName(path(u"UserData"_s)).constData(), 0777), 0);
    EXPECT_TRUE(holdsForNobody([&] {
        return start() == StartResult::Ready && lastStatus().contains(path(u"a.blg"_s)) &&
               !exists(data(u"BlogTemplate/a.ini"_s));
    }));
}

TEST_F(StartupFolders, ATemplateOfTheUsersOwnIsLeftAlone) {
    writeFile(data(u"BlogTemplate/own.ini"_s), "mine");
    writeFile(path(u"a.b.blg"_s), "factory");
    start();
    EXPECT_EQ(bytesOf(data(u"BlogTemplate/own.ini"_s)), "mine");
    EXPECT_EQ(bytesOf(data(u"BlogTemplate/a.b.ini"_s)), "factory");
}

TEST_F(StartupFolders, TemplatesThatDifferInCaseAloneAreOne) {
    const auto ofTheName = [this] {
        return QDir(data(u"BlogTemplate"_s)).entryList({u"new.ini"_s}, QDir::Files); // without regard to case
    };
    writeFile(path(u"NEW.blg"_s), "earlier");
    setTime(path(u"NEW.blg"_s), 1);
    writeFile(path(u"new.blg"_s), "later");
    setTime(path(u"new.blg"_s), 2);
    for (int i = 0; i < 2; ++i) { // brought in one start, and found in the next
        ASSERT_EQ(start(), StartResult::Ready);
        EXPECT_EQ(ofTheName(), QStringList{u"NEW.ini"_s});
        EXPECT_EQ(bytesOf(data(u"BlogTemplate/NEW.ini"_s)), "later");
    }
}

TEST_F(StartupFolders, MakesNoSecondFolderBesideOneInOtherCase) {
    for (const QString& name : {u"Customize"_s, u"DiaryParts"_s, u"DiaryLog"_s, u"ExportFormat"_s, u"BlogTemplate"_s})
        ASSERT_TRUE(QDir().rename(data(name), data(name.toUpper())));
    writeFile(data(u"CUSTOMIZE/Customize.ini"_s), "[Mine]\r\n");
    removeFile(data(u"DIARYPARTS/Shinny.gif"_s));
    removeFile(data(u"EXPORTFORMAT/TEXT.ini"_s));
    writeFile(path(u"x.blg"_s), "factory");
    ASSERT_EQ(start(), StartResult::Ready);
    EXPECT_EQ(QDir(session.DataPath).entryList(QDir::Dirs | QDir::NoDotAndDotDot, QDir::Name),
              (QStringList{u"BLOGTEMPLATE"_s, u"CUSTOMIZE"_s, u"DIARYLOG"_s, u"DIARYPARTS"_s, u"EXPORTFORMAT"_s}));
    EXPECT_TRUE(exists(data(u"DIARYPARTS/Shinny.gif"_s)) && exists(data(u"BLOGTEMPLATE/x.ini"_s)));
    EXPECT_FALSE(exists(data(u"EXPORTFORMAT/TEXT.ini"_s)));
    EXPECT_EQ(bytesOf(data(u"CUSTOMIZE/Customize.ini"_s)), "[Mine]\r\n");
}

} // namespace
} // namespace velloria::tests
