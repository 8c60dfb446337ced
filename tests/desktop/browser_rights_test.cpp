#include "desktop/browser_home.h"
#include "desktop/small_web.h"

#include <QDir>
#include <QProcess>
#include <QSslCertificate>
#include <QSslConfiguration>
#include <QSslKey>
#include <QSslServer>
#include <QStandardPaths>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace velloria::tests {
namespace {

class BrowserRights : public BrowserHome {
protected:
    /// Whether a script leads nowhere: the page begins to load nothing until its web has answered what it asks next.
    bool staysHere(const QString& script) {
        const QSignalSpy begun(&viewOf(browser()), &QWebEngineView::loadStarted);
        run(browser(), script);
        run(browser(), u"var answered = false; fetch('/after').then(() => { answered = true; }); 0"_s);
        return waitFor([&] { return !begun.isEmpty() || run(browser(), u"answered"_s).toBool(); }) && begun.isEmpty() &&
               run(browser(), u"document.title"_s).toString() == u"web"_s;
    }
    QByteArray fileAddress(const QString& name) const { return QUrl::fromLocalFile(pagePath(name)).toEncoded(); }

    SmallWeb web;
};

// A red picture of one pixel.
const QByteArray kPicture = QByteArray::fromBase64("R0lGODdhAQABAIAAAP8AAAAAACwAAAAAAQABAAACAkQBADs=");

TEST_F(BrowserRights, LetALocalPageShowPicturesOfTheWeb) {
    web.headers = "Content-Type: image/gif\r\n";
    web.pages["/a.gif"] = kPicture;
    writePage(u"tmp.htm"_s, "<img id=\"picture\" src=\"" + web.address(u"/a.gif"_s).toLatin1() + "\">");
    open(pagePath(u"tmp.htm"_s));
    EXPECT_EQ(run(browser(), u"document.getElementById('picture').naturalWidth"_s).toInt(), 1);
}

TEST_F(BrowserRights, LetALocalPageShowItsFrames) {
    writePage(u"left.htm"_s, "left");
    writePage(u"right.htm"_s, "right");
    writePage(u"tmp.htm"_s, "<frameset cols=\"50%,50%\"><frame src=\"left.htm\"><frame src=\"right.htm\"></frameset>");
    open(pagePath(u"tmp.htm"_s));
    EXPECT_TRUE(becomesTrue(browser(), u"window.frames.length == 2"_s));
}

TEST_F(BrowserRights, KeepAPageOfTheWebFromTheDisk) {
    writeFile(pagePath(u"secret.gif"_s), kPicture);
    writePage(u"secret.htm"_s, "<title>secret</title>secret");
    web.pages["/"] = "<title>web</title><img id=\"picture\" src=\"" + fileAddress(u"secret.gif"_s) +
                     "\"><iframe id=\"frame\" src=\"" + fileAddress(u"secret.htm"_s) +
                     "\"></iframe><a id=\"link\" href=\"" + fileAddress(u"secret.htm"_s) +
                     "\">go</a><a id=\"blank\" target=\"_blank\" href=\"" + fileAddress(u"secret.htm"_s) +
                     "\">go</a><script>var fetched = 'none';"
                     "fetch('" +
                     fileAddress(u"secret.htm"_s) +
                     "').then(() => { fetched = 'yes'; }).catch(() => { fetched = 'no'; });</script>";
    open(web.address());
    EXPECT_TRUE(becomesTrue(browser(), u"fetched == 'no'"_s));
    EXPECT_EQ(run(browser(), u"document.getElementById('picture').naturalWidth"_s).toInt(), 0);
    for (const QString& way :
         {u"document.getElementById('link').click()"_s, u"document.getElementById('blank').click()"_s,
          u"location.href = document.getElementById('link').href"_s,
          u"window.open(document.getElementById('link').href)"_s})
        EXPECT_TRUE(staysHere(way)) << way.toStdString();
}

TEST_F(BrowserRights, BringNewWindowsIntoThisOne) {
    web.pages["/"] = "first <a id=\"blank\" target=\"_blank\" href=\"/second\">go</a>";
    web.pages["/second"] = "second";
    web.pages["/third"] = "third";
    open(web.address());
    browser().bDocumentComplete = false;
    run(browser(), u"document.getElementById('blank').click()"_s);
    waitForDocument();
    EXPECT_EQ(textOf(browser()), u"second"_s);
    browser().bDocumentComplete = false;
    run(browser(), u"window.open('/third'); 0"_s);
    waitForDocument();
    EXPECT_EQ(textOf(browser()), u"third"_s);
}

TEST_F(BrowserRights, TellAPageThatIsNotFound) {
    open(web.address(u"/gone"_s));
    EXPECT_EQ(browser().LocationName(), u"missing"_s);
    EXPECT_EQ(browser().windowTitle(), u"Browser / missing"_s);
}

TEST_F(BrowserRights, RefuseWhatAPageAsksLeaveFor) {
    web.pages["/"] =
        "<script>var answer = 'none'; Notification.requestPermission().then(a => { answer = a; });</script>";
    open(web.address());
    EXPECT_TRUE(becomesTrue(browser(), u"answer == 'denied'"_s));
}

TEST_F(BrowserRights, AskForThePlaceOfADownload) {
    web.headers = "Content-Type: application/octet-stream\r\nContent-Disposition: attachment; filename=a.bin\r\n";
    web.pages["/a.bin"] = "bytes";
    desk.answers = {path(u"saved.bin"_s)};
    browser().Navigate(web.address(u"/a.bin"_s));
    EXPECT_TRUE(waitFor([&] { return exists(path(u"saved.bin"_s)); }));
    EXPECT_TRUE(waitFor([&] { return panel().startsWith(u"ファイル "_s); }));
    EXPECT_EQ(bytesOf(path(u"saved.bin"_s)), "bytes");
    EXPECT_EQ(panel(), u"ファイル %1 を保存しました。"_s.arg(path(u"saved.bin"_s)));
    EXPECT_FALSE(browser().bDocumentComplete);
}

TEST_F(BrowserRights, DropADownloadWithoutAPlace) {
    web.headers = "Content-Type: application/octet-stream\r\n";
    web.pages["/a.bin"] = "bytes";
    desk.answers = {QJsonValue()};
    browser().Navigate(web.address(u"/a.bin"_s));
    const QDir downloads(QStandardPaths::writableLocation(QStandardPaths::DownloadLocation));
    const auto questions = [&] {
        const auto isQuestion = [](const QJsonValue& event) { return event[u"event"_s] == u"file"_s; };
        return std::count_if(desk.events.constBegin(), desk.events.constEnd(), isQuestion);
    };
    EXPECT_TRUE(waitFor([&] { return questions() == 1; })) << "the place is asked for";
    EXPECT_FALSE(browser().bDocumentComplete);
    // A second one, which is kept, is told after the first.
    desk.answers = {path(u"second.bin"_s)};
    browser().Navigate(web.address(u"/a.bin"_s));
    EXPECT_TRUE(waitFor([&] { return exists(path(u"second.bin"_s)); }));
    EXPECT_TRUE(waitFor([&] { return panel().startsWith(u"ファイル "_s); }));
    EXPECT_EQ(desk.texts(u"status"_s).filter(u"a.bin"_s), QStringList());
    EXPECT_FALSE(exists(downloads.filePath(u"a.bin"_s)));
}

TEST_F(BrowserRights, SayInJapaneseWhatTheEngineAsksBeforeAPageIsLeft) {
    web.pages["/"] = "<script>const isLeft = text => confirm(text);</script>";
    open(web.address());
    desk.answers = {u"yes"_s};
    EXPECT_TRUE(run(browser(), u"isLeft('Are you sure you want to leave this page? "
                               "Changes that you made may not be saved.')"_s)
                    .toBool());
    EXPECT_EQ(desk.texts(u"message"_s),
              QStringList{u"このページを離れますか？\r\n入力した内容は保存されないことがあります。"_s});
}

TEST_F(BrowserRights, BringBoxesOfScriptsToTheDesk) {
    web.pages["/"] = "page";
    open(web.address());
    desk.answers = {u"yes"_s};
    EXPECT_TRUE(run(browser(), u"alert('<b>text'); confirm('sure?')"_s).toBool());
    EXPECT_EQ(boxes(), (QStringList{u"plain: <b>text"_s, u"question: sure?"_s}));
}

TEST_F(BrowserRights, ShowNoPageOfAHostThatProvesNothing) {
    const QString key = path(u"key.pem"_s);
    const QString certificate = path(u"certificate.pem"_s);
    QProcess openssl;
    openssl.start(u"openssl"_s, {u"req"_s, u"-x509"_s, u"-newkey"_s, u"rsa:2048"_s, u"-nodes"_s, u"-keyout"_s, key,
                                 u"-out"_s, certificate, u"-subj"_s, u"/CN=somebody"_s});
    ASSERT_TRUE(openssl.waitForFinished());
    ASSERT_EQ(openssl.exitCode(), 0);
    QSslConfiguration configuration = QSslConfiguration::defaultConfiguration();
    configuration.setLocalCertificate(QSslCertificate(bytesOf(certificate)));
    configuration.setPrivateKey(QSslKey(bytesOf(key), QSsl::Rsa));
    QSslServer server;
    server.setSslConfiguration(configuration);
    ASSERT_TRUE(server.listen(QHostAddress::LocalHost));
    open(u"https://127.0.0.1:%1/"_s.arg(server.serverPort()));
    EXPECT_EQ(browser().LocationName(), u"証明書のエラー"_s);
    EXPECT_EQ(browser().LocationURL(), u"https://127.0.0.1:%1/"_s.arg(server.serverPort()));
    EXPECT_TRUE(textOf(browser()).contains(u"127.0.0.1 の証明書が信頼できない"_s));
}

TEST_F(BrowserRights, KeepCookiesInTheUsersFolder) {
    web.headers = "Content-Type: text/html\r\nSet-Cookie: a=b; Max-Age=100000\r\n";
    web.pages["/"] = "page";
    open(web.address());
    EXPECT_EQ(run(browser(), u"document.cookie"_s).toString(), u"a=b"_s);
    EXPECT_TRUE(exists(session.UserPath + u"Browser"_s));
}

} // namespace
} // namespace velloria::tests
