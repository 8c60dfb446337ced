// A diary to do something to, and what a killed program does to one.
#pragma once

#include "store/sqlite/connection.h"
#include "support/test_home.h"

#include <unistd.h>

namespace velloria::tests {

/// Fixture: a started program folder with an empty diary.
class DiaryHome : public TestHome {
protected:
    static inline const QString kDay = QStringLiteral("2004/05/06");

    QString file() const { return session.databaseFile(); }
    QString backup() const { return session.UserPath + QStringLiteral("diarymdb.bak"); }
    /// Those of the day in this file, number 1 first.
    QString titles(const QString& database) const {
        QStringList titles;
        for (const store::Entry& entry : store::DiaryStore(database, clock).LoadDay(kDay))
            titles.prepend(entry.title);
        return titles.join(u' ');
    }
    /// As a program leaves the file that is killed in a large change: pages of it, and a hot journal.
    static void tear(const QString& database) {
        holdsInChild([&]() -> bool {
            store::sqlite::Connection connection(database, store::sqlite::Access::ReadWrite);
            connection.execute("PRAGMA cache_size = 2");
            connection.execute("BEGIN IMMEDIATE");
            connection.execute("WITH RECURSIVE n(i) AS (SELECT 1 UNION ALL SELECT i + 1 FROM n WHERE i < 500) "
                               "INSERT INTO Contents (Day, Number, Contents) SELECT '2004/05/06', i + 10, "
                               "hex(randomblob(1000)) FROM n");
            connection.execute("UPDATE Contents SET Title = 'torn'");
            connection.execute("UPDATE DBInfo SET VersionInfo = 1");
            ::_exit(0);
        });
    }
};

/// Fixture: three entries of one day.
class ThreeEntries : public DiaryHome {
protected:
    ThreeEntries() {
        for (const char* title : {"a", "b", "c"})
            write(kDay, QLatin1StringView(title));
    }
};

} // namespace velloria::tests
