// The page of odd diaries, and what is refused.
#include "plugins/information_home.h"
#include "support/faulty_disk.h"
#include "support/patience.h"

#include <QElapsedTimer>
#include <QFile>

#include <sqlite3.h>
#include <sys/stat.h>

using namespace Qt::StringLiterals;

namespace velloria::tests {
namespace {

class Information : public InformationHome {
protected:
    /// The table without its rules, as another program may have made it.
    void takeRules() {
        sql(u"DROP TABLE Contents"_s);
        sql(u"CREATE TABLE Contents (RecordID INTEGER PRIMARY KEY, Day, Number, Title, Contents, Extend, Excerpt, "
            "Weather, Genre, PublishTime, Private, TrackBack, ImportMark)"_s);
    }
    QStringList filesBesideThePage() const { return contentOf(session.DataPath).keys(); }
};

TEST_F(Information, IsVersionOne) {
    EXPECT_EQ(plugin.version(), u"1.0.0"_s);
}

TEST_F(Information, OfAnEmptyDiarySaysSo) {
    const InformationPage page = this->page();
    EXPECT_TRUE(page.text.contains(u"日記はまだありません"_s));
    EXPECT_EQ(page.tables.size(), 0);
    EXPECT_EQ(page.drawings, 0);
}

TEST_F(Information, NeedsNothingButItself) {
    insert(u"2026/11/23"_s, 1, u"<img src=\"http://a.example/x.gif\"><script src=x.js></script>text 漢字"_s,
           u"Title='<script>alert(1)</script>', Genre='<img src=x>', Weather='&amp;'"_s);
    const InformationPage page = this->page();
    EXPECT_EQ(page.loaded, QStringList());
    for (const QString& name : {u"script"_s, u"link"_s, u"img"_s, u"iframe"_s, u"object"_s, u"base"_s, u"form"_s})
        EXPECT_FALSE(page.elements.contains(name)) << name.toStdString();
    const QByteArray bytes = bytesOf(pageFile());
    EXPECT_TRUE(bytes.startsWith("<!DOCTYPE html>"));
    EXPECT_TRUE(bytes.contains("<meta charset=\"utf-8\"/>"));
    EXPECT_TRUE(bytes.contains("default-src 'none'"));
    EXPECT_TRUE(bytes.contains("width=device-width"));
    EXPECT_FALSE(bytes.contains("url("));
    EXPECT_FALSE(bytes.contains("@import"));
    EXPECT_EQ(page.tables[u"t-longest"_s].rows[0][2], u"<script>alert(1)</script>"_s);
    EXPECT_EQ(page.tables[u"t-genres"_s].rows[0][0], u"<img src=x>"_s);
    EXPECT_EQ(page.tables[u"t-weathers"_s].rows[0][0], u"&amp;"_s);
    EXPECT_GT(page.drawings, 10);
    EXPECT_EQ(page.dumbDrawings, 0);
}

TEST_F(Information, LeadsToTheDaysThatItNames) {
    insert(u"2026/11/22"_s, 1, u"雨"_s);
    insert(u"2026/11/23"_s, 1, u"雨"_s);
    insert(u"2026/11/23"_s, 2, u"雨降り"_s);
    const QStringList links = page().links;
    const QSet<QString> wanted{u"event:2026/11/22_1"_s, u"event:2026/11/23_1"_s, u"event:2026/11/23_2"_s};
    EXPECT_EQ(QSet<QString>(links.begin(), links.end()), wanted);
    EXPECT_EQ(links.value(links.size() - 6), u"event:2026/11/23_2"_s); // the longest
}

TEST_F(Information, MarksThePrivateEntriesThatItNames) {
    insert(u"2026/11/22"_s, 1, u"secret text"_s, u"Title='private one', Private=1"_s);
    insert(u"2026/11/23"_s, 1, u"text"_s, u"Title='public one'"_s);
    const InformationPage page = this->page();
    EXPECT_EQ(page.tables[u"t-longest"_s].rows[0][2], u"非公開 private one"_s);
    EXPECT_EQ(page.tables[u"t-longest"_s].rows[1][2], u"public one"_s);
    EXPECT_EQ(page.tables[u"t-private"_s].rows[1], (QStringList{u"非公開"_s, u"1"_s, u"50.0%"_s, u"10"_s, u"71.4%"_s}));
}

TEST_F(Information, IsForWhoeverMayReadTheDiary) {
    insert(u"2026/11/22"_s, 1, u"text"_s);
    for (const unsigned mode : {0600U, 0640U, 0644U}) {
        ASSERT_EQ(::chmod(QFile::encodeName(session.databaseFile()).constData(), mode), 0);
        page();
        EXPECT_EQ(modeOf(pageFile()), mode);
    }
}

TEST_F(Information, CountsRegisteredFilesByTheirNames) {
    insert(u"2026/11/22"_s, 1, u"text"_s);
    sql(u"INSERT INTO FileDB (FileName, Day, Number) VALUES ('a.JPG','2026/11/22',1),('a.JPG','2026/11/23',1),"
        "('b.css','ALL',0),('c.png','ALL',0),(NULL,NULL,NULL),('','ALL',0)"_s);
    const InformationPage page = this->page();
    EXPECT_EQ(page.texts[u"files"_s], u"3個"_s);
    EXPECT_EQ(page.texts[u"files-pictures"_s], u"2個"_s);
    EXPECT_EQ(page.texts[u"files-days"_s], u"1個"_s);
}

// ---- drawings

TEST_F(Information, DrawsNoBarForNothing) {
    insert(u"2026/11/23"_s, 1, u"雨"_s);
    page();
    const QByteArray all = bytesOf(pageFile());
    const QByteArray section = all.sliced(all.indexOf("<section id=\"private\""));
    EXPECT_TRUE(section.contains(">0 (0.0%)</text>"));
    EXPECT_EQ(section.count("M100 "), 1) << section.toStdString();
}

TEST_F(Information, ShortensANameThatHasNoRoomBesideItsBar) {
    insert(u"2026/11/23"_s, 1, u"雨"_s, u"Genre='あいうえおかきく', Weather='あいうえおかきくけ'"_s);
    page();
    const QByteArray all = bytesOf(pageFile());
    EXPECT_TRUE(all.contains("class=\"beside\">あいうえおかきく</text>"));
    EXPECT_TRUE(all.contains("class=\"beside\">あいうえおかき…</text>"));
}

TEST_F(Information, TellsEachColourOfTheCalendarOnce) {
    insert(u"2026/11/23"_s, 1, u"三文字"_s);
    EXPECT_EQ(page().text.count(u"3字から"_s), 1);
    insert(u"2026/11/24"_s, 1, u"字"_s);
    insert(u"2026/11/25"_s, 1, u"文字"_s);
    const QString text = page().text;
    EXPECT_EQ(text.count(u"1字から"_s), 1);
    EXPECT_EQ(text.count(u"2字から"_s), 1 + 1) << "and what a word is";
    EXPECT_EQ(text.count(u"3字から"_s), 1);
}

// ---- odd diaries

TEST_F(Information, TakesMissingValuesAndThoseOfOtherKinds) {
    takeRules();
    sql(u"INSERT INTO Contents DEFAULT VALUES"_s);
    sql(u"INSERT INTO Contents (Day, Number, Title, Contents, Extend, Weather, Genre, PublishTime, Private) VALUES "
        "(20261123, 'x', 1.5, x'E697A5E69CAC', 12, 3, x'FF00', 4, 'yes'), (x'00', 9e99, NULL, 5, NULL, '', '', '', -1)"_s);
    const InformationPage page = this->page();
    EXPECT_EQ(page.texts[u"entries"_s], u"3件"_s);
    EXPECT_EQ(page.texts[u"undated"_s], u"3"_s);
    EXPECT_EQ(page.texts[u"characters"_s], u"5字"_s);
    EXPECT_EQ(page.tables[u"t-genres"_s].at(u"一般"_s, u"日記"_s), 2U);
    EXPECT_EQ(page.tables[u"t-weathers"_s].at(u"-"_s, u"日記"_s), 2U);
    EXPECT_FALSE(page.tables.contains(u"t-years"_s));
    EXPECT_EQ(page.links, QStringList());
}

TEST_F(Information, CountsDaysThatAreNoneApart) {
    insert(u"2026/11/23"_s, 1, u"text"_s, u"PublishTime='2026/11/23 25:00:00'"_s);
    for (const QString& day : {u"9999/99/99"_s, u"abc"_s, u""_s, u"2004/5/6"_s, u"2004/02/30"_s, u"0000/01/01"_s,
                               u"<b>2004/05/06"_s, u"2004/05/06_1"_s})
        insert(day, 1, u"longer text"_s, u"PublishTime='noon'"_s);
    const InformationPage page = this->page();
    EXPECT_EQ(page.texts[u"entries"_s], u"9件"_s);
    EXPECT_EQ(page.texts[u"days"_s], u"1日"_s);
    EXPECT_EQ(page.texts[u"undated"_s], u"8"_s);
    EXPECT_EQ(page.tables[u"t-years"_s].sums.value(1), u"1"_s);
    EXPECT_EQ(page.tables[u"t-hours"_s].at(u"時刻なし"_s, u"日記"_s), 9U);
    for (const QString& link : page.links)
        EXPECT_EQ(link, u"event:2026/11/23_1"_s);
}

TEST_F(Information, TellsTheBusiestHourWhenThereIsOne) {
    insert(u"2026/11/23"_s, 1, u"text"_s, u"PublishTime=NULL"_s);
    page();
    EXPECT_TRUE(bytesOf(pageFile()).contains("1件には時刻がありません。どれも0件です。"));
    insert(u"2026/11/23"_s, 2, u"text"_s, u"PublishTime='2026/11/23 21:00:00'"_s);
    page();
    EXPECT_TRUE(bytesOf(pageFile()).contains("1件には時刻がありません。いちばん多いのは21時で1件です。"));
}

TEST_F(Information, IsNoLongerForLongTitlesAndNames) {
    const QString much = u"<b>&名前</b>"_s.repeated(100'000);
    insert(u"2026/11/23"_s, 1, u"text"_s,
           u"Title=%1, Genre=%1, Weather=%1, Excerpt=%1, PublishTime=%1"_s.arg(quoted(much)));
    insert(u"2026/11/24"_s, 1, u"\u202Etext"_s, u"Title='\u202Edesrever', Day='2026/11/24'"_s);
    page();
    EXPECT_LT(bytesOf(pageFile()).size(), 100'000);
}

TEST_F(Information, TakesBytesThatAreNoText) {
    sql(u"INSERT INTO Contents (Day, Number, Title, Contents, Genre) VALUES ('2026/11/23', 1, "
        "CAST(x'E3FF41' AS TEXT), CAST(x'93FA967B08' AS TEXT), CAST(x'EDA080' AS TEXT))"_s);
    const InformationPage page = this->page();
    EXPECT_EQ(page.texts[u"characters"_s], u"4字"_s);
    EXPECT_EQ(page.tables[u"t-longest"_s].rows[0][2], u"\uFFFD\uFFFDA"_s);
}

TEST_F(Information, TakesManyEntriesOfADay) {
    sql(u"WITH RECURSIVE n(i) AS (SELECT 1 UNION ALL SELECT i + 1 FROM n WHERE i < 2000) "
        "INSERT INTO Contents (Day, Number, Contents, Genre) SELECT '2026/11/23', i, '雨', 'g' || i FROM n"_s);
    const InformationPage page = this->page();
    EXPECT_EQ(page.tables[u"t-heat-2026"_s].at(u"11月"_s, u"23"_s), 2000U);
    EXPECT_EQ(page.tables[u"t-runs"_s].rows, (QList<QStringList>{{u"1日"_s, u"2026/11/23"_s, u"2026/11/23"_s}}));
    EXPECT_EQ(page.tables[u"t-genres"_s].at(u"そのほか"_s, u"日記"_s), 1985U);
    EXPECT_LT(bytesOf(pageFile()).size(), 100'000);
}

TEST_F(Information, IsBoundedForThousandsOfYears) {
    sql(u"WITH RECURSIVE n(i) AS (SELECT 100 UNION ALL SELECT i + 1 FROM n WHERE i < 9999) "
        "INSERT INTO Contents (Day, Number, Contents, Weather) "
        "SELECT printf('%04d/%02d/28', i, i % 12 + 1), 1, '雨', '晴' FROM n"_s);
    const InformationPage page = this->page();
    EXPECT_LT(bytesOf(pageFile()).size(), 4'000'000);
    EXPECT_EQ(page.tables[u"t-years"_s].rows.size(), 101);
    EXPECT_EQ(page.tables[u"t-years"_s].at(u"それ以前"_s, u"日記"_s), 9800U);
    for (const QString& table : {u"t-years"_s, u"t-months"_s, u"t-months-characters"_s, u"t-weathers-course"_s}) {
        const InformationTable& found = page.tables[table];
        const qsizetype column = table == u"t-years"_s ? 1 : found.heads.size() - 1;
        EXPECT_EQ(found.sumOf(column), 9900U) << table.toStdString();
        EXPECT_EQ(found.sums[column], u"9,900"_s) << table.toStdString();
    }
    EXPECT_TRUE(page.text.contains(u"100年分"_s));
}

// ---- refusals

TEST_F(Information, RefusesPathsThatCannotBeUsed) {
    const QString database = session.databaseFile();
    EXPECT_TRUE(setPaths(database, pageFile()));
    writeFile(path(u"text.mdb"_s), "no database");
    writeFile(path(u"empty.mdb"_s), "");
    for (const QString& file :
         {path(u"none.mdb"_s), path(u"text.mdb"_s), path(u"empty.mdb"_s), session.DataPath, u""_s})
        EXPECT_FALSE(setPaths(file, pageFile())) << file.toStdString();
    for (const QString& file : {path(u"none/page.htm"_s), session.DataPath, u""_s, u"/proc/none/page.htm"_s})
        EXPECT_FALSE(setPaths(database, file)) << file.toStdString();
    EXPECT_TRUE(failureOf([&] { makePage(); }).contains(u"場所が決まっていません"_s));
    plugin.use(&velloria_plugin::diary_information, [&](const velloria_diary_information& information) {
        EXPECT_EQ(information.set_paths(nullptr, "x"), 0);
        EXPECT_EQ(information.set_paths("x", nullptr), 0);
    });
    EXPECT_FALSE(exists(pageFile()));
}

TEST_F(Information, OfNoDiaryIsAFailureAndTheOldPageStays) {
    writeFile(pageFile(), "old");
    const QStringList before = filesBesideThePage();
    for (const QString& change : {u"ALTER TABLE Contents RENAME COLUMN Extend TO Other"_s, u"DROP TABLE Contents"_s,
                                  u"CREATE VIEW Contents AS SELECT * FROM FileDB"_s}) {
        sql(change);
        EXPECT_NE(refusal(), QString()) << change.toStdString();
        EXPECT_EQ(bytesOf(pageFile()), "old");
    }
    EXPECT_EQ(filesBesideThePage(), before);
}

TEST_F(Information, OfADamagedDiaryIsAFailureAndTheOldPageStays) {
    for (int day = 1; day <= 28; ++day)
        insert(u"2026/11/%1"_s.arg(day, 2, 10, QChar(u'0')), 1, u"text "_s.repeated(1000));
    QByteArray bytes = bytesOf(session.databaseFile());
    bytes.replace(bytes.size() / 4, bytes.size() / 2, QByteArray(bytes.size() / 2, '\x5A'));
    writeFile(session.databaseFile(), bytes);
    writeFile(pageFile(), "old");
    EXPECT_TRUE(refusal().contains(u"日記データベースが壊れています"_s)) << refusal().toStdString();
    EXPECT_EQ(bytesOf(pageFile()), "old");
}

/// How often a page lets the windows paint.
int pumpsOfPage(const platform::Plugin& plugin, bool isMade) {
    int pumps = 0;
    velloria_host host{};
    host.size = sizeof host;
    host.context = &pumps;
    host.pump = [](void* count) { ++*static_cast<int*>(count); };
    plugin.use(&velloria_plugin::diary_information, [&](const velloria_diary_information& information) {
        EXPECT_EQ(information.run_with_host(&host) > 0, isMade);
    });
    return pumps;
}

TEST_F(Information, LetsTheWindowsPaintWhileItReadsAndWaits) {
    sql(u"WITH RECURSIVE n(i) AS (SELECT 1 UNION ALL SELECT i + 1 FROM n WHERE i < 2000) "
        "INSERT INTO Contents (Day, Number, Contents) SELECT '2026/11/23', i, '雨' FROM n"_s);
    ASSERT_TRUE(setPaths(session.databaseFile(), pageFile()));
    EXPECT_GE(pumpsOfPage(plugin, true), 5);
    EXPECT_EQ(InformationPage(bytesOf(pageFile())).texts[u"entries"_s], u"2,000件"_s);
    sqlite3* other = nullptr;
    ASSERT_EQ(sqlite3_open(session.databaseFile().toUtf8().constData(), &other), SQLITE_OK);
    ASSERT_EQ(sqlite3_exec(other, "BEGIN EXCLUSIVE", nullptr, nullptr, nullptr), SQLITE_OK);
    EXPECT_GE(pumpsOfPage(plugin, false), 50);
    sqlite3_close(other);
}

TEST_F(Information, OfALockedDiaryWaitsAndFails) {
    insert(u"2026/11/23"_s, 1, u"text"_s);
    sqlite3* other = nullptr;
    ASSERT_EQ(sqlite3_open(session.databaseFile().toUtf8().constData(), &other), SQLITE_OK);
    ASSERT_EQ(sqlite3_exec(other, "BEGIN EXCLUSIVE", nullptr, nullptr, nullptr), SQLITE_OK);
    QElapsedTimer timer;
    timer.start();
    EXPECT_TRUE(refusal().contains(u"他のプログラムが使用中"_s));
    EXPECT_GE(timer.elapsed(), 2'000);
    EXPECT_LT(timer.elapsed(), kPatienceMs);
    EXPECT_FALSE(exists(pageFile()));
    sqlite3_close(other);
    EXPECT_EQ(refusal(), QString());
}

TEST_F(Information, OnAFullDiskLeavesTheOldPage) {
    insert(u"2026/11/23"_s, 1, u"text"_s);
    writeFile(pageFile(), "old");
    const QStringList before = filesBesideThePage();
    ASSERT_TRUE(setPaths(session.databaseFile(), pageFile()));
    FaultyDisk disk(session.DataPath);
    disk.leaveRoom(10'000);
    const QString failure = failureOf([&] { makePage(); });
    EXPECT_TRUE(failure.contains(u"ファイルを保存できません"_s)) << failure.toStdString();
    EXPECT_TRUE(failure.contains(u"空き容量"_s)) << failure.toStdString();
    EXPECT_EQ(bytesOf(pageFile()), "old");
    EXPECT_EQ(filesBesideThePage(), before);
}

} // namespace
} // namespace velloria::tests
