#include "shell/single_user_data.h"

#include "convert/password_text.h"
#include "core/ini.h"
#include "core/keys.h"
#include "shell/user_accounts.h"
#include "store/database_file.h"
#include "support/faulty_disk.h"
#include "support/test_home.h"
#include "support/vectors.h"

#include <QDir>
#include <QFile>

#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

using namespace Qt::StringLiterals;

namespace velloria::tests {
namespace {

using platform::Outcome;

const QString kQuestion =
    u"question: 選択しているユーザー(taro)にシングルユーザー時のデータを移行します。\r\n"
    "基本的に上書きとなるので、データの消失にご注意下さい（現在のファイルは「_BackUp」として残します。"_s;
const QString kDone = u"plain: 完了しました！"_s;

/// A single user with an entry, and taro, who has a diary and settings too.
class SingleUserData : public TestHome {
protected:
    SingleUserData() {
        write(u"2004/05/06"_s, u"single"_s);
        core::WriteIni(session.DiaryIniFile, u"FTP"_s, u"ID"_s, u"single"_s);
        core::WriteIni(session.DiaryIniFile, u"RSS"_s, u"IniFileName"_s, u"/somewhere/RSS.ini"_s);
        core::WriteIni(path(u"velluser.ini"_s), u"taro"_s, u"ID"_s, u"taro"_s);
        core::WriteIni(path(u"velluser.ini"_s), u"taro"_s, u"Pass"_s, convert::EncryptPassword(u"abc"_s));
        QDir(home.path()).mkpath(u"taro"_s);
        writeFile(taro(u"diary.ini"_s), "[FTP]\r\nID=taro\r\n");
        store::copyDatabase(path(u"default.mdb"_s), taro(u"diary.mdb"_s));
        writeDiary(taro(), u"taro"_s);
    }

    QString taro(const QString& name = {}) const { return path(u"taro/"_s) + name; }
    void writeDiary(const QString& folder, const QString& title) {
        store::DiaryStore(folder + u"diary.mdb"_s, clock)
            .saveEntries({entryOf(u"2004/05/06"_s, title)}, store::PublishTime::AsGiven, {});
    }
    /// Whose entries the diary holds, the last one first.
    QString titleIn(const QString& database) {
        QStringList titles;
        for (const store::Entry& entry : store::DiaryStore(database, clock).LoadDay(u"2004/05/06"_s))
            titles += entry.title;
        return titles.join(u' ');
    }
    static QString owner(const QString& settings) { return core::ReadIni(settings, u"FTP"_s, u"ID"_s); }
    QString section(const QString& name, const QString& key = u"IniFileName"_s) const {
        return core::ReadIni(taro(u"diary.ini"_s), name, key);
    }
    QStringList files() const { return QDir(taro()).entryList(QDir::Files | QDir::Hidden, QDir::Name); }
    Outcome take(const QJsonArray& answers = {u"abc"_s, u"yes"_s}) {
        desk.answers = answers;
        desk.events = {};
        return shell::UserAccounts(run).takeSingleUserData(u"taro"_s);
    }
    void expectRefused(const QJsonArray& answers, const QStringList& expected) {
        const auto before = contentOf(home.path());
        EXPECT_EQ(take(answers), Outcome::Refused);
        EXPECT_EQ(boxes(), expected);
        EXPECT_TRUE(contentOf(home.path()) == before);
    }
};

TEST_F(SingleUserData, ComesToTheUserAndLeadsToTheirFolder) {
    EXPECT_EQ(take(), Outcome::Done);
    EXPECT_EQ(boxes(), (QStringList{kQuestion, kDone}));
    EXPECT_EQ(titleIn(taro(u"diary.mdb"_s)), u"single"_s);
    EXPECT_EQ(owner(taro(u"diary.ini"_s)), u"single"_s);
    EXPECT_EQ(section(u"ALL"_s, u"DataPath"_s), taro());
    EXPECT_EQ(section(u"Customize"_s), taro(u"Customize/Customize.ini"_s));
    EXPECT_EQ(section(u"Frame"_s), taro(u"Frame.ini"_s));
    EXPECT_EQ(section(u"HaloScan"_s), taro(u"HaloScan.ini"_s));
    EXPECT_EQ(section(u"Blog"_s), taro(u"Blog.ini"_s));
    EXPECT_EQ(section(u"RSS"_s), u"/somewhere/RSS.ini"_s) << "the feeds stay as they were";
    EXPECT_EQ(owner(taro(u"diary_BackUp.ini"_s)), u"taro"_s);
    EXPECT_EQ(titleIn(taro(u"diary_BackUp.mdb"_s)), u"taro"_s);
    EXPECT_EQ(titleIn(path(u"UserData/diary.mdb"_s)), u"single"_s) << "a copy came along";
    EXPECT_EQ(lastStatus(), u"設定と日記を移行しました。画像、カスタマイズのテキスト、登録したファイルは「"_s +
                                path(u"UserData/"_s) + u"」に残っています。"_s);
}

TEST_F(SingleUserData, LetsTheUserLogIn) {
    take();
    EXPECT_EQ(start(shell::Login{u"taro"_s, u"abc"_s}), shell::StartResult::Ready);
    EXPECT_EQ(session.DataPath, taro());
    EXPECT_TRUE(exists(taro(u"DiaryParts/Shinny.gif"_s)));
    EXPECT_EQ(diary().LoadDay(u"2004/05/06"_s).front().title, u"single"_s);
}

/// What the older programs left, and an old one of this program: the user's first start updates it.
TEST_F(SingleUserData, OfAnOlderVersionIsUpdatedAtTheUsersStart) {
    for (const bool isJet : {true, false}) {
        if (isJet) {
            QFile::remove(path(u"UserData/diary.mdb"_s));
            ASSERT_TRUE(QFile::copy(dataPath(u"jet/v150.mdb"_s), path(u"UserData/diary.mdb"_s)));
        } else {
            store::copyDatabase(path(u"default.mdb"_s), path(u"UserData/diary.mdb"_s));
            writeDiary(path(u"UserData/"_s), u"single"_s);
            sql(u"UPDATE DBInfo SET VersionInfo = 150"_s);
        }
        const QByteArray source = bytesOf(path(u"UserData/diary.mdb"_s));
        EXPECT_EQ(take(), Outcome::Done);
        EXPECT_TRUE(bytesOf(taro(u"diary.mdb"_s)) == source);
        const core::Session single = session;
        desk.events = {};
        ASSERT_EQ(start(shell::Login{u"taro"_s, u"abc"_s}), shell::StartResult::Ready);
        EXPECT_EQ(boxes().size(), 2);
        EXPECT_EQ(store::GetDBVersion(taro(u"diary.mdb"_s)), 220);
        EXPECT_FALSE(diary().AllEntryKeys().empty());
        EXPECT_EQ(exists(taro(u"diary_jet.mdb"_s)), true);
        session = single;
    }
    EXPECT_EQ(titleIn(taro(u"diary.mdb"_s)), u"single"_s);
}

TEST_F(SingleUserData, ForWhoeverIsLoggedInAsksForARestart) {
    session.UserID = u"taro"_s;
    take();
    EXPECT_EQ(boxes().last(),
              u"plain: 現在ログインしたユーザーにデータを移行したので、Velloriaを再起動してください。"_s);
}

TEST_F(SingleUserData, OfTwoMovesLeavesEveryBackup) {
    take();
    writeDiary(taro(), u"later"_s);
    core::WriteIni(taro(u"diary.ini"_s), u"FTP"_s, u"ID"_s, u"later"_s);
    take();
    EXPECT_EQ(owner(taro(u"diary_BackUp2.ini"_s)), u"taro"_s);
    EXPECT_EQ(titleIn(taro(u"diary_BackUp2.mdb"_s)), u"taro"_s);
    EXPECT_EQ(owner(taro(u"diary_BackUp.ini"_s)), u"later"_s);
    EXPECT_EQ(titleIn(taro(u"diary_BackUp.mdb"_s)), u"later single"_s);
    take();
    EXPECT_EQ(owner(taro(u"diary_BackUp2.ini"_s)), u"taro"_s);
    EXPECT_EQ(owner(taro(u"diary_BackUp3.ini"_s)), u"later"_s);
    EXPECT_EQ(titleIn(taro(u"diary_BackUp.mdb"_s)), u"single"_s);
}

TEST_F(SingleUserData, MakesTheFolderOfAUserWhoHasNone) {
    ASSERT_TRUE(QDir(taro()).removeRecursively());
    EXPECT_EQ(take(), Outcome::Done);
    EXPECT_EQ(files(), (QStringList{u"diary.ini"_s, u"diary.mdb"_s}));
    EXPECT_EQ(modeOf(taro()), 0700U);
    EXPECT_EQ(modeOf(taro(u"diary.ini"_s)), 0600U);
    EXPECT_EQ(modeOf(taro(u"diary.mdb"_s)), 0600U);
}

TEST_F(SingleUserData, BesideTheProgramCountsWhereUserDataHasNone) {
    QFile::rename(path(u"UserData/diary.mdb"_s), path(u"diary.mdb"_s));
    writeFile(path(u"diary.ini"_s), "[FTP]\r\nID=old\r\n");
    EXPECT_EQ(take(), Outcome::Done);
    EXPECT_EQ(owner(taro(u"diary.ini"_s)), u"single"_s);
    EXPECT_EQ(titleIn(taro(u"diary.mdb"_s)), u"single"_s);
    QFile::remove(path(u"UserData/diary.ini"_s));
    EXPECT_EQ(take(), Outcome::Done);
    EXPECT_EQ(owner(taro(u"diary.ini"_s)), u"old"_s);
}

/// What has nothing to take its place stays where it is.
TEST_F(SingleUserData, OfOneFileMovesThatOneAlone) {
    QFile::remove(path(u"UserData/diary.mdb"_s));
    EXPECT_EQ(take(), Outcome::Done);
    EXPECT_EQ(titleIn(taro(u"diary.mdb"_s)), u"taro"_s);
    EXPECT_EQ(files(), (QStringList{u"diary.ini"_s, u"diary.mdb"_s, u"diary_BackUp.ini"_s}));
    EXPECT_TRUE(lastStatus().startsWith(u"設定を移行しました。"_s));
}

TEST_F(SingleUserData, OfADiaryAloneLeavesTheUsersSettings) {
    QFile::remove(path(u"UserData/diary.ini"_s));
    EXPECT_EQ(take(), Outcome::Done);
    EXPECT_EQ(titleIn(taro(u"diary.mdb"_s)), u"single"_s);
    EXPECT_EQ(bytesOf(taro(u"diary.ini"_s)), "[FTP]\r\nID=taro\r\n");
    EXPECT_TRUE(lastStatus().startsWith(u"日記を移行しました。"_s));
    QFile::remove(taro(u"diary.ini"_s));
    EXPECT_EQ(take(), Outcome::Done);
    EXPECT_EQ(section(u"ALL"_s, u"DataPath"_s), taro()) << "a user without settings gets what leads there";
}

TEST_F(SingleUserData, ThatIsNotThereMovesNothing) {
    QFile::remove(path(u"UserData/diary.ini"_s));
    QFile::remove(path(u"UserData/diary.mdb"_s));
    expectRefused({u"abc"_s, u"yes"_s}, {kQuestion, u"critical: 移行するデータがありません。"_s});
}

TEST_F(SingleUserData, ThatTheUserHasAlreadyMovesNothing) {
    core::WriteIni(path(u"velluser.ini"_s), u"taro"_s, u"Path"_s, path(u"UserData/"_s));
    expectRefused({u"abc"_s, u"yes"_s},
                  {kQuestion, u"critical: 移行するデータは、すでにこのユーザーのフォルダにあります。"_s});
}

TEST_F(SingleUserData, StaysWithoutAUserAPasswordOrAYes) {
    desk.answers = {};
    EXPECT_EQ(shell::UserAccounts(run).takeSingleUserData(u""_s), Outcome::Refused);
    EXPECT_EQ(boxes(), QStringList{u"critical: データを移行するユーザーが選択されていません。"_s});
    expectRefused({u"x"_s}, {u"critical: パスワードが一致しませんでした。\r\nデータの移行を中止します。"_s});
    expectRefused({QJsonValue()}, {});
    expectRefused({u"abc"_s, u"no"_s}, {kQuestion});
}

TEST_F(SingleUserData, ThatIsNoDiaryTakesNoPlace) {
    writeFile(path(u"UserData/diary.mdb"_s), "no diary at all");
    const auto before = contentOf(home.path());
    EXPECT_NE(failureOf([&] { take(); }), QString());
    EXPECT_TRUE(contentOf(home.path()) == before);
}

/// The user could not start with any of them.
TEST_F(SingleUserData, ThatNoStartCanReadTakesNoPlace) {
    const auto expectRefusal = [this](const QString& name, const QString& reason) {
        const auto before = contentOf(home.path());
        const QString failure = failureOf([&] { take(); });
        EXPECT_TRUE(failure.contains(reason) && failure.contains(path(u"UserData/"_s) + name)) << failure.toStdString();
        EXPECT_TRUE(contentOf(home.path()) == before);
    };
    const QByteArray diary = bytesOf(path(u"UserData/diary.mdb"_s));
    sql(u"DROP TABLE Contents"_s);
    sql(u"DROP TABLE DBInfo"_s);
    expectRefusal(u"diary.mdb"_s, u"日記データベースではありません。"_s);
    writeFile(path(u"UserData/diary.mdb"_s), QByteArray("\0\1\0\0Standard Jet DB\0", 20) + QByteArray(4096, '\0'));
    expectRefusal(u"diary.mdb"_s, u"旧形式(Jet)の日記データベースが壊れています。"_s);
    writeFile(path(u"UserData/diary.mdb"_s), diary);
    writeFile(path(u"UserData/diary.ini"_s), QByteArray("[\0A\0L\0L\0]\0", 10));
    expectRefusal(u"diary.ini"_s, u"設定ファイルを読み取れません。"_s);
}

/// What lies beside the program would be an older diary.
TEST_F(SingleUserData, BehindALinkThatLeadsNowhereIsNotTakenForMissing) {
    QFile::rename(path(u"UserData/diary.mdb"_s), path(u"diary.mdb"_s));
    ASSERT_TRUE(QFile::link(path(u"gone.mdb"_s), path(u"UserData/diary.mdb"_s)));
    const auto before = contentOf(taro());
    EXPECT_NE(failureOf([&] { take(); }), QString());
    EXPECT_TRUE(contentOf(taro()) == before);
}

/// A journal of the replaced diary would be rolled into the new one.
TEST_F(SingleUserData, LeavesNoJournalBesideTheNewDiary) {
    writeFile(taro(u"diary.mdb-journal"_s), "");
    take();
    EXPECT_EQ(files(), (QStringList{u"diary.ini"_s, u"diary.mdb"_s, u"diary_BackUp.ini"_s, u"diary_BackUp.mdb"_s}));
}

TEST_F(SingleUserData, FollowsALinkOfTheUser) {
    QDir(home.path()).mkpath(u"disk"_s);
    QFile::rename(taro(u"diary.mdb"_s), path(u"disk/diary.mdb"_s));
    ASSERT_TRUE(QFile::link(path(u"disk/diary.mdb"_s), taro(u"diary.mdb"_s)));
    EXPECT_EQ(take(), Outcome::Done);
    EXPECT_TRUE(QFileInfo(taro(u"diary.mdb"_s)).isSymLink());
    EXPECT_EQ(titleIn(path(u"disk/diary.mdb"_s)), u"single"_s);
    EXPECT_EQ(titleIn(taro(u"diary_BackUp.mdb"_s)), u"taro"_s);
}

TEST_F(SingleUserData, CrossesToAnotherDisk) {
    const QTemporaryDir other(u"/dev/shm/velloria-XXXXXX"_s);
    struct stat here {};
    struct stat there {};
    ASSERT_EQ(::stat(QFile::encodeName(home.path()).constData(), &here), 0);
    if (::stat(QFile::encodeName(other.path()).constData(), &there) != 0 || here.st_dev == there.st_dev)
        GTEST_SKIP() << "there is no other disk";
    for (const QString& name : {u"diary.ini"_s, u"diary.mdb"_s})
        ASSERT_TRUE(QFile::copy(taro(name), other.filePath(name)));
    core::WriteIni(path(u"velluser.ini"_s), u"taro"_s, u"Path"_s, other.path());
    EXPECT_EQ(take(), Outcome::Done);
    EXPECT_EQ(titleIn(other.filePath(u"diary.mdb"_s)), u"single"_s);
    EXPECT_EQ(titleIn(other.filePath(u"diary_BackUp.mdb"_s)), u"taro"_s);
    EXPECT_EQ(owner(other.filePath(u"diary_BackUp.ini"_s)), u"taro"_s);
}

TEST_F(SingleUserData, IsRefusedByAFolderThatTakesNothing) {
    ASSERT_EQ(::chmod(QFile::encodeName(home.path()).constData(), 0755), 0);
    for (const QString& folder : {u"UserData"_s, u"taro"_s}) {
        ASSERT_EQ(::chmod(QFile::encodeName(path(folder)).constData(), 0555), 0);
        for (const QString& name : {u"/diary.ini"_s, u"/diary.mdb"_s})
            ASSERT_EQ(::chmod(QFile::encodeName(path(folder) + name).constData(), 0644), 0);
    }
    const auto before = contentOf(taro());
    EXPECT_TRUE(holdsForNobody([&] {
        const QString failure =
            failureOf([&] { shell::moveSingleUserData(shell::findSingleUserData(session), taro()); });
        return failure.startsWith(u"データを移行していません: "_s);
    }));
    EXPECT_TRUE(contentOf(taro()) == before);
}

// ---- disks that refuse, at every call of the move

class MoveOnABadDisk : public SingleUserData {
protected:
    /// False when the move came to its end before the n-th call.
    bool step(Fault fault, int n) {
        reset();
        const auto before = contentOf(taro());
        QString refusal;
        bool hasFailed = false;
        if (fault == Fault::KilledProgram) {
            hasFailed = killedAt(n);
        } else {
            FaultyDisk disk(home.path());
            disk.failAt(fault, n);
            refusal = failureOf([&] { shell::moveSingleUserData(shell::findSingleUserData(session), taro()); });
            hasFailed = disk.hasFailed();
        }
        const std::string what = "fault " + std::to_string(int(fault)) + " at call " + std::to_string(n) + " " +
                                 refusal.toStdString() + " " + files().join(u' ').toStdString();
        const bool saysUnchanged = refusal.contains(u"データを移行していません"_s);
        EXPECT_TRUE(!saysUnchanged || unchanged(before)) << what;
        const bool isDone = refusal.isEmpty() && fault != Fault::KilledProgram;
        EXPECT_TRUE(!isDone || titleIn(taro(u"diary.mdb"_s)) == u"single"_s) << what;
        EXPECT_TRUE(!isDone || owner(taro(u"diary.ini"_s)) == u"single"_s) << what;
        expectNothingLost(what);
        return hasFailed && !HasFailure();
    }

private:
    void reset() {
        QDir(taro()).removeRecursively();
        QDir(home.path()).mkpath(u"taro"_s);
        for (const QString& name : {u"diary_BackUp.mdb"_s, u"diary.mdb"_s})
            store::copyDatabase(path(u"default.mdb"_s), taro(name));
        writeDiary(taro(), u"taro"_s);
        writeFile(taro(u"diary.ini"_s), "[FTP]\r\nID=taro\r\n");
        writeFile(taro(u"diary_BackUp.ini"_s), "[FTP]\r\nID=first\r\n");
    }
    bool unchanged(QMap<QString, QByteArray> before) const {
        auto now = contentOf(taro());
        const auto isTemporary = [](const QString& name) { return name.contains(u".velltmp-"_s); };
        for (const QString& name : now.keys()) {
            if (isTemporary(name))
                now.remove(name);
        }
        return now == before;
    }
    bool killedAt(int n) {
        const pid_t child = ::fork();
        if (child == 0) {
            FaultyDisk disk(home.path());
            disk.failAt(Fault::KilledProgram, n);
            failureOf([&] { shell::moveSingleUserData(shell::findSingleUserData(session), taro()); });
            ::_exit(0);
        }
        int status = 0;
        ::waitpid(child, &status, 0);
        return WIFEXITED(status) && WEXITSTATUS(status) == FaultyDisk::kKilled;
    }
    /// Of each of the three a whole copy lies under one of the names: the user's own, the older backup, the source.
    void expectNothingLost(const std::string& what) {
        QStringList titles;
        QStringList owners;
        for (const QString& name : files()) {
            if (name.startsWith(u"diary"_s) && name.endsWith(u".mdb"_s))
                titles += titleIn(taro(name));
            if (name.startsWith(u"diary"_s) && name.endsWith(u".ini"_s))
                owners += owner(taro(name));
        }
        EXPECT_TRUE(titles.contains(u"taro"_s)) << what;
        EXPECT_TRUE(titles.contains(u""_s)) << what << ": the backup that was there";
        EXPECT_TRUE(owners.contains(u"taro"_s)) << what;
        EXPECT_TRUE(owners.contains(u"first"_s)) << what;
        EXPECT_EQ(titleIn(path(u"UserData/diary.mdb"_s)), u"single"_s) << what;
        EXPECT_EQ(owner(path(u"UserData/diary.ini"_s)), u"single"_s) << what;
    }
};

TEST_F(MoveOnABadDisk, LosesNothing) {
    int faults = 0;
    for (const Fault fault : {Fault::FullDisk, Fault::IoError, Fault::BrokenDisk, Fault::KilledProgram}) {
        int n = 1;
        while (step(fault, n))
            ++n;
        faults += n - 1;
        if (HasFailure())
            break;
    }
    EXPECT_GT(faults, 100);
}

TEST_F(MoveOnABadDisk, WithoutRoomForTheSecondFileTakesTheFirstBack) {
    const auto before = contentOf(taro());
    // A folder in the way of the settings' backup: the diary has its place already.
    QDir(taro()).mkpath(u"diary_BackUp.ini/x"_s);
    QFile::setPermissions(taro(u"diary.ini"_s), QFile::ReadOwner);
    const QString failure = failureOf([&] { take(); });
    EXPECT_TRUE(failure.contains(u"データを移行していません"_s)) << failure.toStdString();
    EXPECT_EQ(titleIn(taro(u"diary.mdb"_s)), u"taro"_s);
    EXPECT_TRUE(bytesOf(taro(u"diary.mdb"_s)) == before[u"diary.mdb"_s]);
    EXPECT_EQ(files(), (QStringList{u"diary.ini"_s, u"diary.mdb"_s}));
    EXPECT_TRUE(exists(taro(u"diary_BackUp.ini/x"_s))) << "and what was in the way has its name again";
}

} // namespace
} // namespace velloria::tests
