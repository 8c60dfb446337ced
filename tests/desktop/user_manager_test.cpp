#include "shell/forms/frmUserManager.h"

#include "convert/password_text.h"
#include "core/ini.h"
#include "shell/forms/frmLogin.h"
#include "shell/forms/frmPassword.h"
#include "support/desktop_home.h"

#include <QDir>
#include <QFile>

using namespace Qt::StringLiterals;

namespace velloria::tests {
namespace {

const QStringList kButtons{u"Btn_MakeUser"_s,       u"Btn_ChangePassword"_s,  u"Btn_DeleteUser"_s,
                           u"Btn_ChangeUserPath"_s, u"Btn_SingleToComplex"_s, u"Btn_OK"_s};

class UserManager : public DesktopHome {
protected:
    void SetUp() override { showTop(); }

    void addUser(const QString& id, const QString& password) const {
        core::WriteIni(file(), id, u"ID"_s, id);
        core::WriteIni(file(), id, u"Pass"_s, convert::EncryptPassword(password));
    }
    QString file() const { return path(u"velluser.ini"_s); }
    QString key(const QString& user, const QString& name) const {
        return core::ReadIniDef(file(), user, name, u"(missing)"_s);
    }
    void open() {
        top().command(u"MnuUserManager"_s)->trigger();
        settle();
        ASSERT_TRUE(window() && window()->isVisible());
    }
    shell::frmUserManager* window() { return context.windows.find<shell::frmUserManager>(); }
    QComboBox& users() { return control<QComboBox>(*window(), u"txtUID"_s); }
    QStringList listed() {
        QStringList ids;
        for (int i = 0; i < users().count(); ++i)
            ids += users().itemText(i);
        return ids;
    }
    QStringList enabled() {
        QStringList names;
        for (const QString& name : kButtons) {
            if (control<QPushButton>(*window(), name).isEnabled())
                names += name;
        }
        return names;
    }
    void press(const QString& name, const QJsonArray& answers = {}) {
        desk.answers = answers;
        control<QPushButton>(*window(), name).click();
        settle();
        EXPECT_TRUE(desk.answers.isEmpty());
    }
};

TEST_F(UserManager, WithoutAUserFileMakesUsersAlone) {
    open();
    EXPECT_EQ(window()->windowTitle(), u"ユーザー管理"_s);
    EXPECT_EQ(enabled(), (QStringList{u"Btn_MakeUser"_s, u"Btn_OK"_s}));
    EXPECT_EQ(listed(), QStringList());
    EXPECT_FALSE(exists(file()));
}

TEST_F(UserManager, WithUsersAndNobodyLoggedInOffersAllButThePassword) {
    addUser(u"taro"_s, u"abc"_s);
    open();
    EXPECT_EQ(enabled(), (QStringList{u"Btn_MakeUser"_s, u"Btn_DeleteUser"_s, u"Btn_ChangeUserPath"_s,
                                      u"Btn_SingleToComplex"_s, u"Btn_OK"_s}));
}

TEST_F(UserManager, OfALoggedInUserOffersAll) {
    addUser(u"taro"_s, u"abc"_s);
    session.UserID = u"taro"_s;
    open();
    EXPECT_EQ(enabled(), kButtons);
}

TEST_F(UserManager, ListsTheSectionsThatHoldTheirOwnName) {
    writeFile(file(), "[Previous]\r\nID=Previous\r\n[taro]\r\nID=taro\r\n[gone]\r\nPath=/x/"
                      "\r\n[a]\r\nID=b\r\n[hanako]\r\nID=hanako\r\n");
    open();
    EXPECT_EQ(listed(), (QStringList{u"taro"_s, u"hanako"_s}));
    EXPECT_EQ(users().currentIndex(), -1) << "nobody is selected by accident";
    EXPECT_FALSE(users().isEditable());
}

TEST_F(UserManager, ListsAThousandUsers) {
    QByteArray bytes;
    for (int i = 0; i < 1000; ++i)
        bytes += "[user" + QByteArray::number(i) + "]\r\nID=user" + QByteArray::number(i) + "\r\n";
    writeFile(file(), bytes);
    open();
    ASSERT_EQ(users().count(), 1000);
    EXPECT_EQ(users().itemText(999), u"user999"_s);
}

/// The other buttons stay as they were until the window is opened again.
TEST_F(UserManager, MakesTheFirstUser) {
    open();
    press(u"Btn_MakeUser"_s, {u"taro"_s, u"abc"_s, u"abc"_s});
    EXPECT_EQ(boxes(), QStringList{u"plain: 新しいユーザー「taro」を作成しました。"_s});
    EXPECT_EQ(listed(), QStringList{u"taro"_s});
    EXPECT_EQ(enabled(), (QStringList{u"Btn_MakeUser"_s, u"Btn_OK"_s}));
    press(u"Btn_OK"_s);
    EXPECT_FALSE(window());
    open();
    EXPECT_EQ(enabled().size(), 5);
}

TEST_F(UserManager, ListsAUserWhosePasswordWasCancelled) {
    open();
    press(u"Btn_MakeUser"_s, {u"taro"_s, QJsonValue()});
    EXPECT_EQ(boxes(), QStringList());
    EXPECT_EQ(listed(), QStringList{u"taro"_s});
    EXPECT_EQ(panel(), u"ユーザー「taro」をパスワードなしで作成しました。"_s);
}

TEST_F(UserManager, AsksForNothingMoreWithoutAName) {
    open();
    press(u"Btn_MakeUser"_s, {QJsonValue()});
    EXPECT_EQ(desk.texts(u"input"_s), QStringList{u"ユーザー名を入力してください。"_s});
    EXPECT_FALSE(exists(file()));
}

TEST_F(UserManager, WantsAUserToBeSelected) {
    addUser(u"taro"_s, u"abc"_s);
    session.UserID = u"taro"_s;
    open();
    for (const QString& button : {u"Btn_DeleteUser"_s, u"Btn_ChangeUserPath"_s, u"Btn_SingleToComplex"_s})
        press(button);
    EXPECT_EQ(boxes(),
              (QStringList{u"critical: ユーザーを選択してください。"_s, u"critical: ユーザーを選択してください。"_s,
                           u"critical: データを移行するユーザーが選択されていません。"_s}));
}

TEST_F(UserManager, ChangesThePasswordOfWhoeverIsLoggedIn) {
    addUser(u"taro"_s, u"abc"_s);
    addUser(u"hanako"_s, u"xyz"_s);
    session.UserID = u"taro"_s;
    open();
    users().setCurrentText(u"hanako"_s);
    press(u"Btn_ChangePassword"_s, {u"new"_s, u"new"_s});
    EXPECT_EQ(boxes(), QStringList{u"plain: パスワードの変更が完了しました！"_s});
    EXPECT_EQ(key(u"taro"_s, u"Pass"_s), convert::EncryptPassword(u"new"_s));
    EXPECT_EQ(key(u"hanako"_s, u"Pass"_s), convert::EncryptPassword(u"xyz"_s));
    EXPECT_EQ(users().currentText(), u"hanako"_s) << "the selection stays";
}

TEST_F(UserManager, DeletesTheSelectedUser) {
    addUser(u"taro"_s, u"abc"_s);
    addUser(u"hanako"_s, u"xyz"_s);
    open();
    users().setCurrentText(u"hanako"_s);
    press(u"Btn_DeleteUser"_s, {u"xyz"_s});
    EXPECT_EQ(boxes(),
              QStringList{u"plain: ユーザーの削除が完了しました。\r\nユーザーフォルダはご自分で削除してください。"_s});
    EXPECT_EQ(listed(), QStringList{u"taro"_s});
    EXPECT_EQ(users().currentIndex(), -1);
}

TEST_F(UserManager, ChangesThePathOfTheSelectedUser) {
    addUser(u"taro"_s, u"abc"_s);
    session.UserID = u"taro"_s;
    QDir(home.path()).mkpath(u"elsewhere"_s);
    open();
    users().setCurrentText(u"taro"_s);
    press(u"Btn_ChangeUserPath"_s, {u"abc"_s, path(u"elsewhere"_s)});
    EXPECT_EQ(lastFileEvent()[u"title"_s], u"ユーザーパスの指定"_s);
    EXPECT_EQ(lastFileEvent()[u"mode"_s], u"folder"_s);
    EXPECT_EQ(key(u"taro"_s, u"Path"_s), path(u"elsewhere/"_s));
}

TEST_F(UserManager, MovesTheSingleUsersData) {
    addUser(u"taro"_s, u"abc"_s);
    open();
    users().setCurrentText(u"taro"_s);
    press(u"Btn_SingleToComplex"_s, {u"abc"_s, u"yes"_s});
    EXPECT_EQ(boxes().last(), u"plain: 完了しました！"_s);
    EXPECT_TRUE(exists(path(u"taro/diary.mdb"_s)));
    EXPECT_TRUE(panel().startsWith(u"設定と日記を移行しました。画像、"_s)) << panel().toStdString();
}

TEST_F(UserManager, SaysWhatTheMachineRefusesAndGoesOn) {
    addUser(u"taro"_s, u"abc"_s);
    QFile::setPermissions(file(), QFile::ReadOwner);
    const QByteArray before = bytesOf(file());
    open();
    press(u"Btn_MakeUser"_s, {u"hanako"_s});
    EXPECT_EQ(desk.texts(u"failure"_s).size(), 1);
    users().setCurrentText(u"taro"_s);
    press(u"Btn_DeleteUser"_s, {u"abc"_s});
    EXPECT_EQ(desk.texts(u"failure"_s).size(), 2);
    EXPECT_EQ(boxes(), QStringList());
    EXPECT_TRUE(window() && window()->isVisible());
    EXPECT_EQ(listed(), QStringList{u"taro"_s});
    EXPECT_TRUE(bytesOf(file()) == before);
}

TEST_F(UserManager, ClosesByItsButtonAndByEscape) {
    open();
    QTest::keyClick(window(), Qt::Key_Return);
    settle();
    EXPECT_FALSE(window());
    open();
    QTest::keyClick(window(), Qt::Key_Escape);
    settle();
    EXPECT_FALSE(window());
}

// ---- the window for passwords

using PasswordWindow = DesktopHome;

QLineEdit& line(QWidget& window, const QString& name) {
    return control<QLineEdit>(window, name);
}

TEST_F(PasswordWindow, HasOneLineOrTwo) {
    shell::frmPassword two(u"新しいパスワードの入力"_s, platform::PasswordLines::WithConfirmation, nullptr);
    two.show();
    EXPECT_EQ(two.windowTitle(), u"新しいパスワードの入力"_s);
    EXPECT_EQ(control<QLabel>(two, u"labelNewPassword"_s).text(), u"パスワード（確認用）"_s);
    EXPECT_TRUE(line(two, u"txtNewPassword"_s).isVisible());
    shell::frmPassword one(u"パスワードの入力"_s, platform::PasswordLines::One, nullptr);
    one.show();
    EXPECT_TRUE(line(one, u"txtPassword"_s).isVisible());
    EXPECT_FALSE(line(one, u"txtNewPassword"_s).isVisible());
    EXPECT_FALSE(control<QLabel>(one, u"labelNewPassword"_s).isVisible());
}

TEST_F(PasswordWindow, GivesWhatWasTypedWithOk) {
    shell::frmPassword window(u"x"_s, platform::PasswordLines::WithConfirmation, nullptr);
    EXPECT_EQ(line(window, u"txtPassword"_s).text(), u""_s);
    EXPECT_FALSE(window.IsOK);
    line(window, u"txtPassword"_s).setText(u"ひみつ"_s);
    line(window, u"txtNewPassword"_s).setText(u"別"_s);
    control<QPushButton>(window, u"Btn_OK"_s).click();
    EXPECT_TRUE(window.IsOK);
    EXPECT_EQ(window.Password, u"ひみつ"_s);
    EXPECT_EQ(window.NewPassword, u"別"_s);
}

TEST_F(PasswordWindow, GivesNothingWithCancel) {
    shell::frmPassword window(u"x"_s, platform::PasswordLines::One, nullptr);
    line(window, u"txtPassword"_s).setText(u"abc"_s);
    control<QPushButton>(window, u"Btn_Cancel"_s).click();
    EXPECT_FALSE(window.IsOK);
    EXPECT_EQ(window.Password, u""_s);
}

TEST_F(PasswordWindow, AsksForTheDesk) {
    showTop();
    whenShown<shell::frmPassword>([](shell::frmPassword& window) {
        EXPECT_TRUE(window.isModal());
        line(window, u"txtPassword"_s).setText(u"abc"_s);
        QTest::keyClick(&window, Qt::Key_Return);
    });
    const auto typed = shell::askPasswords(&top(), u"パスワードの入力"_s, platform::PasswordLines::One);
    ASSERT_TRUE(typed);
    EXPECT_EQ(typed->password, u"abc"_s);
    EXPECT_EQ(typed->confirmation, u""_s);
    EXPECT_TRUE(becomesActive(top()));
    whenShown<shell::frmPassword>([](shell::frmPassword& window) { QTest::keyClick(&window, Qt::Key_Escape); });
    EXPECT_FALSE(shell::askPasswords(&top(), u"パスワードの入力"_s, platform::PasswordLines::WithConfirmation));
}

/// Typed or pasted, what the user file would not give back does not come into the box, and nothing of it is shown.
TEST_F(PasswordWindow, TakesOnlyWhatComesBack) {
    shell::frmPassword password(u"x"_s, platform::PasswordLines::WithConfirmation, nullptr);
    shell::frmLogin login(u""_s);
    for (QLineEdit* box :
         {&line(password, u"txtPassword"_s), &line(password, u"txtNewPassword"_s), &line(login, u"txtPassword"_s)}) {
        EXPECT_EQ(box->echoMode(), QLineEdit::Password);
        for (const QString& typed : {u"é"_s, u"😀"_s, u"〜"_s, u"a\u00A5"_s, QString(256, u'a'), QString(128, u'あ')}) {
            box->clear();
            box->insert(typed);
            EXPECT_EQ(box->text(), u""_s) << typed.toStdString();
        }
        for (const QString& typed : {u"abc"_s, u"!a!"_s, u"ひみつ～"_s, u"ﾟ×ん円改"_s, u" "_s, QString(255, u'a')}) {
            box->clear();
            box->insert(typed);
            EXPECT_EQ(box->text(), typed) << typed.toStdString();
        }
    }
}

} // namespace
} // namespace velloria::tests
