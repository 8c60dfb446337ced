// The page of a blog in the real engine, against a web of this machine.
#pragma once

#include "blog/forms/engine_page.h"
#include "desktop/browser_home.h"
#include "desktop/small_web.h"
#include "platform/failure.h"

namespace velloria::tests {

/// Fixture. Pages are UTF-8, and a wait for a page that comes may last as long as a busy machine takes.
class EngineHome : public BrowserHome {
protected:
    using By = blog::ElementPlace::By;
    using PageEnd = blog::PageEnd;

    static inline const QByteArray kForm = "<form action=/do><input type=submit name=go></form>";
    static constexpr std::chrono::milliseconds kLimit{kPatienceMs};
    static constexpr std::chrono::milliseconds kShort{700}; ///< for a page that does not come

    EngineHome() { web.headers = "Content-Type: text/html; charset=utf-8\r\n"; }

    void open(const QString& path) {
        page.navigate(QUrl(web.address(path)));
        ASSERT_EQ(page.waitComplete(kLimit), PageEnd::Complete);
    }
    void show(const QByteArray& body) {
        web.pages["/page"] = body;
        open(QStringLiteral("/page"));
    }
    PageEnd waited(std::chrono::milliseconds limit = kShort) { return page.waitComplete(limit); }
    static blog::ElementPlace named(const QString& name, int form = 0) { return {.name = name, .form = form}; }

    /// Clicks and waits for the page that comes of it.
    void clickAndWait(const QString& name) {
        page.click(named(name));
        ASSERT_EQ(page.waitComplete(kLimit), PageEnd::Complete);
    }
    /// Sends the form and gives what the web got.
    WebRequest sent(const QString& button = QStringLiteral("go")) {
        web.requests.clear();
        web.pages["/do"] = "done";
        clickAndWait(button);
        const QList<WebRequest> requests = web.requestsFor("/do");
        EXPECT_EQ(requests.size(), 1);
        return requests.value(0);
    }
    /// What a script of the page's own world gives.
    QString own(const QString& script) { return run(browser(), script).toString(); }

    /// The document that is shown, by its mark.
    QString title() { return viewOf(browser()).page()->title(); }

    /// Why a call is refused; "" when it is not.
    template <class Call>
    static QString refusal(Call call) {
        try {
            call();
            return {};
        } catch (const platform::Failure& failure) {
            return failure.line();
        }
    }

    SmallWeb web;
    blog::EnginePage page{context};
};

} // namespace velloria::tests
