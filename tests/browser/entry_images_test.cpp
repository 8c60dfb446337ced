#include "browser/entry_images.h"

#include "platform/file_write.h"
#include "support/print.h"

#include <gtest/gtest.h>

#include <QDir>
#include <QTemporaryDir>

using namespace Qt::StringLiterals;
using namespace velloria::browser;

namespace velloria::tests {
namespace {

QStringList imagePaths(const QString& body, const QString& dataPath = u"/d/"_s) {
    QStringList paths;
    for (const EntryImage& image : imagesOf(body, dataPath))
        paths += image.fullPath;
    return paths;
}

TEST(EntryImages, AreTakenFromEveryTagInOrder) {
    EXPECT_EQ(imagePaths(u"<IMG SRC=\"a.gif\"> <img width=3\r\n src='b c.jpg' alt=\"\"><Img Src=d.png>"_s),
              (QStringList{u"/d/a.gif"_s, u"/d/b c.jpg"_s, u"/d/d.png"_s}));
}

TEST(EntryImages, AreSoughtInTheDataFolder) {
    EXPECT_EQ(imagePaths(u"<IMG SRC=\"..\\DiaryParts\\a.gif\"><IMG SRC=\"./x/b.gif\"><IMG SRC=\"../../c.gif\">"_s),
              (QStringList{u"/d/DiaryParts/a.gif"_s, u"/d/x/b.gif"_s, u"/d/c.gif"_s}));
}

TEST(EntryImages, WithAFullPathOrAnAddressKeepIt) {
    EXPECT_EQ(imagePaths(u"<IMG SRC=\"http://a/b.gif\"><IMG SRC=\"/x/c.gif\">"_s),
              (QStringList{u"http://a/b.gif"_s, u"/x/c.gif"_s}));
}

TEST(EntryImages, WithoutASourceAreNone) {
    EXPECT_EQ(imagePaths(u"<IMG ALT=x><IMG SRC=\"\"><IMAGE SRC=a.gif><P>src=b.gif</P><IMG"_s), QStringList());
}

TEST(EntryImages, TellWhetherTheirFileIsThere) {
    const QTemporaryDir folder;
    platform::replaceFile(folder.filePath(u"a.gif"_s), "x", platform::Durability::Derived);
    const std::vector<EntryImage> images = imagesOf(u"<IMG SRC=\"a.gif\"><IMG SRC=\"b.gif\">"_s, folder.path() + u'/');
    ASSERT_EQ(images.size(), 2U);
    EXPECT_EQ(images[0].fileName, u"a.gif"_s);
    EXPECT_TRUE(images[0].exists);
    EXPECT_FALSE(images[1].exists);
}

} // namespace
} // namespace velloria::tests
