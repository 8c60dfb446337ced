#include "exchange/customize_files.h"

#include "core/keys.h"
#include "core/settings.h"
#include "core/site_keys.h"
#include "platform/directory.h"
#include "platform/file_write.h"
#include "site/customize_sets.h"
#include "support/faulty_disk.h"

namespace velloria::tests {
namespace {

namespace keys = core::keys;

// ---- import

TEST_F(CustomizeFiles, AnImportCopiesEveryByteBesideTheSelectedSetAndSelectsNothing) {
    const QByteArray odd = "\xef\xbb\xbf" + kSet + "no line end \x81";
    EXPECT_TRUE(import(file(u"look.ini"_s, odd)));
    EXPECT_EQ(bytesOf(setFile(u"look"_s)), odd);
    EXPECT_EQ(imported, setFile(u"look"_s));
    EXPECT_EQ(site::selectedCustomizeSet(session), u"Customize"_s);
    EXPECT_EQ(lastStatus(), u"カスタマイズファイルの読み込みに成功しました。"_s);
    EXPECT_EQ(core::Settings(session).text(keys::kLoadCustPath), out().chopped(1));
    // Beside the selected set, wherever that lies.
    QDir(home.path()).mkdir(u"sets"_s);
    session.CustIniFile = path(u"sets/a.ini"_s);
    EXPECT_TRUE(import(out(u"look.ini"_s)));
    EXPECT_EQ(bytesOf(path(u"sets/look.ini"_s)), odd);
}

TEST_F(CustomizeFiles, TheDialogBeginsWhereTheLastImportEndedAndFirstInTheProgramsFolder) {
    EXPECT_TRUE(import(file(u"look.ini"_s)));
    EXPECT_EQ(lastFileEvent()[u"mode"_s], u"open"_s);
    EXPECT_EQ(lastFileEvent()[u"filter"_s], u"Customize Files(*.cst,*.ini)|*.cst;*.ini|ALL Files(*.*)|*.*"_s);
    EXPECT_EQ(lastFileEvent()[u"folder"_s], session.MyPath);
    EXPECT_TRUE(import(file(u"other.ini"_s)));
    EXPECT_EQ(lastFileEvent()[u"folder"_s], out().chopped(1));
}

TEST_F(CustomizeFiles, AFileThatDoesNotEndInIniCountsAsOneForOthers) {
    const QMap<QString, QString> names{
        {u"a.cst"_s, u"a.ini"_s},   {u"b.CST"_s, u"b.ini"_s}, {u"c.txt"_s, u"c.ini"_s},
        {u"d"_s, u"d.ini"_s},       {u"e.INI"_s, u"e.INI"_s}, {u"f.tar.gz"_s, u"f.tar.ini"_s},
        {u"g.xini"_s, u"g.xini"_s}, {u"hini"_s, u"hini"_s},   {u"絵文字😀.cst"_s, u"絵文字😀.ini"_s}};
    for (const auto& [name, target] : names.asKeyValueRange()) {
        EXPECT_TRUE(import(file(name))) << name.toStdString();
        EXPECT_EQ(imported, folder() + target);
        EXPECT_EQ(bytesOf(folder() + target), kSet);
    }
}

TEST_F(CustomizeFiles, ImportingACstWhenTheSetExistsAsksForANewName) {
    writeFile(setFile(u"a"_s), "old");
    EXPECT_TRUE(import(file(u"a.cst"_s), {u"b"_s}));
    EXPECT_EQ(inputEvent()[u"text"_s], kNewName);
    EXPECT_EQ(inputEvent()[u"title"_s], u"Velloria"_s);
    EXPECT_EQ(bytesOf(setFile(u"a"_s)), "old");
    EXPECT_EQ(bytesOf(setFile(u"b"_s)), kSet);
    // On a Windows disk these are one name.
    EXPECT_TRUE(import(file(u"A.cst"_s), {u"c"_s}));
    EXPECT_FALSE(QFile::exists(setFile(u"A"_s)));
}

TEST_F(CustomizeFiles, NoNameASecondClashAndANameThatCantBeEndTheImportWithoutAWord) {
    writeFile(setFile(u"a"_s), "old");
    const QString source = file(u"a.cst"_s);
    const QMap<QString, QByteArray> before = contentOf(session.DataPath);
    for (const QJsonValue& answer : QJsonArray{QJsonValue(), u""_s, u"mine"_s, u"MINE"_s, u"../x"_s, u"a/b"_s, u"a:b"_s,
                                               u"a*b"_s, u"a?b"_s, u"a\"b"_s, u"a<b"_s, u"a>b"_s, u"a|b"_s, u"a\\b"_s,
                                               u" "_s, u"x."_s, u"\u0001"_s, u"😀"_s, QString(300, u'x')}) {
        EXPECT_FALSE(import(source, {answer})) << answer.toString().toStdString();
        EXPECT_EQ(lastStatus(), u"カスタマイズファイルの読み込みに失敗しました。"_s);
        EXPECT_TRUE(boxes().isEmpty());
    }
    EXPECT_EQ(contentOf(session.DataPath), before);
    EXPECT_EQ(core::Settings(session).text(keys::kLoadCustPath), u""_s);
}

TEST_F(CustomizeFiles, ACancelledImportChangesNothing) {
    const QMap<QString, QByteArray> before = contentOf(home.path());
    desk.answers = {QJsonValue()};
    EXPECT_FALSE(CustomizeExchange(run).importCommand());
    EXPECT_EQ(lastStatus(), u"カスタマイズファイルの読み込みに失敗しました。"_s);
    EXPECT_EQ(contentOf(home.path()), before);
}

TEST_F(CustomizeFiles, WhatIsNoSetIsCopiedAndNamed) {
    const QMap<QString, QByteArray> files{{u"picture"_s, QByteArray("\x89PNG\r\n\x1a\n\0\0", 10)},
                                          {u"empty"_s, ""},
                                          {u"others"_s, "[FTP]\r\nURL=x\r\n[Author]\r\nName=n\r\n"},
                                          {u"large"_s, kSet + QByteArray(1024 * 1024, ' ')}};
    for (const auto& [name, bytes] : files.asKeyValueRange()) {
        EXPECT_TRUE(import(file(name + u".cst"_s, bytes)));
        EXPECT_EQ(bytesOf(setFile(name)), bytes);
        EXPECT_EQ(desk.texts(u"status"_s),
                  (QStringList{u"カスタマイズファイルの読み込みに成功しました。"_s,
                               u"取り込んだ「%1.ini」には、カスタマイズの項目が見つかりませんでした。"_s.arg(name)}));
    }
    EXPECT_TRUE(import(file(u"general_is_missing.cst"_s, "[pagemovelink]\r\nAlign=Left\r\n")));
    EXPECT_EQ(desk.texts(u"status"_s).size(), 1);
}

TEST_F(CustomizeFiles, AnImportThatTheMachineRefusesLeavesEverythingAsItWas) {
    EXPECT_THROW(import(out(u"missing.ini"_s)), platform::Failure);
    desk.answers = {};
    EXPECT_THROW(import(out().chopped(1)), platform::Failure) << "a folder";
    const QString source = file(u"look.ini"_s);
    const QMap<QString, QByteArray> before = contentOf(home.path());
    {
        FaultyDisk disk(folder());
        disk.failAt(Fault::FullDisk, 1);
        EXPECT_THROW(import(source), platform::Failure);
    }
    EXPECT_EQ(contentOf(home.path()), before);
    ASSERT_TRUE(QDir(folder()).removeRecursively());
    writeFile(folder().chopped(1), "a file in the folder's place");
    EXPECT_THROW(import(source), platform::Failure);
    EXPECT_EQ(bytesOf(folder().chopped(1)), "a file in the folder's place");
}

TEST_F(CustomizeFiles, SettingsThatCantBeWrittenOnlyForgetTheFolder) {
    ASSERT_TRUE(QFile::setPermissions(session.DiaryIniFile, QFile::ReadOwner));
    EXPECT_TRUE(import(file(u"look.ini"_s)));
    EXPECT_TRUE(exportTo(out(u"x.ini"_s)));
    EXPECT_EQ(core::Settings(session).text(keys::kLoadCustPath), u""_s);
}

// ---- export

TEST_F(CustomizeFiles, ABackupIsTheSetAndASignature) {
    EXPECT_TRUE(exportTo(out(u"x"_s)));
    EXPECT_EQ(exported, out(u"x.ini"_s));
    EXPECT_EQ(bytesOf(out(u"x.ini"_s)), kSet + kSigned);
    EXPECT_EQ(bytesOf(setFile(u"mine"_s)), kSet);
    EXPECT_EQ(lastStatus(), u"カスタマイズファイルの出力に成功しました。"_s);
    EXPECT_EQ(core::Settings(session).text(keys::kSaveCustPath), out().chopped(1));
}

TEST_F(CustomizeFiles, TheSaveDialogTellsItsFormatAndBeginsWhereTheLastOneEnded) {
    EXPECT_TRUE(exportTo(out(u"x"_s)));
    EXPECT_EQ(lastFileEvent()[u"mode"_s], u"save"_s);
    EXPECT_EQ(lastFileEvent()[u"filter"_s], u"Customize Files(*.ini)|*.ini|ALL Files(*.*)|*.*"_s);
    EXPECT_EQ(lastFileEvent()[u"folder"_s], session.MyPath);
    EXPECT_TRUE(exportTo(out(u"x"_s), CustomizeFormat::Cst));
    EXPECT_EQ(lastFileEvent()[u"filter"_s], u"Customize Files(*.cst)|*.cst|ALL Files(*.*)|*.*"_s);
    EXPECT_EQ(lastFileEvent()[u"folder"_s], out().chopped(1));
}

TEST_F(CustomizeFiles, TheEndingIsAddedWhenTheNameHasAnotherOne) {
    const struct {
        QString chosen;
        CustomizeFormat format;
        QString written;
    } cases[] = {{u"a"_s, CustomizeFormat::Ini, u"a.ini"_s},
                 {u"b.INI"_s, CustomizeFormat::Ini, u"b.INI"_s},
                 {u"c.cst"_s, CustomizeFormat::Ini, u"c.cst.ini"_s},
                 {u"d.ini"_s, CustomizeFormat::Cst, u"d.ini.cst"_s},
                 {u"e.Cst"_s, CustomizeFormat::Cst, u"e.Cst"_s}};
    for (const auto& c : cases) {
        EXPECT_TRUE(exportTo(out(c.chosen), c.format));
        EXPECT_TRUE(QFile::exists(out(c.written))) << c.written.toStdString();
    }
}

/// The list of keys is told once more, on its own: whoever changes a row of the catalogue must think of it.
TEST_F(CustomizeFiles, ASetForOthersHasExactlyThePersonalKeysEmpty) {
    const QMap<QString, QStringList> personal{
        {u"General"_s, {u"HPTitle"_s, u"StyleSheetURL"_s, u"HeadTag"_s, u"HeadTag_Div"_s}},
        {u"Body"_s,
         {u"BackImage"_s, u"UpText"_s, u"DownText"_s, u"UpText_Div"_s, u"DownText_Div"_s, u"UpText_Log"_s,
          u"DownText_Log"_s, u"UpText_Div_Log"_s, u"DownText_Div_Log"_s}},
        {u"CalenderWindow"_s, {u"UpText"_s, u"DownText"_s, u"BGImage"_s, u"HeadTag"_s}}};
    int blanks = 0;
    for (const core::Setting* setting : keys::kCustomizeSet)
        core::WriteIni(setFile(u"mine"_s), setting->section.toString(), setting->name.toString(), u"7"_s);
    writeFile(folder() + u"7.htm"_s, "a piece");
    EXPECT_TRUE(exportTo(out(u"x"_s), CustomizeFormat::Cst));
    for (const core::Setting* setting : keys::kCustomizeSet) {
        const QString section = setting->section.toString();
        const QString name = setting->name.toString();
        const bool isBlank = personal.value(section).contains(name);
        blanks += isBlank;
        EXPECT_EQ(key(out(u"x.cst"_s), section, name), isBlank ? u""_s : u"7"_s)
            << section.toStdString() << ' ' << name.toStdString();
    }
    EXPECT_EQ(blanks, 17);
    EXPECT_EQ(key(out(u"x.cst"_s), u"General"_s, u"HeadTag_Div_Log"_s), u"7"_s);
    EXPECT_EQ(key(out(u"x.cst"_s), u"General"_s, u"Unknown"_s), u"1"_s);
    EXPECT_EQ(key(out(u"x.cst"_s), u"Author"_s, u"Name"_s), u"太郎"_s);
    EXPECT_EQ(QDir(out()).entryList(QDir::Files), QStringList{u"x.cst"_s}) << "pieces stay behind";
}

TEST_F(CustomizeFiles, AKeyThatTheSetLacksIsThereAndEmptyInASetForOthers) {
    writeFile(setFile(u"mine"_s), "");
    EXPECT_TRUE(exportTo(out(u"x"_s), CustomizeFormat::Cst));
    EXPECT_EQ(key(out(u"x.cst"_s), u"CalenderWindow"_s, u"HeadTag"_s), u""_s);
}

TEST_F(CustomizeFiles, AnAuthorWithoutANameSignsWithEmptyValues) {
    EXPECT_TRUE(exportTo(out(u"x"_s), CustomizeFormat::Ini, {}, {}));
    EXPECT_EQ(bytesOf(out(u"x.ini"_s)), kSet + "[Author]\r\nName=\r\nURL=\r\nE-mail=\r\n");
}

TEST_F(CustomizeFiles, AFileThatIsThereIsReplacedForAYes) {
    EXPECT_TRUE(exportTo(file(u"x.ini"_s, "old\r\n"), CustomizeFormat::Ini, {u"yes"_s}));
    EXPECT_EQ(boxes(), QStringList{kReplace});
    EXPECT_EQ(boxTitles(), QSet<QString>{u"Velloria"_s});
    EXPECT_EQ(bytesOf(out(u"x.ini"_s)), kSet + kSigned);
}

TEST_F(CustomizeFiles, ForANoTheOldFileGetsSignatureAndBlanksAndThatIsASuccess) {
    EXPECT_TRUE(exportTo(file(u"x.ini"_s, "[General]\r\nHPTitle=Old\r\n"), CustomizeFormat::Ini, {u"no"_s}));
    EXPECT_EQ(bytesOf(out(u"x.ini"_s)), "[General]\r\nHPTitle=Old\r\n" + kSigned);
    EXPECT_EQ(lastStatus(), u"カスタマイズファイルの出力に成功しました。"_s);
    EXPECT_TRUE(
        exportTo(file(u"x.cst"_s, "[General]\r\nHPTitle=Old\r\nUseLog=1\r\n"), CustomizeFormat::Cst, {u"no"_s}));
    EXPECT_EQ(key(out(u"x.cst"_s), u"General"_s, u"HPTitle"_s), u""_s);
    EXPECT_EQ(key(out(u"x.cst"_s), u"General"_s, u"UseLog"_s), u"1"_s);
    EXPECT_EQ(key(out(u"x.cst"_s), u"Author"_s, u"URL"_s), u"http://a.example/"_s);
}

TEST_F(CustomizeFiles, ExportingASetOverItsOwnFileKeepsItWhole) {
    for (const QString& answer : {u"yes"_s, u"no"_s}) {
        writeFile(setFile(u"mine"_s), kSet);
        EXPECT_TRUE(exportTo(setFile(u"mine"_s), CustomizeFormat::Ini, {answer}));
        EXPECT_EQ(bytesOf(setFile(u"mine"_s)), kSet + kSigned) << answer.toStdString();
    }
    // By another name as well, under which the blanks would have hit the set itself.
    writeFile(setFile(u"mine"_s), kSet);
    ASSERT_TRUE(QFile::link(setFile(u"mine"_s), out(u"x.cst"_s)));
    EXPECT_TRUE(exportTo(out(u"x.cst"_s), CustomizeFormat::Cst, {u"yes"_s}));
    EXPECT_EQ(bytesOf(setFile(u"mine"_s)), kSet + kSigned);
}

TEST_F(CustomizeFiles, ACancelledExportChangesNothing) {
    const QMap<QString, QByteArray> before = contentOf(home.path());
    for (const QJsonValue& answer : QJsonArray{QJsonValue(), u""_s}) {
        desk.answers = {answer};
        EXPECT_FALSE(CustomizeExchange(run).exportCommand(u"mine"_s, CustomizeFormat::Cst, kAuthor));
        EXPECT_EQ(lastStatus(), u"カスタマイズファイルの出力に失敗しました。"_s);
    }
    EXPECT_EQ(contentOf(home.path()), before);
}

TEST_F(CustomizeFiles, SettingsOfTheProgramAreNoTargetWhateverTheAnswer) {
    for (const QString& own : {session.DiaryIniFile, path(u"HTML2TXT.ini"_s), path(u"endpoints.ini"_s)}) {
        const QByteArray before = bytesOf(own);
        EXPECT_THROW(exportTo(own, CustomizeFormat::Ini), platform::Failure) << own.toStdString();
        EXPECT_EQ(bytesOf(own), before);
    }
    // Any other file may lie beside them: the first export begins there.
    EXPECT_TRUE(exportTo(path(u"backup.ini"_s)));
    EXPECT_TRUE(exportTo(path(u"backup.ini"_s), CustomizeFormat::Ini, {u"yes"_s}));
}

TEST_F(CustomizeFiles, AnExportThatTheMachineRefusesLeavesTheOldFile) {
    const QString target = file(u"x.ini"_s, "old");
    for (const QString& answer : {u"yes"_s, u"no"_s}) {
        FaultyDisk disk(out());
        disk.failAt(Fault::FullDisk, 1);
        EXPECT_THROW(exportTo(target, CustomizeFormat::Ini, {answer}), platform::Failure);
        EXPECT_EQ(QDir(out()).entryList(QDir::Files | QDir::Hidden), QStringList{u"x.ini"_s});
        EXPECT_EQ(bytesOf(target), "old");
    }
    EXPECT_THROW(exportTo(path(u"nowhere/x"_s)), platform::Failure);
    ASSERT_TRUE(QFile::setPermissions(target, QFile::ReadOwner));
    EXPECT_THROW(exportTo(target, CustomizeFormat::Ini, {u"yes"_s}), platform::Failure);
    EXPECT_EQ(bytesOf(target), "old");
    ASSERT_TRUE(QFile::remove(setFile(u"mine"_s)));
    EXPECT_THROW(exportTo(out(u"y"_s)), platform::Failure) << "a set that vanished meanwhile";
    EXPECT_FALSE(QFile::exists(out(u"y.ini"_s)));
    EXPECT_EQ(core::Settings(session).text(keys::kSaveCustPath), u""_s);
}

/// Whenever the program is killed, the file is the old one or the new one: never one for others that still tells.
TEST_F(CustomizeFiles, AKilledExportLeavesAWholeFile) {
    const QByteArray old = "[General]\r\nHPTitle=Old\r\n";
    const QString target = file(u"x.cst"_s, old);
    EXPECT_TRUE(exportTo(out(u"whole.cst"_s), CustomizeFormat::Cst));
    const QByteArray whole = bytesOf(out(u"whole.cst"_s));
    bool isKilled = true;
    for (int n = 1; isKilled; ++n) {
        ASSERT_LT(n, 100);
        writeFile(target, old);
        isKilled = !holdsInChild([&] {
            FaultyDisk disk(out());
            disk.failAt(Fault::KilledProgram, n);
            return exportTo(target, CustomizeFormat::Cst, {u"yes"_s});
        });
        const QByteArray now = bytesOf(target);
        EXPECT_TRUE(now == old || now == whole) << n << now.toStdString();
        EXPECT_TRUE(isKilled || now == whole);
    }
}

TEST_F(CustomizeFiles, AKilledImportLeavesNoPartOfASet) {
    const QString source = file(u"look.ini"_s, kSet.repeated(1000));
    bool isKilled = true;
    for (int n = 1; isKilled; ++n) {
        ASSERT_LT(n, 100);
        QFile::remove(setFile(u"look"_s));
        isKilled = !holdsInChild([&] {
            FaultyDisk disk(folder());
            disk.failAt(Fault::KilledProgram, n);
            return import(source);
        });
        if (QFile::exists(setFile(u"look"_s))) {
            EXPECT_EQ(bytesOf(setFile(u"look"_s)), bytesOf(source)) << n;
        }
    }
    EXPECT_TRUE(QFile::exists(setFile(u"look"_s)));
}

TEST_F(CustomizeFiles, ASetOfOthersPrintsEmptyLinesWhereThePiecesStand) {
    writePiece(u"up"_s, "UPPER");
    setSetting(keys::body::kUpText, u"up"_s);
    EXPECT_TRUE(site::SiteSettings(session).piece(keys::body::kUpText).contains(u"UPPER"_s));
    desk.answers = {out(u"x.cst"_s), out(u"x.cst"_s)};
    CustomizeExchange(run).ExportCustomize(u"Customize"_s, CustomizeFormat::Cst, {});
    CustomizeExchange(run).ImportCustomize();
    site::selectCustomizeSet(session, u"x"_s);
    EXPECT_EQ(site::SiteSettings(session).piece(keys::body::kUpText), u""_s);
}

} // namespace
} // namespace velloria::tests
