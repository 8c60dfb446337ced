// What a start does with old diaries, those in the Jet format too.
#include "store/migration.h"

#include "core/date_forms.h"
#include "core/keys.h"
#include "core/settings.h"
#include "core/settings_change.h"
#include "platform/code_page.h"
#include "platform/file_write.h"
#include "store/database_file.h"
#include "store/migration_home.h"
#include "support/faulty_disk.h"
#include "support/vectors.h"

#include <QDir>
#include <QFileInfo>
#include <QJsonDocument>
#include <QJsonObject>

using namespace Qt::StringLiterals;

namespace velloria::tests {
namespace {

// ---- a start

class StartMigration : public Migration {
protected:
    QString updateAtStart() {
        desk.events = {};
        m_boxesBefore = -1;
        return failureOf([&] { store::updateOldDiary(run, [&] { m_boxesBefore = int(boxes().size()); }); });
    }
    QString recorded() const { return core::Settings(session).text(core::keys::kDBVersion); }

    int m_boxesBefore = -1; ///< those that were shown when the customize files were asked for
};

TEST_F(StartMigration, OfAPresentDiaryDoesAndTellsNothing) {
    for (const int version : {220, 221}) {
        sql(u"UPDATE DBInfo SET VersionInfo = %1"_s.arg(version));
        const auto before = contentOf(home.path());
        EXPECT_EQ(updateAtStart(), QString());
        EXPECT_TRUE(desk.events.isEmpty()) << version;
        EXPECT_EQ(contentOf(home.path()), before) << version;
    }
}

TEST_F(StartMigration, AsksForTheCustomizeFilesAheadOfAll) {
    core::writeQuietly(session, core::keys::kDBVersion, u"7"_s);
    fillOld(100);
    const QByteArray before = bytesOf(file());
    EXPECT_EQ(updateAtStart(), QString());
    EXPECT_EQ(m_boxesBefore, 0);
    EXPECT_EQ(boxes().size(), 2);
    EXPECT_TRUE(bytesOf(backup()) == before);
    EXPECT_EQ(recorded(), u"220"_s);
    EXPECT_EQ(rows(kAllContents), contentsFrom(100));
}

TEST_F(StartMigration, OfAVersionThatNobodyHadCopiesNothing) {
    fillOld(100);
    sqlOn(file(), u"UPDATE DBInfo SET VersionInfo = 120"_s);
    const QByteArray before = bytesOf(file());
    EXPECT_EQ(updateAtStart(), QString());
    EXPECT_EQ(boxes().size(), 2);
    EXPECT_EQ(lines(), QStringList());
    EXPECT_TRUE(bytesOf(file()) == before);
    EXPECT_EQ(recorded(), u"220"_s);
}

TEST_F(StartMigration, ThatFailsLeavesNoNewVersionOnRecord) {
    core::writeQuietly(session, core::keys::kDBVersion, u"7"_s);
    fillOld(100);
    sqlOn(file(), u"DROP TABLE FileDB"_s);
    EXPECT_TRUE(updateAtStart().contains(u"FileDB"_s));
    EXPECT_EQ(boxes().size(), 1);
    EXPECT_EQ(recorded(), u"7"_s);
}

TEST_F(StartMigration, WithoutADiaryMakesNoBackup) {
    platform::removeFile(file());
    EXPECT_EQ(updateAtStart(), QString());
    EXPECT_EQ(boxes().size(), 2);
    EXPECT_FALSE(exists(backup()));
    EXPECT_EQ(store::GetDBVersion(file()), 220);
    EXPECT_EQ(recorded(), u"220"_s);
}

TEST_F(StartMigration, WithoutRoomBeginsNothing) {
    fillOld(100);
    sqlOn(file(), u"INSERT INTO Contents (Day, Contents) VALUES ('2001/01/01', hex(zeroblob(2000000)))"_s);
    const auto before = contentOf(home.path());
    FaultyDisk disk(home.path());
    disk.leaveRoom(QFileInfo(file()).size() * 11 / 10);
    const QString failure = updateAtStart();
    EXPECT_TRUE(failure.contains(u"17 MB必要ですが、空きは4 MBです"_s)) << failure.toStdString();
    EXPECT_FALSE(disk.hasFailed()) << "it was tried all the same";
    EXPECT_EQ(m_boxesBefore, -1);
    EXPECT_TRUE(desk.events.isEmpty());
    EXPECT_EQ(contentOf(home.path()), before);
}

TEST_F(StartMigration, WithJustEnoughRoomComesThrough) {
    fillOld(100);
    sqlOn(file(), u"INSERT INTO Contents (Day, Contents) VALUES ('2001/01/01', hex(zeroblob(2000000)))"_s);
    FaultyDisk disk(home.path());
    disk.leaveRoom(QFileInfo(file()).size() * 4 + (1 << 18) + 4096);
    EXPECT_EQ(updateAtStart(), QString());
    EXPECT_FALSE(disk.hasFailed());
}

// ---- diaries of the older programs

class JetMigration : public StartMigration {
protected:
    void bring(const QString& name) {
        QFile::remove(file());
        ASSERT_TRUE(QFile::copy(dataPath(u"jet/"_s + name + u".mdb"_s), file()));
        QFile::setPermissions(file(), QFile::ReadOwner | QFile::WriteOwner);
    }
    static QJsonObject described(const QString& name) {
        return QJsonDocument::fromJson(platform::readFile(dataPath(u"jet/"_s + name + u".json"_s))).object();
    }
    QString kept(const QString& name = u"diary_jet.mdb"_s) const { return session.UserPath + name; }

    /// A value as it is to read in the fresh diary.
    static QString valueOf(const QJsonObject& row, const QString& column, const QString& missing, bool isDay = false) {
        if (!row.contains(column))
            return missing;
        const QJsonValue value = row[column];
        if (value.isBool())
            return value.toBool() ? u"1"_s : u"0"_s;
        if (value.isDouble())
            return QString::number(value.toInteger());
        if (value.isNull())
            return isDay ? u""_s : u"NULL"_s;
        return isDay ? core::formatTextAsDate(value.toString(), u"yyyy/mm/dd", 2004) : value.toString();
    }
    static QStringList expectedContents(const QJsonArray& table) {
        QStringList expected;
        for (const QJsonValue& value : table) {
            const QJsonObject row = value.toObject();
            const QString day = row[u"Day"_s].toString();
            QString number = valueOf(row, u"Number"_s, u"1"_s);
            if (number == u"NULL"_s)
                number = u"1"_s;
            expected += QStringList{valueOf(row, u"Day"_s, {}, true),
                                    valueOf(row, u"Title"_s, {}),
                                    valueOf(row, u"Contents"_s, {}),
                                    valueOf(row, u"Weather"_s, u"-"_s),
                                    valueOf(row, u"Genre"_s, u"一般"_s),
                                    number,
                                    valueOf(row, u"PublishTime"_s, day + u" 00:00:00"_s),
                                    valueOf(row, u"Private"_s, u"0"_s),
                                    valueOf(row, u"TrackBack"_s, u""_s),
                                    valueOf(row, u"Extend"_s, u""_s),
                                    valueOf(row, u"Excerpt"_s, u""_s),
                                    valueOf(row, u"ImportMark"_s, u""_s)}
                            .join(u'|');
        }
        return expected;
    }
    static QStringList expectedFiles(const QJsonArray& table) {
        QStringList expected;
        for (const QJsonValue& value : table) {
            const QJsonObject row = value.toObject();
            QString number = valueOf(row, u"Number"_s, row[u"Day"_s] == u"ALL"_s ? u"0"_s : u"1"_s);
            if (number == u"NULL"_s)
                number = u"0"_s;
            expected += QStringList{valueOf(row, u"FileName"_s, {}), valueOf(row, u"Day"_s, {}), number,
                                    valueOf(row, u"Uploaded"_s, {}), valueOf(row, u"Logged"_s, {})}
                            .join(u'|');
        }
        return expected;
    }
    /// The rows of a table without a counting column, in no order.
    static QStringList expectedRows(const QJsonArray& table, const QStringList& columns) {
        QStringList expected;
        for (const QJsonValue& row : table) {
            QStringList values;
            for (const QString& column : columns)
                values += valueOf(row.toObject(), column, {});
            expected += values.join(u'|');
        }
        expected.sort();
        return expected;
    }
    QStringList sortedRows(const QString& query) const {
        QStringList sorted = rows(query);
        sorted.sort();
        return sorted;
    }
};

TEST_F(JetMigration, BringsEveryValueOfEveryVersion) {
    for (const QString& name : {u"v0"_s, u"v0-jet3"_s, u"v100"_s, u"v100-jet3"_s, u"v101"_s, u"v110"_s, u"v150"_s,
                                u"v200"_s, u"v210"_s, u"v220"_s}) {
        bring(name);
        const QByteArray before = bytesOf(file());
        const QJsonObject tables = described(name)[u"tables"_s].toObject();
        const auto rowsIn = [&](const QString& table) { return tables[table][u"rows"_s].toArray(); };
        QFile::remove(kept());
        QFile::remove(backup());
        ASSERT_EQ(updateAtStart(), QString()) << name.toStdString();
        EXPECT_EQ(boxes().size(), 2);
        EXPECT_EQ(rows(kAllContents), expectedContents(rowsIn(u"Contents"_s))) << name.toStdString();
        EXPECT_EQ(rows(kAllFiles), expectedFiles(rowsIn(u"FileDB"_s))) << name.toStdString();
        EXPECT_EQ(sortedRows(u"SELECT LogMonth, LogFileName FROM LogDB"_s),
                  expectedRows(rowsIn(u"LogDB"_s), {u"LogMonth"_s, u"LogFileName"_s}))
            << name.toStdString();
        EXPECT_EQ(sortedRows(u"SELECT PublishTime, Title, Memo FROM Memo"_s),
                  expectedRows(rowsIn(u"Memo"_s), {u"PublishTime"_s, u"Title"_s, u"Memo"_s}))
            << name.toStdString();
        const QJsonObject option = rowsIn(u"Option"_s).at(0).toObject();
        for (const auto& [field, piece] : {std::pair{u"Header"_s, u"default_up.htm"_s},
                                           {u"Footer"_s, u"default_down.htm"_s},
                                           {u"Header_Log"_s, u"default_up_log.htm"_s},
                                           {u"Footer_Log"_s, u"default_down_log.htm"_s}}) {
            const QString text = option[field].toString() + u"\r\n"_s;
            EXPECT_TRUE(option.isEmpty() ? !exists(this->piece(piece))
                                         : bytesOf(this->piece(piece)) == platform::toCodePage(text))
                << name.toStdString() << piece.toStdString();
            QFile::remove(this->piece(piece));
        }
        EXPECT_EQ(lines(), tableLines(described(name)[u"version"_s].toInt()));
        EXPECT_EQ(store::GetDBVersion(file()), 220);
        EXPECT_TRUE(bytesOf(kept()) == before && bytesOf(backup()) == before) << name.toStdString();
        EXPECT_EQ(leftBehind(), QStringList());
    }
}

TEST_F(JetMigration, KeepsEachOriginalAndNoneTwice) {
    bring(u"v150"_s);
    const QByteArray first = bytesOf(file());
    updateAtStart();
    bring(u"v200"_s);
    const QByteArray second = bytesOf(file());
    updateAtStart();
    bring(u"v150"_s);
    EXPECT_EQ(updateAtStart(), QString());
    EXPECT_TRUE(bytesOf(kept()) == first);
    EXPECT_TRUE(bytesOf(kept(u"diary_jet-2.mdb"_s)) == second);
    EXPECT_FALSE(exists(kept(u"diary_jet-3.mdb"_s)));
    ASSERT_TRUE(optimize());
    EXPECT_TRUE(bytesOf(kept()) == first);
    EXPECT_EQ(QDir(session.UserPath).entryList({u"diary_jet*"_s}).size(), 2);
}

TEST_F(JetMigration, OfADamagedFileLeavesItAndTheGoodBackup) {
    for (const QString& name : {u"damaged-cut-half-odd"_s, u"damaged-lval-ring-empty"_s}) {
        bring(name);
        const QByteArray before = bytesOf(file());
        for (const bool hasBackup : {true, false}) {
            QFile::remove(backup());
            if (hasBackup)
                writeFile(backup(), "good");
            core::writeQuietly(session, core::keys::kDBVersion, u"7"_s);
            const QString failure = updateAtStart();
            EXPECT_TRUE(failure.contains(file()) && !failure.contains(old())) << failure.toStdString();
            EXPECT_TRUE(bytesOf(file()) == before);
            EXPECT_TRUE(!hasBackup || bytesOf(backup()) == "good");
            EXPECT_EQ(recorded(), u"7"_s);
        }
    }
}

TEST_F(JetMigration, AsksForRoomForTheOriginalToo) {
    bring(u"v220"_s);
    const auto before = contentOf(home.path());
    FaultyDisk disk(home.path());
    disk.leaveRoom(QFileInfo(file()).size() * 5);
    EXPECT_TRUE(updateAtStart().contains(u"3 MB必要ですが、空きは2 MBです"_s));
    EXPECT_EQ(contentOf(home.path()), before);
}

TEST_F(JetMigration, IsKeptByTheCommandToo) {
    bring(u"v220"_s);
    const QByteArray before = bytesOf(file());
    ASSERT_TRUE(QDir().mkpath(kept())); // in the way, and no file
    ASSERT_TRUE(optimize());
    EXPECT_TRUE(bytesOf(kept(u"diary_jet-2.mdb"_s)) == before);
}

/// As every file of a compact disc is.
TEST_F(JetMigration, TakesAFileThatIsSetReadOnly) {
    bring(u"v150"_s);
    ASSERT_TRUE(QFile::setPermissions(file(), QFile::ReadOwner));
    for (int age = 0; age < 2; ++age) {
        ASSERT_EQ(start(), shell::StartResult::Ready);
        EXPECT_EQ(store::GetDBVersion(file()), 220);
        EXPECT_EQ(sqlValue(u"SELECT count(*) FROM Contents"_s), u"51"_s);
        EXPECT_EQ(modeOf(file()), 0600U);
        EXPECT_EQ(modeOf(backup()), 0600U);
        bring(u"v110"_s);
        ASSERT_TRUE(QFile::setPermissions(file(), QFile::ReadOwner));
        ASSERT_EQ(start(), shell::StartResult::Ready) << "the backup of before makes room";
        bring(u"v150"_s);
        ASSERT_TRUE(QFile::setPermissions(file(), QFile::ReadOwner));
    }
}

} // namespace
} // namespace velloria::tests
