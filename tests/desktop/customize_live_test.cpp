// The customize dialog with live changes: each is written and shown at once, and can be taken back.
#include "browser/forms/frmHTMLBrowser.h"
#include "customize_home.h"
#include "support/disk_watch.h"

#include <QElapsedTimer>
#include <QFile>
#include <QScreen>
#include <QWebEngineView>

using namespace Qt::StringLiterals;

namespace velloria::tests {
namespace {

namespace keys = core::keys;

class LiveCustomize : public CustomizeHome {
protected:
    void SetUp() override {
        CustomizeHome::SetUp();
        setRealTime(true);
    }
    ~LiveCustomize() override {
        context.windows.closeAll();
        QTest::qWait(50); // the engine writes its files after the last page, and the folder is removed next
    }

    browser::frmHTMLBrowser* preview() { return context.windows.find<browser::frmHTMLBrowser>(); }
    QVariant inPreview(const QString& script) {
        QVariant result;
        bool isDone = false;
        auto* view = preview() ? preview()->findChild<QWebEngineView*>() : nullptr;
        if (!view)
            return result;
        view->page()->runJavaScript(script, [&](const QVariant& value) {
            result = value;
            isDone = true;
        });
        EXPECT_TRUE(waitFor([&] { return isDone; }));
        return result;
    }
    bool becomesTrue(const QString& script) {
        return waitFor([&] { return inPreview(script).toBool(); });
    }
    void openBody() {
        open();
        category(u"Body"_s);
    }
    void writeColour(const QString& colour) { writeInto(box(u"cmbColor_Text"_s), colour); }
    QStringList asked() const { return desk.texts(u"message"_s); }
};

TEST_F(LiveCustomize, OpensWithABackupThePageAndItsWindow) {
    writeFile(session.DataPath + u"tmp.htm"_s, "preview");
    store::Entry hidden = entryOf(u"2004/05/03"_s, u"秘密"_s);
    hidden.isPrivate = true;
    write(hidden);
    const QByteArray before = set();
    open();
    EXPECT_EQ(bytesOf(session.MyPath + u"Customize.bak"_s), before);
    EXPECT_TRUE(page().contains(u"六日"_s));
    EXPECT_FALSE(page().contains(u"秘密"_s));
    ASSERT_TRUE(preview());
    EXPECT_TRUE(preview()->isVisible());
    EXPECT_TRUE(becomesTrue(u"document.body.innerText.includes('六日')"_s));
    EXPECT_EQ(set(), before) << "nothing was changed";
    EXPECT_FALSE(canApply());
    press(u"Btn_Cancel"_s);
    EXPECT_FALSE(preview());
    EXPECT_FALSE(hasBackup());
    EXPECT_EQ(set(), before);
}

/// Nothing of the dialog is hidden, and the page has all the room that is left.
TEST_F(LiveCustomize, TheDialogMakesRoomForTheFirstPreview) {
    open();
    ASSERT_TRUE(waitFor([this] { return preview() && preview()->isVisible(); }));
    settle();
    const QRect dialog = window()->frameGeometry();
    const QRect page = preview()->frameGeometry();
    const int room = window()->screen()->availableGeometry().width() - dialog.width();
    EXPECT_FALSE(page.intersects(dialog));
    EXPECT_GE(page.width(), std::min(room - 1, 600));
    EXPECT_TRUE(window()->screen()->availableGeometry().contains(dialog));
}

/// Windows of the dialog are not blocked by it.
TEST_F(LiveCustomize, ThePreviewCanBeScrolledWhileTheMainWindowIsBlocked) {
    open();
    ASSERT_TRUE(waitFor([this] { return preview() && preview()->isVisible(); }));
    EXPECT_EQ(preview()->parentWidget(), window());
    EXPECT_EQ(QApplication::activeModalWidget(), window());
    preview()->activateWindow();
    EXPECT_TRUE(becomesActive(*preview()));
    // Keys come to a window that is not blocked.
    QTest::keyClick(preview()->windowHandle(), Qt::Key_Escape);
    settle();
    EXPECT_FALSE(preview());
    EXPECT_TRUE(isOpen());
}

TEST_F(LiveCustomize, ABoxIsShownWhenItIsLeft) {
    openBody();
    auto& text = box(u"cmbColor_Text"_s);
    text.setFocus();
    settle();
    const QByteArray before = set();
    text.setEditText(u"#010203"_s);
    settle();
    EXPECT_EQ(set(), before);
    EXPECT_EQ(tag(text), u"Yes"_s);
    EXPECT_TRUE(canApply());
    leave();
    EXPECT_EQ(stored(keys::body::kTextColor), u"#010203"_s);
    EXPECT_TRUE(page().contains(u"TEXT='#010203'"_s));
    EXPECT_EQ(tag(text), u""_s);
    EXPECT_FALSE(canApply());
    EXPECT_TRUE(becomesTrue(u"document.body.getAttribute('text') == '#010203'"_s));
}

TEST_F(LiveCustomize, ATextIsWrittenWhenItIsLeft) {
    writePiece(u"one"_s, "1");
    setSetting(keys::body::kUpText, u"one"_s);
    open();
    category(u"上下追加テキスト"_s);
    pane(u"txtUpDownText"_s).setFocus();
    settle();
    pane(u"txtUpDownText"_s).setText(u"<b>上の文</b>"_s);
    leave();
    EXPECT_EQ(piece(u"one"_s), "<b>\x8f\xe3\x82\xcc\x95\xb6</b>");
    EXPECT_TRUE(page().contains(u"上の文"_s));
}

TEST_F(LiveCustomize, ATickAnOptionAndAColourFromItsButtonAreShownAtOnce) {
    setSetting(keys::day_list::kUse, u"0"_s);
    open();
    field<QCheckBox>(u"chkDayListUse"_s).click();
    EXPECT_EQ(stored(keys::day_list::kUse), u"1"_s);
    EXPECT_TRUE(page().contains(u"#2004/05/02_1\">2004/05/02</a>"_s));
    field<QRadioButton>(u"optTitleAlignRight"_s).click();
    EXPECT_TRUE(page().contains(u"<H3 align=Right>"_s));
    category(u"Body"_s);
    box(u"cmbColor_Text"_s).setEditText(u"red"_s);
    press(u"Btn_ColorEx_Text"_s);
    EXPECT_TRUE(page().contains(u"TEXT='#FF0000'"_s, Qt::CaseInsensitive));
    EXPECT_FALSE(canApply());
}

TEST_F(LiveCustomize, AMenuOrAnotherWindowLeavesNoBox) {
    openBody();
    auto& text = box(u"cmbColor_Text"_s);
    text.setFocus();
    settle();
    text.setEditText(u"#010203"_s);
    text.showPopup();
    settle();
    EXPECT_EQ(tag(text), u"Yes"_s);
    text.hidePopup();
    QWidget other;
    other.show();
    other.activateWindow();
    settle();
    EXPECT_EQ(tag(text), u"Yes"_s);
    EXPECT_NE(stored(keys::body::kTextColor), u"#010203"_s);
}

/// Who goes to Cancel from a box wants nothing of it shown.
TEST_F(LiveCustomize, CancelLeavesNoBox) {
    openBody();
    const QByteArray before = set();
    auto& text = box(u"cmbColor_Text"_s);
    auto& cancel = button(u"Btn_Cancel"_s);
    text.setFocus();
    settle();
    text.setEditText(u"#010203"_s);
    QTest::mousePress(&cancel, Qt::LeftButton);
    settle();
    EXPECT_TRUE(cancel.hasFocus());
    EXPECT_EQ(set(), before);
    desk.answers = {u"no"_s};
    QTest::mouseRelease(&cancel, Qt::LeftButton);
    settle();
    EXPECT_EQ(asked(), QStringList{u"変更されていますが、保存しますか？"_s});
    EXPECT_FALSE(isOpen());
    EXPECT_EQ(set(), before);
}

/// Its text is written before the other one comes, so that nothing is asked.
TEST_F(LiveCustomize, TheOtherHalfLeavesTheTextOfTheFirst) {
    writePiece(u"one"_s, "1");
    setSetting(keys::body::kUpText, u"one"_s);
    open();
    category(u"上下追加テキスト"_s);
    pane(u"txtUpDownText"_s).setFocus();
    settle();
    pane(u"txtUpDownText"_s).setText(u"typed"_s);
    auto& down = field<QRadioButton>(u"OptUpDownDown"_s);
    QTest::mousePress(&down, Qt::LeftButton);
    settle();
    QTest::mouseRelease(&down, Qt::LeftButton);
    settle();
    EXPECT_TRUE(asked().isEmpty());
    EXPECT_EQ(piece(u"one"_s), "typed");
    EXPECT_EQ(tag(field<QWidget>(u"OptUpDownState"_s)), u"Foot"_s);
}

TEST_F(LiveCustomize, CancelTakesAllBackWithoutAWord) {
    openBody();
    const QByteArray before = set();
    writeColour(u"#010203"_s);
    category(u"全般"_s);
    field<QCheckBox>(u"chkGenre"_s).click();
    EXPECT_NE(set(), before);
    desk.events = {};
    press(u"Btn_Cancel"_s);
    EXPECT_EQ(set(), before);
    EXPECT_FALSE(hasBackup());
    EXPECT_TRUE(asked().isEmpty());
}

TEST_F(LiveCustomize, CancelTakesBackWhatWasAppliedAndAsksOfTheRest) {
    openBody();
    const QByteArray before = set();
    box(u"cmbColor_Text"_s).setEditText(u"#010203"_s);
    press(u"Btn_Apply"_s);
    EXPECT_EQ(stored(keys::body::kTextColor), u"#010203"_s);
    box(u"cmbColor_Text"_s).setEditText(u"#040506"_s);
    desk.answers = {u"no"_s};
    press(u"Btn_Cancel"_s);
    EXPECT_EQ(asked().last(), u"変更されていますが、保存しますか？"_s);
    EXPECT_EQ(set(), before);
}

TEST_F(LiveCustomize, OkKeepsAllAndRemovesTheBackup) {
    openBody();
    writeColour(u"#010203"_s);
    press(u"Btn_OK"_s);
    EXPECT_EQ(stored(keys::body::kTextColor), u"#010203"_s);
    EXPECT_FALSE(hasBackup());
    EXPECT_FALSE(preview());
    EXPECT_TRUE(pageOf(session.DataPath + u"tmp.htm"_s).contains(u"#010203"_s));
}

TEST_F(LiveCustomize, AnApplyShowsThePageWhereATextOfTheMonthIsEdited) {
    writePiece(u"one"_s, "1");
    open();
    for (const auto& [text, isShown] : {std::pair(u"Head"_s, true),
                                        {u"Head(分割用)"_s, false},
                                        {u"Body"_s, false},
                                        {u"上下追加テキスト"_s, true},
                                        {u"上下追加テキスト(Log)"_s, true},
                                        {u"本文"_s, false}}) {
        category(text);
        line(u"txtHPTitle"_s).setText(u"題 "_s + text);
        press(u"Btn_Apply"_s);
        EXPECT_EQ(page().contains(u"<TITLE>題 "_s + text + u'<'), isShown) << text.toStdString();
    }
}

TEST_F(LiveCustomize, NoToAnUnsavedTextTakesTheWholeSetBack) {
    writePiece(u"one"_s, "1");
    writePiece(u"two"_s, "2");
    setSetting(keys::body::kUpText, u"one"_s);
    open();
    field<QCheckBox>(u"chkGenre"_s).click();
    const QString changed = stored(keys::general::kGenre);
    category(u"上下追加テキスト"_s);
    pane(u"txtUpDownText"_s).setText(u"dropped"_s);
    desk.answers = {u"no"_s};
    pick(u"cmbUpDownText"_s, u"two"_s);
    EXPECT_NE(stored(keys::general::kGenre), changed);
    EXPECT_EQ(field<QCheckBox>(u"chkGenre"_s).isChecked(), changed != u"1");
    EXPECT_EQ(stored(keys::body::kUpText), u"two"_s);
    EXPECT_EQ(piece(u"one"_s), "1");
    EXPECT_EQ(pane(u"txtUpDownText"_s).text(), u"2"_s);
}

TEST_F(LiveCustomize, AChosenPieceIsShownAtOnce) {
    writePiece(u"two"_s, "<b>second</b>");
    open();
    category(u"上下追加テキスト"_s);
    pick(u"cmbUpDownText"_s, u"two"_s);
    EXPECT_TRUE(page().contains(u"<b>second</b>"_s));
}

// ---- sets

TEST_F(LiveCustomize, ANewSetTakesTheChangesAndTheOldOneIsAsItWas) {
    openBody();
    const QByteArray before = set();
    const QString old = session.CustIniFile;
    writeColour(u"#010203"_s);
    desk.answers = {u"青"_s};
    press(u"Btn_New"_s);
    EXPECT_EQ(bytesOf(old), before);
    EXPECT_EQ(stored(keys::body::kTextColor), u"#010203"_s);
    const QByteArray made = set();
    EXPECT_EQ(bytesOf(session.MyPath + u"Customize.bak"_s), made);
    writeColour(u"#040506"_s);
    press(u"Btn_Cancel"_s);
    EXPECT_EQ(bytesOf(setFile(u"青"_s)), made);
    EXPECT_EQ(bytesOf(old), before);
    EXPECT_EQ(session.CustIniFile, old);
}

TEST_F(LiveCustomize, AnotherSetHasABackupOfItsOwn) {
    writeFile(setFile(u"zz"_s), "[Body]\r\nTextColor=#0a0a0a\r\n");
    const QString old = session.CustIniFile;
    const QByteArray before = set();
    openBody();
    writeColour(u"#010203"_s);
    box(u"cmbColor_Text"_s).setEditText(u"#040506"_s);
    desk.answers = {u"no"_s};
    pick(u"cmbSelectCustomize"_s, u"zz"_s);
    EXPECT_EQ(bytesOf(old), before);
    EXPECT_EQ(bytesOf(session.MyPath + u"Customize.bak"_s), "[Body]\r\nTextColor=#0a0a0a\r\n");
    EXPECT_TRUE(page().contains(u"TEXT='#0a0a0a'"_s));
    writeColour(u"#070809"_s);
    press(u"Btn_Cancel"_s);
    EXPECT_EQ(bytesOf(setFile(u"zz"_s)), "[Body]\r\nTextColor=#0a0a0a\r\n");
    EXPECT_EQ(session.CustIniFile, old);
}

TEST_F(LiveCustomize, DeletingASetBacksUpTheNextOne) {
    writeFile(setFile(u"Customizf"_s), "[Body]\r\nTextColor=#0a0a0a\r\n");
    openBody();
    desk.answers = {u"yes"_s};
    press(u"Btn_Delete"_s);
    EXPECT_EQ(box(u"cmbSelectCustomize"_s).currentText(), u"Customizf"_s);
    EXPECT_EQ(bytesOf(session.MyPath + u"Customize.bak"_s), "[Body]\r\nTextColor=#0a0a0a\r\n");
    EXPECT_TRUE(page().contains(u"TEXT='#0a0a0a'"_s));
}

// ---- kills, refusals, other programs

TEST_F(LiveCustomize, AKilledEditIsOfferedAtTheNextOpening) {
    const QByteArray before = set();
    openBody();
    writeColour(u"#010203"_s);
    // As a kill leaves it: the window is gone without a word.
    context.windows.unload<site::frmCustomize>();
    EXPECT_TRUE(hasBackup());
    EXPECT_NE(set(), before);
    setRealTime(false);
    desk.events = {};
    desk.answers = {u"yes"_s};
    open();
    EXPECT_EQ(asked(), QStringList{u"前回の編集を取り消しますか？"_s});
    EXPECT_EQ(set(), before);
    EXPECT_FALSE(hasBackup());
    EXPECT_NE(box(u"cmbColor_Text"_s).currentText(), u"#010203"_s);
}

TEST_F(LiveCustomize, AStaleBackupTakesNothingBack) {
    openBody();
    writeColour(u"#010203"_s);
    context.windows.unload<site::frmCustomize>();
    const QByteArray killed = set();
    setRealTime(false);
    desk.answers = {u"no"_s};
    openBody();
    EXPECT_FALSE(hasBackup());
    box(u"cmbColor_Text"_s).setEditText(u"#040506"_s);
    desk.answers = {u"no"_s};
    press(u"Btn_Cancel"_s);
    EXPECT_EQ(set(), killed);
}

TEST_F(LiveCustomize, WithoutABackupNothingIsLive) {
    const QByteArray before = set();
    {
        DiskWatch watch;
        watch.refuse(u""_s);
        open();
    }
    EXPECT_EQ(desk.texts(u"failure"_s).size(), 1);
    field<QCheckBox>(u"chkGenre"_s).click();
    settle();
    EXPECT_EQ(set(), before);
    EXPECT_TRUE(canApply());
    EXPECT_FALSE(preview());
    EXPECT_FALSE(hasBackup());
    press(u"Btn_OK"_s);
    EXPECT_NE(set(), before);
}

/// Where the dialog goes on without live changes, a change waits for its Apply.
TEST_F(LiveCustomize, WithoutABackupOfTheNextSetNothingIsLiveAnyMore) {
    writeFile(setFile(u"zz"_s), "[Body]\r\nTextColor=#0a0a0a\r\n");
    const QString backup = session.MyPath + u"Customize.bak"_s;
    for (const QString& way : {u"choose"_s, u"Btn_New"_s, u"Btn_Delete"_s}) {
        SCOPED_TRACE(way.toStdString());
        openBody();
        ASSERT_TRUE(QFile::remove(backup));
        ASSERT_TRUE(QDir().mkpath(backup)); // which nothing can replace
        desk.events = {};
        if (way == u"choose") {
            pick(u"cmbSelectCustomize"_s, u"zz"_s);
        } else {
            desk.answers = {way == u"Btn_New" ? u"青"_s : u"yes"_s};
            press(way);
        }
        EXPECT_EQ(desk.texts(u"failure"_s).size(), 1);
        EXPECT_EQ(box(u"cmbSelectCustomize"_s).currentText(), site::selectedCustomizeSet(session));
        EXPECT_EQ(box(u"cmbColor_Text"_s).currentText(), stored(keys::body::kTextColor));
        EXPECT_FALSE(preview());
        const QByteArray before = set();
        writeColour(u"#010203"_s);
        EXPECT_EQ(set(), before);
        EXPECT_TRUE(canApply());
        desk.answers = {u"no"_s};
        press(u"Btn_Cancel"_s);
        ASSERT_TRUE(QDir().rmdir(backup));
    }
}

TEST_F(LiveCustomize, ANewSetThatFailsLeavesTheOldOneAndItsBackup) {
    openBody();
    const QByteArray before = set();
    const QString old = session.CustIniFile;
    writeColour(u"#010203"_s);
    ASSERT_TRUE(QFile::setPermissions(old, QFile::ReadOwner));
    desk.answers = {u"青"_s};
    press(u"Btn_New"_s);
    EXPECT_EQ(desk.texts(u"failure"_s).size(), 1);
    EXPECT_FALSE(exists(setFile(u"青"_s)));
    EXPECT_EQ(session.CustIniFile, old);
    ASSERT_TRUE(QFile::setPermissions(old, QFile::ReadOwner | QFile::WriteOwner));
    press(u"Btn_Cancel"_s);
    EXPECT_EQ(set(), before);
    EXPECT_TRUE(asked().isEmpty());
}

TEST_F(LiveCustomize, ANewSetTakesNothingBackUnaskedThatSomebodyElseChanged) {
    openBody();
    const QString old = session.CustIniFile;
    writeColour(u"#010203"_s);
    setSetting(keys::general::kHPTitle, u"theirs"_s);
    const QByteArray theirs = set();
    desk.answers = {u"青"_s, u"no"_s};
    press(u"Btn_New"_s);
    EXPECT_TRUE(asked().first().startsWith(u"カスタマイズセット「Customize」は、ほかで変更されています。"_s));
    EXPECT_EQ(bytesOf(old), theirs);
    EXPECT_EQ(site::selectedCustomizeSet(session), u"青"_s);
    press(u"Btn_Cancel"_s);
    EXPECT_EQ(bytesOf(old), theirs);
}

TEST_F(LiveCustomize, ALiveChangeThatFailsLosesNothing) {
    openBody();
    const QByteArray before = set();
    ASSERT_TRUE(QFile::setPermissions(session.CustIniFile, QFile::ReadOwner));
    desk.events = {};
    writeColour(u"#010203"_s);
    EXPECT_EQ(desk.texts(u"failure"_s).size(), 1);
    EXPECT_EQ(set(), before);
    EXPECT_EQ(tag(box(u"cmbColor_Text"_s)), u"Yes"_s);
    EXPECT_TRUE(canApply());
    ASSERT_TRUE(QFile::setPermissions(session.CustIniFile, QFile::ReadOwner | QFile::WriteOwner));
    press(u"Btn_OK"_s);
    EXPECT_FALSE(isOpen());
    EXPECT_EQ(stored(keys::body::kTextColor), u"#010203"_s);
}

TEST_F(LiveCustomize, APageThatCantBeMadeIsToldOnce) {
    setSetting(keys::rss::kRSSOn, u"1"_s);
    setSetting(keys::rss::kDiaryURL, u"http://h.example/x.htm"_s);
    sql(u"UPDATE Contents SET Private = 1"_s);
    open();
    EXPECT_EQ(desk.texts(u"failure"_s).size(), 1);
    field<QCheckBox>(u"chkGenre"_s).click();
    field<QCheckBox>(u"chkWeather"_s).click();
    EXPECT_EQ(desk.texts(u"failure"_s).size(), 1);
    EXPECT_FALSE(canApply()) << "the set is written all the same";
}

TEST_F(LiveCustomize, ASetThatSomebodyElseChangedIsNotTakenBackUnasked) {
    openBody();
    const QByteArray before = set();
    writeColour(u"#010203"_s);
    setSetting(keys::general::kHPTitle, u"theirs"_s);
    const QByteArray theirs = set();
    desk.answers = {u"no"_s};
    press(u"Btn_Cancel"_s);
    EXPECT_TRUE(asked().last().startsWith(u"カスタマイズセット「Customize」は、ほかで変更されています。"_s));
    EXPECT_EQ(set(), theirs);
    EXPECT_FALSE(isOpen());
}

TEST_F(LiveCustomize, APreviewThatSomebodyClosedStaysAway) {
    openBody();
    ASSERT_TRUE(preview());
    preview()->close();
    settle();
    ASSERT_FALSE(preview());
    writeColour(u"#010203"_s);
    EXPECT_FALSE(preview());
    EXPECT_TRUE(page().contains(u"#010203"_s));
    press(u"Btn_Cancel"_s);
    EXPECT_FALSE(isOpen());
}

TEST_F(LiveCustomize, ThePageStaysWhereItWasScrolledTo) {
    for (int i = 0; i < 60; ++i)
        write(u"2004/05/04"_s, u"行"_s);
    openBody();
    ASSERT_TRUE(becomesTrue(u"document.body.scrollHeight > 2000 && document.readyState == 'complete'"_s));
    inPreview(u"window.scrollTo(0, 700)"_s);
    ASSERT_TRUE(becomesTrue(u"window.scrollY == 700"_s));
    for (const QString& colour : {u"#010203"_s, u"#040506"_s}) {
        writeColour(colour);
        EXPECT_TRUE(becomesTrue(u"document.body.getAttribute('text') == '"_s + colour +
                                u"' && document.readyState == 'complete'"_s));
        EXPECT_TRUE(becomesTrue(u"window.scrollY == 700"_s)) << inPreview(u"window.scrollY"_s).toInt();
    }
}

} // namespace
} // namespace velloria::tests
