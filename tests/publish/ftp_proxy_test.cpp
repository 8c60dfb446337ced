// What nobody needs the rights of the superuser for: the server behind a proxy.
#include "publish/ftp_client.h"

using namespace Qt::StringLiterals;
using namespace velloria::publish;

namespace velloria::tests {
namespace {

class FtpThroughProxy : public FtpClient {
protected:
    FtpThroughProxy()
        : FtpClient(FaultServer::Way::ThroughProxy) {}
};

TEST_F(FtpThroughProxy, NamesOnTheServerAreBytesOfTheCodePage) {
    ASSERT_TRUE(connect()) << reason().toStdString();
    const std::pair<QString, QByteArray> names[] = {{u"表示.htm"_s, "\x95\x5c\x8e\xa6.htm"},
                                                    {u"ソ−能〜.htm"_s, "\x83\x5c\x81\x7c\x94\x5c\x81\x60.htm"},
                                                    {u"ｶﾅ①.gif"_s, "\xb6\xc5\x87\x40.gif"}};
    const QByteArray entered = "\x93\xfa\x8b\x4c";
    EXPECT_TRUE(internet.createDirectory(u"日記"_s));
    EXPECT_TRUE(server.has(entered));
    EXPECT_TRUE(internet.findDirectory(u"日記"_s));
    EXPECT_TRUE(internet.changeDirectory(u"日記"_s));
    for (const auto& [name, bytes] : names) {
        EXPECT_TRUE(put("x", TransferType::Text, name));
        EXPECT_TRUE(server.has(entered + '/' + bytes)) << bytes.toHex().toStdString();
        EXPECT_TRUE(internet.findFile(name));
        EXPECT_EQ(server.countOf("STOR " + bytes), 1);
        EXPECT_TRUE(internet.deleteFile(name));
        EXPECT_FALSE(server.has(entered + '/' + bytes));
    }
    EXPECT_EQ(server.countOf("connected"), 1);
}

TEST_F(FtpThroughProxy, ALinkInAListIsAFileByItsOwnNameAlone) {
    server.put("target.htm", "x");
    server.link("a[1].htm", "target.htm");
    server.link("b.htm", "gone[1].htm");
    server.on(u"SIZE"_s, reply(u"502 no\r\n"_s));
    ASSERT_TRUE(connect());
    EXPECT_TRUE(internet.findFile(u"a[1].htm"_s));
    EXPECT_FALSE(internet.findFile(u"gone[1].htm"_s));
    EXPECT_EQ(internet.lastError(), kNoMoreFiles);
}

TEST_F(FtpThroughProxy, AllThatPassesCanBeReadAndNeverThePassword) {
    login.password = u"秘密のword"_s;
    server.on(u"PASS"_s, reply(u"230 user u with 秘密のword is in\r\n"_s));
    ASSERT_TRUE(connect());
    EXPECT_FALSE(internet.deleteFile(u"表.htm"_s));
    internet.closeSession();
    for (const QString& line : {u"< 220 ready"_s, u"> USER u"_s, u"> PASS ****"_s, u"< 230 user u with **** is in"_s,
                                u"> DELE 表.htm"_s, u"< 550 can't delete it"_s, u"> QUIT"_s, u"< 221 bye"_s})
        EXPECT_TRUE(trace.contains(line)) << line.toStdString() << '\n' << trace.join(u'\n').toStdString();
    EXPECT_FALSE(trace.filter(u"* "_s).isEmpty()) << "the library's words";
    EXPECT_TRUE(trace.filter(u"秘密"_s).isEmpty());
}

TEST_F(FtpThroughProxy, ARefusedLoginIsToldInTheServersWords) {
    server.on(u"USER"_s, reply(u"530-No.\r\n530 Non-anonymous sessions must use encryption.\r\n"_s));
    EXPECT_FALSE(connect());
    EXPECT_EQ(internet.lastError(), 12015);
    EXPECT_EQ(reason(), u"FTPサーバーへのログオンに失敗しました。 530-No. 530 Non-anonymous sessions must use "
                        "encryption."_s);
    login.password = u"word1"_s;
    server.on(u"USER"_s, {});
    server.on(u"PASS"_s, reply(u"530 word1 is wrong\r\n"_s));
    EXPECT_FALSE(connect());
    EXPECT_EQ(reason(), u"FTPサーバーへのログオンに失敗しました。 530 **** is wrong"_s);
}

TEST_F(FtpThroughProxy, AReplyTooLongForTheWindowIsAReasonAllTheSame) {
    ASSERT_TRUE(connect());
    server.on(u"DELE"_s, reply(u"550 "_s + QString(300, u'x') + u"\r\n"_s));
    EXPECT_FALSE(internet.deleteFile(u"a"_s));
    EXPECT_EQ(errorText(), QString(255, u' '));
    EXPECT_EQ(reason(), u"550 "_s + QString(300, u'x'));
    server.on(u"DELE"_s, {});
    EXPECT_FALSE(internet.deleteFile(u"a"_s));
    EXPECT_EQ(reason(), u"550 can't delete it"_s);
    EXPECT_FALSE(internet.deleteFile(u""_s));
    EXPECT_EQ(reason(), u"URLが無効です。"_s);
}

TEST_F(FtpThroughProxy, TheWordsOfAGreetingStayBehindTheFarewell) {
    server.on(u"NOOP"_s, reply(u"421 busy\r\n"_s));
    EXPECT_FALSE(connect());
    EXPECT_EQ(errorText(), u"421 busy"_s);
}

} // namespace
} // namespace velloria::tests
