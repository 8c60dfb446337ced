// An account that is tried on a server.
#include "publish/connection_test.h"

#include "publish/ftp_client.h"
#include "support/certificates.h"
#include "support/patience.h"

using namespace Qt::StringLiterals;
using namespace velloria::publish;

namespace velloria::tests {
namespace {

/// The server is reached in passive mode through its proxy: no right to its port is needed.
class ConnectionTest : public FtpClient {
protected:
    ConnectionTest()
        : FtpClient(FaultServer::Way::ThroughProxy) {}

    ConnectionFinding found(const QString& startFolder = {}) {
        return tryConnection(login, startFolder, [this] { return mayGoOn; });
    }
    /// Whether any command came that changes something or sends a file.
    bool isUntouched() const {
        for (const QByteArray& line : server.log()) {
            for (const char* verb : {"STOR", "DELE", "MKD", "RMD", "RNFR", "APPE", "SITE"}) {
                if (line.startsWith(verb))
                    return false;
            }
        }
        return true;
    }
};

TEST_F(ConnectionTest, AGoodAccountIsFoundWithTheServersWords) {
    server.makeFolder("diary");
    server.on(u"CWD"_s, reply(u"250 Here you are\r\n"_s));
    const ConnectionFinding finding = found(u"diary"_s);
    EXPECT_TRUE(finding.isGood);
    EXPECT_EQ(finding.line, u"接続できました（暗号化なし）。フォルダ「diary」に入れました。250 Here you are"_s);
    EXPECT_EQ(server.countOf("CWD diary"), 1);
    EXPECT_EQ(server.countOf("QUIT"), 1);
    EXPECT_TRUE(isUntouched());
}

TEST_F(ConnectionTest, WithoutAFolderItStaysInThatOfTheLogin) {
    const ConnectionFinding finding = found();
    EXPECT_TRUE(finding.isGood);
    EXPECT_TRUE(finding.line.startsWith(u"接続できました（暗号化なし）。2"_s)) << finding.line.toStdString();
    for (const QByteArray& line : server.log())
        EXPECT_FALSE(line.startsWith("CWD")) << line.toStdString();
}

TEST_F(ConnectionTest, AMissingFolderIsToldAndNotMade) {
    const ConnectionFinding finding = found(u"nowhere"_s);
    EXPECT_FALSE(finding.isGood);
    EXPECT_TRUE(finding.line.startsWith(u"ログインできましたが、フォルダ「nowhere」に入れません。550"_s))
        << finding.line.toStdString();
    EXPECT_FALSE(server.has("nowhere"));
    EXPECT_TRUE(isUntouched());
}

TEST_F(ConnectionTest, ARefusedLoginIsToldInTheServersWordsInOneLine) {
    server.on(u"PASS"_s, reply(u"530-No.\r\n530 Ask the office\r\n"_s));
    const ConnectionFinding finding = found();
    EXPECT_FALSE(finding.isGood);
    EXPECT_TRUE(finding.line.startsWith(u"FTPサーバーへのログオンに失敗しました。 530"_s))
        << finding.line.toStdString();
    EXPECT_TRUE(finding.line.contains(u"Ask the office"_s));
    EXPECT_FALSE(finding.line.contains(u'\n'));
}

TEST_F(ConnectionTest, NoReplyShowsThePassword) {
    login.password = u"geheim-42"_s;
    for (const QString& verb : {u"PASS"_s, u"NOOP"_s, u"CWD"_s}) {
        for (const QString& code : {u"250"_s, u"530"_s, u"550"_s}) {
            server.on(verb, reply(code + u" You said geheim-42\r\n"_s));
            const QString line = found(u"diary"_s).line;
            EXPECT_FALSE(line.contains(u"geheim-42"_s)) << line.toStdString();
        }
        server.on(verb, {});
    }
}

TEST_F(ConnectionTest, AnAccountWithoutServerOrIdIsNotTried) {
    for (QString FtpLogin::*part : {&FtpLogin::host, &FtpLogin::user}) {
        const FtpLogin whole = login;
        (login.*part).clear();
        EXPECT_EQ(found().line, u"サーバーとIDを入力してください。"_s);
        login = whole;
    }
    EXPECT_EQ(server.countOf("connected"), 0);
}

TEST_F(ConnectionTest, AServerNameWithMoreThanANameIsRefused) {
    login.host = u"ftp://"_s + server.host();
    EXPECT_EQ(found().line, u"URLが無効です。"_s);
}

TEST_F(ConnectionTest, OtherServerNamesThatAreNoneAreRefused) {
    for (const QString& host : {u"::1"_s, u"[::1]"_s, u"host/"_s, u"host:21"_s, u"u@host"_s, u" host"_s, u"a b"_s}) {
        login.host = host;
        EXPECT_EQ(found().line, u"URLが無効です。"_s) << host.toStdString();
    }
    EXPECT_EQ(server.countOf("connected"), 0);
}

TEST_F(ConnectionTest, AServerThatHangsUpIsToldAsThat) {
    for (const QString& command : {u"GREETING"_s, u"USER"_s, u"PASS"_s}) {
        server.on(command, QJsonObject{{u"cut"_s, true}});
        const ConnectionFinding finding = found();
        EXPECT_FALSE(finding.isGood);
        EXPECT_TRUE(finding.line.startsWith(u"サーバー"_s)) << finding.line.toStdString();
        server.on(command, {});
    }
    server.on(u"CWD"_s, QJsonObject{{u"cut"_s, true}});
    EXPECT_EQ(found(u"diary"_s).line,
              u"ログインできましたが、フォルダ「diary」に入れません。サーバーとの接続が終了しました。"_s);
}

TEST_F(ConnectionTest, AReplyOfSeveralLinesIsOneLine) {
    server.on(u"CWD"_s, reply(u"250-Welcome\r\n read me\r\n250 Here\r\n"_s));
    EXPECT_EQ(found(u"diary"_s).line,
              u"接続できました（暗号化なし）。フォルダ「diary」に入れました。250-Welcome read me 250 Here"_s);
}

TEST_F(ConnectionTest, ACertificateThatIsNotTrustedOrOfAnotherServerIsToldAndGetsNoPassword) {
    const Authority authority;
    server.on(u"certificate"_s, authority.certificate(server.host()));
    for (const Tls tls : {Tls::WhenOffered, Tls::Required}) {
        login.tls = tls;
        const QString line = found().line;
        EXPECT_TRUE(line.contains(u"サーバーの証明書を発行したところを信頼できません。"_s)) << line.toStdString();
    }
    qputenv("SSL_CERT_FILE", authority.file().toUtf8());
    server.on(u"certificate"_s, authority.certificate(u"192.0.2.1"_s));
    const QString line = found().line;
    EXPECT_TRUE(line.contains(u"サーバーの証明書は「%1」のものではありません。"_s.arg(server.host())))
        << line.toStdString();
    qunsetenv("SSL_CERT_FILE");
    EXPECT_EQ(server.countOf("PASS p"), 0);
}

TEST_F(ConnectionTest, ASilentServerIsGivenUpAfterItsTime) {
    server.on(u"USER"_s, QJsonObject{{u"stall"_s, true}});
    QElapsedTimer timer;
    timer.start();
    const ConnectionFinding finding = tryConnection(login, {}, {}, 1000);
    EXPECT_FALSE(finding.isGood);
    EXPECT_EQ(finding.line, u"1秒待ちましたが、サーバーとのやりとりが終わりません。"_s);
    EXPECT_LT(timer.elapsed(), kPatienceMs);
}

TEST_F(ConnectionTest, CanBeStopped) {
    server.on(u"USER"_s, QJsonObject{{u"stall"_s, true}});
    int asked = 0;
    const ConnectionFinding finding = tryConnection(login, {}, [&asked] { return ++asked < 5; });
    EXPECT_FALSE(finding.isGood);
    EXPECT_EQ(finding.line, u"接続の確認をやめました。"_s);
}

TEST_F(ConnectionTest, SaysWhetherTheConnectionIsEncrypted) {
    const Authority authority;
    qputenv("SSL_CERT_FILE", authority.file().toUtf8());
    server.on(u"certificate"_s, authority.certificate(server.host()));
    login.tls = Tls::Required;
    EXPECT_TRUE(found().line.startsWith(u"接続できました（暗号化あり）。"_s)) << found().line.toStdString();
    qunsetenv("SSL_CERT_FILE");
}

TEST_F(ConnectionTest, AServerThatDoesNotEncryptGetsNoPasswordWhereItIsRequired) {
    login.tls = Tls::WhenOffered;
    EXPECT_TRUE(found().line.startsWith(u"接続できました（暗号化なし）。"_s)) << found().line.toStdString();
    login.tls = Tls::Required;
    const int before = server.countOf("PASS p");
    const ConnectionFinding finding = found();
    EXPECT_FALSE(finding.isGood);
    EXPECT_TRUE(finding.line.contains(u"サーバーは暗号化に応じません。"_s)) << finding.line.toStdString();
    EXPECT_EQ(server.countOf("PASS p"), before);
}

} // namespace
} // namespace velloria::tests
