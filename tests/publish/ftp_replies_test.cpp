#include "publish/ftp_replies.h"

#include "support/print.h"

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;
using namespace velloria::publish;

namespace velloria::tests {
namespace {

FtpReplies after(const QList<QByteArray>& lines) {
    FtpReplies replies;
    replies.begin();
    replies.sent("SIZE x\r\n");
    for (const QByteArray& line : lines)
        replies.received(line);
    return replies;
}

TEST(FtpReplies, TheLinesOfAReplyBelongTogether) {
    const auto replies = after({"220-Welcome\r\n", " 500 inside\r\n", "220-more\r\n", "220 done\r\n"});
    EXPECT_EQ(replies.count(), 1);
    EXPECT_EQ(replies.lastCode(), 220);
    EXPECT_EQ(replies.lastText(), u"220-Welcome\r\n 500 inside\r\n220-more\r\n220 done"_s);
}

TEST(FtpReplies, TheLastReplyIsTheOneThatCounts) {
    const auto replies = after({"150 start\r\n", "226 end\r\n"});
    EXPECT_EQ(replies.count(), 2);
    EXPECT_EQ(replies.codeOf("SIZE"), 226);
    EXPECT_EQ(replies.codeOf("REST"), 0);
    EXPECT_EQ(replies.lastText(), u"226 end"_s);
}

TEST(FtpReplies, AnEarlierReplyCanBeShownInsteadOfTheLast) {
    auto replies = after({"425 no\r\n"});
    replies.sent("REST 0\r\n");
    replies.received("350 ok\r\n");
    replies.recall("SIZE");
    EXPECT_EQ(replies.lastText(), u"425 no"_s);
}

TEST(FtpReplies, ANewOperationCountsAnewAndKeepsTheLastWords) {
    auto replies = after({"550 no\r\n"});
    replies.begin();
    EXPECT_EQ(replies.count(), 0);
    EXPECT_EQ(replies.lastCode(), 0);
    EXPECT_EQ(replies.codeOf("SIZE"), 0);
    EXPECT_EQ(replies.lastText(), u"550 no"_s);
}

TEST(FtpReplies, LinesWithoutACodeAreNoReply) {
    const auto replies = after({"hello\r\n", "\r\n", "\n", "22\r\n"});
    EXPECT_EQ(replies.count(), 0);
    EXPECT_EQ(replies.lastCode(), 0);
}

TEST(FtpReplies, TextIsReadAsUtf8IfItIsThatElseInTheCodePage) {
    EXPECT_EQ(after({QByteArray("550 ") + u"表がない"_s.toUtf8() + "\r\n"}).lastText(), u"550 表がない"_s);
    EXPECT_EQ(after({"550 \x95\x5c\r\n"}).lastText(), u"550 表"_s);
}

TEST(FtpReplies, TextEndsAtANul) {
    EXPECT_EQ(after({QByteArray("550 a\0b\r\n", 9)}).lastText(), u"550 a"_s);
}

TEST(FtpReplies, MoreThan254BytesAreShownAs255Blanks) {
    EXPECT_EQ(after({"550 " + QByteArray(250, 'x') + "\r\n"}).lastText(), u"550 "_s + QString(250, u'x'));
    EXPECT_EQ(after({"550 " + QByteArray(251, 'x') + "\r\n"}).lastText(), QString(255, u' '));
}

TEST(FtpReplies, AFloodIsNotKept) {
    FtpReplies replies;
    replies.begin();
    for (int i = 0; i < 10000; ++i)
        replies.received("220-" + QByteArray(1000, 'x') + "\r\n");
    replies.received("220 end\r\n");
    EXPECT_EQ(replies.lastCode(), 220);
    EXPECT_LE(replies.last().size(), 16386);
}

} // namespace
} // namespace velloria::tests
