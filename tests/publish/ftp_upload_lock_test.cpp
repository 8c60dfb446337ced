// Two uploads of one diary at the same time.
#include "publish/ftp_upload.h"

#include "core/keys.h"
#include "publish/upload_home.h"

#include <QDir>
#include <QFile>

using namespace Qt::StringLiterals;

namespace velloria::tests {
namespace {

class FtpUploadLock : public UploadHome {
protected:
    /// A run of another program with the same folder: what it shows and asks of its server.
    QStringList runOther() {
        QStringList lines;
        MemoryServer otherServer(lines);
        TranscriptDesk otherDesk(lines);
        result = publish::FtpUpload({session, clock, otherDesk}, otherServer).FTP_Execute();
        return lines;
    }

    publish::UploadResult result;
};

TEST_F(FtpUploadLock, TheSecondOfTwoEndsBeforeItTouchesTheServer) {
    fillSite();
    QStringList second;
    QByteArray log;
    server.beforeCall = [&](const QString& call) {
        if (call != u"put a.gif binary"_s)
            return;
        log = bytesOf(list(u"upload.log"_s));
        second = runOther();
    };
    EXPECT_TRUE(run().isDone);
    EXPECT_EQ(second.join(u'\n'), textOf(R"(
window:  |  | 0/1
window: エラー | この日記は、ほかのVelloriaがアップロードしています。 / 終わってから、もう一度アップロードしてください。 | 0/1
status: Another upload is running....Upload Failed.
window: エラー | この日記は、ほかのVelloriaがアップロードしています。 / 終わってから、もう一度アップロードしてください。 | 0/1 | OK)"));
    EXPECT_FALSE(result.isDone);
    EXPECT_EQ(
        result.reason,
        u"この日記は、ほかのVelloriaがアップロードしています。 終わってから、もう一度アップロードしてください。"_s);
    EXPECT_TRUE(bytesOf(list(u"upload.log"_s)).startsWith(log)) << "the log is the first one's";
    EXPECT_EQ(server.files(), filledServer());
    EXPECT_FALSE(exists(list(u"upload.lock"_s)));
}

TEST_F(FtpUploadLock, IsFreeBehindEveryEnd) {
    fillSite();
    server.refusals[u"put a.gif binary"_s] = 12030;
    EXPECT_FALSE(run().isDone);
    server.refusals.clear();
    QFile::rename(list(u"upload.tmp"_s), list(u"away"_s));
    EXPECT_FALSE(run().isDone);
    QFile::rename(list(u"away"_s), list(u"upload.tmp"_s));
    writeFile(list(u"upload.lock"_s), {}); // of a run that was killed
    EXPECT_TRUE(run().isDone);
    EXPECT_FALSE(exists(list(u"upload.lock"_s)));
}

TEST_F(FtpUploadLock, ThePingDoesNotHoldIt) {
    fillSite();
    set(core::keys::kFtpPing, u"1"_s);
    calls.ping = [&] {
        calls.ping = {};
        server.makeFolder(u"/pub"_s);
        EXPECT_FALSE(exists(list(u"upload.lock"_s)));
    };
    EXPECT_TRUE(run().isDone);
}

TEST_F(FtpUploadLock, AFolderThatTakesNoLockTakesNoUpload) {
    fillSite();
    ASSERT_TRUE(QDir().mkdir(list(u"upload.lock"_s)));
    EXPECT_FALSE(run().isDone);
    EXPECT_EQ(lines(u"> "_s), QStringList());
    EXPECT_TRUE(lines(u"status: "_s).last().contains(list(u"upload.lock"_s)));
    EXPECT_TRUE(lines(u"window: "_s).last().endsWith(u" | OK"_s));
}

} // namespace
} // namespace velloria::tests
