#include "store/migration.h"

#include "core/keys.h"
#include "core/settings.h"
#include "core/settings_change.h"
#include "platform/file_write.h"
#include "store/database_file.h"
#include "support/test_home.h"

using namespace Qt::StringLiterals;

namespace velloria::tests {
namespace {

class Migration : public TestHome {
protected:
    /// What a start with a diary of this version tells.
    QStringList boxesOf(int version) {
        sql(u"UPDATE DBInfo SET VersionInfo = %1"_s.arg(version));
        desk.events = {};
        m_boxesBefore = -1;
        m_failure = failureOf([&] { store::updateOldDiary(run, [&] { m_boxesBefore = int(boxes().size()); }); });
        return boxes();
    }

    QString m_failure;
    int m_boxesBefore = -1; ///< those that were shown when the customize files were asked for
};

TEST_F(Migration, RefusesAnOlderDiaryAndLeavesItAlone) {
    write(u"2004/05/06"_s, u"a"_s);
    for (const int version : {0, 100, 101, 110, 150, 200, 210}) {
        const auto before = contentOf(home.path());
        const QString failure = failureOf([&] { store::UpdateDatabase(run, qint16(version)); });
        EXPECT_TRUE(failure.contains(u"バージョン%1の"_s.arg(version))) << failure.toStdString();
        EXPECT_TRUE(failure.contains(session.databaseFile())) << failure.toStdString();
        EXPECT_EQ(contentOf(home.path()), before);
    }
}

TEST_F(Migration, PutsAFreshDiaryWhereThereIsNone) {
    platform::removeFile(session.databaseFile());
    store::UpdateDatabase(run, 0);
    EXPECT_TRUE(bytesOf(session.databaseFile()) == bytesOf(path(u"default.mdb"_s)));
    EXPECT_EQ(store::GetDBVersion(session.databaseFile()), 220);
    EXPECT_EQ(write(u"2004/05/06"_s, u"a"_s), 1);
}

TEST_F(Migration, FindsATemplateOfAWindowsDisk) {
    platform::copyFile(path(u"default.mdb"_s), path(u"DEFAULT.MDB"_s));
    platform::removeFile(path(u"default.mdb"_s));
    platform::removeFile(session.databaseFile());
    store::UpdateDatabase(run, 0);
    EXPECT_TRUE(exists(session.databaseFile()));
}

TEST_F(Migration, FailsAloudWithoutATemplate) {
    platform::removeFile(path(u"default.mdb"_s));
    platform::removeFile(session.databaseFile());
    EXPECT_TRUE(failureOf([&] { store::UpdateDatabase(run, 0); }).contains(path(u"default.mdb"_s)));
    EXPECT_FALSE(exists(session.databaseFile()));
}

TEST_F(Migration, OfAPresentDiaryDoesAndTellsNothing) {
    for (const int version : {220, 221}) {
        sql(u"UPDATE DBInfo SET VersionInfo = %1"_s.arg(version));
        const auto before = contentOf(home.path());
        EXPECT_TRUE(boxesOf(version).isEmpty()) << version;
        EXPECT_EQ(contentOf(home.path()), before) << version;
    }
}

TEST_F(Migration, AsksForTheCustomizeFilesAheadOfAll) {
    core::writeQuietly(session, core::keys::kDBVersion, u"7"_s);
    EXPECT_EQ(boxesOf(100).size(), 1);
    EXPECT_EQ(m_boxesBefore, 0);
    EXPECT_TRUE(m_failure.contains(u"バージョン100の"_s)) << m_failure.toStdString();
    EXPECT_TRUE(exists(session.UserPath + u"diarymdb.bak"_s));
    EXPECT_EQ(core::Settings(session).text(core::keys::kDBVersion), u"7"_s);

    EXPECT_EQ(boxesOf(120).size(), 2);
    EXPECT_EQ(m_failure, QString());
    EXPECT_EQ(core::Settings(session).text(core::keys::kDBVersion), u"220"_s);
}

} // namespace
} // namespace velloria::tests
