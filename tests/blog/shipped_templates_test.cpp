// The templates that the program comes with, and what their services get of an entry.
#include "blog/blog_template.h"
#include "blog/template_check.h"
#include "convert/html_to_text.h"
#include "support/test_home.h"

using namespace Qt::StringLiterals;

namespace velloria::tests {
namespace {

using blog::BlogTemplate;

class ShippedTemplates : public TestHome {
protected:
    BlogTemplate shipped(const QString& name) { return BlogTemplate::read(blog::templateFile(session, name)); }

    /// The body as it goes to the service.
    QString converted(const QString& name, QString body, const QString& paragraphBreak = u"1"_s) {
        convert::clsHTML2TEXT converter;
        EXPECT_TRUE(converter.Initialize(session.MyPath + shipped(name).html2txt + u".ini"_s));
        converter.SetValue(u"PBR"_s, paragraphBreak);
        return converter.Execute(body);
    }
};

TEST_F(ShippedTemplates, AreThereAfterTheStart) {
    QStringList names = blog::blogNames(session);
    names.sort();
    EXPECT_EQ(names, (QStringList{u"WordPress"_s, u"tDiary"_s}));
    for (const QString& name : names) {
        const BlogTemplate found = shipped(name);
        EXPECT_EQ(found.blog, name);
        EXPECT_EQ(found.postUrl, u"Required"_s) << "the address is the user's";
        EXPECT_EQ(found.nextUrl, u"Nothing"_s) << "an empty one would ask at every post";
    }
}

TEST_F(ShippedTemplates, HaveNothingThatACheckWouldBlame) {
    const auto findings = [this](const QString& file) {
        QStringList keys;
        for (const blog::TemplateFinding& finding : blog::checkTemplate(bytesOf(path(file)), {file, session.MyPath}))
            keys += finding.key + u": "_s + finding.text;
        return keys;
    };
    EXPECT_EQ(findings(u"WordPress.blg"_s), QStringList());
    const QStringList found = findings(u"tDiary.blg"_s);
    ASSERT_EQ(found.size(), 1) << found.join(u'\n').toStdString();
    EXPECT_TRUE(found[0].startsWith(u"VALUE_LoginID: "_s)) << "its server asks for the login itself";
}

TEST_F(ShippedTemplates, WordPressGetsLinesThatItMakesParagraphsOf) {
    EXPECT_EQ(converted(u"WordPress"_s, u"<P>一\r\n二<BR>\r\n三</P>\r\n<p class=\"a\">四<br /></p>"_s),
              u"一二\r\n三\r\n\r\n四\r\n\r\n\r\n"_s);
    const QString tags =
        u"<FONT color=\"red\">赤</FONT><B>太</B><UL><LI>項</LI></UL><TABLE><TR><TD>表</TD></TR></TABLE>"
        "<A href=\"http://www.example.com/?a=1\">先</A><IMG src=\"a.gif\" alt=\"絵\"><HR>"_s;
    EXPECT_EQ(converted(u"WordPress"_s, tags), tags);
    EXPECT_EQ(converted(u"WordPress"_s, u"一\r\n\r\n\r\n二"_s, u"0"_s), u"一\r\n\r\n\r\n二"_s) << "breaks as typed";
}

TEST_F(ShippedTemplates, TDiaryGetsOneLineSoThatTheEntryIsOneSection) {
    EXPECT_EQ(converted(u"tDiary"_s, u"<P>一\r\n\r\n二<BR>\r\n三</P>\r\n\r\n<PRE>四</PRE>"_s),
              u"<P>一二<BR>三</P><PRE>四</PRE>"_s);
    EXPECT_EQ(converted(u"tDiary"_s, u"見出し\r\n本文\r\n\r\n次"_s, u"0"_s), u"見出し\r\n本文\r\n\r\n次"_s)
        << "tDiary's own notation";
}

} // namespace
} // namespace velloria::tests
