#include "exchange/formats/wiki_html.h"

#include "support/print.h"

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

namespace velloria::tests {
namespace {

using exchange::htmlOfWiki;

struct Case {
    QString wiki;
    QString html;
};

TEST(WikiHtml, EachMarkIsItsElement) {
    const Case cases[] = {
        {u"a\nb\n\nc"_s, u"<p>a\nb</p>\n<p>c</p>\n"_s},
        {u"! h\n!! i\n!!!!!! j"_s, u"<h3>h</h3>\n<h4>i</h4>\n<h6>j</h6>\n"_s},
        {u"----\n-----"_s, u"<hr />\n<p>-----</p>\n"_s},
        {u"''a'' '''b''' ==c== ``d``"_s, u"<p><em>a</em> <strong>b</strong> <del>c</del> <code>d</code></p>\n"_s},
        {u"[[言葉|http://x/?a&b]] [[http://y/]] http://z/."_s,
         u"<p><a href=\"http://x/?a&amp;b\">言葉</a> <a href=\"http://y/\">http://y/</a> <a href=\"http://z/.\">http://z/.</a></p>\n"_s},
        {u"a < b & \"c\""_s, u"<p>a &lt; b &amp; \"c\"</p>\n"_s},
        {u":用語:説明\n:a"_s, u"<dl>\n<dt>用語</dt><dd>説明</dd>\n<dt>a</dt>\n</dl>\n"_s},
        {u":[[a:b|http://x/]]:c"_s, u"<dl>\n<dt><a href=\"http://x/\">a:b</a></dt><dd>c</dd>\n</dl>\n"_s},
        {u"\"\"a\n\"\" * b"_s, u"<blockquote>\n<p>a</p>\n<ul><li>b</li></ul>\n</blockquote>\n"_s},
        {u" a\n  b <c>"_s, u"<pre>a\n b &lt;c&gt;</pre>\n"_s},
        {u"<<< ruby\n''x''\n>>>\ny"_s, u"<pre>''x''</pre>\n<p>y</p>\n"_s},
        {u"<<<\ncut"_s, u"<pre>cut</pre>\n"_s},
        {u"||!a||^b\n||>c||d||"_s,
         u"<table>\n<tr><th>a</th><td rowspan=\"2\">b</td></tr>\n<tr><td colspan=\"2\">c</td><td>d</td></tr>\n</table>\n"_s},
        {u"{{fn '脚注'}} ''x''"_s, u"<p>{{fn '脚注'}} <em>x</em></p>\n"_s},
        {u"// note\na"_s, u"<p>a</p>\n"_s},
        {u"* a\n** b\n* c\n# d"_s, u"<ul><li>a<ul><li>b</li></ul>\n</li><li>c</li></ul>\n<ol><li>d</li></ol>\n"_s},
        {u"*** a\n* b"_s, u"<ul><li><ul><li><ul><li>a</li></ul>\n</li></ul>\n</li><li>b</li></ul>\n"_s},
        {u""_s, u""_s},
    };
    for (const auto& [wiki, html] : cases)
        EXPECT_EQ(htmlOfWiki(wiki), html) << qPrintable(wiki);
}

TEST(WikiHtml, WhatDoesNotCloseIsText) {
    const Case cases[] = {
        {u"[[a [[b|c]] d]]"_s, u"<p><a href=\"c\">a [[b</a> d]]</p>\n"_s},
        {u"[[a]] b|c]]"_s, u"<p><a href=\"a\">a</a> b|c]]</p>\n"_s},
        {u"[[|c]] [[a|]] [[]]"_s, u"<p><a href=\"c\">c</a> <a href=\"a|\">a|</a> [[]]</p>\n"_s},
        {u"'''a'' ==b"_s, u"<p><em>'a</em> ==b</p>\n"_s},
        {u"''''"_s, u"<p>''''</p>\n"_s},
        {u"[[a\nb]] ''c\nd''"_s, u"<p>[[a\nb]] ''c\nd''</p>\n"_s},
        {u"https: http:x mailto:a@b.c、d"_s,
         u"<p>https: <a href=\"http:x\">http:x</a> <a href=\"mailto:a@b.c\">mailto:a@b.c</a>、d</p>\n"_s},
        {u":a [[b:c:d"_s, u"<dl>\n<dt>a [[b</dt><dd>c:d</dd>\n</dl>\n"_s},
    };
    for (const auto& [wiki, html] : cases)
        EXPECT_EQ(htmlOfWiki(wiki), html) << qPrintable(wiki);
}

TEST(WikiHtml, NoNestingIsTooDeep) {
    for (const QString& mark : {u"*"_s, u"\"\""_s, u"!"_s, u"||"_s, u"''a'''"_s, u"[["_s, u"[[|"_s, u"{{"_s, u":"_s,
                                u"=="_s, u":[["_s, u"http:"_s})
        EXPECT_FALSE(htmlOfWiki(mark.repeated(200'000 / mark.size()) + u"x"_s).isEmpty());
}

} // namespace
} // namespace velloria::tests
