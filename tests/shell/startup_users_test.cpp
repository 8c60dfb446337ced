// A start with "velluser.ini" beside the program: login, the user's folder, and what is not copied there.
#include "shell/startup.h"

#include "convert/password_text.h"
#include "core/ini.h"
#include "platform/file_write.h"
#include "support/test_home.h"

#include <QDir>

#include <sys/stat.h>

using namespace Qt::StringLiterals;

namespace velloria::tests {
namespace {

using platform::copyFile;
using platform::makeFolder;
using shell::Login;
using shell::StartResult;

class StartupUsers : public FactoryHome {
protected:
    void addUser(const QString& id, const QString& password, const QString& folder = {}) {
        core::WriteIni(users(), id, u"ID"_s, id);
        core::WriteIni(users(), id, u"Pass"_s, convert::EncryptPassword(password));
        if (!folder.isNull())
            core::WriteIni(users(), id, u"Path"_s, folder);
    }
    /// Settings and diary of a user, with the data in their folder.
    void fill(const QString& folder) {
        makeFolder(folder);
        writeFile(folder + u"/diary.ini"_s, "[ALL]\r\nDataPath=" + folder.toUtf8() + "\r\n");
        copyFile(path(u"default.mdb"_s), folder + u"/diary.mdb"_s);
    }
    QString users() const { return path(u"velluser.ini"_s); }
    QString previous() const { return core::ReadIniDef(users(), u"Previous"_s, u"ID"_s, u"(missing)"_s); }
    QStringList folders() const { return QDir(home.path()).entryList(QDir::Dirs | QDir::NoDotAndDotDot, QDir::Name); }
};

TEST_F(StartupUsers, WithoutLoginEndsSilently) {
    for (const QByteArray& bytes : {QByteArray(), QByteArray("[taro]\r\nID=taro\r\n")}) {
        writeFile(users(), bytes);
        EXPECT_EQ(start(), StartResult::Ended);
        EXPECT_EQ(desk.events.size(), 0);
        EXPECT_EQ(folders(), QStringList());
        EXPECT_TRUE(bytesOf(users()) == bytes);
    }
}

TEST_F(StartupUsers, WithAWrongPasswordEndsBehindOneBox) {
    addUser(u"taro"_s, u"himitsu"_s);
    const Login wrong[] = {{u"taro"_s, u"Himitsu"_s},   {u"taro"_s, u""_s},   {u"Taro"_s, u"himitsu"_s},
                           {u"hanako"_s, u"himitsu"_s}, {u"hanako"_s, u""_s}, {u""_s, u"x"_s}};
    for (const Login& login : wrong) {
        desk.events = {};
        EXPECT_EQ(start(login), StartResult::Ended) << login.id.toStdString();
        EXPECT_EQ(boxes(), QStringList{u"critical: 不正なユーザもしくはパスワードです。\r\nVelloriaを終了します。"_s});
        EXPECT_EQ(desk.events.size(), 1);
        EXPECT_EQ(previous(), login.id);
        EXPECT_FALSE(session.IsLogin);
        EXPECT_EQ(folders(), QStringList());
    }
}

TEST_F(StartupUsers, WithTheRightPasswordUsesTheUsersFolder) {
    addUser(u"taro"_s, u"himitsu"_s);
    addUser(u"hanako"_s, u"x"_s);
    fill(path(u"taro"_s));
    ASSERT_EQ(start(Login{u"taro"_s, u"himitsu"_s}), StartResult::Ready);
    EXPECT_TRUE(session.IsLogin);
    EXPECT_EQ(session.UserID, u"taro"_s);
    EXPECT_EQ(session.UserPath, path(u"taro/"_s));
    EXPECT_EQ(session.DataPath, path(u"taro/"_s));
    EXPECT_EQ(session.DiaryIniFile, path(u"taro/diary.ini"_s));
    EXPECT_EQ(session.FilePath, u""_s);
    EXPECT_EQ(previous(), u"taro"_s);
    EXPECT_EQ(boxes(), QStringList());
    EXPECT_EQ(folders(), QStringList{u"taro"_s}) << "the single user's folder is not made";
    EXPECT_TRUE(exists(path(u"taro/Customize/Customize.ini"_s)));
}

TEST_F(StartupUsers, TheUsersFolderIsWherePathSays) {
    const QTemporaryDir other;
    const struct {
        QString stored;
        QString folder;
    } cases[] = {{other.path() + u'/', other.path() + u'/'},
                 {other.path(), other.path() + u'/'},
                 {u""_s, path(u"taro/"_s)},
                 {u"C:\\Diary\\taro\\"_s, path(u"taro/"_s)},
                 {u"taro"_s, path(u"taro/"_s)}};
    fill(other.path());
    fill(path(u"taro"_s));
    for (const auto& c : cases) {
        addUser(u"taro"_s, u"p"_s, c.stored);
        ASSERT_EQ(start(Login{u"taro"_s, u"p"_s}), StartResult::Ready) << c.stored.toStdString();
        EXPECT_EQ(session.UserPath, c.folder) << c.stored.toStdString();
    }
}

TEST_F(StartupUsers, WithoutSettingsTheDataFolderIsAskedFor) {
    addUser(u"taro"_s, u"p"_s);
    const mode_t mask = ::umask(0022);
    desk.answers = {QJsonValue::Null};
    EXPECT_EQ(start(Login{u"taro"_s, u"p"_s}), StartResult::Ended);
    ::umask(mask);
    EXPECT_EQ(boxes().size(), 2);
    EXPECT_TRUE(boxes().front().startsWith(u"critical: データ保存先フォルダが不正です。"_s));
    EXPECT_EQ(modeOf(path(u"taro"_s)), 0700U);
    EXPECT_TRUE(QDir(path(u"taro"_s)).isEmpty()) << "nothing is copied for a user";
}

TEST_F(StartupUsers, ANewUserGetsAnEmptyDiaryThatWorks) {
    addUser(u"taro"_s, u"p"_s);
    makeFolder(path(u"data"_s));
    desk.answers = {path(u"data"_s)};
    ASSERT_EQ(start(Login{u"taro"_s, u"p"_s}), StartResult::Ready);
    ASSERT_EQ(boxes().size(), 3);
    EXPECT_TRUE(boxes().at(1).startsWith(u"plain: diary.mdbがアップデートされています。"_s));
    EXPECT_TRUE(boxes().at(2).startsWith(u"plain: diary.mdbのアップデートは完了しました。"_s));
    EXPECT_FALSE(exists(path(u"taro/diarymdb.bak"_s))) << "there was nothing to keep";
    EXPECT_TRUE(bytesOf(path(u"taro/diary.mdb"_s)) == bytesOf(path(u"default.mdb"_s)));
    EXPECT_EQ(core::ReadIni(session.DiaryIniFile, u"ALL"_s, u"DBVersion"_s), u"220"_s);
    EXPECT_EQ(core::ReadIni(session.DiaryIniFile, u"ALL"_s, u"MenuLanguage"_s), u""_s) << "no default.ini";
    EXPECT_EQ(modeOf(session.DiaryIniFile), 0600U);

    store::Entry entry;
    entry.day = u"2004/05/06"_s;
    entry.title = u"first"_s;
    const store::DiaryStore diary(run);
    diary.saveEntries({entry}, store::PublishTime::Now, {});
    EXPECT_EQ(diary.LoadDay(entry.day).size(), 1U);
    desk.events = {};
    EXPECT_EQ(start(Login{u"taro"_s, u"p"_s}), StartResult::Ready);
    EXPECT_EQ(boxes(), QStringList()) << "the second start asks nothing";
}

TEST_F(StartupUsers, TakesNoSettingsOrDiaryFromBesideTheProgram) {
    addUser(u"taro"_s, u"p"_s);
    writeFile(path(u"diary.ini"_s), "[ALL]\r\nSaveFileName=other.htm\r\n");
    writeFile(path(u"diary.mdb"_s), "other");
    makeFolder(path(u"data"_s));
    desk.answers = {path(u"data"_s)};
    ASSERT_EQ(start(Login{u"taro"_s, u"p"_s}), StartResult::Ready);
    EXPECT_EQ(session.FileName, u""_s);
    EXPECT_TRUE(bytesOf(path(u"taro/diary.mdb"_s)) == bytesOf(path(u"default.mdb"_s)));
}

TEST_F(StartupUsers, AnEmptyIdWithAnEmptyPasswordGetsIn) {
    addUser(u"taro"_s, u"p"_s);
    makeFolder(path(u"data"_s));
    desk.answers = {path(u"data"_s)};
    ASSERT_EQ(start(Login{u""_s, u""_s}), StartResult::Ready);
    EXPECT_TRUE(session.IsLogin);
    EXPECT_EQ(session.UserID, u""_s);
    EXPECT_EQ(session.UserPath, home.path() + u"//"_s);
    EXPECT_TRUE(exists(path(u"diary.mdb"_s)));
}

TEST_F(StartupUsers, AUserFileOfAWindowsDiskCounts) {
    writeFile(path(u"VELLUSER.INI"_s), "[taro]\r\nID=taro\r\n");
    EXPECT_EQ(start(), StartResult::Ended);
    fill(path(u"taro"_s));
    EXPECT_EQ(start(Login{u"taro"_s, u""_s}), StartResult::Ready);
    EXPECT_FALSE(exists(users()));
    EXPECT_EQ(core::ReadIni(path(u"VELLUSER.INI"_s), u"Previous"_s, u"ID"_s), u"taro"_s);
}

TEST_F(StartupUsers, AUserFileThatIsNoTextIsRefusedAndLeftAlone) {
    const QByteArray binary("[taro]\r\nID=taro\0\r\n", 18);
    writeFile(users(), binary);
    EXPECT_TRUE(failureOf([&] { start(Login{u"taro"_s, u""_s}); }).contains(users()));
    EXPECT_TRUE(bytesOf(users()) == binary);
}

} // namespace
} // namespace velloria::tests
