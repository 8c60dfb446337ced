#include "platform/directory.h"

#include "platform/file_write.h"

#include <gtest/gtest.h>

#include <QDir>
#include <QFile>
#include <QTemporaryDir>

using namespace Qt::StringLiterals;

namespace velloria::tests {
namespace {

using namespace platform;

class Directory : public testing::Test {
protected:
    void make(const QStringList& names) const {
        for (const QString& name : names) {
            if (name.endsWith(u'/'))
                makeFolder(path(name.chopped(1)));
            else
                replaceFile(path(name), "", Durability::Derived);
        }
    }
    QString path(const QString& name) const { return folder.filePath(name); }

    QTemporaryDir folder;
};

TEST_F(Directory, ListsByNameWithoutRegardToCase) {
    make({u"b.ini"_s, u"C.ini"_s, u"a.ini"_s, u"B10.ini"_s, u"b2.ini"_s});
    EXPECT_EQ(listFolder(folder.path(), u"*.ini"_s),
              (QStringList{u"a.ini"_s, u"b.ini"_s, u"B10.ini"_s, u"b2.ini"_s, u"C.ini"_s}));
}

TEST_F(Directory, OrdersSignsAndJapaneseNamesByTheirUpperCaseCodes) {
    // "_" lies after the capitals and before the small letters.
    make({u"日.ini"_s, u"a.ini"_s, u"_.ini"_s, u"ア.ini"_s, u"1.ini"_s, u"é.ini"_s, u"É2.ini"_s, u"-.ini"_s});
    EXPECT_EQ(listFolder(folder.path(), u"*"_s), (QStringList{u"-.ini"_s, u"1.ini"_s, u"a.ini"_s, u"_.ini"_s,
                                                              u"é.ini"_s, u"É2.ini"_s, u"ア.ini"_s, u"日.ini"_s}));
}

TEST_F(Directory, MatchesPatternsWithoutRegardToCase) {
    make({u"a.BLG"_s, u"b.blg"_s, u"c.blg.txt"_s, u"d.ini"_s, u"blg"_s});
    EXPECT_EQ(listFolder(folder.path(), u"*.blg"_s), (QStringList{u"a.BLG"_s, u"b.blg"_s}));
}

TEST_F(Directory, ListsFoldersAmongTheFilesWhenAsked) {
    make({u"b/"_s, u"a.url"_s, u"C.url"_s, u".hidden"_s});
    EXPECT_EQ(listFolder(folder.path(), u"*"_s, Listed::FilesAndFolders),
              (QStringList{u".hidden"_s, u"a.url"_s, u"b"_s, u"C.url"_s}));
    EXPECT_EQ(listFolder(folder.path(), u"*"_s), (QStringList{u".hidden"_s, u"a.url"_s, u"C.url"_s}));
}

TEST_F(Directory, IsEmptyWhenItCantBeRead) {
    make({u"file"_s});
    EXPECT_EQ(listFolder(path(u"gone"_s), u"*"_s), QStringList());
    EXPECT_EQ(listFolder(path(u"file"_s), u"*"_s), QStringList());
}

TEST_F(Directory, PrefersTheExactName) {
    make({u"diary.ini"_s, u"DIARY.INI"_s, u"Diary.ini"_s});
    EXPECT_EQ(existingPath(path(u"DIARY.INI"_s)), path(u"DIARY.INI"_s));
    EXPECT_EQ(existingPath(path(u"diary.ini"_s)), path(u"diary.ini"_s));
}

TEST_F(Directory, FindsTheOneNameThatDiffersInCase) {
    make({u"CUSTOMIZE/"_s, u"CUSTOMIZE/Customize.INI"_s});
    EXPECT_EQ(existingPath(path(u"Customize/Customize.ini"_s)), path(u"CUSTOMIZE/Customize.INI"_s));
    EXPECT_EQ(existingPath(path(u"customize"_s)), path(u"CUSTOMIZE"_s));
    EXPECT_EQ(existingPath(path(u"customize/"_s)), path(u"CUSTOMIZE/"_s));
    EXPECT_TRUE(fileExists(path(u"customize/customize.ini"_s)));
}

TEST_F(Directory, GuessesNotBetweenTwoNames) {
    make({u"diary.ini"_s, u"DIARY.INI"_s});
    EXPECT_EQ(existingPath(path(u"Diary.ini"_s)), path(u"Diary.ini"_s));
    EXPECT_FALSE(fileExists(path(u"Diary.ini"_s)));
}

TEST_F(Directory, GivesBackAPathThatLeadsNowhere) {
    make({u"A/"_s});
    for (const QString& name : {u"a/b/c"_s, u"x"_s, u"x/"_s, u"a/b.ini"_s})
        EXPECT_EQ(existingPath(path(name)), path(name)) << name.toStdString();
    EXPECT_EQ(existingPath(u""_s), u""_s);
    EXPECT_EQ(existingPath(u"no/such/relative"_s), u"no/such/relative"_s);
}

TEST_F(Directory, ResolvesRelativePathsToo) {
    make({u"NAME.INI"_s, u"SUB/"_s, u"SUB/Name.ini"_s});
    const QString before = QDir::currentPath();
    ASSERT_TRUE(QDir::setCurrent(folder.path()));
    const QString file = existingPath(u"name.ini"_s);
    const QString below = existingPath(u"sub/name.ini"_s);
    QDir::setCurrent(before);
    EXPECT_EQ(file, u"NAME.INI"_s);
    EXPECT_EQ(below, u"SUB/Name.ini"_s);
}

TEST_F(Directory, CallsOnlyAFileAFile) {
    make({u"file"_s, u"folder/"_s});
    EXPECT_TRUE(fileExists(path(u"file"_s)));
    EXPECT_FALSE(fileExists(path(u"folder"_s)));
    EXPECT_FALSE(fileExists(path(u"gone"_s)));
    EXPECT_FALSE(fileExists(u""_s));
}

TEST_F(Directory, FindsANameThatASettingsFileGaveBackWithAnotherWaveDash) {
    make({u"2〜3/"_s, u"2〜3/a−b.ini"_s}); // U+301C and U+2212, as input methods type them
    EXPECT_EQ(existingPath(path(u"2～3/a－b.ini"_s)), path(u"2〜3/a−b.ini"_s));
}

TEST_F(Directory, ManyNamesOfOneFolderAreFoundAsEachOfThemIs) {
    make({u"a.gif"_s, u"B.GIF"_s, u"two.gif"_s, u"TWO.GIF"_s, u"〜.gif"_s, u"Folder/"_s, u".hidden"_s});
    const FolderNames names(folder.path() + u'/');
    for (const QString& name : {u"a.gif"_s, u"A.gif"_s, u"b.gif"_s, u"two.gif"_s, u"Two.gif"_s, u"～.gif"_s,
                                u"〜.gif"_s, u"folder"_s, u"FOLDER"_s, u".HIDDEN"_s, u"none.gif"_s, u"é"_s}) {
        EXPECT_EQ(names.path(name), existingPath(path(name))) << name.toStdString();
        EXPECT_EQ(names.hasFile(name), fileExists(path(name))) << name.toStdString();
    }
}

TEST_F(Directory, AFileThatHasComeSinceIsToldOf) {
    FolderNames names(folder.path() + u'/');
    EXPECT_FALSE(names.hasFile(u"a.gif"_s));
    make({u"A.gif"_s});
    EXPECT_FALSE(names.hasFile(u"a.GIF"_s)); // the folder is not listed for each name
    names.add(u"A.gif"_s);
    names.add(u"A.gif"_s);
    EXPECT_TRUE(names.hasFile(u"a.GIF"_s));
    make({u"a.gif"_s});
    names.add(u"a.gif"_s);
    EXPECT_FALSE(names.hasFile(u"a.GIF"_s)); // two may be meant now
    EXPECT_TRUE(names.hasFile(u"a.gif"_s));
    const FolderNames gone(path(u"gone/"_s));
    EXPECT_EQ(gone.path(u"x"_s), path(u"gone/x"_s));
}

TEST_F(Directory, TakesNoOtherFolderForANameThatIsExact) {
    make({u"～日記/"_s, u"é.ini"_s});
    EXPECT_EQ(existingPath(path(u"〜日記"_s)), path(u"〜日記"_s))
        << "the wave dash has not been through a settings file";
    EXPECT_EQ(existingPath(path(u"É.ini"_s)), path(u"é.ini"_s));
}

TEST_F(Directory, TakesALinkThatLeadsNowhereForWhatItIsNamed) {
    make({u"DIARY.INI"_s});
    ASSERT_TRUE(QFile::link(path(u"gone"_s), path(u"diary.ini"_s)));
    EXPECT_EQ(existingPath(path(u"diary.ini"_s)), path(u"diary.ini"_s));
    ASSERT_TRUE(QFile::link(path(u"gone"_s), path(u"FRAME.INI"_s)));
    EXPECT_EQ(existingPath(path(u"frame.ini"_s)), path(u"FRAME.INI"_s));
    EXPECT_FALSE(fileExists(path(u"frame.ini"_s)));
}

} // namespace
} // namespace velloria::tests
