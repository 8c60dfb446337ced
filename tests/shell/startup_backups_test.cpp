// What a start does about copies of the diary: makes the day's, offers one in the place of a lost diary.
#include "convert/password_text.h"
#include "core/ini.h"
#include "platform/file_write.h"
#include "shell/startup.h"
#include "store/database_file.h"
#include "store/diary_home.h"
#include "support/faulty_disk.h"

#include <QDir>

#include <sys/stat.h>

using namespace Qt::StringLiterals;

namespace velloria::tests {
namespace {

using platform::removeFile;
using shell::StartResult;

class StartupBackups : public DiaryHome {
protected:
    StartupBackups() { write(kDay, u"dear"_s); }

    QString folder() const { return session.UserPath + u"Backup/"_s; }
    QStringList names() const { return QDir(folder()).entryList(QDir::Files, QDir::Name); }
    QString today() const { return folder() + u"diary-20040506.mdb"_s; }
    void startAnew() {
        desk.events = {};
        EXPECT_EQ(start(), StartResult::Ready);
    }
};

TEST_F(StartupBackups, TheFirstStartOfADayMakesOne) {
    EXPECT_FALSE(exists(folder()));
    startAnew();
    EXPECT_EQ(titles(today()), u"dear"_s);
    write(kDay, u"more"_s);
    const auto before = contentOf(home.path());
    startAnew();
    EXPECT_EQ(contentOf(home.path()), before) << "one a day";
    setNow(u"2004/05/07 00:00:00"_s);
    startAnew();
    EXPECT_EQ(titles(folder() + u"diary-20040507.mdb"_s), u"dear more"_s);
    EXPECT_EQ(desk.texts(u"message"_s), QStringList());
}

TEST_F(StartupBackups, AnEmptyDiaryHasNone) {
    sql(u"DELETE FROM Contents"_s);
    startAnew();
    EXPECT_FALSE(exists(folder()));
}

TEST_F(StartupBackups, AFailureIsToldAndKeepsNobodyFromTheirDiary) {
    writeFile(session.UserPath + u"Backup"_s, "in its place");
    shell::Startup startup(run);
    EXPECT_EQ(startup.run(home.path(), std::nullopt), StartResult::Ready);
    EXPECT_TRUE(lastStatus().startsWith(u"日記のバックアップを作成できません"_s)) << lastStatus().toStdString();
    EXPECT_EQ(startup.notice(), lastStatus());
    EXPECT_EQ(session.Today, u"2004/05/06"_s);
}

TEST_F(StartupBackups, AFailureKeepsNoOldDiaryFromItsUpdate) {
    sql(u"UPDATE DBInfo SET VersionInfo = 210"_s);
    writeFile(session.UserPath + u"Backup"_s, "in its place");
    const QByteArray before = bytesOf(file());
    startAnew();
    EXPECT_TRUE(lastStatus().startsWith(u"日記のバックアップを作成できません"_s)) << lastStatus().toStdString();
    EXPECT_EQ(store::GetDBVersion(file()), 220);
    EXPECT_TRUE(bytesOf(backup()) == before);
}

TEST_F(StartupBackups, AFolderOfTheNameIsNoCopy) {
    ASSERT_TRUE(QDir().mkpath(today()));
    startAnew();
    EXPECT_TRUE(lastStatus().startsWith(u"日記のバックアップを作成できません"_s)) << lastStatus().toStdString();
}

TEST_F(StartupBackups, OfAnOldVersionThereIsOneBehindTheStart) {
    sql(u"UPDATE DBInfo SET VersionInfo = 120"_s);
    startAnew();
    EXPECT_EQ(names(), QStringList{u"diary-20040506.mdb"_s});
}

class LostDiary : public StartupBackups {
protected:
    LostDiary() {
        start();
        writeFile(folder() + u"diary-20040601.mdb"_s, "damaged and newer");
        desk.events = {};
        m_whole = bytesOf(today());
    }
    QStringList questions() const { return desk.texts(u"message"_s); }

    QByteArray m_whole;
    static inline const QString kQuestion = u"\r\n次のバックアップを復元しますか？\r\n「diary-20040506.mdb」\r\n日付: "
                                            u"2004/05/06 00:00\r\n日記: 1件\r\n最後の日記: dear"_s;
    static inline const QString kAnew =
        u"空の日記から始めますか？\r\n「いいえ」を選ぶと、何も作成しないで終了します。"_s;
};

TEST_F(LostDiary, AMissingOneIsOfferedTheNewestSoundCopy) {
    removeFile(file());
    desk.answers = {u"yes"_s};
    EXPECT_EQ(start(), StartResult::Ready);
    EXPECT_EQ(questions(), QStringList{u"「diary.mdb」がありません。"_s + kQuestion});
    EXPECT_EQ(titles(file()), u"dear"_s);
    EXPECT_TRUE(bytesOf(today()) == m_whole);
}

TEST_F(LostDiary, NoTwiceEndsTheStartWithNothingMade) {
    removeFile(file());
    desk.answers = {u"no"_s, u"no"_s};
    const auto before = contentOf(home.path());
    shell::Startup startup(run);
    EXPECT_EQ(startup.run(home.path(), std::nullopt), StartResult::Ended);
    EXPECT_EQ(questions(), (QStringList{u"「diary.mdb」がありません。"_s + kQuestion, kAnew}));
    EXPECT_EQ(contentOf(home.path()), before);
    EXPECT_EQ(startup.notice(), u"「diary.mdb」がありません。バックアップ「diary-20040506.mdb」を復元できます。"_s);
}

TEST_F(LostDiary, AnEmptyOneIsBegunByAWord) {
    removeFile(file());
    desk.answers = {u"no"_s, u"yes"_s};
    EXPECT_EQ(start(), StartResult::Ready);
    EXPECT_EQ(titles(file()), QString());
    EXPECT_TRUE(bytesOf(today()) == m_whole);
}

TEST_F(LostDiary, TheOneBesideTheProgramIsNotTakenUnasked) {
    removeFile(file());
    platform::copyFile(path(u"default.mdb"_s), path(u"diary.mdb"_s));
    desk.answers = {u"yes"_s};
    EXPECT_EQ(start(), StartResult::Ready);
    EXPECT_EQ(titles(file()), u"dear"_s);
}

TEST_F(LostDiary, WithoutEntriesIsOfferedOneAndGoesOnAtANo) {
    sql(u"DELETE FROM Contents"_s);
    desk.answers = {u"no"_s, u"yes"_s};
    startAnew();
    EXPECT_EQ(questions(), QStringList{u"「diary.mdb」には日記が1件もありません。"_s + kQuestion});
    EXPECT_EQ(desk.texts(u"status"_s).value(0),
              u"「diary.mdb」には日記が1件もありません。バックアップ「diary-20040506.mdb」を復元できます。"_s)
        << "a No may be nobody's";
    EXPECT_EQ(titles(file()), QString());
    startAnew();
    EXPECT_EQ(titles(file()), u"dear"_s);
}

TEST_F(LostDiary, OfNoBytesIsTheFailureItWasAtANo) {
    writeFile(file(), {});
    desk.answers = {u"no"_s};
    EXPECT_TRUE(failureOf([&] { start(); }).contains(u"日記データベースではありません"_s));
    EXPECT_EQ(bytesOf(file()), QByteArray());
    desk.answers = {u"yes"_s};
    EXPECT_EQ(start(), StartResult::Ready);
    EXPECT_EQ(titles(file()), u"dear"_s);
}

TEST_F(LostDiary, BehindALinkThatLeadsNowhereIsTheFailureItWas) {
    removeFile(file());
    ASSERT_TRUE(QFile::link(path(u"nowhere/diary.mdb"_s), file()));
    EXPECT_TRUE(failureOf([&] { start(); }).contains(path(u"nowhere/diary.mdb"_s)));
    EXPECT_EQ(questions(), QStringList());
}

TEST_F(LostDiary, OfCopiesThatCantBeReadNoneIsOfferedAndNoEmptyOneBegunInSilence) {
    removeFile(today());
    removeFile(file());
    const auto before = contentOf(home.path());
    const QString told = u"「diary.mdb」がありません。\r\nバックアップ「diary-20040601.mdb」は読み込めません。\r\n"_s;
    desk.answers = {u"no"_s, u"yes"_s};
    shell::Startup startup(run);
    EXPECT_EQ(startup.run(home.path(), std::nullopt), StartResult::Ended);
    EXPECT_EQ(questions(), QStringList{told + kAnew});
    EXPECT_EQ(startup.notice(), QString(told).remove(u"\r\n"_s));
    EXPECT_EQ(contentOf(home.path()), before);
    EXPECT_EQ(start(), StartResult::Ready);
    EXPECT_EQ(titles(file()), QString());
}

TEST_F(LostDiary, TheFolderOfADiskThatIsNotThereIsToldOf) {
    ASSERT_TRUE(QDir(folder()).removeRecursively());
    ASSERT_TRUE(QFile::link(path(u"nowhere"_s), session.UserPath + u"Backup"_s));
    removeFile(file());
    const QString diary = file();
    desk.answers = {u"no"_s};
    EXPECT_EQ(start(), StartResult::Ended);
    EXPECT_EQ(questions(),
              QStringList{u"「diary.mdb」がありません。\r\nバックアップ「Backup」は読み込めません。\r\n"_s + kAnew});
    EXPECT_FALSE(exists(diary));
}

TEST_F(LostDiary, NobodyIsAskedWhereNoCopyHasEntries) {
    removeFile(folder() + u"diary-20040601.mdb"_s);
    removeFile(today());
    removeFile(file());
    startAnew();
    EXPECT_EQ(titles(file()), QString());
    EXPECT_EQ(questions(), QStringList());
}

TEST_F(LostDiary, NothingIsLockedWhileSomebodyThinks) {
    class Thinking : public ScriptedDesk {
    public:
        std::function<void()> whileAsked;

    protected:
        bool answerYesNo(const QJsonObject&) override {
            whileAsked();
            return false;
        }
    };
    sql(u"DELETE FROM Contents"_s);
    Thinking thinking;
    int asked = 0;
    thinking.whileAsked = [&] {
        ++asked;
        sql(u"BEGIN EXCLUSIVE; COMMIT"_s);
        const platform::FolderLock lock(session.UserPath);
        const platform::FileTurn turn = store::turnAtBackups(session.UserPath);
    };
    EXPECT_EQ(shell::Startup({session, clock, thinking}).run(home.path(), std::nullopt), StartResult::Ready);
    EXPECT_EQ(asked, 1);
}

TEST_F(LostDiary, OfAUserIsOfferedToo) {
    const QString users = path(u"velluser.ini"_s);
    core::WriteIni(users, u"taro"_s, u"ID"_s, u"taro"_s);
    core::WriteIni(users, u"taro"_s, u"Pass"_s, convert::EncryptPassword(u"p"_s));
    core::WriteIni(users, u"taro"_s, u"Path"_s, session.UserPath);
    removeFile(file());
    desk.answers = {u"no"_s, u"no"_s, u"yes"_s};
    const QString diary = file();
    EXPECT_EQ(start(shell::Login{u"taro"_s, u"p"_s}), StartResult::Ended);
    EXPECT_FALSE(exists(diary));
    EXPECT_EQ(start(shell::Login{u"taro"_s, u"p"_s}), StartResult::Ready);
    EXPECT_EQ(titles(diary), u"dear"_s);
}

} // namespace
} // namespace velloria::tests
