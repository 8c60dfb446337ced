#include "publish/proxy.h"

#include "support/print.h"

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;
using namespace velloria::publish;

namespace velloria::tests {
namespace {

class Proxy : public ::testing::Test {
protected:
    Proxy() { clear(); }
    ~Proxy() override { clear(); }
    static void clear() {
        for (const char* name :
             {"ftp_proxy", "FTP_PROXY", "http_proxy", "https_proxy", "HTTPS_PROXY", "all_proxy", "ALL_PROXY"})
            qunsetenv(name);
    }
    const QUrl ftp{u"ftp://server/"_s};
    const QUrl http{u"http://server/"_s};
};

TEST_F(Proxy, AnUploadPassesOnlySocks) {
    qputenv("ftp_proxy", "http://box:3128");
    EXPECT_EQ(proxyFor(ftp), "");
    qputenv("ftp_proxy", "socks5://box:1080");
    EXPECT_EQ(proxyFor(ftp), "socks5://box:1080");
}

TEST_F(Proxy, TheVariableForAllSchemesServesWhereThereIsNoOther) {
    qputenv("all_proxy", "socks4://box:1080");
    EXPECT_EQ(proxyFor(ftp), "socks4://box:1080");
    qputenv("ftp_proxy", "");
    EXPECT_EQ(proxyFor(ftp), "");
}

TEST_F(Proxy, TheEnvironmentDecidesForTheWebWhereItSaysSomething) {
    qputenv("http_proxy", "http://box:3128");
    EXPECT_EQ(proxyFor(http), std::nullopt);
    qputenv("http_proxy", "");
    EXPECT_EQ(proxyFor(http), std::nullopt);
}

} // namespace
} // namespace velloria::tests
