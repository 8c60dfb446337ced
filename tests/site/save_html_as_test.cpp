#include "core/ini.h"
#include "core/keys.h"
#include "core/settings.h"
#include "site/site_home.h"
#include "support/disk_watch.h"

#include <QDir>
#include <QFile>
#include <QJsonObject>

using namespace Qt::StringLiterals;

namespace velloria::tests {
namespace {

using platform::Outcome;

class SaveHtmlAs : public SiteHome {
protected:
    /// The file dialogs that were shown.
    QList<QJsonObject> dialogs() const {
        QList<QJsonObject> dialogs;
        for (const QJsonValue& event : desk.events) {
            if (event[u"event"_s] == u"file"_s)
                dialogs += event.toObject();
        }
        return dialogs;
    }
    QString storedName() const { return core::Settings(session).text(core::keys::kSaveFileName); }
};

TEST_F(SaveHtmlAs, StandsInForSaveHtmlWithoutATarget) {
    const struct {
        QString folder;
        QString name;
    } cases[] = {{u""_s, u"x.htm"_s}, {path(u"site/"_s), u""_s}, {u""_s, u""_s}};
    for (const auto& c : cases) {
        session.FilePath = c.folder;
        session.FileName = c.name;
        desk.events = {};
        desk.answers = {path(u"site/new.htm"_s)};
        EXPECT_EQ(saver().saveCommand(), Outcome::Done);
        ASSERT_EQ(dialogs().size(), 1);
        EXPECT_EQ(dialogs().first()[u"folder"_s], c.folder);
        EXPECT_EQ(session.FileName, u"new.htm"_s);
    }
}

TEST_F(SaveHtmlAs, IsNotAskedForByASaveHtmlThatKnowsItsTarget) {
    EXPECT_EQ(saver().saveCommand(), Outcome::Done);
    EXPECT_EQ(dialogs().size(), 0);
    EXPECT_TRUE(siteHas(u"x.htm"_s));
}

TEST_F(SaveHtmlAs, AsksWithItsTitleAndFilterFromTheSiteFolderOn) {
    desk.answers = {path(u"site/new.htm"_s)};
    saver().saveAsCommand();
    const QJsonObject dialog = dialogs().first();
    EXPECT_EQ(dialog[u"mode"_s], u"save"_s);
    EXPECT_EQ(dialog[u"title"_s], u"日記の書き出し..."_s);
    EXPECT_EQ(dialog[u"filter"_s], u"HTML Files(*.htm;*.html)|*.htm;*html|"_s);
    EXPECT_EQ(dialog[u"folder"_s], path(u"site/"_s));
}

TEST_F(SaveHtmlAs, TakesFolderAndNameOverAndStoresThem) {
    desk.answers = {path(u"s2/index"_s)};
    EXPECT_EQ(saver().saveAsCommand(), Outcome::Done);
    EXPECT_TRUE(exists(path(u"s2/index.htm"_s)));
    EXPECT_EQ(session.FilePath, path(u"s2/"_s));
    EXPECT_EQ(session.FileName, u"index.htm"_s);
    EXPECT_EQ(storedName(), u"index.htm"_s);
    EXPECT_EQ(core::Settings(session).text(core::keys::kSaveFilePath), path(u"s2/"_s));
    startAt(u"2004/05/07 00:00:00"_s);
    EXPECT_EQ(session.FilePath + session.FileName, path(u"s2/index.htm"_s));
}

TEST_F(SaveHtmlAs, FolderAndNameComeIntoTheSettingsTogether) {
    const DiskWatch watch;
    EXPECT_EQ(saver().saveAs(path(u"s2/y.htm"_s)), Outcome::Done);
    EXPECT_EQ(watch.synced().filter(u".velltmp-"_s).size(), 1);
}

TEST_F(SaveHtmlAs, CancelledDoesNothing) {
    desk.answers = {QJsonValue::Null};
    const auto before = contentOf(home.path());
    EXPECT_EQ(saver().saveAsCommand(), Outcome::Refused);
    EXPECT_EQ(contentOf(home.path()), before);
    EXPECT_EQ(session.FilePath + session.FileName, path(u"site/x.htm"_s));
    EXPECT_EQ(desk.texts(u"status"_s), QStringList());
}

TEST_F(SaveHtmlAs, AKnownPathIsNotAskedFor) {
    EXPECT_EQ(saver().saveAs(path(u"new/deep/x.htm"_s)), Outcome::Done);
    EXPECT_EQ(dialogs().size(), 0);
    EXPECT_TRUE(exists(path(u"new/deep/x.htm"_s)));
}

TEST_F(SaveHtmlAs, AFailureBringsTheOldTargetBack) {
    writeFile(path(u"file"_s), "no folder");
    EXPECT_NE(failureOf([&] { saver().saveAs(path(u"file/x.htm"_s)); }), u""_s);
    EXPECT_EQ(session.FilePath + session.FileName, path(u"site/x.htm"_s));
    writeFile(path(u"site/old.htm"_s), "old");
    ASSERT_TRUE(QFile::setPermissions(path(u"site/old.htm"_s), QFileDevice::ReadOwner));
    EXPECT_NE(failureOf([&] { saver().saveAs(path(u"site/old.htm"_s)); }), u""_s);
    EXPECT_EQ(session.FilePath + session.FileName, path(u"site/x.htm"_s));
    EXPECT_EQ(storedName(), u""_s);
}

TEST_F(SaveHtmlAs, APathWithoutANameIsRefused) {
    for (const QString& name : {path(u"site/"_s), u""_s}) {
        const QString before = session.FileName;
        EXPECT_EQ(saver().saveAs(name), Outcome::Refused) << name.toStdString();
        EXPECT_EQ(session.FileName, before);
    }
    EXPECT_FALSE(siteHas(u".htm"_s));
}

TEST_F(SaveHtmlAs, AFolderThatTheSettingsCannotKeepIsRefused) {
    const QString longFolder = QString(200, u'a') + u'/' + QString(200, u'b') + u'/';
    EXPECT_EQ(saver().saveAs(path(longFolder) + u"x.htm"_s), Outcome::Refused);
    EXPECT_FALSE(exists(path(QString(200, u'a'))));
    EXPECT_EQ(session.FilePath, path(u"site/"_s));
    EXPECT_EQ(boxes().size(), 1);
}

TEST_F(SaveHtmlAs, InTheDataFolderNamesOfLocalPagesAreRefused) {
    const auto before = contentOf(home.path());
    for (const QString& name :
         {u"tmp.htm"_s, u"tmp"_s, u"tmp.html"_s, u"Customize.htm"_s, u"oldtmp.htm"_s, u"findtmp.htm"_s,
          u"VellInfo_result.htm"_s, u"tmp_01.htm"_s, u"tmp_D.htm"_s, u"Customize_c.htm"_s, u"TMP.HTM"_s}) {
        desk.events = {};
        EXPECT_EQ(saver().saveAs(session.DataPath + name), Outcome::Refused) << name.toStdString();
        ASSERT_EQ(boxes().size(), 1) << name.toStdString();
        EXPECT_TRUE(boxes().first().startsWith(u"critical: "_s));
        EXPECT_TRUE(boxes().first().contains(name));
    }
    EXPECT_EQ(session.FilePath + session.FileName, path(u"site/x.htm"_s));
    EXPECT_EQ(contentOf(home.path()), before);
}

TEST_F(SaveHtmlAs, OtherNamesAreWelcomeInTheDataFolderAndLocalNamesElsewhere) {
    for (const QString& name : {u"index.htm"_s, u"tmpx.htm"_s, u"xtmp_.htm"_s, u"tmp_x.htm"_s, u"Customized.htm"_s}) {
        EXPECT_EQ(saver().saveAs(session.DataPath + name), Outcome::Done) << name.toStdString();
        EXPECT_TRUE(exists(session.DataPath + name)) << name.toStdString();
    }
    EXPECT_EQ(saver().saveAs(path(u"site/tmp.htm"_s)), Outcome::Done);
    EXPECT_TRUE(siteHas(u"tmp.htm"_s));
}

TEST_F(SaveHtmlAs, TheDataFolderIsKnownByWhateverNameItHas) {
    ASSERT_TRUE(QFile::link(session.DataPath.chopped(1), path(u"link"_s)));
    EXPECT_EQ(saver().saveAs(path(u"link/tmp.htm"_s)), Outcome::Refused);
    EXPECT_EQ(saver().saveAs(session.DataPath + u"../UserData/tmp.htm"_s), Outcome::Refused);
}

TEST_F(SaveHtmlAs, ALoggedInUserIsWarnedOfTheDataFolder) {
    saver().saveAs(session.DataPath + u"a.htm"_s);
    const QStringList quiet = desk.texts(u"status"_s);
    session.IsLogin = true;
    desk.events = {};
    saver().saveAs(session.DataPath + u"a.htm"_s);
    EXPECT_EQ(desk.texts(u"status"_s).size(), quiet.size() + 1);
    EXPECT_EQ(desk.texts(u"status"_s).mid(1), quiet);
}

TEST_F(SaveHtmlAs, TakesTheNameThatTheSettingsGiveBack) {
    const struct {
        QString chosen;
        QString saved;
    } cases[] = {
        {u"日記\u301C.htm"_s, u"日記\u301C.htm"_s},
        {u" x.htm"_s, u"x.htm"_s},
        {u"a&#233;b.htm"_s, u"aéb.htm"_s},
        {u"a\nb.htm"_s, u"a b.htm"_s},
    };
    for (const auto& c : cases) {
        EXPECT_EQ(saver().saveAs(path(u"site/"_s) + c.chosen), Outcome::Done);
        EXPECT_EQ(session.FileName, c.saved);
        EXPECT_TRUE(siteHas(c.saved));
        startAt(u"2004/05/06 09:00:00"_s);
        EXPECT_EQ(session.FileName, c.saved);
    }
    EXPECT_FALSE(siteHas(u"日記\uFF5E.htm"_s));
}

TEST_F(SaveHtmlAs, ANameThatTheSettingsCannotKeepIsRefused) {
    for (const QString& name : {QString(60, u'é') + u".htm"_s, u"   "_s})
        EXPECT_TRUE(failureOf([&] { saver().saveAs(path(u"site/"_s) + name); }).contains(name));
    EXPECT_EQ(session.FileName, u"x.htm"_s);
}

TEST_F(SaveHtmlAs, ALocalPageIsKnownByTheNameThatTheSettingsGiveBack) {
    EXPECT_EQ(saver().saveAs(session.DataPath + u" tmp.htm"_s), Outcome::Refused);
    EXPECT_FALSE(exists(session.DataPath + u"tmp.htm"_s));
}

TEST_F(SaveHtmlAs, AFailureBehindThePageBringsTheOldUploadListBack) {
    saver().SaveHTML();
    const QByteArray list = bytesOf(session.UserPath + u"upload.tmp"_s);
    ASSERT_TRUE(QDir().mkpath(path(u"other"_s)));
    writeFile(path(u"other/DiaryParts"_s), "a file where the folder should be");
    EXPECT_NE(failureOf([&] { saver().saveAs(path(u"other/y.htm"_s)); }), u""_s);
    EXPECT_TRUE(exists(path(u"other/y.htm"_s)));
    EXPECT_EQ(bytesOf(session.UserPath + u"upload.tmp"_s), list);
    ASSERT_TRUE(QFile::remove(session.UserPath + u"upload.tmp"_s));
    EXPECT_NE(failureOf([&] { saver().saveAs(path(u"other/y.htm"_s)); }), u""_s);
    EXPECT_FALSE(exists(session.UserPath + u"upload.tmp"_s));
}

TEST_F(SaveHtmlAs, AFolderIsTheSameAtTheNextStartWhenAnotherLooksLikeItInTheCodePage) {
    for (const QString& name : {u"〜日記"_s, u"～日記"_s})
        ASSERT_TRUE(QDir().mkdir(path(name)));
    EXPECT_EQ(saver().saveAs(path(u"〜日記/x.htm"_s)), Outcome::Done);
    startAt(u"2004/05/06 09:00:00"_s);
    EXPECT_EQ(session.FilePath, path(u"〜日記/"_s));
    EXPECT_EQ(saver().saveCommand(), Outcome::Done);
    EXPECT_TRUE(QDir(path(u"～日記"_s)).isEmpty());
    EXPECT_EQ(uploadRows(), QStringList{u"〜日記,x.htm"_s});
}

TEST_F(SaveHtmlAs, AFolderWithALineBreakInItsNameIsRefused) {
    ASSERT_TRUE(QDir().mkdir(path(u"a\nb"_s)));
    EXPECT_EQ(saver().saveAs(path(u"a\nb/x.htm"_s)), Outcome::Refused);
    EXPECT_EQ(session.FilePath, path(u"site/"_s));
}

} // namespace
} // namespace velloria::tests
