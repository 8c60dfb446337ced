#include "browser/forms/frmBrowser.h"
#include "core/ini.h"
#include "core/keys.h"
#include "desktop/command.h"
#include "editor/forms/frmCalender.h"
#include "editor/forms/frmContents.h"
#include "shell/forms/desktop_end.h"
#include "shell/forms/desktop_start.h"
#include "shell/forms/frmLogin.h"
#include "shell/forms/StartForm.h"
#include "support/desktop_home.h"

#include <QLineEdit>
#include <QMdiArea>
#include <QPushButton>
#include <QScreen>
#include <QTimer>

using namespace Qt::StringLiterals;

namespace velloria::tests {
namespace {

/// A folder with factory files, never started, and what the program makes of it.
class DesktopStart : public FactoryHome {
protected:
    ~DesktopStart() override { tidyUp(context, home); }

    shell::StartResult startWindows() {
        const shell::StartResult result = shell::startDesktop(context, home.path());
        settle();
        return result;
    }
    shell::MDIFormTop& top() { return context.windows.get<shell::MDIFormTop>(); }
    QString iniFile() const { return path(u"UserData/diary.ini"_s); }
    void setKey(const QString& section, const QString& key, const QString& value) const {
        core::WriteIni(iniFile(), section, key, value);
    }
    /// Answers the login window once it is there.
    void logIn(const QString& id, const QString& password) {
        whenShown<shell::frmLogin>([=](shell::frmLogin& login) {
            login.findChild<QLineEdit*>(u"txtUID"_s)->setText(id);
            login.findChild<QLineEdit*>(u"txtPassword"_s)->setText(password);
            login.findChild<QPushButton*>(u"Btn_Login"_s)->click();
        });
    }
    void makeUser(const QString& id, const QString& stored) {
        const QString users = path(u"velluser.ini"_s);
        core::WriteIni(users, id, u"ID"_s, id);
        core::WriteIni(users, id, u"Pass"_s, stored);
        // A user's settings as the first start of a single user leaves them.
        QDir(home.path()).mkpath(id);
        writeFile(path(id + u"/diary.ini"_s), "[ALL]\r\n");
        core::WriteIni(path(id + u"/diary.ini"_s), u"ALL"_s, u"DataPath"_s, path(id + u'/'));
        QFile::copy(path(u"default.mdb"_s), path(id + u"/diary.mdb"_s));
    }

    desktop::Context context{run};
};

TEST_F(DesktopStart, ShowsTheWindowsOfAFirstRun) {
    EXPECT_EQ(startWindows(), shell::StartResult::Ready);
    EXPECT_EQ(top().windowTitle(), u"Velloria v2.2.0"_s);
    EXPECT_TRUE(top().isVisible());
    EXPECT_EQ(top().size(), QSize(1024, 720).boundedTo(top().screen()->availableSize()));
    EXPECT_EQ(session.EnterDay, u"2004/05/06"_s);
    auto& contents = context.windows.get<editor::frmContents>();
    EXPECT_EQ(contents.windowTitle(), u"日記作成"_s);
    EXPECT_TRUE(contents.isVisible()); // the factory settings arrange the windows
    EXPECT_TRUE(context.windows.get<editor::frmCalender>().isVisible());
    EXPECT_EQ(boxes(), QStringList());
    EXPECT_EQ(desk.texts(u"navigate"_s), QStringList{path(u"SimpleManual.mht"_s)});
    EXPECT_FALSE(exists(path(u"UserData/tmp.htm"_s)));
}

TEST_F(DesktopStart, LeavesTheChildrenAloneWhereNoArrangementIsWished) {
    startWindows();
    context.windows.closeAll();
    setKey(u"Initialize"_s, u"WindowPosition"_s, u"0"_s);
    desk.events = {};
    startWindows();
    EXPECT_TRUE(context.windows.get<editor::frmCalender>().isVisible());
    EXPECT_FALSE(context.windows.get<editor::frmContents>().isVisible());
    EXPECT_EQ(desk.texts(u"navigate"_s), QStringList());
}

TEST_F(DesktopStart, RestoresTheFrameOntoAScreen) {
    startWindows();
    context.windows.closeAll();
    setKey(u"ParentForm"_s, u"Width"_s, u"57600"_s); // more than 16 bits hold
    setKey(u"ParentForm"_s, u"Left"_s, u"45000"_s);
    startWindows();
    const QRect area = top().screen()->availableGeometry();
    EXPECT_TRUE(area.contains(top().geometry()));
    EXPECT_EQ(top().width(), area.width());
}

TEST_F(DesktopStart, AMissingOrZeroPlaceLeavesThePropertyAlone) {
    startWindows();
    context.windows.closeAll();
    setKey(u"ParentForm"_s, u"Width"_s, u"0"_s);
    setKey(u"ParentForm"_s, u"Height"_s, u"9000"_s);
    startWindows();
    EXPECT_EQ(top().height(), 600);
    EXPECT_EQ(top().width(), QSize(1024, 720).boundedTo(top().screen()->availableSize()).width());
}

TEST_F(DesktopStart, AnEdgeOfZeroStaysWhereTheScreenPutsIt) {
    startWindows();
    const QPoint byItself = top().pos();
    for (const auto& [left, topEdge] : {std::pair{0, 600}, {450, 0}, {0, 0}, {450, 600}}) {
        context.windows.closeAll();
        setKey(u"ParentForm"_s, u"Left"_s, QString::number(left));
        setKey(u"ParentForm"_s, u"Top"_s, QString::number(topEdge));
        setKey(u"ParentForm"_s, u"Width"_s, u"9000"_s);
        startWindows();
        EXPECT_EQ(top().x(), left == 0 ? byItself.x() : 30) << left << ' ' << topEdge;
        EXPECT_EQ(top().y(), topEdge == 0 ? byItself.y() : 40) << left << ' ' << topEdge;
        EXPECT_EQ(top().width(), 600) << left << ' ' << topEdge;
    }
}

TEST_F(DesktopStart, GoesOnBehindANumberThatIsTooLarge) {
    startWindows();
    context.windows.closeAll();
    setKey(u"Initialize"_s, u"WindowMaximize"_s, u"99999"_s);
    setKey(u"Initialize"_s, u"ShowStartUpForm"_s, u"99999"_s);
    EXPECT_EQ(startWindows(), shell::StartResult::Ready);
    EXPECT_EQ(desk.texts(u"failure"_s).size(), 2);
    EXPECT_TRUE(top().isVisible());
    EXPECT_TRUE(context.windows.get<editor::frmContents>().isVisible());
}

TEST_F(DesktopStart, EndsWhereNoDataFolderIsChosen) {
    startWindows();
    context.windows.closeAll();
    setKey(u"ALL"_s, u"DataPath"_s, u"/nowhere/"_s);
    desk.answers = {QJsonValue::Null};
    EXPECT_EQ(startWindows(), shell::StartResult::Ended);
    EXPECT_EQ(context.windows.find<shell::MDIFormTop>(), nullptr);
}

TEST_F(DesktopStart, ShowsTheSplashOnlyForTheValueOne) {
    startWindows();
    for (const QString& value : {u"0"_s, u"2"_s, u"1"_s}) {
        context.windows.closeAll();
        setKey(u"Initialize"_s, u"ShowStartUpForm"_s, value);
        setKey(u"ALL"_s, u"DataPath"_s, u"/nowhere/"_s);
        desk.answers = {QJsonValue::Null};
        startWindows();
        EXPECT_EQ(context.windows.find<shell::StartForm>() != nullptr, value == u"1"_s) << value.toStdString();
        setKey(u"ALL"_s, u"DataPath"_s, path(u"UserData/"_s));
    }
    startWindows();
    EXPECT_EQ(context.windows.find<shell::StartForm>(), nullptr) << "it goes at the end of the start";
}

TEST_F(DesktopStart, HidesWhatIsNotBesideTheProgram) {
    startWindows();
    EXPECT_TRUE(top().command(u"MnuImportNoFunction"_s)->isVisible());
    EXPECT_TRUE(top().command(u"MnuNoPlugin"_s)->isVisible());
    EXPECT_FALSE(top().command(u"mnuVellMemo"_s)->isEnabled());
    EXPECT_TRUE(top().command(u"mnuVellMemo"_s)->isVisible());
    for (const QString& name :
         {u"MnuMTExport"_s, u"MnuMTImport"_s, u"MnuLarkportDll"_s, u"MnuHTNExport"_s, u"MnuHTNImport"_s,
          u"MnuWrenportDll"_s, u"MnuVellInfo"_s, u"MnuVellInfoDll"_s, u"MnuPING"_s, u"MnuChimerDll"_s})
        EXPECT_FALSE(top().command(name)->isVisible()) << name.toStdString();
}

TEST_F(DesktopStart, ShowsTheCommandsOfAPlugin) {
    writeFile(path(u"Chimer.dll"_s), "");
    startWindows();
    EXPECT_TRUE(top().command(u"MnuPING"_s)->isVisible());
    EXPECT_TRUE(top().command(u"MnuChimerDll"_s)->isVisible());
    EXPECT_FALSE(top().command(u"MnuNoPlugin"_s)->isVisible());
    EXPECT_TRUE(top().command(u"MnuImportNoFunction"_s)->isVisible());
    context.windows.closeAll();
    writeFile(path(u"Wrenport.dll"_s), "");
    startWindows();
    EXPECT_FALSE(top().command(u"MnuImportNoFunction"_s)->isVisible());
    EXPECT_TRUE(top().command(u"MnuHTNImport"_s)->isVisible());
}

TEST_F(DesktopStart, EnablesTheUpdaterWhileAnUpdateWaits) {
    startWindows();
    EXPECT_FALSE(top().command(u"MnuVellUpdater"_s)->isEnabled());
    const QString file = path(u"update.txt"_s);
    for (const auto& [text, isEnabled] :
         {std::pair{"[Update]\r\nUpdated=0\r\n", true}, {"[Update]\r\nUpdated=1\r\n", false}, {"", true}}) {
        context.windows.closeAll();
        writeFile(file, text);
        startWindows();
        EXPECT_EQ(top().command(u"MnuVellUpdater"_s)->isEnabled(), isEnabled) << text;
    }
}

TEST_F(DesktopStart, OfALoggedInUserNamesThemAndMakesThePreview) {
    makeUser(u"taro"_s, u"dcb"_s);
    logIn(u"taro"_s, u"abc"_s);
    EXPECT_EQ(startWindows(), shell::StartResult::Ready);
    EXPECT_EQ(top().windowTitle(), u"Velloria v2.2.0 [User:taro]"_s);
    EXPECT_TRUE(exists(path(u"taro/tmp.htm"_s)));
    writeFile(path(u"taro/a.htm"_s), "a page of somebody's own");
    writeFile(path(u"taro/x.html"_s), "not looked at");
    top().close();
    EXPECT_FALSE(exists(path(u"taro/tmp.htm"_s)));
    EXPECT_TRUE(exists(path(u"taro/Kept/a.htm"_s)));
    EXPECT_TRUE(exists(path(u"taro/x.html"_s)));
}

TEST_F(DesktopStart, AWrongPasswordEndsBehindItsBox) {
    makeUser(u"taro"_s, u"dcb"_s);
    logIn(u"taro"_s, u"abd"_s);
    EXPECT_EQ(startWindows(), shell::StartResult::Ended);
    EXPECT_EQ(boxes(), QStringList{u"critical: 不正なユーザもしくはパスワードです。\r\nVelloriaを終了します。"_s});
    EXPECT_EQ(core::ReadIni(path(u"velluser.ini"_s), u"Previous"_s, u"ID"_s), u"taro"_s);
}

TEST_F(DesktopStart, ACancelledLoginEndsSilently) {
    makeUser(u"taro"_s, u"dcb"_s);
    whenShown<shell::frmLogin>([](shell::frmLogin& login) { login.close(); });
    const auto before = contentOf(home.path());
    EXPECT_EQ(startWindows(), shell::StartResult::Ended);
    EXPECT_EQ(boxes(), QStringList());
    EXPECT_EQ(contentOf(home.path()), before);
}

TEST_F(DesktopStart, TheLoginKnowsTheLastUser) {
    shell::frmLogin first(u""_s);
    first.show();
    first.activateWindow();
    ASSERT_TRUE(becomesActive(first));
    EXPECT_EQ(first.windowTitle(), u"Velloria - Login"_s);
    EXPECT_EQ(first.focusWidget()->objectName(), u"txtUID"_s);
    shell::frmLogin again(u"taro"_s);
    again.show();
    again.activateWindow();
    ASSERT_TRUE(becomesActive(again));
    EXPECT_EQ(again.focusWidget()->objectName(), u"txtPassword"_s);
    auto* password = again.findChild<QLineEdit*>(u"txtPassword"_s);
    EXPECT_EQ(password->echoMode(), QLineEdit::Password);
    auto* hint = again.findChild<QLabel*>(u"labelCapsLock"_s);
    QTest::keyClick(password, 'A', Qt::ShiftModifier);
    EXPECT_FALSE(hint->isVisible());
    QTest::sendKeyEvent(QTest::Click, password, Qt::Key_A, u"A"_s, Qt::NoModifier);
    EXPECT_TRUE(hint->isVisible());
}

class DesktopEnd : public DesktopHome {
protected:
    QString stored(const QString& key) { return core::ReadIni(session.DiaryIniFile, u"ParentForm"_s, key); }
    void writeSomething(const QString& title) {
        context.windows.get<editor::frmCalender>().Calender_DateClick(QDate(2004, 5, 6));
        control<QLineEdit>(context.windows.get<editor::frmContents>(), u"txtTitle"_s).insert(title);
    }
};

TEST_F(DesktopEnd, KeepsTheFrameOfTheNormalStateAlone) {
    showTop();
    top().setGeometry(30, 40, 900, 600);
    settle();
    top().close();
    EXPECT_EQ(stored(u"Left"_s), u"450"_s);
    EXPECT_EQ(stored(u"Top"_s), u"600"_s);
    EXPECT_EQ(stored(u"Width"_s), u"13500"_s);
    EXPECT_EQ(stored(u"Height"_s), u"9000"_s);
    top().showMaximized();
    settle();
    top().close();
    EXPECT_EQ(stored(u"Width"_s), u"13500"_s);
}

TEST_F(DesktopEnd, WithoutUsersRemovesNothing) {
    writeFile(session.DataPath + u"tmp.htm"_s, "page");
    showTop();
    top().close();
    EXPECT_TRUE(exists(session.DataPath + u"tmp.htm"_s));
}

TEST_F(DesktopEnd, AsksForTheUnsavedEntry) {
    showTop();
    writeSomething(u"half"_s);
    desk.answers = {u"yes"_s};
    top().close();
    EXPECT_FALSE(top().isVisible());
    EXPECT_EQ(boxes(), QStringList{u"question: 変更されています。保存しますか？"_s});
    EXPECT_EQ(sqlValue(u"SELECT Title FROM Contents"_s), u"half"_s);
}

TEST_F(DesktopEnd, ARefusedSaveKeepsTheProgram) {
    showTop();
    writeSomething(u"x"_s);
    control<QLineEdit>(context.windows.get<editor::frmContents>(), u"txtTitle"_s).clear();
    desk.answers = {u"yes"_s};
    top().close();
    EXPECT_TRUE(top().isVisible());
    EXPECT_EQ(boxes().last(), u"critical: タイトルを入力してください！"_s);
    EXPECT_EQ(stored(u"Width"_s), u""_s);
}

TEST_F(DesktopEnd, OfTheMachineKeepsTheDraftAndAsksNobody) {
    showTop();
    writeSomething(u"half"_s);
    shell::keepForTheEnd(context);
    EXPECT_EQ(boxes(), QStringList());
    EXPECT_TRUE(exists(session.UserPath + u"draft.json"_s));
    EXPECT_EQ(modeOf(session.UserPath + u"draft.json"_s), 0600U);
}

TEST(RunCommand, TellsWhatItCaughtAndLetsNothingThrough) {
    ScriptedDesk desk;
    EXPECT_TRUE(desktop::runCommand(desk, [] {}));
    EXPECT_FALSE(desktop::runCommand(desk, [] { throw platform::Failure(u"a"_s, u"b"_s, u"c"_s); }));
    EXPECT_FALSE(desktop::runCommand(desk, [] { throw std::bad_alloc(); }));
    EXPECT_FALSE(desktop::runCommand(desk, [] { throw std::runtime_error("d"); }));
    EXPECT_FALSE(desktop::runCommand(desk, [] { throw 7; }));
    ASSERT_EQ(desk.texts(u"failure"_s).size(), 4);
    EXPECT_TRUE(desk.texts(u"failure"_s)[2].contains(u"d"_s));
    EXPECT_TRUE(desk.texts(u"failure"_s)[3].contains(u"処理を続けられません。"_s));
}

} // namespace
} // namespace velloria::tests
