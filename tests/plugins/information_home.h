// A diary and "VellInfo.dll" as it lies beside the program.
#pragma once

#include "platform/plugin.h"
#include "plugins/information_page.h"
#include "support/test_home.h"

namespace velloria::tests {

/// Fixture.
class InformationHome : public TestHome {
protected:
    const platform::Plugin plugin{QStringLiteral(VELLORIA_PROGRAM_FOLDER "/VellInfo.dll")};

    QString pageFile() const { return session.DataPath + QStringLiteral("VellInfo_result.htm"); }

    bool setPaths(const QString& database, const QString& page) const {
        bool isTaken = false;
        plugin.use(&velloria_plugin::diary_information, [&](const velloria_diary_information& information) {
            isTaken = plugin.check(information.set_paths(database.toUtf8().constData(), page.toUtf8().constData()));
        });
        return isTaken;
    }
    void makePage() const {
        plugin.use(&velloria_plugin::diary_information,
                   [&](const velloria_diary_information& information) { plugin.check(information.run()); });
    }
    /// The page about the diary as it is now.
    InformationPage page() const {
        EXPECT_TRUE(setPaths(session.databaseFile(), pageFile()));
        makePage();
        return InformationPage(bytesOf(pageFile()));
    }
    /// Why no page comes of the diary; "" when one does.
    QString refusal() const {
        return failureOf([&] {
            EXPECT_TRUE(setPaths(session.databaseFile(), pageFile()));
            makePage();
        });
    }

    static QString quoted(QString text) {
        return u'\'' + text.replace(QStringLiteral("'"), QStringLiteral("''")) + u'\'';
    }
    /// Puts an entry there as it is told, in the words of SQL.
    void insert(const QString& day, int number, const QString& contents, const QString& more = {}) {
        sql(QStringLiteral("INSERT INTO Contents (Day, Number, Contents) VALUES (%1, %2, %3)")
                .arg(quoted(day), QString::number(number), quoted(contents)));
        if (!more.isEmpty())
            sql(QStringLiteral("UPDATE Contents SET %1 WHERE RecordID = (SELECT max(RecordID) FROM Contents)")
                    .arg(more));
    }
};

} // namespace velloria::tests
