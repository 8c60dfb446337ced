#include "memo/entrance.h"

#include "memo_home.h"

#include <QDir>
#include <QFile>

using namespace Qt::StringLiterals;

namespace velloria::tests {
namespace {

class Entrance : public MemoHome {
protected:
    /// Enters with these arguments, and this line at the standard input.
    bool enter(const QStringList& arguments, const QByteArray& line = {}) {
        return memo::enter(
            run, arguments,
            [this, line] {
                ++linesRead;
                return line;
            },
            programFolder);
    }
    QString userPath() const { return path(u"UserData/"_s); }

    int linesRead = 0;
    QString programFolder = home.path();
};

TEST_F(Entrance, WithoutUsersLeadsToTheDiaryOfTheSingleUser) {
    const QString wanted = session.UserPath;
    const QString file = usersFile();
    ASSERT_FALSE(exists(file));
    EXPECT_TRUE(enter({file, u""_s, u"-"_s}, "\n"));
    EXPECT_EQ(session.UserPath, wanted);
    EXPECT_EQ(session.databaseFile(), wanted + u"diary.mdb"_s);
    EXPECT_EQ(session.DiaryIniFile, wanted + u"diary.ini"_s);
    EXPECT_FALSE(session.IsLogin);
    EXPECT_EQ(told(), QStringList());
}

TEST_F(Entrance, FindsFolderAndDiaryInAnyCaseAndWithBlanks) {
    const QString blanks = path(u"a home/ユーザー のフォルダ/"_s);
    QDir().mkpath(blanks);
    QFile::copy(session.databaseFile(), blanks + u"Diary.MDB"_s);
    logIn();
    core::WriteIni(usersFile(), u"taro"_s, u"Path"_s, blanks);
    EXPECT_TRUE(enter({usersFile(), u"taro"_s, u"abc"_s}));
    EXPECT_EQ(session.databaseFile(), blanks + u"Diary.MDB"_s);
}

TEST_F(Entrance, TakesThePasswordFromTheLineOrFromTheInput) {
    logIn();
    EXPECT_TRUE(enter({usersFile(), u"taro"_s, u"abc"_s}));
    EXPECT_EQ(linesRead, 0);
    EXPECT_TRUE(session.IsLogin);
    EXPECT_EQ(session.UserID, u"taro"_s);
    for (const char* line : {"abc\n", "abc\r\n", "abc"})
        EXPECT_TRUE(enter({usersFile(), u"taro"_s, u"-"_s}, line)) << line;
    EXPECT_EQ(linesRead, 3);
    EXPECT_EQ(told(), QStringList());
}

TEST_F(Entrance, RefusesAWrongPasswordAndAWrongUser) {
    logIn();
    const QStringList refusal{u"critical: 不正なユーザもしくはパスワードです。\r\nベロリアメモを終了します。"_s};
    const QList<std::pair<QStringList, QByteArray>> cases{
        {{usersFile(), u"taro"_s, u"wrong"_s}, {}},
        {{usersFile(), u"taro"_s, u""_s}, {}},
        {{usersFile(), u"taro"_s}, {}},
        {{usersFile(), u"taro"_s, u"-"_s}, ""},
        {{usersFile(), u"taro"_s, u"-"_s}, "ab\n"},
        {{usersFile(), u"hanako"_s, u"abc"_s}, {}},
        {{usersFile(), u"TARO"_s, u"abc"_s}, {}},
    };
    for (const auto& [arguments, line] : cases) {
        desk.events = {};
        EXPECT_FALSE(enter(arguments, line)) << arguments.join(u' ').toStdString();
        EXPECT_EQ(boxes(), refusal) << arguments.join(u' ').toStdString();
    }
}

TEST_F(Entrance, SaysItInEnglishWhereTheMenusAreEnglish) {
    logIn();
    core::WriteIni(session.DiaryIniFile, u"ALL"_s, u"MenuLanguage"_s, u"English"_s);
    EXPECT_FALSE(enter({usersFile(), u"taro"_s, u"wrong"_s}));
    EXPECT_EQ(boxes(), QStringList{u"critical: The user or the password is wrong.\r\nVellMemo ends."_s});
}

TEST_F(Entrance, OfADiaryFromBeforeTheFirstUserIsStillThatDiary) {
    const QString wanted = session.UserPath;
    logIn();
    EXPECT_TRUE(enter({usersFile(), u""_s, u"-"_s}, "\n"));
    EXPECT_EQ(session.UserPath, wanted);
    EXPECT_FALSE(session.IsLogin);
}

TEST_F(Entrance, WithoutArgumentsLeadsToTheSingleUserAlone) {
    const QString wanted = session.UserPath;
    EXPECT_TRUE(enter({}));
    EXPECT_EQ(session.UserPath, wanted);
    logIn();
    EXPECT_FALSE(enter({}));
    EXPECT_EQ(boxes(), QStringList{u"critical: ベロリアメモは、Velloriaの「ツール」メニューから起動してください。"_s});
}

TEST_F(Entrance, RefusesADiaryThatWasNeverBegunOrIsTooOldAndLeavesItSo) {
    const QString diary = session.databaseFile();
    sql(u"UPDATE DBInfo SET VersionInfo = 210"_s);
    QStringList refusal{u"critical: メモを保存する日記がありません。\r\n先にVelloriaを起動してください。\r\n"_s +
                        diary};
    EXPECT_FALSE(enter({usersFile(), u""_s, u"-"_s}));
    EXPECT_EQ(boxes(), refusal);
    for (const QByteArray& bytes : {QByteArray(), QByteArray("no diary")}) {
        desk.events = {};
        writeFile(diary, bytes);
        EXPECT_FALSE(enter({usersFile(), u""_s, u"-"_s}));
        EXPECT_EQ(boxes(), refusal);
        EXPECT_EQ(bytesOf(diary), bytes);
    }
    desk.events = {};
    QFile::remove(diary);
    const auto before = contentOf(home.path());
    EXPECT_FALSE(enter({usersFile(), u""_s, u"-"_s}));
    EXPECT_EQ(boxes(), refusal);
    EXPECT_EQ(contentOf(home.path()), before);
}

} // namespace
} // namespace velloria::tests
