// The check for updates over a real network.
#include "core/program_keys.h"
#include "publish/curl_internet.h"
#include "publish/update_home.h"
#include "support/http_server.h"
#include "support/patience.h"
#include "support/silent_server.h"

#include <QElapsedTimer>

using namespace Qt::StringLiterals;

namespace velloria::tests {
namespace {

namespace keys = core::keys;
using namespace update_boxes;

class UpdateOverHttp : public UpdateHome {
protected:
    UpdateOverHttp() { setEndpoint(keys::kMakerUpdateFolder, address(u"up"_s)); }
    QString address(const QString& path) const { return u"http://127.0.0.1:%1/%2"_s.arg(server.port()).arg(path); }
    static QByteArray answer(const QByteArray& bytes, qsizetype length) {
        return "HTTP/1.1 200 OK\r\nContent-Length: " + QByteArray::number(length) + "\r\n\r\n" + bytes;
    }
    static QByteArray answer(const QByteArray& bytes) { return answer(bytes, bytes.size()); }
    QByteArray release() const {
        return answer("[Release]\r\nversion=2.2.1\r\nFileName=v.lzh\r\nURL_Full=" + address(u"v"_s).toLatin1());
    }
    void run() {
        forget();
        publish::UpdateCheck({session, clock, shown}, internet, calls).MnuUpdateCheck();
    }

    HttpServer server;
    publish::CurlInternet internet;
};

TEST_F(UpdateOverHttp, ThreeMegabytesArriveAsTheyAre) {
    QByteArray bytes;
    for (int i = 0; i < 3000000; ++i)
        bytes += char(i * 7 + i / 256);
    server.answerWith({release(), answer(bytes)});
    shown.answers = {u"yes"_s};
    run();
    EXPECT_TRUE(bytesOf(path(u"v.lzh"_s)) == bytes);
    EXPECT_TRUE(lines(u"window: "_s).last().contains(u"/ 3000000bytes received("_s));
    EXPECT_EQ(lines(u"pump"_s).size(), 1 + 2930) << "one after every 1024 bytes";
    EXPECT_FALSE(internet.openUrl(address(u"v"_s))) << "the session is closed";
}

TEST_F(UpdateOverHttp, WhatArrivedBeforeACutIsTheWholeFile) {
    server.answerWith({release(), answer(QByteArray(1500, 'x'), 5000)});
    shown.answers = {u"yes"_s};
    run();
    EXPECT_EQ(boxLines(), (QStringList{kOffered.arg(u"yes"_s, u"2.2.1"_s), kComplete, kNoUpdater}));
    EXPECT_EQ(bytesOf(path(u"v.lzh"_s)), QByteArray(1500, 'x'));
}

TEST_F(UpdateOverHttp, ARefusalIsAFileWithoutBytes) {
    for (const QByteArray status : {"404 Not Found", "500 Broken", "403 No"}) {
        server.answerWith({"HTTP/1.1 " + status + "\r\nContent-Length: 5\r\n\r\nsorry"});
        run();
        EXPECT_EQ(boxLines(), (QStringList{kNoBytes, kNoOffers})) << status.toStdString();
        EXPECT_FALSE(exists(offersFile()));
    }
}

TEST_F(UpdateOverHttp, RedirectionsAreFollowedWithinTheWeb) {
    const QByteArray to = "HTTP/1.1 302 Found\r\nContent-Length: 0\r\nLocation: ";
    server.answerWith({to + "/a\r\n\r\n", to + "/b\r\n\r\n", answer("[Release]\r\nversion=1\r\n")});
    run();
    EXPECT_EQ(boxLines(), QStringList{kNothingNewer});
    server.answerWith({to + "file:///etc/hostname\r\n\r\n"});
    run();
    EXPECT_EQ(boxLines(), (QStringList{kNoConnection, kNoOffers}));
}

TEST_F(UpdateOverHttp, HostsThatCanNotBeReachedAreTold) {
    // An alias for what is too long to be a name: a resolver that answers every question is not asked.
    writeFile(path(u"aliases"_s), "nohost " + QByteArray(64, 'x') + ".invalid\n");
    qputenv("HOSTALIASES", path(u"aliases"_s).toUtf8());
    for (const QString& folder :
         {u"http://nohost/"_s, u"http://127.0.0.99:9/"_s, u"file:///etc/"_s, u"maker"_s, u"https://127.0.0.99:9/"_s}) {
        setEndpoint(keys::kMakerUpdateFolder, folder);
        run();
        EXPECT_EQ(boxLines(), (QStringList{kNoConnection, kNoOffers})) << folder.toStdString();
        EXPECT_EQ(updaterStates(), u"off"_s);
    }
}

TEST_F(UpdateOverHttp, AServerThatNeverAnswersIsLeftInTime) {
    const SilentServer silent;
    setEndpoint(keys::kMakerUpdateFolder, silent.address());
    QElapsedTimer timer;
    timer.start();
    run();
    EXPECT_GE(timer.elapsed(), 25000);
    EXPECT_LE(timer.elapsed(), 30'000 + kPatienceMs);
    EXPECT_EQ(boxLines(), (QStringList{kNoConnection, kNoOffers}));
}

TEST_F(UpdateOverHttp, AServerThatFallsSilentWithinTheArchiveIsLeftInTime) {
    server.answerWith({release(), answer(QByteArray(1500, 'x'), 5000)});
    server.stayOpen();
    shown.answers = {u"yes"_s};
    QElapsedTimer timer;
    timer.start();
    run();
    EXPECT_GE(timer.elapsed(), 25000);
    EXPECT_LE(timer.elapsed(), 30'000 + kPatienceMs);
}

TEST_F(UpdateOverHttp, ALongFileOfOffersIsGivenUpEarly) {
    server.answerWith({answer(QByteArray(8 << 20, 'x'), qsizetype(1) << 30)});
    const QString failure = failureOf([&] { run(); });
    EXPECT_TRUE(failure.contains(u"大きすぎる"_s)) << failure.toStdString();
    EXPECT_FALSE(exists(offersFile()));
}

} // namespace
} // namespace velloria::tests
