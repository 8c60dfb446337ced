// The start with a diary of each older version: the window of the update, its boxes, and the diary behind them.
#include "desktop/combo.h"
#include "editor/forms/frmCalender.h"
#include "editor/forms/frmContents.h"
#include "shell/forms/desktop_start.h"
#include "shell/forms/frmDBUpdater.h"
#include "shell/forms/updater_view.h"
#include "store/database_file.h"
#include "store/sqlite/connection.h"
#include "store/sqlite/statement.h"
#include "support/desktop_home.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QLineEdit>

using namespace Qt::StringLiterals;

namespace velloria::tests {
namespace {

/// Answers as it is told to, and shows the window of the update.
class ShowingDesk : public ScriptedDesk {
public:
    void updaterWindow(const platform::UpdaterWindow& shown) override {
        ScriptedDesk::updaterWindow(shown);
        show(shown);
    }
    void closeUpdaterWindow() override { close(); }

    std::function<void(const platform::UpdaterWindow&)> show;
    std::function<void()> close;
};

class OldDiaryStart : public FactoryHome {
protected:
    OldDiaryStart() {
        startWindows(); // settings and folders of a first run
        context.windows.closeAll();
        showingDesk.events = {};
    }
    ~OldDiaryStart() override { tidyUp(context, home); }

    shell::StartResult startWindows() {
        showingDesk.show = [this](const platform::UpdaterWindow& shown) {
            updates.show(shown);
            const auto* window = context.windows.find<shell::frmDBUpdater>();
            wasShown = wasShown || (window && window->isVisible());
            wasAheadOfTheMainWindow = wasAheadOfTheMainWindow && !context.windows.find<shell::MDIFormTop>();
            lines = shown.text.split(u"\r\n"_s);
        };
        showingDesk.close = [this] { updates.close(); };
        const shell::StartResult result = shell::startDesktop(context, home.path());
        settle();
        return result;
    }

    QString diaryFile() const { return path(u"UserData/diary.mdb"_s); }
    QStringList plainBoxes() const {
        QStringList texts;
        for (const QJsonValue& event : showingDesk.events) {
            if (event[u"event"_s] == u"message"_s)
                texts += event[u"kind"_s].toString() + u": "_s + event[u"text"_s].toString();
        }
        return texts;
    }
    static QStringList boxesOfAnUpdate() {
        return {u"plain: diary.mdbがアップデートされています。\r\nデータベースをアップデートします。\r\n"
                "(念のために、今までの「diary.mdb」は「diarymdb.bak」というファイル名で保存します。)"_s,
                u"plain: diary.mdbのアップデートは完了しました。\r\n念のためにVelloriaを再起動してください。"_s};
    }
    /// Opens the day as a click does; what the editor then shows as the title.
    QString titleOf(const QDate& day) {
        context.windows.get<editor::frmCalender>().Calender_DateClick(day);
        return control<QLineEdit>(context.windows.get<editor::frmContents>(), u"txtTitle"_s).text();
    }
    qint64 countOf(const QString& table) {
        const store::sqlite::Connection connection(diaryFile(), store::sqlite::Access::ReadOnly);
        store::sqlite::Statement count(connection, ("SELECT COUNT(*) FROM " + table.toUtf8()).constData());
        return count.next() ? count.integer64(0) : -1;
    }
    void expectUpdated() {
        EXPECT_EQ(plainBoxes(), boxesOfAnUpdate());
        EXPECT_TRUE(wasShown);
        EXPECT_TRUE(wasAheadOfTheMainWindow);
        ASSERT_FALSE(lines.isEmpty());
        EXPECT_EQ(lines.first(), u"アップデートを開始します。"_s);
        EXPECT_EQ(lines.last(), u"テンポラリファイルの削除完了。"_s);
        EXPECT_FALSE(context.windows.find<shell::frmDBUpdater>());
        ASSERT_TRUE(context.windows.find<shell::MDIFormTop>());
        EXPECT_TRUE(context.windows.get<shell::MDIFormTop>().isVisible());
        EXPECT_EQ(showingDesk.texts(u"failure"_s), QStringList());
        EXPECT_EQ(store::GetDBVersion(diaryFile()), 220);
    }

    ShowingDesk showingDesk;
    desktop::Context context{{session, clock, showingDesk}};
    shell::UpdaterView updates{context};
    bool wasShown = false;
    bool wasAheadOfTheMainWindow = true;
    QStringList lines;
};

class OldSqliteDiary : public OldDiaryStart, public testing::WithParamInterface<int> {
protected:
    /// A diary with the columns that this version had, and one entry.
    void putDiary(int version) const {
        const store::sqlite::Connection connection(diaryFile(), store::sqlite::Access::ReadWrite);
        const auto execute = [&](const QByteArray& statement) {
            store::sqlite::Statement(connection, statement.constData()).run();
        };
        for (const char* table : {"Contents", "FileDB", "LogDB", "Memo", "DBInfo"})
            execute(QByteArray("DROP TABLE ") + table);
        QByteArrayList columns{"Day", "Title", "Contents"};
        QByteArrayList values{"'2004/5/6'", "'題'", "'text'"};
        const auto add = [&](int since, const QByteArray& name, const QByteArray& value) {
            if (version < since)
                return;
            columns += name;
            values += value;
        };
        add(110, "Weather", "'雨'");
        add(110, "Genre", "'庭'");
        add(150, "Number", "1");
        add(150, "PublishTime", "'2004/05/06 07:00:00'");
        add(200, "Private", "0");
        add(200, "TrackBack", "''");
        add(200, "Extend", "''");
        add(200, "Excerpt", "''");
        add(210, "ImportMark", "''");
        execute("CREATE TABLE Contents (" + columns.join(", ") + ")");
        execute("INSERT INTO Contents VALUES (" + values.join(", ") + ")");
        execute(version >= 150
                    ? "CREATE TABLE FileDB (FileID INTEGER PRIMARY KEY, FileName, Day, Uploaded, Logged, Number)"
                    : "CREATE TABLE FileDB (FileID INTEGER PRIMARY KEY, FileName, Day, Uploaded, Logged)");
        execute("INSERT INTO FileDB (FileName, Day, Uploaded, Logged) VALUES ('a.gif', 'ALL', 0, 0)");
        if (version >= 100)
            execute("CREATE TABLE LogDB (LogMonth, LogFileName)");
        if (version < 101) {
            execute("CREATE TABLE Option (Header, Footer, Header_Log, Footer_Log)");
            execute("INSERT INTO Option VALUES ('h', 'f', 'hl', 'fl')");
        }
        if (version >= 100) {
            execute("CREATE TABLE DBInfo (VersionInfo)");
            execute("INSERT INTO DBInfo VALUES (" + QByteArray::number(version) + ")");
        }
    }
};

TEST_P(OldSqliteDiary, IsUpdatedBeforeTheMainWindowComesUpAndCanBeWrittenIn) {
    putDiary(GetParam());
    EXPECT_EQ(startWindows(), shell::StartResult::Ready);
    expectUpdated();
    EXPECT_EQ(titleOf({2004, 5, 6}), u"題"_s);
    EXPECT_EQ(countOf(u"FileDB"_s), 1);
    auto& contents = context.windows.get<editor::frmContents>();
    control<QLineEdit>(contents, u"txtTitle"_s).insert(u"増"_s);
    context.windows.get<shell::MDIFormTop>().command(u"MnuSaveDiary"_s)->trigger();
    EXPECT_EQ(showingDesk.texts(u"failure"_s), QStringList());
    context.windows.get<editor::OpenDay>().openDay(u"2004/05/07"_s);
    EXPECT_EQ(titleOf({2004, 5, 6}), u"増題"_s);

    context.windows.closeAll();
    showingDesk.events = {};
    EXPECT_EQ(startWindows(), shell::StartResult::Ready);
    EXPECT_EQ(plainBoxes(), QStringList()) << "it is of this version now";
}

INSTANTIATE_TEST_SUITE_P(Versions, OldSqliteDiary, testing::Values(0, 100, 101, 110, 150, 200, 210),
                         [](const auto& version) { return "V" + std::to_string(version.param); });

class OldJetDiary : public OldDiaryStart, public testing::WithParamInterface<const char*> {};

TEST_P(OldJetDiary, IsUpdatedBeforeTheMainWindowComesUpAndEachDayCanBeOpened) {
    const QString sample = QStringLiteral(VELLORIA_TEST_DATA "/jet/") + QLatin1StringView(GetParam());
    QFile::remove(diaryFile());
    ASSERT_TRUE(QFile::copy(sample + u".mdb"_s, diaryFile()));
    QFile(diaryFile()).setPermissions(QFile::ReadOwner | QFile::WriteOwner);
    EXPECT_EQ(startWindows(), shell::StartResult::Ready);
    expectUpdated();
    EXPECT_EQ(bytesOf(path(u"UserData/diary_jet.mdb"_s)), bytesOf(sample + u".mdb"_s));

    const QJsonObject told = QJsonDocument::fromJson(bytesOf(sample + u".json"_s)).object();
    const QJsonObject tables = told[u"tables"_s].toObject();
    const QJsonArray rows = tables[u"Contents"_s][u"rows"_s].toArray();
    EXPECT_EQ(countOf(u"Contents"_s), rows.size());
    EXPECT_EQ(countOf(u"FileDB"_s), tables[u"FileDB"_s][u"rows"_s].toArray().size());
    QMap<QString, QStringList> titles;
    for (const QJsonValue& row : rows)
        titles[row[u"Day"_s].toString()] += row[u"Title"_s].toString();
    int opened = 0;
    for (const auto& [day, ofDay] : titles.asKeyValueRange()) {
        const QDate date = QDate::fromString(day, u"yyyy/MM/dd"_s);
        if (!date.isValid() || ofDay.size() != 1)
            continue;
        EXPECT_EQ(titleOf(date).toStdString(), ofDay.first().toStdString()) << day.toStdString();
        ++opened;
    }
    EXPECT_GT(opened, 3);
    EXPECT_EQ(showingDesk.texts(u"failure"_s), QStringList());
}

INSTANTIATE_TEST_SUITE_P(Samples, OldJetDiary,
                         testing::Values("v0", "v0-jet3", "v100", "v100-jet3", "v101", "v110", "v150", "v200", "v210",
                                         "v220"),
                         [](const auto& sample) {
                             return QString::fromLatin1(sample.param).remove(u'-').toStdString();
                         });

TEST_F(OldDiaryStart, ADamagedOneEndsItAndStaysAsItWas) {
    const QString damaged = QStringLiteral(VELLORIA_TEST_DATA "/jet/damaged-lval-ring-empty.mdb");
    QFile::remove(diaryFile());
    ASSERT_TRUE(QFile::copy(damaged, diaryFile()));
    EXPECT_THROW(startWindows(), platform::Failure);
    EXPECT_EQ(bytesOf(diaryFile()), bytesOf(damaged));
    EXPECT_FALSE(context.windows.find<shell::frmDBUpdater>()) << "the box that tells it must be seen";
    EXPECT_EQ(plainBoxes(), QStringList{boxesOfAnUpdate().first()});
}

} // namespace
} // namespace velloria::tests
