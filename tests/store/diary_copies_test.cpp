#include "store/diary_copies.h"

#include "platform/file_write.h"
#include "store/database_file.h"
#include "store/diary_backups.h"
#include "store/diary_home.h"

#include <QDir>
#include <QFile>

using namespace Qt::StringLiterals;

namespace velloria::tests {
namespace {

using store::diaryCopies;
using store::DiaryCopy;
using store::sqlite::Access;
using store::sqlite::Connection;

class DiaryCopies : public DiaryHome {
protected:
    DiaryCopies() { setNow(u"2004/05/06 07:08:09"_s); }

    QString inFolder(const QString& name) const { return session.UserPath + u"Backup/"_s + name; }
    static void touch(const QString& name, const QString& moment) {
        QFile file(name);
        ASSERT_TRUE(file.open(QIODevice::ReadWrite));
        ASSERT_TRUE(
            file.setFileTime(QDateTime::fromString(moment, u"yyyy/MM/dd HH:mm"_s), QFileDevice::FileModificationTime));
    }
    /// "name date entries title", a copy each.
    QStringList listed() const {
        QStringList lines;
        for (const DiaryCopy& copy : diaryCopies(session))
            lines += u"%1 %2 %3 %4"_s.arg(copy.name, copy.date.toString(u"yyyy/MM/dd HH:mm"_s))
                         .arg(copy.entries)
                         .arg(copy.problem.isEmpty() ? copy.lastTitle : u"?"_s);
        return lines;
    }
};

TEST_F(DiaryCopies, OfAFreshHomeThereAreNone) {
    EXPECT_TRUE(diaryCopies(session).empty());
    EXPECT_FALSE(exists(session.UserPath + u"Backup"_s));
}

TEST_F(DiaryCopies, AreListedNewestFirstWithWhatTheyHold) {
    write(u"2004/05/04"_s, u"older"_s);
    store::makeBackup(run);
    write(u"2004/05/05"_s, u"first"_s);
    write(u"2004/05/05"_s, u"second"_s);
    write(u"2003/12/31"_s, u"much older"_s);
    store::makeBackup(run);
    store::backUpDatabase(file(), backup());
    platform::copyFile(file(), backup() + u".3"_s);
    platform::copyFile(file(), session.UserPath + u"diarymdb.replaced-2.bak"_s);
    platform::copyFile(file(), inFolder(u"mine.mdb"_s));
    writeFile(inFolder(u"notes.txt"_s), "x");
    writeFile(session.UserPath + u"diarymdb.bak.4"_s, "x");
    touch(backup(), u"2004/05/03 10:00"_s);
    touch(backup() + u".3"_s, u"2004/05/01 10:00"_s);
    touch(session.UserPath + u"diarymdb.replaced-2.bak"_s, u"2004/05/02 10:00"_s);
    touch(inFolder(u"mine.mdb"_s), u"2004/05/06 00:01"_s);
    EXPECT_EQ(
        listed(),
        (QStringList{u"mine.mdb 2004/05/06 00:01 4 second"_s, u"diary-20040506.mdb 2004/05/06 00:00 4 second"_s,
                     u"diary-20040506-2.mdb 2004/05/06 00:00 1 older"_s, u"diarymdb.bak 2004/05/03 10:00 4 second"_s,
                     u"diarymdb.replaced-2.bak 2004/05/02 10:00 4 second"_s,
                     u"diarymdb.bak.3 2004/05/01 10:00 4 second"_s}));
    touch(inFolder(u"diary-20040506.mdb"_s), u"2004/05/06 12:34"_s);
    EXPECT_EQ(listed().first(), u"diary-20040506.mdb 2004/05/06 12:34 4 second"_s);
}

TEST_F(DiaryCopies, ThatCantBeReadAreListedAndStopNothing) {
    write(kDay, u"a"_s);
    store::makeBackup(run);
    const QByteArray whole = bytesOf(inFolder(u"diary-20040506.mdb"_s));
    writeFile(inFolder(u"diary-20040101.mdb"_s), {});
    writeFile(inFolder(u"diary-20040102.mdb"_s), "no diary");
    writeFile(inFolder(u"diary-20040103.mdb"_s), whole.first(3000));
    ASSERT_TRUE(QFile::link(path(u"nowhere"_s), inFolder(u"diary-20040104.mdb"_s)));
    sql(u"DROP TABLE Contents"_s);
    platform::copyFile(file(), inFolder(u"diary-20040105.mdb"_s));
    const QStringList lines = listed();
    EXPECT_EQ(lines.first(), u"diary-20040506.mdb 2004/05/06 00:00 1 a"_s);
    for (const DiaryCopy& copy : diaryCopies(session))
        EXPECT_EQ(copy.problem.isEmpty(), copy.name == u"diary-20040506.mdb"_s) << copy.name.toStdString();
}

TEST_F(DiaryCopies, OfOlderVersionsAndOtherFormsOfDaysTellTheirLastEntry) {
    for (const char* day : {"2004/5/6", "2004/10/1", "2004/9/30"})
        sql(u"INSERT INTO Contents (Day, Number, Title) VALUES ('%1', 1, '%1')"_s.arg(QLatin1StringView(day)));
    store::makeBackup(run);
    EXPECT_EQ(diaryCopies(session).at(0).lastTitle, u"2004/10/1"_s);
    EXPECT_EQ(diaryCopies(session).at(0).entries, 3);
    sql(u"CREATE TABLE Old AS SELECT Day, Title, Contents FROM Contents"_s);
    sql(u"DROP TABLE Contents"_s);
    sql(u"ALTER TABLE Old RENAME TO Contents"_s);
    sql(u"DROP TABLE DBInfo"_s);
    store::makeBackup(run);
    EXPECT_EQ(diaryCopies(session).at(0).lastTitle, u"2004/10/1"_s);
    EXPECT_EQ(diaryCopies(session).at(0).entries, 3);
}

TEST_F(DiaryCopies, StayAsTheyAre) {
    write(kDay, u"a"_s);
    store::makeBackup(run);
    tear(inFolder(u"diary-20040506.mdb"_s));
    const auto before = contentOf(home.path());
    EXPECT_EQ(diaryCopies(session).at(0).lastTitle, u"a"_s);
    EXPECT_EQ(contentOf(home.path()), before);
}

} // namespace
} // namespace velloria::tests
