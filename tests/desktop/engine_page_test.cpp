// The page of a blog in the real engine, against a web of this machine.
#include "blog/forms/engine_page.h"
#include "desktop/browser_home.h"
#include "desktop/small_web.h"
#include "platform/failure.h"
#include "platform/launcher.h"

using namespace Qt::StringLiterals;
using namespace velloria::blog;

namespace velloria::tests {
namespace {

constexpr std::chrono::milliseconds kLimit{kPatienceMs};

class BlogEngine : public BrowserHome {
protected:
    BlogEngine() { web.headers = "Content-Type: text/html; charset=utf-8\r\n"; }

    void show(const QByteArray& body) {
        web.pages["/page"] = body;
        page.navigate(QUrl(web.address(u"/page"_s)));
        ASSERT_EQ(page.waitComplete(kLimit), PageEnd::Complete);
    }

    SmallWeb web;
    EnginePage page{context};
};

TEST_F(BlogEngine, CountsFormsThatHideTheList) {
    show("<form name=forms></form><form name=getElementsByTagName></form>");
    EXPECT_EQ(page.formCount(), 2);
}

TEST_F(BlogEngine, FillsAndSendsAForm) {
    show("<form action=/do><input name=Title><input id=Go type=submit></form>");
    page.setValue({.name = u"title"_s}, u"a\u2028\"x"_s);
    web.pages["/do?Title=a%E2%80%A8%22x"] = "done";
    page.click({.name = u"go"_s});
    ASSERT_EQ(page.waitComplete(kLimit), PageEnd::Complete);
    EXPECT_EQ(page.problem(), QString());
    EXPECT_EQ(page.locationUrl(), web.address(u"/do?Title=a%E2%80%A8%22x"_s));
}

TEST_F(BlogEngine, TellsAProcessThatDiedAndGoesOnWithTheNextPage) {
    show("<form></form>");
    platform::endProcess(viewOf(browser()).page()->renderProcessPid());
    EXPECT_THROW(page.waitComplete(kLimit), platform::Failure);
    EXPECT_THROW(page.formCount(), platform::Failure);
    show("<form></form>");
    EXPECT_EQ(page.formCount(), 1);
}

TEST_F(BlogEngine, EndsAProcessWhoseScriptHasNoEnd) {
    EnginePage impatient(context, std::chrono::seconds(2));
    show("<form onsubmit='for (;;);'><input type=submit name=go></form>");
    impatient.stop();
    EXPECT_THROW(impatient.click({.name = u"go"_s}), platform::Failure);
    show("<form></form>");
    EXPECT_EQ(page.formCount(), 1);
}

} // namespace
} // namespace velloria::tests
