#include "shell/users.h"

#include "convert/password_text.h"
#include "core/ini.h"
#include "support/test_home.h"

using namespace Qt::StringLiterals;

namespace velloria::tests {
namespace {

class Users : public FactoryHome {
protected:
    shell::Users users() const { return shell::Users(home.path() + u'/'); }
    QString file() const { return path(u"velluser.ini"_s); }
    void put(const QByteArray& bytes) const { writeFile(file(), bytes); }
    void setPassword(const QString& id, const QString& password) const {
        core::WriteIni(file(), id, u"ID"_s, id);
        core::WriteIni(file(), id, u"Pass"_s, convert::EncryptPassword(password));
    }
};

TEST_F(Users, ExistAsSoonAsThereIsAFile) {
    EXPECT_FALSE(users().exist());
    put("");
    EXPECT_TRUE(users().exist());
    EXPECT_FALSE(users().hasAny());
}

TEST_F(Users, AreTheSectionsThatHoldTheirOwnName) {
    put("[Previous]\r\nID=Previous\r\n");
    EXPECT_FALSE(users().hasAny());
    put("[taro]\r\nPath=/x/\r\n");
    EXPECT_FALSE(users().hasAny()) << "what is left of a deleted user";
    put("[taro]\r\nID=hanako\r\n");
    EXPECT_FALSE(users().hasAny());
    put("[previous]\r\nID=taro\r\n[taro]\r\nID=taro\r\n");
    EXPECT_TRUE(users().hasAny());
}

TEST_F(Users, AreAddedOnce) {
    EXPECT_TRUE(users().add(u"taro"_s));
    EXPECT_FALSE(users().add(u"Taro"_s));
    EXPECT_EQ(bytesOf(file()), "[taro]\r\nID=taro\r\n");
    EXPECT_EQ(modeOf(file()), 0600U);
    put("[taro]\r\nPath=/x/\r\n");
    EXPECT_TRUE(users().add(u"taro"_s));
    EXPECT_EQ(bytesOf(file()), "[taro]\r\nPath=/x/\r\nID=taro\r\n");
    put("");
    QFile::rename(file(), path(u"elsewhere.ini"_s));
    ASSERT_TRUE(QFile::link(path(u"elsewhere.ini"_s), file()));
    EXPECT_TRUE(users().add(u"taro"_s));
    EXPECT_TRUE(QFileInfo(file()).isSymLink());
}

/// As it is found: somebody made anew where "Taro" was deleted has the section of that one.
TEST_F(Users, MayHaveASectionThatIsSpeltInAnotherCase) {
    put("[Taro]\r\nPath=/t/\r\nID=taro\r\n[a]\r\nID=A\r\n[b]\r\nID=a\r\n[Ｃ]\r\nID=ｃ\r\n");
    EXPECT_EQ(users().ids(), (QStringList{u"taro"_s, u"A"_s}));
    EXPECT_EQ(users().all().front().folder, u"/t/"_s);
    for (const QString& id : users().ids())
        EXPECT_TRUE(users().UserExists(id)) << id.toStdString();
}

TEST_F(Users, OfAFileThatIsNoTextAreNotTakenForNone) {
    put(QByteArray("[\0t\0a\0r\0o\0]\0", 12));
    const QString failure = failureOf([&] { users().hasAny(); });
    EXPECT_TRUE(failure.contains(u"設定ファイルを読み取れません。"_s) && failure.contains(file()));
    EXPECT_NE(failureOf([&] { users().isTaken(u"taro"_s); }), QString());
}

TEST_F(Users, ExistByTheLetterOfTheirName) {
    put("[Taro]\r\nID=Taro\r\n[hanako]\r\nPath=/h/\r\n");
    EXPECT_TRUE(users().UserExists(u"Taro"_s));
    EXPECT_FALSE(users().UserExists(u"taro"_s)) << "the section is found, its ID differs";
    EXPECT_FALSE(users().UserExists(u"hanako"_s));
    EXPECT_FALSE(users().UserExists(u"nobody"_s));
    EXPECT_TRUE(users().UserExists(u""_s));
}

TEST_F(Users, GetInWithTheirPassword) {
    setPassword(u"taro"_s, u"abc"_s);
    EXPECT_EQ(core::ReadIni(file(), u"taro"_s, u"Pass"_s), u"dcb"_s);
    EXPECT_TRUE(users().UserCheck(u"taro"_s, u"abc"_s));
    for (const QString& wrong : {u"ABC"_s, u"ab"_s, u"dcb"_s, u""_s, u"abc "_s})
        EXPECT_FALSE(users().UserCheck(u"taro"_s, wrong)) << wrong.toStdString();
}

TEST_F(Users, WithoutASectionGetInWithNoPassword) {
    put("[taro]\r\nID=taro\r\n");
    EXPECT_FALSE(users().UserCheck(u"hanako"_s, u""_s));
    EXPECT_FALSE(users().UserCheck(u"hanako"_s, u"x"_s));
    EXPECT_TRUE(users().UserCheck(u"taro"_s, u""_s)) << "a user without a password";
}

/// The try itself has written the name there.
TEST_F(Users, AreNotMadeByTryingToLogIn) {
    put("[taro]\r\nID=taro\r\n");
    for (const QString& id : {u"Previous"_s, u"previous"_s}) {
        users().rememberLogin(id);
        EXPECT_FALSE(users().UserCheck(id, u""_s)) << id.toStdString();
    }
}

TEST_F(Users, AreGoneWithTheirId) {
    setPassword(u"taro"_s, u"abc"_s);
    core::DeleteIniKey(file(), u"taro"_s, u"ID"_s);
    EXPECT_FALSE(users().UserCheck(u"taro"_s, u"abc"_s));
}

TEST_F(Users, WithAnEmptyIdAndAnEmptyPasswordGetIn) {
    put("[taro]\r\nID=taro\r\n");
    EXPECT_TRUE(users().UserCheck(u""_s, u""_s));
    EXPECT_FALSE(users().UserCheck(u""_s, u"x"_s));
}

TEST_F(Users, GetInWithEveryPasswordThatABoxTakes) {
    // Among them texts that scramble to quotes, to a reference, and to characters that step over the end of a run.
    const QString passwords[] = {u"!a!"_s, u"&a&"_s, u" a b "_s, u":221\"%"_s, u":;<='"_s, u"ひみつ"_s, u"改円ん×"_s,
                                 u"ﾟﾊﾟ"_s, u"~}|"_s, u"\\"_s,    u"髙﨑"_s,    u";x"_s,    u"=["_s,     u"　"_s};
    for (const QString& password : passwords) {
        ASSERT_TRUE(convert::isPasswordText(password)) << password.toStdString();
        setPassword(u"taro"_s, password);
        EXPECT_TRUE(users().UserCheck(u"taro"_s, password)) << password.toStdString();
        EXPECT_FALSE(users().UserCheck(u"taro"_s, password + u'x')) << password.toStdString();
    }
}

TEST_F(Users, MayHaveAnyName) {
    for (const QString& id : {u"太郎"_s, u"josé"_s, u"a b"_s, u"2-3"_s}) {
        setPassword(id, u"p"_s);
        EXPECT_TRUE(users().UserCheck(id, u"p"_s)) << id.toStdString();
        EXPECT_EQ(users().folder(id), path(id) + u'/');
    }
}

TEST_F(Users, HaveTheirFolderBesideTheProgramUnlessPathSaysOtherwise) {
    const struct {
        QByteArray stored;
        QString folder;
    } cases[] = {{"/users/taro/", u"/users/taro/"_s}, {"/users/taro", u"/users/taro/"_s}, {"", path(u"taro/"_s)},
                 {"C:\\taro\\", path(u"taro/"_s)},    {"data/taro/", path(u"taro/"_s)},   {"~/taro", path(u"taro/"_s)}};
    for (const auto& c : cases) {
        put("[taro]\r\nID=taro\r\nPath=" + c.stored + "\r\n");
        EXPECT_EQ(users().folder(u"taro"_s), c.folder) << c.stored.constData();
    }
    EXPECT_EQ(users().folder(u"hanako"_s), path(u"hanako/"_s));
    EXPECT_EQ(users().folder(u""_s), home.path() + u"//"_s);
}

TEST_F(Users, AreRememberedByTheirLastLogin) {
    put("[taro]\r\nID=taro\r\n");
    users().rememberLogin(u"hanako"_s);
    EXPECT_EQ(core::ReadIni(file(), u"Previous"_s, u"ID"_s), u"hanako"_s);
    users().rememberLogin(u""_s);
    EXPECT_EQ(core::ReadIniDef(file(), u"Previous"_s, u"ID"_s, u"(missing)"_s), u""_s);
    EXPECT_TRUE(bytesOf(file()).startsWith("[taro]\r\nID=taro\r\n"));
}

TEST_F(Users, BehindALinkThatLeadsNowhereAreNotTakenForNone) {
    ASSERT_TRUE(QFile::link(path(u"gone.ini"_s), file()));
    const QString failure = failureOf([&] { users().exist(); });
    EXPECT_TRUE(failure.contains(file()) && failure.contains(path(u"gone.ini"_s))) << failure.toStdString();
}

} // namespace
} // namespace velloria::tests
