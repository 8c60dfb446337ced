#include "site/save_html.h"

#include "core/ini.h"
#include "core/keys.h"
#include "core/setting.h"
#include "core/settings.h"
#include "core/upload_list.h"
#include "site/site_home.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QJsonObject>

using namespace Qt::StringLiterals;

namespace velloria::tests {
namespace {

class SaveHtml : public SiteHome {
protected:
    QString stored(const core::Setting& key) const { return core::Settings(session).text(key); }
    QString sitePart(const QString& name) const { return path(u"site/DiaryParts/"_s + name); }
    QStringList statuses() const { return desk.texts(u"status"_s); }
    /// The kinds of events in order, a status with its text.
    QStringList eventNames() const {
        QStringList names;
        for (const QJsonValue& event : desk.events) {
            const QString name = event[u"event"_s].toString();
            names += name == u"pointer"  ? event[u"shape"_s].toString()
                     : name == u"status" ? event[u"text"_s].toString()
                                         : name;
        }
        return names;
    }
    void removeWeatherPictures() {
        for (const char* name : {"Shinny.gif", "Cloudy.gif", "Rainy.gif", "Snowy.gif", "Thunder.gif"})
            QFile::remove(session.DataPath + u"DiaryParts/"_s + QString::fromLatin1(name));
    }
};

TEST_F(SaveHtml, WritesTheMonthOfTodayAndNothingElse) {
    write(u"2004/04/30"_s, u"april"_s);
    write(u"2004/05/06"_s, u"may"_s);
    session.EnterDay = u"2004/04/30"_s;
    saver().SaveHTML();
    EXPECT_TRUE(sitePage(u"x.htm"_s).contains(u"2004年5月分"_s));
    EXPECT_TRUE(lacks(sitePage(u"x.htm"_s), u"april"_s));
    EXPECT_EQ(QDir(path(u"site"_s)).entryList(QDir::Files), QStringList{u"x.htm"_s});
}

TEST_F(SaveHtml, AfterANewYearTheMonthFileHoldsTheNewMonth) {
    saver().SaveHTML();
    session.Today = u"2005/01/01"_s;
    saver().SaveHTML();
    EXPECT_TRUE(sitePage(u"x.htm"_s).contains(u"2005年1月分"_s));
}

TEST_F(SaveHtml, AppendsTheEndingOnlyWhenThereIsNeitherAndStoresIt) {
    const struct {
        QString name;
        QString saved;
    } cases[] = {{u"index"_s, u"index.htm"_s},        {u"a.htm"_s, u"a.htm"_s},     {u"b.html"_s, u"b.html"_s},
                 {u"X.HTM"_s, u"X.HTM.htm"_s},        {u"c.txt"_s, u"c.txt.htm"_s}, {u"d.Html"_s, u"d.Html.htm"_s},
                 {u"e.htm.bak"_s, u"e.htm.bak.htm"_s}};
    for (const auto& c : cases) {
        session.FileName = c.name;
        saver().SaveHTML();
        EXPECT_TRUE(siteHas(c.saved)) << c.saved.toStdString();
        EXPECT_EQ(session.FileName, c.saved);
        EXPECT_EQ(stored(core::keys::kSaveFileName), c.saved);
        EXPECT_EQ(stored(core::keys::kSaveFilePath), path(u"site/"_s));
    }
}

TEST_F(SaveHtml, TellsItsStepsInOrder) {
    removeWeatherPictures();
    putPart(u"a.gif"_s);
    registerFile(u"a.gif"_s, u"2004/05/06"_s);
    registerFile(u"all.css"_s, u"ALL"_s);
    desk.events = {};
    saver().SaveHTML();
    EXPECT_EQ(eventNames(),
              (QStringList{u"hourglass"_s, u"Copying "_s + session.DataPath + u"DiaryParts/a.gif"_s,
                           u"Copying "_s + session.DataPath + u"DiaryParts/all.css"_s,
                           u"HTMLファイル "_s + path(u"site/x.htm"_s) + u" を保存しました。"_s, u"default"_s}));
}

TEST_F(SaveHtml, CopiesTheFilesOfTheMonthWhateverTheirState) {
    for (const QString& name : {u"may.gif"_s, u"uploaded.gif"_s, u"logged.gif"_s, u"april.gif"_s, u"short.gif"_s})
        putPart(name);
    registerFile(u"may.gif"_s, u"2004/05/01"_s);
    registerFile(u"uploaded.gif"_s, u"2004/05/31"_s);
    registerFile(u"logged.gif"_s, u"2004/05/02"_s);
    registerFile(u"april.gif"_s, u"2004/04/30"_s);
    registerFile(u"short.gif"_s, u"2004/5/3"_s);
    sql(u"UPDATE FileDB SET Uploaded = 1 WHERE FileName = 'uploaded.gif'"_s);
    sql(u"UPDATE FileDB SET Logged = 1 WHERE FileName = 'logged.gif'"_s);
    saver().SaveHTML();
    for (const QString& name : {u"may.gif"_s, u"uploaded.gif"_s, u"logged.gif"_s, u"short.gif"_s})
        EXPECT_TRUE(exists(sitePart(name))) << name.toStdString();
    EXPECT_FALSE(exists(sitePart(u"april.gif"_s)));
}

TEST_F(SaveHtml, CopiesFilesOfAllMonthsThatHaveNotGoneUp) {
    putPart(u"new.css"_s);
    putPart(u"old.css"_s);
    registerFile(u"new.css"_s, u"ALL"_s);
    registerFile(u"old.css"_s, u"ALL"_s);
    sql(u"UPDATE FileDB SET Uploaded = 1 WHERE FileName = 'old.css'"_s);
    saver().SaveHTML();
    EXPECT_TRUE(exists(sitePart(u"new.css"_s)));
    EXPECT_FALSE(exists(sitePart(u"old.css"_s)));
    EXPECT_FALSE(statuses().contains(u"Copying "_s + session.DataPath + u"DiaryParts/old.css"_s));
}

TEST_F(SaveHtml, ACopyThatIsThereStaysAsItIs) {
    registerFile(u"a.gif"_s, u"2004/05/06"_s);
    putPart(u"a.gif"_s, "first");
    saver().SaveHTML();
    putPart(u"a.gif"_s, "second");
    saver().SaveHTML();
    EXPECT_EQ(bytesOf(sitePart(u"a.gif"_s)), "first");
}

TEST_F(SaveHtml, ARegisteredFileThatIsMissingIsPassedOverInSilence) {
    registerFile(u"gone.gif"_s, u"2004/05/06"_s);
    saver().SaveHTML();
    EXPECT_FALSE(exists(sitePart(u"gone.gif"_s)));
    EXPECT_EQ(boxes(), QStringList());
    EXPECT_TRUE(statuses().contains(u"Copying "_s + session.DataPath + u"DiaryParts/gone.gif"_s));
}

TEST_F(SaveHtml, PlacesTheWeatherPicturesAndRegistersEachOnce) {
    saver().SaveHTML();
    const QStringList expected{u"Shinny.gif ALL 0 0"_s, u"Cloudy.gif ALL 0 0"_s, u"Rainy.gif ALL 0 0"_s,
                               u"Thunder.gif ALL 0 0"_s, u"Snowy.gif ALL 0 0"_s};
    EXPECT_EQ(fileRows(), expected);
    for (const QString& row : expected) {
        const QString name = row.section(u' ', 0, 0);
        EXPECT_EQ(bytesOf(sitePart(name)), bytesOf(session.DataPath + u"DiaryParts/"_s + name));
    }
    QDir(path(u"site/DiaryParts"_s)).removeRecursively();
    saver().SaveHTML();
    EXPECT_EQ(fileRows(), expected);
    EXPECT_TRUE(exists(sitePart(u"Snowy.gif"_s)));
    EXPECT_EQ(sqlValue(u"SELECT max(Number) FROM FileDB"_s), u"0"_s);
}

TEST_F(SaveHtml, AWeatherPictureOfTheUsersOwnStays) {
    QDir(path(u"site"_s)).mkdir(u"DiaryParts"_s);
    writeFile(sitePart(u"Shinny.gif"_s), "my own sun");
    saver().SaveHTML();
    EXPECT_EQ(bytesOf(sitePart(u"Shinny.gif"_s)), "my own sun");
    EXPECT_FALSE(fileRows().contains(u"Shinny.gif ALL 0 0"_s));
    EXPECT_EQ(fileRows().size(), 4);
}

TEST_F(SaveHtml, InTheDataFolderTheWeatherPicturesAreRegisteredWhereTheyLie) {
    session.FilePath = session.DataPath;
    const QByteArray sun = bytesOf(session.DataPath + u"DiaryParts/Shinny.gif"_s);
    saver().SaveHTML();
    EXPECT_EQ(fileRows().size(), 5);
    EXPECT_EQ(bytesOf(session.DataPath + u"DiaryParts/Shinny.gif"_s), sun);
}

TEST_F(SaveHtml, AWeatherPictureThatCannotBeCopiedIsMadeUpForByTheNextRun) {
    ASSERT_TRUE(QDir(path(u"site"_s)).mkpath(u"DiaryParts/Shinny.gif"_s));
    const QString failure = failureOf([&] { saver().SaveHTML(); });
    EXPECT_TRUE(failure.contains(u"Shinny.gif"_s)) << failure.toStdString();
    ASSERT_TRUE(QDir(path(u"site/DiaryParts"_s)).rmdir(u"Shinny.gif"_s));
    saver().SaveHTML();
    EXPECT_TRUE(QFileInfo(sitePart(u"Shinny.gif"_s)).isFile());
    EXPECT_EQ(fileRows().filter(u"Shinny.gif"_s), QStringList{u"Shinny.gif ALL 0 0"_s});
}

TEST_F(SaveHtml, AWeatherPictureThatCannotBeRegisteredIsNotPlacedAndMadeUpForByTheNextRun) {
    registerFile(u"all.css"_s, u"ALL"_s);
    sql(u"CREATE UNIQUE INDEX OneADay ON FileDB (Day)"_s);
    EXPECT_NE(failureOf([&] { saver().SaveHTML(); }), u""_s);
    EXPECT_EQ(QDir(path(u"site/DiaryParts"_s)).entryList(QDir::Files), QStringList());
    sql(u"DROP INDEX OneADay"_s);
    saver().SaveHTML();
    EXPECT_EQ(fileRows().size(), 6);
    EXPECT_TRUE(exists(sitePart(u"Shinny.gif"_s)));
}

TEST_F(SaveHtml, AMissingWeatherPictureIsPassedOver) {
    removeWeatherPictures();
    saver().SaveHTML();
    EXPECT_EQ(fileRows(), QStringList());
}

TEST_F(SaveHtml, ReplacesItsUploadListAndLeavesTheOthersAlone) {
    for (const char* name : {"upload.tmp", "uploadlog.tmp", "uploadold.tmp", "uplogtmp.tmp"})
        writeFile(session.UserPath + QString::fromLatin1(name), name);
    saver().SaveHTML();
    EXPECT_EQ(uploadRows(), QStringList{u"site,x.htm"_s});
    for (const char* name : {"uploadlog.tmp", "uploadold.tmp", "uplogtmp.tmp"})
        EXPECT_EQ(bytesOf(session.UserPath + QString::fromLatin1(name)), name);
}

TEST_F(SaveHtml, SavingAnEntryChangesNoPage) {
    saver().SaveHTML();
    const auto before = contentOf(path(u"site"_s));
    write(u"2004/05/06"_s, u"new"_s);
    EXPECT_EQ(contentOf(path(u"site"_s)), before);
}

TEST_F(SaveHtml, AFolderThatIsGoneIsNamedAndNothingIsWrittenElsewhere) {
    QDir(path(u"site"_s)).removeRecursively();
    write(u"2004/05/06"_s, u"a"_s);
    turnFeedsOn();
    const auto before = contentOf(home.path());
    const QString failure = failureOf([&] { saver().saveCommand(); });
    EXPECT_TRUE(failure.contains(path(u"site/"_s))) << failure.toStdString();
    EXPECT_EQ(contentOf(home.path()), before);
    EXPECT_EQ(eventNames().last(), u"default"_s);
}

TEST_F(SaveHtml, AfterAFailureTheKeysAreNotWrittenAndThePointerIsBack) {
    writeFile(path(u"site/x.htm"_s), "old page");
    ASSERT_TRUE(QFile::setPermissions(path(u"site/x.htm"_s), QFileDevice::ReadOwner));
    const QString failure = failureOf([&] { saver().SaveHTML(); });
    EXPECT_TRUE(failure.contains(path(u"site/x.htm"_s))) << failure.toStdString();
    EXPECT_EQ(sitePage(u"x.htm"_s), u"old page"_s);
    EXPECT_EQ(stored(core::keys::kSaveFileName), u""_s);
    EXPECT_EQ(eventNames().last(), u"default"_s);
    EXPECT_FALSE(exists(session.UserPath + u"upload.tmp"_s));
}

class Preview : public SaveHtml {};

TEST_F(Preview, ShowsTheMonthOfEnterDayWithPrivateEntries) {
    writePrivate(u"2003/12/24"_s, u"秘密"_s);
    session.EnterDay = u"2003/12/31"_s;
    saver().SaveTmpFile();
    const QString page = pageOf(session.DataPath + u"tmp.htm"_s);
    EXPECT_TRUE(page.contains(u"2003年12月分"_s));
    EXPECT_TRUE(page.contains(u"秘密"_s));
    EXPECT_EQ(eventNames(), (QStringList{u"hourglass"_s, u"default"_s}));
}

TEST_F(Preview, WritesFeedsAndDividedPagesButNoList) {
    write(u"2004/05/05"_s, u"a"_s);
    write(u"2004/05/06"_s, u"b"_s);
    turnFeedsOn();
    divide(1, true);
    writeFile(session.UserPath + u"upload.tmp"_s, "old list");
    saver().SaveTmpFile();
    for (const QString& name : {u"tmp.htm"_s, u"tmp_01.htm"_s, u"tmp_RSS091.xml"_s, u"tmp_ATOM.xml"_s})
        EXPECT_TRUE(exists(session.DataPath + name)) << name.toStdString();
    EXPECT_EQ(bytesOf(session.UserPath + u"upload.tmp"_s), "old list");
    EXPECT_EQ(contentOf(path(u"site"_s)).size(), 0);
}

TEST_F(Preview, AsAStepOfACommandShowsTheDayInTheBrowser) {
    saver().previewStep();
    EXPECT_EQ(eventNames(), (QStringList{u"hourglass"_s, u"default"_s, u"Webページ表示中..."_s, u"navigate"_s}));
    EXPECT_EQ(desk.texts(u"navigate"_s), QStringList{session.DataPath + u"tmp.htm#2004/05/06"_s});
}

TEST_F(Preview, TakesNoDayFileOfASiteInTheDataFolder) {
    session.FilePath = session.DataPath;
    write(u"2004/05/05"_s, u"public"_s);
    writePrivate(u"2004/05/05"_s, u"秘密"_s);
    write(u"2004/05/06"_s, u"public"_s);
    divideByDay(true);
    saver().SaveHTML();
    saver().SaveTmpFile();
    EXPECT_TRUE(pageOf(session.DataPath + u"tmp_01.htm"_s).contains(u"秘密"_s));
    const QStringList rows = uploadRows();
    EXPECT_EQ(rows, (QStringList{u"UserData,x.htm"_s, u"UserData,2004_05_05.htm"_s}));
    for (const QString& row : rows)
        EXPECT_TRUE(lacks(pageOf(path(QString(row).replace(u',', u'/'))), u"秘密"_s));
}

TEST_F(Preview, OfTheCustomizeDialogTakesNoDayFileEither) {
    session.FilePath = session.DataPath;
    write(u"2004/05/05"_s, u"a"_s);
    write(u"2004/05/06"_s, u"b"_s);
    divideByDay(true);
    monthPage().MakeHTML(session.DataPath + u"Customize.htm"_s, u"2004/05"_s, site::PageKind::Current,
                         site::MakeList::No, site::WithPrivate::No);
    EXPECT_TRUE(exists(session.DataPath + u"Customize_01.htm"_s));
    EXPECT_FALSE(exists(session.DataPath + u"2004_05_05.htm"_s));
}

TEST_F(Preview, HasDayFilesWhenTheSiteLiesElsewhere) {
    write(u"2004/05/05"_s, u"a"_s);
    write(u"2004/05/06"_s, u"b"_s);
    divideByDay(true);
    saver().SaveTmpFile();
    EXPECT_TRUE(exists(session.DataPath + u"2004_05_05.htm"_s));
    EXPECT_FALSE(exists(session.DataPath + u"tmp_01.htm"_s));
}

TEST_F(Preview, TakesNoDayFileOfAListThatAKilledSaveAsLeft) {
    writePrivate(u"2004/05/05"_s, u"秘密"_s);
    write(u"2004/05/06"_s, u"public"_s);
    divideByDay(true);
    core::writeUploadList(session.UserPath + u"upload.tmp"_s, {{session.DataPath.chopped(1), u"2004_05_05.htm"_s}});
    saver().SaveTmpFile();
    EXPECT_FALSE(exists(session.DataPath + u"2004_05_05.htm"_s));
    EXPECT_TRUE(pageOf(session.DataPath + u"tmp_01.htm"_s).contains(u"秘密"_s));
}

class OldDayPages : public Preview {
protected:
    /// Previews with pages of days, in two months, while the site lies elsewhere.
    OldDayPages() {
        write(u"2004/04/01"_s, u"public"_s);
        writePrivate(u"2004/04/02"_s, u"秘密"_s);
        write(u"2004/05/05"_s, u"public"_s);
        writePrivate(u"2004/05/05"_s, u"秘密"_s);
        write(u"2004/05/06"_s, u"public"_s);
        divideByDay(false);
        session.EnterDay = u"2004/04/01"_s;
        saver().SaveTmpFile();
        session.EnterDay = u"2004/05/06"_s;
        saver().SaveTmpFile();
    }
    bool dataHas(const QString& name) const { return exists(session.DataPath + name); }
};

TEST_F(OldDayPages, StayWhileTheSiteLiesElsewhere) {
    for (const QString& name : {u"2004_04_01.htm"_s, u"2004_04_02.htm"_s, u"2004_05_05.htm"_s, u"2004_05_06.htm"_s})
        EXPECT_TRUE(dataHas(name)) << name.toStdString();
}

TEST_F(OldDayPages, GoWithTheNextPreviewWhenTheSiteHasComeThere) {
    const QByteArray foreign = "<html>somebody's own page";
    writeFile(session.DataPath + u"2003_01_01.htm"_s, foreign);
    writeFile(session.DataPath + u"2003_01_02x.htm"_s, bytesOf(session.DataPath + u"2004_04_02.htm"_s));
    EXPECT_EQ(saver().saveAs(session.DataPath + u"x.htm"_s), platform::Outcome::Done);
    saver().SaveTmpFile();
    for (const QString& name : {u"2004_04_01.htm"_s, u"2004_04_02.htm"_s})
        EXPECT_FALSE(dataHas(name)) << name.toStdString();
    for (const QString& name : {u"2004_05_05.htm"_s, u"2004_05_06.htm"_s})
        EXPECT_TRUE(lacks(pageOf(session.DataPath + name), u"秘密"_s)) << name.toStdString();
    EXPECT_EQ(bytesOf(session.DataPath + u"2003_01_01.htm"_s), foreign);
    EXPECT_TRUE(dataHas(u"2003_01_02x.htm"_s));
    EXPECT_TRUE(dataHas(u"x.htm"_s));
    EXPECT_TRUE(dataHas(u"tmp.htm"_s));
}

TEST_F(OldDayPages, ThatAListNamesStay) {
    session.FilePath = session.DataPath;
    session.FileName = u"2004_05_05.htm"_s;
    const QString folder = session.DataPath.chopped(1);
    core::writeUploadList(session.UserPath + u"uploadold.tmp"_s, {{folder, u"2004_04_01.htm"_s}});
    core::writeUploadList(session.UserPath + u"upload.tmp"_s, {{path(u"site"_s), u"2004_04_02.htm"_s}});
    saver().SaveTmpFile();
    EXPECT_TRUE(dataHas(u"2004_04_01.htm"_s));
    EXPECT_TRUE(dataHas(u"2004_05_05.htm"_s));
    EXPECT_FALSE(dataHas(u"2004_04_02.htm"_s));
    EXPECT_FALSE(dataHas(u"2004_05_06.htm"_s));
}

TEST_F(OldDayPages, LeaveAFolderOfSuchANameAlone) {
    session.FilePath = session.DataPath;
    ASSERT_TRUE(QFile::rename(session.DataPath + u"2004_04_01.htm"_s, session.DataPath + u"kept"_s));
    ASSERT_TRUE(QDir().mkdir(session.DataPath + u"2004_04_01.htm"_s));
    EXPECT_EQ(failureOf([&] { saver().SaveTmpFile(); }), QString());
    EXPECT_FALSE(dataHas(u"2004_04_02.htm"_s));
    EXPECT_TRUE(dataHas(u"2004_04_01.htm"_s));
}

TEST_F(SaveHtml, OfALocalPageIsRefusedWhereTheDataFolderHasBecomeTheSites) {
    session.FileName = u"tmp.htm"_s;
    saver().SaveHTML();
    session.FilePath = session.DataPath;
    const QString failure = failureOf([&] { saver().SaveHTML(); });
    EXPECT_TRUE(failure.contains(session.DataPath + u"tmp.htm"_s)) << failure.toStdString();
    EXPECT_FALSE(exists(session.DataPath + u"tmp.htm"_s));
}

TEST_F(SaveHtml, OfASiteNamedLikeAPreviewHasDayFiles) {
    session.FileName = u"tmp.htm"_s;
    write(u"2004/05/05"_s, u"a"_s);
    write(u"2004/05/06"_s, u"b"_s);
    divideByDay(true);
    saver().SaveHTML();
    EXPECT_TRUE(siteHas(u"2004_05_05.htm"_s));
    EXPECT_FALSE(siteHas(u"tmp_01.htm"_s));
}

} // namespace
} // namespace velloria::tests
