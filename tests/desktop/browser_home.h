// The main window with the browser in it, and words to show pages and look at them.
#pragma once

#include "browser/forms/frmBrowser.h"
#include "browser/forms/web_page.h"
#include "support/desktop_home.h"

#include <QComboBox>
#include <QLineEdit>
#include <QSignalSpy>
#include <QWebEngineHistory>
#include <QWebEngineView>

namespace velloria::tests {

/// Fixture. Pages lie in the data folder.
class BrowserHome : public DesktopHome {
protected:
    BrowserHome() { showTop(); }
    ~BrowserHome() override {
        context.windows.closeAll();
        QTest::qWait(50); // the engine writes its files after the last page, and the folder is removed next
    }

    browser::frmBrowser& browser() { return context.windows.get<browser::frmBrowser>(); }

    QString pagePath(const QString& name) const { return session.DataPath + name; }
    void writePage(const QString& name, const QByteArray& bytes) const { writeFile(pagePath(name), bytes); }

    /// Navigates and waits until the page is shown.
    void open(const QString& address) {
        browser().bDocumentComplete = false;
        browser().Navigate(address);
        waitForDocument();
    }
    /// Whether nothing but the pages shown so far comes, `shown` of them: another one is shown, and whatever had been
    /// started before it would have begun or stand in the history before it.
    bool nothingElseComes(int shown) {
        QWebEngineView& view = viewOf(browser());
        const QSignalSpy begun(&view, &QWebEngineView::loadStarted);
        writePage(QStringLiteral("last.htm"), "last");
        open(pagePath(QStringLiteral("last.htm")));
        return begun.size() == 1 && view.history()->count() == shown + 1;
    }
    void waitForDocument() {
        ASSERT_TRUE(waitFor([this] { return browser().bDocumentComplete; }));
    }

    static QWebEngineView& viewOf(QWidget& window) {
        EXPECT_TRUE(waitFor([&] { return window.findChild<QWebEngineView*>() != nullptr; }));
        return control<QWebEngineView>(window, QStringLiteral("WebBrowser"));
    }

    /// What a script gives in the page.
    static QVariant run(QWidget& window, const QString& script) {
        QVariant result;
        bool isDone = false;
        viewOf(window).page()->runJavaScript(script, [&](const QVariant& value) {
            result = value;
            isDone = true;
        });
        EXPECT_TRUE(waitFor([&] { return isDone; }));
        return result;
    }
    static QString textOf(QWidget& window) { return run(window, QStringLiteral("document.body.innerText")).toString(); }

    /// Waits until a script in the page gives true.
    static bool becomesTrue(QWidget& window, const QString& script) {
        return waitFor([&] { return run(window, script).toBool(); });
    }

    QComboBox& box(const QString& name) { return control<QComboBox>(browser(), name); }
    static QStringList entriesOf(const QComboBox& box) {
        QStringList entries;
        for (int i = 0; i < box.count(); ++i)
            entries += box.itemText(i);
        return entries;
    }
};

} // namespace velloria::tests
