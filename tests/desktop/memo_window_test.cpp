// The window of the memo program.
#include "memo/forms/frmMemo.h"

#include "desktop/text_pane.h"
#include "memo/memo_home.h"
#include "support/desktop_home.h"

#include <QCheckBox>
#include <QComboBox>
#include <QDir>
#include <QInputDialog>
#include <QLabel>
#include <QMenuBar>
#include <QPushButton>
#include <QTreeWidget>

using namespace Qt::StringLiterals;

namespace velloria::tests {
namespace {

class MemoWindow : public MemoHome {
protected:
    memo::frmMemo& open() {
        window.emplace(run);
        EXPECT_TRUE(window->begin());
        window->activateWindow();
        EXPECT_TRUE(becomesActive(*window));
        return *window;
    }
    void TearDown() override {
        if (window)
            window.reset();
        settle();
    }

    template <class Control = QWidget>
    Control& find(const QString& name) {
        return control<Control>(*window, name);
    }
    QTreeView& list() { return find<QTreeView>(u"lstMemos"_s); }
    desktop::TextPane& pane() { return find<desktop::TextPane>(u"txtMemo"_s); }
    QLineEdit& title() { return find<QLineEdit>(u"txtTitle"_s); }
    QComboBox& category() { return find<QComboBox>(u"cmbCategory"_s); }
    QCheckBox& lock() { return find<QCheckBox>(u"chkLock"_s); }

    QStringList shown() {
        QStringList titles;
        for (int i = 0; i < list().model()->rowCount(); ++i)
            titles += list().model()->index(i, 0).data().toString();
        return titles;
    }
    void pick(const QString& wanted) {
        list().setCurrentIndex(list().model()->index(int(shown().indexOf(wanted)), 0));
        settle();
    }
    void click(const QString& button) {
        QTest::mouseClick(&find<QPushButton>(button), Qt::LeftButton);
        settle();
    }
    void press(Qt::Key key, Qt::KeyboardModifiers modifiers = Qt::ControlModifier) {
        EXPECT_TRUE(becomesActive(*window));
        QTest::keyClick(window->focusWidget() ? window->focusWidget() : &*window, key, modifiers);
        settle();
    }
    /// As an input method does.
    static void type(QWidget& control, const QString& text) {
        control.setFocus();
        QInputMethodEvent event;
        event.setCommitString(text);
        QCoreApplication::sendEvent(&control, &event);
    }
    /// Answers the next question with the button of this caption.
    static void answer(const QString& caption) {
        whenShown<QMessageBox>([caption](QMessageBox& box) {
            for (QAbstractButton* button : box.buttons()) {
                if (button->text() == caption)
                    return button->click();
            }
            ADD_FAILURE() << "no such button: " << caption.toStdString();
            box.reject();
        });
    }
    /// Into the next prompt; `next` follows when that is gone.
    static void typePassword(
        const QString& password, const std::function<void()>& next = [] {}) {
        whenShown<QInputDialog>([=](QInputDialog& dialog) {
            auto* edit = dialog.findChild<QLineEdit*>();
            EXPECT_EQ(edit->echoMode(), QLineEdit::Password);
            edit->setText(password);
            QObject::connect(&dialog, &QObject::destroyed, qApp, next);
            dialog.accept();
        });
    }

    std::optional<memo::frmMemo> window;
};

TEST_F(MemoWindow, SavesANewMemoAsItIsTyped) {
    open();
    press(Qt::Key_N);
    EXPECT_EQ(window->focusWidget(), &title());
    type(title(), u"買い物"_s);
    type(*category().lineEdit(), u"生活"_s);
    type(pane(), u"牛乳 "_s);
    QTest::keyClick(&pane(), Qt::Key_Return);
    type(pane(), u"  卵"_s);
    EXPECT_TRUE(window->isWindowModified());
    press(Qt::Key_S);
    EXPECT_FALSE(window->isWindowModified());
    EXPECT_EQ(sqlValue(u"SELECT PublishTime || Title || replace(Memo, char(13, 10), '|') || No || Category || IsPass "
                       u"FROM Memo"_s),
              u"2026/11/23 10:00:00買い物牛乳 |  卵1生活0"_s);
    EXPECT_EQ(shown(), QStringList{u"買い物"_s});
    EXPECT_EQ(find<QLabel>(u"labelTime"_s).text(), u"保存した日時: 2026/11/23 10:00:00"_s);
    EXPECT_EQ(find<QComboBox>(u"cmbFilter"_s).itemText(2), u"生活"_s);
    EXPECT_FALSE(exists(draftFile()));
    EXPECT_EQ(told(), QStringList());
}

TEST_F(MemoWindow, LeavesWhatIsNotChangedAsItStands) {
    sql(u"INSERT INTO Memo VALUES ('2026/01/01 00:00:00', 'a' || char(10) || 'b', 'x' || char(10) || 'y', 9, NULL, 0)"_s);
    open();
    list().setCurrentIndex(list().model()->index(0, 0));
    settle();
    EXPECT_EQ(pane().text(), u"x\r\ny"_s);
    EXPECT_FALSE(window->isWindowModified());
    QTest::keyClicks(category().lineEdit(), u"c"_s);
    press(Qt::Key_S);
    EXPECT_EQ(sqlValue(u"SELECT quote(hex(Title)) || hex(Memo) || No || Category FROM Memo"_s), u"'610A62'780A799c"_s);
}

TEST_F(MemoWindow, ShowsMemosOfOldDiariesWithoutTheirValues) {
    sql(u"INSERT INTO Memo VALUES (NULL, NULL, NULL, NULL, NULL, 0)"_s);
    open();
    EXPECT_EQ(shown(), QStringList{u"(無題)"_s});
    pick(u"(無題)"_s);
    EXPECT_EQ(pane().text(), QString());
    EXPECT_FALSE(window->isWindowModified());
    EXPECT_TRUE(find<QPushButton>(u"Btn_Delete"_s).isEnabled());
}

TEST_F(MemoWindow, FindsAndFilters) {
    store(u"ＡＢＣ"_s, u"x"_s, u"仕事"_s);
    store(u"none"_s, u"がぎぐ"_s);
    open();
    press(Qt::Key_F);
    EXPECT_EQ(window->focusWidget(), &find(u"txtFind"_s));
    type(find(u"txtFind"_s), u"ｶﾞｷﾞ"_s);
    EXPECT_TRUE(waitFor([&] { return shown() == QStringList{u"none"_s}; }));
    find<QLineEdit>(u"txtFind"_s).clear();
    EXPECT_TRUE(waitFor([&] { return shown().size() == 2; }));
    auto& filter = find<QComboBox>(u"cmbFilter"_s);
    for (const auto& [item, titles] : {std::pair{2, u"ＡＢＣ"_s}, std::pair{1, u"none"_s}}) {
        filter.setCurrentIndex(item);
        Q_EMIT filter.activated(item);
        EXPECT_EQ(shown(), QStringList{titles});
    }
}

TEST_F(MemoWindow, AsksBeforeItLeavesAMemoThatIsNotSaved) {
    store(u"one"_s, u"first"_s);
    store(u"two"_s, u"second"_s);
    open();
    pick(u"one"_s);
    type(pane(), u"x"_s);
    answer(u"キャンセル"_s);
    pick(u"two"_s);
    EXPECT_EQ(pane().text(), u"xfirst"_s);
    EXPECT_EQ(list().currentIndex().data().toString(), u"one"_s);
    answer(u"保存しない(&N)"_s);
    pick(u"two"_s);
    EXPECT_EQ(pane().text(), u"second"_s);
    EXPECT_EQ(sqlValue(u"SELECT Memo FROM Memo WHERE Title = 'one'"_s), u"first"_s);
    type(pane(), u"y"_s);
    answer(u"保存する(&S)"_s);
    pick(u"one"_s);
    EXPECT_EQ(pane().text(), u"first"_s);
    EXPECT_EQ(sqlValue(u"SELECT Memo FROM Memo WHERE Title = 'two'"_s), u"ysecond"_s);
}

TEST_F(MemoWindow, AsksBeforeItClosesOrBeginsANewOne) {
    store(u"one"_s, u"first"_s);
    open();
    pick(u"one"_s);
    type(pane(), u"x"_s);
    answer(u"キャンセル"_s);
    window->close();
    EXPECT_TRUE(window->isVisible());
    answer(u"キャンセル"_s);
    press(Qt::Key_N);
    EXPECT_EQ(pane().text(), u"xfirst"_s);
    answer(u"保存しない(&N)"_s);
    window->close();
    EXPECT_FALSE(window->isVisible());
}

TEST_F(MemoWindow, StaysWhenTheSaveOnTheWayOutIsRefused) {
    store(u"one"_s, u"first"_s);
    open();
    pick(u"one"_s);
    type(pane(), u"x"_s);
    sql(u"CREATE INDEX refuse ON Memo (abs(CASE WHEN Memo > 'w' THEN -9223372036854775807 - 1 ELSE 0 END))"_s);
    answer(u"保存する(&S)"_s);
    window->close();
    EXPECT_TRUE(window->isVisible());
    EXPECT_EQ(pane().text(), u"xfirst"_s);
    EXPECT_TRUE(window->isWindowModified());
    EXPECT_EQ(desk.texts(u"failure"_s).size(), 1);
    EXPECT_EQ(sqlValue(u"SELECT Memo FROM Memo"_s), u"first"_s);
}

TEST_F(MemoWindow, DeletesAfterAQuestionByItsButtonAndByTheKeyInTheListAlone) {
    store(u"one"_s, u"first"_s);
    store(u"two"_s, u"second"_s);
    open();
    pick(u"one"_s);
    desk.answers = {u"no"_s, u"yes"_s};
    click(u"Btn_Delete"_s);
    EXPECT_EQ(shown().size(), 2);
    pane().setFocus();
    press(Qt::Key_Delete, Qt::NoModifier);
    EXPECT_EQ(pane().text(), u"irst"_s);
    press(Qt::Key_S);
    list().setFocus();
    press(Qt::Key_Delete, Qt::NoModifier);
    EXPECT_EQ(shown(), QStringList{u"two"_s});
    EXPECT_EQ(pane().text(), QString());
    EXPECT_TRUE(rescued().contains("irst"));
}

TEST_F(MemoWindow, OverwritesNoChangeOfAnotherProgramUnasked) {
    store(u"one"_s, u"first"_s);
    open();
    pick(u"one"_s);
    type(pane(), u"x"_s);
    sql(u"UPDATE Memo SET Memo = 'theirs'"_s);
    answer(u"キャンセル"_s);
    press(Qt::Key_S);
    EXPECT_EQ(sqlValue(u"SELECT Memo FROM Memo"_s), u"theirs"_s);
    EXPECT_TRUE(window->isWindowModified());
    answer(u"別のメモとして保存(&N)"_s);
    press(Qt::Key_S);
    EXPECT_EQ(sqlValue(u"SELECT group_concat(Memo || No) FROM Memo"_s), u"theirs1,xfirst2"_s);
    EXPECT_FALSE(window->isWindowModified());
    type(pane(), u"y"_s);
    sql(u"UPDATE Memo SET Memo = 'again' WHERE No = 2"_s);
    answer(u"上書き(&O)"_s);
    press(Qt::Key_S);
    EXPECT_EQ(sqlValue(u"SELECT Memo FROM Memo WHERE No = 2"_s), u"xyfirst"_s);
    EXPECT_TRUE(rescued().contains("again"));
}

TEST_F(MemoWindow, SavesAMemoThatAnotherProgramRemovedAsANewOne) {
    store(u"one"_s, u"first"_s);
    open();
    pick(u"one"_s);
    type(pane(), u"x"_s);
    sql(u"DELETE FROM Memo"_s);
    answer(u"別のメモとして保存(&N)"_s);
    press(Qt::Key_S);
    EXPECT_EQ(sqlValue(u"SELECT group_concat(Memo) FROM Memo"_s), u"xfirst"_s);
}

TEST_F(MemoWindow, DeletesNothingThatAnotherProgramChanged) {
    store(u"one"_s, u"first"_s);
    open();
    pick(u"one"_s);
    sql(u"UPDATE Memo SET Memo = 'theirs'"_s);
    desk.answers = {u"yes"_s};
    click(u"Btn_Delete"_s);
    EXPECT_EQ(sqlValue(u"SELECT Memo FROM Memo"_s), u"theirs"_s);
    EXPECT_EQ(boxes().back(), u"exclamation: このメモは、ほかのプログラムが変更したので、削除しませんでした。"_s);
}

TEST_F(MemoWindow, ShowsALockedMemoAfterThePassword) {
    logIn();
    store(u"secret"_s, u"its text"_s, u"cat"_s, true);
    open();
    pick(u"secret"_s);
    EXPECT_EQ(pane().text(), QString());
    EXPECT_FALSE(pane().isVisible());
    EXPECT_FALSE(lock().isEnabled());
    EXPECT_FALSE(find<QPushButton>(u"Btn_Save"_s).isEnabled());
    typePassword(u"abc"_s);
    click(u"Btn_Unlock"_s);
    EXPECT_TRUE(pane().isVisible());
    EXPECT_EQ(pane().text(), u"its text"_s);
    press(Qt::Key_L);
    EXPECT_FALSE(pane().isVisible());
    EXPECT_EQ(pane().text(), QString());
}

TEST_F(MemoWindow, RemovesALockedMemoOnlyAfterThePassword) {
    logIn();
    store(u"secret"_s, u"its text"_s, u"cat"_s, true);
    open();
    pick(u"secret"_s);
    whenShown<QInputDialog>([](QInputDialog& dialog) { dialog.reject(); });
    click(u"Btn_Delete"_s);
    EXPECT_EQ(sqlValue(u"SELECT count(*) FROM Memo"_s), u"1"_s);
    desk.answers = {u"yes"_s};
    typePassword(u"abc"_s);
    click(u"Btn_Delete"_s);
    EXPECT_EQ(sqlValue(u"SELECT count(*) FROM Memo"_s), u"0"_s);
}

TEST_F(MemoWindow, LocksAndUnlocksAMemoByItsBox) {
    logIn();
    store(u"one"_s, u"text"_s);
    open();
    pick(u"one"_s);
    QTest::mouseClick(&lock(), Qt::LeftButton, {}, QPoint(8, lock().height() / 2));
    press(Qt::Key_S);
    EXPECT_EQ(sqlValue(u"SELECT IsPass FROM Memo"_s), u"1"_s);
    EXPECT_EQ(pane().text(), u"text"_s) << "who locks it has it before them";
    click(u"Btn_New"_s);
    pick(u"one"_s);
    EXPECT_EQ(pane().text(), QString());
}

TEST_F(MemoWindow, SaysThatWithoutAPasswordNothingIsLocked) {
    store(u"one"_s, u"text"_s);
    open();
    pick(u"one"_s);
    QTest::mouseClick(&lock(), Qt::LeftButton, {}, QPoint(8, lock().height() / 2));
    EXPECT_FALSE(lock().isChecked());
    EXPECT_TRUE(boxes().back().contains(u"パスワードが設定されていないので、ロックできません。"_s));
    find<QAction>(u"actAskAtStart"_s).trigger();
    EXPECT_FALSE(find<QAction>(u"actAskAtStart"_s).isChecked());
    EXPECT_TRUE(boxes().back().contains(u"パスワードが設定されていないので、起動時に確認できません。"_s));
    EXPECT_EQ(sqlValue(u"SELECT IsMemoPass FROM DBInfo"_s), u"0"_s);
}

TEST_F(MemoWindow, ThatAsksAtTheStartShowsNothingWithoutThePassword) {
    logIn();
    sql(u"UPDATE DBInfo SET IsMemoPass = 1"_s);
    window.emplace(run);
    whenShown<QInputDialog>([this](QInputDialog& dialog) {
        EXPECT_FALSE(window->isVisible());
        dialog.reject();
    });
    EXPECT_FALSE(window->begin());
    EXPECT_FALSE(window->isVisible());
    typePassword(u"wrong"_s, [] { whenShown<QInputDialog>([](QInputDialog& dialog) { dialog.reject(); }); });
    EXPECT_FALSE(window->begin());
    EXPECT_EQ(boxes().back(), u"exclamation: パスワードが一致しませんでした。"_s);
    typePassword(u"abc"_s);
    EXPECT_TRUE(window->begin());
    EXPECT_TRUE(find<QAction>(u"actAskAtStart"_s).isChecked());
    find<QAction>(u"actAskAtStart"_s).trigger();
    EXPECT_EQ(sqlValue(u"SELECT IsMemoPass FROM DBInfo"_s), u"0"_s);
}

TEST_F(MemoWindow, KeepsADraftAndBringsItBack) {
    store(u"one"_s, u"first"_s);
    open();
    pick(u"one"_s);
    type(pane(), u"x"_s);
    EXPECT_TRUE(waitFor([&] { return exists(draftFile()); }));
    window.reset(); // as a crash leaves it
    desk.answers = {u"yes"_s};
    open();
    EXPECT_EQ(pane().text(), u"xfirst"_s);
    EXPECT_EQ(list().currentIndex().data().toString(), u"one"_s);
    EXPECT_TRUE(window->isWindowModified());
    press(Qt::Key_S);
    EXPECT_EQ(sqlValue(u"SELECT group_concat(Memo) FROM Memo"_s), u"xfirst"_s);
    EXPECT_FALSE(exists(draftFile()));
}

TEST_F(MemoWindow, OfADraftWhoseMemoWasChangedMakesANewOne) {
    store(u"one"_s, u"first"_s);
    open();
    pick(u"one"_s);
    type(pane(), u"x"_s);
    window->keepDraft();
    window.reset();
    sql(u"UPDATE Memo SET PublishTime = '2026/11/23 11:00:00', Memo = 'theirs'"_s);
    desk.answers = {u"yes"_s};
    open();
    press(Qt::Key_S);
    EXPECT_EQ(sqlValue(u"SELECT group_concat(Memo || No) FROM Memo"_s), u"theirs1,xfirst2"_s);
}

TEST_F(MemoWindow, PutsADraftThatIsNotWantedIntoTheRescueFile) {
    open();
    type(pane(), u"unwanted"_s);
    window->keepDraft();
    window.reset();
    desk.answers = {u"no"_s};
    open();
    EXPECT_EQ(pane().text(), QString());
    EXPECT_FALSE(exists(draftFile()));
    EXPECT_TRUE(rescued().contains("unwanted"));
}

TEST_F(MemoWindow, ShowsTheDraftOfALockedMemoAfterThePassword) {
    logIn();
    store(u"secret"_s, u"its text"_s, {}, true);
    open();
    pick(u"secret"_s);
    typePassword(u"abc"_s);
    click(u"Btn_Unlock"_s);
    type(pane(), u"x"_s);
    window->keepDraft();
    window.reset();
    desk.answers = {u"yes"_s, u"yes"_s};
    whenShown<QInputDialog>([](QInputDialog& dialog) { dialog.reject(); });
    open();
    EXPECT_EQ(pane().text(), QString());
    EXPECT_TRUE(exists(draftFile()));
    window.reset();
    typePassword(u"abc"_s);
    open();
    EXPECT_EQ(pane().text(), u"xits text"_s);
}

TEST_F(MemoWindow, ShowsADraftWhoseLockWasTakenOffAfterThePasswordWhateverBecameOfItsMemo) {
    logIn();
    for (const QString& meanwhile :
         {u"UPDATE Memo SET PublishTime = '2026/11/23 11:00:00', Memo = 'theirs'"_s,
          u"UPDATE Memo SET PublishTime = '2026/11/23 11:00:00', IsPass = 0"_s, u"DELETE FROM Memo"_s}) {
        sql(u"DELETE FROM Memo"_s);
        store(u"secret"_s, u"its text"_s, {}, true);
        open();
        pick(u"secret"_s);
        typePassword(u"abc"_s);
        click(u"Btn_Unlock"_s);
        QTest::mouseClick(&lock(), Qt::LeftButton, {}, QPoint(8, lock().height() / 2));
        EXPECT_FALSE(lock().isChecked());
        window->keepDraft();
        window.reset(); // as a crash leaves it
        sql(meanwhile);
        desk.answers = {u"yes"_s, u"yes"_s};
        whenShown<QInputDialog>([](QInputDialog& dialog) { dialog.reject(); });
        open();
        EXPECT_EQ(pane().text(), QString()) << meanwhile.toStdString();
        EXPECT_EQ(title().text(), QString());
        EXPECT_TRUE(exists(draftFile()));
        window.reset();
        typePassword(u"abc"_s);
        open();
        EXPECT_EQ(pane().text(), u"its text"_s);
        EXPECT_FALSE(lock().isChecked()) << "as it was typed";
        window->keepDraft();
        window.reset();
        QFile::remove(draftFile());
    }
}

TEST_F(MemoWindow, ShowsADraftOfAMemoThatWasLockedSinceAfterThePassword) {
    logIn();
    store(u"title"_s, u"its text"_s);
    open();
    pick(u"title"_s);
    type(pane(), u"x"_s);
    window->keepDraft();
    window.reset();
    sql(u"UPDATE Memo SET PublishTime = '2026/11/23 11:00:00', IsPass = 1"_s);
    desk.answers = {u"yes"_s};
    whenShown<QInputDialog>([](QInputDialog& dialog) { dialog.reject(); });
    open();
    EXPECT_EQ(pane().text(), QString());
}

TEST_F(MemoWindow, KeepsADraftThatItCantShowOrPutAway) {
    open();
    type(pane(), u"first"_s);
    window->keepDraft();
    window.reset();
    ASSERT_TRUE(QDir().mkdir(session.UserPath + u"memo_rescue.jsonl"_s));
    desk.answers = {u"no"_s};
    open();
    EXPECT_EQ(desk.texts(u"failure"_s).size(), 1);
    type(pane(), u"second"_s);
    window->keepDraft();
    EXPECT_TRUE(bytesOf(draftFile()).contains("first"));
    EXPECT_TRUE(bytesOf(draftFile()).contains("second"));
}

TEST_F(MemoWindow, SaysWhatBecomesOfADraftWhereNothingIsKept) {
    core::WriteIni(session.DiaryIniFile, u"ALL"_s, u"Rescue"_s, u"0"_s);
    open();
    type(pane(), u"unwanted"_s);
    window->keepDraft();
    window.reset();
    desk.answers = {u"no"_s};
    open();
    EXPECT_TRUE(told().join(u' ').contains(u"「いいえ」を選ぶと、消えます。"_s)) << told().join(u' ').toStdString();
    EXPECT_FALSE(exists(draftFile()));
    EXPECT_EQ(rescued(), QByteArray());
}

TEST_F(MemoWindow, PutsARemovedMemoBackAsANewOne) {
    store(u"one"_s, u"first\r\ntext"_s, u"cat"_s);
    store(u"two"_s, u"second"_s);
    open();
    find<QAction>(u"actPutBack"_s).trigger();
    EXPECT_EQ(boxes().back(), u"exclamation: 控えはありません。"_s);
    for (const QString& one : {u"one"_s, u"two"_s}) {
        pick(one);
        desk.answers = {u"yes"_s};
        click(u"Btn_Delete"_s);
    }
    whenShown<QDialog>([](QDialog& dialog) {
        auto* list = dialog.findChild<QTreeWidget*>(u"lstKept"_s);
        ASSERT_EQ(list->topLevelItemCount(), 2);
        EXPECT_EQ(list->currentItem()->text(2), u"two"_s) << "the newest first";
        EXPECT_EQ(list->topLevelItem(1)->text(1), u"削除"_s);
        list->setCurrentItem(list->topLevelItem(1));
        EXPECT_EQ(dialog.findChild<QPlainTextEdit*>(u"txtKept"_s)->toPlainText(), u"first\ntext"_s);
        dialog.findChild<QPushButton*>(u"Btn_PutBack"_s)->click();
    });
    find<QAction>(u"actPutBack"_s).trigger();
    EXPECT_EQ(shown(), QStringList{u"one"_s});
    EXPECT_EQ(list().currentIndex().data().toString(), u"one"_s);
    EXPECT_EQ(pane().text(), u"first\r\ntext"_s);
    EXPECT_FALSE(window->isWindowModified());
    EXPECT_EQ(sqlValue(u"SELECT Title || hex(Memo) || Category FROM Memo"_s), u"one66697273740D0A74657874cat"_s);
}

TEST_F(MemoWindow, PutsNothingBackBeforeThePasswordAndWhatIsTyped) {
    logIn();
    store(u"secret"_s, u"its text"_s, {}, true);
    sql(u"DELETE FROM Memo"_s);
    writeFile(session.UserPath + u"memo_rescue.jsonl"_s, "{\"Title\":\"t\",\"Memo\":\"kept\"}\n");
    open();
    whenShown<QInputDialog>([](QInputDialog& dialog) { dialog.reject(); });
    find<QAction>(u"actPutBack"_s).trigger();
    EXPECT_EQ(shown(), QStringList());
    type(pane(), u"typed"_s);
    typePassword(u"abc"_s);
    QTimer::singleShot(200, [] {
        answer(u"キャンセル"_s);
        whenShown<QDialog>([](QDialog& dialog) { dialog.findChild<QPushButton*>(u"Btn_PutBack"_s)->click(); });
    });
    find<QAction>(u"actPutBack"_s).trigger();
    EXPECT_EQ(pane().text(), u"typed"_s);
    EXPECT_EQ(sqlValue(u"SELECT count(*) FROM Memo"_s), u"0"_s);
    answer(u"保存しない(&N)"_s);
    window->close();
}

TEST_F(MemoWindow, UndoesWithinAMemoAndNotBackToTheLastOne) {
    store(u"one"_s, u"first"_s);
    open();
    pick(u"one"_s);
    pane().setFocus();
    press(Qt::Key_Z);
    EXPECT_EQ(pane().text(), u"first"_s);
    type(pane(), u"x"_s);
    press(Qt::Key_Z);
    EXPECT_EQ(pane().text(), u"first"_s);
    press(Qt::Key_Y);
    EXPECT_EQ(pane().text(), u"xfirst"_s);
    window->Btn_Save_Click();
}

TEST_F(MemoWindow, SpeaksEnglishWhereTheMenusDo) {
    core::WriteIni(session.DiaryIniFile, u"ALL"_s, u"MenuLanguage"_s, u"English"_s);
    sql(u"INSERT INTO Memo (Title) VALUES (NULL)"_s);
    open();
    EXPECT_EQ(window->windowTitle(), u"VellMemo[*]"_s);
    EXPECT_EQ(shown(), QStringList{u"(untitled)"_s});
    static const QRegularExpression japanese(u"[\u3040-\u30FF\u4E00-\u9FFF]"_s);
    for (const QWidget* widget : window->findChildren<QWidget*>()) {
        for (const char* property : {"text", "title", "accessibleName", "toolTip", "statusTip"})
            EXPECT_FALSE(widget->property(property).toString().contains(japanese))
                << widget->objectName().toStdString() << " " << widget->property(property).toString().toStdString();
    }
    for (const QAction* action : window->findChildren<QAction*>())
        EXPECT_FALSE(action->text().contains(japanese)) << action->text().toStdString();
    for (int i = 0; i < list().model()->columnCount(); ++i)
        EXPECT_FALSE(list().model()->headerData(i, Qt::Horizontal).toString().contains(japanese));
}

TEST_F(MemoWindow, NamesEveryControlAndLeadsTheTabKeyThroughAll) {
    open();
    QStringList way;
    find(u"txtFind"_s).setFocus();
    for (int i = 0; i < 12; ++i) {
        const QWidget* focus = window->focusWidget();
        const auto* button = qobject_cast<const QAbstractButton*>(focus);
        EXPECT_FALSE(focus->accessibleName().isEmpty() && (!button || button->text().isEmpty()))
            << focus->objectName().toStdString();
        way +=
            qobject_cast<QComboBox*>(focus->parentWidget()) ? focus->parentWidget()->objectName() : focus->objectName();
        QTest::keyClick(window->focusWidget(), Qt::Key_Tab);
    }
    way.removeDuplicates();
    EXPECT_EQ(way, (QStringList{u"txtFind"_s, u"cmbFilter"_s, u"lstMemos"_s, u"Btn_New"_s, u"txtTitle"_s,
                                u"cmbCategory"_s, u"txtMemo"_s, u"chkLock"_s, u"Btn_Save"_s}));
}

TEST_F(MemoWindow, NoKeyHasTwoMeanings) {
    for (const QString& language : {u"Japanese"_s, u"English"_s}) {
        core::WriteIni(session.DiaryIniFile, u"ALL"_s, u"MenuLanguage"_s, language);
        open();
        QStringList captions;
        for (const QAction* action : window->menuBar()->actions())
            captions += action->text();
        for (const auto* label : window->findChildren<QLabel*>())
            captions += label->buddy() ? label->text() : QString();
        for (const auto* button : window->findChildren<QAbstractButton*>())
            captions += button->text();
        QSet<QString> keys;
        for (const QString& caption : captions) {
            const QString key = QKeySequence::mnemonic(caption).toString();
            EXPECT_FALSE(!key.isEmpty() && keys.contains(key)) << key.toStdString() << caption.toStdString();
            keys.insert(key);
        }
        window.reset();
    }
}

TEST_F(MemoWindow, ComesUpWhereItWasLeft) {
    open();
    window->setGeometry(120, 90, 700, 450);
    settle();
    const QSize size = window->size();
    window->close();
    window.reset();
    open();
    EXPECT_EQ(window->size(), size);
    EXPECT_FALSE(core::ReadIni(session.DiaryIniFile, u"Memo"_s, u"Width"_s).isEmpty());
}

} // namespace
} // namespace velloria::tests
