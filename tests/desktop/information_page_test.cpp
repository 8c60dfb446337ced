// The page about the diary in the browser, made by the plug-in that comes along.
#include "desktop/browser_home.h"

#include "editor/forms/frmContents.h"

#include <QFile>

using namespace Qt::StringLiterals;
using namespace velloria::browser;

namespace velloria::tests {
namespace {

class InformationInTheBrowser : public BrowserHome {
protected:
    void click(const QString& link) { run(browser(), u"document.querySelector('%1').click()"_s.arg(link)); }
    QString caption() { return context.windows.get<editor::frmContents>().windowTitle(); }
    bool opens(const QString& wanted) {
        return waitFor([&] { return caption() == wanted; });
    }
};

TEST_F(InformationInTheBrowser, ComesOfTheMenuAndLeadsToTheDays) {
    QFile::copy(QStringLiteral(VELLORIA_PROGRAM_FOLDER "/VellInfo.dll"), session.MyPath + u"VellInfo.dll"_s);
    write(u"2003/05/06"_s, u"short"_s, u"雨"_s);
    write(u"2004/01/02"_s, u"long"_s, u"<p>図書館で図書館の本を読む。</p>"_s);
    write(u"2004/01/02"_s, u"<b>longest</b>"_s, u"<p>図書館で図書館の本を読んだ。コーヒーも飲んだ。</p>"_s);
    top().command(u"MnuVellInfo"_s)->trigger();
    EXPECT_EQ(boxes(), QStringList());
    ASSERT_EQ(desk.texts(u"navigate"_s), QStringList{pagePath(u"VellInfo_result.htm"_s)});
    open(desk.texts(u"navigate"_s).last());
    EXPECT_EQ(browser().windowTitle(), u"Browser / 日記情報"_s);
    EXPECT_EQ(run(browser(), u"document.getElementById('entries').innerText"_s).toString(), u"3件"_s);
    EXPECT_EQ(run(browser(), u"document.querySelector('#t-kanji tbody tr').textContent"_s).toString(), u"図書館4"_s);
    EXPECT_TRUE(textOf(browser()).contains(u"<b>longest</b>"_s));
    EXPECT_EQ(run(browser(), u"document.documentElement.scrollWidth - innerWidth <= 0"_s).toBool(), true);

    click(u"#t-longest a"_s);
    EXPECT_TRUE(opens(u"2004/01/02分の日記[2/2]"_s)) << caption().toStdString();
    click(u"#t-shortest a"_s);
    EXPECT_TRUE(opens(u"2003/05/06分の日記[1/1]"_s)) << caption().toStdString();
    EXPECT_EQ(browser().windowTitle(), u"Browser / 日記情報"_s);
}

TEST_F(InformationInTheBrowser, IsTheOnlyPageThatLeadsToTheEditor) {
    write(u"2003/05/06"_s, u"first"_s);
    const QByteArray link = "<a id=entry href=\"event:2003/05/06_1\">a</a><a id=mark href=\"#mark\">b</a>";
    const QString before = caption();
    for (const QString& name : {u"tmp.htm"_s, u"other.htm"_s}) {
        writePage(name, link);
        open(pagePath(name));
        click(u"#entry"_s);
        click(u"#mark"_s); // the page follows its links in turn
        EXPECT_TRUE(becomesTrue(browser(), u"location.hash == '#mark'"_s));
        settle();
        EXPECT_EQ(caption(), before) << name.toStdString();
    }
    writePage(u"VellInfo_result.htm"_s, link);
    open(pagePath(u"VellInfo_result.htm"_s));
    click(u"#entry"_s);
    EXPECT_TRUE(opens(u"2003/05/06分の日記[1/1]"_s)) << caption().toStdString();
}

} // namespace
} // namespace velloria::tests
