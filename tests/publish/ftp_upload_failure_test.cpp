#include "publish/ftp_upload.h"

#include "core/keys.h"
#include "platform/file_write.h"
#include "publish/upload_home.h"

#include <QDir>
#include <QFile>

#include <sys/stat.h>

using namespace Qt::StringLiterals;

namespace velloria::tests {
namespace {

using registers::SiteSide;
namespace keys = core::keys;

class FtpUploadFailure : public UploadHome {
protected:
    /// A run of the filled site that the server ends at this call: what is shown from there on.
    QString runRefusedAt(const QString& call, int error) {
        calls.ping = [] { ADD_FAILURE(); };
        set(keys::kFtpPing, u"1"_s);
        server.refusals[call] = error;
        EXPECT_FALSE(run().isDone);
        EXPECT_FALSE(server.isOpen());
        EXPECT_EQ(lines(u"sound: "_s), QStringList());
        EXPECT_EQ(lines(u"window closed"_s), QStringList());
        return transcriptFrom(call);
    }
};

// What the check of the local files finds: the window stays closed to its frame and its OK, and tells nothing more.

TEST_F(FtpUploadFailure, WithoutHostOrIdNothingIsLookedAt) {
    for (const core::Setting& missing : {keys::kFtpUrl, keys::kFtpId}) {
        set(keys::kFtpUrl, u"ftp.example.com"_s);
        set(missing, u""_s);
        const publish::UploadResult result = run();
        EXPECT_FALSE(result.isDone);
        EXPECT_EQ(result.reason, u"FTPのIDもしくはURLが設定されていません。 (FTP_ID or FTP_URL is not invalid.)"_s);
        EXPECT_EQ(transcript(), textOf(R"(
window:  |  | 0/1
window: エラー | FTPのIDもしくはURLが設定されていません。 / (FTP_ID or FTP_URL is not invalid.) | 0/1
status: FTP_ID or FTP_URL is not invalid....Upload Failed.)"));
    }
}

TEST_F(FtpUploadFailure, PasswordAndStartFolderMayBeMissing) {
    set(keys::kFtpPass, u""_s);
    set(keys::kFtpStartFolder, u""_s);
    addPage(u"index.htm"_s);
    EXPECT_TRUE(run().isDone);
    EXPECT_EQ(lines(u"> connect "_s), QStringList{u"ftp.example.com me  active"_s});
}

TEST_F(FtpUploadFailure, WithoutAListThereIsNothingToSend) {
    addLog(u"log.htm"_s);
    EXPECT_FALSE(run().isDone);
    EXPECT_EQ(transcript(), textOf(R"(
window:  |  | 0/1
pointer: hourglass
status: Checking...
window: エラー | アップロードするファイルのリストが存在しません。 / (Upload.tmp is not exist.) | 0/1
status: Upload File not exist!...Upload Failed.)"));
}

TEST_F(FtpUploadFailure, TheFirstMissingPageIsNamedBeforeAnythingIsSent) {
    fillSite();
    addPage(u"second.htm"_s);
    addPage(u"third.htm"_s);
    QFile::remove(session.FilePath + u"second.htm"_s);
    QFile::remove(session.FilePath + u"third.htm"_s);
    QFile::remove(logFolder() + u"200403.htm"_s);
    EXPECT_FALSE(run().isDone);
    EXPECT_EQ(transcript(), textOf(R"(
window:  |  | 0/1
pointer: hourglass
status: Checking...
window: エラー | アップロードするファイルが存在しません。 / (second.htm is not exist.) | 0/1
status: Upload File not exist!...Upload Failed.)"));
}

TEST_F(FtpUploadFailure, TheFirstMissingLogIsNamedBeforeAnythingIsSent) {
    fillSite();
    QFile::remove(logFolder() + u"200403.htm"_s);
    EXPECT_FALSE(run().isDone);
    EXPECT_EQ(transcript(), textOf(R"(
window:  |  | 0/1
pointer: hourglass
status: Checking...
window: エラー | アップロードするログファイルが存在しません。 / (200403.htm is not exist.) | 0/1
status: Upload File not exist!...Upload Failed.)"));
}

TEST_F(FtpUploadFailure, ARowThatNamesAFolderOrAPipeNamesNoFile) {
    for (const bool isPipe : {false, true}) {
        const QString name = session.FilePath + u"odd.htm"_s;
        if (isPipe)
            ASSERT_EQ(::mkfifo(QFile::encodeName(name).constData(), 0600), 0);
        else
            platform::makeFolder(name);
        core::writeUploadList(list(u"upload.tmp"_s), {{session.FilePath, u"odd.htm"_s}});
        EXPECT_EQ(run().reason, u"アップロードするファイルが存在しません。 (odd.htm is not exist.)"_s);
        EXPECT_EQ(lines(u"> "_s), QStringList());
        EXPECT_TRUE(QFile::remove(name) || QDir().rmdir(name));
    }
}

TEST_F(FtpUploadFailure, AFolderWithACommaBreaksItsOwnRowAlone) {
    platform::makeFolder(path(u"a,b"_s));
    writeFile(path(u"a,b/index.htm"_s), "x");
    core::writeUploadList(list(u"upload.tmp"_s), {{path(u"a,b"_s), u"index.htm"_s}});
    EXPECT_EQ(run().reason, u"アップロードするファイルが存在しません。 (b is not exist.)"_s);
}

TEST_F(FtpUploadFailure, AListThatIsNoTextEndsWithTheNameThatItGives) {
    const QByteArray odd("\0\xff\x80,\x01\r\n\"", 8);
    writeFile(list(u"upload.tmp"_s), odd);
    EXPECT_FALSE(run().isDone);
    EXPECT_EQ(lines(u"status: "_s).last(), u"Upload File not exist!...Upload Failed."_s);
    EXPECT_EQ(bytesOf(list(u"upload.tmp"_s)), odd);
}

// Failures of the connection: everything is closed, and the window may be.

TEST_F(FtpUploadFailure, WithoutASession) {
    fillSite();
    EXPECT_EQ(runRefusedAt(u"open"_s, 12029), textOf(R"(
> open
window: エラー | インターネットへの接続失敗。 / (Internet Connect Error.) | 0/1
status: Can't connect Internet!
status: エラー：サーバーに接続できません。
window: エラー | インターネットへの接続失敗。 / (Internet Connect Error.) / 不明なエラーで終了しました。 | 0/1
window: エラー | インターネットへの接続失敗。 / (Internet Connect Error.) / 不明なエラーで終了しました。 | 0/1 | OK
pointer: default)"));
}

TEST_F(FtpUploadFailure, WithoutAConnection) {
    fillSite();
    EXPECT_EQ(runRefusedAt(u"connect ftp.example.com me secret active"_s, 12015), textOf(R"(
> connect ftp.example.com me secret active
window: エラー | FTPサーバーへの接続失敗。 / (FTP Connect Error.) | 0/1
status: Can't connect to ftp.example.com
status: エラー：FTPサーバーへのログオンに失敗しました。
> close session
window: エラー | FTPサーバーへの接続失敗。 / (FTP Connect Error.) / 不明なエラーで終了しました。 | 0/1
window: エラー | FTPサーバーへの接続失敗。 / (FTP Connect Error.) / 不明なエラーで終了しました。 | 0/1 | OK
pointer: default)"));
    EXPECT_EQ(run().reason,
              u"FTPサーバーへの接続失敗。 (FTP Connect Error.) FTPサーバーへのログオンに失敗しました。"_s);
}

TEST_F(FtpUploadFailure, AReplyOfSeveralLinesIsShownAsItCameAndIsOneLineForTheCaller) {
    fillSite();
    server.response = u"553-No.\r\n553 Disk full."_s;
    const QString shownText = runRefusedAt(u"put index.htm text"_s, publish::kExtendedError);
    EXPECT_TRUE(shownText.contains(u"\nstatus: 553-No. / 553 Disk full.\n"_s));
    EXPECT_EQ(run().reason, u"その他のエラー(FileUpload)。 (553-No. 553 Disk full.)"_s);
}

TEST_F(FtpUploadFailure, ADeletionIsRefused) {
    fillSite();
    EXPECT_EQ(runRefusedAt(u"delete index.htm"_s, publish::kExtendedError), textOf(R"(
> delete index.htm
window: エラー | ファイルの削除に失敗。 / (index.htm delete is missed.) | 0/1
status: 550 Permission denied.
> close ftp
> close session
window: エラー | ファイルの削除に失敗。 / (index.htm delete is missed.) / 不明なエラーで終了しました。 | 0/1
window: エラー | ファイルの削除に失敗。 / (index.htm delete is missed.) / 不明なエラーで終了しました。 | 0/1 | OK
pointer: default)"));
}

TEST_F(FtpUploadFailure, ASearchFails) {
    fillSite();
    EXPECT_EQ(runRefusedAt(u"find gone.htm"_s, 12035), textOf(R"(
> find gone.htm
window: エラー | その他のエラー(FileDelete)。 / (その他のエラー(&H2F03)) | 0/1
status: その他のエラー(&H2F03)
> close ftp
> close session
window: エラー | その他のエラー(FileDelete)。 / (その他のエラー(&H2F03)) / 不明なエラーで終了しました。 | 0/1
window: エラー | その他のエラー(FileDelete)。 / (その他のエラー(&H2F03)) / 不明なエラーで終了しました。 | 0/1 | OK
pointer: default)"));
}

TEST_F(FtpUploadFailure, APageIsRefused) {
    fillSite();
    server.response = u"553 Could not create file."_s;
    EXPECT_EQ(runRefusedAt(u"put index1.htm text"_s, publish::kExtendedError), textOf(R"(
> put index1.htm text
window: HTMLアップロードエラー | その他のエラー(FileUpload)。 / (553 Could not create file.) | 1/2
status: 553 Could not create file.
> close ftp
> close session
window: HTMLアップロードエラー | その他のエラー(FileUpload)。 / (553 Could not create file.) / 不明なエラーで終了しました。 | 1/2
window: HTMLアップロードエラー | その他のエラー(FileUpload)。 / (553 Could not create file.) / 不明なエラーで終了しました。 | 1/2 | OK
pointer: default)"));
}

TEST_F(FtpUploadFailure, ARegisteredFileIsRefused) {
    fillSite();
    EXPECT_EQ(runRefusedAt(u"put a.gif binary"_s, 12031), textOf(R"(
> put a.gif binary
window: ファイルアップロードエラー | その他のエラー(OtherFileUpload)。 / (a.gif:サーバーとの接続がリセットされました。) | 0/1
status: サーバーとの接続がリセットされました。
> close ftp
> close session
window: ファイルアップロードエラー | その他のエラー(OtherFileUpload)。 / (a.gif:サーバーとの接続がリセットされました。) / 不明なエラーで終了しました。 | 0/1
window: ファイルアップロードエラー | その他のエラー(OtherFileUpload)。 / (a.gif:サーバーとの接続がリセットされました。) / 不明なエラーで終了しました。 | 0/1 | OK
pointer: default)"));
}

TEST_F(FtpUploadFailure, ALogIsRefused) {
    fillSite();
    EXPECT_EQ(runRefusedAt(u"put 200403.htm text"_s, 12002), textOf(R"(
> put 200403.htm text
status: タイムアウトです。
> close ftp
> close session
window: ログ：ファイルのアップロード | ファイル「200403.htm」をアップロードします。 / 不明なエラーで終了しました。 | 1/2
window: ログ：ファイルのアップロード | ファイル「200403.htm」をアップロードします。 / 不明なエラーで終了しました。 | 1/2 | OK
pointer: default)"));
}

TEST_F(FtpUploadFailure, ALogCanNotBeReplaced) {
    fillSite();
    EXPECT_TRUE(runRefusedAt(u"delete 200404.htm"_s, publish::kExtendedError).startsWith(textOf(R"(
> delete 200404.htm
window: エラー | ファイルの削除に失敗。 / (200404.htm delete is missed.) | 0/2
status: 550 Permission denied.)")));
    EXPECT_TRUE(runRefusedAt(u"find 200404.htm"_s, 12030).startsWith(textOf(R"(
> find 200404.htm
window: エラー | その他のエラー(FileDelete)。 / (サーバーとの接続が終了しました。) | 0/2
status: サーバーとの接続が終了しました。)")));
}

TEST_F(FtpUploadFailure, ARegisteredFileOfTheLogsIsRefused) {
    fillSite();
    EXPECT_EQ(runRefusedAt(u"put b.gif binary"_s, publish::kExtendedError), textOf(R"(
> put b.gif binary
window: エラー | ファイル「b.gif」のアップロードに失敗。 / (200403.htm delete is missed.) / サーバーが混んでいる可能性もありますので、時間帯を変更してお試し下さい。 | 0/1
status: 550 Permission denied.
> close ftp
> close session
window: エラー | ファイル「b.gif」のアップロードに失敗。 / (200403.htm delete is missed.) / サーバーが混んでいる可能性もありますので、時間帯を変更してお試し下さい。 / 不明なエラーで終了しました。 | 0/1
window: エラー | ファイル「b.gif」のアップロードに失敗。 / (200403.htm delete is missed.) / サーバーが混んでいる可能性もありますので、時間帯を変更してお試し下さい。 / 不明なエラーで終了しました。 | 0/1 | OK
pointer: default)"));
}

TEST_F(FtpUploadFailure, AFileThatIsNowhereIsTheFailureOfItsRow) {
    addPage(u"index.htm"_s);
    addRow(u"a.gif"_s);
    EXPECT_EQ(run().reason, u"その他のエラー(OtherFileUpload)。 (a.gif:その他のエラー(&H2))"_s);
    EXPECT_EQ(uploaded(), u"a.gif 0"_s);
}

TEST_F(FtpUploadFailure, WhatALinkLeadsOutToIsToldAndPassedOver) {
    addPage(u"index.htm"_s);
    addLog(u"200404.htm"_s);
    writeFile(path(u"outside"_s), "secret");
    QDir().mkpath(session.FilePath + u"DiaryParts"_s);
    QDir().mkpath(session.FilePath + u"DiaryLog/DiaryParts"_s);
    ASSERT_TRUE(QFile::link(path(u"outside"_s), session.FilePath + u"DiaryParts/site.gif"_s));
    ASSERT_TRUE(QFile::link(session.databaseFile(), session.DataPath + u"DiaryParts/data.gif"_s));
    for (const QString& name : {u"site.gif"_s, u"data.gif"_s})
        addRow(name);
    addPart(u"b.gif"_s);
    ASSERT_TRUE(QFile::link(path(u"outside"_s), session.DataPath + u"DiaryLog/DiaryParts/log.gif"_s));
    addRow(u"log.gif"_s, registers::SiteSide::Log);
    EXPECT_TRUE(run().isDone);
    EXPECT_EQ(server.files().keys(),
              (QStringList{u"/pub/DiaryLog/200404.htm"_s, u"/pub/DiaryParts/b.gif"_s, u"/pub/index.htm"_s}));
    EXPECT_FALSE(exists(session.FilePath + u"DiaryParts/data.gif"_s));
    const QStringList told = lines(u"status: "_s).filter(u"リンク"_s);
    ASSERT_EQ(told.size(), 1);
    for (const QString& name : {u"site.gif"_s, u"data.gif"_s, u"log.gif"_s})
        EXPECT_EQ(told[0].count(u'「' + name + u'」'), 1) << told[0].toStdString();
    EXPECT_EQ(sqlValue(u"SELECT group_concat(DISTINCT FileName) FROM FileDB WHERE Uploaded"_s), u"b.gif"_s);
}

TEST_F(FtpUploadFailure, ARegisteredNameThatIsNoneIsToldAndPassedOver) {
    addPage(u"index.htm"_s);
    addLog(u"200404.htm"_s);
    QDir().mkpath(session.FilePath + u"DiaryParts/sub"_s);
    writeFile(session.FilePath + u"DiaryParts/sub/a.gif"_s, "secret");
    writeFile(session.FilePath + u"secret"_s, "secret");
    const QStringList names{u"../secret"_s, u"sub/a.gif"_s, u"..\\secret"_s, u".."_s, u""_s, u"C:secret"_s};
    for (const QString& name : names) {
        addRow(name);
        addRow(name, registers::SiteSide::Log);
    }
    addPart(u"b.gif"_s);
    EXPECT_TRUE(run().isDone);
    EXPECT_FALSE(server.files().values().contains("secret"));
    EXPECT_EQ(server.files().keys(),
              (QStringList{u"/pub/DiaryLog/200404.htm"_s, u"/pub/DiaryParts/b.gif"_s, u"/pub/index.htm"_s}));
    const QStringList told = lines(u"status: "_s).filter(u"ファイルの名前ではない"_s);
    ASSERT_EQ(told.size(), 1);
    for (const QString& name : names)
        EXPECT_EQ(told[0].count(u'「' + name + u'」'), 1) << told[0].toStdString();
    EXPECT_EQ(sqlValue(u"SELECT group_concat(DISTINCT FileName) FROM FileDB WHERE Uploaded"_s), u"b.gif"_s);
}

// The folders: their routines tell why in a box, the window tells which.

TEST_F(FtpUploadFailure, AFolderIsNotEntered) {
    struct Case {
        const char16_t* call;
        const char16_t* shown;
    };
    for (const auto& [call, shownText] :
         {Case{u"find directory pub", u"ディレクトリの移動 | pubへ移動失敗"},
          Case{u"cd pub", u"ディレクトリの移動 | pubへ移動失敗"},
          Case{u"find directory DiaryParts", u"ディレクトリの移動 | pub\\DiaryPartsへ移動失敗"},
          Case{u"cd DiaryParts", u"ディレクトリの移動 | pub\\DiaryPartsへ移動失敗"},
          Case{u"cd ..", u"元のディレクトリへの移動 | pubへ移動失敗"},
          Case{u"find directory DiaryLog", u"ログ：DiaryLogディレクトリへの移動 | pub\\DiaryLogへ移動失敗"},
          Case{u"cd DiaryLog", u"ログ：DiaryLogディレクトリへの移動 | pub\\DiaryLogへ移動失敗"}}) {
        fillSite();
        server.refusals.clear();
        runRefusedAt(QString::fromUtf16(call), 12030);
        const QStringList windows = lines(u"window: "_s);
        const QString text = QString::fromUtf16(shownText);
        ASSERT_GE(windows.size(), 3);
        EXPECT_TRUE(windows.at(windows.size() - 3).startsWith(text + u" | "_s)) << text.toStdString();
        EXPECT_TRUE(windows.last().startsWith(text + u" / 不明なエラーで終了しました。 | "_s));
        EXPECT_TRUE(windows.last().endsWith(u" | OK"_s));
        EXPECT_EQ(lines(u"box critical Velloria ok: "_s).size(), 1);
    }
}

TEST_F(FtpUploadFailure, TheFolderOfTheLogsFilesIsNotEntered) {
    addPage(u"index.htm"_s);
    addLog(u"log.htm"_s);
    addPart(u"b.gif"_s, SiteSide::Log);
    for (const QString& call : {u"find directory DiaryParts"_s, u"cd DiaryParts"_s}) {
        server.refusals.clear();
        runRefusedAt(call, 12030);
        EXPECT_EQ(lines(u"window: "_s).last(),
                  u"ログ：DiaryPartsディレクトリへの移動 | pub\\DiaryLog\\DiaryPartsへ移動失敗"
                  u" / 不明なエラーで終了しました。 | 1/1 | OK"_s);
        EXPECT_TRUE(exists(list(u"uploadlog.tmp"_s)));
    }
}

TEST_F(FtpUploadFailure, ANoToTheMissingFolderEndsTheRun) {
    set(keys::kFtpStartFolder, u"new"_s);
    fillSite();
    shown.answers = {u"no"_s};
    EXPECT_EQ(run().reason, u"newへ移動失敗 フォルダは作成しませんでした。"_s);
    EXPECT_EQ(lines(u"box "_s).size(), 2);
    EXPECT_EQ(lines(u"pointer: "_s), (QStringList{u"hourglass"_s, u"default"_s}));
}

TEST_F(FtpUploadFailure, AYesMakesTheMissingFoldersAsTheyAreNeeded) {
    set(keys::kFtpStartFolder, u"new"_s);
    fillSite();
    shown.answers = {u"yes"_s, u"yes"_s, u"yes"_s, u"yes"_s};
    EXPECT_TRUE(run().isDone);
    EXPECT_EQ(lines(u"> mkdir "_s), (QStringList{u"new"_s, u"DiaryParts"_s, u"DiaryLog"_s, u"DiaryParts"_s}));
    EXPECT_TRUE(server.files().contains(u"/new/DiaryLog/DiaryParts/b.gif"_s));
}

// Refusals of the machine end in the same exit, with their words on the status panel.

TEST_F(FtpUploadFailure, TheDatabaseCanNotBeOpened) {
    fillSite();
    platform::makeFolder(path(u"elsewhere"_s));
    ASSERT_TRUE(QFile::rename(session.databaseFile(), path(u"elsewhere/diary.mdb"_s)));
    const publish::UploadResult result = run();
    EXPECT_FALSE(result.isDone);
    EXPECT_TRUE(result.reason.contains(session.databaseFile()));
    EXPECT_FALSE(server.isOpen());
    EXPECT_EQ(lines(u"status: "_s).last(), u"エラー："_s + result.reason);
    EXPECT_EQ(lines(u"window: "_s).last(),
              u"ファイルアップロード | ファイル「index1.htm」のアップロードに成功しました。(2/2)"
              u" / 不明なエラーで終了しました。 | 2/2 | OK"_s);
    EXPECT_EQ(lines(u"pointer: "_s).last(), u"default"_s);
}

TEST_F(FtpUploadFailure, AListThatCanNotBeReadIsNotAnEmptyOne) {
    fillSite();
    const QByteArray old = bytesOf(list(u"uploadold.tmp"_s));
    for (const QString& file : {home.path(), session.UserPath, session.DiaryIniFile})
        ASSERT_EQ(::chmod(QFile::encodeName(file).constData(), 0777), 0);
    ASSERT_EQ(::chmod(QFile::encodeName(list(u"upload.tmp"_s)).constData(), 0), 0);
    EXPECT_TRUE(holdsForNobody([&] {
        const publish::UploadResult result = run();
        return !result.isDone && result.reason.contains(u"upload.tmp"_s) && lines(u"> "_s).isEmpty() &&
               lines(u"window: "_s).last() == u" |  / 不明なエラーで終了しました。 | 0/1 | OK"_s;
    }));
    EXPECT_EQ(bytesOf(list(u"uploadold.tmp"_s)), old);
}

TEST_F(FtpUploadFailure, ASettingBeyondSixteenBitsEndsTheRun) {
    set(keys::kFtpPassive, u"32768"_s);
    fillSite();
    EXPECT_FALSE(run().isDone);
    EXPECT_EQ(lines(u"> "_s), QStringList());
    EXPECT_TRUE(lines(u"window: "_s).last().endsWith(u" | OK"_s));
}

TEST_F(FtpUploadFailure, AListBeyondTheCounterIsRefusedBeforeTheServerIsTouched) {
    writeFile(session.FilePath + u"x.htm"_s, "x");
    core::writeUploadList(list(u"upload.tmp"_s), std::vector<core::UploadRow>(32768, {session.FilePath, u"x.htm"_s}));
    const publish::UploadResult result = run();
    EXPECT_FALSE(result.isDone);
    EXPECT_TRUE(result.reason.contains(u"32767"_s));
    EXPECT_EQ(lines(u"> "_s), QStringList());
}

TEST_F(FtpUploadFailure, AnEndOfTheProgramEndsTheRunByItsFailureExit) {
    fillSite();
    bool isEnding = false;
    calls.isProgramEnding = [&] { return isEnding; };
    server.beforeCall = [&](const QString& call) { isEnding = isEnding || call == u"put index.htm text"_s; };
    EXPECT_FALSE(run().isDone);
    EXPECT_FALSE(server.isOpen());
    EXPECT_EQ(lines(u"> put "_s), QStringList{u"index.htm text"_s});
    EXPECT_EQ(lines(u"window: "_s).last(),
              u"HTMLファイルアップロード | ファイル「index.htm」のアップロードに成功しました。(1/2)"
              u" / 不明なエラーで終了しました。 | 1/2 | OK"_s);
}

TEST_F(FtpUploadFailure, AnEndOfTheProgramBehindTheLastFileTakesNothingAway) {
    fillSite();
    calls.isProgramEnding = [&] { return !server.isOpen(); };
    EXPECT_TRUE(run().isDone);
}

} // namespace
} // namespace velloria::tests
