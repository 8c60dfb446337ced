#include "shell/user_accounts.h"

#include "convert/password_text.h"
#include "core/ini.h"
#include "core/program_keys.h"
#include "platform/code_page.h"
#include "platform/profile_file.h"
#include "support/faulty_disk.h"
#include "support/test_home.h"

#include <QDir>
#include <QFile>

#include <random>
#include <sys/stat.h>

using namespace Qt::StringLiterals;

namespace velloria::tests {
namespace {

using platform::Outcome;

const QJsonValue kCancel;
const QString kForbidden = u"critical: その名前は使用できません。"_s;
const QString kMade = u"plain: 新しいユーザー「taro」を作成しました。"_s;

class UserAccounts : public TestHome {
protected:
    shell::UserAccounts accounts() const { return shell::UserAccounts(run); }
    shell::Users users() const { return shell::Users(home.path() + u'/'); }
    QString file() const { return path(u"velluser.ini"_s); }
    QString key(const QString& user, const QString& name) const {
        return core::ReadIniDef(file(), user, name, u"(missing)"_s);
    }
    void addUser(const QString& id, const QString& password, const QString& folder = {}) const {
        core::WriteIni(file(), id, u"ID"_s, id);
        core::WriteIni(file(), id, u"Pass"_s, convert::EncryptPassword(password));
        if (!folder.isNull())
            core::WriteIni(file(), id, u"Path"_s, folder);
    }
    Outcome make(const QJsonArray& answers) {
        answer(answers);
        return accounts().makeUser();
    }
    void answer(const QJsonArray& answers) {
        desk.answers = answers;
        desk.events = {};
    }
    /// The captions of the password windows' lines, in turn.
    QStringList prompts() const {
        QStringList prompts;
        for (const QJsonValue& event : desk.events) {
            if (event[u"event"_s] == u"input"_s)
                prompts += event[u"title"_s].toString() + u": "_s + event[u"text"_s].toString();
        }
        return prompts;
    }
};

// ---- making a user

TEST_F(UserAccounts, AreMadeWithIdPasswordAndFolder) {
    EXPECT_EQ(make({u"taro"_s, u"abc"_s, u"abc"_s}), Outcome::Done);
    EXPECT_EQ(boxes(), QStringList{kMade});
    EXPECT_EQ(boxTitles(), QSet<QString>{u"Velloria"_s});
    EXPECT_EQ(prompts(), (QStringList{u"Velloria: ユーザー名を入力してください。"_s, u"パスワードの入力: パスワード"_s,
                                      u"パスワードの入力: パスワード（確認用）"_s}));
    EXPECT_EQ(bytesOf(file()), "[taro]\r\nID=taro\r\nPass=dcb\r\nPath=" + path(u"taro/"_s).toUtf8() + "\r\n");
    EXPECT_EQ(modeOf(file()), 0600U);
    EXPECT_EQ(modeOf(path(u"taro"_s)), 0700U);
}

TEST_F(UserAccounts, AreMadeWithTheNameThatWasTold) {
    answer({u"abc"_s, u"abc"_s});
    EXPECT_EQ(accounts().makeUser(u"taro"_s), Outcome::Done);
    EXPECT_EQ(prompts().size(), 2);
}

TEST_F(UserAccounts, UseAFolderThatIsThere) {
    QDir(home.path()).mkpath(u"taro"_s);
    writeFile(path(u"taro/diary.ini"_s), "[ALL]\r\n");
    EXPECT_EQ(make({u"taro"_s, u"abc"_s, u"abc"_s}), Outcome::Done);
    EXPECT_EQ(boxes(),
              (QStringList{u"information: ユーザーフォルダはすでに存在するので、そのまま使用します。"_s, kMade}));
    EXPECT_EQ(bytesOf(path(u"taro/diary.ini"_s)), "[ALL]\r\n");
}

TEST_F(UserAccounts, AreNotMadeWithoutAName) {
    for (const QJsonValue& name : {kCancel, QJsonValue(u""_s)}) {
        EXPECT_EQ(make({name}), Outcome::Refused);
        EXPECT_EQ(boxes(), QStringList());
        EXPECT_FALSE(exists(file()));
    }
}

TEST_F(UserAccounts, StayWithoutAPasswordThatIsCancelled) {
    for (const QJsonArray& passwords : {QJsonArray{kCancel}, QJsonArray{u"abc"_s, kCancel}}) {
        QFile::remove(file());
        answer(passwords);
        EXPECT_EQ(accounts().makeUser(u"taro"_s), Outcome::Refused);
        EXPECT_EQ(bytesOf(file()), "[taro]\r\nID=taro\r\n");
        EXPECT_EQ(boxes(), QStringList());
        EXPECT_FALSE(exists(path(u"taro"_s)));
        EXPECT_TRUE(users().UserCheck(u"taro"_s, u""_s));
    }
}

/// A user file that names nobody would ask for a login that nobody has.
TEST_F(UserAccounts, OfASlipWithTheFirstUserLeaveNoFile) {
    EXPECT_EQ(make({u"taro"_s, u"abc"_s, u"abd"_s}), Outcome::Refused);
    EXPECT_EQ(boxes(), QStringList());
    EXPECT_FALSE(exists(file()));
    EXPECT_FALSE(exists(path(u"taro"_s)));
}

TEST_F(UserAccounts, OfASlipLeaveAFileThatWasThere) {
    for (const QByteArray& before :
         {QByteArray("[Previous]\r\nID=x\r\n"), QByteArray("[hanako]\r\nID=hanako\r\n"), QByteArray()}) {
        writeFile(file(), before);
        EXPECT_EQ(make({u"taro"_s, u"abc"_s, u"abd"_s}), Outcome::Refused);
        EXPECT_EQ(bytesOf(file()), before + "[taro]\r\n");
        EXPECT_EQ(boxes(), QStringList());
    }
}

TEST_F(UserAccounts, WithAPasswordThatWouldNotComeBackAreRefused) {
    for (const QString& password : {u"é"_s, u"😀"_s, QString(256, u'a'), u"a\nb"_s}) {
        EXPECT_EQ(make({u"taro"_s, password, password}), Outcome::Refused);
        EXPECT_EQ(boxes(), QStringList{u"critical: そのパスワードは使用できません。"_s});
        EXPECT_FALSE(exists(file()));
    }
}

TEST_F(UserAccounts, AreNotMadeTwiceWhateverTheCase) {
    writeFile(file(),
              "[Taro]\r\nID=Taro\r\nPass=dcb\r\n[half]\r\nID=other\r\n[Ｊｉｒｏ]\r\n"); // UTF-8 on purpose: no id
    const QByteArray before = bytesOf(file());
    for (const QString& name : {u"Taro"_s, u"taro"_s, u"TARO"_s, u" taro "_s, u"HALF"_s}) {
        EXPECT_EQ(make({name}), Outcome::Refused);
        EXPECT_EQ(boxes(), QStringList{u"critical: すでにそのユーザーは存在します。"_s}) << name.toStdString();
        EXPECT_TRUE(bytesOf(file()) == before);
    }
}

TEST_F(UserAccounts, WithoutIdAreMadeAgain) {
    writeFile(file(), "[taro]\r\nPath=/old/\r\n");
    QDir(home.path()).mkpath(u"taro"_s);
    EXPECT_EQ(make({u"taro"_s, u"abc"_s, u"abc"_s}), Outcome::Done);
    EXPECT_EQ(boxes().size(), 2);
    EXPECT_EQ(users().folder(u"taro"_s), path(u"taro/"_s));
}

TEST_F(UserAccounts, MadeWhereOneOfAnotherCaseWasDeletedAreUsersLikeAllOthers) {
    writeFile(file(), "[Taro]\r\nPath=/old/\r\n");
    EXPECT_EQ(make({u"taro"_s, u"abc"_s, u"abc"_s}), Outcome::Done);
    EXPECT_EQ(users().ids(), QStringList{u"taro"_s});
    EXPECT_TRUE(users().UserCheck(u"taro"_s, u"abc"_s));
    EXPECT_EQ(users().folder(u"taro"_s), path(u"taro/"_s));
    answer({u"abc"_s});
    EXPECT_EQ(accounts().deleteUser(u"taro"_s), Outcome::Done);
    EXPECT_FALSE(users().hasAny());
}

/// They would read and write one diary.
TEST_F(UserAccounts, DoNotGetTheFolderOfAnother) {
    addUser(u"hanako"_s, u"x"_s, path(u"taro"_s));
    addUser(u"jiro"_s, u"x"_s, path(u"inner/"_s));
    QDir(home.path()).mkpath(u"inner/deep"_s);
    ASSERT_TRUE(QFile::link(path(u"inner/deep"_s), path(u"link"_s)));
    const QByteArray before = bytesOf(file());
    for (const QString& name : {u"taro"_s, u"link"_s}) {
        EXPECT_EQ(make({name}), Outcome::Refused);
        EXPECT_EQ(boxes(), QStringList{u"critical: その名前のフォルダは、ほかのユーザーが使用しています。\r\n"
                                       "別の名前を指定してください。"_s});
        EXPECT_TRUE(bytesOf(file()) == before);
    }
    // One who works beside the program has everybody's folder in theirs.
    addUser(u"jiro"_s, u"x"_s, home.path() + u'/');
    EXPECT_EQ(make({u"saburo"_s, u"p"_s, u"p"_s}), Outcome::Done);
}

TEST_F(UserAccounts, BearNoNameThatMeansSomethingElse) {
    writeFile(path(u"plainfile"_s), "");
    QStringList names{u" "_s,
                      u"　"_s,
                      u"Previous"_s,
                      u"previous"_s,
                      u"UserData"_s,
                      u"USERDATA"_s,
                      u"Customize"_s,
                      u"velluser.ini"_s,
                      u"Customize.bak"_s,
                      u"update.lst"_s,
                      u"."_s,
                      u".."_s,
                      u"a:b"_s,
                      QString(300, u'a'),
                      QString(300, u'あ'),
                      u"😀"_s,
                      u"é"_s,
                      u"〜"_s,
                      u"&#233;"_s,
                      u"default.ini"_s,
                      u"plainfile"_s,
                      QString(90, u'あ'),
                      u"a\u007Fb"_s};
    for (const char16_t c : u"/\\[]=\t\n\x01"_s.toStdU16String())
        names += u"a"_s + QChar(c) + u"b"_s;
    for (const QString& name : names) {
        EXPECT_EQ(make({name}), Outcome::Refused);
        EXPECT_EQ(boxes(), QStringList{kForbidden}) << name.toStdString();
        EXPECT_FALSE(exists(file())) << name.toStdString();
    }
    answer({});
    EXPECT_EQ(accounts().makeUser(u""_s), Outcome::Refused);
    EXPECT_EQ(boxes(), QStringList{kForbidden});
}

TEST_F(UserAccounts, MayBearAnyOtherName) {
    for (const QString& name :
         {u"太郎"_s, u"ゾ月"_s, u"a b"_s, u"'x'"_s, u"\"x\""_s, u";x"_s, u"#1"_s, u"～"_s, u"100%"_s}) {
        EXPECT_EQ(make({name, u"p"_s, u"p"_s}), Outcome::Done) << name.toStdString();
        EXPECT_TRUE(users().UserCheck(name, u"p"_s)) << name.toStdString();
        EXPECT_EQ(users().folder(name), path(name) + u'/');
        EXPECT_TRUE(QFileInfo(users().folder(name)).isDir());
    }
    EXPECT_EQ(users().ids().size(), 9);
}

// ---- disks that refuse, at every call of the making

class MakingOnABadDisk : public UserAccounts {
protected:
    /// False when the command came to its end before the n-th call.
    bool step(const QByteArray& before, const QString& confirmation, Fault fault, int n) {
        QDir(path(u"taro"_s)).removeRecursively();
        QFile::remove(file());
        if (!before.isNull())
            writeFile(file(), before);
        answer({u"taro"_s, u"abc"_s, confirmation});
        QString refusal;
        bool hasFailed = false;
        if (fault == Fault::KilledProgram) {
            hasFailed = !holdsInChild([&] {
                FaultyDisk disk(home.path());
                disk.failAt(fault, n);
                failureOf([&] { accounts().makeUser(); });
                return true;
            });
        } else {
            FaultyDisk disk(home.path());
            disk.failAt(fault, n);
            refusal = failureOf([&] { accounts().makeUser(); });
            hasFailed = disk.hasFailed();
        }
        const QByteArray after = users().exist() ? bytesOf(file()) : QByteArray();
        const std::string what = "fault " + std::to_string(int(fault)) + " at call " + std::to_string(n) + " " +
                                 refusal.toStdString() + " " + after.toStdString();
        EXPECT_TRUE(!users().exist() || users().hasAny()) << what << ": nobody can log in";
        EXPECT_TRUE(after.startsWith(before)) << what;
        const bool isThere = users().exist() && users().ids().contains(u"taro"_s);
        EXPECT_TRUE(!isThere || users().UserCheck(u"taro"_s, u"abc"_s) || users().UserCheck(u"taro"_s, {})) << what;
        if (!refusal.isEmpty()) {
            EXPECT_EQ(isThere, refusal.startsWith(u"ユーザー「taro」がパスワードなしで残っています: "_s)) << what;
            EXPECT_FALSE(exists(path(u"taro"_s)) && fault == Fault::FullDisk) << what;
        }
        return hasFailed && !HasFailure();
    }
};

TEST_F(MakingOnABadDisk, KeepsNobodyOut) {
    int faults = 0;
    for (const QByteArray& before : {QByteArray(), QByteArray("[hanako]\r\nID=hanako\r\n")}) {
        for (const QString& confirmation : {u"abc"_s, u"slip"_s}) {
            for (const Fault fault : {Fault::FullDisk, Fault::IoError, Fault::BrokenDisk, Fault::KilledProgram}) {
                int n = 1;
                while (step(before, confirmation, fault, n))
                    ++n;
                faults += n - 1;
            }
        }
    }
    EXPECT_GT(faults, 100);
}

TEST_F(UserAccounts, AreNotMadeWhenTheFileIsReadOnly) {
    addUser(u"hanako"_s, u"x"_s);
    const QByteArray before = bytesOf(file());
    QFile::setPermissions(file(), QFile::ReadOwner);
    answer({u"taro"_s});
    EXPECT_NE(failureOf([&] { accounts().makeUser(); }), QString());
    EXPECT_TRUE(bytesOf(file()) == before);
    EXPECT_FALSE(exists(path(u"taro"_s)));
}

TEST_F(UserAccounts, AreNotMadeOverAFolderThatTakesNothing) {
    QDir(home.path()).mkpath(u"taro"_s);
    ASSERT_EQ(::chmod(QFile::encodeName(home.path()).constData(), 0777), 0);
    ASSERT_EQ(::chmod(QFile::encodeName(path(u"taro"_s)).constData(), 0555), 0);
    EXPECT_TRUE(holdsForNobody([&] {
        answer({u"taro"_s});
        return accounts().makeUser() == Outcome::Refused && !exists(file()) &&
               boxes() == QStringList{u"critical: フォルダに書き込めません。\r\n"_s + path(u"taro/"_s)};
    }));
}

// ---- changing a password

TEST_F(UserAccounts, ChangeTheirPassword) {
    addUser(u"taro"_s, u"abc"_s);
    session.UserID = u"taro"_s;
    answer({u"new"_s, u"new"_s});
    EXPECT_EQ(accounts().changePassword(), Outcome::Done);
    EXPECT_EQ(prompts(), (QStringList{u"新しいパスワードの入力: パスワード"_s,
                                      u"新しいパスワードの入力: パスワード（確認用）"_s}));
    EXPECT_EQ(boxes(), QStringList{u"plain: パスワードの変更が完了しました！"_s});
    EXPECT_TRUE(users().UserCheck(u"taro"_s, u"new"_s));
}

TEST_F(UserAccounts, ChangeNoPasswordWithoutALogin) {
    addUser(u"taro"_s, u"abc"_s);
    answer({});
    EXPECT_EQ(accounts().changePassword(), Outcome::Refused);
    EXPECT_EQ(boxes(), QStringList{u"critical: ユーザー名が空白の場合は、パスワードの変更はできません。"_s});
}

TEST_F(UserAccounts, KeepTheirPasswordWhenTheChangeIsRefused) {
    addUser(u"taro"_s, u"abc"_s);
    session.UserID = u"taro"_s;
    const QByteArray before = bytesOf(file());
    const struct {
        QJsonArray answers;
        QStringList boxes;
    } cases[] = {
        {{kCancel}, {}},
        {{u"x"_s, kCancel}, {}},
        {{u"x"_s, u"y"_s}, {u"critical: 入力したパスワードが一致しません。\r\n変更はキャンセルします。"_s}},
        {{u"é"_s, u"é"_s}, {u"critical: そのパスワードは使用できません。"_s}},
    };
    for (const auto& c : cases) {
        answer(c.answers);
        EXPECT_EQ(accounts().changePassword(), Outcome::Refused);
        EXPECT_EQ(boxes(), c.boxes);
        EXPECT_TRUE(bytesOf(file()) == before);
    }
}

TEST_F(UserAccounts, ChangeNoPasswordOfADeletedUser) {
    writeFile(file(), "[taro]\r\nPath=/x/\r\n");
    session.UserID = u"taro"_s;
    answer({});
    EXPECT_EQ(accounts().changePassword(), Outcome::Refused);
    EXPECT_EQ(boxes(), QStringList{u"critical: ユーザー「taro」は削除されています。"_s});
    EXPECT_EQ(bytesOf(file()), "[taro]\r\nPath=/x/\r\n");
}

TEST_F(UserAccounts, GetEveryPasswordBackFromTheFile) {
    const auto expectComesBack = [this](const QString& password) {
        writeFile(file(),
                  platform::changedProfile("[taro]\r\nID=taro\r\n", u"taro"_s, core::keys::kUserPass.name.toString(),
                                           convert::EncryptPassword(password)));
        EXPECT_TRUE(users().UserCheck(u"taro"_s, password)) << password.toStdString();
    };
    QString characters;
    for (unsigned code = 0x20; code <= 0xFFFF; ++code) {
        if (platform::isCode(code) && convert::isPasswordText(QString(QChar(platform::characterOf(code)))) &&
            !characters.contains(QChar(platform::characterOf(code))))
            characters += QChar(platform::characterOf(code));
    }
    EXPECT_GT(characters.size(), 7000);
    for (const QChar c : characters)
        expectComesBack(QString(c));
    std::mt19937 random(20041122);
    for (int i = 0; i < 1000; ++i) {
        QString password;
        const auto length = random() % 100 + 1;
        while (password.size() < qsizetype(length))
            // Half of them of the characters that quotes, references and comments are made of.
            password += random() % 2 ? characters[qsizetype(random() % 95)]
                                     : characters[qsizetype(random() % std::size_t(characters.size()))];
        expectComesBack(password);
    }
}

// ---- deleting a user

TEST_F(UserAccounts, AreDeletedButForPathAndFolder) {
    addUser(u"taro"_s, u"abc"_s, path(u"taro/"_s));
    QDir(home.path()).mkpath(u"taro"_s);
    answer({u"abc"_s});
    EXPECT_EQ(accounts().deleteUser(u"taro"_s), Outcome::Done);
    EXPECT_EQ(prompts(), QStringList{u"パスワードの入力: パスワード"_s});
    EXPECT_EQ(boxes(),
              QStringList{u"plain: ユーザーの削除が完了しました。\r\nユーザーフォルダはご自分で削除してください。"_s});
    EXPECT_EQ(bytesOf(file()), "[taro]\r\nPath=" + path(u"taro/"_s).toUtf8() + "\r\n");
    EXPECT_TRUE(exists(path(u"taro"_s)));
}

TEST_F(UserAccounts, ThatDeleteThemselvesAreToldToRestart) {
    addUser(u"taro"_s, u"abc"_s);
    session.UserID = u"taro"_s;
    answer({u"abc"_s});
    EXPECT_EQ(accounts().deleteUser(u"taro"_s), Outcome::Done);
    EXPECT_EQ(boxes().size(), 2);
    EXPECT_EQ(boxes().last(), u"plain: Velloriaを再起動してください。"_s);
}

TEST_F(UserAccounts, AreNotDeletedWithoutTheirPassword) {
    addUser(u"taro"_s, u"abc"_s);
    addUser(u"hanako"_s, u"xyz"_s);
    const QByteArray before = bytesOf(file());
    const QStringList wrong{u"critical: パスワードが一致しませんでした。\r\nユーザーの削除を中止します。"_s};
    for (const auto& [typed, expected] :
         {std::pair{QJsonValue(u"xyz"_s), wrong}, {QJsonValue(u""_s), wrong}, {kCancel, QStringList()}}) {
        answer({typed});
        EXPECT_EQ(accounts().deleteUser(u"taro"_s), Outcome::Refused);
        EXPECT_EQ(boxes(), expected);
        EXPECT_TRUE(bytesOf(file()) == before);
    }
    answer({});
    EXPECT_EQ(accounts().deleteUser(u""_s), Outcome::Refused);
    EXPECT_EQ(boxes(), QStringList{u"critical: ユーザーを選択してください。"_s});
}

/// The file stays with the last one: Path stays in it.
TEST_F(UserAccounts, CanBeMadeAgainAfterTheLastOneIsDeleted) {
    make({u"taro"_s, u"abc"_s, u"abc"_s});
    answer({u"abc"_s});
    accounts().deleteUser(u"taro"_s);
    EXPECT_TRUE(exists(file()));
    EXPECT_FALSE(users().hasAny());
    EXPECT_EQ(make({u"taro"_s, u"def"_s, u"def"_s}), Outcome::Done);
    EXPECT_EQ(boxes().first(), u"information: ユーザーフォルダはすでに存在するので、そのまま使用します。"_s);
    EXPECT_TRUE(users().UserCheck(u"taro"_s, u"def"_s));
}

// ---- changing the path

class UserPath : public UserAccounts {
protected:
    UserPath() {
        addUser(u"taro"_s, u"abc"_s, path(u"taro/"_s));
        addUser(u"hanako"_s, u"xyz"_s, path(u"hanako/"_s));
        for (const QString& folder : {u"taro"_s, u"hanako/inner"_s, u"hanako2"_s, u"new"_s})
            QDir(home.path()).mkpath(folder);
        session.UserID = u"taro"_s;
    }
    void expectRefused(const QJsonArray& answers, const QStringList& expected) {
        const QByteArray before = bytesOf(file());
        answer(answers);
        EXPECT_EQ(accounts().changePath(u"taro"_s), Outcome::Refused);
        EXPECT_EQ(boxes(), expected);
        EXPECT_TRUE(bytesOf(file()) == before);
        EXPECT_TRUE(desk.answers.isEmpty());
    }
};

TEST_F(UserPath, IsTheFolderThatIsChosenAndNothingMoves) {
    writeFile(path(u"taro/diary.ini"_s), "[ALL]\r\n");
    for (const QString& chosen : {path(u"new"_s), path(u"new/"_s), path(u"hanako2"_s), path(u"taro/../new"_s)}) {
        answer({u"abc"_s, chosen});
        EXPECT_EQ(accounts().changePath(u"taro"_s), Outcome::Done);
        EXPECT_EQ(lastFileEvent()[u"title"_s], u"ユーザーパスの指定"_s);
        EXPECT_EQ(boxes(), QStringList{u"plain: ユーザーパスの変更が完了しました。"_s});
        EXPECT_EQ(key(u"taro"_s, u"Path"_s), QDir::cleanPath(chosen) + u'/');
    }
    EXPECT_TRUE(exists(path(u"taro/diary.ini"_s)));
    EXPECT_FALSE(exists(path(u"new/diary.ini"_s)));
}

/// The system follows a link before it goes up.
TEST_F(UserPath, BehindALinkIsTheFolderThatTheSystemFinds) {
    QDir(home.path()).mkpath(u"disk/deep"_s);
    QDir(home.path()).mkpath(u"disk/new"_s);
    ASSERT_TRUE(QFile::link(path(u"disk/deep"_s), path(u"link"_s)));
    answer({u"abc"_s});
    EXPECT_EQ(accounts().changePath(u"taro"_s, path(u"link/../new"_s)), Outcome::Done);
    EXPECT_EQ(QFileInfo(key(u"taro"_s, u"Path"_s)).canonicalFilePath(),
              QFileInfo(path(u"disk/new"_s)).canonicalFilePath());
    answer({u"abc"_s});
    EXPECT_EQ(accounts().changePath(u"taro"_s, path(u"link"_s)), Outcome::Done);
    EXPECT_EQ(key(u"taro"_s, u"Path"_s), path(u"link/"_s)) << "a link by its own name";
}

TEST_F(UserPath, ThatIsToldIsNotAskedFor) {
    answer({u"xyz"_s});
    EXPECT_EQ(accounts().changePath(u"hanako"_s, path(u"new"_s)), Outcome::Done);
    EXPECT_EQ(key(u"hanako"_s, u"Path"_s), path(u"new/"_s));
}

TEST_F(UserPath, WantsAUserAndALogin) {
    answer({});
    EXPECT_EQ(accounts().changePath(u""_s), Outcome::Refused);
    EXPECT_EQ(boxes(), QStringList{u"critical: ユーザーを選択してください。"_s});
    session.UserID = u""_s;
    expectRefused({}, {u"critical: ユーザー名が空白の場合は、ユーザー管理でのフォルダの変更はできません。\r\n"
                       "オプションからフォルダの変更をしてください。"_s});
}

TEST_F(UserPath, StaysWithoutThePassword) {
    expectRefused({u"xyz"_s}, {u"critical: パスワードが一致しませんでした。\r\nユーザーパスの変更を中止します。"_s});
    expectRefused({kCancel}, {});
}

TEST_F(UserPath, StaysWhenNoFolderIsChosen) {
    const QStringList invalid{u"critical: パスが不正なため、ユーザーパスの変更を中止します。"_s};
    expectRefused({u"abc"_s, kCancel}, invalid);
    expectRefused({u"abc"_s, u""_s}, invalid);
    expectRefused({u"abc"_s, path(u"missing"_s)}, invalid);
    expectRefused({u"abc"_s, path(u"default.ini"_s)}, invalid);
}

TEST_F(UserPath, IsNotTheFolderOfAnother) {
    const QStringList others{
        u"critical: ほかのユーザーのフォルダは指定できません。\r\n別のフォルダを指定してください。"_s};
    ASSERT_TRUE(QFile::link(path(u"hanako/inner"_s), path(u"link"_s)));
    for (const QString& folder : {u"hanako"_s, u"hanako/"_s, u"hanako/inner"_s, u"link"_s})
        expectRefused({u"abc"_s, path(folder)}, others);
}

TEST_F(UserPath, IsOneThatTheFileCanKeep) {
    QString deep = u"deep"_s;
    while (path(deep).size() < 240)
        deep += u"/0123456789"_s;
    ASSERT_TRUE(QDir(home.path()).mkpath(deep));
    expectRefused({u"abc"_s, path(deep)}, {u"critical: フォルダの名前が長すぎて設定に保存できません。\r\n"
                                           "もっと短い名前のフォルダを指定して下さい。"_s});
}

TEST_F(UserPath, OfCharactersThatTheCodePageLacksComesBack) {
    const QString folder = path(u"é〜😀"_s);
    ASSERT_TRUE(QDir().mkpath(folder));
    answer({u"abc"_s, folder});
    EXPECT_EQ(accounts().changePath(u"taro"_s), Outcome::Done);
    EXPECT_EQ(users().folder(u"taro"_s), folder + u'/');
}

TEST_F(UserPath, IsNoFolderThatTakesNothing) {
    ASSERT_EQ(::chmod(QFile::encodeName(home.path()).constData(), 0755), 0);
    ASSERT_EQ(::chmod(QFile::encodeName(file()).constData(), 0644), 0);
    EXPECT_TRUE(holdsForNobody([&] {
        answer({u"abc"_s, u"/"_s}); // nobody but the superuser may write there
        return accounts().changePath(u"taro"_s) == Outcome::Refused &&
               boxes() == QStringList{u"critical: フォルダに書き込めません。\r\n/"_s};
    }));
}

} // namespace
} // namespace velloria::tests
