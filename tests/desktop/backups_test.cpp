// The copies of the diary as a person works them.
#include "editor_home.h"
#include "registers/forms/frmResistLogs.h"
#include "shell/forms/desktop_start.h"
#include "shell/forms/frmBackups.h"
#include "store/diary_backups.h"

#include <QListWidget>
#include <QTreeWidget>

using namespace Qt::StringLiterals;

namespace velloria::tests {
namespace {

class Backups : public EditorHome {
protected:
    void SetUp() override {
        EditorHome::SetUp();
        store::Entry old = entryOf(kDay, u"old"_s);
        old.genre = u"forgotten"_s;
        write(old);
        store::makeBackup(run);
        setNow(u"2004/05/07 08:00:00"_s);
        old.title = u"changed"_s;
        old.number = 1;
        diary().saveEntries({old}, store::PublishTime::Now, {});
        write(kDay, u"new"_s);
        clickDay(6);
        desk.events = {};
    }
    shell::frmBackups& open() {
        top().findChild<QAction*>(u"MnuBackups"_s)->trigger();
        auto* window = context.windows.find<shell::frmBackups>();
        if (!window)
            throw std::runtime_error("the window did not open");
        EXPECT_TRUE(becomesActive(*window));
        settle();
        return *window;
    }
    QTreeWidget& list() { return control<QTreeWidget>(*context.windows.find<shell::frmBackups>(), u"BackupList"_s); }
    QStringList row(int index) {
        QStringList texts;
        for (int column = 0; column < list().columnCount(); ++column)
            texts += list().topLevelItem(index)->text(column);
        return texts;
    }
    void click(const QString& button) {
        QTest::mouseClick(&control<QPushButton>(*context.windows.find<shell::frmBackups>(), button), Qt::LeftButton);
        settle();
    }
    void select(int index) { list().setCurrentItem(list().topLevelItem(index)); }
};

TEST_F(Backups, AreListedWithWhatTheyHold) {
    open();
    ASSERT_EQ(list().topLevelItemCount(), 1);
    EXPECT_EQ(row(0), (QStringList{u"2004/05/06 00:00"_s, u"1"_s, u"old"_s, u"36 KB"_s, u"diary-20040506.mdb"_s}));
    click(u"Btn_Make"_s);
    ASSERT_EQ(list().topLevelItemCount(), 2);
    EXPECT_EQ(row(0), (QStringList{u"2004/05/07 00:00"_s, u"2"_s, u"new"_s, u"36 KB"_s, u"diary-20040507.mdb"_s}));
    EXPECT_EQ(lastStatus(), u"バックアップ「diary-20040507.mdb」を作成しました。"_s);
}

TEST_F(Backups, NothingIsRestoredThatNobodyChose) {
    open();
    click(u"Btn_Restore"_s);
    EXPECT_EQ(lastStatus(), u"復元するバックアップが選択されていません。"_s);
    select(0);
    desk.answers = {u"no"_s};
    click(u"Btn_Restore"_s);
    EXPECT_EQ(lastStatus(), u"復元を中止しました。"_s);
    EXPECT_EQ(title().text(), u"new"_s);
}

TEST_F(Backups, TheWindowsShowTheRestoredDiary) {
    sql(u"INSERT INTO LogDB (LogMonth, LogFileName) VALUES ('2004/04', 'x.htm')"_s);
    auto& logs = shownWindow<registers::frmResistLogs>(context);
    EXPECT_EQ(control<QListWidget>(logs, u"ResisterdList"_s).count(), 1);
    writeFile(session.DataPath + u"Genre.csv"_s, "\x88\xea\x94\xca\r\n");
    open();
    select(0);
    desk.answers = {u"yes"_s};
    click(u"Btn_Restore"_s);
    EXPECT_EQ(title().text(), u"old"_s);
    EXPECT_EQ(combo(u"ComboNumber"_s).count(), 1);
    EXPECT_GE(combo(u"ComboGenre"_s).findText(u"forgotten"_s), 0);
    EXPECT_EQ(control<QListWidget>(logs, u"ResisterdList"_s).count(), 0);
    ASSERT_EQ(list().topLevelItemCount(), 3);
    for (int copy : {0, 1})
        EXPECT_EQ(row(copy).at(2), u"new"_s) << "the copy of what was there, and itself";
    EXPECT_TRUE(pageOf(session.DataPath + u"tmp.htm"_s).contains(u"old"_s));
}

TEST_F(Backups, UnsavedTextIsAskedAboutFirstAndKeptWhenItIsDropped) {
    title().setText(u"unsaved"_s);
    open();
    select(0);
    desk.answers = {u"no"_s, u"no"_s};
    click(u"Btn_Restore"_s);
    EXPECT_EQ(title().text(), u"unsaved"_s);
    EXPECT_TRUE(isSavable()) << "the text is still unsaved";
    desk.answers = {u"no"_s, u"yes"_s};
    click(u"Btn_Restore"_s);
    EXPECT_EQ(title().text(), u"old"_s);
    EXPECT_FALSE(isSavable());
    EXPECT_TRUE(bytesOf(session.UserPath + u"rescue.jsonl"_s).contains("unsaved"));
}

TEST_F(Backups, ARefusedRestoreLeavesTheTextUnsaved) {
    title().setText(u"unsaved"_s);
    open();
    select(0);
    writeFile(session.UserPath + u"Backup/diary-20040506.mdb"_s, "damaged meanwhile");
    desk.answers = {u"no"_s};
    expectedFailures = 1;
    click(u"Btn_Restore"_s);
    EXPECT_EQ(title().text(), u"unsaved"_s);
    EXPECT_TRUE(isSavable());
}

TEST_F(Backups, WaitForTheEndOfNetworkWork) {
    open();
    select(0);
    context.runs.run(desktop::LongRoutine::Upload, [this] { click(u"Btn_Restore"_s); });
    EXPECT_TRUE(boxes().last().contains(u"通信中は日記を復元できません。"_s));
    EXPECT_EQ(title().text(), u"new"_s);
}

class BackupNotice : public FactoryHome {
protected:
    ~BackupNotice() override { tidyUp(context, home); }
    desktop::Context context{run};
};

TEST_F(BackupNotice, OfAFailedCopyIsThereBehindTheStart) {
    start();
    store::Entry entry;
    entry.day = u"2004/05/06"_s;
    store::DiaryStore(run).saveEntries({entry}, store::PublishTime::Now, {});
    writeFile(session.UserPath + u"Backup"_s, "in its place");
    ASSERT_EQ(shell::startDesktop(context, home.path()), shell::StartResult::Ready);
    settle();
    EXPECT_TRUE(lastStatus().startsWith(u"日記のバックアップを作成できません"_s)) << lastStatus().toStdString();
}

} // namespace
} // namespace velloria::tests
