#include "desktop/editor_home.h"
#include "exchange/forms/frmOtherFormats.h"

using namespace Qt::StringLiterals;

namespace velloria::tests {
namespace {

class OtherFormats : public EditorHome {
protected:
    void SetUp() override {
        EditorHome::SetUp();
        writeDay({u"own"_s});
        QDir().mkpath(path(u"texts"_s));
        writeFile(path(u"texts/2004-05-06.txt"_s), "brought");
        writeFile(path(u"texts/2004-05-09.txt"_s), "brought");
    }

    void open(const QString& command = u"MnuOtherImport"_s) {
        top().command(command)->trigger();
        settle();
        ASSERT_TRUE(window());
        ASSERT_TRUE(window()->isVisible());
    }
    exchange::frmOtherFormats* window() { return context.windows.find<exchange::frmOtherFormats>(); }
    QListWidget& formats() { return control<QListWidget>(*window(), u"LstFormats"_s); }
    QCheckBox& folder() { return control<QCheckBox>(*window(), u"Chk_Folder"_s); }
    void choose(const QString& name) {
        for (int row = 0; row < formats().count(); ++row) {
            if (exchange::foreignFormats()[std::size_t(row)].name == name)
                formats().setCurrentRow(row);
        }
    }
    void press(const QString& name) {
        control<QPushButton>(*window(), name).click();
        settle();
    }
};

TEST_F(OtherFormats, OffersEachFormatWithItsPlace) {
    open();
    ASSERT_EQ(formats().count(), int(exchange::foreignFormats().size()));
    for (int row = 0; row < formats().count(); ++row) {
        using Place = exchange::ForeignFormat::Place;
        const exchange::ForeignFormat& format = exchange::foreignFormats()[std::size_t(row)];
        formats().setCurrentRow(row);
        EXPECT_EQ(formats().item(row)->text(), format.program);
        EXPECT_EQ(folder().isEnabled(), format.place == Place::Either) << format.name.toStdString();
        const bool asksForFolder = format.place != Place::File;
        EXPECT_EQ(folder().isChecked(), asksForFolder);
        desk.answers = {QJsonValue::Null};
        press(u"Btn_OK"_s);
        ASSERT_TRUE(window()) << "a cancel leaves the choice";
        EXPECT_EQ(lastFileEvent()[u"mode"_s], asksForFolder ? u"folder"_s : u"open"_s);
        EXPECT_EQ(lastFileEvent()[u"title"_s], format.program + u"の読み込み"_s);
    }
    choose(u"text"_s);
    folder().setChecked(false);
    desk.answers = {QJsonValue::Null};
    press(u"Btn_OK"_s);
    EXPECT_EQ(lastFileEvent()[u"mode"_s], u"open"_s);
    EXPECT_NE(lastFileEvent()[u"filter"_s], u""_s);
    press(u"Btn_Cancel"_s);
    EXPECT_FALSE(window());
    EXPECT_EQ(boxes(), QStringList());
}

TEST_F(OtherFormats, ImportsAndShowsWhatCame) {
    clickDay(6);
    open();
    choose(u"text"_s);
    answer(path(u"texts"_s));
    answer(u"yes"_s);
    press(u"Btn_OK"_s);
    EXPECT_FALSE(window());
    EXPECT_EQ(rows().size(), 2);
    EXPECT_EQ(caption(), u"2004/05/06分の日記[1/2]"_s);
    EXPECT_TRUE(month().markedDays().withEntries.contains(QDate(2004, 5, 9)));
    EXPECT_EQ(diary().ListImportBatches().size(), 1);
}

TEST_F(OtherFormats, StaysAfterANo) {
    open();
    choose(u"text"_s);
    answer(path(u"texts"_s));
    answer(u"no"_s);
    press(u"Btn_OK"_s);
    EXPECT_TRUE(window());
    EXPECT_EQ(rows().size(), 1);
}

TEST_F(OtherFormats, StaysAfterAFailure) {
    open();
    choose(u"text"_s);
    answer(path(u"nowhere"_s));
    expectedFailures = 1;
    press(u"Btn_OK"_s);
    EXPECT_TRUE(window());
    EXPECT_EQ(rows().size(), 1);
}

TEST_F(OtherFormats, WhatIsBeingEditedStays) {
    clickDay(6);
    title().setText(u"unsaved"_s);
    open();
    choose(u"text"_s);
    answer(path(u"texts"_s));
    answer(u"yes"_s);
    press(u"Btn_OK"_s);
    EXPECT_EQ(title().text(), u"unsaved"_s);
    EXPECT_TRUE(panel().contains(u"編集中"_s)) << panel().toStdString();
}

TEST_F(OtherFormats, ExportsIntoAFolderOrAFile) {
    for (const bool isFolder : {true, false}) {
        const QString target = path(isFolder ? u"markdown"_s : u"diary.jsonl"_s);
        open(u"MnuOtherExport"_s);
        EXPECT_EQ(window()->windowTitle(), u"その他の形式のエクスポート"_s);
        ASSERT_EQ(formats().count(), 2);
        formats().setCurrentRow(isFolder ? 0 : 1);
        EXPECT_FALSE(folder().isEnabled());
        EXPECT_EQ(folder().isChecked(), isFolder);
        answer(target);
        press(u"Btn_OK"_s);
        EXPECT_EQ(lastFileEvent()[u"mode"_s], isFolder ? u"folder"_s : u"save"_s);
        EXPECT_EQ(QFileInfo(target).isDir(), isFolder);
        EXPECT_TRUE(exists(target));
        EXPECT_FALSE(window());
        EXPECT_FALSE(lastStatus().isEmpty());
    }
    EXPECT_EQ(boxes(), QStringList());
}

TEST_F(OtherFormats, ExportsNothingOverTheDiary) {
    open(u"MnuOtherExport"_s);
    formats().setCurrentRow(1);
    const QByteArray before = bytesOf(session.databaseFile());
    answer(session.databaseFile());
    expectedFailures = 1;
    press(u"Btn_OK"_s);
    EXPECT_TRUE(window());
    EXPECT_EQ(bytesOf(session.databaseFile()), before);
}

TEST_F(OtherFormats, TurnsToTheOtherDirection) {
    open();
    const int imports = formats().count();
    formats().setCurrentRow(imports - 1);
    open(u"MnuOtherExport"_s);
    EXPECT_EQ(formats().count(), 2);
    open();
    EXPECT_EQ(formats().count(), imports);
    EXPECT_EQ(formats().currentRow(), 0);
    EXPECT_EQ(window()->windowTitle(), u"その他の形式のインポート"_s);
}

} // namespace
} // namespace velloria::tests
