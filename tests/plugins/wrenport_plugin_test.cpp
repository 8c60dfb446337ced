#include "exchange/plugin_exchange.h"

#include "platform/plugin.h"
#include "support/faulty_disk.h"
#include "support/test_home.h"

#include <QDir>
#include <QFile>

using namespace Qt::StringLiterals;

namespace velloria::tests {
namespace {

using exchange::PluginFormat;
using platform::Outcome;

constexpr QLatin1StringView
    kEntries("SELECT group_concat(Day || ' ' || Number || ' ' || coalesce(Title, 'NULL') || ' ' "
             "|| ImportMark, '; ') FROM (SELECT * FROM Contents ORDER BY Day, Number)");

/// The plug-in as the program calls it.
class WrenportPlugin : public TestHome {
protected:
    WrenportPlugin() {
        startAt(u"2026/11/23 10:00:00"_s);
        QFile::copy(QStringLiteral(VELLORIA_PROGRAM_FOLDER "/Wrenport.dll"), session.MyPath + u"Wrenport.dll"_s);
        desk.answers = {u"yes"_s};
    }

    QString given(const QByteArray& xml) {
        writeFile(path(u"in.xml"_s), xml);
        return path(u"in.xml"_s);
    }
    Outcome imports(const QString& file) {
        return exchange::importThroughPlugin(run, PluginFormat::Hatena, file, {[] {}, [](const QStringList&) {}});
    }
    Outcome exports(const QString& file) { return exchange::exportThroughPlugin(run, PluginFormat::Hatena, file); }
    QString failureOfImport(const QString& file) {
        return failureOf([&] { imports(file); });
    }
    QString table() {
        return sqlValue(u"SELECT group_concat(quote(Day) || quote(Number) || quote(Title) || quote(Contents) || "
                        "quote(Extend) || quote(Excerpt) || quote(Weather) || quote(Genre) || quote(PublishTime) || "
                        "quote(Private)) FROM (SELECT * FROM Contents ORDER BY Day, Number)"_s);
    }

    static inline const QByteArray kDiary =
        "<diary><day date=\"2024-03-08\" title=\"\"><body>\n*1709866800*[旅]a\nb\n*c\nd\n</body></day></diary>";
};

TEST_F(WrenportPlugin, TellsItsVersion) {
    EXPECT_EQ(platform::Plugin(session.MyPath + u"Wrenport.dll"_s).version(), u"1.0.0"_s);
}

TEST_F(WrenportPlugin, AddsEntriesBehindThoseOfTheirDays) {
    write(u"2024/03/08"_s, u"own"_s);
    EXPECT_EQ(imports(given(kDiary)), Outcome::Done);
    EXPECT_EQ(sqlValue(kEntries), u"2024/03/08 1 own ; 2024/03/08 2 a 2026/11/23 Wrenport; "
                                  "2024/03/08 3 c 2026/11/23 Wrenport"_s);
    EXPECT_EQ(
        sqlValue(u"SELECT Contents || Genre || Weather || PublishTime || TrackBack FROM Contents WHERE Number=2"_s),
        u"<p>b</p>旅-2024/03/08 12:00:00"_s);
}

TEST_F(WrenportPlugin, WritesNothingThatNobodyWants) {
    desk.answers = {u"no"_s};
    EXPECT_EQ(imports(given(kDiary)), Outcome::Refused);
    EXPECT_EQ(sqlValue(u"SELECT count(*) FROM Contents"_s), u"0"_s);
    EXPECT_TRUE(desk.texts(u"failure"_s).isEmpty());
}

TEST_F(WrenportPlugin, DoesWhatItsSettingsSay) {
    writeFile(session.UserPath + u"Wrenport.ini"_s, "[Import]\r\nNotation=Keep\r\nComments=keep\r\n");
    QByteArray xml = kDiary;
    xml.replace("</day>", "<comments><comment><username>x</username><body>y</body><timestamp>0</timestamp></comment>"
                          "</comments></day>");
    EXPECT_EQ(imports(given(xml)), Outcome::Done);
    EXPECT_EQ(sqlValue(u"SELECT group_concat(Contents || coalesce(Extend, 'NULL')) FROM Contents"_s),
              u"bNULL,d<p>コメント: x 1970/01/01 09:00:00</p>\r\n<p>y</p>"_s);
    writeFile(session.UserPath + u"Wrenport.ini"_s, "[Import]\nNotation=other\n");
    EXPECT_TRUE(failureOfImport(given(kDiary)).contains(u"Wrenport.ini"_s));
}

TEST_F(WrenportPlugin, RefusesAPathThatIsNoFile) {
    QDir().mkdir(path(u"folder"_s));
    for (const QString& file : {path(u"missing.xml"_s), path(u"folder"_s), u"/dev/zero"_s}) {
        desk.events = {};
        EXPECT_EQ(imports(file), Outcome::Refused);
        EXPECT_EQ(boxes(), QStringList{u"critical: 入力パスのエラーです"_s}) << file.toStdString();
    }
}

TEST_F(WrenportPlugin, RefusesAFileThatItMayNotRead) {
    const platform::Plugin plugin(session.MyPath + u"Wrenport.dll"_s);
    const platform::PluginHost host(desk);
    const QByteArray file = given(kDiary).toUtf8();
    QFile::setPermissions(home.path(), QFile::permissions(home.path()) | QFile::ReadOther | QFile::ExeOther);
    QFile::setPermissions(path(u"in.xml"_s), {});
    EXPECT_TRUE(holdsForNobody([&] {
        int32_t isAccepted = 1;
        plugin.use(&velloria_plugin::hatena_exchange, host, [&](const auto& exchange, void* object) {
            plugin.check(exchange.open_file(object, file.constData(), &isAccepted, 0));
        });
        return isAccepted == 0;
    }));
}

TEST_F(WrenportPlugin, TellsWhyAFileCantBeRead) {
    const QString failure = failureOfImport(given("<rss/>"));
    EXPECT_TRUE(failure.contains(u"in.xml"_s) && failure.contains(u"「rss」"_s) &&
                failure.contains(u"日記は変更されていません。"_s))
        << failure.toStdString();
    QFile large(path(u"large.xml"_s));
    ASSERT_TRUE(large.open(QIODevice::WriteOnly) && large.resize(qint64(500) << 20));
    EXPECT_TRUE(failureOfImport(large.fileName()).contains(u"500MB"_s));
    EXPECT_EQ(sqlValue(u"SELECT count(*) FROM Contents"_s), u"0"_s);
}

TEST_F(WrenportPlugin, WritesAllOrNothing) {
    refuseRows(u"Title = 'c'"_s);
    EXPECT_NE(failureOfImport(given(kDiary)), QString());
    EXPECT_EQ(sqlValue(u"SELECT count(*) FROM Contents"_s), u"0"_s);
}

TEST_F(WrenportPlugin, GivesBackWhatItWrote) {
    store::Entry entry = entryOf(u"2024/02/29"_s, u"*[題]"_s);
    entry.contents = u"-a\r\n>||\r\n*b((c))\r\n||<"_s;
    entry.isPrivate = true;
    entry.weather = u"晴"_s;
    write(entry);
    write(u"2024/02/29"_s, u"\u0008"_s, u"😀\u0008"_s);
    sql(u"INSERT INTO Contents (Day) VALUES ('2023/01/01')"_s);
    const QString before = table();
    ASSERT_EQ(exports(path(u"out.xml"_s)), Outcome::Done);
    sql(u"DELETE FROM Contents"_s);
    ASSERT_EQ(imports(path(u"out.xml"_s)), Outcome::Done);
    EXPECT_EQ(table(), before);
}

TEST_F(WrenportPlugin, LeavesTheOldExportWhenANewOneFails) {
    QDir().mkdir(path(u"out"_s));
    writeFile(path(u"out/out.xml"_s), "old");
    EXPECT_TRUE(failureOf([&] { exports(path(u"out/out.xml"_s)); }).contains(u"書き出す日記がありません。"_s));
    EXPECT_EQ(bytesOf(path(u"out/out.xml"_s)), "old");
    sql(u"INSERT INTO Contents (Day) VALUES ('some day')"_s);
    EXPECT_TRUE(failureOf([&] { exports(path(u"out/out.xml"_s)); }).contains(u"日付が正しくありません。"_s));
    EXPECT_EQ(bytesOf(path(u"out/out.xml"_s)), "old");
    write(u"2024/03/08"_s, u"a"_s);
    EXPECT_EQ(exports(path(u"out/out.xml"_s)), Outcome::Done);
    EXPECT_TRUE(desk.texts(u"status"_s).contains(u"1件の日記を書き出しました。"_s));
    EXPECT_EQ(boxes().last(),
              u"exclamation: %1\r\n1件の日記を書き出しました。\r\n日付が正しくない1件は書き出していません。"
              "\r\n日付: some day\r\n日記では、そのまま残っています。"_s.arg(path(u"out/out.xml"_s)));
    EXPECT_EQ(exports(path(u"missing/out.xml"_s)), Outcome::Refused);
    EXPECT_EQ(boxes().last(), u"critical: 出力先パスのエラーです"_s);
}

TEST_F(WrenportPlugin, LeavesNothingOnAFullDisk) {
    write(u"2024/03/08"_s, u"a"_s, QString(100000, u'x'));
    QDir().mkdir(path(u"out"_s));
    writeFile(path(u"out/out.xml"_s), "old");
    FaultyDisk disk(path(u"out"_s));
    disk.leaveRoom(1000);
    EXPECT_NE(failureOf([&] { exports(path(u"out/out.xml"_s)); }), QString());
    EXPECT_EQ(bytesOf(path(u"out/out.xml"_s)), "old");
    EXPECT_EQ(QDir(path(u"out"_s)).entryList(QDir::Files | QDir::Hidden), QStringList{u"out.xml"_s});
}

} // namespace
} // namespace velloria::tests
