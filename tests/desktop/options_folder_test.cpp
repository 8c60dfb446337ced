// The data folder in the options: what is kept of it, and a whole program that works in another one from then on.
#include "browser_home.h"
#include "options_home.h"
#include "platform/directory.h"
#include "platform/failure.h"
#include "platform/file_write.h"
#include "registers/file_registration.h"
#include "shell/data_folder.h"

#include <QDir>

using namespace Qt::StringLiterals;

namespace velloria::tests {
namespace {

const QString kBadFolder = u"critical: 「データ保存先フォルダ」が不正です。有効なフォルダを指定して下さい。"_s;
const QString kLongFolder = u"critical: フォルダの名前が長すぎて設定に保存できません。\r\n"
                            u"もっと短い名前のフォルダを指定して下さい。"_s;

class OptionsFolder : public OptionsHome {
protected:
    void SetUp() override {
        OptionsHome::SetUp();
        ASSERT_TRUE(QDir().mkdir(other()));
    }
    QString other() const { return path(u"other"_s); }
    void type(const QString& folder) {
        if (!window())
            open();
        line("txtSaveFolder").setText(folder);
    }
};

TEST_F(OptionsFolder, IsShownWithItsSeparator) {
    setKey("ALL", "DataPath", other());
    open();
    EXPECT_EQ(line("txtSaveFolder").text(), other() + u'/');
    press("Btn_Cancel");
}

TEST_F(OptionsFolder, IsStoredAsTypedAndUsedWithItsSeparator) {
    for (const QString& typed : {other(), other() + u'/'}) {
        type(typed);
        press("Btn_OK");
        EXPECT_FALSE(isOpen());
        EXPECT_EQ(key("ALL", "DataPath"), typed);
        EXPECT_EQ(session.DataPath, other() + u'/');
    }
    EXPECT_EQ(boxes(), QStringList());
}

TEST_F(OptionsFolder, WhatIsNoFolderIsKeptAndTheDialogSaysSoAndStays) {
    writeFile(path(u"file"_s), "x");
    const QString before = QDir::currentPath();
    ASSERT_TRUE(QDir::setCurrent(home.path()));
    for (const QString& typed : {path(u"bad"_s), path(u"file"_s), u"other"_s, u"C:\\Diary"_s, u""_s}) {
        desk.events = {};
        type(typed);
        press("Btn_OK");
        EXPECT_EQ(boxes(), QStringList{kBadFolder}) << typed.toStdString();
        ASSERT_TRUE(isOpen());
        EXPECT_EQ(key("ALL", "DataPath"), typed);
        EXPECT_TRUE(QDir(other()).isEmpty());
        EXPECT_TRUE(session.DataPath.startsWith(u'/') && session.DataPath.endsWith(u'/'))
            << "nothing of the folder that the program was started from: " << session.DataPath.toStdString();
    }
    ASSERT_TRUE(QDir::setCurrent(before));
    type(path(u"bad"_s));
    press("Btn_Apply");
    EXPECT_EQ(session.DataPath, path(u"bad/"_s));
    press("Btn_Cancel");
    EXPECT_FALSE(isOpen()) << "it has been applied, so nothing is asked";
    desk.events = {};
    desk.answers = {QJsonValue::Null};
    core::Session next;
    EXPECT_EQ(shell::Startup({next, clock, desk}).run(home.path(), std::nullopt), shell::StartResult::Ended);
    EXPECT_EQ(boxes().first(), u"critical: データ保存先フォルダが不正です。\r\n"
                               u"有効なデータ保存先フォルダを指定して下さい。"_s);
}

TEST_F(OptionsFolder, ANameThatIsNoPathLeadsToNoFolderOfTheDisk) {
    for (const QString& typed : {u""_s, u"tmp"_s, u"../../tmp"_s, u"C:\\Diary"_s}) {
        type(typed);
        press("Btn_Apply");
        EXPECT_FALSE(QFileInfo::exists(session.DataPath)) << session.DataPath.toStdString();
        EXPECT_THROW(platform::makeFolder(session.DataPath), platform::Failure);
        EXPECT_EQ(platform::listFolder(session.DataPath, u"*"_s), QStringList());
    }
    press("Btn_Cancel");
}

TEST_F(OptionsFolder, ABadOneThatHasComeMeanwhileIsTaken) {
    type(path(u"late"_s));
    press("Btn_OK");
    ASSERT_TRUE(isOpen());
    ASSERT_TRUE(QDir().mkdir(path(u"late"_s)));
    press("Btn_OK");
    EXPECT_FALSE(isOpen());
    EXPECT_TRUE(exists(path(u"late/Customize/Customize.ini"_s)));
}

TEST_F(OptionsFolder, WhatTheSettingsGiveBackCountsNotWhatWasTyped) {
    type(other() + u"  "_s);
    press("Btn_OK");
    EXPECT_FALSE(isOpen());
    EXPECT_EQ(session.DataPath, other() + u'/');
}

TEST_F(OptionsFolder, ANameTooLongForTheSettingsWritesNothing) {
    const QByteArray before = settingsFile();
    const QString folder = session.DataPath;
    type(path(QString(240, u'x')));
    desk.answers = {u"yes"_s};
    press("Btn_Apply");
    press("Btn_OK");
    press("Btn_Cancel");
    EXPECT_EQ(boxes(),
              (QStringList{kLongFolder, kLongFolder, u"question: 変更されていますが、保存しますか？"_s, kLongFolder}));
    EXPECT_EQ(settingsFile(), before);
    EXPECT_EQ(session.DataPath, folder);
    ASSERT_TRUE(isOpen());
    EXPECT_TRUE(button("Btn_Apply").isEnabled());
    desk.answers = {u"no"_s};
    press("Btn_Cancel");
    EXPECT_FALSE(isOpen());
}

TEST_F(OptionsFolder, StaysWhileAnUploadRuns) {
    const QByteArray before = settingsFile();
    const QString folder = session.DataPath;
    type(other());
    context.runs.run(desktop::LongRoutine::Upload, [&] { press("Btn_OK"); });
    EXPECT_EQ(boxes(), QStringList{u"critical: 通信が終わってから、データ保存先フォルダを変えてください。"_s});
    ASSERT_TRUE(isOpen());
    EXPECT_EQ(settingsFile(), before);
    EXPECT_EQ(session.DataPath, folder);
    press("Btn_OK");
    EXPECT_FALSE(isOpen());
    EXPECT_EQ(session.DataPath, other() + u'/');
}

TEST_F(OptionsFolder, TheOneInUseMayBeKeptWhileAnUploadRunsHoweverItIsSpelt) {
    setKey("ALL", "DataPath", session.DataPath.chopped(1).replace(u"UserData"_s, u"USERDATA"_s));
    open();
    ASSERT_NE(line("txtSaveFolder").text(), session.DataPath);
    context.runs.run(desktop::LongRoutine::Upload, [&] { press("Btn_OK"); });
    EXPECT_EQ(boxes(), QStringList());
    EXPECT_FALSE(isOpen());
}

TEST_F(OptionsFolder, AChosenOneWhoseNameEndsInABlankIsTheOneThatIsMeant) {
    const QString blank = other() + u' ';
    ASSERT_TRUE(QDir().mkdir(blank));
    open();
    desk.answers = {blank};
    press("BtnOpenFolder");
    press("Btn_OK");
    EXPECT_EQ(session.DataPath, blank + u'/');
    EXPECT_EQ(shell::folderOfSetting(key("ALL", "DataPath")), session.DataPath);
}

TEST_F(OptionsFolder, IsChosenInADialog) {
    const QString shown = session.DataPath;
    open();
    desk.answers = {QJsonValue::Null};
    press("BtnOpenFolder");
    EXPECT_EQ(lastFileEvent()[u"title"_s], u"フォルダの選択"_s);
    EXPECT_EQ(lastFileEvent()[u"mode"_s], u"folder"_s);
    EXPECT_EQ(lastFileEvent()[u"folder"_s], shown);
    EXPECT_EQ(line("txtSaveFolder").text(), shown);
    EXPECT_FALSE(button("Btn_Apply").isEnabled());
    desk.answers = {path(QString(240, u'x'))};
    press("BtnOpenFolder");
    EXPECT_EQ(boxes(), QStringList{kLongFolder});
    EXPECT_EQ(line("txtSaveFolder").text(), shown);
    desk.answers = {other()};
    press("BtnOpenFolder");
    EXPECT_EQ(line("txtSaveFolder").text(), other());
    EXPECT_EQ(session.DataPath, shown) << "not before an Apply";
    press("Btn_OK");
    EXPECT_EQ(session.DataPath, other() + u'/');
}

TEST_F(OptionsFolder, OneThatCantTakeTheWorkingFoldersIsToldAndNothingChanges) {
    writeFile(other() + u"/Customize"_s, "a file");
    const QByteArray before = settingsFile();
    const QString folder = session.DataPath;
    type(other());
    press("Btn_OK");
    expectedFailures = 1;
    ASSERT_TRUE(isOpen());
    EXPECT_TRUE(button("Btn_Apply").isEnabled());
    EXPECT_EQ(settingsFile(), before);
    EXPECT_EQ(session.DataPath, folder);
    desk.answers = {u"no"_s};
    press("Btn_Cancel");
}

TEST_F(OptionsFolder, ANewOneIsReadyForWorkAtOnce) {
    writeFile(path(u"x.gif"_s), "GIF89a");
    const QString customizeIni = key("Customize", "IniFileName");
    type(other());
    press("Btn_Apply");
    for (const QString& name : {u"DiaryParts/Shinny.gif"_s, u"DiaryLog"_s, u"Customize/Customize.ini"_s,
                                u"ExportFormat/TEXT.ini"_s, u"BlogTemplate"_s})
        EXPECT_TRUE(QFileInfo::exists(other() + u'/' + name)) << name.toStdString();
    registers::FileRegistration(context).ResistFile(path(u"x.gif"_s), u"ALL"_s, 0);
    EXPECT_TRUE(exists(other() + u"/DiaryParts/x.gif"_s));
    EXPECT_EQ(key("Customize", "IniFileName"), customizeIni) << "the other files of the user stay where they are";
    EXPECT_EQ(session.CustIniFile, customizeIni);
    press("Btn_Cancel");
}

TEST_F(OptionsFolder, ATemplateThatCannotBeBroughtThereIsTold) {
    const QString taken = other() + u"/BlogTemplate/tDiary.ini"_s;
    ASSERT_TRUE(QDir().mkpath(taken + u"/folder"_s));
    QFile newer(path(u"tDiary.blg"_s));
    ASSERT_TRUE(newer.open(QIODevice::ReadWrite) &&
                newer.setFileTime(QDateTime::currentDateTime().addDays(1), QFileDevice::FileModificationTime));
    newer.close();
    type(other());
    press("Btn_Apply");
    EXPECT_EQ(session.DataPath, other() + u'/');
    EXPECT_TRUE(exists(other() + u"/BlogTemplate/WordPress.ini"_s)) << "the others come";
    EXPECT_TRUE(desk.texts(u"status"_s).join(u'\n').contains(taken));
    press("Btn_Cancel");
}

TEST_F(OptionsFolder, TheListsOfOpenWindowsAreThoseOfTheNewOne) {
    writeFile(other() + u"/Genre.csv"_s, "\x88\xEA\x94\xCA\r\nNewGenre\r\n");
    ASSERT_TRUE(QDir().mkpath(other() + u"/BlogTemplate"_s));
    writeFile(other() + u"/BlogTemplate/NewBlog.ini"_s, "");
    ASSERT_TRUE(QDir().mkpath(other() + u"/ExportFormat"_s));
    writeFile(other() + u"/ExportFormat/NewFormat.ini"_s, "");
    top().command(u"MnuFindDiary"_s)->trigger();
    top().command(u"MnuTextExport"_s)->trigger();
    const auto& found = *top().findChild<QComboBox*>(u"cmbGenre"_s);
    const auto& formats = *top().findChild<QComboBox*>(u"cmbExportFormat_User"_s);
    const auto& blogs = control<QComboBox>(calendar(), u"cmbBlog"_s);
    const auto listed = [](const QComboBox& box, const QString& item) { return box.findText(item) >= 0; };
    const QString blogBefore = blogs.currentText();
    EXPECT_FALSE(listed(combo(u"ComboGenre"_s), u"NewGenre"_s));
    type(other());
    press("Btn_OK");
    EXPECT_TRUE(listed(combo(u"ComboGenre"_s), u"NewGenre"_s));
    EXPECT_TRUE(listed(found, u"NewGenre"_s));
    EXPECT_TRUE(listed(blogs, u"NewBlog"_s));
    EXPECT_EQ(blogs.currentText(), blogBefore);
    EXPECT_TRUE(listed(formats, u"NewFormat.ini"_s));
}

TEST_F(OptionsFolder, OfAUserWhoLoggedInNoLocalPageStaysInTheOldOne) {
    const QString before = session.DataPath;
    for (const bool isLogin : {false, true}) {
        for (const QString& name : {u"tmp.htm"_s, u"Customize_C.htm"_s, u"index.htm"_s, u"mine.htm"_s})
            writeFile(before + name, "x");
        session.IsLogin = isLogin;
        type(isLogin ? other() : path(u""_s));
        press("Btn_OK");
        EXPECT_NE(session.DataPath, before);
        EXPECT_EQ(exists(before + u"tmp.htm"_s), !isLogin);
        EXPECT_EQ(exists(before + u"Customize_C.htm"_s), !isLogin);
        EXPECT_TRUE(exists(before + u"index.htm"_s));
        EXPECT_TRUE(exists(before + u"mine.htm"_s));
        type(before);
        press("Btn_OK");
    }
    session.IsLogin = false;
}

TEST_F(OptionsFolder, AnotherNameOfTheSameOneTakesNoPageAway) {
    const QString before = session.DataPath;
    ASSERT_TRUE(QFile::link(before.chopped(1), path(u"link"_s)));
    session.IsLogin = true;
    for (const QString& typed : {path(u"link"_s), before + u"/./"_s}) {
        writeFile(before + u"tmp.htm"_s, "x");
        type(typed);
        press("Btn_OK");
        EXPECT_FALSE(isOpen());
        EXPECT_TRUE(exists(before + u"tmp.htm"_s)) << typed.toStdString();
    }
    session.IsLogin = false;
}

TEST_F(OptionsFolder, OfAUserWhoLoggedInNoLocalPageStaysAfterABadOneEither) {
    const QString before = session.DataPath;
    session.IsLogin = true;
    writeFile(before + u"tmp.htm"_s, "x");
    type(path(u"bad"_s));
    press("Btn_Apply");
    EXPECT_FALSE(exists(before + u"tmp.htm"_s));
    press("Btn_Cancel");
    session.IsLogin = false;
}

TEST_F(OptionsFolder, TheOpenEntryStaysWithItsMark) {
    clickDay({2004, 5, 6});
    title().insert(u"T"_s);
    pane().insertPlainText(u"typed"_s);
    combo(u"ComboGenre"_s).setEditText(u"mine"_s);
    ASSERT_TRUE(context.windows.get<editor::OpenDay>().isDirty());
    type(other());
    press("Btn_OK");
    EXPECT_EQ(title().text(), u"T"_s);
    EXPECT_EQ(pane().toPlainText(), u"typed"_s);
    EXPECT_EQ(combo(u"ComboGenre"_s).currentText(), u"mine"_s);
    EXPECT_TRUE(context.windows.get<editor::OpenDay>().isDirty());
    EXPECT_EQ(context.windows.get<editor::OpenDay>().save(), editor::SaveOutcome::Saved);
    EXPECT_TRUE(bytesOf(other() + u"/Genre.csv"_s).contains("mine"));
}

class OptionsBrowser : public BrowserHome {
protected:
    /// The page in the browser when the data folder becomes another one.
    void change(const QString& page) {
        open(page);
        ASSERT_TRUE(waitFor([this] { return !browser().LocationURL().isEmpty(); }));
        ASSERT_TRUE(QDir().mkdir(path(u"other"_s)));
        top().command(u"MnuPref"_s)->trigger();
        auto& options = context.windows.get<shell::frmOptions>();
        control<QLineEdit>(options, u"txtSaveFolder"_s).setText(path(u"other"_s));
        desk.events = {};
        control<QPushButton>(options, u"Btn_OK"_s).click();
        settle();
    }
};

TEST_F(OptionsBrowser, APageOfTheOldFolderGivesWayToThePreviewFromTheNewOne) {
    writePage(u"tmp.htm"_s, "old");
    change(pagePath(u"tmp.htm"_s));
    EXPECT_EQ(desk.texts(u"navigate"_s), QStringList{path(u"other/tmp.htm"_s)});
    EXPECT_TRUE(exists(path(u"other/tmp.htm"_s)));
    EXPECT_EQ(desk.texts(u"failure"_s), QStringList());
}

TEST_F(OptionsBrowser, TheSameHoldsWhenABadFolderCameBetween) {
    writePage(u"tmp.htm"_s, "old");
    open(pagePath(u"tmp.htm"_s));
    ASSERT_TRUE(waitFor([this] { return !browser().LocationURL().isEmpty(); }));
    top().command(u"MnuPref"_s)->trigger();
    auto& options = context.windows.get<shell::frmOptions>();
    control<QLineEdit>(options, u"txtSaveFolder"_s).setText(path(u"bad"_s));
    control<QPushButton>(options, u"Btn_OK"_s).click();
    settle();
    ASSERT_TRUE(QDir().mkdir(path(u"other"_s)));
    control<QLineEdit>(options, u"txtSaveFolder"_s).setText(path(u"other"_s));
    desk.events = {};
    control<QPushButton>(options, u"Btn_OK"_s).click();
    settle();
    EXPECT_EQ(desk.texts(u"navigate"_s), QStringList{path(u"other/tmp.htm"_s)});
}

TEST_F(OptionsBrowser, APageOfAnotherPlaceStays) {
    writeFile(path(u"else.htm"_s), "else");
    change(path(u"else.htm"_s));
    EXPECT_EQ(desk.texts(u"navigate"_s), QStringList());
    EXPECT_FALSE(exists(path(u"other/tmp.htm"_s)));
}

} // namespace
} // namespace velloria::tests
