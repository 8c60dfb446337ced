// Posting to pages that open windows, or would have the answer in one.
#include "desktop/blog_home.h"

using namespace Qt::StringLiterals;

namespace velloria::tests {
namespace {

class BlogWindows : public BlogHome {
protected:
    void expectPostedTo(const QString& page) {
        site.set(u"v"_s, page);
        const FakeBlog::Request request = posted();
        EXPECT_EQ(request.field("title"), kTitle.toUtf8());
        EXPECT_EQ(site.lines(), kLinesOfAPost);
        EXPECT_EQ(browser().LocationURL(), site.address(u"/done"_s));
    }
};

TEST_F(BlogWindows, AnAnswerThatIsToComeInAnotherOneComesInThis) {
    for (const QString& page : {u"blank"_s, u"base"_s}) {
        for (const QString& way : {u"NAME"_s, u"SUBMIT"_s}) {
            useTemplate(u"t01"_s, {{u"Type_Post"_s, way}});
            expectPostedTo(page);
        }
    }
}

TEST_F(BlogWindows, ALinkThatSendsBringsTheAnswerIntoThisAsWell) {
    useTemplate(u"t16"_s);
    expectPostedTo(u"base"_s);
}

TEST_F(BlogWindows, OneThatAScriptOpensTakesNoAnswersPlace) {
    useTemplate(u"t01"_s);
    expectPostedTo(u"popup"_s);
}

} // namespace
} // namespace velloria::tests
