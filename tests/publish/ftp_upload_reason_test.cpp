// Why an upload has failed: on the status panel, for standard error, in the log.
#include "publish/ftp_upload.h"

#include "core/keys.h"
#include "publish/upload_home.h"

#include <QDir>

using namespace Qt::StringLiterals;

namespace velloria::tests {
namespace {

namespace keys = core::keys;

class FtpUploadReason : public UploadHome {
protected:
    publish::UploadResult runRefusedAt(const QString& call, int error) {
        server.refusals.clear();
        server.refusals[call] = error;
        return run();
    }
    QString log() const { return QString::fromUtf8(bytesOf(list(u"upload.log"_s))); }
};

TEST_F(FtpUploadReason, EveryRefusalOfTheServerIsToldInItsWords) {
    for (const QString& call :
         {u"find directory pub"_s, u"cd pub"_s, u"find index.htm"_s, u"delete index.htm"_s, u"put index.htm text"_s,
          u"find directory DiaryParts"_s, u"cd DiaryParts"_s, u"put a.gif binary"_s, u"cd .."_s,
          u"find directory DiaryLog"_s, u"cd DiaryLog"_s, u"find 200404.htm"_s, u"delete 200404.htm"_s,
          u"put 200404.htm text"_s, u"put b.gif binary"_s}) {
        fillSite();
        const publish::UploadResult result = runRefusedAt(call, publish::kExtendedError);
        EXPECT_FALSE(result.isDone);
        EXPECT_EQ(result.reason.count(u"550 Permission denied."_s), 1) << call.toStdString();
        EXPECT_FALSE(result.reason.contains(u'\n'));
        EXPECT_EQ(lines(u"status: "_s).last(), u"550 Permission denied."_s) << call.toStdString();
        EXPECT_TRUE(log().endsWith(u"--- "_s + result.reason + u'\n')) << call.toStdString();
    }
}

TEST_F(FtpUploadReason, AFolderThatIsNotMadeIsTold) {
    set(keys::kFtpStartFolder, u"new"_s);
    fillSite();
    shown.answers = {u"no"_s};
    EXPECT_EQ(run().reason, u"newへ移動失敗 フォルダは作成しませんでした。"_s);
    shown.answers = {u"yes"_s};
    EXPECT_EQ(runRefusedAt(u"mkdir new"_s, publish::kExtendedError).reason, u"newへ移動失敗 550 Permission denied."_s);
}

TEST_F(FtpUploadReason, AFailedConnectionIsExplainedBehindItsTexts) {
    fillSite();
    server.detail = u"530 must use encryption"_s;
    const publish::UploadResult result = runRefusedAt(u"connect ftp.example.com me secret active"_s, 12015);
    const QString why = u"FTPサーバーへのログオンに失敗しました。 530 must use encryption"_s;
    EXPECT_EQ(result.reason, u"FTPサーバーへの接続失敗。 (FTP Connect Error.) "_s + why);
    EXPECT_EQ(lines(u"status: "_s).mid(lines(u"status: "_s).size() - 2),
              (QStringList{u"Can't connect to ftp.example.com"_s, u"エラー："_s + why}));
    server.detail.clear();
    EXPECT_EQ(runRefusedAt(u"open"_s, 12029).reason,
              u"インターネットへの接続失敗。 (Internet Connect Error.) サーバーに接続できません。"_s);
    EXPECT_EQ(lines(u"status: "_s).last(), u"エラー：サーバーに接続できません。"_s);
}

TEST_F(FtpUploadReason, WhatIsKnownBeyondATextStandsBehindIt) {
    for (const QString& call :
         {u"put index.htm text"_s, u"cd pub"_s, u"delete index.htm"_s, u"put 200404.htm text"_s}) {
        fillSite();
        server.response = QString(255, u' ');
        server.detail = u"550 a long reply"_s;
        const publish::UploadResult result = runRefusedAt(call, publish::kExtendedError);
        EXPECT_TRUE(result.reason.endsWith(u" 550 a long reply"_s)) << result.reason.toStdString();
        EXPECT_EQ(lines(u"status: "_s).mid(lines(u"status: "_s).size() - 2),
                  (QStringList{QString(255, u' '), u"エラー：550 a long reply"_s}));
    }
}

TEST_F(FtpUploadReason, AnEncryptionOfTheLoginAloneIsToldAndNoFailure) {
    fillSite();
    server.remark = u"clear files"_s;
    EXPECT_TRUE(run().isDone);
    EXPECT_EQ(lines(u"status: "_s).mid(2, 2), (QStringList{u"Connected to ftp.example.com"_s, u"clear files"_s}));
}

TEST_F(FtpUploadReason, TheLogHasThisRunAndTheOneBefore) {
    addPage(u"index.htm"_s);
    EXPECT_TRUE(run().isDone);
    EXPECT_EQ(modeOf(list(u"upload.log"_s)) & 0777, 0600U);
    const QString first = log();
    EXPECT_TRUE(first.startsWith(u"=== "_s + clock.now().toString(u"yyyy/MM/dd HH:mm:ss"_s) +
                                 u" ftp.example.com\n> open\n> connect "_s))
        << first.toStdString();
    EXPECT_TRUE(first.endsWith(u"> close ftp\n--- Uploading Files is Success!\n"_s));
    const QString reason = runRefusedAt(u"put index.htm text"_s, 12002).reason;
    EXPECT_TRUE(log().startsWith(first));
    EXPECT_TRUE(log().endsWith(u"> put index.htm text\n> close ftp\n--- "_s + reason + u'\n'));
    run();
    EXPECT_FALSE(log().contains(u"Success"_s));
}

TEST_F(FtpUploadReason, WhatEndsBeforeTheNetworkLeavesTheLogAlone) {
    addPage(u"index.htm"_s);
    run();
    const QString before = log();
    set(keys::kFtpUrl, u""_s);
    EXPECT_FALSE(run().isDone);
    EXPECT_EQ(log(), before);
}

TEST_F(FtpUploadReason, ALogThatCanNotBeWrittenIsNoFailure) {
    addPage(u"index.htm"_s);
    ASSERT_TRUE(QDir().mkdir(list(u"upload.log"_s)));
    EXPECT_TRUE(run().isDone);
}

} // namespace
} // namespace velloria::tests
