#include "browser/favourites.h"

#include "platform/file_write.h"
#include "support/print.h"

#include <gtest/gtest.h>

#include <QDir>
#include <QFile>
#include <QTemporaryDir>

#include <algorithm>

#include <sys/stat.h>

using namespace Qt::StringLiterals;
using namespace velloria::browser;

namespace velloria::tests {
namespace {

class FavouritesFolder : public ::testing::Test {
protected:
    QString root() const { return folder.path(); }

    void makeFolder(const QString& name) { ASSERT_TRUE(QDir(root()).mkpath(name)); }
    void write(const QString& name, const QByteArray& bytes) {
        platform::replaceFile(folder.filePath(name), bytes, platform::Durability::Derived);
    }
    void writeShortcut(const QString& name, const QByteArray& url) {
        write(name, "[InternetShortcut]\r\nURL=" + url + "\r\n");
    }

    /// The lines as "kind text tag".
    QStringList list(FavouriteOrder order, const QString& sub = {}) const {
        QStringList lines;
        for (const Favourite& line : listFavourites(root(), root() + sub, order)) {
            const QString kinds[] = {u"up"_s, u"folder"_s, u"shortcut"_s};
            lines += kinds[int(line.kind)] + u' ' + line.text + u' ' + line.tag;
        }
        return lines;
    }

    QTemporaryDir folder;
};

TEST_F(FavouritesFolder, ListsInTheOrderOfADiskOrFoldersFirst) {
    makeFolder(u"sub"_s);
    writeShortcut(u"b.url"_s, "http://b/");
    writeShortcut(u"A.url"_s, "http://a/");
    writeShortcut(u"x.URL"_s, "http://x/");
    write(u"stray.txt"_s, "");
    EXPECT_EQ(list(FavouriteOrder::AsListed),
              (QStringList{u"shortcut A http://a/"_s, u"shortcut b http://b/"_s, u"folder stray.txt Folder"_s,
                           u"folder sub Folder"_s, u"folder x.URL Folder"_s}));
    EXPECT_EQ(list(FavouriteOrder::Sorted),
              (QStringList{u"folder stray.txt Folder"_s, u"folder sub Folder"_s, u"folder x.URL Folder"_s,
                           u"shortcut A http://a/"_s, u"shortcut b http://b/"_s}));
}

TEST_F(FavouritesFolder, LeadsUpFromEveryFolderButTheRoot) {
    makeFolder(u"sub/deep"_s);
    EXPECT_EQ(list(FavouriteOrder::AsListed), QStringList{u"folder sub Folder"_s});
    const QStringList sub{u"up .. "_s + root(), u"folder deep Folder"_s};
    EXPECT_EQ(list(FavouriteOrder::AsListed, u"/sub"_s), sub);
    EXPECT_EQ(list(FavouriteOrder::Sorted, u"/sub"_s), sub);
    EXPECT_EQ(list(FavouriteOrder::Sorted, u"/sub/deep"_s), QStringList{u"up .. "_s + root() + u"/sub"_s});
}

TEST_F(FavouritesFolder, ThatIsGoneShowsTheWayUpAlone) {
    EXPECT_EQ(list(FavouriteOrder::AsListed, u"/gone"_s), QStringList{u"up .. "_s + root()});
    EXPECT_EQ(list(FavouriteOrder::Sorted, u"/gone"_s), QStringList{u"up .. "_s + root()});
}

TEST_F(FavouritesFolder, WithABackslashInItsNameLeadsUpToItsParent) {
    makeFolder(u"a\\b"_s);
    EXPECT_EQ(list(FavouriteOrder::AsListed, u"/a\\b"_s), QStringList{u"up .. "_s + root()});
}

TEST_F(FavouritesFolder, LeavesHiddenNamesOut) {
    write(u".desktop.ini"_s, "");
    makeFolder(u".hidden"_s);
    writeShortcut(u".x.url"_s, "http://x/");
    EXPECT_EQ(list(FavouriteOrder::AsListed), QStringList());
    EXPECT_EQ(list(FavouriteOrder::Sorted), QStringList());
}

TEST_F(FavouritesFolder, WithALinkToItselfIsListedAllTheSame) {
    ASSERT_TRUE(QFile::link(root(), folder.filePath(u"loop"_s)));
    EXPECT_EQ(list(FavouriteOrder::Sorted), QStringList{u"folder loop Folder"_s});
    EXPECT_EQ(list(FavouriteOrder::Sorted, u"/loop"_s), (QStringList{u"up .. "_s + root(), u"folder loop Folder"_s}));
}

TEST_F(FavouritesFolder, OfFiveThousandNamesIsSortedBeforeAnybodyWaits) {
    for (int i = 0; i < 5000; ++i) {
        QFile file(folder.filePath(QString::number(10000 + (i * 7919) % 5000) + u".url"_s));
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    }
    const std::vector<Favourite> lines = listFavourites(root(), root(), FavouriteOrder::Sorted);
    ASSERT_EQ(lines.size(), 5000U);
    EXPECT_TRUE(std::is_sorted(lines.begin(), lines.end(),
                               [](const Favourite& left, const Favourite& right) { return left.text < right.text; }));
}

TEST_F(FavouritesFolder, CountsFilesAndFoldersApart) {
    makeFolder(u"sub"_s);
    makeFolder(u"x.url"_s);
    write(u"a.url"_s, "");
    FolderCount count;
    CountFolderEntries(root(), count);
    EXPECT_EQ(count.files, 1);
    EXPECT_EQ(count.folders, 2);
    CountFolderEntries(root() + u"/gone"_s, count);
    EXPECT_EQ(count.files, 0);
    EXPECT_EQ(count.folders, 0);
}

TEST_F(FavouritesFolder, HoldsShortcutsOfEveryKind) {
    struct Case {
        QByteArray bytes;
        QString url;
    };
    const QByteArray longUrl = "http://a/" + QByteArray(300, 'x');
    const std::vector<Case> cases{
        {"[InternetShortcut]\r\nURL=http://a/\r\n", u"http://a/"_s},
        {"[internetshortcut]\nurl = \"http://a/\"\n", u"http://a/"_s},
        {"[DEFAULT]\r\nBASEURL=http://b/\r\n[InternetShortcut]\r\nURL=http://a/\r\nModified=1\r\n", u"http://a/"_s},
        {"[InternetShortcut]\r\nIconFile=x\r\n", QString()},
        {"[Other]\r\nURL=http://a/\r\n", QString()},
        {"", QString()},
        {"[InternetShortcut]\r\nURL=" + longUrl + "\r\n", QString::fromLatin1(longUrl.first(255))},
        {"[InternetShortcut]\r\nURL=http://a/\x93\xFA\r\n", u"http://a/日"_s},
        {"[InternetShortcut]\r\nURL=http://a/" + QByteArray("\0x", 2) + "\r\n", u"http://a/"_s},
        {"\xEF\xBB\xBF[DEFAULT]\r\n[InternetShortcut]\r\nURL=http://a/\r\n", u"http://a/"_s},
        {"[InternetShortcut]\r\nURL=http://a/\r\n" + QByteArray(1024 * 1024, 'x'), u"http://a/"_s},
    };
    for (const Case& shortcut : cases) {
        write(u"a.url"_s, shortcut.bytes);
        EXPECT_EQ(ReadShortcutURL(folder.filePath(u"a.url"_s)), shortcut.url) << shortcut.bytes.left(60).constData();
    }
    EXPECT_EQ(ReadShortcutURL(folder.filePath(u"gone.url"_s)), QString());
    EXPECT_EQ(ReadShortcutURL(root()), QString());
}

TEST(FavouriteNames, AreExchangedIntoOrderWithoutRegardToCase) {
    EXPECT_EQ(SortNames({u"b"_s, u"A"_s, u"a2"_s, u"日"_s, u"あ"_s, u"ア2"_s}, 5),
              (QStringList{u"A"_s, u"a2"_s, u"b"_s, u"あ"_s, u"ア2"_s, u"日"_s}));
    // What counts as equal is exchanged by the way of the others alone: "b" before "a" takes "A"'s place.
    EXPECT_EQ(SortNames({u"b"_s, u"B"_s, u"a"_s}, 2), (QStringList{u"a"_s, u"B"_s, u"b"_s}));
}

TEST(FavouriteNames, BehindTheLastIndexStayWhereTheyAre) {
    EXPECT_EQ(SortNames({u"c"_s, u"b"_s, u"a"_s}, 1), (QStringList{u"b"_s, u"c"_s, u"a"_s}));
    EXPECT_EQ(SortNames({u"b"_s, u"a"_s}, 99), (QStringList{u"a"_s, u"b"_s}));
    EXPECT_EQ(SortNames({u"b"_s, u"a"_s}, -1), (QStringList{u"b"_s, u"a"_s}));
    EXPECT_EQ(SortNames({}, -1), QStringList());
}

TEST_F(FavouritesFolder, AShortcutThatLeadsToAPipeOrADeviceHasNoAddress) {
    ASSERT_EQ(::mkfifo(QFile::encodeName(folder.filePath(u"pipe.url"_s)).constData(), 0600), 0);
    ASSERT_TRUE(QFile::link(u"/dev/zero"_s, folder.filePath(u"zero.url"_s)));
    ASSERT_TRUE(QFile::link(folder.filePath(u"pipe.url"_s), folder.filePath(u"link.url"_s)));
    for (const QString& name : {u"pipe.url"_s, u"zero.url"_s, u"link.url"_s})
        EXPECT_EQ(ReadShortcutURL(folder.filePath(name)), QString()) << name.toStdString();
    list(FavouriteOrder::AsListed);
}

TEST_F(FavouritesFolder, AShortcutOfGigabytesIsReadAtItsBeginning) {
    writeShortcut(u"a.url"_s, "http://a/");
    ASSERT_TRUE(QFile::resize(folder.filePath(u"a.url"_s), qint64(3) << 30));
    EXPECT_EQ(ReadShortcutURL(folder.filePath(u"a.url"_s)), u"http://a/"_s);
}

} // namespace
} // namespace velloria::tests
