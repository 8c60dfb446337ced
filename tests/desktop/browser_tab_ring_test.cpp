// Tab and Shift+Tab lead round the browser window: its bar, the page and what takes keys in the page.
#include "desktop/browser_home.h"
#include "editor/forms/frmContents.h"

using namespace Qt::StringLiterals;

namespace velloria::tests {
namespace {

const QStringList kBar{u"Button1_Button"_s, u"Button3_Button"_s, u"Button4_Button"_s,
                       u"Button5_Button"_s, u"Button6_Button"_s, u"cmbURL"_s,
                       u"CmbFavorite"_s,    u"cmbFindSite"_s,    u"cmbFind"_s};

class BrowserTabRing : public BrowserHome {
protected:
    void show(const QByteArray& page) {
        context.windows.get<editor::frmContents>().showChild(); // the ring goes past the windows beside it
        browser().showChild();
        writePage(u"a.htm"_s, page);
        open(pagePath(u"a.htm"_s));
        control<QWidget>(browser(), kBar.first()).setFocus(Qt::TabFocusReason);
        settle();
    }
    /// What has the keys: a control, in the page with the id of the element that has them there.
    QString focusName() {
        const QWidget* focus = QApplication::focusWidget();
        while (focus && focus->objectName().isEmpty())
            focus = focus->parentWidget();
        if (!focus)
            return u"nothing"_s;
        const QString element =
            focus == &viewOf(browser()) ? run(browser(), u"document.activeElement.id"_s).toString() : QString();
        return element.isEmpty() ? focus->objectName() : element;
    }
    /// From the first button one press leads to each of the others in turn, and one more back to it. The engine acts
    /// on a key later than it comes.
    void expectWalk(Qt::Key key, const QStringList& others) {
        ASSERT_EQ(focusName(), kBar.first());
        QStringList path{kBar.first()};
        for (const QString& name : others + QStringList{kBar.first()}) {
            QTest::keyClick(top().windowHandle(), key, key == Qt::Key_Backtab ? Qt::ShiftModifier : Qt::NoModifier);
            path += name;
            ASSERT_TRUE(waitFor([&] { return focusName() == name; }))
                << path.join(u' ').toStdString() << ": it is " << focusName().toStdString();
        }
    }
    /// The ring is the bar and then `page`, backwards the same the other way round.
    void expectRing(const QStringList& page) {
        QStringList others = kBar.mid(1) + page;
        expectWalk(Qt::Key_Tab, others);
        if (HasFatalFailure())
            return;
        std::reverse(others.begin(), others.end());
        expectWalk(Qt::Key_Backtab, others);
    }
};

TEST_F(BrowserTabRing, GoesThroughTheLinksAndFieldsOfThePage) {
    show("<body id=\"body\"><a id=\"first\" href=\"b.htm\">one</a> text <input id=\"field\"> "
         "<a id=\"last\" href=\"c.htm\">two</a></body>");
    expectRing({u"first"_s, u"field"_s, u"last"_s});
}

TEST_F(BrowserTabRing, StopsOnceAtAPageWithoutLinks) {
    show("text");
    expectRing({u"WebBrowser"_s});
}

TEST_F(BrowserTabRing, IsLeftForAPaneOfTheTextByItsDigit) {
    auto& editor = context.windows.get<editor::frmContents>();
    editor.day().openDay(session.EnterDay);
    show("<body id=\"body\">text</body>");
    const QStringList panes{u"txtContents"_s, u"txtExtend"_s, u"txtExcerpt"_s};
    for (const int index : {1, 2, 0}) {
        browser().showChild();
        viewOf(browser()).setFocus();
        settle();
        QTest::keyClick(top().windowHandle(), Qt::Key(Qt::Key_1 + index), Qt::ControlModifier);
        settle();
        EXPECT_EQ(focusName(), panes[index]);
        EXPECT_EQ(context.mdi->activeSubWindow(), &editor);
    }
}

} // namespace
} // namespace velloria::tests
