#include "browser/page_address.h"

#include "platform/file_write.h"
#include "support/print.h"

#include <gtest/gtest.h>

#include <QDir>
#include <QTemporaryDir>

using namespace Qt::StringLiterals;
using namespace velloria::browser;

namespace velloria::tests {
namespace {

TEST(PageAddress, OfAPathIsThatOfTheFileWhateverItsName) {
    for (const QString& path : {u"/a/tmp.htm"_s, u"/a b/日記 #1/100%/tmp.htm"_s, u"/a?b/%41.htm"_s, u"/a/c#d"_s}) {
        const QUrl url = pageUrl(path);
        EXPECT_EQ(url.toLocalFile(), path);
        EXPECT_FALSE(url.hasFragment());
    }
}

TEST(PageAddress, HasTheMarkBehindThePagesName) {
    const QUrl url = pageUrl(u"/a#b/x.htm#c/tmp.htm#2004/05/06"_s);
    EXPECT_EQ(url.toLocalFile(), u"/a#b/x.htm#c/tmp.htm"_s);
    EXPECT_EQ(url.fragment(), u"2004/05/06"_s);
    EXPECT_EQ(pageUrl(u"/a/b.HTML#c"_s).fragment(), u"c"_s);
    EXPECT_EQ(pageUrl(u"/a/b.htm#日_1"_s).fragment(), u"日_1"_s);
}

TEST(PageAddress, OfAFileThatIsThereHasNoMark) {
    const QTemporaryDir folder;
    const QString path = folder.filePath(u"a.htm#b.htm"_s);
    platform::replaceFile(path, "x", platform::Durability::Derived);
    EXPECT_EQ(pageUrl(path).toLocalFile(), path);
    EXPECT_FALSE(pageUrl(path).hasFragment());
}

TEST(PageAddress, OfTheWebKeepsItsBytes) {
    EXPECT_EQ(pageUrl(u"http://a.example/?q=%88%9F%2B&x=1#y"_s).toEncoded(), "http://a.example/?q=%88%9F%2B&x=1#y");
    EXPECT_EQ(pageUrl(u"http://a.example/?q=亜 b"_s).toEncoded(), "http://a.example/?q=%E4%BA%9C%20b");
    EXPECT_EQ(pageUrl(u"file:///a%20b/tmp.htm#x"_s).toLocalFile(), u"/a b/tmp.htm"_s);
}

TEST(PageAddress, OfAnythingElseIsInvalid) {
    for (const QString& text : {u""_s, u"tmp.htm"_s, u"example.com"_s, u"UserData/tmp.htm"_s})
        EXPECT_FALSE(pageUrl(text).isValid()) << text.toStdString();
}

TEST(TypedAddress, LacksItsSchemeAsOftenAsNot) {
    EXPECT_EQ(typedUrl(u" www.example.com "_s).toString(), u"http://www.example.com"_s);
    EXPECT_EQ(typedUrl(u"localhost:8080/a"_s).toString(), u"http://localhost:8080/a"_s);
    EXPECT_EQ(typedUrl(u"https://example.com/"_s).toString(), u"https://example.com/"_s);
    EXPECT_EQ(typedUrl(u"/a b/tmp.htm#x"_s).toString(QUrl::FullyEncoded), u"file:///a%20b/tmp.htm#x"_s);
    EXPECT_EQ(typedUrl(u"about:blank"_s).toString(), u"about:blank"_s);
}

TEST(TypedAddress, ThatIsNoneGivesNone) {
    for (const QString& text : {u""_s, u"   "_s, u"two words"_s})
        EXPECT_FALSE(typedUrl(text).isValid()) << text.toStdString();
}

TEST(ShownSchemes, AreThoseOfPages) {
    for (const QString& scheme : {u"http"_s, u"https"_s, u"file"_s, u"about"_s, u"data"_s, u"blob"_s})
        EXPECT_TRUE(isShownScheme(scheme)) << scheme.toStdString();
    for (const QString& scheme : {u""_s, u"event"_s, u"javascript"_s, u"mailto"_s, u"chrome"_s, u"vbscript"_s})
        EXPECT_FALSE(isShownScheme(scheme)) << scheme.toStdString();
}

} // namespace
} // namespace velloria::tests
