// After a box or a file dialog the window that asked has the keyboard again.
#include "browser/forms/frmPrevDiaryViewer.h"
#include "editor/forms/frmHTMLMakeFont.h"
#include "editor/forms/frmHTMLMakeHR.h"
#include "editor/forms/frmHTMLMakeImage.h"
#include "editor/forms/frmHTMLMakeList.h"
#include "exchange/forms/frmDeleteImportDiary.h"
#include "exchange/forms/frmExport.h"
#include "real_keys.h"
#include "registers/file_register.h"
#include "registers/forms/frmResistFiles.h"
#include "registers/forms/frmResistLogs.h"
#include "registers/log_register.h"
#include "shell/forms/frmPassword.h"
#include "shell/forms/frmUserManager.h"
#include "shell/users.h"
#include "site/forms/frmFind.h"
#include "site/forms/frmSaveLog.h"

#include <QInputDialog>

using namespace Qt::StringLiterals;

namespace velloria::tests {
namespace {

const QString kEnter = u"Return"_s;
const QString kSpace = u"space"_s;
const QString kEscape = u"Escape"_s;

class Keyboard : public RealKeys {
protected:
    /// Waits until all of them are gone.
    static bool hasNoDialog() {
        return waitFor([] { return !QApplication::activeModalWidget(); });
    }
    /// A press of the button brings dialogs, each left by its key; then the window has the keyboard.
    void expectKept(QWidget& window, const QString& button, const QStringList& leaving) {
        leaveAll(leaving);
        pressAt(control(window, button), kSpace);
        EXPECT_TRUE(hasNoDialog());
        expectKeysGoTo(window, window.objectName() + u"."_s + button);
    }
    /// Each key once there is a dialog that was not there before.
    static void leaveAll(QStringList keys) {
        if (keys.isEmpty())
            return;
        const QString key = keys.takeFirst();
        whenShown<QDialog>([key, keys](QDialog& dialog) {
            QObject::connect(&dialog, &QObject::destroyed, qApp, [keys] { leaveAll(keys); });
            leave(dialog, key);
        });
    }
};

TEST_F(Keyboard, AfterTheFindWindowsComplaintItsWordIsTyped) {
    press(u"ctrl+f"_s);
    auto* window = context.windows.find<site::frmFind>();
    ASSERT_TRUE(window);
    ASSERT_TRUE(becomesActive(*window));
    leaveNext(kEnter);
    press(kEnter);
    ASSERT_TRUE(hasNoDialog());
    ASSERT_TRUE(becomesActive(*window));
    for (const char* letter : {"a", "b", "c"})
        press(QLatin1StringView(letter));
    EXPECT_EQ(control<QLineEdit>(*window, u"txtFindWord"_s).text(), u"abc"_s);
    EXPECT_EQ(pane().toPlainText(), QString());
}

TEST_F(Keyboard, StaysWithTheImageMaker) {
    auto& window = shownWindow<editor::frmHTMLMakeImage>(context);
    expectKept(window, u"Btn_Open"_s, {kEscape});
    control<QLineEdit>(window, u"txt_FilePath"_s).setText(path(u"missing.gif"_s));
    control<QCheckBox>(window, u"chk_Resist"_s).setChecked(true);
    leaveNext(kEnter);
    pressAt(control(window, u"Btn_OK"_s), kSpace);
    ASSERT_TRUE(hasNoDialog());
    EXPECT_TRUE(becomesActive(context.windows.find<editor::frmHTMLMakeImage>() ? static_cast<QWidget&>(window)
                                                                               : static_cast<QWidget&>(top())));
}

TEST_F(Keyboard, StaysWithTheFileRegister) {
    registers::FileRegister(session.databaseFile()).addFile({0, u"a.gif"_s, u"2004/05/06"_s, 1});
    auto& window = shownWindow<registers::frmResistFiles>(context);
    expectKept(window, u"BtnOpenFolder"_s, {kEscape});
    control<QLineEdit>(window, u"txtOpenFile"_s).setText(path(u"missing.gif"_s));
    expectKept(window, u"BtnResist"_s, {kEnter});
    auto& list = control<QListWidget>(window, u"ResisterdList"_s);
    ASSERT_GT(list.count(), 0);
    list.setCurrentRow(0);
    expectKept(window, u"BtnDelete"_s, {u"n"_s});
    EXPECT_GT(list.count(), 0);
    list.setCurrentRow(0);
    expectKept(window, u"BtnDelete"_s, {kEnter, kEnter, kEnter});
    EXPECT_EQ(list.count(), 0);
}

TEST_F(Keyboard, StaysWithTheLogRegister) {
    registers::LogRegister(session.databaseFile()).addLog({u"2004/04"_s, u"200404.htm"_s});
    auto& window = shownWindow<registers::frmResistLogs>(context);
    expectKept(window, u"BtnOpenFolder"_s, {kEscape});
    control<QLineEdit>(window, u"txtOpenFile"_s).setText(path(u"missing.htm"_s));
    control<QComboBox>(window, u"cmbMonth"_s).setCurrentIndex(3);
    expectKept(window, u"BtnResist"_s, {kEnter});
    control<QListWidget>(window, u"ResisterdList"_s).setCurrentRow(0);
    expectKept(window, u"BtnDelete"_s, {u"n"_s});

    // The year is looked at when its box is left, after the key that left it.
    auto& year = control<QLineEdit>(window, u"txtYear"_s);
    year.setText(u"x"_s);
    leaveNext(kEnter);
    pressAt(year, u"Tab"_s);
    ASSERT_TRUE(waitFor([&] { return !QApplication::activeModalWidget() && year.hasFocus(); }));
    expectKeysGoTo(window, u"the year's complaint"_s);
}

TEST_F(Keyboard, StaysWithTheExport) {
    auto& window = shownWindow<exchange::frmExport>(context);
    control<QRadioButton>(window, u"optFormat_User"_s).setChecked(true);
    expectKept(window, u"Btn_OK"_s, {kEnter});
    control<QRadioButton>(window, u"optFormat_Text"_s).setChecked(true);
    expectKept(window, u"Btn_OK"_s, {kEscape, kEnter});
    control<QRadioButton>(window, u"optFile_Divide"_s).setChecked(true);
    expectKept(window, u"Btn_OK"_s, {kEscape, kEnter});
}

TEST_F(Keyboard, StaysWithTheLogMaker) {
    auto& window = shownWindow<site::frmSaveLog>(context);
    control<QLineEdit>(window, u"txtMonth"_s).setText(u"1/2"_s);
    expectKept(window, u"btn_Save"_s, {kEnter});
}

TEST_F(Keyboard, StaysWithTheRemovalOfImports) {
    auto& window = shownWindow<exchange::frmDeleteImportDiary>(context);
    leaveNext(kEnter);
    pressAt(control(window, u"Btn_OK"_s), kSpace);
    ASSERT_TRUE(hasNoDialog());
    settle();
    QWidget* const left = context.windows.find<exchange::frmDeleteImportDiary>();
    expectKeysGoTo(left ? *left : top(), u"frmDeleteImportDiary"_s);
}

TEST_F(Keyboard, StaysWithTheUserManager) {
    qtDesk.askPasswords = shell::askPasswords;
    auto& first = shownWindow<shell::frmUserManager>(context);
    expectKept(first, u"Btn_MakeUser"_s, {kEscape});
    whenShown<QInputDialog>([](QInputDialog& prompt) {
        prompt.setTextValue(u"taro"_s);
        QObject::connect(&prompt, &QObject::destroyed, qApp, [] { leaveAll({kEscape}); });
        leave(prompt, kEnter);
    });
    pressAt(control(first, u"Btn_MakeUser"_s), kSpace);
    EXPECT_TRUE(hasNoDialog());
    EXPECT_EQ(shell::Users(session.MyPath).ids(), QStringList{u"taro"_s});
    expectKeysGoTo(first, u"behind the prompts for a name and a password"_s);
    first.reject();
    settle();

    auto& window = shownWindow<shell::frmUserManager>(context);
    auto& users = control<QComboBox>(window, u"txtUID"_s);
    users.setCurrentIndex(0);
    expectKept(window, u"Btn_DeleteUser"_s, {kEscape});
    users.setCurrentIndex(0);
    expectKept(window, u"Btn_DeleteUser"_s, {kEnter, kEnter});
    EXPECT_EQ(users.count(), 0);
}

TEST_F(Keyboard, OfTheMainWindowLeavesTheViewersAboveIt) {
    write(u"2003/05/06"_s, u"first"_s);
    contents().day().openDay(u"2004/05/06"_s);
    contents().picPrevDiaryExist_Click();
    auto& viewer = context.windows.get<browser::frmPrevDiaryViewer>();
    ASSERT_TRUE(becomesActive(viewer));
    viewer.move(top().frameGeometry().center());
    settle();
    top().raise();
    top().activateWindow();
    ASSERT_TRUE(becomesActive(top()));
    const QPoint middle = viewer.frameGeometry().center();
    EXPECT_TRUE(waitFor([&] { return QGuiApplication::topLevelAt(middle) == viewer.windowHandle(); }));
    EXPECT_TRUE(viewer.windowFlags() & Qt::WindowMaximizeButtonHint);
}

TEST_F(Keyboard, StaysWithTheMakersThatBlock) {
    auto& rule = shownWindow<editor::frmHTMLMakeHR>(context);
    leaveNext<QMessageBox>(kEnter);
    auto& width = control<QLineEdit>(rule, u"txtWidth"_s);
    width.selectAll();
    pressAt(width, u"x"_s);
    expectKeysGoTo(rule, u"the width's complaint"_s, {u"Left"_s, u"Right"_s}); // no more letters, no more boxes
    leaveNext<QColorDialog>(kEscape);
    pressAt(control(rule, u"Btn_GetColorDialog"_s), kSpace);
    expectKeysGoTo(rule, u"the colour dialog"_s);
    rule.reject();
    settle();

    auto& list = shownWindow<editor::frmHTMLMakeList>(context);
    control<QRadioButton>(list, u"optTypeOL"_s).setChecked(true);
    auto& start = control<QLineEdit>(list, u"txtOLStart"_s);
    start.setText(u"x"_s);
    leaveNext<QMessageBox>(kEnter);
    pressAt(start, u"Tab"_s);
    ASSERT_TRUE(waitFor([&] { return start.hasFocus(); }));
    expectKeysGoTo(list, u"the start's complaint"_s);
    list.reject();
    settle();
    expectKeysGoTo(top(), u"after the makers"_s);
}

TEST_F(Keyboard, IsTheMainWindowsAgainBehindItsOwnBoxes) {
    press(u"End"_s);
    leaveNext(kEnter);
    press(u"ctrl+s"_s); // without a title
    ASSERT_TRUE(hasNoDialog());
    expectKeysGoTo(top(), u"the editor"_s);
}

TEST_F(Keyboard, IsTheMainWindowsAgainWhenTheWindowThatAskedIsGone) {
    auto& window = shownWindow<site::frmFind>(context);
    whenShown<QDialog>([&](QDialog& box) {
        EXPECT_TRUE(becomesActive(box));
        EXPECT_EQ(box.parentWidget(), &window);
        context.windows.unload<site::frmFind>();
    });
    qtDesk.message(platform::MessageKind::Plain, u"text"_s, u"Velloria"_s);
    EXPECT_EQ(QApplication::activeModalWidget(), nullptr);
    expectKeysGoTo(top(), u"after a window that went"_s);
}

} // namespace
} // namespace velloria::tests
