// Tab and Shift+Tab lead round every window, through all that takes keys and in the order of writing.
#include "blog/forms/frmBlogManager.h"
#include "browser/forms/frmAuthentication.h"
#include "convert/forms/frmHTML2TXTSetting.h"
#include "editor/forms/frmHTMLMakeImage.h"
#include "exchange/forms/frmDeleteImportDiary.h"
#include "exchange/forms/frmExport.h"
#include "exchange/forms/frmExportCust.h"
#include "exchange/forms/frmOtherFormats.h"
#include "makers_home.h"
#include "registers/forms/frmResistFiles.h"
#include "registers/forms/frmResistLogs.h"
#include "shell/forms/frmAbout.h"
#include "shell/forms/frmBackups.h"
#include "shell/forms/frmLogin.h"
#include "shell/forms/frmOptions.h"
#include "shell/forms/frmPassword.h"
#include "shell/forms/frmUserManager.h"
#include "site/forms/frmCustomize.h"
#include "site/forms/frmCustomizeSelection.h"
#include "site/forms/frmFind.h"
#include "site/forms/frmSaveLog.h"
#include "site/forms/frmSetting.h"

#include <QUrl>

using namespace Qt::StringLiterals;

namespace velloria::tests {
namespace {

const QString kTabs = u"qt_tabwidget_tabbar"_s; // the toolkit's name

class TabRing : public Makers {
protected:
    /// The controls that get the keys one after the other until the key leads back to where it began, or longer than
    /// any window has controls. The parts of a date count as one.
    static QStringList walk(QWidget& window, Qt::Key key) {
        constexpr int kMostPresses = 60;
        const QWidget* const start = QApplication::focusWidget();
        QStringList names{start->objectName()};
        for (int i = 0; i < kMostPresses; ++i) {
            const Qt::KeyboardModifiers modifiers = key == Qt::Key_Backtab ? Qt::ShiftModifier : Qt::NoModifier;
            QTest::keyClick(window.windowHandle(), key, modifiers);
            settle();
            const QWidget* const focus = QApplication::focusWidget();
            if (focus == start && names.size() > 1)
                return names;
            const QString name = focus ? focus->objectName() : u"nothing"_s;
            if (name != names.last())
                names += name;
        }
        names += u"no end"_s;
        return names;
    }
    /// From the control that has the keys the ring is `order`, and backwards the same the other way round.
    static void expectRing(QWidget& window, const QStringList& order) {
        QStringList backwards = order.mid(1);
        std::reverse(backwards.begin(), backwards.end());
        backwards.prepend(order.first());
        expectWalks(window, order, backwards);
    }
    static void expectWalks(QWidget& window, const QStringList& forwards, const QStringList& backwards) {
        EXPECT_EQ(walk(window, Qt::Key_Tab).join(u' '), forwards.join(u' '));
        EXPECT_EQ(walk(window, Qt::Key_Backtab).join(u' '), backwards.join(u' '));
    }
    /// With the last option of each group chosen, no other one gets the keys.
    template <class Window>
    void expectChosenOptions() {
        auto& window = shownWindow<Window>(context);
        for (auto* option : window.template findChildren<QRadioButton*>())
            option->setChecked(true);
        control<QPushButton>(window, u"Btn_OK"_s).setFocus();
        settle();
        int options = 0;
        for (const QString& name : walk(window, Qt::Key_Tab)) {
            if (const auto* option = window.template findChild<QRadioButton*>(name)) {
                EXPECT_TRUE(option->isChecked()) << name.toStdString();
                ++options;
            }
        }
        EXPECT_GT(options, 0) << window.objectName().toStdString();
        window.reject();
        settle();
    }
    template <class Window>
    void expectRingOf(const QStringList& order) {
        auto& window = shownWindow<Window>(context);
        expectRing(window, order);
        window.reject();
        settle();
    }
};

/// The insert tools are there while the text has the keys; in the title they have nothing to insert into.
/// Tab leads from the title to the text at once, Shift+Tab from the text to its tabs.
TEST_F(TabRing, OfTheEditor) {
    keys(pane(), u"text"_s);
    expectWalks(top(),
                {u"txtContents"_s, u"ComboGenre"_s, u"ComboWeather"_s, u"ComboPrivate"_s, u"ComboNumber"_s,
                 u"SaveToMDBOnly"_s, u"SaveToMDB"_s, u"InsertURL"_s, u"InsertImg"_s, u"InsertTag"_s, u"ComboTag"_s,
                 u"txtTitle"_s},
                {u"txtContents"_s, kTabs, u"txtTitle"_s, u"SaveToMDB"_s, u"SaveToMDBOnly"_s, u"ComboNumber"_s,
                 u"ComboPrivate"_s, u"ComboWeather"_s, u"ComboGenre"_s});
}

TEST_F(TabRing, OfTheCalendar) {
    month().setFocus();
    expectRing(top(), {u"Calender"_s, u"Btn_New"_s, u"Btn_Delete"_s, u"Btn_Find"_s, u"cmbBlog"_s, u"cmbBlogAction"_s,
                       u"Btn_BlogControl"_s});
}

TEST_F(TabRing, OfTheMakers) {
    expectRingOf<editor::frmHTMLMakeFont>({u"cmbSize"_s, u"optAbsolute"_s, u"cmbColor"_s, u"Btn_Color_Exchange"_s,
                                           u"Btn_GetColorDialog"_s, u"cmbFace"_s, u"Btn_OK"_s, u"Btn_Cancel"_s});
    expectRingOf<editor::frmHTMLMakeHR>({u"txtSize"_s, u"txtWidth"_s, u"cmbWidthUnit"_s, u"cmbColor"_s,
                                         u"Btn_Color_Exchange"_s, u"Btn_GetColorDialog"_s, u"chkNoshade"_s, u"Btn_OK"_s,
                                         u"Btn_Cancel"_s});
    expectRingOf<editor::frmHTMLMakeList>(
        {u"txtListContents"_s, u"chkDeleteLastLi"_s, u"Btn_OK"_s, u"Btn_Cancel"_s, u"optTypeUL"_s, u"cmbUL"_s});
    expectRingOf<editor::frmHTMLMakeImage>(
        {u"txt_FilePath"_s,  u"Btn_Open"_s,      u"txt_TagSRC"_s,    u"chk_TagWidth"_s,  u"txt_TagWidth"_s,
         u"cmb_TagWidth"_s,  u"chk_TagHeight"_s, u"txt_TagHeight"_s, u"cmb_TagHeight"_s, u"chk_TagAlign"_s,
         u"cmb_TagAlign"_s,  u"chk_TagBorder"_s, u"UpDown_Border"_s, u"chk_TagHspace"_s, u"UpDown_hspace"_s,
         u"chk_TagVspace"_s, u"UpDown_vspace"_s, u"chk_TagAlt"_s,    u"txt_TagAlt"_s,    u"chk_TagOther"_s,
         u"txt_TagOther"_s,  u"chk_AddDiv"_s,    u"txt_AddDiv"_s,    u"chk_Resist"_s,    u"chk_FileRename"_s,
         u"txt_InsertTag"_s, u"Btn_OK"_s,        u"Btn_Cancel"_s});
}

TEST_F(TabRing, OfTheRegisters) {
    expectRingOf<registers::frmResistFiles>({u"txtOpenFile"_s, u"BtnOpenFolder"_s, u"cmbResisterdDay"_s, u"BtnResist"_s,
                                             u"ResisterdList"_s, u"BtnDelete"_s, u"BtnClose"_s});
    expectRingOf<registers::frmResistLogs>({u"txtOpenFile"_s, u"BtnOpenFolder"_s, u"txtYear"_s, u"cmbMonth"_s,
                                            u"BtnResist"_s, u"ResisterdList"_s, u"BtnDelete"_s, u"BtnClose"_s});
}

TEST_F(TabRing, ComesIntoAGroupOfOptionsAtTheChosenOne) {
    expectChosenOptions<exchange::frmExport>();
    expectChosenOptions<convert::frmHTML2TXTSetting>();
    expectChosenOptions<editor::frmHTMLMakeFont>();
    expectChosenOptions<editor::frmHTMLMakeList>();
    expectChosenOptions<shell::frmOptions>();
}

TEST_F(TabRing, OfTheCustomizeDialog) {
    const QStringList sets{u"cmbSelectCustomize"_s, u"Btn_New"_s, u"Btn_Delete"_s};
    const QStringList buttons{u"Btn_OK"_s, u"Btn_Cancel"_s};
    const struct {
        int category;
        QStringList panel;
    } cases[] = {
        {0,
         {u"txtHPTitle"_s, u"txtStyleSheetURL"_s, u"optTitleAlignLeft"_s, u"optDayTitleAlignLeft"_s, u"chkWeather"_s,
          u"chkGenre"_s, u"chkVellLinkOn"_s, u"txtVellLinkText"_s, u"chkDayListUse"_s, u"optDayListTypeTable"_s,
          u"chkAddTitle"_s, u"txtMarginLeft"_s, u"chkUseLog"_s, u"optLogTypeNormal"_s, u"optLogAlignLeft"_s}},
        {1, {u"cmbHeadTag"_s, u"Btn_Head_New"_s}},
        {3,
         {u"cmbColor_Text"_s, u"Btn_ColorEx_Text"_s, u"Btn_GetColor_Text"_s, u"cmbColor_Back"_s, u"Btn_ColorEx_Back"_s,
          u"Btn_GetColor_Back"_s, u"cmbColor_Link"_s, u"Btn_ColorEx_Link"_s, u"Btn_GetColor_Link"_s,
          u"cmbColor_ALink"_s, u"Btn_ColorEx_ALink"_s, u"Btn_GetColor_ALink"_s, u"cmbColor_VLink"_s,
          u"Btn_ColorEx_VLink"_s, u"Btn_GetColor_VLink"_s, u"txtBGImage"_s, u"Btn_OpenFolder_BGImage"_s}},
        {4, {u"OptUpDownUp"_s, u"cmbUpDownText"_s, u"Btn_New_UpDwn"_s, u"Btn_Delete_UpDwn"_s, u"txtUpDownText"_s}},
        {10, {u"chkPageMoveOn"_s, u"optPageMoveAlignCenter"_s, u"optLanguageJapanese"_s, u"txtSeparetor"_s}},
    };
    writePiece(u"one"_s, "1");
    setSetting(site::keys::body::kUpText, u"one"_s);
    auto& window = shownWindow<site::frmCustomize>(context);
    auto& categories = control<QComboBox>(window, u"cmbCategory"_s);
    for (const auto& c : cases) {
        categories.setCurrentIndex(c.category);
        Q_EMIT categories.activated(c.category);
        categories.setFocus();
        settle();
        expectRing(window, QStringList{u"cmbCategory"_s} + sets + c.panel + buttons);
    }
    window.reject();
    settle();
}

TEST_F(TabRing, OfTheOthers) {
    expectRingOf<site::frmFind>({u"txtFindWord"_s, u"chkTerm"_s, u"chkGenre"_s, u"Btn_OK"_s, u"Btn_Cancel"_s});
    expectRingOf<exchange::frmExport>({u"optPeriod_User"_s, u"DTPickerStart"_s, u"DTPickerEnd"_s, u"txtYear"_s,
                                       u"txtMonth"_s, u"DTPickerDay"_s, u"optFormat_Text"_s, u"cmbExportFormat_User"_s,
                                       u"optContents_TEXT"_s, u"optFile_One"_s, u"optSortDir_ASC"_s, u"Btn_OK"_s,
                                       u"Btn_Cancel"_s});
    expectRingOf<convert::frmHTML2TXTSetting>({kTabs, u"optMODE_TEXT"_s, u"Btn_OK"_s, u"Btn_Cancel"_s});
    expectRingOf<site::frmSaveLog>(
        {u"txtYear"_s, u"txtMonth"_s, u"chkAutoResist"_s, u"chkAutoUpdate"_s, u"btn_Save"_s, u"BtnCancel"_s});
    expectRingOf<shell::frmOptions>({kTabs, u"txtSaveFolder"_s, u"BtnOpenFolder"_s, u"optMnuLanguageJap"_s,
                                     u"chkOpenWindowMaximize"_s, u"chkShowStartUpForm"_s, u"optOpenWindowPos_Std"_s,
                                     u"Btn_OK"_s, u"Btn_Cancel"_s});
    expectRingOf<exchange::frmExportCust>(
        {u"cmbCustomize"_s, u"optCst"_s, u"txtName"_s, u"txtURL"_s, u"txtEmail"_s, u"Btn_Exec"_s, u"Btn_Cancel"_s});
    expectRingOf<site::frmCustomizeSelection>({u"cmbSelectCustomize"_s, u"Btn_OK"_s, u"Btn_Cancel"_s});
    expectRingOf<exchange::frmDeleteImportDiary>({u"CmbDiaryGroup"_s, u"Btn_OK"_s, u"Btn_Cancel"_s});
    expectRingOf<exchange::frmOtherFormats>({u"LstFormats"_s, u"Btn_OK"_s, u"Btn_Cancel"_s});
}

TEST_F(TabRing, OfTheSiteSettings) {
    setSetting(core::keys::divide::kDiaryDivide, u"1"_s);
    setSetting(core::keys::divide::kDiaryTerm, u"1"_s);
    setSetting(core::keys::frame::kFrameOn, u"1"_s);
    auto& window = shownWindow<site::frmSetting>(context);
    const QStringList ofTabs[] = {
        {u"chkDiaryDivide"_s, u"cmbDiaryTerm"_s, u"chkDiaryOnTop"_s, u"chkUseFileName2Day"_s, u"chkLogDivide"_s,
         u"optTopLink_PageTop"_s},
        {u"chkUseFrame"_s, u"txtCalenderFrameSize"_s, u"txtFRAMEBORDER"_s, u"chkScrolling"_s, u"chkResize"_s},
        {u"chkUseRSS"_s, u"txtRSS_Title"_s, u"txtRSS_HPURL"_s, u"txtRSS_DiaryURL"_s, u"txtRSS_Description"_s,
         u"txtRSS_ManagingAuthor"_s, u"txtRSS_WebMaster"_s, u"txtATOM_Author"_s},
        {u"chkUseHaloScan"_s, u"txtHaloScanUserName"_s, u"lblURL"_s},
        {u"chkBlog_Status"_s, u"chkBlog_AcceptComment"_s, u"chkBlog_AcceptTrackBack"_s, u"chkBlog_PandBRTag"_s,
         u"Btn_BlogManager"_s}};
    auto& tabs = control<QTabWidget>(window, u"TabStrip1"_s);
    for (int i = 0; i < tabs.count(); ++i) {
        tabs.setCurrentIndex(i);
        control(window, kTabs).setFocus();
        settle();
        expectRing(window, QStringList(kTabs) + ofTabs[i] + QStringList{u"Btn_OK"_s, u"Btn_Cancel"_s});
    }
    window.reject();
    settle();
}

TEST_F(TabRing, OfThePagesOfTheOptions) {
    const QStringList pages[] = {
        {kTabs, u"txtMakeDiaryFontSize"_s, u"txtPtagAdd"_s, u"chkClipWithHTML"_s, u"chkFavoriteSort"_s,
         u"chkFindHist"_s, u"chkURLHist"_s, u"chkRealtimeCust"_s, u"Btn_OK"_s, u"Btn_Cancel"_s},
        {kTabs, u"txtFTP_URL"_s, u"txtFTP_ID"_s, u"txtFTP_Pass"_s, u"Btn_HidePass"_s, u"txtFTP_Folder"_s,
         u"chkFTP_PASV"_s, u"optTLS_Off"_s, u"Btn_TestFTP"_s, u"Btn_OK"_s, u"Btn_Cancel"_s},
        {kTabs, u"chkHTMLOnlyUp"_s, u"chkFTP_PING"_s, u"txtFTPCompleteSound"_s, u"Btn_OpenFolder_FTP"_s, u"Btn_OK"_s,
         u"Btn_Cancel"_s},
    };
    auto& window = shownWindow<shell::frmOptions>(context);
    auto& tabs = control<QTabWidget>(window, u"TabStrip1"_s);
    for (const QStringList& page : pages) {
        tabs.setCurrentIndex(tabs.currentIndex() + 1);
        tabs.tabBar()->setFocus();
        settle();
        expectRing(window, page);
    }
    window.reject();
    settle();
}

TEST_F(TabRing, OfTheLogin) {
    shell::frmLogin login(u""_s);
    login.show();
    login.activateWindow();
    EXPECT_TRUE(becomesActive(login));
    expectRing(login, {u"txtUID"_s, u"txtPassword"_s, u"Btn_Login"_s, u"Btn_Cancel"_s});
}

TEST_F(TabRing, OfThePasswordWindow) {
    const QStringList ring{u"txtPassword"_s, u"txtNewPassword"_s, u"Btn_OK"_s, u"Btn_Cancel"_s};
    for (const auto lines : {platform::PasswordLines::WithConfirmation, platform::PasswordLines::One}) {
        shell::frmPassword window(u"x"_s, lines, nullptr);
        window.show();
        window.activateWindow();
        EXPECT_TRUE(becomesActive(window));
        QStringList stops = ring;
        if (lines == platform::PasswordLines::One)
            stops.removeOne(u"txtNewPassword"_s);
        expectRing(window, stops);
    }
}

TEST_F(TabRing, OfTheLoginOfAServer) {
    browser::frmAuthentication window(QUrl(u"http://example/"_s), u"realm"_s, nullptr);
    window.propose({});
    window.show();
    window.activateWindow();
    EXPECT_TRUE(becomesActive(window));
    expectRing(window, {u"txtUser"_s, u"txtPassword"_s, u"Btn_OK"_s, u"Btn_Cancel"_s});
}

TEST_F(TabRing, OfTheBackups) {
    expectRingOf<shell::frmBackups>({u"BackupList"_s, u"Btn_Make"_s, u"Btn_Restore"_s, u"BtnClose"_s});
}

TEST_F(TabRing, OfTheBlogManager) {
    writeFile(session.DataPath + u"BlogTemplate/mixi.ini"_s, "[Simple]\r\nPostURL=Required\r\nNextURL=Required\r\n");
    expectRingOf<blog::frmBlogManager>({u"cmbBlog"_s, u"txtLoginID"_s, u"txtPassword"_s, u"txtPostURL"_s,
                                        u"txtNextURL"_s, u"txtAccessURL"_s, u"Btn_Close"_s});
}

TEST_F(TabRing, OfTheUserManager) {
    writeFile(path(u"velluser.ini"_s), "[taro]\r\nID=taro\r\n");
    session.UserID = u"taro"_s;
    expectRingOf<shell::frmUserManager>({u"txtUID"_s, u"Btn_MakeUser"_s, u"Btn_ChangePassword"_s, u"Btn_DeleteUser"_s,
                                         u"Btn_ChangeUserPath"_s, u"Btn_SingleToComplex"_s, u"Btn_OK"_s});
}

/// Every press leads to another stop, and a link where the keys are is marked: Enter follows it.
TEST_F(TabRing, OfTheAboutBox) {
    shell::frmAbout about(context);
    about.show();
    about.activateWindow();
    ASSERT_TRUE(becomesActive(about));
    const auto stop = [] {
        const auto* link = qobject_cast<QLabel*>(QApplication::focusWidget());
        return link ? link->selectedText() : QApplication::focusWidget()->objectName();
    };
    const QStringList ring{u"Qorvin's HomePage"_s, u"Zelkova Soft開発日誌"_s, u"Btn_OK"_s, u"Qorvin's HomePage"_s};
    QStringList forwards{stop()};
    for (int i = 1; i < ring.size(); ++i) {
        QTest::keyClick(about.windowHandle(), Qt::Key_Tab);
        forwards += stop();
    }
    EXPECT_EQ(forwards.join(u' '), ring.join(u' '));
    QStringList backwards{stop()};
    for (int i = 1; i < ring.size(); ++i) {
        QTest::keyClick(about.windowHandle(), Qt::Key_Backtab, Qt::ShiftModifier);
        backwards.prepend(stop());
    }
    EXPECT_EQ(backwards.join(u' '), ring.join(u' '));

    QString followed;
    QObject::connect(&control<QLabel>(about, u"Zelkova"_s), &QLabel::linkActivated, &about,
                     [&](const QString& link) { followed = link; });
    QTest::keyClick(about.windowHandle(), Qt::Key_Tab);
    QTest::keyClick(about.windowHandle(), Qt::Key_Return);
    EXPECT_EQ(followed, u"blog"_s);
}

} // namespace
} // namespace velloria::tests
