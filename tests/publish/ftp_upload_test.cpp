#include "publish/ftp_upload.h"

#include "core/ini.h"
#include "core/keys.h"
#include "platform/file_write.h"
#include "publish/upload_home.h"
#include "support/patience.h"

#include <QDir>

using namespace Qt::StringLiterals;

namespace velloria::tests {
namespace {

using registers::SiteSide;
namespace keys = core::keys;

class FtpUpload : public UploadHome {};

constexpr char kWholeRun[] = R"(
window:  |  | 0/1
pointer: hourglass
status: Checking...
status: Starting Connection to ftp.example.com
> open
window: 接続確認中 | インターネットへの接続成功。 | 0/1
> connect ftp.example.com me secret active
window: 接続確認中 | FTP接続成功。 | 0/1
pump
status: Connected to ftp.example.com
window: ディレクトリの移動 | pubへ移動中 | 0/1
pump
status: Checking Folder "pub" !
> find directory pub
status: Moving to pub
> cd pub
status: Change Directory pub is Completed!
window: ディレクトリの移動 | pubへ移動完了 | 0/1
pump
window: ファイルの削除 | pubへ移動完了 | 0/1
> find index.htm
> delete index.htm
window: ファイルの削除 | ファイル「index.htm」を削除しました。 | 0/1
pump
status: Deleting index.htm is Completed!
> find gone.htm
window: HTMLファイルアップロード | ファイル「index.htm」をアップロード中。(0/2) | 0/2
pump
> put index.htm text
window: HTMLファイルアップロード | ファイル「index.htm」のアップロードに成功しました。(1/2) | 1/2
pump
status: Upload "index.htm" is Succeeded!
window: HTMLファイルアップロード | ファイル「index1.htm」をアップロード中。(1/2) | 1/2
pump
> put index1.htm text
window: HTMLファイルアップロード | ファイル「index1.htm」のアップロードに成功しました。(2/2) | 2/2
pump
status: Upload "index1.htm" is Succeeded!
window: ファイルアップロード | ファイル「index1.htm」のアップロードに成功しました。(2/2) | 2/2
window: ディレクトリの移動 | pub\DiaryPartsへ移動中 | 2/2
pump
status: Checking Folder "DiaryParts" !
> find directory DiaryParts
status: Moving to pubDiaryParts
> cd DiaryParts
status: Change Directory pubDiaryParts is Completed!
window: ディレクトリの移動 | pub\DiaryPartsへ移動完了 | 2/2
pump
status: Uploading a.gif
window: ディレクトリの移動 | ファイル「a.gif」をアップロードします。(0/1) | 0/1
pump
> put a.gif binary
window: ディレクトリの移動 | ファイル「a.gif」のアップロードに成功しました。(0/1) | 0/1
pump
status: Upload Successful!
window: 元のディレクトリへの移動 | pubへ移動中 | 0/1
pump
status: Moving to pubDiaryParts/
> cd ..
status: Change Directory pubDiaryParts/ is Completed!
window: 元のディレクトリへの移動 | pubへ移動完了 | 0/1
pump
window: ログ：DiaryLogディレクトリへの移動 | pub\DiaryLogへ移動中 | 0/1
pump
status: Checking Folder "DiaryLog" !
> find directory DiaryLog
status: Moving to pubDiaryLog
> cd DiaryLog
status: Change Directory pubDiaryLog is Completed!
window: ログ：DiaryLogディレクトリへの移動 | pub\DiaryLogへ移動完了 | 0/1
pump
window: ログ：ファイルのアップロード | pub\DiaryLogへ移動完了 | 0/2
> find 200404.htm
window: ログ：ファイルのアップロード | ファイル「200404.htm」を削除しています。 | 0/2
pump
> delete 200404.htm
window: ログ：ファイルのアップロード | ファイル「200404.htm」を削除しました。 | 0/2
pump
status: Deleting 200404.htm is Completed!
window: ログ：ファイルのアップロード | ファイル「200404.htm」をアップロードします。 | 0/2
pump
> put 200404.htm text
window: ログ：ファイルのアップロード | ファイル「200404.htm」のアップロードに成功しました。(1/2) | 1/2
pump
status: Upload "200404.htm" is Succeeded!
> find 200403.htm
window: ログ：ファイルのアップロード | ファイル「200403.htm」をアップロードします。 | 1/2
pump
> put 200403.htm text
window: ログ：ファイルのアップロード | ファイル「200403.htm」のアップロードに成功しました。(2/2) | 2/2
pump
status: Upload "200403.htm" is Succeeded!
window: ログ：DiaryPartsディレクトリへの移動 | pub\DiaryLog\DiaryPartsへ移動中 | 2/2
pump
status: Checking Folder "DiaryParts" !
> find directory DiaryParts
status: Moving to pubDiaryLog/DiaryParts
> cd DiaryParts
status: Change Directory pubDiaryLog/DiaryParts is Completed!
window: ログ：DiaryPartsディレクトリへの移動 | pub\DiaryLog\DiaryPartsへ移動完了 | 2/2
pump
window: ログ：DiaryPartsディレクトリへの移動 | pub\DiaryLogへ移動中 | 2/2
window: ログ：ファイルのアップロード | pub\DiaryLogへ移動中 | 0/1
status: Uploading b.gif
> put b.gif binary
window: ログ：ファイルのアップロード | ファイル「b.gif」のアップロードに成功しました。(3/1) | 1/1
pump
status: Upload Successful!
> close ftp
> close session
status: Uploading Files is Success!
sound: Play ""
window: Successful | 日記のアップロードに成功しました。 | 1/1
pump
window: Successful | 日記のアップロードに成功しました。 | 1/1 | OK
pointer: default
)";

TEST_F(FtpUpload, TellsEachStepOfAWholeRun) {
    fillSite();
    const publish::UploadResult result = run();
    EXPECT_TRUE(result.isDone);
    EXPECT_EQ(result.reason, QString());
    EXPECT_EQ(transcript(), textOf(kWholeRun));
    for (const QJsonValue& event : shown.events) {
        const bool isWindow = event[u"event"_s] == u"progress"_s;
        EXPECT_EQ(event[u"caption"_s].toString(), isWindow ? u"FTP by Velloria"_s : QString());
    }
}

TEST_F(FtpUpload, TheServerHasWhatTheListsAndTheRegisterName) {
    fillSite();
    const QByteArray pages = bytesOf(list(u"upload.tmp"_s));
    run();
    EXPECT_EQ(server.files(), filledServer());
    EXPECT_EQ(uploaded(), u"a.gif 1, b.gif 1"_s);
    EXPECT_EQ(bytesOf(list(u"upload.tmp"_s)), pages);
    EXPECT_EQ(bytesOf(list(u"uploadold.tmp"_s)), pages);
    EXPECT_FALSE(exists(list(u"uploadlog.tmp"_s)));
    EXPECT_FALSE(server.isOpen());
}

TEST_F(FtpUpload, AFirstUploadDeletesNothing) {
    addPage(u"index.htm"_s);
    server.addFile(u"/pub/index.htm"_s);
    EXPECT_TRUE(run().isDone);
    EXPECT_EQ(lines(u"> find "_s), QStringList{u"directory pub"_s});
    EXPECT_EQ(lines(u"window: ファイルの削除"_s), QStringList());
    EXPECT_TRUE(lines(u"status: "_s).contains(u"HTMLファイル以外にアップロード対象となるファイルはありません。"_s));
}

TEST_F(FtpUpload, ASecondRunDeletesTheSamePagesAndSendsThemAgain) {
    addPage(u"index.htm"_s);
    addPage(u"index1.htm"_s);
    addPart(u"a.gif"_s);
    run();
    EXPECT_TRUE(run().isDone);
    EXPECT_EQ(lines(u"> delete "_s), (QStringList{u"index.htm"_s, u"index1.htm"_s}));
    EXPECT_EQ(lines(u"> put "_s), (QStringList{u"index.htm text"_s, u"index1.htm text"_s}));
}

TEST_F(FtpUpload, APageThatTheSiteNoLongerHasGoesFromTheServer) {
    addPage(u"index.htm"_s);
    addPage(u"index_1.htm"_s);
    run();
    core::writeUploadList(list(u"upload.tmp"_s), {{session.FilePath, u"index.htm"_s}});
    EXPECT_TRUE(run().isDone);
    EXPECT_EQ(server.files().keys(), QStringList{u"/pub/index.htm"_s});
}

TEST_F(FtpUpload, PassiveModeIsAnyNumberButZero) {
    addPage(u"index.htm"_s);
    for (const auto& [value, mode] :
         {std::pair(u"-1"_s, u"passive"_s), {u"2"_s, u"passive"_s}, {u"0"_s, u"active"_s}, {u"yes"_s, u"active"_s}}) {
        set(keys::kFtpPassive, value);
        run();
        EXPECT_EQ(lines(u"> connect "_s), QStringList{u"ftp.example.com me secret "_s + mode});
    }
}

TEST_F(FtpUpload, WithoutTheKeyOfPassiveModeItIsActive) {
    addPage(u"index.htm"_s);
    core::DeleteIniKey(session.DiaryIniFile, u"FTP"_s, u"PASV"_s);
    run();
    EXPECT_EQ(lines(u"> connect "_s), QStringList{u"ftp.example.com me secret active"_s});
}

TEST_F(FtpUpload, WhateverIsNeitherZeroNorOneRequiresEncryption) {
    addPage(u"index.htm"_s);
    const auto modeOfConnection = [&] {
        run();
        return lines(u"> connect ftp.example.com me secret active"_s);
    };
    EXPECT_EQ(modeOfConnection(), QStringList{u""_s}) << "without the key";
    for (const QString& value : {u""_s, u"0"_s, u"00"_s, u"+0"_s, u"-0"_s, u"0x0"_s, u" 0\t"_s}) {
        set(keys::kTls, value);
        EXPECT_EQ(modeOfConnection(), QStringList{u""_s}) << value.toStdString();
    }
    for (const QString& value : {u"1"_s, u"01"_s, u"+1"_s, u"0x1"_s}) {
        set(keys::kTls, value);
        EXPECT_EQ(modeOfConnection(), QStringList{u" encrypted when offered"_s}) << value.toStdString();
    }
    // What begins with a number is none, and a number beyond all bits must not come round to 0.
    for (const QString& value :
         {u"2"_s,          u"3"_s,     u"7"_s,    u"10"_s,   u"70000"_s, u"-1"_s,   u"32768"_s, u"4294967296"_s,
          u"4294967297"_s, u"yes"_s,   u"on"_s,   u"true"_s, u"no"_s,    u"２"_s,   u"０"_s,    u"１"_s,
          u"二"_s,         u"0 yes"_s, u"0yes"_s, u"1.5"_s,  u"0.0"_s,   u"0;1"_s,  u"0x"_s,    u"x0"_s,
          u"O"_s,          u"+"_s,     u"--0"_s,  u"　"_s,   u"é"_s,     u"&#49;"_s}) {
        set(keys::kTls, value);
        EXPECT_EQ(modeOfConnection(), QStringList{u" encrypted"_s}) << value.toStdString();
    }
}

TEST_F(FtpUpload, HostAndStartFolderAreUsedAsTheyStand) {
    addPage(u"index.htm"_s);
    set(keys::kFtpUrl, u"ftp://ftp.example.com:2121/"_s);
    set(keys::kFtpStartFolder, u"pub/日記"_s);
    server.makeFolder(u"/pub/日記"_s);
    EXPECT_TRUE(run().isDone);
    EXPECT_EQ(lines(u"> connect "_s), QStringList{u"ftp://ftp.example.com:2121/ me secret active"_s});
    EXPECT_EQ(lines(u"> cd "_s), QStringList{u"pub/日記"_s});
}

TEST_F(FtpUpload, WithoutAStartFolderTheLoginFolderIsWorkedIn) {
    set(keys::kFtpStartFolder, u""_s);
    addPage(u"index.htm"_s);
    addPart(u"a.gif"_s);
    addLog(u"log.htm"_s);
    addPart(u"b.gif"_s, SiteSide::Log);
    for (const QString& folder : {u"/DiaryParts"_s, u"/DiaryLog"_s, u"/DiaryLog/DiaryParts"_s})
        server.makeFolder(folder);
    EXPECT_TRUE(run().isDone);
    EXPECT_EQ(lines(u"> cd "_s), (QStringList{u"DiaryParts"_s, u".."_s, u"DiaryLog"_s, u"DiaryParts"_s}));
    EXPECT_EQ(lines(u"status: Moving to "_s),
              (QStringList{u"DiaryParts"_s, u"DiaryParts/"_s, u"DiaryLog"_s, u"DiaryLog/DiaryParts"_s}));
    EXPECT_EQ(lines(u"window: ディレクトリの移動 | \\"_s),
              (QStringList{u"DiaryPartsへ移動中 | 1/1"_s, u"DiaryPartsへ移動完了 | 1/1"_s}));
    EXPECT_EQ(lines(u"window: 元のディレクトリへの移動 | "_s),
              (QStringList{u"へ移動中 | 0/1"_s, u"へ移動完了 | 0/1"_s}));
    EXPECT_TRUE(server.files().contains(u"/DiaryLog/DiaryParts/b.gif"_s));
}

TEST_F(FtpUpload, TheSoundIsAskedForByNameEvenWithoutOne) {
    addPage(u"index.htm"_s);
    set(keys::kSoundFile, u"/home/me/ding dong.wav"_s);
    run();
    EXPECT_EQ(lines(u"sound: "_s), QStringList{u"Play \"/home/me/ding dong.wav\""_s});
    core::DeleteIniKey(session.DiaryIniFile, u"FTP2"_s, u"SoundFile"_s);
    run();
    EXPECT_EQ(lines(u"sound: "_s), QStringList{u"Play \"\""_s});
}

TEST_F(FtpUpload, ThePingRunsBehindAClosedWindowAndOnlyWhenItIsWanted) {
    addPage(u"index.htm"_s);
    int pings = 0;
    calls.ping = [&] {
        ++pings;
        EXPECT_FALSE(server.isOpen());
        EXPECT_TRUE(transcript().endsWith(u"1/1 | OK\npointer: default\nwindow closed"_s));
    };
    run();
    EXPECT_EQ(pings, 0);
    EXPECT_EQ(lines(u"window closed"_s), QStringList());
    set(keys::kFtpPing, u"1"_s);
    EXPECT_TRUE(run().isDone);
    EXPECT_EQ(pings, 1);
}

TEST_F(FtpUpload, AFailedPingIsNoFailureOfTheUpload) {
    addPage(u"index.htm"_s);
    set(keys::kFtpPing, u"1"_s);
    calls.ping = [] { throw platform::Failure(u"ping"_s, {}, {}); };
    EXPECT_EQ(failureOf([&] { run(); }), u"ping"_s);
    EXPECT_EQ(lines(u"window: "_s).last(), u"Successful | 日記のアップロードに成功しました。 | 1/1 | OK"_s);
}

TEST_F(FtpUpload, PagesAloneGoUpWhenTheUserWantsIt) {
    set(keys::kHtmlOnlyUpload, u"1"_s);
    addPage(u"index.htm"_s);
    addPart(u"a.gif"_s);
    EXPECT_TRUE(run().isDone);
    EXPECT_EQ(server.files().keys(), QStringList{u"/pub/index.htm"_s});
    EXPECT_EQ(uploaded(), u"a.gif 0"_s);
    EXPECT_FALSE(transcript().contains(u"HTMLファイル以外"_s));
    EXPECT_FALSE(transcript().contains(u"window: ファイルアップロード"_s));
}

TEST_F(FtpUpload, PagesAloneWithLogsFailBehindTheLogsAndKeepTheirList) {
    set(keys::kHtmlOnlyUpload, u"1"_s);
    set(keys::kFtpPing, u"1"_s);
    calls.ping = [] { ADD_FAILURE(); };
    addPage(u"index.htm"_s);
    addLog(u"log.htm"_s);
    addPart(u"b.gif"_s, SiteSide::Log);
    EXPECT_FALSE(run().isDone);
    EXPECT_TRUE(transcript().endsWith(textOf(R"(
pump
status: Upload "log.htm" is Succeeded!
> close ftp
> close session
window: ログ：ファイルのアップロード | ファイル「log.htm」のアップロードに成功しました。(1/1) / 不明なエラーで終了しました。 | 1/1
window: ログ：ファイルのアップロード | ファイル「log.htm」のアップロードに成功しました。(1/1) / 不明なエラーで終了しました。 | 1/1 | OK
pointer: default)")));
    EXPECT_EQ(server.files().keys(), (QStringList{u"/pub/DiaryLog/log.htm"_s, u"/pub/index.htm"_s}));
    EXPECT_TRUE(exists(list(u"uploadlog.tmp"_s)));
    EXPECT_EQ(uploaded(), u"b.gif 0"_s);
    EXPECT_FALSE(run().isDone); // and so at every upload
}

TEST_F(FtpUpload, FilesOfTheLogsWaitForAListOfLogs) {
    addPage(u"index.htm"_s);
    addPart(u"b.gif"_s, SiteSide::Log);
    EXPECT_TRUE(run().isDone);
    EXPECT_EQ(uploaded(), u"b.gif 0"_s);
    EXPECT_FALSE(transcript().contains(u"DiaryLog"_s));
}

TEST_F(FtpUpload, LogsAreCountedAgainstThePages) {
    for (const QString& name : {u"a.htm"_s, u"b.htm"_s, u"c.htm"_s})
        addPage(name);
    addLog(u"log.htm"_s);
    EXPECT_TRUE(run().isDone);
    EXPECT_TRUE(transcript().contains(u"ファイル「log.htm」のアップロードに成功しました。(1/3) | 1/1\n"_s));
    EXPECT_FALSE(exists(list(u"uploadlog.tmp"_s)));
}

TEST_F(FtpUpload, RegisteredFilesLieBelowTheFolderOfTheLastRow) {
    const QString other = path(u"other/"_s);
    platform::makeFolder(other + u"DiaryParts"_s);
    addPage(u"index.htm"_s);
    addPart(u"a.gif"_s, SiteSide::Current, "site");
    writeFile(other + u"x.htm"_s, "x");
    writeFile(other + u"DiaryParts/a.gif"_s, "other");
    core::appendUploadList(list(u"upload.tmp"_s), {{other, u"x.htm"_s}});
    EXPECT_TRUE(run().isDone);
    EXPECT_EQ(server.files().value(u"/pub/DiaryParts/a.gif"_s), "other");
}

TEST_F(FtpUpload, AFileThatOnlyTheDataFolderHasIsCopiedToTheSiteFirst) {
    QDir(session.FilePath + u"DiaryParts"_s).removeRecursively();
    QDir(logFolder() + u"DiaryParts"_s).removeRecursively();
    addPage(u"index.htm"_s);
    addLog(u"log.htm"_s);
    addRow(u"a.gif"_s);
    addRow(u"b.gif"_s, SiteSide::Log);
    writeFile(session.DataPath + u"DiaryParts/a.gif"_s, "current");
    writeFile(session.DataPath + u"DiaryParts/b.gif"_s, "wrong side");
    writeFile(session.DataPath + u"DiaryLog/DiaryParts/b.gif"_s, "log");
    EXPECT_TRUE(run().isDone);
    EXPECT_EQ(bytesOf(session.FilePath + u"DiaryParts/a.gif"_s), "current");
    EXPECT_EQ(bytesOf(logFolder() + u"DiaryParts/b.gif"_s), "log");
    EXPECT_EQ(server.files().value(u"/pub/DiaryParts/a.gif"_s), "current");
    EXPECT_EQ(server.files().value(u"/pub/DiaryLog/DiaryParts/b.gif"_s), "log");
}

TEST_F(FtpUpload, ManyFilesThatTheSiteLacksCostNoListingEach) {
    constexpr int kThere = 20'000;
    constexpr int kMissing = 300;
    addPage(u"index.htm"_s);
    QDir().mkpath(session.FilePath + u"DiaryParts"_s);
    for (int i = 0; i < kThere; ++i)
        ASSERT_TRUE(QFile(session.FilePath + u"DiaryParts/there%1.gif"_s.arg(i)).open(QIODevice::WriteOnly));
    for (int i = 0; i < kMissing; ++i) {
        const QString name = u"part%1.gif"_s.arg(i);
        addRow(name);
        writeFile(session.DataPath + u"DiaryParts/"_s + name, "x");
    }
    const double start = processorSeconds();
    EXPECT_TRUE(run().isDone);
    EXPECT_LT(processorSeconds() - start, 20);
    EXPECT_EQ(server.files().size(), kMissing + 1);
}

TEST_F(FtpUpload, TheSitesOwnCopyIsNotReplaced) {
    addPage(u"index.htm"_s);
    addPart(u"a.gif"_s, SiteSide::Current, "site");
    writeFile(session.DataPath + u"DiaryParts/a.gif"_s, "data");
    EXPECT_TRUE(run().isDone);
    EXPECT_EQ(server.files().value(u"/pub/DiaryParts/a.gif"_s), "site");
}

TEST_F(FtpUpload, NamesGoToTheServerAsTheyAre) {
    const QStringList names{u"-x.htm"_s, u"a[1].htm"_s, u"caf\u00E9.htm"_s, u"表示.htm"_s};
    for (const QString& name : names)
        addPage(name, name.toUtf8());
    EXPECT_TRUE(run().isDone);
    for (const QString& name : names)
        EXPECT_EQ(server.files().value(u"/pub/"_s + name), name.toUtf8());
}

TEST_F(FtpUpload, AListThatChangesMeanwhileIsNotTakenForTheOneThatWentUp) {
    addPage(u"index.htm"_s);
    addLog(u"log.htm"_s);
    server.beforeCall = [&](const QString& call) {
        if (call == u"put index.htm text"_s)
            core::writeUploadList(list(u"upload.tmp"_s), {{session.FilePath, u"new.htm"_s}});
        if (call == u"put log.htm text"_s)
            addLog(u"log2.htm"_s);
    };
    EXPECT_TRUE(run().isDone);
    EXPECT_TRUE(bytesOf(list(u"uploadold.tmp"_s)).contains("index.htm"));
    EXPECT_FALSE(bytesOf(list(u"uploadold.tmp"_s)).contains("new.htm"));
    EXPECT_EQ(core::readUploadList(list(u"uploadlog.tmp"_s)).size(), 2U);
}

TEST_F(FtpUpload, ARowWithoutANameHasNothingOnTheServer) {
    addPage(u"index.htm"_s);
    writeFile(list(u"uploadold.tmp"_s), "/site,old.htm\r\n\r\n/si");
    EXPECT_TRUE(run().isDone);
    EXPECT_EQ(lines(u"> find "_s), (QStringList{u"directory pub"_s, u"old.htm"_s}));
}

TEST_F(FtpUpload, AnEmptyListIsAListToo) {
    writeFile(list(u"upload.tmp"_s), {});
    EXPECT_TRUE(run().isDone);
    EXPECT_EQ(lines(u"> put "_s), QStringList());
    EXPECT_EQ(bytesOf(list(u"uploadold.tmp"_s)), "");
}

} // namespace
} // namespace velloria::tests
