#include "store/migration.h"

#include "platform/file_write.h"
#include "store/database_file.h"
#include "support/test_home.h"

using namespace Qt::StringLiterals;

namespace velloria::tests {
namespace {

class Migration : public TestHome {};

TEST_F(Migration, RefusesAnOlderDiaryAndLeavesItAlone) {
    write(u"2004/05/06"_s, u"a"_s);
    for (const int version : {0, 100, 101, 110, 150, 200, 210}) {
        const auto before = contentOf(home.path());
        const QString failure = failureOf([&] { store::UpdateDatabase(session, qint16(version)); });
        EXPECT_TRUE(failure.contains(u"バージョン%1の"_s.arg(version))) << failure.toStdString();
        EXPECT_TRUE(failure.contains(session.databaseFile())) << failure.toStdString();
        EXPECT_EQ(contentOf(home.path()), before);
    }
}

TEST_F(Migration, PutsAFreshDiaryWhereThereIsNone) {
    platform::removeFile(session.databaseFile());
    store::UpdateDatabase(session, 0);
    EXPECT_TRUE(bytesOf(session.databaseFile()) == bytesOf(path(u"default.mdb"_s)));
    EXPECT_EQ(store::GetDBVersion(session.databaseFile()), 220);
    EXPECT_EQ(write(u"2004/05/06"_s, u"a"_s), 1);
}

TEST_F(Migration, FindsATemplateOfAWindowsDisk) {
    platform::copyFile(path(u"default.mdb"_s), path(u"DEFAULT.MDB"_s));
    platform::removeFile(path(u"default.mdb"_s));
    platform::removeFile(session.databaseFile());
    store::UpdateDatabase(session, 0);
    EXPECT_TRUE(exists(session.databaseFile()));
}

TEST_F(Migration, FailsAloudWithoutATemplate) {
    platform::removeFile(path(u"default.mdb"_s));
    platform::removeFile(session.databaseFile());
    EXPECT_TRUE(failureOf([&] { store::UpdateDatabase(session, 0); }).contains(path(u"default.mdb"_s)));
    EXPECT_FALSE(exists(session.databaseFile()));
}

} // namespace
} // namespace velloria::tests
