#include "core/text_file.h"

#include "platform/failure.h"
#include "platform/file_write.h"

#include <gtest/gtest.h>

#include <QDir>
#include <QTemporaryDir>

using namespace Qt::StringLiterals;

namespace velloria::tests {
namespace {

using namespace core;

class TextFile : public testing::Test {
protected:
    QString put(const QByteArray& bytes, const QString& name = u"piece.htm"_s) const {
        const QString file = folder.filePath(name);
        platform::replaceFile(file, bytes, platform::Durability::Derived);
        return file;
    }

    QTemporaryDir folder;
};

TEST_F(TextFile, IsReadWholeWithItsOwnLineEnds) {
    EXPECT_EQ(ReadTextFile(put("a\r\nb\nc\rd")), u"a\r\nb\nc\rd"_s);
    EXPECT_EQ(ReadTextFile(put("\x93\xFA\x8BL\r\n")), u"日記\r\n"_s);
}

TEST_F(TextFile, ThatIsMissingReadsAsNothing) {
    EXPECT_EQ(ReadTextFile(folder.filePath(u"no.htm"_s)), QString());
    EXPECT_EQ(ReadTextFile(u""_s), QString());
    EXPECT_EQ(ReadTextFile(folder.path()), QString());
    EXPECT_EQ(ReadTextFile(put("")), QString());
}

TEST_F(TextFile, IsFoundWithoutRegardToCase) {
    put("x", u"PIECE.HTM"_s);
    EXPECT_EQ(ReadTextFile(folder.filePath(u"piece.htm"_s)), u"x"_s);
    EXPECT_EQ(readLines(folder.filePath(u"Piece.htm"_s)), QStringList{u"x"_s});
}

TEST_F(TextFile, ReadsWithAnyBytes) {
    EXPECT_EQ(ReadTextFile(put("a\x85\xA0"
                               "b\x81")),
              u"a・b・"_s);
    EXPECT_EQ(ReadTextFile(put(QByteArray("a\0b", 3))).size(), 3);
}

TEST_F(TextFile, KeepsTheReferencesOfAPiece) {
    EXPECT_EQ(ReadTextFile(put("caf&#233;")), u"caf&#233;"_s);
}

TEST_F(TextFile, HasLinesThatEndInEitherWay) {
    EXPECT_EQ(readLines(put("a\r\nb\nc")), (QStringList{u"a"_s, u"b"_s, u"c"_s}));
    EXPECT_EQ(readLines(put("a\r\n")), QStringList{u"a"_s});
    EXPECT_EQ(readLines(put("a\r\n\r\nb\r\n")), (QStringList{u"a"_s, u""_s, u"b"_s}));
    EXPECT_EQ(readLines(put("\r\n")), QStringList{u""_s});
}

TEST_F(TextFile, HasNoLinesWhenItIsEmptyOrMissing) {
    EXPECT_EQ(readLines(put("")), QStringList());
    EXPECT_EQ(readLines(folder.filePath(u"no.csv"_s)), QStringList());
}

TEST_F(TextFile, IsWrittenInLinesThatEndInCrLf) {
    const QString file = folder.filePath(u"Genre.csv"_s);
    writeLines(file, {u"一般"_s, u""_s, u"ア"_s});
    EXPECT_EQ(platform::readFile(file), "\x88\xEA\x94\xCA\r\n\r\n\x83\x41\r\n");
    writeLines(file, {});
    EXPECT_EQ(platform::readFile(file), "");
}

TEST_F(TextFile, KeepsALineBreakWithinALineOutOfTheFile) {
    const QString file = folder.filePath(u"Genre.csv"_s);
    writeLines(file, {u"a\r\nb"_s, u"c\nd"_s});
    EXPECT_EQ(readLines(file), (QStringList{u"a  b"_s, u"c d"_s}));
}

TEST_F(TextFile, BringsBackCharactersThatTheCodePageLacks) {
    const QString file = folder.filePath(u"Genre.csv"_s);
    const QStringList lines{u"café"_s, u"😀"_s, u"&#65; &amp;"_s, u"ｶﾞ"_s};
    writeLines(file, lines);
    EXPECT_TRUE(platform::readFile(file).contains("caf&#233;\r\n"));
    EXPECT_EQ(readLines(file), lines);
}

TEST_F(TextFile, HasTwoFieldsALineThatMayStandInQuotes) {
    const struct {
        QString line;
        QString first;
        QString second;
    } cases[] = {
        {u"a,b"_s, u"a"_s, u"b"_s},
        {u" \ta, b"_s, u"a"_s, u"b"_s},
        {u"\"a,b\",\"c,d\""_s, u"a,b"_s, u"c,d"_s},
        {u"\"a\" , b,c"_s, u"a"_s, u"b"_s},
        {u"a b,c d"_s, u"a b"_s, u"c d"_s},
        {u"a"_s, u"a"_s, u""_s},
        {u",b"_s, u""_s, u"b"_s},
        {u""_s, u""_s, u""_s},
        {u"\"a,b"_s, u"a,b"_s, u""_s},
        {u"a,\"b,c"_s, u"a"_s, u"b,c"_s},
        {u"\"\",b"_s, u""_s, u"b"_s},
    };
    for (const auto& c : cases)
        EXPECT_EQ(twoFields(c.line), std::pair(c.first, c.second)) << c.line.toStdString();
}

TEST_F(TextFile, IsRefusedAloudWhereItCantBeWritten) {
    EXPECT_THROW(writeLines(folder.filePath(u"gone/Genre.csv"_s), {u"a"_s}), platform::Failure);
    EXPECT_TRUE(QDir(folder.path()).isEmpty());
}

TEST_F(TextFile, WithLinesThatCantBeReadIsNoEmptyOne) {
    const QString file = folder.filePath(u"list.csv"_s);
    ASSERT_TRUE(QFile::link(u"/proc/self/mem"_s, file)); // there, and its first bytes are an error
    EXPECT_THROW(readLines(file), platform::Failure);
    ASSERT_TRUE(QFile::remove(file));
    ASSERT_TRUE(QFile::link(folder.filePath(u"gone"_s), file));
    EXPECT_THROW(readLines(file), platform::Failure);
    EXPECT_THROW(readLines(folder.path()), platform::Failure);
    EXPECT_EQ(ReadTextFile(file), QString()) << "a piece of a page is missed by nobody";
}

} // namespace
} // namespace velloria::tests
