// The editor: saving, numbers, the state of its controls.
#include "desktop/editor_home.h"

#include "browser/forms/frmPrevDiaryViewer.h"
#include "core/keys.h"
#include "core/settings_change.h"
#include "core/text_file.h"

#include <QToolBar>

using namespace Qt::StringLiterals;

namespace velloria::tests {
namespace {

class Editor : public EditorHome {
protected:
    QStringList genreFile() { return core::readLines(session.DataPath + u"Genre.csv"_s); }
    int genreCount(const QString& genre) { return int(genreFile().count(genre)); }
    void typeTitle(const QString& text) {
        title().setFocus();
        title().selectAll();
        keys(title(), text);
    }
};

TEST_F(Editor, BeginsWithoutADayAndTakesNothing) {
    contents().showChild();
    EXPECT_EQ(caption(), u"日記作成"_s);
    EXPECT_FALSE(isSavable());
    EXPECT_FALSE(isInsertable());
    for (const QString& name : {u"ComboNumber"_s, u"ComboGenre"_s, u"ComboWeather"_s, u"ComboPrivate"_s})
        EXPECT_FALSE(combo(name).isEnabled()) << name.toStdString();
    EXPECT_FALSE(title().isEnabled());
    for (int i = 0; i < 3; ++i)
        EXPECT_FALSE(pane(i).isEnabled());
    EXPECT_FALSE(contents().ChangeYesNo());
    EXPECT_FALSE(contents().Loading);
}

TEST_F(Editor, HasTheFixedTipsTabsAndItems) {
    const QMap<QString, QString> tips{{u"SaveToMDBOnly"_s, u"日記を保存します (Ctrl+U)"_s},
                                      {u"SaveToMDB"_s, u"日記を保存してローカルブラウザを更新します (Ctrl+P)"_s},
                                      {u"InsertURL"_s, u"BrowserのURLを挿入します"_s},
                                      {u"InsertImg"_s, u"イメージを挿入します"_s},
                                      {u"InsertTag"_s, u"右で選んだHTMLタグを挿入できます"_s}};
    for (auto tip = tips.begin(); tip != tips.end(); ++tip)
        EXPECT_EQ(tool(tip.key()).toolTip(), tip.value());
    EXPECT_EQ(tool(u"SaveToMDBOnly"_s).accessibleName(), u"日記を保存します"_s);
    EXPECT_EQ(tabs().tabToolTip(0), u"内容 Content (Ctrl+1)"_s);
    EXPECT_EQ(tabs().tabToolTip(2), u"概要 Excerpt (Ctrl+3)"_s);
    EXPECT_EQ(combo(u"ComboTag"_s).itemData(0, Qt::ToolTipRole), u"Shift+Enter"_s);
    EXPECT_EQ(combo(u"ComboTag"_s).itemData(1, Qt::ToolTipRole), u"Ctrl+Enter"_s);
    EXPECT_EQ(tabs().tabText(0), u"内容 Content"_s);
    EXPECT_EQ(tabs().tabText(1), u"追記 Extend"_s);
    EXPECT_EQ(tabs().tabText(2), u"概要 Excerpt"_s);
    const auto items = [](const desktop::Combo& box) {
        QStringList texts;
        for (int i = 0; i < box.count(); ++i)
            texts += box.itemText(i);
        return texts;
    };
    EXPECT_EQ(items(combo(u"ComboWeather"_s)), (QStringList{u"-"_s, u"晴"_s, u"曇"_s, u"雨"_s, u"雪"_s, u"雷"_s}));
    EXPECT_EQ(items(combo(u"ComboPrivate"_s)), (QStringList{u"公開"_s, u"非公開"_s}));
    EXPECT_EQ(combo(u"ComboTag"_s).count(), 20);
    EXPECT_EQ(combo(u"ComboTag"_s).currentIndex(), -1);
    EXPECT_EQ(combo(u"ComboTag"_s).placeholderText(), u"HTMLタグを選んでください。"_s);
    EXPECT_EQ(combo(u"ComboGenre"_s).itemText(0), u"一般"_s);
    EXPECT_EQ(field<QToolBar>(u"cToolbar"_s).actions().at(2)->isSeparator(), true);
}

TEST_F(Editor, EveryControlHasANameForThoseWhoCannotSeeIt) {
    for (QWidget* widget : contents().findChildren<QWidget*>()) {
        if (widget->objectName().isEmpty() || widget->objectName().startsWith(u"qt_"_s))
            continue;
        const bool mustHaveName = qobject_cast<QComboBox*>(widget) || qobject_cast<QLineEdit*>(widget) ||
                                  qobject_cast<QPlainTextEdit*>(widget) || qobject_cast<QToolButton*>(widget);
        if (mustHaveName && widget->objectName() != u"ScrollLeftButton"_s &&
            widget->objectName() != u"ScrollRightButton"_s) {
            EXPECT_FALSE(widget->accessibleName().isEmpty()) << widget->objectName().toStdString();
        }
    }
}

TEST_F(Editor, ALoadedDayShowsItsLastEntryAndItsCaption) {
    writeDay({u"一"_s, u"二"_s, u"三"_s});
    clickDay(6);
    EXPECT_EQ(caption(), u"2004/05/06分の日記[3/3]"_s);
    EXPECT_EQ(title().text(), u"三"_s);
    EXPECT_EQ(pane().text(), u"text of 三"_s);
    EXPECT_TRUE(title().hasFocus());
    EXPECT_FALSE(isSavable());
    EXPECT_FALSE(isInsertable());
    EXPECT_EQ(combo(u"ComboNumber"_s).count(), 3);
    EXPECT_EQ(combo(u"ComboNumber"_s).currentText(), u"3"_s);
    EXPECT_FALSE(contents().ChangeYesNo());
}

TEST_F(Editor, APaneBringsTheInsertToolsToLifeAndTheTitleTakesThemAway) {
    clickDay(6);
    clickPane();
    EXPECT_TRUE(isInsertable());
    QTest::mouseClick(&title(), Qt::LeftButton);
    EXPECT_FALSE(isInsertable());
    clickTab(2);
    EXPECT_TRUE(isInsertable());
    EXPECT_TRUE(pane(2).hasFocus());
}

TEST_F(Editor, EveryLoadEndsWithTheInsertToolsOffAlsoWhenTheWindowIsNotActive) {
    writeDay({u"一"_s});
    clickDay(6);
    clickPane();
    QWidget other;
    other.show();
    ASSERT_TRUE(becomesVisible(other));
    other.activateWindow();
    ASSERT_TRUE(becomesActive(other));
    calendar().Calender_DateClick({2004, 5, 7});
    EXPECT_FALSE(isInsertable());
    EXPECT_FALSE(isSavable());
}

TEST_F(Editor, TypingMakesTheEntryDirtyAndSavingMakesItClean) {
    clickDay(6);
    keys(title(), u"T"_s);
    EXPECT_TRUE(contents().ChangeYesNo());
    EXPECT_TRUE(isSavable());
    clickTool(u"SaveToMDBOnly"_s);
    EXPECT_FALSE(contents().ChangeYesNo());
    EXPECT_FALSE(isSavable());
    EXPECT_EQ(rows(), QStringList{u"1T"_s});
    EXPECT_EQ(panel(), u"2004/05/06の日記を保存しました。"_s);
}

TEST_F(Editor, PrivacyWeatherAndGenreMakeDirtyAndNumberAndTagPicksDoNot) {
    writeDay({u"一"_s, u"二"_s});
    for (const QString& name : {u"ComboPrivate"_s, u"ComboWeather"_s, u"ComboGenre"_s}) {
        clickDay(6);
        EXPECT_FALSE(contents().ChangeYesNo());
        if (name == u"ComboGenre"_s)
            keys(combo(name), u"x"_s);
        else
            pick(combo(name), 1);
        EXPECT_TRUE(contents().ChangeYesNo()) << name.toStdString();
        answer(u"no"_s);
        clickDay(6);
    }
    pick(combo(u"ComboNumber"_s), 0);
    EXPECT_FALSE(contents().ChangeYesNo());
    EXPECT_FALSE(isSavable());
}

TEST_F(Editor, AnEmptyTitleIsRefusedAndOneOfBlanksIsNot) {
    clickDay(6);
    clickPane();
    keys(pane(), u"x"_s);
    QTest::keyClick(&pane(), Qt::Key_U, Qt::ControlModifier);
    EXPECT_EQ(boxes(), QStringList{u"critical: タイトルを入力してください！"_s});
    EXPECT_EQ(desk.events.at(desk.events.size() - 1)[u"title"_s].toString(), u"日記作成"_s);
    EXPECT_TRUE(rows().isEmpty());
    EXPECT_TRUE(contents().ChangeYesNo());
    EXPECT_TRUE(isSavable());
    typeTitle(u" "_s);
    QTest::keyClick(&title(), Qt::Key_U, Qt::ControlModifier);
    EXPECT_EQ(rows(), QStringList{u"1 "_s});
}

TEST_F(Editor, CtrlUSavesFromEveryControlAndDeletesNoLine) {
    clickDay(6);
    keys(title(), u"title"_s);
    keys(pane(), u"text"_s);
    const QList<QWidget*> controls{&title(), &pane(), &combo(u"ComboGenre"_s), &combo(u"ComboWeather"_s),
                                   tabs().tabBar()};
    int number = 0;
    for (QWidget* widget : controls) {
        for (const Qt::Key key : {Qt::Key_U, Qt::Key_S}) {
            const QString text = u"title%1"_s.arg(++number);
            title().setText(text);
            QTest::keyClick(widget, key, Qt::ControlModifier);
            EXPECT_EQ(rows(), QStringList{u"1"_s + text}) << widget->objectName().toStdString();
            EXPECT_EQ(title().text(), text);
            EXPECT_EQ(pane().text(), u"text"_s);
        }
    }
}

TEST_F(Editor, CtrlUSavesAlsoWhatIsClean) {
    writeDay({u"一"_s});
    clickDay(6);
    sql(u"UPDATE Contents SET Weather = 'x'"_s);
    QTest::keyClick(&title(), Qt::Key_U, Qt::ControlModifier);
    EXPECT_EQ(diary().LoadEntry(kDay, 1)->weather, u"-"_s);
}

TEST_F(Editor, WithoutADayCtrlUEndsAtTheTitleBox) {
    contents().showChild();
    QTest::keyClick(&contents(), Qt::Key_U, Qt::ControlModifier);
    EXPECT_EQ(boxes(), QStringList{u"critical: タイトルを入力してください！"_s});
}

TEST_F(Editor, CtrlAltZeroGreets) {
    clickDay(6);
    QTest::keyClick(&pane(), Qt::Key_0, Qt::ControlModifier | Qt::AltModifier);
    EXPECT_EQ(boxes(), QStringList{u"information: ｷﾀ━━━━━━(ﾟ∀ﾟ)━━━━━━!!"_s});
    EXPECT_EQ(pane().text(), u""_s);
}

TEST_F(Editor, SavingTouchesTheTableAndTheGenreListAlone) {
    clickDay(6);
    typeTitle(u"T"_s);
    const QMap<QString, QByteArray> before = contentOf(home.path());
    QTest::keyClick(&title(), Qt::Key_U, Qt::ControlModifier);
    const QMap<QString, QByteArray> after = contentOf(home.path());
    QStringList changed;
    for (const QString& name : after.keys() + before.keys()) {
        if (before.value(name) != after.value(name) && !changed.contains(name))
            changed += name;
    }
    EXPECT_EQ(changed, QStringList{u"/UserData/diary.mdb"_s});
}

TEST_F(Editor, SaveAndPreviewRunsThePreviewAlsoWhenTheSaveIsRefused) {
    writeDay({u"一"_s});
    clickDay(6);
    typeTitle(u"二"_s);
    clickTool(u"SaveToMDB"_s);
    EXPECT_TRUE(pageOf(session.DataPath + u"tmp.htm"_s).contains(u"二"_s));
    EXPECT_EQ(panel(), u"Webページ表示中..."_s);
    EXPECT_EQ(desk.texts(u"navigate"_s), QStringList{session.DataPath + u"tmp.htm#2004/05/06"_s});
    title().clear();
    clickTool(u"SaveToMDB"_s);
    EXPECT_EQ(boxes(), QStringList{u"critical: タイトルを入力してください！"_s});
    EXPECT_EQ(desk.texts(u"navigate"_s).size(), 2);
    EXPECT_EQ(rows(), QStringList{u"1二"_s});
}

TEST_F(Editor, ANewGenreIsAppendedOnceAndTheEntryIsCleanAfterwards) {
    clickDay(6);
    typeTitle(u"T"_s);
    for (const QString& genre : {u"旅行"_s, u"〜"_s, u"é"_s}) {
        combo(u"ComboGenre"_s).lineEdit()->clear();
        keys(combo(u"ComboGenre"_s), genre);
        EXPECT_TRUE(contents().ChangeYesNo());
        QTest::keyClick(&combo(u"ComboGenre"_s), Qt::Key_U, Qt::ControlModifier);
        EXPECT_FALSE(contents().ChangeYesNo());
        EXPECT_FALSE(isSavable());
        EXPECT_EQ(combo(u"ComboGenre"_s).currentText(), genre);
        const QStringList once = genreFile();
        QTest::keyClick(&title(), Qt::Key_U, Qt::ControlModifier);
        EXPECT_EQ(genreFile(), once);
        EXPECT_EQ(diary().LoadEntry(kDay, 1)->genre, genre);
    }
    EXPECT_EQ(genreCount(u"旅行"_s), 1);
    EXPECT_EQ(genreFile().first(), u"一般"_s);
    EXPECT_EQ(genreFile().size(), 4);
    clickDay(7);
    EXPECT_TRUE(questions().isEmpty());
}

TEST_F(Editor, TheGenreStaysAsItIsTypedWhateverTheListHolds) {
    core::writeLines(session.DataPath + u"Genre.csv"_s, {u"一般"_s, u"旅行"_s, u"Trip"_s});
    clickDay(6);
    typeTitle(u"T"_s);
    contents().day().MakeGenretxt();
    combo(u"ComboGenre"_s).addItems({u"旅行"_s, u"Trip"_s});
    for (const QString& genre : {u"旅"_s, u"trip"_s, u"tr"_s}) {
        combo(u"ComboGenre"_s).setFocus();
        combo(u"ComboGenre"_s).lineEdit()->clear();
        keys(combo(u"ComboGenre"_s), genre);
        QTest::keyClick(&combo(u"ComboGenre"_s), Qt::Key_Return);
        EXPECT_EQ(combo(u"ComboGenre"_s).currentText(), genre);
        clickPane();
        EXPECT_EQ(combo(u"ComboGenre"_s).currentText(), genre);
    }
    EXPECT_EQ(combo(u"ComboGenre"_s).count(), 3) << "typing adds no item";
}

TEST_F(Editor, AMissingGenreFileIsRebuiltFromTheDiary) {
    store::Entry entry = entryOf(kDay, u"T"_s);
    entry.genre = u"旅行"_s;
    write(entry);
    QFile::remove(session.DataPath + u"Genre.csv"_s);
    context.windows.unload<editor::frmContents>();
    contents();
    EXPECT_EQ(genreFile(), (QStringList{u"一般"_s, u"旅行"_s}));
    EXPECT_EQ(combo(u"ComboGenre"_s).itemText(1), u"旅行"_s);
}

TEST_F(Editor, AWeatherFromElsewhereIsKeptByASave) {
    store::Entry entry = entryOf(kDay, u"T"_s);
    entry.weather = u"快晴"_s;
    write(entry);
    clickDay(6);
    EXPECT_EQ(combo(u"ComboWeather"_s).currentText(), u"快晴"_s);
    QTest::keyClick(&title(), Qt::Key_U, Qt::ControlModifier);
    EXPECT_EQ(diary().LoadEntry(kDay, 1)->weather, u"快晴"_s);
    clickDay(7);
    EXPECT_EQ(combo(u"ComboWeather"_s).count(), 6);
    EXPECT_EQ(combo(u"ComboWeather"_s).currentText(), u"-"_s);
}

TEST_F(Editor, APrivateEntryIsShownAndSavedAsOne) {
    store::Entry entry = entryOf(kDay, u"T"_s);
    entry.isPrivate = true;
    write(entry);
    clickDay(6);
    EXPECT_EQ(combo(u"ComboPrivate"_s).currentText(), u"非公開"_s);
    QTest::keyClick(&title(), Qt::Key_U, Qt::ControlModifier);
    EXPECT_TRUE(diary().LoadEntry(kDay, 1)->isPrivate);
}

TEST_F(Editor, MissingValuesShowTheirDefaults) {
    write(kDay, u"T"_s);
    sql(u"UPDATE Contents SET Extend = NULL, Excerpt = NULL, Weather = NULL, Genre = NULL"_s);
    clickDay(6);
    EXPECT_EQ(pane(1).text(), u""_s);
    EXPECT_EQ(combo(u"ComboWeather"_s).currentText(), u"-"_s);
    EXPECT_EQ(combo(u"ComboGenre"_s).currentText(), u"一般"_s);
    EXPECT_EQ(combo(u"ComboPrivate"_s).currentIndex(), 0);
}

TEST_F(Editor, PickingANumberLoadsItAndEndsClean) {
    writeDay({u"一"_s, u"二"_s, u"三"_s});
    clickDay(6);
    clickPane();
    pick(combo(u"ComboNumber"_s), 0);
    EXPECT_EQ(caption(), u"2004/05/06分の日記[1/3]"_s);
    EXPECT_EQ(title().text(), u"一"_s);
    EXPECT_EQ(pane().text(), u"text of 一"_s);
    EXPECT_TRUE(title().hasFocus());
    EXPECT_FALSE(contents().ChangeYesNo());
    EXPECT_FALSE(isSavable());
    EXPECT_FALSE(isInsertable());
    contents().mnuUndo_Click();
    EXPECT_EQ(pane().text(), u"text of 一"_s) << "a load leaves nothing to undo";
}

TEST_F(Editor, TheEditsOfAYesGoToTheNumberThatWasPicked) {
    writeDay({u"一"_s, u"二"_s, u"三"_s});
    clickDay(6);
    typeTitle(u"三の編集"_s);
    answer(u"yes"_s);
    pick(combo(u"ComboNumber"_s), 0);
    EXPECT_EQ(rows(), (QStringList{u"3三"_s, u"2二"_s, u"1三の編集"_s}));
    EXPECT_EQ(title().text(), u"三の編集"_s);
    EXPECT_EQ(caption(), u"2004/05/06分の日記[1/3]"_s);
    EXPECT_EQ(rescued(), QStringList{u"一"_s});
    EXPECT_FALSE(contents().ChangeYesNo());
    EXPECT_EQ(questions(), QStringList{u"更新されていますが、保存されていません。\r\n保存しますか？"_s});
}

TEST_F(Editor, ANoAtAPickedNumberStoresNothing) {
    writeDay({u"一"_s, u"二"_s});
    clickDay(6);
    typeTitle(u"編集"_s);
    answer(u"no"_s);
    pick(combo(u"ComboNumber"_s), 0);
    EXPECT_EQ(rows(), (QStringList{u"2二"_s, u"1一"_s}));
    EXPECT_EQ(title().text(), u"一"_s);
    EXPECT_TRUE(rescued().isEmpty());
}

TEST_F(Editor, PickingTheShownNumberReloadsIt) {
    writeDay({u"一"_s});
    clickDay(6);
    typeTitle(u"編集"_s);
    answer(u"no"_s);
    pick(combo(u"ComboNumber"_s), 0);
    EXPECT_EQ(title().text(), u"一"_s);
}

TEST_F(Editor, ANumberThatWasNeverSavedShowsEmptyPanesAgain) {
    writeDay({u"一"_s, u"二"_s});
    clickDay(6);
    clickButton(u"Btn_New"_s);
    EXPECT_EQ(caption(), u"2004/05/06分の日記[3/3]"_s);
    pick(combo(u"ComboNumber"_s), 0);
    EXPECT_EQ(caption(), u"2004/05/06分の日記[1/3]"_s);
    pick(combo(u"ComboNumber"_s), 2);
    EXPECT_EQ(caption(), u"2004/05/06分の日記[3/3]"_s);
    EXPECT_EQ(title().text(), u""_s);
    EXPECT_EQ(pane().text(), u""_s);
    EXPECT_EQ(combo(u"ComboGenre"_s).currentText(), u"一般"_s);
    clickDay(6);
    EXPECT_EQ(combo(u"ComboNumber"_s).count(), 2) << "a reload of the day forgets it";
}

TEST_F(Editor, ANewEntryWhoseNumberWasTakenMeanwhileTakesTheNextOne) {
    writeDay({u"一"_s});
    clickDay(6);
    clickButton(u"Btn_New"_s);
    typeTitle(u"私"_s);
    write(kDay, u"他"_s);
    QTest::keyClick(&title(), Qt::Key_U, Qt::ControlModifier);
    EXPECT_EQ(rows(), (QStringList{u"3私"_s, u"2他"_s, u"1一"_s}));
    EXPECT_EQ(caption(), u"2004/05/06分の日記[3/3]"_s);
    EXPECT_TRUE(panel().contains(u"3番目"_s)) << panel().toStdString();
    EXPECT_FALSE(contents().ChangeYesNo());
}

TEST_F(Editor, ARowThatAnotherProgramChangedGoesToTheRescueFile) {
    writeDay({u"一"_s});
    clickDay(6);
    typeTitle(u"私"_s);
    sql(u"UPDATE Contents SET Title = '他', PublishTime = '2004/05/06 12:00:00'"_s);
    QTest::keyClick(&title(), Qt::Key_U, Qt::ControlModifier);
    EXPECT_EQ(rows(), QStringList{u"1私"_s});
    EXPECT_EQ(rescued(), QStringList{u"他"_s});
    EXPECT_TRUE(panel().contains(u"控え"_s));
}

TEST_F(Editor, ASaveThatFailsKeepsTextDirtyMarkAndButtons) {
    writeDay({u"一"_s});
    clickDay(6);
    typeTitle(u"私"_s);
    refuseRows(u"Title = '私'"_s);
    clickTool(u"SaveToMDBOnly"_s);
    expectedFailures = 1;
    EXPECT_EQ(title().text(), u"私"_s);
    EXPECT_TRUE(contents().ChangeYesNo());
    EXPECT_TRUE(isSavable());
    EXPECT_FALSE(contents().Loading);
    EXPECT_TRUE(panel().startsWith(u"エラー："_s));
    EXPECT_EQ(rows(), QStringList{u"1一"_s});
}

TEST_F(Editor, ANumberThatCannotBeReadLeavesTheEntryWhole) {
    writeDay({u"一"_s, u"二"_s});
    clickDay(6);
    typeTitle(u"私"_s);
    ASSERT_TRUE(QFile::rename(session.databaseFile(), session.databaseFile() + u".away"_s));
    answer(u"no"_s);
    pick(combo(u"ComboNumber"_s), 0);
    expectedFailures = 1;
    EXPECT_EQ(combo(u"ComboNumber"_s).currentText(), u"2"_s);
    EXPECT_EQ(title().text(), u"私"_s);
    EXPECT_TRUE(contents().ChangeYesNo()) << "what could not be replaced was not dropped";
    ASSERT_TRUE(QFile::rename(session.databaseFile() + u".away"_s, session.databaseFile()));
    QTest::keyClick(&title(), Qt::Key_U, Qt::ControlModifier);
    EXPECT_EQ(rows(), (QStringList{u"2私"_s, u"1一"_s}));
}

TEST_F(Editor, AGenreListThatCannotBeWrittenLeavesTheSaveStanding) {
    clickDay(6);
    typeTitle(u"T"_s);
    keys(combo(u"ComboGenre"_s), u"x"_s);
    QFile::remove(session.DataPath + u"Genre.csv"_s);
    QDir().mkpath(session.DataPath + u"Genre.csv/x"_s);
    QTest::keyClick(&title(), Qt::Key_U, Qt::ControlModifier);
    expectedFailures = 1;
    EXPECT_EQ(rows(), QStringList{u"1T"_s});
    EXPECT_FALSE(contents().ChangeYesNo());
    EXPECT_FALSE(contents().Loading);
}

TEST_F(Editor, TheOldDayPictureShowsEntriesOfOtherYearsPrivateOnesToo) {
    clickDay(6);
    EXPECT_FALSE(field<QToolButton>(u"picPrevDiaryExist"_s).isVisible());
    EXPECT_TRUE(field<QWidget>(u"picPrevDiaryExistNone"_s).isVisible());
    store::Entry old = entryOf(u"2003/05/06"_s, u"昔"_s);
    old.isPrivate = true;
    write(old);
    clickDay(6);
    EXPECT_TRUE(field<QToolButton>(u"picPrevDiaryExist"_s).isVisible());
    EXPECT_FALSE(field<QWidget>(u"picPrevDiaryExistNone"_s).isVisible());
    clickDay(7);
    EXPECT_FALSE(field<QToolButton>(u"picPrevDiaryExist"_s).isVisible());
}

TEST_F(Editor, TheOldDayPictureOpensTheViewerWithItsPage) {
    write(u"2003/05/06"_s, u"昔の題"_s);
    clickDay(6);
    QTest::mouseClick(&field<QToolButton>(u"picPrevDiaryExist"_s), Qt::LeftButton);
    EXPECT_TRUE(pageOf(session.DataPath + u"oldtmp.htm"_s).contains(u"昔の題"_s));
    auto* viewer = context.windows.find<browser::frmPrevDiaryViewer>();
    ASSERT_TRUE(viewer);
    EXPECT_TRUE(viewer->isVisible());
    EXPECT_EQ(viewer->windowTitle(), u"過去の日記"_s);
}

TEST_F(Editor, TheOldDayPageComesAlsoWithoutADayAndWithoutOldEntries) {
    contents().picPrevDiaryExist_Click();
    EXPECT_TRUE(exists(session.DataPath + u"oldtmp.htm"_s));
    EXPECT_TRUE(context.windows.find<browser::frmPrevDiaryViewer>());
}

TEST_F(Editor, TheFontSizeIsReadAtCreationOnlyAndNonsenseIsTheUsualOne) {
    EXPECT_EQ(pane().font().pointSizeF(), 12);
    for (const auto& [stored, shown] : std::initializer_list<std::pair<QString, double>>{
             {u"20"_s, 20}, {u"0"_s, 12}, {u"-3"_s, 12}, {u"big"_s, 12}, {u"99999"_s, 400}, {u"10.5"_s, 10.5}}) {
        core::writeQuietly(session, core::keys::kContentsFontSize, stored);
        context.windows.unload<editor::frmContents>();
        EXPECT_EQ(pane(2).font().pointSizeF(), shown) << stored.toStdString();
    }
    core::writeQuietly(session, core::keys::kContentsFontSize, u"30"_s);
    clickDay(6);
    EXPECT_EQ(pane().font().pointSizeF(), 10.5);
}

TEST_F(Editor, FitsAWindowOf279PixelsWithoutScrolling) {
    contents().place({285, 0, 279, 400});
    clickDay(6);
    settle();
    auto* area = contents().findChild<QScrollArea*>();
    ASSERT_TRUE(area);
    for (const char* key :
         {"SaveToMDBOnly", "SaveToMDB", "InsertURL", "InsertImg", "InsertTag", "ComboNumber", "ComboTag"}) {
        auto& widget = field<QWidget>(QLatin1StringView(key));
        EXPECT_EQ(widget.visibleRegion().boundingRect(), widget.rect()) << key;
    }
    EXPECT_LE(area->widget()->minimumSizeHint().width(), area->viewport()->width());
    EXPECT_LE(area->widget()->minimumSizeHint().height(), area->viewport()->height());
    EXPECT_LE(tabs().tabBar()->tabRect(2).right(), tabs().tabBar()->width()) << "all three tabs are there";
}

TEST_F(Editor, ATitleAndAGenreHaveOneLine) {
    clickDay(6);
    QGuiApplication::clipboard()->setText(u"一\n二\r\n三\u2028四"_s);
    QTest::keyClick(&title(), Qt::Key_V, Qt::ControlModifier);
    EXPECT_EQ(title().text(), u"一 二 三 四"_s);
    combo(u"ComboGenre"_s).lineEdit()->clear();
    QTest::keyClick(&combo(u"ComboGenre"_s), Qt::Key_V, Qt::ControlModifier);
    EXPECT_EQ(combo(u"ComboGenre"_s).currentText(), u"一 二 三 四"_s);
}

TEST_F(Editor, AnEntryOfFiveMegabytesOpensAndTakesKeys) {
    store::Entry large = entryOf(kDay, u"大"_s);
    QString line(79, QChar(u'あ'));
    line += u"\r\n"_s;
    large.contents = line.repeated(5'000'000 / 3 / 81);
    write(large);
    clickDay(6);
    EXPECT_EQ(pane().text(), large.contents);
    clickPane();
    keys(pane(), u"abcdefghij"_s);
    QTest::keyClick(&pane(), Qt::Key_U, Qt::ControlModifier);
    EXPECT_EQ(diary().LoadEntry(kDay, 1)->contents, pane().text());
}

TEST_F(Editor, SaysHowToBeginWhileNoDayIsOpen) {
    contents().showChild();
    EXPECT_EQ(pane().placeholderText(), u"カレンダーで日を選ぶと書けます"_s);
    EXPECT_FALSE(pane().isEnabled());
    clickDay(6);
    EXPECT_EQ(pane().placeholderText(), QString());
}

TEST_F(Editor, OpensTodayByAClickWhileNoDayIsOpen) {
    contents().showChild();
    settle();
    // As the screen sends it: to whatever lies there.
    const QPoint place = pane().mapTo(&top(), pane().rect().center());
    QTest::mouseClick(top().windowHandle(), Qt::LeftButton, Qt::NoModifier, place);
    settle();
    EXPECT_EQ(caption(), u"2004/05/06分の日記[1/1]"_s);
    EXPECT_EQ(session.EnterDay, kDay);
}

TEST_F(Editor, OpensTodayByTypingWhileNoDayIsOpen) {
    contents().showChild();
    title().parentWidget()->setFocus();
    settle();
    QTest::keyClick(top().windowHandle(), Qt::Key_Shift);
    QTest::keyClick(top().windowHandle(), Qt::Key_Escape);
    EXPECT_EQ(caption(), u"日記作成"_s);
    QTest::keyClick(top().windowHandle(), 'a');
    settle();
    EXPECT_EQ(caption(), u"2004/05/06分の日記[1/1]"_s);
    EXPECT_EQ(title().text(), u"a"_s);
}

TEST_F(Editor, GoesOnBehindTodaysTextAndNotInItsTitle) {
    writeDay({u"T"_s});
    contents().showChild();
    title().parentWidget()->setFocus();
    settle();
    QTest::keyClick(top().windowHandle(), 'a');
    settle();
    QTest::keyClick(top().windowHandle(), 'b');
    EXPECT_EQ(caption(), u"2004/05/06分の日記[1/1]"_s);
    EXPECT_EQ(title().text(), u"T"_s);
    EXPECT_EQ(pane().text(), u"text of Tb"_s) << "the first key asked for the day";
}

TEST_F(Editor, GoesOnBehindTodaysTextAfterAClick) {
    writeDay({u"T"_s});
    contents().showChild();
    settle();
    const QPoint place = pane().mapTo(&top(), pane().rect().center());
    QTest::mouseClick(top().windowHandle(), Qt::LeftButton, Qt::NoModifier, place);
    settle();
    EXPECT_FALSE(isSavable());
    for (const char letter : {'a', 'b', 'c'})
        QTest::keyClick(top().windowHandle(), letter);
    EXPECT_EQ(title().text(), u"T"_s);
    EXPECT_EQ(pane().text(), u"text of Tabc"_s);
}

} // namespace
} // namespace velloria::tests
