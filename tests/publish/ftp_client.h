// A session with the server that misbehaves on demand.
#pragma once

#include "publish/curl_internet.h"
#include "publish/internet_error.h"
#include "support/fault_server.h"
#include "support/print.h"

#include <gtest/gtest.h>

#include <QFile>
#include <QJsonArray>
#include <QTemporaryDir>

#include <unistd.h>

namespace velloria::tests {

/// Fixture.
class FtpClient : public ::testing::Test {
protected:
    explicit FtpClient(FaultServer::Way way)
        : server(way)
        , m_way(way) {}

    void SetUp() override {
        if (!server.isRunning() && m_way == FaultServer::Way::Direct && geteuid() != 0)
            GTEST_SKIP() << "port 21 can't be opened: only the superuser may";
        ASSERT_TRUE(server.isRunning());
        login.host = server.host();
        login.user = QStringLiteral("u");
        login.password = QStringLiteral("p");
        login.isPassive = true;
        internet.traceTo([this](const QString& line) { trace += line; });
        ASSERT_TRUE(internet.openSession());
    }
    bool connect() { return internet.connectFtp(login); }
    QString local(const QByteArray& bytes) {
        const QString file = folder.filePath(QStringLiteral("local"));
        QFile out(file);
        EXPECT_TRUE(out.open(QIODevice::WriteOnly));
        EXPECT_EQ(out.write(bytes), bytes.size());
        return file;
    }
    bool put(const QByteArray& bytes, publish::TransferType type, const QString& name = QStringLiteral("x.htm")) {
        return internet.putFile(local(bytes), name, type);
    }
    QString errorText() { return publish::InternetErrorText(internet); }
    QString reason() { return publish::failureReason(internet); }
    static QJsonObject reply(const QString& text) { return {{QStringLiteral("reply"), text}}; }

    FaultServer server;
    QTemporaryDir folder;
    publish::FtpLogin login;
    QStringList trace;
    int waits = 0;
    bool mayGoOn = true;
    publish::CurlInternet internet{[this] {
        ++waits;
        return mayGoOn;
    }};

private:
    FaultServer::Way m_way;
};

} // namespace velloria::tests
