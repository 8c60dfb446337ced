#include "core/upload_list.h"

#include "platform/failure.h"
#include "platform/file_write.h"
#include "support/folder_turn.h"

#include <gtest/gtest.h>

#include <QDir>
#include <QFile>
#include <QTemporaryDir>

#include <thread>

using namespace Qt::StringLiterals;

namespace velloria::tests {
namespace {

using namespace core;

class UploadList : public testing::Test {
protected:
    void put(const QByteArray& bytes) const { platform::replaceFile(file, bytes, platform::Durability::Derived); }
    QByteArray bytes() const { return platform::readFile(file); }

    /// The rows as "folder|name".
    QStringList rows() const {
        QStringList rows;
        for (const UploadRow& row : readUploadList(file))
            rows += row.folder + u'|' + row.name;
        return rows;
    }

    QTemporaryDir folder;
    const QString file = folder.filePath(u"upload.tmp"_s);
};

TEST_F(UploadList, HasFolderCommaAndNameInARow) {
    writeUploadList(file, {{u"/home/taro/site"_s, u"index.htm"_s}, {u"/home/taro/site"_s, u"日記.htm"_s}});
    EXPECT_EQ(bytes(), "/home/taro/site,index.htm\r\n/home/taro/site,\x93\xFA\x8BL.htm\r\n");
    EXPECT_EQ(rows(), (QStringList{u"/home/taro/site|index.htm"_s, u"/home/taro/site|日記.htm"_s}));
}

TEST_F(UploadList, ReplacesAnOldOne) {
    put("old,old.htm\r\n");
    writeUploadList(file, {{u"/a"_s, u"b"_s}});
    EXPECT_EQ(bytes(), "/a,b\r\n");
    writeUploadList(file, {});
    EXPECT_EQ(bytes(), "");
}

TEST_F(UploadList, GrowsAndKeepsWhatStandsThere) {
    appendUploadList(file, {{u"/a"_s, u"1"_s}});
    const QByteArray odd = bytes() + "  \"x\" , y , z\r\n\xFF\n";
    put(odd);
    appendUploadList(file, {{u"/a"_s, u"1"_s}, {u"/a"_s, u"2"_s}});
    EXPECT_EQ(bytes(), odd + "/a,1\r\n/a,2\r\n");
}

TEST_F(UploadList, TwoProgramsAppendAndNoRowIsLost) {
    const auto appendMany = [&](const QString& who) {
        for (int i = 0; i < 60; ++i) {
            appendUploadList(file, {{u"/"_s + who, QString::number(i)}});
            removeRepeatedRows(file);
        }
    };
    std::thread other(appendMany, u"other"_s);
    appendMany(u"one"_s);
    other.join();
    QStringList found = rows();
    found.sort();
    QStringList expected;
    for (int i = 0; i < 60; ++i)
        expected << u"/other|%1"_s.arg(i) << u"/one|%1"_s.arg(i);
    expected.sort();
    EXPECT_EQ(found, expected);
}

TEST_F(UploadList, EveryChangeWaitsForThatOfAnotherProgram) {
    const std::vector<UploadRow> row{{u"/a"_s, u"1"_s}};
    put("/a,1\r\n");
    const std::function<void()> changes[] = {
        [&] { writeUploadList(file, row); }, [&] { appendUploadList(file, row); }, [&] { removeRepeatedRows(file); },
        [&] { restoreUploadList(file, row, "x"); }, [&] { removeUploadList(file, "x"); }};
    for (const auto& change : changes)
        EXPECT_TRUE(waitsForTurn(folder.path(), change)) << &change - changes;
}

TEST_F(UploadList, KeepsTheFirstOfRepeatedRows) {
    const QByteArray single = "/a,1\n /b , 1, more\r\n/a,2";
    put(single);
    removeRepeatedRows(file);
    EXPECT_EQ(bytes(), single); // nothing was twice there
    put("/a,1\r\n/b,1\r\n/a,1\r\n/a,2\r\n/b,1\r\n");
    removeRepeatedRows(file);
    EXPECT_EQ(bytes(), "/a,1\r\n/b,1\r\n/a,2\r\n");
    platform::removeFile(file);
    removeRepeatedRows(file);
    EXPECT_FALSE(QFile::exists(file));
}

TEST_F(UploadList, IsRemovedOrBroughtBackOnlyAsLongAsNobodyElseHasChangedIt) {
    const std::vector<UploadRow> mine{{u"/a"_s, u"1"_s}};
    put("/other,1\r\n");
    restoreUploadList(file, mine, "before");
    removeUploadList(file, "/a,1\r\n");
    EXPECT_EQ(bytes(), "/other,1\r\n");
    writeUploadList(file, mine);
    restoreUploadList(file, mine, "before");
    EXPECT_EQ(bytes(), "before");
    writeUploadList(file, mine);
    restoreUploadList(file, mine, std::nullopt);
    EXPECT_FALSE(QFile::exists(file));
    put("x");
    removeUploadList(file, "x");
    EXPECT_FALSE(QFile::exists(file));
}

TEST_F(UploadList, OfAFolderFromAWindowsDiskIsTheSameInOtherCase) {
    const QString upper = folder.filePath(u"UPLOAD.TMP"_s);
    platform::replaceFile(upper, "/a,1\r\n", platform::Durability::Derived);
    appendUploadList(file, {{u"/a"_s, u"2"_s}});
    EXPECT_EQ(platform::readFile(upper), "/a,1\r\n/a,2\r\n");
    EXPECT_FALSE(QFile::exists(file));
}

TEST_F(UploadList, ThatIsAFolderIsNamedAndNoEmptyOne) {
    ASSERT_TRUE(QDir(folder.path()).mkdir(u"upload.tmp"_s));
    for (const auto& change :
         std::initializer_list<std::function<void()>>{[&] {
                                                          writeUploadList(file, {{u"/a"_s, u"1"_s}});
                                                      },
                                                      [&] {
                                                          appendUploadList(file, {{u"/a"_s, u"1"_s}});
                                                      }}) {
        QString named;
        try {
            change();
        } catch (const platform::Failure& failure) {
            named = failure.file();
        }
        EXPECT_EQ(named, file);
    }
    EXPECT_EQ(QDir(folder.path()).entryList(QDir::AllEntries | QDir::NoDotAndDotDot | QDir::Hidden),
              QStringList{u"upload.tmp"_s});
}

TEST_F(UploadList, NewRowsStandBehindALastLineWithoutItsEnd) {
    const struct {
        QByteArray old;
        QByteArray grown;
    } cases[] = {{"/a,1", "/a,1\r\n/a,2\r\n"},
                 {"/a,1\n", "/a,1\n/a,2\r\n"},
                 {"/a,0\r\n/a,1", "/a,0\r\n/a,1\r\n/a,2\r\n"},
                 {"", "/a,2\r\n"}};
    for (const auto& c : cases) {
        put(c.old);
        appendUploadList(file, {{u"/a"_s, u"2"_s}});
        EXPECT_EQ(bytes(), c.grown) << c.old.constData();
    }
    put("/a,1");
    appendUploadList(file, {});
    EXPECT_EQ(bytes(), "/a,1");
}

TEST_F(UploadList, IsReadByTheRuleOfTwoFields) {
    const struct {
        const char* line;
        QString row;
    } cases[] = {
        {"/a,b.htm", u"/a|b.htm"_s},
        {"  /a,\t b.htm", u"/a|b.htm"_s},
        {"\"/a,b\",\"c,d.htm\"", u"/a,b|c,d.htm"_s},
        {"\"/a\" , b.htm", u"/a|b.htm"_s},
        {"/a,b.htm,c", u"/a|b.htm"_s},
        {"/a b,c d.htm", u"/a b|c d.htm"_s},
        {"/a", u"/a|"_s},
        {"/a,", u"/a|"_s},
        {",b", u"|b"_s},
        {"", u"|"_s},
        {"\"/a", u"/a|"_s},
    };
    for (const auto& c : cases) {
        put(QByteArray(c.line) + "\r\n");
        EXPECT_EQ(rows(), QStringList{c.row}) << c.line;
    }
}

TEST_F(UploadList, LosesNoOtherRowToAFolderWithAComma) {
    writeUploadList(file, {{u"/a,b"_s, u"x.htm"_s}, {u"/c"_s, u"y.htm"_s}});
    EXPECT_EQ(rows(), (QStringList{u"/a|b"_s, u"/c|y.htm"_s}));
}

TEST_F(UploadList, IsEmptyWhenItIsMissing) {
    EXPECT_EQ(rows(), QStringList());
}

TEST_F(UploadList, BringsBackEveryNameAsItIsOnDisk) {
    // é and the smiling face have no code; the wave dash and its like have that of another character.
    const QStringList names{u"café.htm"_s, u"😀.htm"_s, u"〜.htm"_s, u"a−b‖c—d.htm"_s, u"～.htm"_s, u"¢£¬.htm"_s};
    for (const QString& name : names) {
        writeUploadList(file, {{u"/site/"_s + name, name}});
        EXPECT_EQ(rows(), QStringList{u"/site/"_s + name + u'|' + name}) << name.toStdString();
    }
}

TEST_F(UploadList, IsRefusedAloudWhereItCantBeWritten) {
    EXPECT_THROW(writeUploadList(folder.filePath(u"gone/upload.tmp"_s), {}), platform::Failure);
    EXPECT_THROW(appendUploadList(folder.filePath(u"gone/upload.tmp"_s), {}), platform::Failure);
}

TEST_F(UploadList, ThatCantBeReadIsNeitherEmptyNorReplaced) {
    for (const QString& end : {u"/proc/self/mem"_s, folder.filePath(u"gone"_s)}) {
        QFile::remove(file);
        ASSERT_TRUE(QFile::link(end, file));
        EXPECT_THROW(readUploadList(file), platform::Failure);
        EXPECT_THROW(appendUploadList(file, {{u"/a"_s, u"2"_s}}), platform::Failure);
        EXPECT_EQ(QFileInfo(file).symLinkTarget(), end);
    }
}

} // namespace
} // namespace velloria::tests
