#include "desktop/browser_home.h"

#include "core/ini.h"

#include <QAction>
#include <QToolBar>
#include <QWebEngineScript>

using namespace Qt::StringLiterals;

namespace velloria::tests {
namespace {

class Browser : public BrowserHome {
protected:
    QString fileAddress(const QString& name, const QString& mark = {}) const {
        QUrl url = QUrl::fromLocalFile(pagePath(name));
        if (!mark.isEmpty())
            url.setFragment(mark);
        return QString::fromLatin1(url.toEncoded());
    }

    /// A page high enough to have something to scroll, with a mark for each of two days.
    void writeDays(const QByteArray& text) {
        const QByteArray gap = "<div style=\"height:3000px\">" + text + "</div>";
        writePage(u"tmp.htm"_s, "<html><head><title>" + text + "</title></head><body>" + gap +
                                    "<a name=\"2004/05/06\">six</a>" + gap + "<a name=\"2004/05/07\">seven</a>" + gap +
                                    "</body></html>");
    }
    /// How far the mark is from the window's upper edge.
    double distanceOf(const QString& mark) {
        return run(browser(), u"document.getElementsByName('%1')[0].getBoundingClientRect().top"_s.arg(mark))
            .toDouble();
    }
    bool isAtMark(const QString& mark) {
        return waitFor([&] { return std::abs(distanceOf(mark)) < 40; });
    }
    void press(int button) { control<QToolBar>(browser(), u"Toolbar1"_s).actions().at(button - 1)->trigger(); }
};

TEST_F(Browser, ShowsAPageAndTellsItsNameAndAddress) {
    writePage(u"a.htm"_s, "<title>\x93\xFA\x8B\x4C</title>text");
    browser().showChild();
    open(pagePath(u"a.htm"_s));
    EXPECT_EQ(textOf(browser()), u"text"_s);
    EXPECT_EQ(browser().windowTitle(), u"Browser / 日記"_s);
    EXPECT_EQ(browser().LocationName(), u"日記"_s);
    EXPECT_EQ(browser().LocationURL(), fileAddress(u"a.htm"_s));
    EXPECT_EQ(box(u"cmbURL"_s).currentText(), fileAddress(u"a.htm"_s));
    EXPECT_EQ(entriesOf(box(u"cmbURL"_s)), QStringList{fileAddress(u"a.htm"_s)});
    EXPECT_EQ(panel(), u"Webページ表示完了！"_s);
}

TEST_F(Browser, ListsAnAddressOnce) {
    writePage(u"a.htm"_s, "a");
    writePage(u"b.htm"_s, "b");
    for (const QString& name : {u"a.htm"_s, u"b.htm"_s, u"a.htm"_s})
        open(pagePath(name));
    EXPECT_EQ(entriesOf(box(u"cmbURL"_s)), (QStringList{fileAddress(u"a.htm"_s), fileAddress(u"b.htm"_s)}));
}

TEST_F(Browser, NamesAPageWithoutATitleByItsFile) {
    writePage(u"a.htm"_s, "text");
    open(pagePath(u"a.htm"_s));
    EXPECT_EQ(browser().LocationName(), u"a.htm"_s);
}

TEST_F(Browser, ReadsAPageThatNamesNoEncodingAsJapanese) {
    writePage(u"a.htm"_s, "<body>\x93\xFA");
    open(pagePath(u"a.htm"_s));
    EXPECT_EQ(textOf(browser()), u"日"_s);
    writePage(u"b.htm"_s, "<meta charset=\"utf-8\"><body>\xE6\x97\xA5");
    open(pagePath(u"b.htm"_s));
    EXPECT_EQ(textOf(browser()), u"日"_s);
}

TEST_F(Browser, ShowsTheManual) {
    open(session.MyPath + u"SimpleManual.mht"_s);
    EXPECT_EQ(browser().LocationName(), u"Velloria 簡単マニュアル"_s);
    // Scripts of such a page do not run, so its text is asked for from outside its world.
    QString text;
    viewOf(browser()).page()->runJavaScript(u"document.body.innerText"_s, QWebEngineScript::ApplicationWorld,
                                            [&](const QVariant& value) { text = value.toString(); });
    EXPECT_TRUE(waitFor([&] { return text.contains(u"日記"_s); })) << text.toStdString();
}

TEST_F(Browser, FindsAFileWhateverItsFolderIsCalled) {
    const QString folder = path(u"日記 #1 100%"_s);
    ASSERT_TRUE(QDir().mkdir(folder));
    writeFile(folder + u"/tmp.htm"_s, "<body>found<p style=\"height:5000px\"><a name=\"2004/05/06\">six</a>");
    open(folder + u"/tmp.htm#2004/05/06"_s);
    EXPECT_TRUE(textOf(browser()).startsWith(u"found"_s));
    EXPECT_EQ(run(browser(), u"location.hash"_s).toString(), u"#2004/05/06"_s);
}

TEST_F(Browser, StartsTheEngineBehindTheNavigationThatWaitsForIt) {
    writePage(u"a.htm"_s, "text");
    EXPECT_EQ(browser().findChild<QWebEngineView*>(), nullptr);
    browser().Navigate(pagePath(u"a.htm"_s));
    EXPECT_EQ(browser().findChild<QWebEngineView*>(), nullptr);
    waitForDocument();
    EXPECT_EQ(textOf(browser()), u"text"_s);
}

TEST_F(Browser, StartsTheEngineWithoutTakingTheMainWindowAway) {
    const WId window = top().winId();
    writePage(u"a.htm"_s, "text");
    browser().showChild();
    open(pagePath(u"a.htm"_s));
    EXPECT_EQ(top().winId(), window);
    EXPECT_TRUE(top().isActiveWindow());
}

TEST_F(Browser, DropsWhatWasToComeWhenItIsStopped) {
    writePage(u"a.htm"_s, "text");
    browser().Navigate(pagePath(u"a.htm"_s));
    browser().Stop();
    EXPECT_EQ(browser().LocationURL(), QString());
    EXPECT_TRUE(nothingElseComes(0));
    EXPECT_EQ(browser().LocationURL(), fileAddress(u"last.htm"_s));
}

TEST_F(Browser, ShowsTheNewTextOfAPageThatIsShownAlready) {
    writeDays("old");
    open(pagePath(u"tmp.htm#2004/05/06"_s));
    EXPECT_TRUE(isAtMark(u"2004/05/06"_s));
    run(browser(), u"window.scrollTo(0, 100)"_s);
    writeDays("new");
    open(pagePath(u"tmp.htm#2004/05/06"_s));
    EXPECT_EQ(browser().LocationName(), u"new"_s);
    EXPECT_TRUE(isAtMark(u"2004/05/06"_s));
}

TEST_F(Browser, ShowsTheNewTextAtAnotherMark) {
    writeDays("0");
    open(pagePath(u"tmp.htm#2004/05/06"_s));
    for (int i = 1; i <= 20; ++i) {
        const QString mark = i % 2 ? u"2004/05/07"_s : u"2004/05/06"_s;
        writeDays(QByteArray::number(i));
        browser().Stop();
        open(pagePath(u"tmp.htm#"_s + mark));
        EXPECT_EQ(browser().LocationName(), QString::number(i));
        EXPECT_EQ(browser().LocationURL(), fileAddress(u"tmp.htm"_s, mark));
        EXPECT_TRUE(isAtMark(mark)) << i << " " << distanceOf(mark);
    }
}

TEST_F(Browser, ShowsTheNewTextWithTheMarkGoneOrNew) {
    writeDays("0");
    open(pagePath(u"tmp.htm"_s));
    writeDays("1");
    open(pagePath(u"tmp.htm#2004/05/07"_s));
    EXPECT_EQ(browser().LocationName(), u"1"_s);
    EXPECT_TRUE(isAtMark(u"2004/05/07"_s));
    writeDays("2");
    open(pagePath(u"tmp.htm"_s));
    EXPECT_EQ(browser().LocationName(), u"2"_s);
    EXPECT_EQ(browser().LocationURL(), fileAddress(u"tmp.htm"_s));
}

TEST_F(Browser, ShowsTheLastOfSeveralNavigationsAtOnce) {
    writeDays("old");
    open(pagePath(u"tmp.htm#2004/05/06"_s));
    writeDays("new");
    browser().Navigate(pagePath(u"tmp.htm#2004/05/07"_s));
    browser().Navigate(pagePath(u"tmp.htm"_s));
    browser().Stop();
    open(pagePath(u"tmp.htm#2004/05/07"_s));
    EXPECT_TRUE(isAtMark(u"2004/05/07"_s));
    EXPECT_EQ(run(browser(), u"document.title"_s).toString(), u"new"_s);
}

TEST_F(Browser, TellsAMarkThatSomebodyClicked) {
    writePage(u"a.htm"_s, "<a id=\"link\" href=\"#below\">go</a><p style=\"height:5000px\"><a name=\"below\">x</a>");
    open(pagePath(u"a.htm"_s));
    browser().bDocumentComplete = false;
    run(browser(), u"document.getElementById('link').click()"_s);
    waitForDocument();
    EXPECT_EQ(browser().LocationURL(), fileAddress(u"a.htm"_s, u"below"_s));
}

TEST_F(Browser, TellsAFrameOfItsOwn) {
    writePage(u"inner.htm"_s, "inner");
    writePage(u"a.htm"_s, "<iframe id=\"frame\"></iframe>");
    open(pagePath(u"a.htm"_s));
    const QString address = browser().LocationURL();
    browser().bDocumentComplete = false;
    run(browser(), u"document.getElementById('frame').src = 'inner.htm'"_s);
    waitForDocument();
    EXPECT_EQ(browser().LocationURL(), address);
}

TEST_F(Browser, TellsAPageThatIsMissing) {
    open(pagePath(u"missing.htm"_s));
    EXPECT_EQ(browser().LocationURL(), fileAddress(u"missing.htm"_s));
}

TEST_F(Browser, GoesNowhereForWhatIsNoAddress) {
    for (const QString& address : {u""_s, u"tmp.htm"_s, u"two words"_s, u"javascript:alert(1)"_s, u"event:close"_s,
                                   u"mailto:a@example.com"_s, u"chrome://version"_s})
        browser().Navigate(address);
    browser().showChild();
    EXPECT_TRUE(nothingElseComes(0));
    EXPECT_EQ(entriesOf(box(u"cmbURL"_s)), QStringList(fileAddress(u"last.htm"_s)));
}

TEST_F(Browser, LeavesTheFocusWhereItIs) {
    auto& words = box(u"cmbFind"_s);
    browser().showChild();
    words.setFocus();
    writePage(u"a.htm"_s, "<input autofocus>");
    open(pagePath(u"a.htm"_s));
    EXPECT_TRUE(words.hasFocus());
}

TEST_F(Browser, PreviewsTheMonthByItsFirstButton) {
    write(u"2004/05/06"_s, u"title"_s, u"preview of today"_s);
    browser().showChild();
    desk.events = {};
    press(1);
    waitForDocument();
    EXPECT_TRUE(textOf(browser()).contains(u"preview of today"_s));
    EXPECT_EQ(browser().LocationURL(), fileAddress(u"tmp.htm"_s));
    EXPECT_EQ(desk.texts(u"status"_s).first(), u"Webページ表示中..."_s);
}

TEST_F(Browser, HasNothingBehindItsSecondButton) {
    QAction& second = *control<QToolBar>(browser(), u"Toolbar1"_s).actions().at(1);
    desk.events = {};
    second.trigger();
    EXPECT_TRUE(desk.events.isEmpty());
}

TEST_F(Browser, ReadsThePageAnewByItsThirdButton) {
    writePage(u"a.htm"_s, "old");
    open(pagePath(u"a.htm"_s));
    writePage(u"a.htm"_s, "new");
    browser().bDocumentComplete = false;
    press(3);
    waitForDocument();
    EXPECT_EQ(textOf(browser()), u"new"_s);
}

TEST_F(Browser, GoesBackAndForward) {
    writePage(u"a.htm"_s, "a");
    writePage(u"b.htm"_s, "b");
    open(pagePath(u"a.htm"_s));
    open(pagePath(u"b.htm"_s));
    browser().bDocumentComplete = false;
    press(4);
    waitForDocument();
    EXPECT_EQ(textOf(browser()), u"a"_s);
    browser().bDocumentComplete = false;
    press(5);
    waitForDocument();
    EXPECT_EQ(textOf(browser()), u"b"_s);
    press(5); // nothing further on
    EXPECT_EQ(textOf(browser()), u"b"_s);
    EXPECT_TRUE(nothingElseComes(2));
}

TEST_F(Browser, GoesHomeToThePageOfTheSettingsOrThePreview) {
    writePage(u"home.htm"_s, "home");
    writePage(u"tmp.htm"_s, "preview");
    press(6);
    waitForDocument();
    EXPECT_EQ(textOf(browser()), u"preview"_s);
    core::WriteIni(session.MyPath + u"endpoints.ini"_s, u"Browser"_s, u"Home"_s, fileAddress(u"home.htm"_s));
    browser().bDocumentComplete = false;
    press(6);
    waitForDocument();
    EXPECT_EQ(textOf(browser()), u"home"_s);
}

TEST_F(Browser, LeavesAMarginBelowThePage) {
    browser().showChild();
    browser().place({0, 0, 600, 500});
    QWebEngineView& view = viewOf(browser());
    EXPECT_TRUE(waitFor([&] { return view.parentWidget()->height() - view.geometry().bottom() - 1 == 28; }));
    EXPECT_GE(view.width(), 400);
}

TEST_F(Browser, SaysWhatItsButtonsDo) {
    for (const QToolButton* button : control<QToolBar>(browser(), u"Toolbar1"_s).findChildren<QToolButton*>()) {
        if (!button->defaultAction())
            continue;
        EXPECT_FALSE(button->accessibleName().isEmpty());
        EXPECT_FALSE(button->toolTip().isEmpty());
        EXPECT_FALSE(button->icon().isNull());
        EXPECT_NE(button->focusPolicy(), Qt::NoFocus);
    }
    for (const QString& name : {u"cmbURL"_s, u"CmbFavorite"_s, u"cmbFindSite"_s, u"cmbFind"_s})
        EXPECT_FALSE(box(name).accessibleName().isEmpty()) << name.toStdString();
}

TEST_F(Browser, MayGoWhileItWaitsForAPage) {
    writePage(u"a.htm"_s, "<HTML><a name=\"1\">1</a><a name=\"2\">2</a>");
    open(pagePath(u"a.htm"_s) + u"#1"_s);
    browser().Navigate(pagePath(u"a.htm"_s) + u"#2"_s);
    context.windows.unload<browser::frmBrowser>(); // the engine answers its last question now
    settle();
    open(pagePath(u"a.htm"_s));
}

} // namespace
} // namespace velloria::tests
