// Runs that stop anywhere, and what a repetition makes of them.
#include "publish/ftp_upload.h"

#include "publish/upload_home.h"

#include <QFile>

using namespace Qt::StringLiterals;

namespace velloria::tests {
namespace {

struct Killed {};

class FtpUploadRepeat : public UploadHome {
protected:
    /// How many calls of the server a whole run takes.
    qsizetype countCalls() {
        fillSite();
        run();
        return lines(u"> "_s).size() - 2; // without the two that close
    }

    /// Site, lists, rows and server as before the first run.
    void startOver() {
        for (const QString& name : {u"upload.tmp"_s, u"uploadold.tmp"_s, u"uploadlog.tmp"_s})
            QFile::remove(list(name));
        sql(u"DELETE FROM FileDB"_s);
        server.clear();
        server.refusals.clear();
        server.beforeCall = {};
        fillSite();
    }

    bool hasSent(const QString& call) const { return sent.contains(call); }

    /// Each file of the state that a run leaves, judged by what it had sent.
    void checkState() {
        const bool arePagesSent = hasSent(u"put index.htm text"_s) && hasSent(u"put index1.htm text"_s);
        const QByteArray pages = bytesOf(list(u"upload.tmp"_s));
        EXPECT_EQ(core::readUploadList(list(u"upload.tmp"_s)).size(), 2U);
        EXPECT_EQ(bytesOf(list(u"uploadold.tmp"_s)) == pages, arePagesSent);
        EXPECT_EQ(core::readUploadList(list(u"uploadlog.tmp"_s)).size(), 2U);
        EXPECT_EQ(uploaded(), u"a.gif %1, b.gif 0"_s.arg(hasSent(u"put a.gif binary"_s) ? 1 : 0));
    }

    QStringList sent; ///< calls that were answered
};

TEST_F(FtpUploadRepeat, ARefusalAnywhereLeavesAStateThatTheNextRunCompletes) {
    const qsizetype count = countCalls();
    ASSERT_EQ(count, 23);
    for (qsizetype refused = 0; refused < count; ++refused) {
        SCOPED_TRACE(refused);
        startOver();
        sent.clear();
        qsizetype number = 0;
        server.beforeCall = [&](const QString& call) {
            server.refusals.clear();
            if (number++ == refused)
                server.refusals[call] = 12031;
            else
                sent += call;
        };
        EXPECT_FALSE(run().isDone);
        EXPECT_EQ(number, refused + 1); // nothing is tried after a refusal
        EXPECT_FALSE(server.isOpen());
        EXPECT_EQ(lines(u"pointer: "_s), (QStringList{u"hourglass"_s, u"default"_s}));
        EXPECT_TRUE(lines(u"window: "_s).last().contains(u" / 不明なエラーで終了しました。 | "_s));
        EXPECT_TRUE(lines(u"window: "_s).last().endsWith(u" | OK"_s));
        EXPECT_EQ(lines(u"sound: "_s), QStringList());
        checkState();

        server.beforeCall = {};
        server.refusals.clear();
        EXPECT_TRUE(run().isDone);
        EXPECT_EQ(server.files(), filledServer());
        EXPECT_EQ(uploaded(), u"a.gif 1, b.gif 1"_s);
        EXPECT_FALSE(exists(list(u"uploadlog.tmp"_s)));
    }
}

TEST_F(FtpUploadRepeat, ARunThatIsKilledAnywhereIsCompletedByTheNextOne) {
    const qsizetype count = countCalls();
    for (qsizetype last = 0; last < count; ++last) {
        SCOPED_TRACE(last);
        startOver();
        sent.clear();
        qsizetype number = 0;
        server.beforeCall = [&](const QString& call) {
            if (number++ == last)
                throw Killed();
            sent += call;
        };
        EXPECT_THROW(run(), Killed);
        checkState();

        server.beforeCall = {};
        EXPECT_TRUE(run().isDone);
        EXPECT_EQ(server.files(), filledServer());
    }
}

TEST_F(FtpUploadRepeat, RowsThatWentUpStayMarkedWhenALaterOneFails) {
    addPage(u"index.htm"_s);
    for (const QString& name : {u"1.gif"_s, u"2.gif"_s, u"3.gif"_s, u"4.gif"_s})
        addPart(name);
    server.refusals[u"put 3.gif binary"_s] = 12031;
    EXPECT_FALSE(run().isDone);
    EXPECT_EQ(uploaded(), u"1.gif 1, 2.gif 1, 3.gif 0, 4.gif 0"_s);
    server.refusals.clear();
    EXPECT_TRUE(run().isDone);
    EXPECT_EQ(lines(u"> put "_s), (QStringList{u"index.htm text"_s, u"3.gif binary"_s, u"4.gif binary"_s}));
    EXPECT_EQ(lines(u"window: ディレクトリの移動 | ファイル「3.gif」をアップロードします。"_s),
              QStringList{u"(0/2) | 0/2"_s});
}

TEST_F(FtpUploadRepeat, AnotherFileOfTheLogsThatFailsKeepsTheListOfLogs) {
    fillSite();
    server.refusals[u"put b.gif binary"_s] = 12031;
    EXPECT_FALSE(run().isDone);
    server.refusals.clear();
    EXPECT_TRUE(run().isDone);
    EXPECT_EQ(lines(u"> delete "_s), (QStringList{u"index.htm"_s, u"index1.htm"_s, u"200404.htm"_s, u"200403.htm"_s}));
}

} // namespace
} // namespace velloria::tests
