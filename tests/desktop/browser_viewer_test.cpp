#include "desktop/browser_home.h"

#include "browser/forms/frmGetImg.h"
#include "browser/forms/frmHTMLBrowser.h"
#include "browser/forms/frmPrevDiaryViewer.h"
#include "core/ini.h"
#include "desktop/twips.h"
#include "editor/forms/frmContents.h"
#include "site/find_page.h"
#include "site/same_day_page.h"

#include <QPushButton>
#include <QTreeWidget>

using namespace Qt::StringLiterals;
using namespace velloria::browser;

namespace velloria::tests {
namespace {

class Viewer : public BrowserHome {
protected:
    frmPrevDiaryViewer& viewer() { return context.windows.get<frmPrevDiaryViewer>(); }
    bool isOpen() { return context.windows.find<frmPrevDiaryViewer>() != nullptr; }

    void show(const QString& name) {
        viewer().show();
        viewer().Navigate(pagePath(name));
        EXPECT_TRUE(becomesTrue(viewer(), u"document.readyState == 'complete' && location.protocol == 'file:'"_s));
    }
    void showPage(const QByteArray& bytes) {
        writePage(u"oldtmp.htm"_s, bytes);
        show(u"oldtmp.htm"_s);
    }
    void click(const QString& element) { run(viewer(), element + u".click()"_s); }
    bool closes() {
        return waitFor([this] { return !isOpen(); });
    }
    QString place(const QString& section, const QString& key) {
        return core::ReadIni(session.DiaryIniFile, section, key);
    }
};

TEST_F(Viewer, IsCalledPastDiaries) {
    EXPECT_EQ(viewer().windowTitle(), u"過去の日記"_s);
    EXPECT_EQ(context.windows.get<frmHTMLBrowser>().windowTitle(), u"MiniBrowser"_s);
}

TEST_F(Viewer, IsClosedByALinkOfAnyCase) {
    for (const char* address : {"EVENT:CLOSE", "event:close", "Event:Close"}) {
        showPage("<a id=\"link\" href=\"" + QByteArray(address) + "\">close</a>");
        click(u"document.getElementById('link')"_s);
        EXPECT_TRUE(closes()) << address;
    }
}

TEST_F(Viewer, StaysForEveryOtherEvent) {
    showPage("still here <a id=\"link\" href=\"EVENT:OTHER\">other</a><a id=\"mark\" href=\"#mark\">mark</a>");
    click(u"document.getElementById('link')"_s);
    // The page follows its links in turn.
    click(u"document.getElementById('mark')"_s);
    EXPECT_TRUE(becomesTrue(viewer(), u"location.hash == '#mark'"_s));
    ASSERT_TRUE(isOpen());
    EXPECT_TRUE(viewer().isVisible());
    EXPECT_TRUE(textOf(viewer()).startsWith(u"still here"_s));
}

TEST_F(Viewer, IsClosedByTheButtonOfTheProgramsOwnPage) {
    write(u"2003/05/06"_s, u"last year"_s);
    site::MakeSameDayPage(context, pagePath(u"oldtmp.htm"_s), session.EnterDay);
    show(u"oldtmp.htm"_s);
    EXPECT_TRUE(textOf(viewer()).contains(u"last year"_s));
    click(u"document.getElementsByName('Close')[0]"_s);
    EXPECT_TRUE(closes());
}

TEST_F(Viewer, OpensTheWebInTheBrowserWindow) {
    showPage("<a id=\"link\" href=\"http://127.0.0.1:1/x\">web</a><a id=\"blank\" target=\"_blank\" "
             "href=\"http://127.0.0.1:1/y\">web</a>");
    click(u"document.getElementById('link')"_s);
    waitForDocument();
    EXPECT_EQ(browser().LocationURL(), u"http://127.0.0.1:1/x"_s);
    EXPECT_TRUE(browser().isVisible());
    browser().bDocumentComplete = false;
    click(u"document.getElementById('blank')"_s);
    waitForDocument();
    EXPECT_EQ(browser().LocationURL(), u"http://127.0.0.1:1/y"_s);
    EXPECT_TRUE(textOf(viewer()).contains(u"web"_s));
}

TEST_F(Viewer, ReadsItsPageAnew) {
    showPage("old");
    writePage(u"oldtmp.htm"_s, "new");
    viewer().Navigate(pagePath(u"oldtmp.htm"_s));
    EXPECT_TRUE(becomesTrue(viewer(), u"document.body.innerText == 'new'"_s));
}

TEST_F(Viewer, StartsAtItsOwnSizeAndKeepsAnother) {
    EXPECT_EQ(viewer().size(), QSize(480, 600));
    viewer().show();
    ASSERT_TRUE(becomesVisible(viewer()));
    viewer().setGeometry(30, 40, 500, 400);
    settle();
    viewer().close();
    EXPECT_TRUE(closes());
    EXPECT_EQ(place(u"PrevDiaryViewer"_s, u"Left"_s), u"450"_s);
    EXPECT_EQ(place(u"PrevDiaryViewer"_s, u"Top"_s), u"600"_s);
    EXPECT_EQ(place(u"PrevDiaryViewer"_s, u"Width"_s), u"7500"_s);
    EXPECT_EQ(place(u"PrevDiaryViewer"_s, u"Height"_s), u"6000"_s);
    EXPECT_EQ(viewer().size(), QSize(500, 400));
    EXPECT_EQ(viewer().pos(), QPoint(30, 40));
}

TEST_F(Viewer, IsKeptWhenTheProgramEnds) {
    viewer().resize(300, 200);
    context.windows.unload<frmPrevDiaryViewer>();
    EXPECT_EQ(place(u"PrevDiaryViewer"_s, u"Width"_s), u"4500"_s);
}

TEST_F(Viewer, OfTheCustomizeDialogKeepsItsWidth) {
    for (const QString& width : {u""_s, u"0"_s, u"-5"_s}) {
        core::WriteIni(session.DiaryIniFile, u"miniBrowser"_s, u"Width"_s, width);
        EXPECT_EQ(context.windows.get<frmHTMLBrowser>().width(), 600);
        context.windows.unload<frmHTMLBrowser>();
    }
    EXPECT_EQ(place(u"miniBrowser"_s, u"Width"_s), u"9000"_s);
    context.windows.get<frmHTMLBrowser>().resize(400, 300);
    context.windows.unload<frmHTMLBrowser>();
    EXPECT_EQ(place(u"miniBrowser"_s, u"Width"_s), u"6000"_s);
    EXPECT_EQ(context.windows.get<frmHTMLBrowser>().width(), 400);
}

// ---- entries

class EntryViewer : public Viewer {
protected:
    /// The page of the same day in other years, as the editor shows it.
    void showSameDay() {
        site::MakeSameDayPage(context, pagePath(u"oldtmp.htm"_s), session.EnterDay);
        viewer().showPage(u"過去の日記"_s, pagePath(u"oldtmp.htm"_s));
        EXPECT_TRUE(becomesTrue(viewer(), u"document.querySelectorAll('a[href^=\"event:\"]').length > 0"_s));
    }
    void showFound(const QString& word) {
        site::MakeFindPage(context, pagePath(u"findtmp.htm"_s), {word, std::nullopt, std::nullopt});
        viewer().showPage(u"found"_s, pagePath(u"findtmp.htm"_s));
        EXPECT_TRUE(becomesTrue(viewer(), u"document.querySelectorAll('a[href^=\"event:\"]').length > 0"_s));
    }
    QString links() {
        return run(viewer(), u"[...document.querySelectorAll('a[href^=\"event:\"]')].map(a => a.getAttribute('href') "
                             "+ '=' + a.innerText).join(' ')"_s)
            .toString();
    }
    void setCustomize(const QString& section, const QString& key, const QString& value) {
        core::WriteIni(session.CustIniFile, section, key, value);
    }
    QString caption() { return context.windows.get<editor::frmContents>().windowTitle(); }
    bool opens(const QString& wanted) {
        return waitFor([&] { return caption() == wanted; });
    }
};

TEST_F(EntryViewer, LinksTheDateOfEachEntry) {
    write(u"2002/05/06"_s, u"2002/05/06 is a title"_s);
    write(u"2003/05/06"_s, u"first"_s);
    write(u"2003/05/06"_s, u"second"_s, u"<h3><a name=\"2003/05/06\">no heading</a></h3>"_s);
    for (const QString& type : {u"0"_s, u"1"_s}) {
        setCustomize(u"Contents"_s, u"HTMLType"_s, type);
        showSameDay();
        EXPECT_EQ(links(), u"event:2003/05/06_1=2003/05/06 event:2003/05/06_2=2003/05/06 "
                           "event:2002/05/06_1=2002/05/06"_s);
        showFound(u"s"_s);
        EXPECT_EQ(links(), u"event:2003/05/06_1=2003/05/06 event:2003/05/06_2=2003/05/06 "
                           "event:2002/05/06_1=2002/05/06"_s);
    }
    EXPECT_FALSE(bytesOf(pagePath(u"oldtmp.htm"_s)).contains("event:2"));
}

TEST_F(EntryViewer, OpensTheEntryWhoseDateIsClicked) {
    write(u"2003/05/06"_s, u"first"_s);
    write(u"2003/05/06"_s, u"second"_s);
    showSameDay();
    click(u"document.querySelectorAll('a[href^=\"event:\"]')[0]"_s);
    EXPECT_TRUE(opens(u"2003/05/06分の日記[1/2]"_s)) << caption().toStdString();
    click(u"document.querySelectorAll('a[href^=\"event:\"]')[1]"_s);
    EXPECT_TRUE(opens(u"2003/05/06分の日記[2/2]"_s)) << caption().toStdString();
    EXPECT_EQ(control<QLineEdit>(context.windows.get<editor::frmContents>(), u"txtTitle"_s).text(), u"second"_s);
    EXPECT_TRUE(isOpen());
    sql(u"DELETE FROM Contents WHERE Number = 1"_s);
    click(u"document.querySelectorAll('a[href^=\"event:\"]')[0]"_s);
    EXPECT_TRUE(waitFor([this] { return panel() == u"2003/05/06の1番目の日記は見つかりません。"_s; }));
}

TEST_F(EntryViewer, BearsTheStyleOfTheCustomizeSet) {
    write(u"2003/05/06"_s, u"first"_s);
    setCustomize(u"General"_s, u"StyleSheetURL"_s, u"own.css"_s);
    writePage(u"own.css"_s, "body { letter-spacing: 3px }");
    writePage(u"Customize/HeadTag.htm"_s, "<meta name=x><style>body { word-spacing: 5px }</style>"
                                          "<script>var ran = 1</script>");
    setCustomize(u"General"_s, u"HeadTag"_s, u"HeadTag"_s);
    showSameDay();
    EXPECT_TRUE(becomesTrue(viewer(), u"getComputedStyle(document.body).letterSpacing == '3px'"_s));
    EXPECT_EQ(run(viewer(), u"getComputedStyle(document.body).wordSpacing"_s).toString(), u"5px"_s);
    EXPECT_EQ(run(viewer(), u"typeof ran"_s).toString(), u"undefined"_s);
}

TEST_F(EntryViewer, StaysAboveTheMainWindowAndClosesByEscape) {
    write(u"2003/05/06"_s, u"first"_s);
    showSameDay();
    EXPECT_EQ(viewer().windowHandle()->transientParent(), top().windowHandle());
    EXPECT_TRUE(viewer().isWindow());
    ASSERT_TRUE(becomesActive(viewer()));
    QTest::mouseClick(viewOf(viewer()).focusProxy(), Qt::LeftButton, Qt::NoModifier, {20, 200});
    EXPECT_TRUE(
        doUntil([this] { QTest::keyClick(viewer().windowHandle(), Qt::Key_Escape); }, [this] { return !isOpen(); }));
}

TEST_F(EntryViewer, ComesUpBesideTheEditorUnlessAPlaceIsKept) {
    write(u"2003/05/06"_s, u"first"_s);
    auto& editor = context.windows.get<editor::frmContents>();
    editor.place({300, 20, 420, 600});
    editor.showChild();
    settle();
    const auto editorOnScreen = [&] { return QRect(editor.mapToGlobal(QPoint()), editor.size()); };
    showSameDay();
    EXPECT_FALSE(viewer().frameGeometry().intersects(editorOnScreen()));
    EXPECT_EQ(viewer().size(), QSize(480, 600));

    // Whoever put it above the editor has it there again, until they want to write.
    viewer().setGeometry(editorOnScreen());
    settle();
    viewer().close();
    ASSERT_TRUE(closes());
    showSameDay();
    EXPECT_TRUE(viewer().frameGeometry().intersects(editorOnScreen()));
    click(u"document.querySelector('a[href^=\"event:\"]')"_s);
    EXPECT_TRUE(opens(u"2003/05/06分の日記[1/1]"_s)) << caption().toStdString();
    EXPECT_TRUE(waitFor([&] { return !viewer().frameGeometry().intersects(editorOnScreen()); }));
}

TEST_F(EntryViewer, ColoursLinksAsTheMonthPageDoes) {
    write(u"2003/05/06"_s, u"first"_s, u"<a id=own href=own.htm>own</a>"_s);
    setCustomize(u"Body"_s, u"LinkColor"_s, u"#112233"_s);
    setCustomize(u"Body"_s, u"VLinkColor"_s, u"'\\);"_s);
    const QString isColoured = u"getComputedStyle(document.getElementById('own')).color == 'rgb(17, 34, 51)'"_s;
    showSameDay();
    EXPECT_TRUE(becomesTrue(viewer(), isColoured));
    showFound(u"first"_s);
    EXPECT_TRUE(becomesTrue(viewer(), isColoured));
    EXPECT_FALSE(bytesOf(pagePath(u"oldtmp.htm"_s)).contains("#112233"));
}

class ImageChoice : public DesktopHome {
protected:
    QTreeWidget& list() { return control<QTreeWidget>(dialog, u"ListView1"_s); }
    void check(int row) { list().topLevelItem(row)->setCheckState(0, Qt::Checked); }
    bool isChecked(int row) { return list().topLevelItem(row)->checkState(0) == Qt::Checked; }
    void click(const QString& button) { control<QPushButton>(dialog, button).click(); }

    frmGetImg dialog{context};
};

TEST_F(ImageChoice, TakesThreeImagesAndNoFourth) {
    writeFile(session.DataPath + u"b.gif"_s, "x");
    dialog.fill(u"<IMG SRC=a.gif><IMG SRC=b.gif><IMG SRC=c.gif><IMG SRC=d.gif>"_s);
    ASSERT_EQ(list().topLevelItemCount(), 4);
    EXPECT_EQ(list().topLevelItem(0)->text(2), QString());
    EXPECT_EQ(list().topLevelItem(1)->text(2), u"OK"_s);
    for (const int row : {3, 1, 0, 2})
        check(row);
    EXPECT_FALSE(isChecked(2));
    EXPECT_TRUE(isChecked(3));
    click(u"Btn_OK"_s);
    EXPECT_EQ(dialog.Result, u"OK"_s);
    EXPECT_EQ(dialog.Images1, session.DataPath + u"a.gif"_s);
    EXPECT_EQ(dialog.Images2, session.DataPath + u"b.gif"_s);
    EXPECT_EQ(dialog.Images3, session.DataPath + u"d.gif"_s);
}

TEST_F(ImageChoice, TellsHowItWasLeft) {
    dialog.fill(u"<IMG SRC=a.gif>"_s);
    check(0);
    click(u"Btn_Close"_s);
    EXPECT_EQ(dialog.Result, u"Cancel"_s);
    click(u"Btn_End"_s);
    EXPECT_EQ(dialog.Result, u"Exit"_s);
    dialog.close();
    EXPECT_EQ(dialog.Images1, QString());
}

} // namespace
} // namespace velloria::tests
