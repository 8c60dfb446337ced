// The commands of the main window that work through plug-ins.
#include "core/ini.h"
#include "support/desktop_home.h"
#include "support/http_server.h"
#include "support/plugin_home.h"

#include <QJsonObject>

using namespace Qt::StringLiterals;

namespace velloria::tests {
namespace {

class PluginCommands : public DesktopHome {
protected:
    void install(const QString& name) { StubPlugin::install(session.MyPath + name); }
    void press(const QString& name) { top().command(name)->trigger(); }

    StubPlugin stub{path(u"calls.txt"_s)};
};

TEST_F(PluginCommands, PingMakesItsCallsAndSaysNothing) {
    install(u"Chimer.dll"_s);
    core::WriteIni(session.RSSIniFile, u"Setting"_s, u"Title"_s, u"花"_s);
    core::WriteIni(session.RSSIniFile, u"Setting"_s, u"DiaryURL"_s, u"http://127.0.0.1/"_s);
    desk.events = {};
    press(u"MnuPING"_s);
    EXPECT_EQ(
        stub.calls(),
        (QStringList{u"set_pop_up 0"_s, u"set_ping_list_file "_s + session.UserPath + u"PINGList.csv"_s,
                     u"set_blog_url http://127.0.0.1/"_s, u"set_blog_name 花"_s, u"pings_execute"_s, u"release"_s}));
    EXPECT_EQ(desk.events, QJsonArray());
}

TEST_F(PluginCommands, PingTellsItsFailure) {
    press(u"MnuPING"_s);
    install(u"Chimer.dll"_s);
    stub.set("FAILS", u"set_blog_url"_s);
    press(u"MnuPING"_s);
    const QStringList failures = desk.texts(u"failure"_s);
    ASSERT_EQ(failures.size(), 2);
    EXPECT_TRUE(failures[0].contains(u"ファイルがありません。"_s)) << failures[0].toStdString();
    EXPECT_TRUE(failures[1].contains(u"the stub fails"_s)) << failures[1].toStdString();
}

TEST_F(PluginCommands, ThePingThatComesAlongTellsHowItWentOnTheStatusBar) {
    ASSERT_TRUE(QFile::copy(QStringLiteral(VELLORIA_PROGRAM_FOLDER "/Chimer.dll"), session.MyPath + u"Chimer.dll"_s));
    HttpServer server;
    server.answerWith({"HTTP/1.1 404 Not Found\r\nContent-Length: 0\r\n\r\n"});
    writeFile(session.UserPath + u"PINGList.csv"_s,
              QByteArray("http://127.0.0.1:%1/,x\r\n").replace("%1", QByteArray::number(server.port())));
    desk.events = {};
    press(u"MnuPING"_s);
    EXPECT_EQ(desk.texts(u"failure"_s), QStringList());
    EXPECT_EQ(lastStatus(), u"PING: 1件中0件に送信しました。理由はping.logにあります。"_s);
    EXPECT_TRUE(server.request().startsWith("POST / HTTP/1.1\r\n"));
    EXPECT_TRUE(exists(session.UserPath + u"ping.log"_s));
    press(u"MnuChimerDll"_s);
    EXPECT_EQ(boxes().last(), u"plain: Chimer.dll Version 1.0.0"_s);
}

TEST_F(PluginCommands, EveryVersionComesFromThePluginOfThatName) {
    for (const QString& name : {u"Chimer"_s, u"Larkport"_s, u"Wrenport"_s, u"VellInfo"_s}) {
        press(u"Mnu"_s + name + u"Dll"_s);
        install(name + u".dll"_s);
        press(u"Mnu"_s + name + u"Dll"_s);
        EXPECT_EQ(boxes().last(), u"plain: %1.dll Version 1.2.3"_s.arg(name));
        EXPECT_EQ(desk.events.last()[u"title"_s], name + u".dll"_s);
    }
    EXPECT_EQ(desk.texts(u"failure"_s).size(), 4);
}

TEST_F(PluginCommands, APluginThatThrowsEndsItsCommandAndNotTheProgram) {
    install(u"VellInfo.dll"_s);
    install(u"Chimer.dll"_s);
    const struct {
        QString command;
        QString call;
    } cases[] = {{u"MnuVellInfo"_s, u"set_paths 7"_s},
                 {u"MnuVellInfo"_s, u"run_with_host 7"_s},
                 {u"MnuVellInfo"_s, u"run_with_host"_s},
                 {u"MnuVellInfoDll"_s, u"get_version_major 7"_s},
                 {u"MnuPING"_s, u"pings_execute 7"_s}};
    for (const auto& [command, call] : cases) {
        desk.events = {};
        stub.set("THROWS", call);
        press(command);
        EXPECT_EQ(desk.texts(u"failure"_s).size(), 1) << call.toStdString();
        EXPECT_EQ(desk.texts(u"navigate"_s), QStringList()) << call.toStdString();
    }
}

} // namespace
} // namespace velloria::tests
