#include "platform/plugin.h"

#include "support/plugin_home.h"
#include "support/test_home.h"

#include <QCoreApplication>
#include <QFile>
#include <QTimer>

using namespace Qt::StringLiterals;

namespace velloria::tests {
namespace {

class Plugin : public FactoryHome {
protected:
    QString installed(const QString& name = u"VellInfo.dll"_s) {
        StubPlugin::install(path(name));
        return path(name);
    }

    StubPlugin stub{path(u"calls.txt"_s)};
    platform::PluginHost host{desk};
};

constexpr auto kNothing = [](const auto&...) {};

TEST_F(Plugin, TellsItsVersion) {
    EXPECT_EQ(platform::Plugin(installed()).version(), u"1.2.3"_s);
}

TEST_F(Plugin, IsFoundWithoutRegardToCase) {
    installed(u"CHIMER.DLL"_s);
    EXPECT_EQ(platform::Plugin(path(u"Chimer.dll"_s)).version(), u"1.2.3"_s);
}

TEST_F(Plugin, WritesAPageAboutTheDiaryUnlessItRefuses) {
    const platform::Plugin plugin(installed());
    plugin.use(&velloria_plugin::diary_information, [&](const velloria_diary_information& information) {
        const QByteArray page = path(u"result.htm"_s).toUtf8();
        EXPECT_FALSE(plugin.check(information.set_paths("/refused/diary.mdb", page.constData())));
        EXPECT_TRUE(plugin.check(information.set_paths("/diary.mdb", page.constData())));
        EXPECT_TRUE(plugin.check(information.run()));
    });
    EXPECT_EQ(bytesOf(path(u"result.htm"_s)), "<HTML>");
}

TEST_F(Plugin, ThatIsNoneIsRefusedByItsName) {
    writeFile(path(u"Chimer.dll"_s), "not a library");
    writeFile(path(u"Wrenport.dll"_s), {});
    QDir().mkdir(path(u"VellInfo.dll"_s));
    // The name that the loader would make of a missing one.
    StubPlugin::install(path(u"libLarkport.dll.so"_s));
    for (const QString& name : {u"Chimer.dll"_s, u"Wrenport.dll"_s, u"VellInfo.dll"_s, u"Larkport.dll"_s})
        EXPECT_TRUE(failureOf([&] { platform::Plugin plugin(path(name)); }).contains(name)) << name.toStdString();
}

TEST_F(Plugin, ThatWasCopiedInPartEndsNoProgram) {
    const QByteArray whole = bytesOf(installed());
    constexpr int kParts = 64;
    int refused = 0;
    // What comes last in the file is for debuggers, so from some length on it is as good as whole.
    for (int part = 0; part < kParts; ++part) {
        const QString file = path(u"part%1.dll"_s.arg(part));
        writeFile(file, whole.first(whole.size() / kParts * part + 100));
        const QString failure = failureOf([&] { EXPECT_EQ(platform::Plugin(file).version(), u"1.2.3"_s); });
        if (!failure.isEmpty()) {
            EXPECT_EQ(refused++, part) << failure.toStdString();
        }
    }
    EXPECT_GT(refused, 3);
}

TEST_F(Plugin, ThatEndsWhatLoadsItEndsNoProgram) {
    installed();
    for (const QString& place : {u"loading"_s, u"velloria_plugin_get"_s}) {
        for (const auto& [how, reason] : {std::pair{u"crash"_s, u"異常終了します（シグナル6）"_s},
                                          {u"exit"_s, u"終了させます（終了コード0）"_s},
                                          {u"hang"_s, u"読み込みが0.3秒たっても終わりません"_s}}) {
            stub.set("ENDS", place + u' ' + how);
            const QString failure =
                failureOf([&] { platform::Plugin plugin(path(u"VellInfo.dll"_s), std::chrono::milliseconds(300)); });
            EXPECT_TRUE(failure.startsWith(u"プラグインを使用できません。"_s)) << failure.toStdString();
            EXPECT_TRUE(failure.contains(u"VellInfo.dll"_s)) << failure.toStdString();
            EXPECT_TRUE(failure.contains(reason)) << failure.toStdString();
        }
    }
    stub.set("ENDS", {});
    EXPECT_EQ(platform::Plugin(path(u"VellInfo.dll"_s)).version(), u"1.2.3"_s);
}

TEST_F(Plugin, ThatHangsLetsTheWindowsPaintUntilItIsGivenUp) {
    int count = 0;
    const QCoreApplication application(count, nullptr);
    bool hasPainted = false;
    QTimer::singleShot(0, [&] { hasPainted = true; });
    stub.set("ENDS", u"loading hang"_s);
    EXPECT_NE(failureOf([&] { platform::Plugin plugin(installed(), std::chrono::milliseconds(300)); }), QString());
    EXPECT_TRUE(hasPainted);
}

TEST_F(Plugin, IsTriedOncePerRunAndAgainWhenItsFileIsAnother) {
    const QString loads = path(u"loads.txt"_s);
    stub.set("LOADS", loads);
    installed();
    for (int time = 0; time < 3; ++time)
        EXPECT_EQ(platform::Plugin(path(u"VellInfo.dll"_s)).version(), u"1.2.3"_s);
    EXPECT_EQ(bytesOf(loads), "loaded\nloaded\n"); // by the trial and by us
    const QByteArray library = bytesOf(path(u"VellInfo.dll"_s));
    QFile::remove(path(u"VellInfo.dll"_s));
    writeFile(path(u"VellInfo.dll"_s), library + "\n");
    EXPECT_EQ(platform::Plugin(path(u"VellInfo.dll"_s)).version(), u"1.2.3"_s);
    EXPECT_TRUE(bytesOf(loads).startsWith("loaded\nloaded\nloaded\n"));
}

TEST_F(Plugin, OfAnotherInterfaceIsRefused) {
    stub.set("LACKS", u"interface"_s);
    EXPECT_TRUE(failureOf([&] { platform::Plugin plugin(installed()); }).contains(u"バージョンが合いません。"_s));
}

TEST_F(Plugin, OfAnEarlierTimeHasWhatItKnowsAndNothingBehindItsEnd) {
    stub.set("LACKS", u"newer_parts"_s);
    const platform::Plugin plugin(installed());
    EXPECT_EQ(plugin.version(), u"1.2.3"_s);
    EXPECT_EQ(failureOf([&] { plugin.use(&velloria_plugin::diary_information, kNothing); }), QString());
    EXPECT_TRUE(
        failureOf([&] { plugin.use(&velloria_plugin::ping, host, kNothing); }).contains(u"必要な機能がありません。"_s));
    EXPECT_TRUE(failureOf([&] {
                    plugin.use(&velloria_plugin::movable_type_exchange, host, kNothing);
                }).contains(u"VellInfo.dll"_s));
    EXPECT_TRUE(failureOf([&] { plugin.check(-1); }).contains(u"理由を知らせていません"_s));
}

TEST_F(Plugin, MissingAPartOrAMemberIsAFailure) {
    for (const QString& lacking : {u"ping"_s, u"pings_execute"_s}) {
        stub.set("LACKS", lacking);
        const platform::Plugin plugin(installed());
        EXPECT_TRUE(failureOf([&] {
                        plugin.use(&velloria_plugin::ping, host, kNothing);
                    }).contains(u"必要な機能がありません。"_s))
            << lacking.toStdString();
        EXPECT_EQ(failureOf([&] { plugin.use(&velloria_plugin::hatena_exchange, host, kNothing); }), QString());
    }
}

TEST_F(Plugin, TellsAFailureInItsOwnWords) {
    stub.set("FAILS", u"connect"_s);
    const platform::Plugin plugin(installed(u"Larkport.dll"_s));
    const QString failure = failureOf([&] {
        plugin.use(&velloria_plugin::movable_type_exchange, host,
                   [&](const velloria_movable_type_exchange& exchange, void* object) {
                       plugin.check(exchange.connect(object, "diary.mdb"));
                   });
    });
    EXPECT_TRUE(failure.contains(u"the stub fails"_s)) << failure.toStdString();
    EXPECT_TRUE(failure.contains(u"Larkport.dll"_s));
}

TEST_F(Plugin, MayThrowWhateverItLikesAndEndsNoProgram) {
    const auto pings = [&] {
        const platform::Plugin plugin(path(u"VellInfo.dll"_s));
        plugin.version();
        plugin.use(&velloria_plugin::diary_information, [&](const velloria_diary_information& information) {
            plugin.check(information.set_paths("/diary.mdb", "/page.htm"));
        });
        plugin.use(&velloria_plugin::ping, host,
                   [&](const velloria_ping& ping, void* object) { plugin.check(ping.pings_execute(object)); });
    };
    installed();
    for (const QString& call : {u"velloria_plugin_get"_s, u"get_version_major"_s, u"set_paths"_s, u"create"_s,
                                u"pings_execute"_s, u"release"_s}) {
        for (const QString& thrown : {call, call + u" 7"_s}) {
            stub.set("THROWS", thrown);
            const QString failure = failureOf(pings);
            EXPECT_TRUE(failure.contains(u"VellInfo.dll"_s)) << thrown.toStdString() << failure.toStdString();
            EXPECT_EQ(failure.contains(u"the stub throws"_s), thrown == call) << thrown.toStdString();
        }
    }
    EXPECT_EQ(failureOf([&] {
                  stub.set("THROWS", {});
                  pings();
              }),
              QString());
}

TEST_F(Plugin, ThatThrowsAtTheEndHidesNoEarlierFailure) {
    stub.set("FAILS", u"pings_execute"_s);
    stub.set("THROWS", u"release 7"_s);
    const platform::Plugin plugin(installed());
    const QString failure = failureOf([&] {
        plugin.use(&velloria_plugin::ping, host,
                   [&](const velloria_ping& ping, void* object) { plugin.check(ping.pings_execute(object)); });
    });
    EXPECT_TRUE(failure.contains(u"the stub fails"_s)) << failure.toStdString();
}

TEST_F(Plugin, ThatThrowsInsteadOfItsReasonHasStillFailed) {
    stub.set("FAILS", u"pings_execute"_s);
    stub.set("THROWS", u"last_error 7"_s);
    const platform::Plugin plugin(installed());
    const QString failure = failureOf([&] {
        plugin.use(&velloria_plugin::ping, host,
                   [&](const velloria_ping& ping, void* object) { plugin.check(ping.pings_execute(object)); });
    });
    EXPECT_TRUE(failure.contains(u"VellInfo.dll"_s)) << failure.toStdString();
}

TEST_F(Plugin, MayFailWithoutWords) {
    stub.set("LACKS", u"words"_s);
    const platform::Plugin plugin(installed());
    EXPECT_TRUE(failureOf([&] { plugin.check(-1); }).contains(u"理由を知らせていません"_s));
}

TEST_F(Plugin, ThatMakesNoObjectIsAFailure) {
    stub.set("FAILS", u"create"_s);
    const platform::Plugin plugin(installed());
    EXPECT_TRUE(failureOf([&] { plugin.use(&velloria_plugin::ping, host, kNothing); }).contains(u"the stub fails"_s));
    EXPECT_EQ(stub.calls(), QStringList());
}

TEST_F(Plugin, ExchangesMovableTypeByTheCallsOfItsTable) {
    const platform::Plugin plugin(installed(u"Larkport.dll"_s));
    const auto calls = [&](const velloria_movable_type_exchange& exchange, void* object) {
        int32_t isAccepted = -1;
        EXPECT_TRUE(plugin.check(exchange.connect(object, "日記.mdb")));
        plugin.check(exchange.prepare_import(object));
        plugin.check(exchange.prepare_export(object));
        plugin.check(exchange.open_file(object, "a.txt", &isAccepted, 1));
        EXPECT_EQ(isAccepted, 1);
        plugin.check(exchange.set_user_id(object, "taro"));
        plugin.check(exchange.write_entries(object));
        EXPECT_TRUE(plugin.check(exchange.finish(object)));
        stub.set("DENIES", u"read_entries"_s);
        EXPECT_FALSE(plugin.check(exchange.read_entries(object)));
    };
    plugin.use(&velloria_plugin::movable_type_exchange, host, calls);
    EXPECT_EQ(stub.calls(),
              (QStringList{u"connect 日記.mdb"_s, u"prepare_import"_s, u"prepare_export"_s, u"open_file a.txt 1"_s,
                           u"set_user_id taro"_s, u"write_entries"_s, u"finish"_s, u"read_entries"_s, u"release"_s}));
}

TEST_F(Plugin, ExchangesHatenaByTheCallsOfItsTable) {
    const platform::Plugin plugin(installed(u"Wrenport.dll"_s));
    const auto calls = [&](const velloria_hatena_exchange& exchange, void* object) {
        int32_t isAccepted = -1;
        plugin.check(exchange.connect(object, "diary.mdb"));
        plugin.check(exchange.prepare_import(object));
        plugin.check(exchange.prepare_export(object));
        stub.set("DENIES", u"open_file"_s);
        plugin.check(exchange.open_file(object, "a.xml", &isAccepted, 0));
        EXPECT_EQ(isAccepted, 0);
        plugin.check(exchange.write_entries(object));
        plugin.check(exchange.finish(object));
    };
    plugin.use(&velloria_plugin::hatena_exchange, host, calls);
    EXPECT_EQ(stub.calls(), (QStringList{u"connect diary.mdb"_s, u"prepare_import"_s, u"prepare_export"_s,
                                         u"open_file a.xml 0"_s, u"write_entries"_s, u"finish"_s, u"release"_s}));
}

TEST_F(Plugin, TalksToTheUserThroughTheProgram) {
    stub.set("TALKS", u"1"_s);
    desk.answers = {u"yes"_s};
    const platform::Plugin plugin(installed());
    plugin.use(&velloria_plugin::ping, host,
               [&](const velloria_ping& ping, void* object) { plugin.check(ping.pings_execute(object)); });
    EXPECT_EQ(desk.texts(u"status"_s), QStringList{u"PINGの送信中..."_s});
    EXPECT_EQ(boxes(), (QStringList{u"exclamation: 一\r\n二\r\n三"_s, u"question: 続けますか？"_s}));
    EXPECT_EQ(desk.events.last()[u"title"_s], u"PING"_s);
    EXPECT_EQ(stub.calls(), (QStringList{u"ok 1"_s, u"yes 1"_s, u"pings_execute"_s, u"release"_s}));
}

TEST_F(Plugin, GetsNoExceptionOfTheProgram) {
    stub.set("TALKS", u"1"_s); // and nobody answers the question
    const platform::Plugin plugin(installed());
    plugin.use(&velloria_plugin::ping, host,
               [&](const velloria_ping& ping, void* object) { plugin.check(ping.pings_execute(object)); });
    EXPECT_EQ(stub.calls(), (QStringList{u"ok 1"_s, u"yes 0"_s, u"pings_execute"_s, u"release"_s}));
}

/// Reads, as an import does, and tells what the plug-in answered.
bool reads(const platform::Plugin& plugin, const platform::PluginHost& host) {
    bool hasRead = false;
    plugin.use(&velloria_plugin::movable_type_exchange, host,
               [&](const velloria_movable_type_exchange& exchange, void* object) {
                   hasRead = plugin.check(exchange.read_entries(object));
               });
    return hasRead;
}

TEST_F(Plugin, ShowsWhatAnImportBringsAndGetsItsMark) {
    stub.set("BRINGS", u"2004/05/07 2004/05/06 2004/05/07"_s);
    stub.set("NOTES", u"コメント 2件\n画像 1件"_s);
    const platform::Plugin plugin(installed());
    std::optional<QString> mark = u"2004/05/06 日記"_s;
    const platform::PluginHost asking(desk, [&](const platform::ImportPlan& plan) {
        EXPECT_EQ(plan.program, u"Stub"_s);
        EXPECT_EQ(plan.days, (QStringList{u"2004/05/07"_s, u"2004/05/06"_s, u"2004/05/07"_s}));
        EXPECT_EQ(plan.notes, u"コメント 2件\r\n画像 1件"_s);
        return mark;
    });
    EXPECT_TRUE(reads(plugin, asking));
    mark.reset();
    EXPECT_FALSE(reads(plugin, asking));
    EXPECT_EQ(stub.calls(), (QStringList{u"read_entries"_s, u"mark 2004/05/06 日記"_s, u"release"_s, u"read_entries"_s,
                                         u"no mark"_s, u"release"_s}));
}

TEST_F(Plugin, GetsNoMarkWhereNoImportIsWanted) {
    stub.set("BRINGS", u"2004/05/07"_s);
    EXPECT_FALSE(reads(platform::Plugin(installed()), host));
    EXPECT_EQ(stub.calls(), (QStringList{u"read_entries"_s, u"no mark"_s, u"release"_s}));
}

TEST_F(Plugin, IsReleasedBeforeWhatItsImportHasThrownFliesOn) {
    stub.set("BRINGS", u"2004/05/07"_s);
    const platform::Plugin plugin(installed());
    const platform::PluginHost failing(desk, [](const platform::ImportPlan&) -> std::optional<QString> {
        throw platform::Failure(u"日記を開けません。"_s, u"diary.mdb"_s, {});
    });
    const platform::PluginHost throwing(desk, [](const platform::ImportPlan&) -> std::optional<QString> {
        throw std::runtime_error("nobody answers");
    });
    EXPECT_TRUE(failureOf([&] { reads(plugin, failing); }).contains(u"日記を開けません。"_s));
    EXPECT_TRUE(failureOf([&] { reads(plugin, throwing); }).contains(u"nobody answers"_s));
    stub.set("THROWS", u"release 7"_s);
    EXPECT_TRUE(failureOf([&] { reads(plugin, failing); }).contains(u"日記を開けません。"_s));
    const QStringList once{u"read_entries"_s, u"no mark"_s, u"release"_s};
    EXPECT_EQ(stub.calls(), once + once + once);
}

TEST_F(Plugin, WhosePartEndsAheadOfAMemberLacksIt) {
    stub.set("LACKS", u"read_entries"_s);
    const platform::Plugin plugin(installed());
    EXPECT_TRUE(failureOf([&] { reads(plugin, host); }).contains(u"必要な機能がありません。"_s));
    EXPECT_EQ(failureOf([&] { plugin.use(&velloria_plugin::hatena_exchange, host, kNothing); }), QString());
}

} // namespace
} // namespace velloria::tests
