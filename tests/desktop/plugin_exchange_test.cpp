// Import and export through plug-ins from the menus, beside the open day.
#include "desktop/editor_home.h"
#include "desktop/qt_desk.h"
#include "desktop/yes_no_box.h"
#include "exchange/import_preview.h"
#include "support/plugin_home.h"

using namespace Qt::StringLiterals;

namespace velloria::tests {
namespace {

class PluginExchangeCommands : public EditorHome {
protected:
    void SetUp() override {
        EditorHome::SetUp();
        StubPlugin::install(session.MyPath + u"Larkport.dll"_s);
        StubPlugin::install(session.MyPath + u"Wrenport.dll"_s);
        writeDay({u"own"_s});
        sql(u"UPDATE Contents SET Genre = 'own genre'"_s);
    }

    void press(const QString& name) {
        top().command(name)->trigger();
        settle();
    }
    void import(const QString& days, const QString& command = u"MnuMTImport"_s) {
        stub.set("BRINGS", days);
        answer(path(u"in.txt"_s));
        answer(u"yes"_s);
        press(command);
    }
    bool isMarked(int day) { return month().markedDays().withEntries.contains(QDate(2004, 5, day)); }

    StubPlugin stub{path(u"calls.txt"_s)};
};

TEST_F(PluginExchangeCommands, EachHasItsPluginAndItsDirection) {
    const QString in = path(u"in"_s);
    const QString database = u"connect "_s + session.databaseFile();
    const std::pair<QString, QStringList> commands[] = {
        {u"MnuMTImport"_s,
         {database, u"prepare_import"_s, u"open_file "_s + in + u" 0"_s, u"read_entries"_s, u"finish"_s, u"release"_s}},
        {u"MnuMTExport"_s,
         {database, u"prepare_export"_s, u"open_file "_s + in + u" 1"_s, u"set_user_id "_s, u"write_entries"_s,
          u"finish"_s, u"release"_s}},
        {u"MnuHTNImport"_s, {database, u"prepare_import"_s, u"open_file "_s + in + u" 0"_s, u"finish"_s, u"release"_s}},
        {u"MnuHTNExport"_s,
         {database, u"prepare_export"_s, u"open_file "_s + in + u" 1"_s, u"write_entries"_s, u"finish"_s,
          u"release"_s}}};
    for (const auto& [command, calls] : commands) {
        answer(in);
        press(command);
        EXPECT_EQ(stub.calls(), calls);
        QFile::remove(path(u"calls.txt"_s));
        desk.answers.append(QJsonValue::Null);
        press(command);
        EXPECT_EQ(stub.calls(), QStringList()) << "after a cancel";
    }
    EXPECT_EQ(boxes(), QStringList());
}

TEST_F(PluginExchangeCommands, AnImportIntoTheShownDayIsShownWhenNothingIsBeingEdited) {
    clickDay(6);
    contents().day().MakeGenretxt();
    for (const QString& command : {u"MnuMTImport"_s, u"MnuHTNImport"_s}) {
        const int before = int(rows().size());
        import(u"2004/05/06 2004/05/09"_s, command);
        EXPECT_EQ(caption(), u"2004/05/06分の日記[1/%1]"_s.arg(before + 1));
        EXPECT_EQ(title().text(), u"own"_s);
        EXPECT_FALSE(contents().ChangeYesNo());
    }
    EXPECT_TRUE(isMarked(9));
    EXPECT_GE(combo(u"ComboGenre"_s).findText(u"genre of the stub"_s), 0);
    EXPECT_EQ(panel(), u"2件の日記をインポートしました。"_s);
    pick(combo(u"ComboNumber"_s), 2);
    EXPECT_EQ(title().text(), u"stub"_s);
    EXPECT_EQ(rows(), (QStringList{u"3stub"_s, u"2stub"_s, u"1own"_s}));
}

TEST_F(PluginExchangeCommands, WhatIsBeingEditedStaysAndGoesWhereItBelongs) {
    clickDay(6);
    title().setText(u"unsaved"_s);
    import(u"2004/05/06 2004/05/07"_s);
    EXPECT_EQ(title().text(), u"unsaved"_s);
    EXPECT_TRUE(contents().ChangeYesNo());
    EXPECT_TRUE(panel().contains(u"2004/05/06の日記は編集中"_s)) << panel().toStdString();
    EXPECT_TRUE(isMarked(7));
    press(u"MnuSaveDiary"_s);
    EXPECT_EQ(rows(), (QStringList{u"2stub"_s, u"1unsaved"_s}));
}

TEST_F(PluginExchangeCommands, AnEntryThatIsNotSavedYetOverwritesNoImportedOne) {
    clickDay(6);
    press(u"MnuAddDiary"_s);
    EXPECT_EQ(caption(), u"2004/05/06分の日記[2/2]"_s);
    title().setText(u"second"_s);
    clickPane();
    keys(pane(), u"words"_s);
    import(u"2004/05/06"_s);
    EXPECT_EQ(title().text(), u"second"_s);
    press(u"MnuSaveDiary"_s);
    QStringList titles = rows();
    for (QString& row : titles)
        row.remove(0, 1);
    titles.sort();
    EXPECT_EQ(titles, (QStringList{u"own"_s, u"second"_s, u"stub"_s}));
}

TEST_F(PluginExchangeCommands, ADayThatIsNotShownLeavesTheEditorAlone) {
    clickDay(6);
    title().setText(u"unsaved"_s);
    import(u"2004/05/07"_s);
    EXPECT_EQ(title().text(), u"unsaved"_s);
    EXPECT_EQ(panel(), u"1件の日記をインポートしました。"_s);
}

TEST_F(PluginExchangeCommands, AFailureHasNoBoxButALineOfThePanelAndOfStandardError) {
    for (const QString& command : {u"MnuMTImport"_s, u"MnuMTExport"_s, u"MnuHTNImport"_s, u"MnuHTNExport"_s}) {
        stub.set("FAILS", u"finish"_s);
        answer(path(u"in.txt"_s));
        testing::internal::CaptureStderr();
        press(command);
        const std::string error = testing::internal::GetCapturedStderr();
        EXPECT_TRUE(panel().contains(u"the stub fails"_s)) << command.toStdString();
        EXPECT_NE(error.find("velloria: "), std::string::npos) << error;
        EXPECT_NE(error.find("the stub fails"), std::string::npos) << error;
        QFile::remove(session.MyPath + (command.contains(u"MT"_s) ? u"Larkport.dll"_s : u"Wrenport.dll"_s));
        answer(path(u"in.txt"_s));
        press(command);
        EXPECT_TRUE(panel().contains(u"ファイルがありません。"_s)) << command.toStdString();
        StubPlugin::install(session.MyPath + u"Larkport.dll"_s);
        StubPlugin::install(session.MyPath + u"Wrenport.dll"_s);
    }
    EXPECT_EQ(boxes(), QStringList());
}

TEST_F(PluginExchangeCommands, AFileThatIsNoneHasItsBox) {
    stub.set("DENIES", u"open_file"_s);
    for (const QString& command : {u"MnuMTImport"_s, u"MnuMTExport"_s, u"MnuHTNImport"_s, u"MnuHTNExport"_s}) {
        answer(path(u"in.txt"_s));
        press(command);
        EXPECT_EQ(boxes().last(), command.endsWith(u"Import"_s) ? u"critical: 入力パスのエラーです"_s
                                                                : u"critical: 出力先パスのエラーです"_s);
    }
}

TEST_F(PluginExchangeCommands, AnImportGoesAgainAsAGroup) {
    import(u"2004/05/06 2004/05/07"_s);
    import(u"2004/05/07"_s, u"MnuHTNImport"_s);
    EXPECT_EQ(diary().ListImportBatches(), (QStringList{u"2004/05/06 Stub(2)"_s, u"2004/05/06 Stub"_s}));
    press(u"MnuDeleteImportDiary"_s);
    auto* window = QApplication::activeWindow();
    control<QComboBox>(*window, u"CmbDiaryGroup"_s).setCurrentText(u"2004/05/06 Stub"_s);
    control<QPushButton>(*window, u"Btn_OK"_s).click();
    settle();
    EXPECT_EQ(rows(), QStringList{u"1own"_s});
    EXPECT_EQ(rows(u"2004/05/07"_s), QStringList{u"1stub"_s});
}

/// The question of an import in its real box.
TEST_F(PluginExchangeCommands, AQuestionWithManyNotesStaysOnTheScreen) {
    desktop::QtDesk real;
    real.setMainWindow(&top());
    QStringList notes;
    for (int line = 1; line <= 200; ++line)
        notes += u"持ち込めないもの %1: コメント 3件、トラックバック 2件、画像 1件"_s.arg(line);
    QRect frame;
    whenShown<desktop::YesNoBox>([&](desktop::YesNoBox& box) {
        frame = box.frameGeometry();
        if (const QString shot = qEnvironmentVariable("VELLORIA_SHOT"); !shot.isEmpty())
            box.grab().save(shot);
        box.button(QMessageBox::No)->click();
    });
    const core::Run asked{session, clock, real};
    EXPECT_EQ(exchange::beginImport(asked, {u"Larkport"_s, {u"2004/05/06"_s}, notes.join(u"\r\n"_s)}), std::nullopt);
    EXPECT_TRUE(top().screen()->availableGeometry().contains(frame));
}

} // namespace
} // namespace velloria::tests
