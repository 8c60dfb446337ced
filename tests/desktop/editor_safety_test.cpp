// The editor: tags, undo, input methods, closing, and the draft.
#include "desktop/editor_home.h"

#include "core/keys.h"
#include "core/settings_change.h"
#include "shell/forms/desktop_end.h"
#include "store/sqlite/connection.h"

#include <QDir>

using namespace Qt::StringLiterals;

namespace velloria::tests {

// The lists of steps, which the editor shows to nobody.
std::array<editor::UndoList, 3>& undoListsOf(editor::EntryPanes& panes);
template <auto Lists>
struct UndoListsOf {
    friend std::array<editor::UndoList, 3>& undoListsOf(editor::EntryPanes& panes) { return panes.*Lists; }
};
template struct UndoListsOf<&editor::EntryPanes::m_undo>;

// The clock of the draft, which a test lets run faster.
QTimer& draftTimerOf(editor::OpenDay& day);
template <auto Timer>
struct DraftTimerOf {
    friend QTimer& draftTimerOf(editor::OpenDay& day) { return day.*Timer; }
};
template struct DraftTimerOf<&editor::OpenDay::m_draftTimer>;

namespace {

class EditorWork : public EditorHome {
protected:
    void SetUp() override {
        EditorHome::SetUp();
        writeDay({u"T"_s});
        sql(u"UPDATE Contents SET Contents = ''"_s);
        clickDay(6);
        clickPane();
    }
    void type(const QString& text, int index = 0) { keys(pane(index), text); }
    void undo(int index = 0) { QTest::keyClick(&pane(index), Qt::Key_Z, Qt::ControlModifier); }
    void redo(int index = 0) { QTest::keyClick(&pane(index), Qt::Key_Y, Qt::ControlModifier); }
    void select(int from, int to, int index = 0) {
        QTextCursor cursor = pane(index).textCursor();
        cursor.setPosition(from);
        cursor.setPosition(to, QTextCursor::KeepAnchor);
        pane(index).setTextCursor(cursor);
    }
    QString draftFile() const { return session.UserPath + u"draft.json"_s; }
    QJsonObject draft() const { return QJsonDocument::fromJson(bytesOf(draftFile()).trimmed()).object(); }
    /// A new editor, as after a start.
    void restart() {
        context.windows.unload<editor::frmContents>();
        contents();
    }
};

TEST_F(EditorWork, ShiftEnterAndCtrlEnterInsertTheirTagsAlone) {
    QTest::keyClick(&pane(), Qt::Key_Return, Qt::ShiftModifier);
    EXPECT_EQ(pane().text(), u"<BR>"_s);
    QTest::keyClick(&pane(), Qt::Key_Return, Qt::ControlModifier);
    EXPECT_EQ(pane().text(), u"<BR><P></P>"_s);
    core::writeQuietly(session, core::keys::kPTagAdd, u"class=a"_s);
    pane().setText(u"x"_s);
    pane().selectAll();
    QTest::keyClick(&pane(), Qt::Key_Enter, Qt::ControlModifier);
    EXPECT_EQ(pane().text(), u"<P class=a>x</P>"_s);
    pane().selectAll();
    QTest::keyClick(&pane(), Qt::Key_Enter, Qt::ShiftModifier);
    EXPECT_EQ(pane().text(), u"<BR><P class=a>x</P>"_s);
}

TEST_F(EditorWork, APickedTagWrapsTheSelectionOfTheShownPaneAndGivesTheFocusBack) {
    clickTab(1);
    type(u"one two"_s, 1);
    select(4, 7, 1);
    pick(combo(u"ComboTag"_s), 2);
    EXPECT_EQ(pane(1).text(), u"one <B>two</B>"_s);
    EXPECT_TRUE(pane(1).hasFocus());
    EXPECT_EQ(pane(1).selectionStart(), 14);
    clickTool(u"InsertTag"_s);
    EXPECT_EQ(pane(1).text(), u"one <B>two</B><B></B>"_s);
    EXPECT_EQ(pane(0).text(), u""_s);
}

TEST_F(EditorWork, WithNothingPickedTheTagToolChangesNothing) {
    type(u"x"_s);
    pane().selectAll();
    clickTool(u"InsertTag"_s);
    EXPECT_EQ(pane().text(), u"x"_s);
    EXPECT_EQ(pane().selectedText(), u"x"_s);
}

TEST_F(EditorWork, TheBrowsersAddressIsALinkAroundTheSelection) {
    clickTool(u"InsertURL"_s);
    EXPECT_EQ(pane().text(), u"<A HREF=\"\"></A>"_s);
    pane().setText(u"one two"_s);
    select(4, 7);
    contents().Btn2Click_ToolBar();
    EXPECT_EQ(pane().text(), u"one <A HREF=\"\">two</A>"_s);
    EXPECT_TRUE(pane().hasFocus());
}

TEST_F(EditorWork, CutCopyAndPasteWorkOnTheShownPane) {
    QGuiApplication::clipboard()->setText(u"kept"_s);
    contents().Copy();
    contents().Cut();
    EXPECT_EQ(QGuiApplication::clipboard()->text(), u"kept"_s);
    clickTab(2);
    contents().Paste();
    EXPECT_EQ(pane(2).text(), u"kept"_s);
    pane(2).selectAll();
    contents().Cut();
    EXPECT_EQ(pane(2).text(), u""_s);
    EXPECT_EQ(QGuiApplication::clipboard()->text(), u"kept"_s);
    EXPECT_EQ(pane(0).text(), u""_s);
}

TEST_F(EditorWork, TheMenuOfThePanesComesWhenTheRightButtonGoesUpInEachOfThem) {
    for (int i = 0; i < 3; ++i) {
        clickTab(i);
        QTest::mousePress(pane(i).viewport(), Qt::RightButton);
        settle();
        EXPECT_FALSE(QApplication::activePopupWidget());
        QTest::mouseRelease(pane(i).viewport(), Qt::RightButton);
        settle();
        ASSERT_TRUE(QApplication::activePopupWidget());
        EXPECT_EQ(QApplication::activePopupWidget()->objectName(), u"mnuContentsPopUp"_s);
        EXPECT_TRUE(isInsertable()) << "opening a menu is no loss of focus";
        QApplication::activePopupWidget()->close();
        settle();
        EXPECT_TRUE(isInsertable());
    }
}

TEST_F(EditorWork, EnterAndTabInTheTitleLeadToTheFirstPane) {
    for (const Qt::Key key : {Qt::Key_Return, Qt::Key_Enter, Qt::Key_Tab}) {
        clickTab(1);
        title().setFocus();
        EXPECT_FALSE(isInsertable());
        QTest::keyClick(&title(), key);
        EXPECT_EQ(tabs().currentIndex(), 0);
        EXPECT_TRUE(pane().hasFocus());
        EXPECT_TRUE(isInsertable());
        EXPECT_EQ(pane().text(), u""_s);
    }
}

TEST_F(EditorWork, ShiftTabInTheTitleGoesBackwards) {
    title().setFocus();
    QTest::keyClick(&title(), Qt::Key_Backtab, Qt::ShiftModifier);
    EXPECT_FALSE(title().hasFocus());
    EXPECT_FALSE(pane().hasFocus());
}

TEST_F(EditorWork, EnterInTheTitleWhileComposingOnlyBelongsToTheInputMethod) {
    title().setFocus();
    compose(title(), u"か"_s);
    QTest::keyClick(&title(), Qt::Key_Return);
    EXPECT_TRUE(title().hasFocus());
    compose(title(), {}, u"加"_s);
    EXPECT_EQ(title().text(), u"加T"_s);
}

TEST_F(EditorWork, KeysChangeThePaneFromEverywhere) {
    QTest::keyClick(&pane(), Qt::Key_3, Qt::ControlModifier);
    EXPECT_TRUE(pane(2).hasFocus());
    QTest::keyClick(&pane(2), Qt::Key_Tab, Qt::ControlModifier);
    EXPECT_TRUE(pane(0).hasFocus());
    QTest::keyClick(&pane(0), Qt::Key_Backtab, Qt::ControlModifier | Qt::ShiftModifier);
    EXPECT_TRUE(pane(2).hasFocus());
    QTest::keyClick(&title(), Qt::Key_2, Qt::ControlModifier);
    EXPECT_TRUE(pane(1).hasFocus());
    QTest::keyClick(&pane(1), Qt::Key_PageUp, Qt::ControlModifier);
    EXPECT_TRUE(pane(0).hasFocus());
    QTest::keyClick(&pane(0), Qt::Key_PageDown, Qt::ControlModifier);
    EXPECT_TRUE(pane(1).hasFocus());
    EXPECT_FALSE(contents().ChangeYesNo());
}

TEST_F(EditorWork, TheWheelOverTheTabsTurnsToNoOther) {
    QTabBar* bar = tabs().tabBar();
    QWheelEvent event({5, 5}, bar->mapToGlobal(QPointF(5, 5)), {}, {0, -120}, Qt::NoButton, Qt::NoModifier,
                      Qt::NoScrollPhase, false);
    QCoreApplication::sendEvent(bar, &event);
    EXPECT_EQ(tabs().currentIndex(), 0);
}

TEST_F(EditorWork, UndoAndRedoWalkTheTypedLetters) {
    undo();
    redo();
    EXPECT_EQ(pane().text(), u""_s);
    type(u"ab"_s);
    undo();
    EXPECT_EQ(pane().text(), u"a"_s);
    undo();
    EXPECT_EQ(pane().text(), u""_s);
    EXPECT_EQ(pane().selectionStart(), 0);
    redo();
    redo();
    redo();
    EXPECT_EQ(pane().text(), u"ab"_s);
    EXPECT_EQ(pane().selectionStart(), 2);
}

TEST_F(EditorWork, AnUndoWithNothingToDoLeavesNothingSwitchedOff) {
    undo();
    redo();
    contents().mnuUndo_Click();
    EXPECT_FALSE(contents().Loading);
    type(u"x"_s);
    EXPECT_TRUE(contents().ChangeYesNo());
    EXPECT_TRUE(isSavable());
}

TEST_F(EditorWork, TypingAfterAnUndoGoesOnTop) {
    type(u"abc"_s);
    undo();
    type(u"x"_s);
    EXPECT_EQ(pane().text(), u"abx"_s);
    undo();
    EXPECT_EQ(pane().text(), u"abc"_s);
    undo();
    EXPECT_EQ(pane().text(), u"ab"_s);
}

TEST_F(EditorWork, TheThirdPaneHasNoUndo) {
    clickTab(2);
    type(u"ab"_s, 2);
    undo(2);
    EXPECT_EQ(pane(2).text(), u"ab"_s);
    contents().mnuUndo_Click();
    EXPECT_EQ(pane(2).text(), u"ab"_s);
    redo(2);
    contents().mnuRedo_Click();
    EXPECT_EQ(pane(2).text(), u"ab"_s);
    EXPECT_FALSE(contents().Loading);
}

TEST_F(EditorWork, RedoOfTheThirdPaneGoesOnWhereThereIsAStep) {
    clickTab(2);
    keys(pane(2), u"ab"_s);
    const QString typed = pane(2).text();
    // No undo of the window leads there: below the top of the list.
    editor::UndoList& list = undoListsOf(*contents().findChild<editor::EntryPanes*>())[2];
    ASSERT_TRUE(list.undo());
    const std::optional<editor::Snapshot> first = list.undo();
    ASSERT_TRUE(first);
    contents().mnuUndo_Click();
    EXPECT_EQ(pane(2).text(), typed) << "undo is without effect there";
    EXPECT_EQ(list.position(), list.count() - 2);
    QTest::keyClick(&pane(2), Qt::Key_Y, Qt::ControlModifier);
    EXPECT_EQ(pane(2).text(), typed.chopped(1));
    contents().mnuRedo_Click();
    EXPECT_EQ(pane(2).text(), typed);
    EXPECT_EQ(pane(2).textCursor().position(), int(typed.size()));
    contents().mnuRedo_Click();
    EXPECT_EQ(pane(2).text(), typed);
    EXPECT_EQ(list.position(), list.count());
}

TEST_F(EditorWork, ThePanesUndoEachForItself) {
    type(u"a"_s);
    clickTab(1);
    type(u"b"_s, 1);
    undo(1);
    EXPECT_EQ(pane(1).text(), u""_s);
    EXPECT_EQ(pane(0).text(), u"a"_s);
    undo(1);
    EXPECT_EQ(pane(0).text(), u"a"_s);
}

TEST_F(EditorWork, ASaveLeavesTheUndoAndAnUndoLeavesTheMark) {
    type(u"ab"_s);
    QTest::keyClick(&pane(), Qt::Key_U, Qt::ControlModifier);
    undo();
    EXPECT_EQ(pane().text(), u"a"_s);
    EXPECT_FALSE(contents().ChangeYesNo());
    EXPECT_FALSE(isSavable());
    QTest::keyClick(&pane(), Qt::Key_U, Qt::ControlModifier);
    EXPECT_EQ(diary().LoadEntry(kDay, 1)->contents, u"a"_s);
}

TEST_F(EditorWork, PasteAndTagAreOneStepEach) {
    QGuiApplication::clipboard()->setText(u"x\ny"_s);
    QTest::keyClick(&pane(), Qt::Key_V, Qt::ControlModifier);
    pane().selectAll();
    pick(combo(u"ComboTag"_s), 3);
    EXPECT_EQ(pane().text(), u"<I>x\r\ny</I>"_s);
    undo();
    EXPECT_EQ(pane().text(), u"x\r\ny"_s);
    undo();
    EXPECT_EQ(pane().text(), u""_s);
}

TEST_F(EditorWork, AMiddleButtonPasteIsAChangeLikeAnyOther) {
    QClipboard& clipboard = *QGuiApplication::clipboard();
    if (!clipboard.supportsSelection())
        GTEST_SKIP() << "no selection to paste here";
    clipboard.setText(u"x"_s, QClipboard::Selection);
    QTest::mouseClick(pane().viewport(), Qt::MiddleButton);
    EXPECT_EQ(pane().text(), u"x"_s);
    EXPECT_TRUE(contents().ChangeYesNo());
    undo();
    EXPECT_EQ(pane().text(), u""_s);
}

TEST_F(EditorWork, ArrowKeysAtNumberAndTagOpenTheirListsAndTheWheelDoesNothing) {
    writeDay({u"二"_s});
    clickDay(6);
    clickPane();
    for (const QString& name : {u"ComboNumber"_s, u"ComboTag"_s}) {
        desktop::Combo& box = combo(name);
        const int before = box.currentIndex();
        box.setFocus();
        QTest::keyClick(&box, Qt::Key_Up);
        EXPECT_TRUE(box.view()->isVisible()) << name.toStdString();
        box.hidePopup();
        QWheelEvent event({5, 5}, box.mapToGlobal(QPointF(5, 5)), {}, {0, 120}, Qt::NoButton, Qt::NoModifier,
                          Qt::NoScrollPhase, false);
        QCoreApplication::sendEvent(&box, &event);
        EXPECT_EQ(box.currentIndex(), before);
    }
    EXPECT_EQ(title().text(), u"二"_s);
    EXPECT_EQ(pane().text(), u"text of 二"_s);
}

TEST_F(EditorWork, ComposingIsOneStepACommitAndDirtyAtTheCommitAlone) {
    for (const QString& preedit : {u"か"_s, u"かんじ"_s, u"漢字"_s})
        compose(pane(), preedit);
    EXPECT_FALSE(contents().ChangeYesNo());
    compose(pane(), {}, u"漢字"_s);
    EXPECT_TRUE(contents().ChangeYesNo());
    compose(pane(), u"あ"_s);
    compose(pane(), {}, u"亜"_s);
    undo();
    EXPECT_EQ(pane().text(), u"漢字"_s);
    undo();
    EXPECT_EQ(pane().text(), u""_s);
}

TEST_F(EditorWork, WhatIsBeingComposedIsSavedToo) {
    compose(pane(), u"漢字"_s);
    contents().Btn1Click_ToolBar();
    EXPECT_EQ(diary().LoadEntry(kDay, 1)->contents, u"漢字"_s);
    compose(title(), u"題"_s);
    QTest::keyClick(&title(), Qt::Key_U, Qt::ControlModifier);
    EXPECT_EQ(rows(), QStringList{u"1題T"_s});
    EXPECT_FALSE(contents().ChangeYesNo());
    compose(pane(), u"尾"_s);
    answer(u"yes"_s);
    clickDay(7);
    EXPECT_EQ(diary().LoadEntry(kDay, 1)->contents, u"漢字尾"_s);
}

TEST_F(EditorWork, TheMenusUndoTakesBackWhatIsBeingComposed) {
    compose(pane(), u"漢字"_s);
    contents().mnuUndo_Click();
    EXPECT_EQ(pane().text(), u""_s);
    contents().mnuRedo_Click();
    EXPECT_EQ(pane().text(), u"漢字"_s);
}

TEST_F(EditorWork, WhatIsBeingComposedIsRescuedByADeletion) {
    compose(pane(), u"漢字"_s);
    answer(u"yes"_s);
    clickButton(u"Btn_Delete"_s);
    EXPECT_TRUE(QString::fromUtf8(bytesOf(session.UserPath + u"rescue.jsonl"_s)).contains(u"漢字"_s));
}

TEST_F(EditorWork, TextLeavesThePanesWithCrLf) {
    type(u"a"_s);
    QTest::keyClick(&pane(), Qt::Key_Return);
    type(u"b"_s);
    QTest::keyClick(&pane(), Qt::Key_U, Qt::ControlModifier);
    EXPECT_EQ(diary().LoadEntry(kDay, 1)->contents, u"a\r\nb"_s);
    EXPECT_EQ(sqlValue(u"SELECT Extend IS NULL FROM Contents"_s), u"0"_s) << "an empty pane is no missing value";
}

TEST_F(EditorWork, ClosingAsksSavesOnYesAndHides) {
    type(u"x"_s);
    answer(u"yes"_s);
    contents().close();
    EXPECT_EQ(questions(), QStringList{u"変更されています。保存しますか？"_s});
    EXPECT_EQ(diary().LoadEntry(kDay, 1)->contents, u"x"_s);
    EXPECT_FALSE(contents().isVisible());
    clickDay(6);
    EXPECT_TRUE(contents().isVisible());
    EXPECT_EQ(pane().text(), u"x"_s);
}

TEST_F(EditorWork, ClosingWithANoHidesKeepsWhatIsShownAndAsksNoMore) {
    type(u"x"_s);
    answer(u"no"_s);
    contents().close();
    EXPECT_FALSE(contents().isVisible());
    EXPECT_FALSE(contents().ChangeYesNo());
    EXPECT_FALSE(isSavable());
    EXPECT_EQ(pane().text(), u"x"_s);
    EXPECT_EQ(diary().LoadEntry(kDay, 1)->contents, u""_s);
    EXPECT_TRUE(contents().confirmClose());
}

TEST_F(EditorWork, ClosingWhatIsCleanAsksNothing) {
    EXPECT_TRUE(contents().confirmClose());
    contents().close();
    EXPECT_FALSE(contents().isVisible());
    EXPECT_TRUE(questions().isEmpty());
}

TEST_F(EditorWork, ARefusedOrFailedSaveKeepsTheWindowOpen) {
    type(u"x"_s);
    title().clear();
    answer(u"yes"_s);
    contents().close();
    EXPECT_TRUE(contents().isVisible());
    EXPECT_TRUE(contents().ChangeYesNo());
    title().setText(u"断"_s);
    refuseRows(u"Title = '断'"_s);
    answer(u"yes"_s);
    EXPECT_FALSE(contents().confirmClose());
    expectedFailures = 1;
    EXPECT_EQ(pane().text(), u"x"_s);
    EXPECT_TRUE(contents().ChangeYesNo());
    EXPECT_TRUE(isSavable());
}

TEST_F(EditorWork, ADraftIsThereTwoSecondsAfterAChangeHoweverLongSomebodyTypes) {
    QTimer& draftTimer = draftTimerOf(contents().day());
    EXPECT_EQ(draftTimer.interval(), 2000);
    draftTimer.setInterval(500);
    type(u"x"_s);
    EXPECT_FALSE(exists(draftFile()));
    EXPECT_TRUE(waitFor([&] {
        type(u"y"_s); // every few milliseconds
        return exists(draftFile());
    }));
}

TEST_F(EditorWork, ADraftIsWrittenWhenAnotherWindowIsTurnedTo) {
    clickDay(6);
    keys(title(), u"half"_s);
    EXPECT_FALSE(exists(session.UserPath + u"draft.json"_s));
    calendar().showChild();
    EXPECT_TRUE(exists(session.UserPath + u"draft.json"_s));
}

TEST_F(EditorWork, ADraftHoldsEveryFieldAndIsTheOwnersAlone) {
    type(u"一"_s);
    clickTab(1);
    type(u"二"_s, 1);
    clickTab(2);
    type(u"三"_s, 2);
    pick(combo(u"ComboWeather"_s), 1);
    pick(combo(u"ComboPrivate"_s), 1);
    combo(u"ComboGenre"_s).lineEdit()->clear();
    keys(combo(u"ComboGenre"_s), u"旅行"_s);
    contents().day().keepDraft();
    EXPECT_EQ(modeOf(draftFile()), 0600U);
    const QJsonObject kept = draft();
    EXPECT_EQ(kept[u"Day"_s].toString(), kDay);
    EXPECT_EQ(kept[u"Number"_s].toInt(), 1);
    EXPECT_EQ(kept[u"Title"_s].toString(), u"T"_s);
    EXPECT_EQ(kept[u"Contents"_s].toString(), u"一"_s);
    EXPECT_EQ(kept[u"Extend"_s].toString(), u"二"_s);
    EXPECT_EQ(kept[u"Excerpt"_s].toString(), u"三"_s);
    EXPECT_EQ(kept[u"Weather"_s].toString(), u"晴"_s);
    EXPECT_EQ(kept[u"Genre"_s].toString(), u"旅行"_s);
    EXPECT_TRUE(kept[u"Private"_s].toBool());
}

TEST_F(EditorWork, SavingDroppingAndACleanEndRemoveTheDraft) {
    type(u"x"_s);
    contents().day().keepDraft();
    ASSERT_TRUE(exists(draftFile()));
    QTest::keyClick(&pane(), Qt::Key_U, Qt::ControlModifier);
    EXPECT_FALSE(exists(draftFile()));
    type(u"y"_s);
    contents().day().keepDraft();
    answer(u"no"_s);
    clickDay(6);
    EXPECT_FALSE(exists(draftFile()));
    type(u"z"_s);
    contents().day().keepDraft();
    contents().day().dropDraft();
    EXPECT_FALSE(exists(draftFile()));
}

TEST_F(EditorWork, WhatIsCleanHasNoDraft) {
    contents().day().keepDraft();
    EXPECT_FALSE(exists(draftFile()));
    type(u"x"_s);
    EXPECT_TRUE(draftTimerOf(contents().day()).isActive());
    QTest::keyClick(&pane(), Qt::Key_U, Qt::ControlModifier);
    EXPECT_FALSE(draftTimerOf(contents().day()).isActive());
    EXPECT_FALSE(exists(draftFile()));
    contents().day().keepDraft(); // as it would have come two seconds after the key
    EXPECT_FALSE(exists(draftFile()));
}

TEST_F(EditorWork, ADraftOfAKilledRunIsOfferedAndBringsEveryFieldBackUnsaved) {
    type(u"unsaved"_s);
    pick(combo(u"ComboWeather"_s), 4);
    contents().day().keepDraft();
    restart();
    EXPECT_TRUE(contents().day().hasDraft());
    EXPECT_EQ(caption(), u"日記作成"_s);
    session.EnterDay = u"2004/05/20"_s;
    contents().day().restoreDraft();
    EXPECT_EQ(session.EnterDay, kDay);
    EXPECT_EQ(month().value(), QDate(2004, 5, 6));
    EXPECT_EQ(caption(), u"2004/05/06分の日記[1/1]"_s);
    EXPECT_EQ(pane().text(), u"unsaved"_s);
    EXPECT_EQ(combo(u"ComboWeather"_s).currentText(), u"雪"_s);
    EXPECT_TRUE(contents().ChangeYesNo());
    EXPECT_TRUE(isSavable());
    EXPECT_FALSE(contents().day().hasDraft());
    EXPECT_TRUE(exists(draftFile())) << "it is unsaved still";
    QTest::keyClick(&title(), Qt::Key_U, Qt::ControlModifier);
    EXPECT_EQ(diary().LoadEntry(kDay, 1)->contents, u"unsaved"_s);
    EXPECT_TRUE(rescued().isEmpty());
    EXPECT_FALSE(exists(draftFile()));
}

TEST_F(EditorWork, ADraftOfANewEntryOverwritesNothingThatCameMeanwhile) {
    clickButton(u"Btn_New"_s);
    keys(title(), u"私"_s);
    contents().day().keepDraft();
    restart();
    write(kDay, u"他"_s);
    contents().day().restoreDraft();
    QTest::keyClick(&title(), Qt::Key_U, Qt::ControlModifier);
    EXPECT_EQ(rows(), (QStringList{u"3私"_s, u"2他"_s, u"1T"_s}));
}

TEST_F(EditorWork, ADraftThatWaitsIsNotOverwrittenByWhatIsTypedNext) {
    type(u"first"_s);
    contents().day().keepDraft();
    restart();
    clickDay(7);
    clickPane();
    type(u"second"_s);
    contents().day().keepDraft();
    EXPECT_TRUE(bytesOf(draftFile()).contains("first"));
    EXPECT_TRUE(bytesOf(draftFile()).contains("second"));
    contents().day().dropDraft();
    restart();
    ASSERT_TRUE(contents().day().hasDraft());
    contents().day().restoreDraft();
    EXPECT_EQ(pane().text(), u"first"_s);
}

TEST_F(EditorWork, SavingTheEntryOfAWaitingDraftRescuesTheDraft) {
    type(u"draft"_s);
    contents().day().keepDraft();
    restart();
    clickDay(6);
    QTest::keyClick(&title(), Qt::Key_U, Qt::ControlModifier);
    EXPECT_FALSE(contents().day().hasDraft());
    EXPECT_FALSE(exists(draftFile()));
    EXPECT_TRUE(bytesOf(session.UserPath + u"rescue.jsonl"_s).contains("draft"));
}

TEST_F(EditorWork, ADraftThatCannotBeWrittenIsSaidOnThePanelAlone) {
    QDir().mkpath(draftFile() + u"/x"_s);
    type(u"x"_s);
    contents().day().keepDraft();
    EXPECT_TRUE(boxes().isEmpty());
    EXPECT_TRUE(panel().contains(u"下書き"_s)) << panel().toStdString();
    EXPECT_TRUE(contents().ChangeYesNo());
}

TEST_F(EditorWork, ALockedDiaryIsToldAndNothingIsLost) {
    type(u"x"_s);
    {
        store::sqlite::Connection other(session.databaseFile(), store::sqlite::Access::ReadWrite);
        other.execute("BEGIN EXCLUSIVE");
        QTest::keyClick(&pane(), Qt::Key_U, Qt::ControlModifier);
        other.execute("ROLLBACK");
    }
    expectedFailures = 1;
    EXPECT_EQ(pane().text(), u"x"_s);
    EXPECT_TRUE(contents().ChangeYesNo());
    QTest::keyClick(&pane(), Qt::Key_U, Qt::ControlModifier);
    EXPECT_EQ(diary().LoadEntry(kDay, 1)->contents, u"x"_s);
}

TEST_F(EditorWork, ADraftComesBackAlsoWhenItsEntryIsSavedFirst) {
    type(u"of the first run"_s);
    contents().day().keepDraft();
    context.windows.unload<editor::frmContents>(); // as after a kill
    clickDay(6);
    title().clear();
    keys(title(), u"second"_s);
    answer(u"yes"_s);
    contents().day().restoreDraft();
    EXPECT_EQ(pane().text(), u"of the first run"_s);
    EXPECT_EQ(rows().first(), u"1second"_s);
    EXPECT_TRUE(contents().ChangeYesNo());
    EXPECT_TRUE(exists(draftFile()));
    EXPECT_FALSE(contents().day().hasDraft());
}

TEST_F(EditorWork, WhatIsHalfComposedIsInTheDraftOfTheEnd) {
    clickDay(6);
    keys(title(), u"t"_s);
    clickPane();
    compose(pane(), u"にっき"_s);
    shell::keepForTheEnd(context);
    EXPECT_TRUE(QString::fromUtf8(bytesOf(draftFile())).contains(u"にっき"_s));
}

TEST_F(EditorWork, ANumberThatWasSavedToIsTheOneInTheCaption) {
    writeDay({u"一"_s, u"二"_s});
    clickDay(6);
    keys(title(), u"x"_s);
    combo(u"ComboGenre"_s).lineEdit()->setText(u"新しい"_s);
    QFile::remove(session.DataPath + u"Genre.csv"_s);
    QDir().mkpath(session.DataPath + u"Genre.csv"_s); // no list can be written there
    answer(u"yes"_s);
    ++expectedFailures;
    pick(combo(u"ComboNumber"_s), 0);
    EXPECT_EQ(contents().day().number(), 1);
    EXPECT_TRUE(caption().startsWith(u"2004/05/06分の日記[1/"_s)) << caption().toStdString();
}

} // namespace
} // namespace velloria::tests
