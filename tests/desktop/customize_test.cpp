#include "site/forms/frmCustomize.h"

#include "customize_home.h"

#include <QAccessible>
#include <QColorDialog>
#include <QFile>
#include <QLabel>
#include <QStackedWidget>

using namespace Qt::StringLiterals;

namespace velloria::tests {
namespace {

namespace keys = core::keys;

class Customize : public CustomizeHome {
protected:
    QStringList asked() const { return desk.texts(u"message"_s); }
    static inline const QString kQuestion = u"変更されていますが、保存しますか？"_s;
};

TEST_F(Customize, HasFourteenCategoriesInTheirOrder) {
    open();
    const auto& categories = box(u"cmbCategory"_s);
    QStringList texts;
    for (int i = 0; i < categories.count(); ++i)
        texts += categories.itemText(i);
    EXPECT_EQ(texts, (QStringList{u"全般"_s, u"Head"_s, u"Head(分割用)"_s, u"Body"_s, u"上下追加テキスト"_s,
                                  u"上下追加テキスト(分割用)"_s, u"上下追加テキスト(Log)"_s,
                                  u"上下追加テキスト(分割用Log)"_s, u"Calender"_s, u"本文"_s, u"ページ間移動リンク"_s,
                                  u"左側フレーム"_s, u"左側フレーム(Head)"_s, u"左側フレーム(上下追加テキスト)"_s}));
    const QStringList panels{u"optGeneral"_s,  u"OptHead"_s,     u"OptHead"_s,         u"optBody"_s,
                             u"optHeadFoot"_s, u"optHeadFoot"_s, u"optHeadFoot"_s,     u"optHeadFoot"_s,
                             u"optCalender"_s, u"optContents"_s, u"optPageMoveLink"_s, u"optCalenderFrame"_s,
                             u"OptHead"_s,     u"optHeadFoot"_s};
    EXPECT_EQ(categories.currentIndex(), 0);
    for (int i = 0; i < texts.size(); ++i) {
        category(texts[i]);
        EXPECT_TRUE(field<QWidget>(panels[i]).isVisible()) << texts[i].toStdString();
    }
}

TEST_F(Customize, ListsTheSetsWithoutThatOfTheFeeds) {
    writeFile(setFile(u"RSS"_s), "");
    writeFile(setFile(u"青"_s), "");
    open();
    const auto& sets = box(u"cmbSelectCustomize"_s);
    QStringList names;
    for (int i = 0; i < sets.count(); ++i)
        names += sets.itemText(i);
    EXPECT_EQ(names, site::customizeSets(session));
    EXPECT_FALSE(names.contains(u"RSS"_s));
    EXPECT_EQ(sets.currentText(), u"Customize"_s);
}

TEST_F(Customize, BlocksTheMainWindowAndFreesItOnEveryWayOut) {
    const auto isFree = [this] { return !QApplication::activeModalWidget() && top().isEnabled(); };
    for (const QString& way : {u"Btn_OK"_s, u"Btn_Cancel"_s, u"Esc"_s, u"close"_s}) {
        open();
        EXPECT_EQ(QApplication::activeModalWidget(), window());
        if (way == u"Esc")
            QTest::keyClick(window(), Qt::Key_Escape);
        else if (way == u"close")
            window()->close();
        else
            press(way);
        settle();
        EXPECT_FALSE(isOpen()) << way.toStdString();
        EXPECT_TRUE(isFree()) << way.toStdString();
    }
}

TEST_F(Customize, EnterIsOkAndEscIsCancelWithItsQuestion) {
    open();
    line(u"txtHPTitle"_s).setFocus();
    line(u"txtHPTitle"_s).setText(u"新"_s);
    QTest::keyClick(&line(u"txtHPTitle"_s), Qt::Key_Return);
    settle();
    EXPECT_FALSE(isOpen());
    EXPECT_EQ(stored(keys::general::kHPTitle), u"新"_s);
    for (const bool isEsc : {true, false}) {
        open();
        desk.events = {};
        line(u"txtHPTitle"_s).setText(u"other"_s);
        desk.answers = {u"no"_s};
        if (isEsc)
            QTest::keyClick(window(), Qt::Key_Escape);
        else
            window()->close();
        settle();
        EXPECT_EQ(asked(), QStringList{kQuestion});
        EXPECT_FALSE(isOpen());
        EXPECT_EQ(stored(keys::general::kHPTitle), u"新"_s);
    }
}

TEST_F(Customize, MarksABoxThatIsChangedUntilItIsWritten) {
    open();
    QLineEdit& title = line(u"txtHPTitle"_s);
    EXPECT_EQ(tag(title), u""_s);
    EXPECT_FALSE(canApply());
    writeInto(title, u"新"_s);
    EXPECT_EQ(tag(title), u"Yes"_s);
    EXPECT_TRUE(canApply());
    press(u"Btn_Apply"_s);
    EXPECT_EQ(tag(title), u""_s);
    EXPECT_FALSE(canApply());
}

TEST_F(Customize, OkAppliesSelectsTheSetAndShowsThePreview) {
    writeFile(setFile(u"青"_s), "[General]\r\n");
    session.EnterDay = u"2004/05/02"_s;
    open();
    pick(u"cmbSelectCustomize"_s, u"青"_s);
    EXPECT_EQ(core::Settings(session).text(keys::kCustomizeIni), setFile(u"Customize"_s));
    line(u"txtHPTitle"_s).setText(u"新"_s);
    desk.events = {};
    press(u"Btn_OK"_s);
    EXPECT_FALSE(isOpen());
    EXPECT_EQ(session.CustIniFile, setFile(u"青"_s));
    EXPECT_EQ(core::Settings(session).text(keys::kCustomizeIni), session.CustIniFile);
    EXPECT_EQ(stored(keys::general::kHPTitle), u"新"_s);
    EXPECT_TRUE(pageOf(session.DataPath + u"tmp.htm"_s).contains(u"<TITLE>新"_s));
    EXPECT_EQ(told(), (QStringList{u"status: Webページ表示中..."_s,
                                   u"navigate: "_s + session.DataPath + u"tmp.htm#2004/05/02"_s}));
}

TEST_F(Customize, CancelsYesIsAnOk) {
    open();
    line(u"txtHPTitle"_s).setText(u"新"_s);
    desk.answers = {u"yes"_s};
    desk.events = {};
    press(u"Btn_Cancel"_s);
    EXPECT_FALSE(isOpen());
    EXPECT_EQ(stored(keys::general::kHPTitle), u"新"_s);
    EXPECT_EQ(desk.texts(u"navigate"_s).size(), 1);
    EXPECT_EQ(asked(), QStringList{kQuestion});
}

TEST_F(Customize, WithoutLiveChangesAnApplyStaysAndThereIsNoBackup) {
    open();
    EXPECT_FALSE(hasBackup());
    line(u"txtHPTitle"_s).setText(u"新"_s);
    press(u"Btn_Apply"_s);
    EXPECT_FALSE(hasBackup());
    const QByteArray applied = set();
    line(u"txtHPTitle"_s).setText(u"other"_s);
    desk.answers = {u"no"_s};
    press(u"Btn_Cancel"_s);
    EXPECT_EQ(set(), applied);
    EXPECT_EQ(stored(keys::general::kHPTitle), u"新"_s);
}

/// A page of a live session of another time would be out of date.
TEST_F(Customize, WithoutLiveChangesAnOldPageBecomesThePreview) {
    open();
    EXPECT_FALSE(exists(session.DataPath + u"Customize.htm"_s));
    press(u"Btn_Cancel"_s);
    writeFile(session.DataPath + u"Customize.htm"_s, "old");
    open();
    EXPECT_EQ(bytesOf(session.DataPath + u"Customize.htm"_s), "old") << "nothing to put in its place";
    press(u"Btn_Cancel"_s);
    writeFile(session.DataPath + u"tmp.htm"_s, "preview");
    open();
    EXPECT_EQ(bytesOf(session.DataPath + u"Customize.htm"_s), "preview");
    EXPECT_TRUE(boxes().isEmpty());
}

TEST_F(Customize, CancelLeavesTheSetThatWasSelected) {
    writeFile(setFile(u"青"_s), "[General]\r\n");
    const QString selected = session.CustIniFile;
    open();
    pick(u"cmbSelectCustomize"_s, u"青"_s);
    EXPECT_EQ(session.CustIniFile, setFile(u"青"_s));
    press(u"Btn_Cancel"_s);
    EXPECT_EQ(session.CustIniFile, selected);
    EXPECT_EQ(bytesOf(setFile(u"青"_s)), "[General]\r\n");
}

TEST_F(Customize, NamesEachControlOfEachPanel) {
    open();
    QStringList nameless;
    int seen = 0;
    for (const QWidget* control : window()->findChildren<QWidget*>()) {
        if (!(control->focusPolicy() & Qt::TabFocus) || control->isWindow() ||
            !field<QStackedWidget>(u"panels"_s).isAncestorOf(control))
            continue;
        ++seen;
        QAccessibleInterface* face = QAccessible::queryAccessibleInterface(const_cast<QWidget*>(control));
        if (!face || face->text(QAccessible::Name).isEmpty())
            nameless += control->objectName();
    }
    EXPECT_EQ(nameless, QStringList());
    EXPECT_GT(seen, 100);
}

TEST_F(Customize, CutsNothingOnAnyPanel) {
    open();
    const auto& categories = box(u"cmbCategory"_s);
    for (int i = 0; i < categories.count(); ++i) {
        category(categories.itemText(i));
        for (const QWidget* control : window()->findChildren<QWidget*>()) {
            const auto* label = qobject_cast<const QLabel*>(control);
            const auto* choice = qobject_cast<const QAbstractButton*>(control);
            if (!control->isVisible() || !(label || choice || qobject_cast<const QComboBox*>(control)))
                continue;
            EXPECT_EQ(control->visibleRegion().boundingRect(), control->rect()) << control->objectName().toStdString();
            if (label || qobject_cast<const QRadioButton*>(control) || qobject_cast<const QCheckBox*>(control)) {
                EXPECT_GE(control->width(), control->minimumSizeHint().width()) << control->objectName().toStdString();
            }
        }
    }
}

// ---- colours and pictures

TEST_F(Customize, ExchangesNameAndNumberOfAColour) {
    open();
    category(u"Body"_s);
    const struct {
        QString text;
        QString after;
        bool isChange;
    } cases[] = {{u"#ff0000"_s, u"Red"_s, true},      {u"RED"_s, u"#FF0000"_s, true},
                 {u"#zz"_s, u"#zz"_s, false},         {u"nocolour"_s, u"nocolour"_s, false},
                 {u"#123457"_s, u"#123457"_s, false}, {u""_s, u""_s, false}};
    for (const auto& c : cases) {
        box(u"cmbColor_Text"_s).setEditText(c.text);
        press(u"Btn_Apply"_s);
        press(u"Btn_ColorEx_Text"_s);
        EXPECT_EQ(box(u"cmbColor_Text"_s).currentText().toLower(), c.after.toLower()) << c.text.toStdString();
        EXPECT_EQ(canApply(), c.isChange) << c.text.toStdString();
        EXPECT_EQ(tag(box(u"cmbColor_Text"_s)), u""_s);
    }
    EXPECT_TRUE(boxes().isEmpty());
}

TEST_F(Customize, TakesTheColourOfTheDialog) {
    open();
    category(u"Body"_s);
    QColor start;
    const auto choose = [&](const QString& text, bool isOk) {
        box(u"cmbColor_Text"_s).setEditText(text);
        press(u"Btn_Apply"_s);
        whenShown<QColorDialog>([&](QColorDialog& dialog) {
            start = dialog.currentColor();
            dialog.setCurrentColor(QColor(1, 2, 171));
            isOk ? dialog.accept() : dialog.reject();
        });
        press(u"Btn_GetColor_Text"_s);
        return box(u"cmbColor_Text"_s).currentText();
    };
    EXPECT_EQ(choose(u"#102030"_s, true), u"#0102AB"_s);
    EXPECT_EQ(start, QColor(16, 32, 48));
    EXPECT_TRUE(canApply());
    EXPECT_EQ(choose(u"red"_s, true), u"#0102AB"_s);
    EXPECT_EQ(start, QColor(0, 0, 0)) << "a name is no start";
    EXPECT_EQ(choose(u"#zzzzzz"_s, true), u"#0102AB"_s);
    EXPECT_EQ(start, QColor(0, 0, 0)) << "nor is a number that is none";
    EXPECT_EQ(choose(u"#102030"_s, false), u"#102030"_s);
    EXPECT_FALSE(canApply());
    EXPECT_TRUE(boxes().isEmpty());
}

TEST_F(Customize, HasBothButtonsForEachColour) {
    open();
    for (const QString& family :
         {u"Text"_s,       u"Back"_s,       u"Link"_s,      u"ALink"_s,          u"VLink"_s,         u"CalTableBG"_s,
          u"CalTRBGTop"_s, u"CalTRBG"_s,    u"CalBorder"_s, u"CalBorderLight"_s, u"CalBorderDark"_s, u"TableBG"_s,
          u"TBorder"_s,    u"TitleFT"_s,    u"TitleBG"_s,   u"DayFT"_s,          u"DayBG"_s,         u"ContentsFT"_s,
          u"ContentsBG"_s, u"LFrameText"_s, u"LFrameBG"_s}) {
        box(u"cmbColor_"_s + family).setEditText(u"#ff0000"_s);
        button(u"Btn_ColorEx_"_s + family).setEnabled(true);
        press(u"Btn_ColorEx_"_s + family);
        EXPECT_EQ(box(u"cmbColor_"_s + family).currentText().toLower(), u"red"_s) << family.toStdString();
        button(u"Btn_GetColor_"_s + family);
    }
}

TEST_F(Customize, TakesABackgroundPictureAndRegistersIt) {
    const QString file = path(u"sky.gif"_s);
    writeFile(file, "GIF");
    open();
    for (const QString& kind : {u""_s, u"LFrame"_s}) {
        category(kind.isEmpty() ? u"Body"_s : u"左側フレーム"_s);
        QLineEdit& text = line(u"txt"_s + kind + u"BGImage"_s);
        const QString open = u"Btn_"_s + kind + u"OpenFolder_BGImage"_s;
        desk.answers = {QJsonValue::Null};
        press(open);
        EXPECT_EQ(text.text(), u""_s);
        desk.answers = {path(u"none.gif"_s)};
        press(open);
        EXPECT_EQ(text.text(), u""_s);
        EXPECT_EQ(asked().last(), u"不正なパスです。"_s);
        EXPECT_FALSE(canApply());
        desk.answers = {file, u"no"_s};
        press(open);
        EXPECT_EQ(text.text(), u"./DiaryParts/sky.gif"_s);
        EXPECT_EQ(asked().last(), u"ファイルを登録しますか？"_s);
        EXPECT_TRUE(canApply());
        press(u"Btn_Apply"_s);
    }
    EXPECT_EQ(sqlValue(u"SELECT COUNT(*) FROM FileDB"_s), u"0"_s);
    desk.answers = {file, u"yes"_s};
    press(u"Btn_LFrameOpenFolder_BGImage"_s);
    EXPECT_EQ(sqlValue(u"SELECT Day || Number FROM FileDB"_s), u"ALL0"_s);
    EXPECT_TRUE(exists(session.DataPath + u"DiaryParts/sky.gif"_s));
}

// ---- a machine that refuses, and other programs

TEST_F(Customize, AnApplyThatFailsLosesNothing) {
    open();
    const QByteArray before = set();
    line(u"txtHPTitle"_s).setText(u"新"_s);
    ASSERT_TRUE(QFile::setPermissions(session.CustIniFile, QFile::ReadOwner));
    for (const QString& way : {u"Btn_Apply"_s, u"Btn_OK"_s}) {
        desk.events = {};
        press(way);
        EXPECT_EQ(desk.texts(u"failure"_s).size(), 1);
        ASSERT_TRUE(isOpen());
        EXPECT_TRUE(canApply());
        EXPECT_EQ(set(), before);
        EXPECT_EQ(line(u"txtHPTitle"_s).text(), u"新"_s);
    }
    ASSERT_TRUE(QFile::setPermissions(session.CustIniFile, QFile::ReadOwner | QFile::WriteOwner));
    press(u"Btn_OK"_s);
    EXPECT_FALSE(isOpen());
    EXPECT_EQ(stored(keys::general::kHPTitle), u"新"_s);
}

TEST_F(Customize, OkStandsWhenThePreviewCantBeMade) {
    open();
    line(u"txtHPTitle"_s).setText(u"新"_s);
    ASSERT_TRUE(QDir(session.DataPath).mkpath(u"tmp.htm"_s));
    press(u"Btn_OK"_s);
    EXPECT_EQ(desk.texts(u"failure"_s).size(), 1);
    EXPECT_FALSE(isOpen());
    EXPECT_EQ(stored(keys::general::kHPTitle), u"新"_s);
}

TEST_F(Customize, DoesNotOpenWithASetThatCantBeRead) {
    ASSERT_TRUE(QFile::remove(session.CustIniFile));
    ASSERT_TRUE(QDir().mkpath(session.CustIniFile));
    top().command(u"MnuCustomize"_s)->trigger();
    settle();
    EXPECT_FALSE(isOpen());
    EXPECT_EQ(desk.texts(u"failure"_s).size(), 1);
    EXPECT_FALSE(QApplication::activeModalWidget());
}

TEST_F(Customize, ASetThatVanishedIsMadeAnewOrLeft) {
    open();
    const QByteArray before = set();
    line(u"txtHPTitle"_s).setText(u"新"_s);
    ASSERT_TRUE(QFile::remove(session.CustIniFile));
    desk.answers = {u"no"_s};
    press(u"Btn_Apply"_s);
    EXPECT_TRUE(canApply());
    EXPECT_FALSE(exists(session.CustIniFile));
    desk.answers = {u"yes"_s};
    press(u"Btn_Apply"_s);
    EXPECT_FALSE(canApply());
    EXPECT_EQ(stored(keys::general::kHPTitle), u"新"_s);
    EXPECT_EQ(set().size() > before.size() / 2, true);
}

TEST_F(Customize, AsksBeforeItOverwritesWhatAnotherProgramHasWritten) {
    open();
    line(u"txtHPTitle"_s).setText(u"新"_s);
    setSetting(keys::body::kTextColor, u"#010203"_s);
    desk.answers = {u"no"_s};
    press(u"Btn_OK"_s);
    ASSERT_TRUE(isOpen());
    EXPECT_EQ(stored(keys::body::kTextColor), u"#010203"_s);
    EXPECT_NE(stored(keys::general::kHPTitle), u"新"_s);
    desk.answers = {u"yes"_s};
    press(u"Btn_OK"_s);
    EXPECT_FALSE(isOpen());
    EXPECT_NE(stored(keys::body::kTextColor), u"#010203"_s);
    EXPECT_EQ(stored(keys::general::kHPTitle), u"新"_s);
}

TEST_F(Customize, AFolderOfSetsThatIsAFileIsTold) {
    ASSERT_TRUE(QDir(session.DataPath + u"Customize"_s).removeRecursively());
    writeFile(session.DataPath + u"Customize"_s, "");
    open();
    line(u"txtHPTitle"_s).setText(u"新"_s);
    desk.events = {};
    press(u"Btn_Apply"_s);
    EXPECT_EQ(desk.texts(u"failure"_s).size(), 1);
    EXPECT_TRUE(isOpen());
    EXPECT_TRUE(canApply());
}

TEST_F(Customize, ComesUpWhereItWasLeft) {
    open();
    window()->move(37, 53);
    settle();
    press(u"Btn_Cancel"_s);
    EXPECT_EQ(core::Settings(session).text(keys::kCustomizePlace.left), QString::number(37 * 15));
    EXPECT_EQ(core::Settings(session).text(keys::kCustomizePlace.top), QString::number(53 * 15));
    open();
    EXPECT_EQ(window()->pos(), QPoint(37, 53));
}

} // namespace
} // namespace velloria::tests
