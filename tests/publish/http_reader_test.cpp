#include "publish/curl_internet.h"
#include "support/http_server.h"
#include "support/print.h"

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;
using namespace velloria::publish;

namespace velloria::tests {
namespace {

class HttpRead : public ::testing::Test {
protected:
    void SetUp() override { ASSERT_TRUE(internet.openSession()); }
    QString address(const QString& path = u"/update.txt"_s) const {
        return u"http://127.0.0.1:%1%2"_s.arg(server.port()).arg(path);
    }
    /// The sizes of the blocks; the bytes are gathered in `got`.
    QList<qsizetype> readAll() {
        QList<qsizetype> sizes;
        for (QByteArray block = internet.readUrl(); !block.isEmpty(); block = internet.readUrl()) {
            sizes << block.size();
            got += block;
        }
        return sizes;
    }

    HttpServer server;
    QByteArray got;
    CurlInternet internet;
};

TEST_F(HttpRead, AFileComesInBlocksOf1024Bytes) {
    QByteArray bytes;
    for (int i = 0; i < 2500; ++i)
        bytes += char(i);
    server.answerWith({"HTTP/1.1 200 OK\r\nContent-Length: 2500\r\n\r\n" + bytes});
    ASSERT_TRUE(internet.openUrl(address())) << internet.lastError();
    EXPECT_EQ(readAll(), (QList<qsizetype>{1024, 1024, 452}));
    EXPECT_EQ(internet.lastError(), 0);
    EXPECT_TRUE(got == bytes);
    EXPECT_TRUE(internet.readUrl().isEmpty());
}

TEST_F(HttpRead, TheRequestNamesTheProgramAndPassesCaches) {
    server.answerWith({"HTTP/1.1 200 OK\r\nContent-Length: 1\r\n\r\nx"});
    ASSERT_TRUE(internet.openUrl(address()));
    const QByteArray request = server.request();
    EXPECT_TRUE(request.startsWith("GET /update.txt HTTP/1.1\r\n")) << request.toStdString();
    EXPECT_TRUE(request.contains("\r\nUser-Agent: Velloria\r\n"));
    EXPECT_TRUE(request.contains("\r\nCache-Control: no-cache\r\n"));
    EXPECT_TRUE(request.contains("\r\nPragma: no-cache\r\n"));
}

TEST_F(HttpRead, ARefusalHasNoBytes) {
    for (const QByteArray status : {"404 Not Found", "500 Broken", "400 Bad"}) {
        server.answerWith({"HTTP/1.1 " + status + "\r\nContent-Length: 5\r\n\r\nsorry"});
        ASSERT_TRUE(internet.openUrl(address()));
        EXPECT_TRUE(readAll().isEmpty()) << status.toStdString();
        internet.closeUrl();
    }
}

TEST_F(HttpRead, WhatArrivedBeforeACutIsGivenAndTheCutIsTold) {
    server.answerWith({"HTTP/1.1 200 OK\r\nContent-Length: 5000\r\n\r\n" + QByteArray(1500, 'x')});
    ASSERT_TRUE(internet.openUrl(address()));
    EXPECT_EQ(readAll(), (QList<qsizetype>{1024, 476}));
    EXPECT_EQ(internet.lastError(), 12030);
}

TEST_F(HttpRead, AServerThatIsNotThereIsNoHandle) {
    EXPECT_FALSE(internet.openUrl(u"http://127.0.0.99:9/update.txt"_s));
    EXPECT_EQ(internet.lastError(), 12029);
    EXPECT_TRUE(internet.readUrl().isEmpty());
    server.answerWith({""});
    EXPECT_FALSE(internet.openUrl(address()));
    EXPECT_EQ(internet.lastError(), 12030);
}

TEST_F(HttpRead, OnlyTheWebIsRead) {
    EXPECT_FALSE(internet.openUrl(u"file:///etc/passwd"_s));
    EXPECT_EQ(internet.lastError(), 12006);
    EXPECT_FALSE(internet.openUrl(u"127.0.0.1/update.txt"_s));
    EXPECT_FALSE(internet.openUrl(u""_s));
    EXPECT_EQ(internet.lastError(), 12005);
    EXPECT_FALSE(internet.openUrl(u"http:///x"_s));
    EXPECT_EQ(internet.lastError(), 12005);
    server.answerWith({"HTTP/1.1 302 Found\r\nLocation: file:///etc/passwd\r\nContent-Length: 0\r\n\r\n"});
    EXPECT_FALSE(internet.openUrl(address()));
}

TEST_F(HttpRead, ARedirectionIsFollowedAndARingIsLeft) {
    server.answerWith({"HTTP/1.1 302 Found\r\nLocation: /there\r\nContent-Length: 3\r\n\r\nold",
                       "HTTP/1.1 200 OK\r\nContent-Length: 3\r\n\r\nnew"});
    ASSERT_TRUE(internet.openUrl(address()));
    readAll();
    EXPECT_EQ(got, "new");
    server.answerWith({"HTTP/1.1 302 Found\r\nLocation: /there\r\nContent-Length: 0\r\n\r\n"});
    EXPECT_FALSE(internet.openUrl(address()));
}

TEST_F(HttpRead, ARedirectionWithoutATargetIsTheFileItself) {
    server.answerWith({"HTTP/1.1 300 Multiple Choices\r\nContent-Length: 5000\r\n\r\n" + QByteArray(1500, 'x')});
    ASSERT_TRUE(internet.openUrl(address())) << internet.lastError();
    EXPECT_EQ(readAll(), (QList<qsizetype>{1024, 476}));
    for (const QByteArray status : {"304 Not Modified", "302 Found"}) {
        server.answerWith({"HTTP/1.1 " + status + "\r\nContent-Length: 0\r\n\r\n"});
        ASSERT_TRUE(internet.openUrl(address())) << status.toStdString();
        EXPECT_TRUE(internet.readUrl().isEmpty());
    }
}

TEST_F(HttpRead, AHeadWithoutItsEndIsNoAnswer) {
    for (const QByteArray head : {"HTTP/1.1 200 OK\r\nContent-Le", "HTTP/1.1 200 OK\r\n", "HTTP/1.1 404 No\r\nA: b\r\n",
                                  "HTTP/1.1 302 Found\r\nLocation: /there\r\n", "nobody\r\n"}) {
        server.answerWith({head});
        EXPECT_FALSE(internet.openUrl(address())) << head.toStdString();
        EXPECT_NE(internet.lastError(), 0) << head.toStdString();
    }
}

TEST_F(HttpRead, AnAddressIsAskedForToTheLetter) {
    server.answerWith({"HTTP/1.1 200 OK\r\nContent-Length: 1\r\n\r\nx"});
    ASSERT_TRUE(internet.openUrl(address(u"/%41%7e/x?y=%2f&key=%5A+|"_s)));
    EXPECT_TRUE(server.request().startsWith("GET /%41%7e/x?y=%2f&key=%5A+| HTTP/1.1\r\n"))
        << server.request().toStdString();
    ASSERT_TRUE(internet.openUrl(address(u"/表 1"_s)));
    EXPECT_TRUE(server.request().startsWith("GET /%E8%A1%A8%201 HTTP/1.1\r\n")) << server.request().toStdString();
}

TEST_F(HttpRead, WithoutASessionNothingIsRead) {
    internet.closeSession();
    EXPECT_FALSE(internet.openUrl(address()));
    EXPECT_EQ(internet.lastError(), 12018);
    EXPECT_FALSE(internet.connectFtp({}));
    EXPECT_EQ(internet.lastError(), 12018);
}

} // namespace
} // namespace velloria::tests
