#include "publish/curl_internet.h"

#include "publish/ftp_client.h"
#include "support/patience.h"

#include <QElapsedTimer>

#include <stdexcept>

using namespace Qt::StringLiterals;
using namespace velloria::publish;

namespace velloria::tests {
namespace {

/// Whatever the machine does besides: long before a silent server is left.
constexpr int kSoonMs = 14000;

class CurlFtp : public FtpClient {
protected:
    CurlFtp()
        : FtpClient(FaultServer::Way::Direct) {}
};

TEST_F(CurlFtp, AWholeRunNeedsOneLoginAndEndsInGoodbye) {
    server.put("old.htm", "old");
    ASSERT_TRUE(connect());
    EXPECT_FALSE(internet.findDirectory(u"pub"_s));
    EXPECT_EQ(internet.lastError(), kNoMoreFiles);
    EXPECT_TRUE(internet.createDirectory(u"pub"_s));
    EXPECT_TRUE(internet.findDirectory(u"pub"_s));
    EXPECT_TRUE(internet.findFile(u"old.htm"_s));
    EXPECT_TRUE(internet.deleteFile(u"old.htm"_s));
    EXPECT_FALSE(internet.findFile(u"old.htm"_s));
    EXPECT_EQ(internet.lastError(), kNoMoreFiles);
    EXPECT_TRUE(internet.changeDirectory(u"pub"_s));
    EXPECT_TRUE(put("a\r\nb", TransferType::Text));
    EXPECT_FALSE(internet.findFile(u"y.htm"_s)) << "asked as binary, after a text";
    EXPECT_EQ(internet.lastError(), kNoMoreFiles);
    EXPECT_TRUE(put("\r\n\n", TransferType::Binary, u"a.gif"_s));
    EXPECT_TRUE(internet.changeDirectory(u".."_s));
    EXPECT_TRUE(put("up", TransferType::Text, u"up.htm"_s));
    internet.closeFtp();
    internet.closeSession();
    EXPECT_FALSE(server.has("old.htm"));
    EXPECT_EQ(server.content("pub/x.htm"), "a\r\nb");
    EXPECT_EQ(server.content("pub/a.gif"), "\r\n\n");
    EXPECT_EQ(server.content("up.htm"), "up");
    EXPECT_EQ(server.countOf("connected"), 1);
    EXPECT_EQ(server.countOf("USER u"), 1);
    EXPECT_EQ(server.log().last(), "QUIT");
}

TEST_F(CurlFtp, ATextGoesWithSingleCarriageReturns) {
    ASSERT_TRUE(connect());
    const std::pair<QByteArray, QByteArray> cases[] = {
        {"", ""},
        {"a\r\nb\r\n", "a\r\nb\r\n"},
        {"a\nb\n", "a\r\nb\r\n"},
        {"a\r\r\nb\r", "a\r\r\nb\r"},
        {"\r", "\r"},
        {QByteArray("x\r\n").repeated(100000), QByteArray("x\r\n").repeated(100000)},
        {"y" + QByteArray("\r\n").repeated(100000), "y" + QByteArray("\r\n").repeated(100000)},
        {QByteArray("\r").repeated(70000), QByteArray("\r").repeated(70000)},
    };
    for (const auto& [sent, kept] : cases) {
        ASSERT_TRUE(put(sent, TransferType::Text)) << internet.lastError();
        EXPECT_TRUE(server.content("x.htm") == kept) << sent.first(std::min<qsizetype>(sent.size(), 20)).toStdString();
    }
}

TEST_F(CurlFtp, EveryByteOfABinaryFileIsKept) {
    ASSERT_TRUE(connect());
    QByteArray bytes;
    for (int i = 0; i < 300000; ++i)
        bytes += char(i * 7 + i / 256);
    EXPECT_TRUE(put(bytes, TransferType::Binary));
    EXPECT_TRUE(server.content("x.htm") == bytes);
    EXPECT_TRUE(put("", TransferType::Binary));
    EXPECT_EQ(server.content("x.htm"), "");
}

TEST_F(CurlFtp, ActiveModeSendsToo) {
    login.isPassive = false;
    ASSERT_TRUE(connect());
    EXPECT_TRUE(put("active", TransferType::Text)) << internet.lastError();
    EXPECT_TRUE(put("again", TransferType::Text, u"y.htm"_s)) << internet.lastError();
    EXPECT_EQ(server.content("y.htm"), "again");
    EXPECT_FALSE(server.log().contains("PASV"));
    EXPECT_EQ(server.countOf("connected"), 1);
}

TEST_F(CurlFtp, TheAddressOfAPassiveAnswerIsNotObeyed) {
    server.on(u"pasv"_s, u"127.0.0.77"_s);
    ASSERT_TRUE(connect());
    EXPECT_TRUE(put("here", TransferType::Text)) << internet.lastError();
    EXPECT_EQ(server.content("x.htm"), "here");
}

TEST_F(CurlFtp, NamesTravelAsCodePageBytesAndAreNoPatterns) {
    ASSERT_TRUE(connect());
    const std::pair<QString, QByteArray> names[] = {{u"表示.htm"_s, "\x95\x5c\x8e\xa6.htm"},
                                                    {u"a[1].htm"_s, "a[1].htm"},
                                                    {u"-x.htm"_s, "-x.htm"},
                                                    {u"a b;type=i%41.htm"_s, "a b;type=i%41.htm"}};
    for (const auto& [name, bytes] : names) {
        EXPECT_FALSE(internet.findFile(name));
        EXPECT_EQ(internet.lastError(), kNoMoreFiles);
        EXPECT_TRUE(put("x", TransferType::Text, name));
        EXPECT_TRUE(server.has(bytes)) << bytes.toStdString();
        EXPECT_TRUE(internet.findFile(name));
        EXPECT_TRUE(internet.deleteFile(name));
        EXPECT_FALSE(server.has(bytes));
    }
}

TEST_F(CurlFtp, ANameThatCanNotTravelIsRefusedBeforeAnythingIsSent) {
    ASSERT_TRUE(connect());
    const auto before = server.log();
    for (const QString& name : {u"a\rb"_s, u"a\nDELE x"_s, u"a\0b"_s, u"é.htm"_s, u""_s}) {
        EXPECT_FALSE(internet.deleteFile(name));
        EXPECT_EQ(internet.lastError(), 12005);
        EXPECT_FALSE(internet.findFile(name));
        EXPECT_FALSE(internet.findDirectory(name));
        EXPECT_FALSE(internet.changeDirectory(name));
        EXPECT_FALSE(internet.createDirectory(name));
        EXPECT_FALSE(put("x", TransferType::Text, name));
        EXPECT_EQ(internet.lastError(), 12005);
    }
    EXPECT_EQ(server.log(), before);
}

TEST_F(CurlFtp, AHostIsAHostAloneAndNeverObeyedAsAnAddress) {
    for (const QString& host : {u"ftp://"_s + server.host(), server.host() + u"/"_s, server.host() + u":21"_s,
                                u"u:p@"_s + server.host(), u" "_s + server.host(), u""_s}) {
        login.host = host;
        EXPECT_FALSE(connect()) << host.toStdString();
        EXPECT_EQ(internet.lastError(), 12005) << host.toStdString();
    }
    login.host = QString(64, u'x') + u".invalid"_s; // too long for a name: nobody is asked
    EXPECT_FALSE(connect());
    EXPECT_EQ(internet.lastError(), 12007);
    login.host = u"127.0.0.99"_s;
    EXPECT_FALSE(connect());
    EXPECT_EQ(internet.lastError(), 12029);
    EXPECT_TRUE(server.log().isEmpty());
}

TEST_F(CurlFtp, ARefusedLoginIsALogOnFailure) {
    server.on(u"PASS"_s, reply(u"530 no\r\n"_s));
    EXPECT_FALSE(connect());
    EXPECT_EQ(internet.lastError(), 12015);
    EXPECT_EQ(errorText(), u"FTPサーバーへのログオンに失敗しました。"_s);
}

TEST_F(CurlFtp, LineEndsInNameAndPasswordNeverReachTheServer) {
    login.user = u"u\r\nDELE x"_s;
    EXPECT_FALSE(connect());
    EXPECT_EQ(internet.lastError(), 12013);
    login.user = u"u"_s;
    login.password = u"p\nDELE x"_s;
    EXPECT_FALSE(connect());
    EXPECT_EQ(internet.lastError(), 12014);
    EXPECT_TRUE(server.log().isEmpty());
}

TEST_F(CurlFtp, ARefusalIsToldInTheServersWords) {
    server.on(u"DELE"_s, reply(u"550-first\r\n550 だめ\r\n"_s));
    server.on(u"MKD"_s, reply(u"521 no\r\n"_s));
    server.on(u"CWD"_s, reply(u"550 nowhere\r\n"_s));
    ASSERT_TRUE(connect());
    EXPECT_FALSE(internet.deleteFile(u"a"_s));
    EXPECT_EQ(internet.lastError(), kExtendedError);
    EXPECT_EQ(errorText(), u"550-first\r\n550 だめ"_s);
    EXPECT_FALSE(internet.createDirectory(u"a"_s));
    EXPECT_EQ(errorText(), u"521 no"_s);
    EXPECT_FALSE(internet.changeDirectory(u"a"_s));
    EXPECT_EQ(errorText(), u"550 nowhere"_s);
    for (const QString& refusal : {u"553 no room"_s, u"425 no data"_s, u"451 local"_s}) {
        server.on(u"STOR"_s, reply(refusal + u"\r\n"_s));
        EXPECT_FALSE(put("x", TransferType::Text));
        EXPECT_EQ(errorText(), refusal);
    }
    EXPECT_EQ(server.countOf("connected"), 1);
}

TEST_F(CurlFtp, ALongAnswerIsShownAsBlanks) {
    ASSERT_TRUE(connect());
    server.on(u"DELE"_s, reply(u"550 "_s + QString(250, u'x') + u"\r\n"_s));
    EXPECT_FALSE(internet.deleteFile(u"a"_s));
    EXPECT_EQ(errorText(), u"550 "_s + QString(250, u'x'));
    server.on(u"DELE"_s, reply(u"550 "_s + QString(251, u'x') + u"\r\n"_s));
    EXPECT_FALSE(internet.deleteFile(u"a"_s));
    EXPECT_EQ(errorText(), QString(255, u' '));
}

TEST_F(CurlFtp, OnlyTheRightAnswerMeansThatAFileIsNotThere) {
    server.put("a.htm", "x");
    for (const QString& refusal : {u"421 busy"_s, u"425 no"_s, u"530 log in"_s}) {
        ASSERT_TRUE(connect());
        server.on(u"SIZE"_s, reply(refusal + u"\r\n"_s));
        EXPECT_FALSE(internet.findFile(u"a.htm"_s));
        EXPECT_EQ(errorText(), refusal);
    }
}

TEST_F(CurlFtp, AServerWithoutSizesIsAskedForAList) {
    server.put("a.htm", "x");
    server.put("a[1].htm", "x");
    server.put("b[1].htm~", "x");
    server.on(u"SIZE"_s, reply(u"502 no\r\n"_s));
    ASSERT_TRUE(connect());
    EXPECT_TRUE(internet.findFile(u"a.htm"_s));
    EXPECT_TRUE(internet.findFile(u"a[1].htm"_s));
    EXPECT_FALSE(internet.findFile(u"b[1].htm"_s));
    EXPECT_EQ(internet.lastError(), kNoMoreFiles);
    EXPECT_FALSE(internet.findFile(u"b.htm"_s));
    EXPECT_EQ(internet.lastError(), kNoMoreFiles);
    server.on(u"LIST"_s, reply(u"450 none\r\n"_s));
    EXPECT_FALSE(internet.findFile(u"a.htm"_s));
    EXPECT_EQ(internet.lastError(), kNoMoreFiles);
    server.on(u"LIST"_s, reply(u"426 cut\r\n"_s));
    EXPECT_FALSE(internet.findFile(u"a.htm"_s));
    EXPECT_EQ(internet.lastError(), kExtendedError);
    EXPECT_TRUE(put("x", TransferType::Text)) << internet.lastError();
    EXPECT_EQ(server.countOf("connected"), 1);
}

TEST_F(CurlFtp, AnEmptyDirectoryIsFoundByBothWays) {
    server.makeFolder("empty");
    ASSERT_TRUE(connect());
    EXPECT_TRUE(internet.findDirectory(u"empty"_s));
    EXPECT_FALSE(internet.findDirectory(u"none"_s));
    EXPECT_EQ(internet.lastError(), kNoMoreFiles);
    EXPECT_EQ(server.countOf("CWD empty"), 1);
    EXPECT_EQ(server.countOf("CWD /"), 1);

    server.on(u"features"_s, QJsonArray{u"UTF8"_s, u"MLST type*;size*;"_s});
    ASSERT_TRUE(connect());
    EXPECT_TRUE(internet.findDirectory(u"empty"_s));
    EXPECT_FALSE(internet.findDirectory(u"none"_s));
    EXPECT_EQ(internet.lastError(), kNoMoreFiles);
    EXPECT_EQ(server.countOf("CWD empty"), 1);
    EXPECT_EQ(server.countOf("MLST empty"), 1);
}

TEST_F(CurlFtp, HoweverTheListOfFeaturesIsRefusedADirectoryIsFound) {
    server.makeFolder("sub");
    for (const QString& refusal : {u"500 what"_s, u"530 not for you"_s, u"550 none"_s, u"451 not now"_s}) {
        server.on(u"FEAT"_s, reply(refusal + u"\r\n"_s));
        ASSERT_TRUE(connect());
        EXPECT_TRUE(internet.findDirectory(u"sub"_s)) << refusal.toStdString();
    }
    server.on(u"FEAT"_s, reply(u"421 closing\r\n"_s));
    ASSERT_TRUE(connect());
    EXPECT_FALSE(internet.findDirectory(u"sub"_s));
    EXPECT_EQ(errorText(), u"421 closing"_s);
}

TEST_F(CurlFtp, ADirectoryOfAnotherNameIsEnteredAndLeftThoughItHasQuotes) {
    server.makeFolder("a \"b\"");
    server.makeFolder("a \"b\"/c");
    ASSERT_TRUE(connect());
    ASSERT_TRUE(internet.changeDirectory(u"a \"b\""_s));
    EXPECT_TRUE(internet.findDirectory(u"c"_s));
    EXPECT_TRUE(put("x", TransferType::Text));
    EXPECT_TRUE(server.has("a \"b\"/x.htm"));
}

TEST_F(CurlFtp, ALostConnectionIsNeverMadeAgain) {
    ASSERT_TRUE(connect());
    server.on(u"STOR"_s, QJsonObject{{u"cut"_s, true}});
    EXPECT_FALSE(put("x", TransferType::Text));
    EXPECT_EQ(internet.lastError(), 12030);
    for (int i = 0; i < 2; ++i) {
        EXPECT_FALSE(internet.changeDirectory(u"pub"_s));
        EXPECT_EQ(internet.lastError(), 12030);
        EXPECT_FALSE(put("x", TransferType::Text));
        EXPECT_EQ(internet.lastError(), 12030);
        EXPECT_FALSE(internet.findFile(u"x"_s));
        EXPECT_EQ(internet.lastError(), 12030);
        EXPECT_FALSE(internet.findDirectory(u"x"_s));
        EXPECT_EQ(internet.lastError(), 12030);
    }
    EXPECT_EQ(server.countOf("connected"), 1);
    server.on(u"STOR"_s, {});
    EXPECT_TRUE(connect()) << "a new run may log in again";
}

TEST_F(CurlFtp, AConnectionLostBetweenTwoCommandsIsNotMadeAgain) {
    server.on(u"NOOP"_s, QJsonObject{{u"reply"_s, u"200 ok\r\n"_s}, {u"cut"_s, true}});
    ASSERT_TRUE(connect());
    EXPECT_FALSE(put("x", TransferType::Text));
    EXPECT_EQ(internet.lastError(), 12030);
    EXPECT_EQ(server.countOf("connected"), 1);
}

TEST_F(CurlFtp, AConnectionLostInAnyCommandHasEnded) {
    const QJsonObject cut{{u"cut"_s, true}};
    for (const QString& command : {u"CWD"_s, u"MKD"_s, u"DELE"_s, u"SIZE"_s, u"FEAT"_s, u"PASV"_s, u"TYPE"_s}) {
        server.on(command, {});
        ASSERT_TRUE(connect());
        server.on(command, cut);
        const bool isDone = command == u"CWD"_s    ? internet.changeDirectory(u"a"_s)
                            : command == u"MKD"_s  ? internet.createDirectory(u"a"_s)
                            : command == u"DELE"_s ? internet.deleteFile(u"a"_s)
                            : command == u"SIZE"_s ? internet.findFile(u"a"_s)
                            : command == u"FEAT"_s ? internet.findDirectory(u"a"_s)
                                                   : put("x", TransferType::Text);
        EXPECT_FALSE(isDone) << command.toStdString();
        EXPECT_EQ(internet.lastError(), 12030) << command.toStdString();
        server.on(command, {});
    }
}

TEST_F(CurlFtp, AFileThatIsNotConfirmedIsNotDone) {
    ASSERT_TRUE(connect());
    server.on(u"STOR"_s, QJsonObject{{u"reply_after"_s, u"451 disk\r\n"_s}});
    EXPECT_FALSE(put("x", TransferType::Binary));
    EXPECT_EQ(errorText(), u"451 disk"_s);
    server.on(u"STOR"_s, QJsonObject{{u"reply_after"_s, u"552 full\r\n"_s}});
    EXPECT_FALSE(put("x", TransferType::Text));
    EXPECT_EQ(errorText(), u"552 full"_s);
    server.on(u"STOR"_s, QJsonObject{{u"stop_at"_s, 1}, {u"cut"_s, true}});
    EXPECT_FALSE(put(QByteArray(5000000, 'x'), TransferType::Binary));
    EXPECT_NE(internet.lastError(), 0);
}

TEST_F(CurlFtp, ALocalFileThatIsMissingOrNoneTouchesNothing) {
    ASSERT_TRUE(connect());
    const auto before = server.log();
    EXPECT_FALSE(internet.putFile(folder.filePath(u"none"_s), u"x"_s, TransferType::Binary));
    EXPECT_EQ(internet.lastError(), 2);
    EXPECT_FALSE(internet.putFile(folder.path(), u"x"_s, TransferType::Binary));
    EXPECT_EQ(internet.lastError(), 5);
    EXPECT_EQ(server.log(), before);
}

TEST_F(CurlFtp, GreetingsOfAllKindsEndInBoundedTime) {
    const QString line = u"220-"_s + QString(70, u'x') + u"\r\n"_s;
    server.on(u"GREETING"_s, QJsonObject{{u"repeat"_s, 1500}, {u"line"_s, line}, {u"end"_s, u"220 at last\r\n"_s}});
    EXPECT_TRUE(connect()) << internet.lastError();
    server.on(u"GREETING"_s, QJsonObject{{u"repeat"_s, 15000}, {u"line"_s, line}, {u"end"_s, u"220 at last\r\n"_s}});
    EXPECT_FALSE(connect());
    EXPECT_EQ(internet.lastError(), 12031);
    server.on(u"GREETING"_s, reply(u"220 "_s + QString(1000000, u'x') + u"\r\n"_s));
    connect();
    server.on(u"GREETING"_s, reply(u"421 too many\r\n"_s));
    EXPECT_FALSE(connect());
    EXPECT_EQ(errorText(), u"421 too many"_s);
    server.on(u"GREETING"_s, QJsonObject{{u"cut"_s, true}});
    EXPECT_FALSE(connect());
    EXPECT_NE(internet.lastError(), 0);
    server.on(u"GREETING"_s, QJsonObject{{u"reply"_s, u"hello\r\n\r\nwhat\r\n"_s}, {u"cut"_s, true}});
    EXPECT_FALSE(connect());
    EXPECT_NE(internet.lastError(), 0);
}

TEST_F(CurlFtp, ASilentServerIsLeftAfterFifteenSecondsAndWindowsStayPainted) {
    server.on(u"GREETING"_s, QJsonObject{{u"stall"_s, true}});
    QElapsedTimer timer;
    timer.start();
    EXPECT_FALSE(connect());
    EXPECT_EQ(internet.lastError(), 12002);
    EXPECT_GE(timer.elapsed(), 14000);
    EXPECT_LE(timer.elapsed(), 28000) << "sooner than an answer is given up";
    EXPECT_GE(waits, 100);
}

TEST_F(CurlFtp, AServerThatStopsTakingBytesIsLeftAfterThirtySeconds) {
    ASSERT_TRUE(connect());
    server.on(u"STOR"_s, QJsonObject{{u"stop_at"_s, 1}, {u"stall"_s, true}});
    QElapsedTimer timer;
    timer.start();
    EXPECT_FALSE(put(QByteArray(20000000, 'x'), TransferType::Binary));
    EXPECT_EQ(internet.lastError(), 12002);
    EXPECT_GE(timer.elapsed(), 28000);
    EXPECT_LE(timer.elapsed(), 30'000 + kPatienceMs);
    EXPECT_GE(waits, 300);
    EXPECT_FALSE(internet.findFile(u"x"_s));
    EXPECT_EQ(internet.lastError(), 12030);
}

TEST_F(CurlFtp, AFileThatIsNeverConfirmedIsGivenUpAfterThirtySeconds) {
    ASSERT_TRUE(connect());
    server.on(u"STOR"_s, QJsonObject{{u"silent"_s, true}});
    QElapsedTimer timer;
    timer.start();
    EXPECT_FALSE(put("x", TransferType::Text));
    EXPECT_EQ(internet.lastError(), 12002);
    EXPECT_GE(timer.elapsed(), 28000);
    EXPECT_LE(timer.elapsed(), 30'000 + kPatienceMs);
    EXPECT_GE(waits, 20) << "windows were painted meanwhile";
}

TEST_F(CurlFtp, TheAnswersOfALongRunAddUpToNoLimit) {
    server.on(u"CWD"_s, reply(u"250 "_s + QString(240, u'x') + u"\r\n"_s));
    ASSERT_TRUE(connect());
    for (int i = 0; i < 2000; ++i)
        ASSERT_TRUE(internet.changeDirectory(u"pub"_s)) << i;
}

TEST_F(CurlFtp, ASilentFarewellEndsSoon) {
    server.on(u"QUIT"_s, QJsonObject{{u"stall"_s, true}});
    ASSERT_TRUE(connect());
    QElapsedTimer timer;
    timer.start();
    internet.closeSession();
    EXPECT_LE(timer.elapsed(), kSoonMs);
}

TEST_F(CurlFtp, WhatRunsIsGivenUpOnDemand) {
    ASSERT_TRUE(connect());
    server.on(u"DELE"_s, QJsonObject{{u"stall"_s, true}});
    mayGoOn = false;
    QElapsedTimer timer;
    timer.start();
    EXPECT_FALSE(internet.deleteFile(u"a"_s));
    EXPECT_EQ(internet.lastError(), 12017);
    EXPECT_LE(timer.elapsed(), kSoonMs);
    internet.closeSession();
    EXPECT_LE(timer.elapsed(), kSoonMs);
}

TEST_F(CurlFtp, WhatIsThrownWhileAServerIsWaitedForPassesNoLibrary) {
    // Waited for once in our own loop, and after that in the library's own one.
    int waitsLeft = 1000000;
    CurlInternet network([&] { return waitsLeft-- > 0 ? true : throw std::runtime_error("painting"); });
    ASSERT_TRUE(network.openSession());
    ASSERT_TRUE(network.connectFtp(login));
    for (const int more : {0, 2}) {
        server.on(u"STOR"_s, QJsonObject{{u"silent"_s, true}});
        waitsLeft = more;
        EXPECT_THROW(network.putFile(local("x"), u"x.htm"_s, TransferType::Binary), std::runtime_error);
        waitsLeft = 1000000;
        server.on(u"STOR"_s, {});
        ASSERT_TRUE(network.connectFtp(login)) << "a new run works";
        EXPECT_TRUE(network.putFile(local("x"), u"x.htm"_s, TransferType::Binary));
    }
}

TEST_F(CurlFtp, WhoRequiresEncryptionSendsNothingInClear) {
    login.tls = Tls::Required;
    EXPECT_FALSE(connect());
    EXPECT_EQ(internet.lastError(), 12171) << "the words of the refusal would not say what is missing";
    for (const QByteArray& line : server.log())
        EXPECT_FALSE(line.startsWith("USER") || line.startsWith("PASS")) << line.toStdString();
    login.tls = Tls::WhenOffered;
    EXPECT_TRUE(connect());
}

} // namespace
} // namespace velloria::tests
