#include "site/site_home.h"

#include <QDateTime>
#include <QFile>
#include <QFileInfo>

using namespace Qt::StringLiterals;

namespace velloria::tests {
namespace {

class UploadListOfAMonth : public SiteHome {
protected:
    void writeDays(std::initializer_list<int> days) {
        for (const int day : days)
            write(u"2004/05/%1"_s.arg(day, 2, 10, QChar(u'0')), u"a"_s);
    }
};

TEST_F(UploadListOfAMonth, NamesFeedsThePageAndItsFrames) {
    writeDays({6});
    turnFeedsOn();
    const QStringList feeds{u"site,x_RSS091.xml"_s, u"site,x_RSS100.xml"_s, u"site,x_RSS200.xml"_s,
                            u"site,x_ATOM.xml"_s};
    makeMonth();
    EXPECT_EQ(uploadRows(), feeds + QStringList{u"site,x.htm"_s});
    setSetting(keys::frame::kFrameOn, u"1"_s);
    makeMonth();
    EXPECT_EQ(uploadRows(), feeds + (QStringList{u"site,x.htm"_s, u"site,x_D.htm"_s, u"site,x_C.htm"_s}));
}

TEST_F(UploadListOfAMonth, NamesDividedPagesAfterTheDiaryFile) {
    writeDays({4, 5, 6});
    divide(1, true);
    makeMonth();
    EXPECT_EQ(uploadRows(), (QStringList{u"site,x.htm"_s, u"site,x_01.htm"_s, u"site,x_02.htm"_s}));
    divide(1, false);
    makeMonth();
    EXPECT_EQ(uploadRows(), (QStringList{u"site,x.htm"_s, u"site,x_01.htm"_s, u"site,x_02.htm"_s, u"site,x_03.htm"_s}));
    setSetting(keys::frame::kFrameOn, u"1"_s);
    divide(2, true);
    makeMonth();
    EXPECT_EQ(uploadRows(), (QStringList{u"site,x.htm"_s, u"site,x_D.htm"_s, u"site,x_C.htm"_s, u"site,x_D_01.htm"_s}));
}

TEST_F(UploadListOfAMonth, NamesDayFilesButForTheNewestDayOnTop) {
    writeDays({4, 5, 5, 6, 6});
    writePrivate(u"2004/05/03"_s, u"secret"_s);
    divideByDay(true);
    makeMonth();
    EXPECT_EQ(uploadRows(), (QStringList{u"site,x.htm"_s, u"site,2004_05_05.htm"_s, u"site,2004_05_04.htm"_s}));
    divideByDay(false);
    makeMonth();
    EXPECT_EQ(uploadRows(), (QStringList{u"site,x.htm"_s, u"site,2004_05_06.htm"_s, u"site,2004_05_05.htm"_s,
                                         u"site,2004_05_04.htm"_s}));
}

TEST_F(UploadListOfAMonth, DayFilesOfFramesHaveNoSuffix) {
    writeDays({5, 6});
    divideByDay(true);
    setSetting(keys::frame::kFrameOn, u"1"_s);
    makeMonth();
    EXPECT_EQ(uploadRows(),
              (QStringList{u"site,x.htm"_s, u"site,x_D.htm"_s, u"site,x_C.htm"_s, u"site,2004_05_05.htm"_s}));
}

TEST_F(UploadListOfAMonth, OfALogIsAFileOfItsOwn) {
    writeDays({6});
    makeMonth(u"2004/04"_s);
    const QByteArray before = bytesOf(session.UserPath + u"upload.tmp"_s);
    makeLog();
    EXPECT_EQ(uploadRows(u"uplogtmp.tmp"_s), QStringList{u"site,x.htm"_s});
    EXPECT_EQ(bytesOf(session.UserPath + u"upload.tmp"_s), before);
}

TEST_F(UploadListOfAMonth, IsReplacedAndEveryRowNamesAFile) {
    writeDays({3, 4, 5, 6});
    turnFeedsOn();
    divide(1, true);
    makeMonth();
    EXPECT_EQ(uploadRows().size(), 8);
    for (const QString& row : uploadRows())
        EXPECT_TRUE(exists(path(QString(row).replace(u',', u'/')))) << row.toStdString();
    sql(u"DELETE FROM Contents WHERE Day < '2004/05/06'"_s);
    removeSetting(keys::rss::kRSSOn);
    makeMonth();
    EXPECT_EQ(uploadRows(), QStringList{u"site,x.htm"_s});
}

TEST_F(UploadListOfAMonth, GivesTheFolderWithoutItsLastSeparator) {
    makeMonth();
    EXPECT_EQ(bytesOf(session.UserPath + u"upload.tmp"_s), path(u"site"_s).toUtf8() + ",x.htm\r\n");
}

TEST_F(UploadListOfAMonth, IsLeftAloneWhenNoneIsAskedFor) {
    const QString list = session.UserPath + u"upload.tmp"_s;
    writeFile(list, "old list");
    QFile file(list);
    ASSERT_TRUE(file.open(QIODevice::ReadWrite));
    ASSERT_TRUE(file.setFileTime(QDateTime::fromSecsSinceEpoch(1000000000), QFileDevice::FileModificationTime));
    file.close();
    makePreview();
    EXPECT_EQ(bytesOf(list), "old list");
    EXPECT_EQ(QFileInfo(list).lastModified().toSecsSinceEpoch(), 1000000000);
}

} // namespace
} // namespace velloria::tests
