#include "shell/shutdown.h"

#include "core/upload_list.h"
#include "support/test_home.h"

#include <QDir>
#include <QRegularExpression>

using namespace Qt::StringLiterals;

namespace velloria::tests {
namespace {

class Shutdown : public TestHome {
protected:
    void put(const QString& name, const QByteArray& bytes = "somebody's own") {
        writeFile(session.DataPath + name, bytes);
    }
    QStringList left() const {
        return namesOf(session.DataPath).filter(QRegularExpression(u"\\.(htm|HTM|html|xml)$"_s));
    }
    QStringList kept() const { return namesOf(session.DataPath + u"Kept"_s); }

    static QStringList namesOf(const QString& folder) {
        QStringList names = QDir(folder).entryList(QDir::Files);
        names.sort();
        return names;
    }
};

TEST_F(Shutdown, RemovesTheLocalPagesWithTheirParts) {
    for (const QString& name :
         {u"tmp.htm"_s, u"tmp_01.htm"_s, u"tmp_C.htm"_s, u"tmp_D.htm"_s, u"tmp_D_01.htm"_s, u"Customize.htm"_s,
          u"oldtmp.htm"_s, u"findtmp.htm"_s, u"VellInfo_result.htm"_s, u"tmp_RSS091.xml"_s, u"tmp_ATOM.xml"_s})
        put(name);
    shell::removeGeneratedPages(session);
    EXPECT_EQ(left(), QStringList());
    EXPECT_EQ(kept(), QStringList());
}

TEST_F(Shutdown, RemovesWhatNamesTheProgramOrStandsInAList) {
    put(u"2004_05_06.htm"_s, "<HTML><meta name=Generator content=\"Velloria v2.2.0\">");
    put(u"x_RSS200.xml"_s, "<rss><generator>Velloria v2.2.0</generator>");
    put(u"x_C.htm"_s, "<HTML>");
    core::writeUploadList(session.UserPath + u"uploadold.tmp"_s, {{session.DataPath.chopped(1), u"x_C.htm"_s}});
    shell::removeGeneratedPages(session);
    EXPECT_EQ(left(), QStringList());
    EXPECT_EQ(kept(), QStringList());
}

TEST_F(Shutdown, KeepsWhatSomebodyElseMade) {
    put(u"recipe.htm"_s);
    put(u"tmp_notes.htm"_s);
    put(u"data.xml"_s);
    put(u"PAGE.HTM"_s);
    put(u"page.html"_s);
    QDir(session.DataPath).mkpath(u"deep"_s);
    put(u"deep/page.htm"_s);
    shell::removeGeneratedPages(session);
    EXPECT_EQ(left(), QStringList{u"page.html"_s});
    EXPECT_EQ(kept(), (QStringList{u"PAGE.HTM"_s, u"data.xml"_s, u"recipe.htm"_s, u"tmp_notes.htm"_s}));
    EXPECT_TRUE(exists(session.DataPath + u"deep/page.htm"_s));
}

TEST_F(Shutdown, KeepsASecondFileOfANameBesideTheFirst) {
    put(u"recipe.htm"_s, "one");
    shell::removeGeneratedPages(session);
    put(u"recipe.htm"_s, "two");
    shell::removeGeneratedPages(session);
    EXPECT_EQ(bytesOf(session.DataPath + u"Kept/recipe.htm"_s), "one");
    EXPECT_EQ(bytesOf(session.DataPath + u"Kept/recipe (2).htm"_s), "two");
}

TEST_F(Shutdown, KeepsASecondFileWhoseNameLooksLikeAPattern) {
    for (const char* bytes : {"one", "two"}) {
        put(u"%2 of %1.htm"_s, bytes);
        shell::removeGeneratedPages(session);
    }
    EXPECT_EQ(kept(), (QStringList{u"%2 of %1 (2).htm"_s, u"%2 of %1.htm"_s}));
}

TEST_F(Shutdown, NamesAFileThatStaysAndDoesTheRest) {
    writeFile(session.DataPath + u"Kept"_s, "no folder");
    put(u"a.htm"_s);
    put(u"tmp.htm"_s);
    EXPECT_NE(failureOf([&] { shell::removeGeneratedPages(session); }), u""_s);
    EXPECT_EQ(left(), QStringList{u"a.htm"_s});
}

} // namespace
} // namespace velloria::tests
