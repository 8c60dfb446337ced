// The panes by themselves: what is typed is what is kept.
#include "desktop/combo.h"
#include "desktop/line_box.h"
#include "desktop/text_pane.h"
#include "support/desktop_home.h"
#include "support/print.h"

#include <QClipboard>
#include <QMimeData>
#include <QSignalSpy>

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

namespace velloria::desktop {
namespace {

class Pane : public ::testing::Test {
protected:
    Pane() {
        pane.resize(300, 200);
        pane.show();
        EXPECT_TRUE(tests::becomesVisible(pane));
        pane.activateWindow();
        EXPECT_TRUE(tests::becomesActive(pane));
        pane.setFocus();
    }
    void compose(const QString& preedit, const QString& commit = {}) {
        QInputMethodEvent event(preedit, {});
        event.setCommitString(commit);
        QCoreApplication::sendEvent(&pane, &event);
    }
    QClipboard& clipboard() { return *QGuiApplication::clipboard(); }

    TextPane pane;
    QSignalSpy changes{&pane, &TextPane::changed};
};

TEST_F(Pane, NothingIsLostBetweenSettingAndReading) {
    for (const QString& text : {u"a\u00A0b"_s, u"a\u2028b"_s, u"\t \u3000"_s, u"\U0001F600"_s, u"a\r\n\r\nb\r\n"_s,
                                u"\r\n"_s, u"\uFEFF\u200B"_s}) {
        pane.setText(text);
        EXPECT_EQ(pane.text(), text);
    }
}

TEST_F(Pane, AnyLineEndsBecomeCrLf) {
    pane.setText(u"a\nb\rc\r\nd\n\re"_s);
    EXPECT_EQ(pane.text(), u"a\r\nb\r\nc\r\nd\r\n\r\ne"_s);
}

TEST_F(Pane, TypedEnterIsALineEnd) {
    QTest::keyClicks(&pane, u"a"_s);
    QTest::keyClick(&pane, Qt::Key_Return);
    QTest::keyClicks(&pane, u"b"_s);
    EXPECT_EQ(pane.text(), u"a\r\nb"_s);
    EXPECT_EQ(changes.size(), 3);
}

TEST_F(Pane, OnlyAnotherTextIsAChange) {
    pane.setText(u"abc"_s);
    EXPECT_EQ(changes.size(), 1);
    pane.setText(u"abc"_s);
    QTest::keyClick(&pane, Qt::Key_Right);
    QTest::keyClick(&pane, Qt::Key_A, Qt::ControlModifier);
    pane.setFont(QFont(pane.font().family(), 20));
    EXPECT_EQ(changes.size(), 1);
    QTest::keyClick(&pane, Qt::Key_Delete);
    EXPECT_EQ(changes.size(), 2);
    QTest::keyClick(&pane, Qt::Key_Delete);
    EXPECT_EQ(changes.size(), 2);
}

TEST_F(Pane, AReplacementIsOneChange) {
    pane.setText(u"one two"_s);
    pane.selectAll();
    changes.clear();
    pane.replaceSelection(u"three\r\nfour"_s);
    EXPECT_EQ(changes.size(), 1);
    EXPECT_EQ(pane.text(), u"three\r\nfour"_s);
    EXPECT_EQ(pane.selectionStart(), 10);
}

TEST_F(Pane, PastingOverASelectionIsOneChange) {
    pane.setText(u"abc"_s);
    pane.selectAll();
    clipboard().setText(u"x\ny"_s);
    changes.clear();
    QTest::keyClick(&pane, Qt::Key_V, Qt::ControlModifier);
    EXPECT_EQ(changes.size(), 1);
    EXPECT_EQ(pane.text(), u"x\r\ny"_s);
}

TEST_F(Pane, RestoringBringsTextAndCaretBack) {
    pane.setText(u"one\r\ntwo\r\n\U0001F600"_s);
    const QString raw = pane.rawText();
    pane.setText(u"one\r\n2\r\n\U0001F601 more"_s);
    pane.restore(raw, 5);
    EXPECT_EQ(pane.text(), u"one\r\ntwo\r\n\U0001F600"_s);
    EXPECT_EQ(pane.selectionStart(), 5);
    pane.restore(u"x"_s, 99);
    EXPECT_EQ(pane.text(), u"x"_s);
    EXPECT_EQ(pane.selectionStart(), 1);
}

TEST_F(Pane, TheControlsOwnUndoNeverActs) {
    QTest::keyClicks(&pane, u"abc"_s);
    QSignalSpy undos(&pane, &TextPane::undoWanted);
    QSignalSpy redos(&pane, &TextPane::redoWanted);
    for (const QKeySequence& keys :
         QKeySequence::keyBindings(QKeySequence::Undo) + QKeySequence::keyBindings(QKeySequence::Redo))
        QTest::keyClick(&pane, keys[0].key(), keys[0].keyboardModifiers());
    QTest::keyClick(&pane, Qt::Key_Z, Qt::ControlModifier);
    QTest::keyClick(&pane, Qt::Key_Y, Qt::ControlModifier);
    pane.undo();
    pane.redo();
    EXPECT_EQ(pane.text(), u"abc"_s);
    EXPECT_GE(undos.size(), 2);
    EXPECT_GE(redos.size(), 2);
}

TEST_F(Pane, ShiftAndCtrlEnterInsertNoLineEnd) {
    QSignalSpy breaks(&pane, &TextPane::lineBreakWanted);
    QSignalSpy paragraphs(&pane, &TextPane::paragraphWanted);
    for (const Qt::Key key : {Qt::Key_Return, Qt::Key_Enter}) {
        QTest::keyClick(&pane, key, Qt::ShiftModifier);
        QTest::keyClick(&pane, key, Qt::ControlModifier);
    }
    EXPECT_EQ(breaks.size(), 2);
    EXPECT_EQ(paragraphs.size(), 2);
    EXPECT_EQ(pane.text(), u""_s);
}

TEST_F(Pane, ComposingIsNoChangeAndEachCommitIsOne) {
    for (const QString& preedit : {u"k"_s, u"か"_s, u"かん"_s, u"かんじ"_s, u"漢字"_s})
        compose(preedit);
    EXPECT_EQ(changes.size(), 0);
    EXPECT_EQ(pane.text(), u""_s);
    EXPECT_TRUE(pane.isComposing());
    compose({}, u"漢字"_s);
    EXPECT_EQ(changes.size(), 1);
    EXPECT_EQ(pane.text(), u"漢字"_s);
    EXPECT_FALSE(pane.isComposing());
}

TEST_F(Pane, ACommitThatBeginsTheNextCompositionIsOneChange) {
    compose(u"あ"_s);
    compose(u"い"_s, u"亜"_s);
    EXPECT_EQ(changes.size(), 1);
    EXPECT_EQ(pane.text(), u"亜"_s);
    compose({}, u"胃"_s);
    EXPECT_EQ(changes.size(), 2);
    EXPECT_EQ(pane.text(), u"亜胃"_s);
}

TEST_F(Pane, ComposingOverASelectionIsOneChangeAtTheCommit) {
    pane.setText(u"old"_s);
    pane.selectAll();
    changes.clear();
    compose(u"か"_s);
    EXPECT_EQ(changes.size(), 0);
    compose({}, u"加"_s);
    EXPECT_EQ(changes.size(), 1);
    EXPECT_EQ(pane.text(), u"加"_s);
}

TEST_F(Pane, ACompositionThatIsGivenUpLeavesOneChangeIfItRemovedASelection) {
    pane.setText(u"old"_s);
    changes.clear();
    compose(u"か"_s);
    compose({});
    EXPECT_EQ(changes.size(), 0);
    pane.selectAll();
    compose(u"か"_s);
    compose({});
    EXPECT_EQ(changes.size(), 1);
    EXPECT_EQ(pane.text(), u""_s);
}

TEST_F(Pane, WhatIsComposedCanBeMadeTextByTheProgram) {
    compose(u"漢字"_s);
    pane.commitComposition();
    EXPECT_EQ(pane.text(), u"漢字"_s);
    EXPECT_EQ(changes.size(), 1);
    pane.commitComposition();
    EXPECT_EQ(changes.size(), 1);
}

TEST_F(Pane, WhileComposingUndoBelongsToTheInputMethod) {
    QSignalSpy undos(&pane, &TextPane::undoWanted);
    compose(u"か"_s);
    QTest::keyClick(&pane, Qt::Key_Z, Qt::ControlModifier);
    EXPECT_EQ(undos.size(), 0);
}

TEST_F(Pane, CutAndCopyWithoutASelectionLeaveTheClipboardAlone) {
    clipboard().setText(u"kept"_s);
    pane.setText(u"text"_s);
    QTest::keyClick(&pane, Qt::Key_C, Qt::ControlModifier);
    QTest::keyClick(&pane, Qt::Key_X, Qt::ControlModifier);
    pane.copy();
    pane.cut();
    EXPECT_EQ(clipboard().text(), u"kept"_s);
    EXPECT_EQ(pane.text(), u"text"_s);
}

TEST_F(Pane, WhatIsCopiedHasTheLineEndsOfThePlatformAndLosesNothing) {
    pane.setText(u"a\u00A0\r\nb\u2028c"_s);
    pane.selectAll();
    QTest::keyClick(&pane, Qt::Key_C, Qt::ControlModifier);
    EXPECT_EQ(clipboard().text(), u"a\u00A0\nb\u2028c"_s);
    EXPECT_FALSE(clipboard().mimeData()->hasHtml());
    EXPECT_EQ(pane.selectedText(), u"a\u00A0\r\nb\u2028c"_s);
}

TEST_F(Pane, HtmlAloneAndFilesAreNoText) {
    auto* html = new QMimeData;
    html->setHtml(u"<b>x</b>"_s);
    clipboard().setMimeData(html);
    QTest::keyClick(&pane, Qt::Key_V, Qt::ControlModifier);
    EXPECT_EQ(pane.text(), u""_s);
    auto* files = new QMimeData;
    files->setUrls({QUrl::fromLocalFile(u"/tmp/a.txt"_s)});
    files->setText(u"/tmp/a.txt"_s);
    clipboard().setMimeData(files);
    QTest::keyClick(&pane, Qt::Key_V, Qt::ControlModifier);
    EXPECT_EQ(pane.text(), u""_s);
}

TEST_F(Pane, TextBesideHtmlIsPastedPlain) {
    auto* both = new QMimeData;
    both->setHtml(u"<b>x</b>"_s);
    both->setText(u"x\r\ny"_s);
    clipboard().setMimeData(both);
    QTest::keyClick(&pane, Qt::Key_V, Qt::ControlModifier);
    EXPECT_EQ(pane.text(), u"x\r\ny"_s);
}

TEST_F(Pane, TheMenuComesWhenTheRightButtonGoesUpOrAKeyAsks) {
    QSignalSpy menus(&pane, &TextPane::popUpWanted);
    pane.setText(u"abc"_s);
    pane.selectAll();
    QTest::mousePress(pane.viewport(), Qt::RightButton);
    EXPECT_EQ(menus.size(), 0);
    QTest::mouseRelease(pane.viewport(), Qt::RightButton);
    EXPECT_EQ(menus.size(), 1);
    EXPECT_EQ(pane.selectedText(), u"abc"_s) << "the menu is for the selection";
    QTest::mouseClick(pane.viewport(), Qt::LeftButton);
    EXPECT_EQ(menus.size(), 1);
    QTest::keyClick(&pane, Qt::Key_Menu);
    QTest::keyClick(&pane, Qt::Key_F10, Qt::ShiftModifier);
    EXPECT_EQ(menus.size(), 3);
    EXPECT_TRUE(QRect(pane.mapToGlobal(QPoint()), pane.size()).contains(menus.last().first().toPoint()));
}

TEST_F(Pane, MovingTextByTheMouseIsOneChange) {
    pane.setText(u"abc def"_s);
    QTextCursor cursor = pane.textCursor();
    cursor.setPosition(0);
    cursor.setPosition(3, QTextCursor::KeepAnchor);
    pane.setTextCursor(cursor);
    changes.clear();
    QMimeData data;
    data.setText(u"abc"_s);
    const QPointF end = pane.cursorRect([&] {
                                QTextCursor last = pane.textCursor();
                                last.movePosition(QTextCursor::End);
                                return last;
                            }())
                            .center();
    QDragEnterEvent enter(end.toPoint(), Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
    QCoreApplication::sendEvent(pane.viewport(), &enter);
    QDropEvent drop(end, Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
    QCoreApplication::sendEvent(pane.viewport(), &drop);
    EXPECT_EQ(pane.text(), u"abc defabc"_s);
    EXPECT_EQ(changes.size(), 1);
}

TEST_F(Pane, AFileThatIsDroppedIsNeverAnAddress) {
    LineBox line;
    for (const QString& file : {u"/tmp/a.gif"_s, u"/tmp/a.txt"_s}) {
        QMimeData data;
        data.setUrls({QUrl::fromLocalFile(file)});
        data.setText(u"file://"_s + file);
        for (QWidget* box : {static_cast<QWidget*>(&line), static_cast<QWidget*>(pane.viewport())}) {
            QDragEnterEvent enter({5, 5}, Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
            QCoreApplication::sendEvent(box, &enter);
            if (enter.isAccepted()) {
                QDropEvent drop({5, 5}, Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
                QCoreApplication::sendEvent(box, &drop);
            }
        }
    }
    EXPECT_EQ(line.text(), u""_s);
    EXPECT_EQ(pane.text(), u""_s);
    QMimeData text;
    text.setText(u"plain"_s);
    QDragEnterEvent enter({5, 5}, Qt::CopyAction, &text, Qt::LeftButton, Qt::NoModifier);
    QCoreApplication::sendEvent(&line, &enter);
    EXPECT_TRUE(enter.isAccepted());
    QDragLeaveEvent leave;
    QCoreApplication::sendEvent(&line, &leave);
}

TEST_F(Pane, APictureThatIsDroppedIsTold) {
    QSignalSpy dropped(&pane, &TextPane::imageDropped);
    QMimeData data;
    data.setUrls({QUrl::fromLocalFile(u"/tmp/a b.JPEG"_s), QUrl::fromLocalFile(u"/tmp/c.gif"_s)});
    QDragEnterEvent begin({5, 5}, Qt::MoveAction | Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
    QCoreApplication::sendEvent(pane.viewport(), &begin);
    EXPECT_TRUE(begin.isAccepted());
    QDragMoveEvent move({5, 5}, Qt::MoveAction | Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
    QCoreApplication::sendEvent(pane.viewport(), &move);
    EXPECT_TRUE(move.isAccepted());
    EXPECT_EQ(move.dropAction(), Qt::CopyAction) << "whoever moves a file removes it";
    QDropEvent drop({5, 5}, Qt::MoveAction | Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
    QCoreApplication::sendEvent(pane.viewport(), &drop);
    ASSERT_EQ(dropped.size(), 1);
    EXPECT_EQ(dropped[0][0].toString(), u"/tmp/a b.JPEG"_s);
    pane.setEnabled(false);
    QDragEnterEvent enter({5, 5}, Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
    enter.ignore();
    QCoreApplication::sendEvent(pane.viewport(), &enter);
    EXPECT_FALSE(enter.isAccepted()) << "there is no entry to show it in";
}

TEST_F(Pane, TabLeavesIt) {
    QWidget window;
    QVBoxLayout layout(&window);
    auto* first = new TextPane;
    auto* second = new QLineEdit;
    layout.addWidget(first);
    layout.addWidget(second);
    window.show();
    window.activateWindow();
    ASSERT_TRUE(tests::becomesActive(window));
    first->setFocus();
    QTest::keyClick(first, Qt::Key_Tab);
    EXPECT_TRUE(second->hasFocus());
    EXPECT_EQ(first->text(), u""_s);
}

class Boxes : public ::testing::Test {
protected:
    Boxes() {
        layout.addWidget(&box);
        layout.addWidget(&line);
        box.addItems({u"1"_s, u"2"_s, u"3"_s});
        window.show();
        EXPECT_TRUE(tests::becomesVisible(window));
        window.activateWindow();
        EXPECT_TRUE(tests::becomesActive(window));
    }
    void wheel(QWidget& widget) {
        QWheelEvent event({5, 5}, widget.mapToGlobal(QPointF(5, 5)), {}, {0, -120}, Qt::NoButton, Qt::NoModifier,
                          Qt::NoScrollPhase, false);
        QCoreApplication::sendEvent(&widget, &event);
    }

    QWidget window;
    QVBoxLayout layout{&window};
    Combo box;
    LineBox line;
};

TEST_F(Boxes, TheWheelOverAClosedBoxDoesNothing) {
    QSignalSpy picked(&box, &QComboBox::activated);
    box.setFocus();
    wheel(box);
    EXPECT_EQ(box.currentIndex(), 0);
    EXPECT_EQ(picked.size(), 0);
}

TEST_F(Boxes, KeysAtAClosedBoxThatActsOpenItsList) {
    box.setAction(true);
    QSignalSpy picked(&box, &QComboBox::activated);
    for (const Qt::Key key : {Qt::Key_Down, Qt::Key_Up, Qt::Key_PageDown, Qt::Key_End, Qt::Key_Home, Qt::Key_3}) {
        box.setFocus();
        QTest::keyClick(&box, key);
        EXPECT_TRUE(box.view()->isVisible()) << key;
        box.hidePopup();
        EXPECT_EQ(box.currentIndex(), 0);
        EXPECT_EQ(picked.size(), 0);
    }
}

TEST_F(Boxes, KeysAtAnOtherBoxChooseAsEver) {
    box.setFocus();
    QTest::keyClick(&box, Qt::Key_Down);
    EXPECT_EQ(box.currentIndex(), 1);
}

TEST_F(Boxes, ALineTellsEachChangeOnceAndNoneWhileComposing) {
    QSignalSpy changes(&line, &LineBox::changed);
    line.setFocus();
    QTest::keyClicks(&line, u"ab"_s);
    EXPECT_EQ(changes.size(), 2);
    line.selectAll();
    QInputMethodEvent preedit(u"か"_s, {});
    QCoreApplication::sendEvent(&line, &preedit);
    EXPECT_EQ(changes.size(), 2);
    EXPECT_TRUE(line.isComposing());
    line.commitComposition();
    EXPECT_EQ(changes.size(), 3);
    EXPECT_EQ(line.text(), u"か"_s);
    line.setText(u"か"_s);
    EXPECT_EQ(changes.size(), 3);
}

TEST_F(Boxes, ALongLineIsNotCut) {
    const QString text(100'000, QChar(u'長'));
    line.setText(text);
    EXPECT_EQ(line.text().size(), text.size());
}

TEST_F(Boxes, LineBreaksInALineBecomeBlanksAndTheCaretStays) {
    line.setText(u"a\r\nb\nc"_s);
    EXPECT_EQ(line.text(), u"a b c"_s);
    line.clear();
    QGuiApplication::clipboard()->setText(u"x\ny"_s);
    line.setText(u"12"_s);
    line.setCursorPosition(1);
    line.paste();
    EXPECT_EQ(line.text(), u"1x y2"_s);
    EXPECT_EQ(line.cursorPosition(), 4);
}

} // namespace
} // namespace velloria::desktop
