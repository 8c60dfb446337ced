#include "site/local_page.h"

#include "site/site_home.h"

#include <QDir>

using namespace Qt::StringLiterals;

namespace velloria::tests {
namespace {

class LocalPage : public SiteHome {
protected:
    /// All that makes a month page more than one file.
    void splitPages() {
        setSetting(keys::frame::kFrameOn, u"1"_s);
        divide(1, false);
        turnFeedsOn();
    }
    QStringList pagesInData() const {
        return QDir(session.DataPath).entryList({u"*.htm"_s, u"*.xml"_s}, QDir::Files, QDir::Name);
    }
};

TEST_F(LocalPage, IsKnownByItsNameWhateverItsCaseAndEnding) {
    for (const QString& name :
         {u"tmp.htm"_s, u"tmp"_s, u"tmp.html"_s, u"TMP.HTM"_s, u"tmp_C.htm"_s, u"tmp_d.htm"_s, u"tmp_01.htm"_s,
          u"tmp_100.htm"_s, u"tmp_D_01.htm"_s, u"tmp_RSS091.xml"_s, u"Customize.htm"_s, u"Customize_D.htm"_s,
          u"customize_atom.xml"_s, u"oldtmp.htm"_s, u"findtmp.htm"_s, u"VELLINFO_result.htm"_s})
        EXPECT_TRUE(site::isLocalPage(name)) << name.toStdString();
}

TEST_F(LocalPage, IsNoneWhoseNameOnlyBeginsLikeIt) {
    for (const QString& name : {u"tmp_notes.htm"_s, u"tmp_.htm"_s, u"tmp_1.htm"_s, u"tmp_C_01.htm"_s, u"tmp_01_D.htm"_s,
                                u"tmpx.htm"_s, u"xtmp.htm"_s, u"tmp.old.htm"_s, u"Customize_x.htm"_s,
                                u"Customized.htm"_s, u"oldtmp_01.htm"_s, u"findtmp_C.htm"_s, u".htm"_s, u""_s})
        EXPECT_FALSE(site::isLocalPage(name)) << name.toStdString();
}

TEST_F(LocalPage, LiesInTheDataFolderAlone) {
    EXPECT_TRUE(site::isLocalPage(session, session.DataPath + u"tmp.htm"_s));
    EXPECT_TRUE(site::isLocalPage(session, session.DataPath + u"../UserData/tmp.htm"_s));
    EXPECT_FALSE(site::isLocalPage(session, session.DataPath + u"DiaryLog/tmp.htm"_s));
    EXPECT_FALSE(site::isLocalPage(session, path(u"site/tmp.htm"_s)));
}

TEST_F(LocalPage, IsEverythingThatAPreviewLeaves) {
    write(u"2004/05/05"_s, u"a"_s);
    write(u"2004/05/06"_s, u"b"_s);
    splitPages();
    saver().SaveTmpFile();
    const QStringList pages = pagesInData();
    EXPECT_GE(pages.size(), 9) << pages.join(u' ').toStdString(); // frame set, two frames, two days, four feeds
    for (const QString& page : pages)
        EXPECT_TRUE(site::isLocalPage(page)) << page.toStdString();
}

TEST_F(LocalPage, TouchesNoFileOfASiteWithALikeName) {
    write(u"2004/05/05"_s, u"public"_s);
    write(u"2004/05/06"_s, u"public"_s);
    writePrivate(u"2004/05/06"_s, u"秘密"_s);
    splitPages();
    for (const QString& name : {u"tmp_x.htm"_s, u"Customize_.htm"_s, u"tmp_1.htm"_s, u"tmp_C_01.htm"_s}) {
        ASSERT_EQ(saver().saveAs(session.DataPath + name), platform::Outcome::Done) << name.toStdString();
        saver().SaveTmpFile();
        for (const QString& row : uploadRows()) {
            const QString page = row.section(u',', 1);
            EXPECT_FALSE(site::isLocalPage(page)) << page.toStdString();
            EXPECT_TRUE(lacks(pageOf(session.DataPath + page), u"秘密"_s)) << page.toStdString();
        }
    }
}

} // namespace
} // namespace velloria::tests
