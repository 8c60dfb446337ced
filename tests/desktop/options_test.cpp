// The options dialog: each control and its key, and what its boxes and buttons do.
#include "options_home.h"
#include "support/disk_watch.h"

#include <QLabel>

using namespace Qt::StringLiterals;

namespace velloria::tests {
namespace {

class Options : public OptionsHome {};

/// A control with its key: what the file holds, what the control shows of it, what somebody makes of that, and what the
/// file holds then. Whatever can be ticked shows "1" or "0".
struct Row {
    const char* control;
    const char* section;
    const char* key;
    const char* stored;
    const char* shown;
    const char* changed;
    const char* storedThen;
};

const Row kRows[] = {
    {"chkOpenWindowMaximize", "Initialize", "WindowMaximize", "1", "1", "0", "0"},
    {"chkShowStartUpForm", "Initialize", "ShowStartUpForm", "0", "0", "1", "1"},
    {"optOpenWindowPos_Std", "Initialize", "WindowPosition", "2", "0", "1", "1"},
    {"optOpenWindowPos_Saved", "Initialize", "WindowPosition", "1", "0", "1", "2"},
    {"optOpenWindowPos_Nothing", "Initialize", "WindowPosition", "1", "0", "1", "0"},
    {"chkClipWithHTML", "ALL", "ClipWithHTML", "1", "1", "0", "0"},
    {"optMnuLanguageJap", "ALL", "MenuLanguage", "English", "0", "1", "Japanese"},
    {"optMnuLanguageEng", "ALL", "MenuLanguage", "Japanese", "0", "1", "English"},
    {"txtFTP_ID", "FTP", "ID", "taro", "taro", "jiro", "jiro"},
    {"txtFTP_Pass", "FTP", "Pass", "dcb", "abc", "xyz", "{zy"},
    {"txtFTP_URL", "FTP", "URL", "ftp.example.com", "ftp.example.com", "www.example.com", "www.example.com"},
    {"txtFTP_Folder", "FTP", "StartFolder", "diary", "diary", "", ""},
    {"chkHTMLOnlyUp", "FTP2", "HTMLOnlyUpload", "0", "0", "1", "1"},
    {"txtFTPCompleteSound", "FTP2", "SoundFile", "/a/x.wav", "/a/x.wav", "/b/日記.wav", "/b/日記.wav"},
    {"chkFTP_PASV", "FTP", "PASV", "1", "1", "0", "0"},
    {"chkFTP_PING", "FTP", "PING", "0", "0", "1", "1"},
    {"chkFavoriteSort", "Browser", "FavoriteSort", "1", "1", "0", "0"},
    {"chkFindHist", "Browser", "FindHistory", "0", "0", "1", "1"},
    {"chkURLHist", "Browser", "URLHistory", "1", "1", "0", "0"},
    {"txtMakeDiaryFontSize", "DiaryEditer", "ContentsFontSize", "14", "14", "10.5", "10.5"},
    {"txtPtagAdd", "DiaryEditer", "P_TagAdd", "align=left", "align=left", "class=\"a\"", "class=\"a\""},
    {"chkRealtimeCust", "Customize", "RealTime", "0", "0", "1", "1"},
    {"optTLS_Off", "FTP2", "TLS", "yes", "0", "1", "0"},
    {"optTLS_WhenOffered", "FTP2", "TLS", "0", "0", "1", "1"},
    {"optTLS_Required", "FTP2", "TLS", "", "0", "1", "2"},
};

QString shownBy(const QWidget& control) {
    if (const auto* line = qobject_cast<const QLineEdit*>(&control))
        return line->text();
    return static_cast<const QAbstractButton&>(control).isChecked() ? u"1"_s : u"0"_s;
}

void change(QWidget& control, const QString& value) {
    if (auto* line = qobject_cast<QLineEdit*>(&control))
        line->setText(value);
    else if (shownBy(control) != value)
        static_cast<QAbstractButton&>(control).click();
}

class OptionsRow : public Options, public testing::WithParamInterface<Row> {
protected:
    OptionsRow() { setKey(GetParam().section, GetParam().key, s(GetParam().stored)); }
    QWidget& changed() { return box<QWidget>(GetParam().control); }
    QString stored() const { return key(GetParam().section, GetParam().key); }
};

TEST_P(OptionsRow, ShowsItsKeyAndWritesItAtApplyAlone) {
    open();
    EXPECT_EQ(shownBy(changed()), s(GetParam().shown));
    EXPECT_FALSE(button("Btn_Apply").isEnabled());
    change(changed(), s(GetParam().changed));
    EXPECT_TRUE(button("Btn_Apply").isEnabled());
    EXPECT_EQ(stored(), s(GetParam().stored)) << "nothing is written before";
    press("Btn_Apply");
    EXPECT_FALSE(button("Btn_Apply").isEnabled());
    EXPECT_EQ(stored(), s(GetParam().storedThen));
    press("Btn_Cancel");
    EXPECT_FALSE(isOpen());
    EXPECT_EQ(boxes(), QStringList()) << "nothing was changed since";
}

TEST_P(OptionsRow, IsLeftAsItWasByACancelAndANo) {
    const QByteArray before = settingsFile();
    open();
    change(changed(), s(GetParam().changed));
    desk.answers = {u"no"_s};
    const QStringList asked{u"question: 変更されていますが、保存しますか？"_s};
    button("Btn_Cancel").click();
    EXPECT_EQ(boxes(), asked);
    EXPECT_EQ(stored(), s(GetParam().stored));
    EXPECT_EQ(settingsFile(), before);
    EXPECT_FALSE(isOpen());
}

INSTANTIATE_TEST_SUITE_P(Rows, OptionsRow, testing::ValuesIn(kRows),
                         [](const auto& row) { return std::string(row.param.control); });

TEST_F(Options, BearTheirNames) {
    open();
    const struct {
        const char* control;
        const char* text;
    } captions[] = {{"chkClipWithHTML", "Clipboardから読み込時、整形する。"},
                    {"optMnuLanguageJap", "Japanese"},
                    {"optMnuLanguageEng", "English"},
                    {"chkOpenWindowMaximize", "Windowを最大化する。"},
                    {"chkShowStartUpForm", "スプラッシュウィンドウを表示する。"},
                    {"chkFTP_PASV", "パッシブモードで接続する"},
                    {"chkFTP_PING", "FTP後PINGする"},
                    {"chkHTMLOnlyUp", "HTMLファイルのみアップロードする。"},
                    {"chkFavoriteSort", "「お気に入り」をソートする"},
                    {"chkFindHist", "終了時に検索履歴を保存する。"},
                    {"chkURLHist", "終了時にURL履歴を保存する。"},
                    {"chkRealtimeCust", "変更をリアルタイムで確認する"},
                    {"optTLS_Off", "使わない"},
                    {"optTLS_WhenOffered", "使えれば使う"},
                    {"optTLS_Required", "必ず使う"}};
    for (const auto& caption : captions)
        EXPECT_EQ(box<QAbstractButton>(caption.control).text(), s(caption.text));
    QStringList labels;
    for (const auto* label : window()->findChildren<QLabel*>()) {
        if (label->buddy())
            labels += label->buddy()->objectName() + u'=' + label->text();
    }
    for (const char* label : {"txtSaveFolder=データ保存先フォルダ", "txtFTP_Folder=Upload Folder",
                              "txtFTPCompleteSound=アップロード完了時に鳴るサウンドファイル", "txtPtagAdd=Pタグ付加"})
        EXPECT_TRUE(labels.contains(s(label))) << label;
    EXPECT_EQ(box<QLabel>("labelFTP_URL_Hint").text(), u"ホスト名だけ"_s);
    press("Btn_Cancel");
}

TEST_F(Options, OkWritesAndCloses) {
    open();
    change(box<QWidget>("chkFTP_PING"), u"1"_s);
    press("Btn_OK");
    EXPECT_FALSE(isOpen());
    EXPECT_EQ(key("FTP", "PING"), u"1"_s);
    EXPECT_EQ(boxes(), QStringList());
}

TEST_F(Options, AnEmptyFileGetsItsKeysInTheFixedOrderAtOnce) {
    writeFile(session.DiaryIniFile, "[ALL]\r\n");
    open();
    line("txtSaveFolder").setText(session.DataPath);
    box<QRadioButton>("optMnuLanguageJap").click();
    const DiskWatch watch;
    press("Btn_Apply");
    EXPECT_EQ(watch.synced().filter(u".velltmp-"_s).size(), 1) << "one rewrite";
    QByteArray names;
    for (const QByteArray& row : settingsFile().split('\n')) {
        if (row.startsWith('['))
            names += row.trimmed();
        else if (row.contains('='))
            names += row.left(row.indexOf('=')) + ' ';
    }
    EXPECT_EQ(names, "[ALL]DataPath ClipWithHTML MenuLanguage "
                     "[Initialize]WindowMaximize ShowStartUpForm WindowPosition "
                     "[FTP]ID Pass URL StartFolder PASV PING [FTP2]HTMLOnlyUpload SoundFile TLS "
                     "[Browser]FavoriteSort FindHistory URLHistory [DiaryEditer]ContentsFontSize P_TagAdd "
                     "[Customize]RealTime ");
    press("Btn_Cancel");
}

TEST_F(Options, AnUnknownLanguageLeavesBothOffAndStays) {
    setKey("ALL", "MenuLanguage", u"Latin"_s);
    open();
    EXPECT_FALSE(box<QRadioButton>("optMnuLanguageJap").isChecked());
    EXPECT_FALSE(box<QRadioButton>("optMnuLanguageEng").isChecked());
    change(box<QWidget>("chkFTP_PING"), u"1"_s);
    press("Btn_OK");
    EXPECT_EQ(key("ALL", "MenuLanguage"), u"Latin"_s);
}

TEST_F(Options, WhatCanBeTickedIsOnWhereTheProgramTakesItSo) {
    const struct {
        const char* control;
        const char* section;
        const char* key;
        const char* stored;
        bool isOn;
    } flags[] = {{"chkFTP_PASV", "FTP", "PASV", "2", true},
                 {"chkFTP_PING", "FTP", "PING", "-1", true},
                 {"chkHTMLOnlyUp", "FTP2", "HTMLOnlyUpload", "2", true},
                 {"chkClipWithHTML", "ALL", "ClipWithHTML", "2", true},
                 {"chkClipWithHTML", "ALL", "ClipWithHTML", "-1", false},
                 {"chkFTP_PASV", "FTP", "PASV", "x", false},
                 {"chkRealtimeCust", "Customize", "RealTime", "1x", true},
                 {"chkRealtimeCust", "Customize", "RealTime", "2", false},
                 {"chkFavoriteSort", "Browser", "FavoriteSort", "2", false}};
    for (const auto& flag : flags) {
        setKey(flag.section, flag.key, s(flag.stored));
        open();
        EXPECT_EQ(box<QCheckBox>(flag.control).isChecked(), flag.isOn) << flag.control << ' ' << flag.stored;
        press("Btn_Cancel");
    }
}

TEST_F(Options, AnUnknownArrangementLeavesAllOffAndStays) {
    setKey("Initialize", "WindowPosition", u"7"_s);
    open();
    for (const char* option : {"optOpenWindowPos_Std", "optOpenWindowPos_Saved", "optOpenWindowPos_Nothing"})
        EXPECT_FALSE(box<QRadioButton>(option).isChecked()) << option;
    change(box<QWidget>("chkFTP_PING"), u"1"_s);
    press("Btn_OK");
    EXPECT_EQ(key("Initialize", "WindowPosition"), u"7"_s);
}

TEST_F(Options, TheMenusSpeakTheChosenLanguageAtOnce) {
    open();
    box<QRadioButton>("optMnuLanguageEng").click();
    EXPECT_EQ(top().command(u"MnuFile"_s)->text(), u"ファイル(&F)"_s) << "not before an Apply";
    press("Btn_Apply");
    EXPECT_EQ(top().command(u"MnuFile"_s)->text(), u"&File"_s);
    EXPECT_TRUE(isOpen());
    box<QRadioButton>("optMnuLanguageJap").click();
    press("Btn_OK");
    EXPECT_EQ(top().command(u"MnuFile"_s)->text(), u"ファイル(&F)"_s);
}

TEST_F(Options, APlaceIsKeptHoweverTheDialogCloses) {
    for (const bool byKey : {false, true}) {
        setKey("Preference", "Left", u""_s);
        setKey("Preference", "Top", u""_s);
        open();
        window()->move(120, 90);
        settle();
        if (byKey)
            QTest::keyClick(window(), Qt::Key_Escape);
        else
            press("Btn_Cancel");
        EXPECT_FALSE(isOpen());
        EXPECT_EQ(key("Preference", "Left"), QString::number(120 * 15));
        EXPECT_EQ(key("Preference", "Top"), QString::number(90 * 15));
    }
}

// ---- the font size

class OptionsFontSize : public Options {
protected:
    const QStringList kComplaint{u"critical: 不正な文字が入力されました。半角数字を入力してください。"_s};

    void type(const QString& text) {
        open();
        box<QTabWidget>("TabStrip1").setCurrentIndex(1);
        size().setFocus();
        size().setText(text);
    }
    QLineEdit& size() { return line("txtMakeDiaryFontSize"); }
    void leave() {
        line("txtPtagAdd").setFocus();
        settle();
    }
    void giveUp() {
        desk.answers = {u"no"_s};
        press("Btn_Cancel");
        EXPECT_FALSE(isOpen());
    }
};

TEST_F(OptionsFontSize, WhatIsNoNumberIsToldAndKeepsTheFocus) {
    for (const QString& text : {u"x"_s, u""_s, u"12pt"_s, u"1 2"_s}) {
        type(text);
        leave();
        EXPECT_EQ(boxes(), kComplaint) << text.toStdString();
        EXPECT_TRUE(size().hasFocus());
        EXPECT_EQ(size().text(), text);
        giveUp();
    }
}

TEST_F(OptionsFontSize, WhatANumberIsStays) {
    for (const QString& text : {u"9"_s, u" 9.5 "_s, u"+9"_s, u"1E1"_s, u"１２"_s}) {
        type(text);
        leave();
        EXPECT_EQ(boxes(), QStringList()) << text.toStdString();
        EXPECT_EQ(size().text(), text);
        giveUp();
    }
}

TEST_F(OptionsFontSize, ASizeOfNothingOrLessBecomesTheUsualOne) {
    for (const QString& text : {u"0"_s, u"-3"_s}) {
        type(text);
        leave();
        EXPECT_EQ(size().text(), u"12"_s);
        giveUp();
        type(text);
        press("Btn_OK"); // without leaving the box
        EXPECT_EQ(key("DiaryEditer", "ContentsFontSize"), u"12"_s);
        EXPECT_EQ(boxes(), QStringList());
    }
}

TEST_F(OptionsFontSize, AnotherPageIsALeavingToo) {
    type(u"x"_s);
    box<QTabWidget>("TabStrip1").setCurrentIndex(0);
    settle();
    EXPECT_EQ(boxes(), kComplaint);
    EXPECT_EQ(box<QTabWidget>("TabStrip1").currentIndex(), 1);
    EXPECT_TRUE(size().hasFocus());
    giveUp();
}

TEST_F(OptionsFontSize, AnotherWindowAMenuAndCancelAreNone) {
    type(u"x"_s);
    QWidget other;
    other.show();
    other.activateWindow();
    ASSERT_TRUE(becomesActive(other));
    settle();
    EXPECT_EQ(boxes(), QStringList());
    other.hide();
    window()->activateWindow();
    ASSERT_TRUE(becomesActive(*window()));
    QFocusEvent popup(QEvent::FocusOut, Qt::PopupFocusReason);
    QApplication::sendEvent(&size(), &popup);
    settle();
    EXPECT_EQ(boxes(), QStringList());
    desk.answers = {u"no"_s};
    button("Btn_Cancel").setFocus();
    press("Btn_Cancel");
    EXPECT_FALSE(isOpen());
    EXPECT_EQ(boxes().size(), 1) << "the question alone";
}

TEST_F(OptionsFontSize, TakesEffectInTheNextEditor) {
    const double before = pane().font().pointSizeF();
    type(u"20"_s);
    press("Btn_OK");
    EXPECT_EQ(pane().font().pointSizeF(), before);
    context.windows.unload<editor::frmContents>();
    EXPECT_EQ(pane().font().pointSizeF(), 20);
}

// ---- the password

TEST_F(Options, ThePasswordIsShownUntilItsButtonHidesIt) {
    setKey("FTP", "Pass", u"dcb"_s);
    open();
    EXPECT_EQ(line("txtFTP_Pass").displayText(), u"abc"_s);
    EXPECT_FALSE(button("Btn_HidePass").isChecked());
    button("Btn_HidePass").click();
    EXPECT_FALSE(line("txtFTP_Pass").displayText().contains(u'a'));
    EXPECT_EQ(line("txtFTP_Pass").text(), u"abc"_s);
    EXPECT_FALSE(button("Btn_Apply").isEnabled()) << "a look is no change";
    button("Btn_HidePass").click();
    EXPECT_EQ(line("txtFTP_Pass").displayText(), u"abc"_s);
    press("Btn_Cancel");
}

TEST_F(Options, APasswordComesBackWhateverItIs) {
    for (const QString& password : {u"!a!"_s, u"&a&"_s, u"円改×"_s, u" x "_s, u"\"\""_s}) {
        open();
        line("txtFTP_Pass").setText(password);
        press("Btn_OK");
        open();
        EXPECT_EQ(line("txtFTP_Pass").text(), password) << password.toStdString();
        press("Btn_Cancel");
    }
}

TEST_F(Options, ThePasswordBoxTakesNoCharacterThatWouldNotComeBack) {
    open();
    line("txtFTP_Pass").clear();
    line("txtFTP_Pass").insert(u"é"_s);
    EXPECT_EQ(line("txtFTP_Pass").text(), QString());
    press("Btn_Cancel");
}

// ---- the sound

TEST_F(Options, TheSoundDialogOpensWhereTheSoundIs) {
    setKey("FTP2", "SoundFile", path(u"sounds/x.wav"_s));
    open();
    desk.answers = {path(u"y.mid"_s)};
    press("Btn_OpenFolder_FTP");
    const QJsonObject shown = lastFileEvent();
    EXPECT_EQ(shown[u"mode"_s], u"open"_s);
    EXPECT_EQ(shown[u"folder"_s], path(u"sounds"_s));
    EXPECT_EQ(shown[u"filter"_s],
              u"Sound Files(*.wav,*.mid,*.mp2)|*.wav;*.mid;*.mp2|WAV Files(*.wav)|*.wav|MIDI Files(*.mid)|*.mid|"
              u"MP2 Files(*.mp2)|*.mp2|ALL Files(*.*)|*.*|"_s);
    EXPECT_EQ(line("txtFTPCompleteSound").text(), path(u"y.mid"_s));
    EXPECT_TRUE(button("Btn_Apply").isEnabled());
    desk.answers = {QJsonValue::Null};
    press("Btn_OpenFolder_FTP");
    EXPECT_EQ(line("txtFTPCompleteSound").text(), path(u"y.mid"_s)) << "cancelled";
    desk.answers = {u"no"_s};
    press("Btn_Cancel");
}

TEST_F(Options, TheSoundCanBeTriedAsItStandsInTheBox) {
    setKey("FTP2", "SoundFile", u""_s);
    open();
    EXPECT_FALSE(button("Btn_PlaySound").isEnabled());
    line("txtFTPCompleteSound").setText(path(u"x.wav"_s));
    EXPECT_TRUE(button("Btn_PlaySound").isEnabled());
    press("Btn_PlaySound");
    EXPECT_EQ(desk.events.last()[u"command"_s], u"Play \""_s + path(u"x.wav"_s) + u'"');
    desk.answers = {u"no"_s};
    press("Btn_Cancel");
}

// ---- refusals

TEST_F(Options, ADiskThatRefusesIsToldAndLeavesFileSessionAndMenus) {
    ASSERT_TRUE(QDir().mkdir(path(u"other"_s)));
    open();
    line("txtSaveFolder").setText(path(u"other"_s));
    box<QRadioButton>("optMnuLanguageEng").click();
    const QByteArray before = settingsFile();
    const QString folder = session.DataPath;
    {
        DiskWatch disk;
        disk.onSync([] {});
        disk.refuse(u""_s);
        press("Btn_Apply");
        press("Btn_OK");
    }
    expectedFailures = 2;
    EXPECT_EQ(settingsFile(), before);
    EXPECT_EQ(session.DataPath, folder);
    EXPECT_EQ(top().command(u"MnuFile"_s)->text(), u"ファイル(&F)"_s);
    ASSERT_TRUE(isOpen());
    EXPECT_TRUE(button("Btn_Apply").isEnabled());
    press("Btn_Apply");
    EXPECT_EQ(session.DataPath, path(u"other/"_s));
    press("Btn_Cancel");
}

TEST_F(Options, SettingsThatMayNotBeWrittenAreToldAndTheDialogStays) {
    open();
    change(box<QWidget>("chkFTP_PING"), u"1"_s);
    const QByteArray before = settingsFile();
    ASSERT_TRUE(QFile::setPermissions(session.DiaryIniFile, QFile::ReadOwner));
    press("Btn_OK");
    expectedFailures = 1;
    ASSERT_TRUE(isOpen());
    EXPECT_TRUE(button("Btn_Apply").isEnabled());
    EXPECT_EQ(settingsFile(), before);
    ASSERT_TRUE(QFile::setPermissions(session.DiaryIniFile, QFile::ReadOwner | QFile::WriteOwner));
    press("Btn_OK");
    EXPECT_FALSE(isOpen());
    EXPECT_EQ(key("FTP", "PING"), u"1"_s);
}

TEST_F(Options, SettingsThatCantBeReadAreToldAndOpenNothing) {
    setKey("FTP", "PASV", u"99999"_s);
    top().command(u"MnuPref"_s)->trigger();
    settle();
    expectedFailures = 1;
    EXPECT_FALSE(window());
}

} // namespace
} // namespace velloria::tests
