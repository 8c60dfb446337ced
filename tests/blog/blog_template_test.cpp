#include "blog/blog_template.h"

#include "platform/failure.h"
#include "support/test_home.h"

using namespace Qt::StringLiterals;

namespace velloria::tests {
namespace {

using blog::BlogTemplate;

class Template : public TestHome {
protected:
    BlogTemplate read(const QByteArray& text) {
        const QString file = path(u"template.ini"_s);
        writeFile(file, text);
        return BlogTemplate::read(file);
    }
};

TEST_F(Template, WithoutKeysHasTheWordsThatStandForThem) {
    const BlogTemplate empty = read("");
    EXPECT_EQ(empty.blog, u"Blog"_s);
    EXPECT_EQ(empty.postUrl, QString());
    EXPECT_EQ(empty.nextUrl, QString());
    EXPECT_EQ(empty.formPost, 0);
    EXPECT_EQ(empty.autoLoginUrl, u"TRUE"_s);
    EXPECT_EQ(empty.loginRedirect, u"FALSE"_s);
    EXPECT_FALSE(empty.raisesEvents);
    EXPECT_EQ(empty.title.type, u"NAME"_s);
    EXPECT_EQ(empty.genre.type, u"SELECT"_s);
    EXPECT_EQ(empty.underWrite.type, u"NAME"_s);
}

TEST_F(Template, GivesEachValueOfItsFile) {
    const BlogTemplate found = read("[General]\r\nBlog=My blog\r\n[Simple]\r\nPostURL=http://127.0.0.1/post\r\n"
                                    "FORM_POST=1\r\nType_Title=\r\nVALUE_Title=subject\r\n"
                                    "Type_UnderWrite=NAMECHECKBOX\r\nVALUE_UnderWrite_No=1\r\n"
                                    "RADIO_VALUE_AcceptPing_YES=open\r\nEvents=TRUE\r\n");
    EXPECT_EQ(found.blog, u"My blog"_s);
    EXPECT_EQ(found.postUrl, u"http://127.0.0.1/post"_s);
    EXPECT_EQ(found.formPost, 1);
    EXPECT_EQ(found.title.value, u"subject"_s);
    EXPECT_EQ(found.title.type, QString()) << "an empty value is no missing one";
    EXPECT_EQ(found.underWrite.type, u"NAMECHECKBOX"_s);
    EXPECT_EQ(found.underWrite.no, u"1"_s);
    EXPECT_EQ(found.acceptPing.radioYes, u"open"_s);
    EXPECT_TRUE(found.raisesEvents);
}

TEST_F(Template, ThatIsHugeIsRefused) {
    EXPECT_THROW(read(QByteArray(10'000'000, 'x')), platform::Failure);
}

TEST_F(Template, WithAFormBeyondSixteenBitsIsRefused) {
    EXPECT_THROW(read("[Simple]\r\nFORM_LOGIN=40000\r\n"), platform::Failure);
    EXPECT_EQ(read("[Simple]\r\nFORM_LOGIN=x\r\n").formLogin, 0);
}

} // namespace
} // namespace velloria::tests
