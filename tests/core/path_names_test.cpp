#include "core/path_names.h"

#include <gtest/gtest.h>

#include <QDir>

using namespace Qt::StringLiterals;

namespace velloria::tests {
namespace {

using namespace core;

TEST(PathNames, TakeAPathApartAtItsLastSeparatorAndPoint) {
    const struct {
        QString path;
        QString parent;
        QString name;
        QString extension;
        QString base;
    } cases[] = {
        {u"C:\\Data\\a.htm"_s, u"C:\\Data"_s, u"a.htm"_s, u"htm"_s, u"C:\\Data\\a"_s},
        {u"C:\\Data\\"_s, u"C:\\Data"_s, u""_s, u""_s, u"C:\\Data\\"_s},
        {u"a.htm"_s, u""_s, u"a.htm"_s, u"htm"_s, u"a"_s},
        {u"\\a.htm"_s, u""_s, u"a.htm"_s, u"htm"_s, u"\\a"_s},
        {u"a"_s, u""_s, u"a"_s, u""_s, u"a"_s},
        {u""_s, u""_s, u""_s, u""_s, u""_s},
        {u"a.b\\c"_s, u"a.b"_s, u"c"_s, u""_s, u"a"_s}, // the point belongs to the folder
        {u"a.b\\c.d.e"_s, u"a.b"_s, u"c.d.e"_s, u"e"_s, u"a.b\\c.d"_s},
        {u"a."_s, u""_s, u"a."_s, u""_s, u"a"_s},
        {u".profile"_s, u""_s, u".profile"_s, u"profile"_s, u""_s},
        {u"日記\\五月.htm"_s, u"日記"_s, u"五月.htm"_s, u"htm"_s, u"日記\\五月"_s},
    };
    for (const auto& [path, parent, name, extension, base] : cases) {
        SCOPED_TRACE(path.toStdString());
        EXPECT_EQ(GetParentFolder(path), parent);
        EXPECT_EQ(GetFileName(path), name);
        EXPECT_EQ(GetFileExt(path), extension);
        EXPECT_EQ(GetBaseName(path), base);
    }
}

TEST(PathNames, KnowTheSeparatorOfThePlatformToo) {
    const QString path = QDir::toNativeSeparators(u"/home/a.b/c\\d"_s);
    EXPECT_EQ(GetFileName(path), u"d");
    EXPECT_EQ(GetFileExt(path), u"");
    if (nativeSeparator() != u'/')
        GTEST_SKIP() << "a slash is no separator here";
    EXPECT_EQ(GetParentFolder(u"/home/taro/x.htm"_s), u"/home/taro");
    EXPECT_EQ(GetParentFolder(u"/x"_s), u"");
    EXPECT_EQ(GetParentFolder(u"a\\b/c"_s), u"a\\b");
    EXPECT_EQ(GetFileExt(u"a.b/c"_s), u"");
    EXPECT_EQ(GetBaseName(u"a.b/c"_s), u"a");
}

TEST(PathNames, AFolderGetsOneSeparatorAndNoFolderNone) {
    const QString separator = nativeSeparator();
    EXPECT_EQ(withSeparator(u"x"_s), u"x"_s + separator);
    EXPECT_EQ(withSeparator(u"x"_s + separator), u"x"_s + separator);
    EXPECT_EQ(withSeparator(u"/"_s), u"/");
    EXPECT_EQ(withSeparator(u""_s), u""); // else the root would be meant
    if (separator == u"/") {
        EXPECT_EQ(withSeparator(u"/home/x\\"_s), u"/home/x\\/"); // "\" may end a name here
    }
}

TEST(PathNames, ABareNameStaysInItsFolderOnEveryDisk) {
    for (const QString& name : {u"a.gif"_s, u"日記 é.png"_s, u"...gif"_s, u"..."_s, u".a"_s, u"12:30.gif"_s,
                                u"a..gif"_s, u"／.gif"_s, u"~"_s})
        EXPECT_TRUE(isBareName(name)) << name.toStdString();
    QStringList others{
        QString(),          u""_s,     u"."_s,  u".."_s,          u"../diary.mdb"_s, u"a/b.gif"_s, u"/a"_s,   u"a/"_s,
        u"..\\diary.mdb"_s, u"a\\b"_s, u"\\"_s, u"C:diary.mdb"_s, u"z:"_s,           u"a\nb"_s,    u"a\tb"_s, u"\r"_s};
    others << u"a.gif"_s + QChar(0) << QString(QChar(0)) + u"a.gif"_s << u"a"_s + QChar(0x1F);
    for (const QString& name : others)
        EXPECT_FALSE(isBareName(name)) << name.toStdString();
}

TEST(PathNames, AFolderOfAnotherPlatformIsNotAbsolute) {
    EXPECT_TRUE(isAbsoluteFolder(QDir::rootPath()));
    EXPECT_TRUE(isAbsoluteFolder(QDir::toNativeSeparators(QDir::tempPath())));
    EXPECT_FALSE(isAbsoluteFolder(u""_s));
    EXPECT_FALSE(isAbsoluteFolder(u"UserData"_s));
    EXPECT_FALSE(isAbsoluteFolder(u"./UserData"_s));
    EXPECT_FALSE(isAbsoluteFolder(u":/icons"_s)); // a resource of the program
    EXPECT_EQ(isAbsoluteFolder(u"C:\\Data\\"_s), nativeSeparator() == u'\\');
    EXPECT_EQ(isAbsoluteFolder(u"C:/Data/"_s), nativeSeparator() == u'\\');
}

} // namespace
} // namespace velloria::tests
