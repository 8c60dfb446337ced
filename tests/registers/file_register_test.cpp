#include "registers/file_register.h"

#include "support/test_home.h"

#include <thread>

using namespace Qt::StringLiterals;

namespace velloria::tests {
namespace {

using registers::kAllDays;
using registers::SiteSide;
using store::FileRow;

class FileRegister : public TestHome {
protected:
    registers::FileRegister files() const { return registers::FileRegister(session.databaseFile()); }

    void add(const QString& name, const QString& day, int number = 1, bool isUploaded = false, bool isLogged = false) {
        files().addFile({0, name, day, number, isUploaded, isLogged});
    }

    static QStringList namesOf(const std::vector<FileRow>& rows) {
        QStringList names;
        for (const FileRow& row : rows)
            names += row.name;
        return names;
    }
};

TEST_F(FileRegister, AddsRowsAsGiven) {
    add(u"a.gif"_s, u"2004/05/06"_s, 2, true, false);
    add(u"b.gif"_s, kAllDays, 0, false, true);
    const std::vector<FileRow> rows = files().ListFiles();
    ASSERT_EQ(rows.size(), 2U);
    EXPECT_EQ(rows[0].name, u"a.gif"_s);
    EXPECT_EQ(rows[0].day, u"2004/05/06"_s);
    EXPECT_EQ(rows[0].number, 2);
    EXPECT_TRUE(rows[0].isUploaded && !rows[0].isLogged);
    EXPECT_EQ(rows[1].day, u"ALL"_s);
    EXPECT_TRUE(!rows[1].isUploaded && rows[1].isLogged);
    EXPECT_GT(rows[1].id, rows[0].id);
}

TEST_F(FileRegister, AFileOfAllDaysHasNumberZero) {
    files().addCommonFiles({u"all.css"_s}, SiteSide::Log);
    EXPECT_EQ(sqlValue(u"SELECT Day || Number || Uploaded || Logged FROM FileDB"_s), u"ALL001"_s);
    sql(u"INSERT INTO FileDB (FileName, Day) VALUES ('x.css', 'ALL')"_s);
    EXPECT_EQ(files().FindFile(u"x.css"_s).front().number, 0);
}

TEST_F(FileRegister, AddsTheLogsCopyOfACommonFileOnce) {
    add(u"all.css"_s, kAllDays, 0);
    add(u"other.css"_s, u"2004/05/06"_s, 1, false, true);
    for (int i = 0; i < 3; ++i)
        files().addCommonFiles({u"ALL.css"_s, u"other.css"_s, u"ＯＴＨＥＲ.css"_s}, SiteSide::Log);
    EXPECT_EQ(namesOf(files().CommonFiles()), (QStringList{u"all.css"_s, u"ALL.css"_s, u"other.css"_s}));
}

TEST_F(FileRegister, AddsAFileOfAllMonthsUnlessItIsOneOnEitherSide) {
    files().addCommonFiles({u"logged.css"_s}, SiteSide::Log);
    add(u"day.css"_s, u"2004/05/06"_s);
    files().addCommonFiles({u"new.css"_s, u"Logged.css"_s, u"day.css"_s, u"new.css"_s}, SiteSide::Current);
    EXPECT_EQ(namesOf(files().CommonFiles()), (QStringList{u"logged.css"_s, u"new.css"_s, u"day.css"_s}));
}

TEST_F(FileRegister, TwoProgramsAddAFileOfAllMonthsOnce) {
    const auto addMany = [&] {
        for (int i = 0; i < 40; ++i)
            files().addCommonFiles({u"%1.css"_s.arg(i)}, SiteSide::Current);
        return true;
    };
    std::thread other(addMany);
    addMany();
    other.join();
    EXPECT_EQ(files().CommonFiles().size(), 40U);
}

TEST_F(FileRegister, FindsAndCountsANameWithoutRegardToCaseAndWidth) {
    add(u"Photo.JPG"_s, u"2004/05/06"_s);
    add(u"ｐｈｏｔｏ.jpg"_s, u"2004/05/07"_s);
    add(u"photo.gif"_s, u"2004/05/06"_s);
    EXPECT_EQ(namesOf(files().FindFile(u"photo.jpg"_s)), (QStringList{u"Photo.JPG"_s, u"ｐｈｏｔｏ.jpg"_s}));
    EXPECT_EQ(files().CountFile(u"PHOTO.jpg"_s), 2);
    EXPECT_EQ(files().CountFile(u"photo"_s), 0);
    EXPECT_EQ(files().CountFile(u"photo.*"_s), 0);
    EXPECT_EQ(files().CountFile(u"photo.%"_s), 0);
}

TEST_F(FileRegister, ListsByDayNumberAndName) {
    add(u"z.gif"_s, kAllDays, 0);
    add(u"い.gif"_s, u"2004/05/06"_s, 2);
    add(u"B.gif"_s, u"2004/05/06"_s, 1);
    add(u"ア.gif"_s, u"2004/05/06"_s, 2);
    add(u"a.gif"_s, u"2004/05/06"_s, 1);
    add(u"x.gif"_s, u"2003/12/31"_s, 9);
    EXPECT_EQ(namesOf(files().ListFiles()),
              (QStringList{u"x.gif"_s, u"a.gif"_s, u"B.gif"_s, u"ア.gif"_s, u"い.gif"_s, u"z.gif"_s}));
}

TEST_F(FileRegister, DeletesByNameDayAndNumber) {
    add(u"a.gif"_s, u"2004/05/06"_s, 1);
    add(u"a.gif"_s, u"2004/05/06"_s, 2);
    add(u"a.gif"_s, u"2004/05/07"_s, 1);
    add(u"b.gif"_s, u"2004/05/06"_s, 1);
    files().DeleteFile(u"A.GIF"_s, u"2004/05/06"_s, 1);
    EXPECT_EQ(files().ListFiles().size(), 3U);
    EXPECT_EQ(files().CountFile(u"a.gif"_s), 2);
    files().DeleteFile(u"b.gif"_s, u"2004/05/06"_s, 2);
    EXPECT_EQ(files().CountFile(u"b.gif"_s), 1);
}

TEST_F(FileRegister, AMissingNameIsAnEmptyOne) {
    sql(u"INSERT INTO FileDB (FileName, Day, Number) VALUES (NULL, '2004/05/06', 1), (NULL, '2004/05/07', 1), "
        u"('', '2004/05/08', 1), ('a.gif', '2004/05/06', 1)"_s);
    for (const QString& name : {QString(), u""_s}) {
        EXPECT_EQ(files().CountFile(name), 3);
        EXPECT_EQ(files().FindFile(name).size(), 3U);
    }
    files().DeleteFile(files().FindFile(u""_s).front().name, u"2004/05/06"_s, 1);
    EXPECT_EQ(files().CountFile(u""_s), 2);
    files().DeleteFile(u""_s, u"2004/05/07"_s, 1);
    EXPECT_EQ(files().CountFile(u""_s), 1);
    files().DeleteFile(QString(), u"2004/05/08"_s, 1);
    EXPECT_EQ(namesOf(files().ListFiles()), QStringList{u"a.gif"_s});
}

TEST_F(FileRegister, DeletesBothRowsOfACommonFile) {
    add(u"all.css"_s, kAllDays, 0);
    files().addCommonFiles({u"all.css"_s}, SiteSide::Log);
    files().DeleteFile(u"all.css"_s, kAllDays, 0);
    EXPECT_EQ(files().CountFile(u"all.css"_s), 0);
}

TEST_F(FileRegister, FilesOfMonthGoByTheDateOfTheDay) {
    add(u"1"_s, u"2004/05/31"_s);
    add(u"2"_s, u"2004/5/3"_s);
    add(u"3"_s, u"2004-05-03"_s);
    add(u"4"_s, u"2004/06/01"_s);
    add(u"5"_s, kAllDays, 0);
    add(u"6"_s, u"2004/05"_s);
    add(u"7"_s, u"2004/05/01"_s, 1, true, true);
    sql(u"INSERT INTO FileDB (FileName, Day) VALUES ('8', NULL)"_s);
    // "2004/05" is the first of that month; the rows stand in the order in which they were added.
    EXPECT_EQ(namesOf(files().FilesOfMonth(u"2004/05"_s)), (QStringList{u"1"_s, u"2"_s, u"3"_s, u"6"_s, u"7"_s}));
    EXPECT_EQ(files().FilesOfMonth(u"2004/0_"_s).size(), 6U);
    EXPECT_TRUE(files().FilesOfMonth(u"2004"_s).empty());
}

TEST_F(FileRegister, FilesOfAPeriodCompareAsTextsAndLeaveLoggedOnesOut) {
    add(u"first"_s, u"2004/05/01"_s);
    add(u"last"_s, u"2004/05/31"_s, 1, true);
    add(u"logged"_s, u"2004/05/10"_s, 1, false, true);
    add(u"odd"_s, u"2004/5/3"_s);
    add(u"after"_s, u"2004/06/01"_s);
    add(u"all"_s, kAllDays, 0);
    EXPECT_EQ(namesOf(files().FilesOfPeriod(u"2004/05/01"_s, u"2004/05/31"_s)), (QStringList{u"first"_s, u"last"_s}));
}

TEST_F(FileRegister, CommonFilesAreThoseOfAllDays) {
    add(u"b.css"_s, kAllDays, 0);
    add(u"a.css"_s, kAllDays, 0, true);
    add(u"c.gif"_s, u"2004/05/06"_s);
    EXPECT_EQ(namesOf(files().CommonFiles()), (QStringList{u"b.css"_s, u"a.css"_s}));
    EXPECT_EQ(namesOf(files().CommonFilesToUpload()), QStringList{u"b.css"_s});
}

TEST_F(FileRegister, ImageFilesOfADayComeLastFirst) {
    add(u"dimage20040506_1.jpg"_s, u"2004/05/06"_s);
    add(u"DImage20040506_2.jpg"_s, u"2004/05/06"_s);
    add(u"ｄｉｍａｇｅ20040506_0.jpg"_s, u"2004/05/06"_s);
    add(u"dimage20040507_1.jpg"_s, u"2004/05/07"_s);
    add(u"my dimage.jpg"_s, u"2004/05/06"_s);
    EXPECT_EQ(files().ImageFilesOfDay(u"2004/05/06"_s),
              (QStringList{u"DImage20040506_2.jpg"_s, u"dimage20040506_1.jpg"_s, u"ｄｉｍａｇｅ20040506_0.jpg"_s}));
}

TEST_F(FileRegister, MarksRowsAsLoggedAndStillToGoUp) {
    for (const QString& day : {u"2004/05/06"_s, u"2004/05/07"_s, u"2004/05/08"_s})
        add(u"a.gif"_s, day, 1, true);
    std::vector<FileRow> rows = files().FindFile(u"a.gif"_s);
    files().markLogged({rows[0].id, rows[2].id});
    rows = files().FindFile(u"a.gif"_s);
    EXPECT_TRUE(rows[0].isLogged && !rows[0].isUploaded);
    EXPECT_TRUE(!rows[1].isLogged && rows[1].isUploaded);
    EXPECT_TRUE(rows[2].isLogged && !rows[2].isUploaded);
}

TEST_F(FileRegister, FilesToUploadAreTheWaitingOnesOfOneSideInTheOrderOfTheirRows) {
    add(u"b.gif"_s, u"2004/05/06"_s);
    add(u"a.gif"_s, kAllDays, 0);
    add(u"gone.gif"_s, u"2004/05/06"_s, 1, true);
    add(u"l.gif"_s, u"2004/04/06"_s, 1, false, true);
    add(u"gone too.gif"_s, u"2004/04/06"_s, 1, true, true);
    EXPECT_EQ(namesOf(files().filesToUpload(registers::SiteSide::Current)), (QStringList{u"b.gif"_s, u"a.gif"_s}));
    EXPECT_EQ(namesOf(files().filesToUpload(registers::SiteSide::Log)), QStringList{u"l.gif"_s});
    EXPECT_EQ(namesOf(files().filesSent()), (QStringList{u"gone.gif"_s, u"gone too.gif"_s}));
}

TEST_F(FileRegister, MarksOneRowAsGoneUp) {
    add(u"a.gif"_s, u"2004/05/06"_s);
    add(u"a.gif"_s, u"2004/05/06"_s, 2);
    const std::vector<FileRow> rows = files().filesToUpload(registers::SiteSide::Current);
    files().markUploaded(rows[0].id);
    const std::vector<FileRow> left = files().filesToUpload(registers::SiteSide::Current);
    ASSERT_EQ(left.size(), 1U);
    EXPECT_EQ(left[0].id, rows[1].id);
    files().markUploaded(rows[1].id + 1);
    EXPECT_EQ(files().filesToUpload(registers::SiteSide::Current).size(), 1U);
}

TEST_F(FileRegister, RefusesADoubleQuoteAndChangesNothing) {
    add(u"a\".gif"_s, u"2004/05/06"_s);
    const registers::FileRegister files = this->files();
    const QByteArray before = bytesOf(session.databaseFile());
    const QString bad = u"a\".gif"_s;
    const std::function<void()> operations[] = {
        [&] { files.FindFile(bad); },
        [&] { files.CountFile(bad); },
        [&] { files.DeleteFile(bad, u"2004/05/06"_s, 1); },
        [&] { files.DeleteFile(u"a"_s, bad, 1); },
        [&] { files.FilesOfMonth(bad); },
        [&] { files.FilesOfPeriod(bad, u"x"_s); },
        [&] { files.FilesOfPeriod(u"x"_s, bad); },
        [&] { files.ImageFilesOfDay(bad); },
        [&] {
            files.addCommonFiles({u"good.css"_s, bad}, SiteSide::Log);
        },
    };
    int number = 0;
    for (const auto& operation : operations) {
        EXPECT_TRUE(failureOf(operation).contains(session.databaseFile())) << number++;
        EXPECT_TRUE(bytesOf(session.databaseFile()) == before) << number;
    }
}

TEST_F(FileRegister, RefusesALoneBracketInAMonth) {
    EXPECT_THROW(files().FilesOfMonth(u"2004/["_s), platform::Failure);
}

} // namespace
} // namespace velloria::tests
