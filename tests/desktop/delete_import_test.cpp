#include "exchange/forms/frmDeleteImportDiary.h"

#include "core/ini.h"
#include "core/keys.h"
#include "core/settings_change.h"
#include "desktop/editor_home.h"
#include "editor/forms/editor_requests.h"
#include "exchange/import_groups.h"

#include <ctime>

using namespace Qt::StringLiterals;

namespace velloria::tests {
namespace {

class DeleteImport : public EditorHome {
protected:
    void SetUp() override {
        EditorHome::SetUp();
        writeDay({u"own"_s, u"imported"_s, u"own too"_s});
        writeDay({u"whole"_s}, u"2004/05/07"_s);
        sql(u"UPDATE Contents SET Genre = 'genre of ' || Title"_s);
        sql(u"UPDATE Contents SET ImportMark = '2004/05/01 mt' WHERE Title IN ('imported', 'whole')"_s);
        sql(u"INSERT INTO Contents (Day, Number, Title, ImportMark) VALUES ('2004/05/08', 1, 'null', NULL), "
            "('2004/05/09', 1, 'htn', '2004/05/02 htn')"_s);
    }

    void open() {
        top().command(u"MnuDeleteImportDiary"_s)->trigger();
        settle();
        ASSERT_TRUE(window());
        ASSERT_TRUE(window()->isVisible());
    }
    exchange::frmDeleteImportDiary* window() { return context.windows.find<exchange::frmDeleteImportDiary>(); }
    QComboBox& groups() { return control<QComboBox>(*window(), u"CmbDiaryGroup"_s); }
    void press(const QString& name) {
        control<QPushButton>(*window(), name).click();
        settle();
    }
    QStringList genres() {
        QStringList genres;
        for (int i = 0; i < combo(u"ComboGenre"_s).count(); ++i)
            genres += combo(u"ComboGenre"_s).itemText(i);
        return genres;
    }
};

TEST_F(DeleteImport, OffersTheGroupsLastFirstAndNoneIsPicked) {
    open();
    EXPECT_EQ(window()->windowTitle(), u"Importした日記を一括で削除します"_s);
    EXPECT_EQ(control<QLabel>(*window(), u"Lbl_Description"_s).text(),
              u"Importした日記を一括で削除します。\n"
              "グループ名の書式は、[ インポートした日付 + インポートしたプログラム名 ] となります。\n"
              "下のコンボボックスから削除したいグループを選択し、OKボタンを押してください。"_s);
    ASSERT_EQ(groups().count(), 2);
    EXPECT_EQ(groups().itemText(0), u"2004/05/02 htn"_s);
    EXPECT_EQ(groups().itemText(1), u"2004/05/01 mt"_s);
    EXPECT_EQ(groups().currentText(), u""_s);
}

TEST_F(DeleteImport, DeletesTheGroupAndRefreshesTheEditor) {
    clickDay(6);
    combo(u"ComboNumber"_s).setCurrentIndex(1);
    contents().day().MakeGenretxt();
    EXPECT_TRUE(genres().contains(u"genre of imported"_s));
    const QString genre = combo(u"ComboGenre"_s).currentText();
    open();
    groups().setCurrentText(u"2004/05/01 mt"_s);
    press(u"Btn_OK"_s);
    EXPECT_FALSE(window());
    EXPECT_EQ(boxes().last(), u"information: 完了！"_s);
    EXPECT_EQ(rows(), (QStringList{u"2own too"_s, u"1own"_s}));
    EXPECT_EQ(rows(u"2004/05/07"_s), QStringList());
    EXPECT_EQ(rows(u"2004/05/09"_s), QStringList{u"1htn"_s});
    EXPECT_EQ(rescued(), (QStringList{u"imported"_s, u"whole"_s}));
    EXPECT_EQ(genres(), (QStringList{u"一般"_s, u"genre of own"_s, u"genre of own too"_s}));
    EXPECT_EQ(pageOf(session.DataPath + u"Genre.csv"_s), u"一般\r\ngenre of own\r\ngenre of own too\r\n"_s);
    EXPECT_EQ(title().text(), u"own too"_s);
    EXPECT_EQ(caption(), u"2004/05/06分の日記[2/2]"_s);
    EXPECT_FALSE(genre.isEmpty());
    EXPECT_FALSE(contents().ChangeYesNo());
    EXPECT_FALSE(month().markedDays().withEntries.contains(QDate(2004, 5, 7)));
}

TEST_F(DeleteImport, TheGenresAreMadeAnewOnceAndShownInFrontOfTheBox) {
    class WatchedDesk : public ScriptedDesk {
    public:
        void message(platform::MessageKind kind, const QString& text, const QString& title) override {
            ScriptedDesk::message(kind, text, title);
            whenTold();
        }
        std::function<void()> whenTold;
    } watched;
    contents().day().MakeGenretxt();
    desktop::Context other{{session, clock, watched}};
    other.mdi = context.mdi;
    editor::serveRequests(other);
    auto& list = control<desktop::Combo>(other.windows.get<editor::frmContents>(), u"ComboGenre"_s);
    EXPECT_GE(list.findText(u"genre of imported"_s), 0);
    watched.whenTold = [&] {
        EXPECT_EQ(list.findText(u"genre of imported"_s), -1);
        EXPECT_GE(list.findText(u"genre of own too"_s), 0);
        EXPECT_EQ(pageOf(session.DataPath + u"Genre.csv"_s), u"一般\r\ngenre of own\r\ngenre of own too\r\n"_s);
        writeFile(session.DataPath + u"Genre.csv"_s, "written after the box\r\n");
    };
    auto& shown = other.windows.get<exchange::frmDeleteImportDiary>();
    shown.showWindow();
    control<QComboBox>(shown, u"CmbDiaryGroup"_s).setCurrentText(u"2004/05/01 mt"_s);
    control<QPushButton>(shown, u"Btn_OK"_s).click();
    settle();
    EXPECT_EQ(watched.texts(u"message"_s), QStringList{u"完了！"_s});
    EXPECT_EQ(bytesOf(session.DataPath + u"Genre.csv"_s), "written after the box\r\n");
}

TEST_F(DeleteImport, WhenTheGenresCantBeMadeTheEntriesAreGoneAllTheSame) {
    clickDay(6);
    pick(combo(u"ComboNumber"_s), 1);
    EXPECT_EQ(title().text(), u"imported"_s);
    EXPECT_TRUE(month().markedDays().withEntries.contains(QDate(2004, 5, 7)));
    open();
    groups().setCurrentText(u"2004/05/01 mt"_s);
    QFile::remove(session.DataPath + u"Genre.csv"_s);
    ASSERT_TRUE(QDir(session.DataPath).mkdir(u"Genre.csv"_s));
    expectedFailures = 1;
    press(u"Btn_OK"_s);
    EXPECT_TRUE(desk.texts(u"failure"_s).value(0).startsWith(u"グループの日記は削除しました: "_s));
    EXPECT_EQ(boxes(), QStringList());
    EXPECT_FALSE(window());
    EXPECT_EQ(rows(), (QStringList{u"2own too"_s, u"1own"_s}));
    EXPECT_EQ(title().text(), u"own too"_s);
    EXPECT_EQ(caption(), u"2004/05/06分の日記[2/2]"_s);
    EXPECT_FALSE(month().markedDays().withEntries.contains(QDate(2004, 5, 7)));
}

TEST_F(DeleteImport, ManyDaysAreToldOnceEachAndWithoutAnyLoss) {
    const QString many = u"WITH RECURSIVE n(i) AS (SELECT 0 UNION ALL SELECT i + 1 FROM n WHERE i < 59999) "
                         "INSERT INTO Contents (Day, Number, ImportMark) "
                         "SELECT strftime('%Y/%m/%d', '1900-01-01', (i / 2) || ' days'), i % 2 + 1, 'many' FROM n"_s;
    core::writeQuietly(session, core::keys::kRescue, u"0"_s); // which takes its time for each row
    const auto secondsOf = [](const auto& action) {
        const std::clock_t start = std::clock();
        action();
        return double(std::clock() - start) / CLOCKS_PER_SEC;
    };
    sql(many);
    const double least = secondsOf([&] { diary().DeleteImportBatch(u"many"_s); });
    sql(many);
    std::optional<QStringList> days;
    const double taken = secondsOf([&] { days = exchange::deleteImportGroup(run, u"many"_s); });
    ASSERT_TRUE(days);
    EXPECT_EQ(days->size(), 30'000);
    EXPECT_EQ(days->first(), u"1900/01/01"_s);
    EXPECT_EQ(days->at(1), u"1900/01/02"_s);
    EXPECT_TRUE(std::is_sorted(days->begin(), days->end()));
    EXPECT_EQ(sqlValue(u"SELECT count(*) FROM Contents"_s), u"6"_s);
    EXPECT_LT(taken, 2 * least);
}

TEST_F(DeleteImport, AnEntryThatIsBeingEditedStays) {
    clickDay(6);
    title().setText(u"unsaved"_s);
    open();
    groups().setCurrentText(u"2004/05/01 mt"_s);
    press(u"Btn_OK"_s);
    EXPECT_EQ(title().text(), u"unsaved"_s);
    EXPECT_TRUE(contents().ChangeYesNo());
    EXPECT_TRUE(panel().contains(u"2004/05/06"_s)) << panel().toStdString();
}

TEST_F(DeleteImport, WithoutAGroupSaysSoAndUnloads) {
    open();
    press(u"Btn_OK"_s);
    EXPECT_EQ(boxes(), QStringList{u"critical: 削除するグループが選択されていないため、終了します。"_s});
    EXPECT_FALSE(window());
    EXPECT_EQ(sqlValue(u"SELECT count(*) FROM Contents"_s), u"6"_s);
}

TEST_F(DeleteImport, AFailureKeepsTheWindowAndTheDiary) {
    open();
    groups().setCurrentText(u"2004/05/01 mt"_s);
    sql(u"UPDATE Contents SET ImportMark = 'a\"b' WHERE ImportMark = '2004/05/01 mt'"_s);
    groups().setItemText(groups().currentIndex(), u"a\"b"_s);
    expectedFailures = 1;
    press(u"Btn_OK"_s);
    EXPECT_TRUE(window());
    EXPECT_EQ(sqlValue(u"SELECT count(*) FROM Contents"_s), u"6"_s);
    EXPECT_EQ(rescued(), QStringList());
    QTest::keyClick(window(), Qt::Key_Escape);
    settle();
    EXPECT_FALSE(window());
}

TEST_F(DeleteImport, TheGenresAreMadeAnewByTheirOwnCommand) {
    clickDay(6);
    writeFile(session.DataPath + u"Genre.csv"_s, "old\r\n");
    combo(u"ComboGenre"_s).setEditText(u"genre of own too"_s);
    desk.events = {};
    const bool wasChanged = contents().ChangeYesNo();
    top().command(u"MnuReConstructionGenre"_s)->trigger();
    settle();
    EXPECT_EQ(genres(), (QStringList{u"一般"_s, u"genre of imported"_s, u"genre of own"_s, u"genre of own too"_s,
                                     u"genre of whole"_s}));
    EXPECT_EQ(combo(u"ComboGenre"_s).currentText(), u"genre of own too"_s);
    EXPECT_EQ(contents().ChangeYesNo(), wasChanged);
    EXPECT_FALSE(contents().Loading);
    EXPECT_EQ(desk.texts(u"status"_s), QStringList{u"ジャンルの再構成が完了しました。"_s});
    EXPECT_EQ(boxes(), QStringList{u"information: 完了！"_s});
    EXPECT_EQ(desk.events.last()[u"event"_s], u"message"_s);
}

} // namespace
} // namespace velloria::tests
