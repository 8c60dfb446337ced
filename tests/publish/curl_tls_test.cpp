// Encrypted connections, and why one can't be had.
#include "publish/ftp_client.h"
#include "support/certificates.h"

using namespace Qt::StringLiterals;
using namespace velloria::publish;

namespace velloria::tests {
namespace {

/// The server has a certificate that is good unless a test says otherwise.
class EncryptedFtp : public FtpClient {
protected:
    explicit EncryptedFtp(FaultServer::Way way = FaultServer::Way::ThroughProxy)
        : FtpClient(way) {}

    void SetUp() override {
        FtpClient::SetUp();
        qputenv("SSL_CERT_FILE", authority.file().toUtf8());
        use(authority.certificate(server.host()));
        login.tls = Tls::Required;
    }
    void TearDown() override { qunsetenv("SSL_CERT_FILE"); }

    void use(const QString& certificate) { server.on(u"certificate"_s, certificate); }
    void expectNoLogin() {
        for (const QByteArray& line : server.log())
            EXPECT_FALSE(line.startsWith("USER") || line.startsWith("PASS")) << line.toStdString();
    }

    Authority authority;
};

class EncryptedFtpOnItsPort : public EncryptedFtp {
protected:
    EncryptedFtpOnItsPort()
        : EncryptedFtp(FaultServer::Way::Direct) {}
};

TEST_F(EncryptedFtp, FilesGoEncrypted) {
    for (const Tls tls : {Tls::WhenOffered, Tls::Required}) {
        login.tls = tls;
        ASSERT_TRUE(connect()) << reason().toStdString();
        EXPECT_EQ(internet.lastDetail(), QString());
        EXPECT_TRUE(put("x", TransferType::Text)) << reason().toStdString();
        EXPECT_TRUE(put("y", TransferType::Binary, u"y.gif"_s)) << reason().toStdString();
        EXPECT_EQ(server.content("y.gif"), "y");
    }
    EXPECT_EQ(server.countOf("PROT P"), 2);
    EXPECT_FALSE(trace.contains(u"> PASS p"_s));
}

TEST_F(EncryptedFtpOnItsPort, ActiveModeBecomesPassiveSoThatNoFileGoesInClear) {
    login.isPassive = false;
    ASSERT_TRUE(connect());
    EXPECT_TRUE(put("x", TransferType::Text)) << reason().toStdString();
    EXPECT_EQ(server.content("x.htm"), "x");
    EXPECT_EQ(server.countOf("PASV"), 1);
    for (const QByteArray& line : server.log())
        EXPECT_FALSE(line.startsWith("PORT") || line.startsWith("EPRT")) << line.toStdString();
    login.tls = Tls::Off;
    ASSERT_TRUE(connect());
    EXPECT_TRUE(put("x", TransferType::Text));
    EXPECT_EQ(server.countOf("PASV"), 1) << "in clear the user's mode counts";
}

TEST_F(EncryptedFtp, WhoRequiresItSendsNoLoginInClear) {
    server.on(u"certificate"_s, {});
    EXPECT_FALSE(connect());
    EXPECT_EQ(internet.lastError(), 12171);
    EXPECT_EQ(reason(), u"セキュリティチェックの為、失敗しました。 サーバーは暗号化に応じません。 502 not here"_s);
    expectNoLogin();
    login.tls = Tls::WhenOffered;
    EXPECT_TRUE(connect());
    EXPECT_EQ(internet.lastDetail(), QString());
}

TEST_F(EncryptedFtp, CertificatesThatAreNotTakenAreToldApart) {
    const Authority foreign;
    const std::tuple<QString, int, QString> cases[] = {
        {authority.certificate(server.host(), -1), 12037, u"サーバーの証明書の有効期限が切れています。 ("_s},
        {authority.certificate(u"127.0.0.99"_s), 12038,
         u"サーバーの証明書は「"_s + server.host() + u"」のものではありません。 ("_s},
        {foreign.certificate(server.host()), 12045,
         u"The function is unfamiliar with the Certificate Authority that generated the server's certificate. "
         u"サーバーの証明書を発行したところを信頼できません。 ("_s}};
    for (const Tls tls : {Tls::WhenOffered, Tls::Required}) {
        login.tls = tls;
        for (const auto& [certificate, number, text] : cases) {
            use(certificate);
            EXPECT_FALSE(connect());
            EXPECT_EQ(internet.lastError(), number);
            EXPECT_TRUE(reason().startsWith(text)) << reason().toStdString();
        }
    }
    expectNoLogin();
    use(authority.certificate(server.host()));
    EXPECT_TRUE(connect());
}

TEST_F(EncryptedFtp, AnAuthorityThatCanNotBeReadIsTold) {
    qputenv("SSL_CERT_FILE", "/none");
    EXPECT_FALSE(connect());
    EXPECT_TRUE(reason().contains(u"信頼する証明書のファイルを読み込めません。"_s)) << reason().toStdString();
    expectNoLogin();
}

TEST_F(EncryptedFtp, AServerThatEncryptsTheLoginAlone) {
    server.on(u"PROT"_s, reply(u"536 not here\r\n"_s));
    EXPECT_FALSE(connect());
    EXPECT_EQ(internet.lastError(), 12171);
    EXPECT_EQ(
        reason(),
        u"セキュリティチェックの為、失敗しました。 サーバーはログインを暗号化しましたが、ファイルを暗号化しません。"
        u" 536 not here"_s);
    login.tls = Tls::WhenOffered;
    EXPECT_TRUE(connect());
    EXPECT_EQ(internet.lastDetail(), u"サーバーはログインを暗号化しましたが、ファイルを暗号化しません。"_s);
    EXPECT_TRUE(put("x", TransferType::Text)) << reason().toStdString();
}

/// Such a server is left after some time: each a test, so that both wait side by side.
class ForgetfulFtp : public EncryptedFtp {
protected:
    void expectNothingSent(Tls tls) {
        server.on(u"clear"_s, true);
        login.tls = tls;
        ASSERT_TRUE(connect());
        EXPECT_FALSE(put("secret", TransferType::Text));
        EXPECT_EQ(internet.lastError(), 12171);
        EXPECT_EQ(reason(), u"セキュリティチェックの為、失敗しました。 "
                            u"サーバーはログインを暗号化しましたが、ファイルを暗号化する約束を守りません。"_s);
        EXPECT_FALSE(server.content("x.htm").contains("secret"));
    }
};

TEST_F(ForgetfulFtp, GetsNoFileWhereEncryptionIsOffered) {
    expectNothingSent(Tls::WhenOffered);
}

TEST_F(ForgetfulFtp, GetsNoFileWhereEncryptionIsRequired) {
    expectNothingSent(Tls::Required);
}

} // namespace
} // namespace velloria::tests
