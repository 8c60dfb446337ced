// The calendar window: days, new entries, deleting.
#include "desktop/editor_home.h"

#include "core/keys.h"
#include "core/settings.h"
#include "support/connection_count.h"

#include <QScrollArea>

using namespace Qt::StringLiterals;

namespace velloria::tests {
namespace {

class Calendar : public EditorHome {
protected:
    QComboBox& box(const QString& name) { return control<QComboBox>(calendar(), name); }
    void makeDirty(const QString& text = u"編集"_s) {
        title().setFocus();
        title().selectAll();
        keys(title(), text);
        ASSERT_TRUE(contents().ChangeYesNo());
    }
    const QString question = u"更新されていますが、保存されていません。\r\n保存しますか？"_s;
};

TEST_F(Calendar, ADayClickSetsTheDayAndLoadsIt) {
    writeDay({u"八日"_s}, u"2004/05/08"_s);
    clickDay(8);
    EXPECT_EQ(session.EnterDay, u"2004/05/08"_s);
    EXPECT_EQ(month().value(), QDate(2004, 5, 8));
    EXPECT_EQ(title().text(), u"八日"_s);
    EXPECT_TRUE(contents().isVisible());
    EXPECT_TRUE(title().hasFocus());
}

TEST_F(Calendar, ShowingADayLoadsNothing) {
    writeDay({u"一"_s});
    calendar().showDay({2004, 5, 6});
    settle();
    EXPECT_EQ(caption(), u"日記作成"_s);
}

TEST_F(Calendar, ADayWithoutEntriesOpensItsFirstNumberEmpty) {
    clickDay(9);
    EXPECT_EQ(caption(), u"2004/05/09分の日記[1/1]"_s);
    EXPECT_EQ(title().text(), u""_s);
    EXPECT_EQ(combo(u"ComboGenre"_s).currentIndex(), 0);
    EXPECT_EQ(combo(u"ComboWeather"_s).currentIndex(), 0);
    EXPECT_EQ(combo(u"ComboPrivate"_s).currentIndex(), 0);
    EXPECT_FALSE(contents().ChangeYesNo());
}

TEST_F(Calendar, ClickingTheLoadedDayReloadsItAndAsks) {
    writeDay({u"一"_s});
    clickDay(6);
    makeDirty();
    answer(u"no"_s);
    clickDay(6);
    EXPECT_EQ(title().text(), u"一"_s);
    EXPECT_EQ(questions(), QStringList{question});
}

TEST_F(Calendar, AYesStoresUnderTheOldDay) {
    writeDay({u"一"_s});
    clickDay(6);
    makeDirty();
    answer(u"yes"_s);
    clickDay(7);
    EXPECT_EQ(rows(), QStringList{u"1編集"_s});
    EXPECT_TRUE(rows(u"2004/05/07"_s).isEmpty());
    EXPECT_EQ(caption(), u"2004/05/07分の日記[1/1]"_s);
}

TEST_F(Calendar, AYesWithoutATitleShowsTheBoxGoesOnAndRescuesTheText) {
    clickDay(6);
    keys(pane(), u"text"_s);
    answer(u"yes"_s);
    clickDay(7);
    EXPECT_EQ(boxes().last(), u"critical: タイトルを入力してください！"_s);
    EXPECT_EQ(caption(), u"2004/05/07分の日記[1/1]"_s);
    EXPECT_EQ(pane().text(), u""_s);
    EXPECT_EQ(rescued(), QStringList{u""_s});
    EXPECT_TRUE(bytesOf(session.UserPath + u"rescue.jsonl"_s).contains("\"Contents\":\"text\""));
    EXPECT_TRUE(panel().contains(u"控え"_s)) << panel().toStdString();
    EXPECT_FALSE(contents().ChangeYesNo());
}

TEST_F(Calendar, ASaveThatFailsKeepsTheOldDayWhole) {
    writeDay({u"一"_s});
    clickDay(6);
    makeDirty();
    refuseRows(u"Title = '編集'"_s);
    answer(u"yes"_s);
    clickDay(7);
    expectedFailures = 1;
    EXPECT_EQ(session.EnterDay, kDay);
    EXPECT_EQ(month().value(), QDate(2004, 5, 6));
    EXPECT_EQ(title().text(), u"編集"_s);
    EXPECT_TRUE(contents().ChangeYesNo());
    EXPECT_TRUE(isSavable());
}

TEST_F(Calendar, ADayThatCannotBeReadKeepsTheOldDayWhole) {
    writeDay({u"一"_s});
    clickDay(6);
    makeDirty();
    ASSERT_TRUE(QFile::rename(session.databaseFile(), session.databaseFile() + u".away"_s));
    answer(u"no"_s);
    clickDay(7);
    expectedFailures = 1;
    EXPECT_EQ(session.EnterDay, kDay);
    EXPECT_EQ(month().value(), QDate(2004, 5, 6));
    EXPECT_EQ(month().highlighted(), QDate(2004, 5, 6));
    EXPECT_EQ(caption(), u"2004/05/06分の日記[1/1]"_s);
    EXPECT_EQ(title().text(), u"編集"_s);
    EXPECT_TRUE(contents().ChangeYesNo());
    EXPECT_FALSE(contents().Loading);
    EXPECT_EQ(turns().count(u"failure"_s), 1);
    EXPECT_GE(turns().lastIndexOf(u"default"_s), turns().lastIndexOf(u"hourglass"_s)) << "no hourglass stays";
}

TEST_F(Calendar, NewOffersTheNextNumberCleanAndTheSameOneTwice) {
    writeDay({u"一"_s, u"二"_s});
    clickDay(6);
    for (int i = 0; i < 2; ++i) {
        clickButton(u"Btn_New"_s);
        EXPECT_EQ(caption(), u"2004/05/06分の日記[3/3]"_s);
        EXPECT_EQ(title().text(), u""_s);
        EXPECT_EQ(pane().text(), u""_s);
        EXPECT_FALSE(contents().ChangeYesNo());
        EXPECT_FALSE(isSavable());
        EXPECT_TRUE(title().hasFocus());
    }
}

TEST_F(Calendar, NewOnAnEmptyDayIsAClickOnItAndAsksOnce) {
    clickButton(u"Btn_New"_s);
    EXPECT_EQ(caption(), u"2004/05/06分の日記[1/1]"_s);
    makeDirty();
    answer(u"no"_s);
    clickButton(u"Btn_New"_s);
    EXPECT_EQ(questions(), QStringList{question});
    EXPECT_EQ(caption(), u"2004/05/06分の日記[1/1]"_s);
    EXPECT_EQ(title().text(), u""_s);
}

TEST_F(Calendar, NewAsksAndSavesTheShownEntry) {
    clickDay(6);
    makeDirty();
    answer(u"yes"_s);
    clickButton(u"Btn_New"_s);
    EXPECT_EQ(rows(), QStringList{u"1編集"_s});
    EXPECT_EQ(caption(), u"2004/05/06分の日記[2/2]"_s);
}

TEST_F(Calendar, NewWithoutADaySaysSo) {
    session.EnterDay.clear();
    clickButton(u"Btn_New"_s);
    EXPECT_EQ(panel(), u"日付が選択されていないため日記の作成を中止しました。"_s);
    EXPECT_EQ(caption(), u"日記作成"_s);
}

TEST_F(Calendar, DeleteWithoutADayOnlyInforms) {
    writeDay({u"一"_s});
    clickButton(u"Btn_Delete"_s);
    EXPECT_EQ(boxes(), QStringList{u"information: 削除する日記が選択されていないので、削除を中止します。"_s});
    EXPECT_EQ(rows(), QStringList{u"1一"_s});
}

TEST_F(Calendar, ANoLeavesTheEntry) {
    writeDay({u"一"_s, u"二"_s});
    clickDay(6);
    answer(u"no"_s);
    clickButton(u"Btn_Delete"_s);
    EXPECT_EQ(questions(), QStringList{u"2004/05/06の2番目の日記を削除します。"_s});
    EXPECT_EQ(panel(), u"日記の削除を中止しました。"_s);
    EXPECT_EQ(rows().size(), 2);
}

TEST_F(Calendar, ADeletionRenumbersEmptiesTheEditorAndShowsThePreview) {
    writeDay({u"一"_s, u"二"_s, u"三"_s});
    clickDay(6);
    pick(combo(u"ComboNumber"_s), 1);
    answer(u"yes"_s);
    clickButton(u"Btn_Delete"_s);
    EXPECT_EQ(rows(), (QStringList{u"2三"_s, u"1一"_s}));
    EXPECT_EQ(caption(), u"日記作成"_s);
    EXPECT_EQ(title().text(), u""_s);
    EXPECT_FALSE(title().isEnabled());
    EXPECT_EQ(panel(), u"2004/05/06の日記を削除しました。"_s);
    EXPECT_EQ(desk.texts(u"navigate"_s), QStringList{session.DataPath + u"tmp.htm#2004/05/06"_s});
    EXPECT_FALSE(pageOf(session.DataPath + u"tmp.htm"_s).contains(u"二"_s));
    EXPECT_EQ(rescued(), QStringList{u"二"_s});
    contents().mnuUndo_Click();
    EXPECT_EQ(pane().text(), u""_s);
}

TEST_F(Calendar, DeletingANewNumberDeletesNoRow) {
    writeDay({u"一"_s});
    clickDay(6);
    clickButton(u"Btn_New"_s);
    sql(u"UPDATE Contents SET Number = 5"_s);
    answer(u"yes"_s);
    clickButton(u"Btn_Delete"_s);
    EXPECT_EQ(rows(), QStringList{u"1一"_s}) << "the day is renumbered all the same";
    EXPECT_EQ(desk.texts(u"navigate"_s).size(), 1);
}

TEST_F(Calendar, ADeletionRescuesUnsavedTextAndAsksNothingOfIt) {
    writeDay({u"一"_s});
    clickDay(6);
    makeDirty();
    answer(u"yes"_s);
    clickButton(u"Btn_Delete"_s);
    EXPECT_EQ(questions().size(), 1);
    EXPECT_EQ(rescued(), (QStringList{u"編集"_s, u"一"_s}));
    EXPECT_TRUE(contents().ChangeYesNo()) << "emptying the editor leaves the mark";
    answer(u"yes"_s);
    clickDay(7);
    EXPECT_EQ(boxes().last(), u"critical: タイトルを入力してください！"_s);
    EXPECT_TRUE(rows(u"2004/05/07"_s).isEmpty());
    EXPECT_EQ(rescued().size(), 2);
    EXPECT_FALSE(contents().ChangeYesNo());
}

TEST_F(Calendar, ADeletionStandsWhenItsPreviewFails) {
    writeDay({u"一"_s});
    clickDay(6);
    QDir().mkpath(session.DataPath + u"tmp.htm/x"_s);
    answer(u"yes"_s);
    clickButton(u"Btn_Delete"_s);
    expectedFailures = 1;
    EXPECT_TRUE(rows().isEmpty());
    EXPECT_EQ(caption(), u"日記作成"_s);
    EXPECT_EQ(panel(), u"2004/05/06の日記を削除しました。"_s);
}

TEST_F(Calendar, TheDeletedDayIsTheLoadedOneWhereverTheHighlightIs) {
    writeDay({u"一日"_s}, u"2004/05/01"_s);
    writeDay({u"今日"_s});
    clickDay(1);
    calendar().Calender_DateClick({2004, 5, 6});
    month().setFocus();
    QTest::keyClick(&month(), Qt::Key_Down);
    answer(u"no"_s);
    clickButton(u"Btn_Delete"_s);
    EXPECT_EQ(questions(), QStringList{u"2004/05/06の1番目の日記を削除します。"_s});
}

TEST_F(Calendar, ArrowsPagesAndWheelLoadNothingAndEnterDoes) {
    writeDay({u"七日"_s}, u"2004/05/07"_s);
    clickDay(6);
    month().setFocus();
    QTest::keyClick(&month(), Qt::Key_Right);
    EXPECT_EQ(session.EnterDay, kDay);
    EXPECT_EQ(caption(), u"2004/05/06分の日記[1/1]"_s);
    QTest::keyClick(&month(), Qt::Key_Return);
    EXPECT_EQ(caption(), u"2004/05/07分の日記[1/1]"_s);
    EXPECT_EQ(title().text(), u"七日"_s);
    month().setFocus();
    QTest::keyClick(&month(), Qt::Key_PageDown);
    QTest::mouseClick(&control<QToolButton>(calendar(), u"NextMonth"_s), Qt::LeftButton);
    EXPECT_EQ(session.EnterDay, u"2004/05/07"_s);
    title().setFocus();
    EXPECT_EQ(month().value(), QDate(2004, 5, 7));
    EXPECT_EQ(month().highlighted(), QDate(2004, 5, 7));
}

TEST_F(Calendar, AGreyDayOfTheNextMonthIsAClickAndTurnsThePage) {
    clickDay(QDate(2004, 6, 1));
    EXPECT_EQ(session.EnterDay, u"2004/06/01"_s);
    EXPECT_EQ(month().shownMonth(), QDate(2004, 6, 1));
}

TEST_F(Calendar, DaysWithEntriesAreMarkedAsTheyComeAndGo) {
    const auto isMarked = [this](int day) { return month().markedDays().withEntries.contains(QDate(2004, 5, day)); };
    clickDay(6);
    EXPECT_FALSE(isMarked(6));
    writeDay({u"他"_s}, u"2004/05/12"_s);
    clickDay(6);
    EXPECT_TRUE(isMarked(12)) << "another program's entries are seen with the next click";
    makeDirty();
    QTest::keyClick(&title(), Qt::Key_U, Qt::ControlModifier);
    EXPECT_TRUE(isMarked(6));
    answer(u"yes"_s);
    clickButton(u"Btn_Delete"_s);
    EXPECT_FALSE(isMarked(6));
}

/// An import takes any text of ten characters for a day, and the found entry leads to it.
TEST_F(Calendar, ADayThatIsNoneTurnsNoPageAndLeavesItsMarks) {
    writeDay({u"一"_s});
    write(u"2004/02/30"_s, u"ない日"_s);
    clickDay(6);
    ASSERT_TRUE(month().markedDays().withEntries.contains({2004, 5, 6}));
    contents().day().openEntry(u"2004/02/30"_s, 1);
    EXPECT_EQ(title().text(), u"ない日"_s);
    EXPECT_EQ(month().shownMonth(), QDate(2004, 5, 1));
    EXPECT_TRUE(month().markedDays().withEntries.contains({2004, 5, 6}));
}

TEST_F(Calendar, AClickAndATurnedPageOpenTheDiaryOnce) {
    writeDay({u"一"_s, u"二"_s});
    write(u"2003/05/07"_s, u"前年"_s);
    clickDay(6);
    const auto connectionsOf = [](const std::function<void()>& action) {
        const int before = openedConnections();
        action();
        return openedConnections() - before;
    };
    EXPECT_EQ(connectionsOf([this] { clickDay(7); }), 1);
    EXPECT_EQ(connectionsOf([this] { clickDay(QDate(2004, 6, 1)); }), 1) << "in another month too";
    EXPECT_TRUE(month().markedDays().withEntries.contains({2004, 5, 6}));
    EXPECT_EQ(connectionsOf([this] { clickButton(u"Btn_New"_s); }), 1);
    EXPECT_EQ(connectionsOf([this] {
                  QTest::mouseClick(&control<QToolButton>(calendar(), u"PreviousMonth"_s), Qt::LeftButton);
                  settle();
              }),
              1);
}

TEST_F(Calendar, ADayIsPrivateWhileAllItsEntriesAre) {
    store::Entry hidden;
    hidden.day = kDay;
    hidden.title = u"秘密"_s;
    hidden.isPrivate = true;
    write(hidden);
    writeDay({u"公開"_s}, u"2004/05/07"_s);
    clickDay(7);
    EXPECT_TRUE(month().isPrivate({2004, 5, 6}));
    EXPECT_FALSE(month().isPrivate({2004, 5, 7}));
    EXPECT_FALSE(month().isPrivate({2004, 5, 8})) << "a day without entries is none";
    clickDay(6);
    pick(combo(u"ComboPrivate"_s), 0);
    clickTool(u"SaveToMDBOnly"_s);
    EXPECT_FALSE(month().isPrivate({2004, 5, 6})) << "a save is seen at once";
    clickButton(u"Btn_New"_s);
    keys(title(), u"two"_s);
    pick(combo(u"ComboPrivate"_s), 1);
    clickTool(u"SaveToMDBOnly"_s);
    EXPECT_FALSE(month().isPrivate({2004, 5, 6})) << "one public entry is enough";
}

TEST_F(Calendar, TodayIsTheClocksDayAndNotTheChosenOne) {
    clickDay(20);
    EXPECT_EQ(month().today(), clock.now().date());
    EXPECT_EQ(month().value(), QDate(2004, 5, 20));
}

TEST_F(Calendar, TheBlogIsTheStoredOneAndIsKept) {
    EXPECT_EQ(box(u"cmbBlogAction"_s).currentText(), u"投稿"_s);
    ASSERT_EQ(box(u"cmbBlogAction"_s).count(), 3);
    writeFile(session.DataPath + u"BlogTemplate/Bee.ini"_s, "");
    writeFile(session.DataPath + u"BlogTemplate/ant.ini"_s, "");
    context.windows.unload<editor::frmCalender>();
    QComboBox& blogs = box(u"cmbBlog"_s);
    EXPECT_GE(blogs.findText(u"ant"_s), 0);
    EXPECT_LT(blogs.findText(u"ant"_s), blogs.findText(u"Bee"_s)) << "order of a listing";
    EXPECT_EQ(blogs.currentIndex(), blogs.findText(u"mixi"_s)) << "no selection when the list lacks it";
    blogs.setCurrentIndex(blogs.findText(u"Bee"_s));
    context.windows.unload<editor::frmCalender>();
    EXPECT_EQ(core::Settings(session).text(core::keys::kSelectedBlog), u"Bee"_s);
    EXPECT_EQ(box(u"cmbBlog"_s).currentText(), u"Bee"_s);
}

TEST_F(Calendar, FitsAWindowOf279By214Pixels) {
    calendar().place({0, 0, 279, 214});
    settle();
    EXPECT_EQ(calendar().geometry().size(), QSize(279, 214));
    auto* area = calendar().findChild<QScrollArea*>();
    ASSERT_TRUE(area);
    EXPECT_LE(area->widget()->minimumSizeHint().width(), area->viewport()->width());
    EXPECT_LE(area->widget()->minimumSizeHint().height(), area->viewport()->height());
    for (const char* name : {"Btn_New", "Btn_Delete", "Btn_Find", "Btn_BlogControl", "cmbBlog", "cmbBlogAction"}) {
        auto& widget = control<QWidget>(calendar(), QLatin1StringView(name));
        EXPECT_FALSE(widget.visibleRegion().isEmpty()) << name;
        EXPECT_EQ(widget.visibleRegion().boundingRect(), widget.rect()) << name;
    }
    EXPECT_GE(month().cellOf({2004, 5, 6}).height(), month().fontMetrics().height());
}

TEST_F(Calendar, GoesAwayWithItsHighlightInAnotherMonth) {
    month().setFocus();
    QTest::keyClick(&month(), Qt::Key_PageDown);
    settle();
    ASSERT_TRUE(month().hasFocus());
    context.windows.unload<editor::frmCalender>(); // it loses the focus on the way out
    settle();
    EXPECT_EQ(context.windows.find<editor::frmCalender>(), nullptr);
}

} // namespace
} // namespace velloria::tests
