#include "publish/ping.h"

#include "core/ini.h"
#include "support/plugin_home.h"
#include "support/test_home.h"

using namespace Qt::StringLiterals;

namespace velloria::tests {
namespace {

class Ping : public TestHome {
protected:
    Ping() { StubPlugin::install(session.MyPath + u"Chimer.dll"_s); }

    void setFeed(const QString& key, const QString& value) {
        core::WriteIni(session.RSSIniFile, u"Setting"_s, key, value);
    }
    void removeFeed(const QString& key) { core::DeleteIniKey(session.RSSIniFile, u"Setting"_s, key); }

    /// What the failure says, "" for a good run.
    QString pings() {
        return failureOf([&] { publish::Ping(run).MnuPING(); });
    }

    /// The calls of a whole run.
    QStringList callsWith(const QString& url, const QString& name) const {
        return {u"set_pop_up 0"_s,        u"set_ping_list_file "_s + session.UserPath + u"PINGList.csv"_s,
                u"set_blog_url "_s + url, u"set_blog_name "_s + name,
                u"pings_execute"_s,       u"release"_s};
    }

    StubPlugin stub{path(u"calls.txt"_s)};
};

TEST_F(Ping, MakesTheFiveCallsInOrder) {
    setFeed(u"Title"_s, u"表の日記"_s);
    setFeed(u"DiaryURL"_s, u"http://www.example.com/~taro/"_s);
    EXPECT_EQ(pings(), QString());
    EXPECT_EQ(stub.calls(), callsWith(u"http://www.example.com/~taro/"_s, u"表の日記"_s));
    EXPECT_TRUE(QDir::isAbsolutePath(stub.calls().value(1).section(u' ', 1)));
    EXPECT_EQ(boxes(), QStringList());
    EXPECT_EQ(desk.texts(u"status"_s), QStringList());
}

TEST_F(Ping, HasANameWithoutATitleAndGoesOutWithoutAnAddress) {
    removeFeed(u"Title"_s);
    removeFeed(u"DiaryURL"_s);
    EXPECT_EQ(pings(), QString());
    EXPECT_EQ(stub.calls(), callsWith({}, u"日記"_s));
}

TEST_F(Ping, TakesAnEmptyTitleAsItIs) {
    setFeed(u"Title"_s, {});
    setFeed(u"DiaryURL"_s, {});
    EXPECT_EQ(pings(), QString());
    EXPECT_EQ(stub.calls(), callsWith({}, {}));
}

TEST_F(Ping, ReadsTheSettingsOfTheActiveSetAfresh) {
    setFeed(u"Title"_s, u"one"_s);
    pings();
    session.RSSIniFile = path(u"other.ini"_s);
    setFeed(u"Title"_s, u"two"_s);
    pings();
    EXPECT_EQ(stub.calls().filter(u"set_blog_name"_s), (QStringList{u"set_blog_name one"_s, u"set_blog_name two"_s}));
}

TEST_F(Ping, StopsAtTheFirstCallThatFailsAndReleases) {
    setFeed(u"Title"_s, u"t"_s);
    setFeed(u"DiaryURL"_s, u"u"_s);
    const QStringList all = callsWith(u"u"_s, u"t"_s);
    for (qsizetype i = 0; i < 5; ++i) {
        QFile::remove(path(u"calls.txt"_s));
        stub.set("FAILS", all[i].section(u' ', 0, 0));
        EXPECT_TRUE(pings().contains(u"the stub fails"_s)) << i;
        EXPECT_EQ(stub.calls(), all.first(i + 1) + QStringList{u"release"_s}) << i;
    }
}

TEST_F(Ping, IsOverWhenThePluginThrows) {
    for (const QString& call : {u"create"_s, u"set_blog_url"_s, u"pings_execute"_s}) {
        stub.set("THROWS", call);
        const QString failure = pings();
        EXPECT_TRUE(failure.contains(u"Chimer.dll"_s) && failure.contains(u"the stub throws"_s)) << call.toStdString();
    }
    EXPECT_EQ(stub.calls().last(), u"release"_s);
}

TEST_F(Ping, TakesANoOfThePluginForDone) {
    stub.set("DENIES", u"pings_execute"_s);
    EXPECT_EQ(pings(), QString());
    EXPECT_EQ(stub.calls().last(), u"release"_s);
}

TEST_F(Ping, CallsNothingOfAPluginThatLacksACall) {
    stub.set("LACKS", u"pings_execute"_s);
    EXPECT_TRUE(pings().contains(u"Chimer.dll"_s));
    EXPECT_EQ(stub.calls(), QStringList());
}

TEST_F(Ping, FailsWithoutThePlugin) {
    QFile::remove(session.MyPath + u"Chimer.dll"_s);
    const QString failure = pings();
    EXPECT_TRUE(failure.contains(session.MyPath + u"Chimer.dll"_s)) << failure.toStdString();
}

TEST_F(Ping, FailsWithAnEmptyFileForThePlugin) {
    writeFile(session.MyPath + u"Chimer.dll"_s, {});
    EXPECT_TRUE(pings().contains(u"Chimer.dll"_s));
}

TEST_F(Ping, TakesThePluginFromTheProgramFolderAlone) {
    const QString folder = QDir::currentPath();
    QFile::rename(session.MyPath + u"Chimer.dll"_s, session.UserPath + u"Chimer.dll"_s);
    QDir::setCurrent(session.UserPath);
    const QString failure = pings();
    QDir::setCurrent(folder);
    EXPECT_FALSE(failure.isEmpty());
}

} // namespace
} // namespace velloria::tests
