#include "core/ini.h"

#include "platform/code_page.h"
#include "platform/failure.h"
#include "platform/file_write.h"
#include "support/vectors.h"

#include <gtest/gtest.h>

#include <QDir>
#include <QFile>
#include <QTemporaryDir>

#include <fcntl.h>
#include <sys/stat.h>

using namespace Qt::StringLiterals;

namespace velloria::tests {
namespace {

using namespace core;
using platform::Failure;

class Ini : public testing::Test {
protected:
    void put(const QByteArray& bytes) { platform::replaceFile(file, bytes, platform::Durability::Derived); }
    QByteArray bytes() const { return platform::readFile(file); }

    QTemporaryDir folder;
    const QString file = folder.filePath(u"diary.ini"_s);
};

TEST_F(Ini, ReadsAsThePlatformDoes) {
    for (const VectorRow& row : readVectors("profile_read.tsv")) {
        QFile::remove(file);
        if (row.has("file"))
            put(row.bytes("file"));
        const QString section = row.text("section");
        const QString key = row.text("key");
        EXPECT_EQ(ReadIniDef(file, section, key, row.text("default")), row.text("result")) << "line " << row.line;
        if (row.text("default").isEmpty()) {
            EXPECT_EQ(ReadIni(file, section, key), row.text("result")) << "line " << row.line;
        }
    }
}

TEST_F(Ini, ReadsIntegersAsThePlatformDoes) {
    for (const VectorRow& row : readVectors("profile_int.tsv")) {
        QFile::remove(file);
        if (row.has("file"))
            put(row.bytes("file"));
        SCOPED_TRACE(row.line);
        const auto read = [&] {
            return ReadIniIntDef(file, row.text("section"), row.text("key"), qint16(row.text("default").toInt()));
        };
        if (row.text("result16") == u"overflow") {
            EXPECT_THROW(read(), Failure);
        } else {
            EXPECT_EQ(read(), row.text("result16").toInt());
        }
    }
}

TEST_F(Ini, ListsSectionsAsThePlatformDoes) {
    for (const VectorRow& row : readVectors("profile_sections.tsv")) {
        QFile::remove(file);
        if (row.has("file"))
            put(row.bytes("file"));
        EXPECT_EQ(ReadIniSections(file), row.text("names").split(u'\n', Qt::SkipEmptyParts)) << "line " << row.line;
    }
}

TEST_F(Ini, AnEmptyValueIsNotTheDefault) {
    put("[ALL]\r\nDataPath=\r\n");
    EXPECT_EQ(ReadIniDef(file, u"ALL"_s, u"DataPath"_s, u"D"_s), u"");
    EXPECT_EQ(ReadIniDef(file, u"ALL"_s, u"IMGPath"_s, u"D"_s), u"D");
    EXPECT_EQ(ReadIniIntDef(file, u"ALL"_s, u"DataPath"_s, 5), 0);
    EXPECT_EQ(ReadIniIntDef(file, u"ALL"_s, u"IMGPath"_s, 5), 5);
}

TEST_F(Ini, WhatIsWrittenIsOnDiskAndReadsBack) {
    WriteIni(file, u"ALL"_s, u"DataPath"_s, u"C:\\日記\\"_s);
    EXPECT_EQ(bytes(), platform::toCodePage(u"[ALL]\r\nDataPath=C:\\日記\\\r\n"_s));
    EXPECT_EQ(ReadIni(file, u"all"_s, u"DATAPATH"_s), u"C:\\日記\\");
}

TEST_F(Ini, KeepsWhatTheCodePageLacks) {
    WriteIni(file, u"ALL"_s, u"DataPath"_s, u"/home/josé/😀/"_s);
    EXPECT_EQ(bytes(), "[ALL]\r\nDataPath=/home/jos&#233;/&#128512;/\r\n");
    EXPECT_EQ(ReadIni(file, u"ALL"_s, u"DataPath"_s), u"/home/josé/😀/");
    WriteIni(file, u"〜"_s, u"é"_s, u"1"_s);
    WriteIni(file, u"〜"_s, u"é"_s, u"2"_s);
    EXPECT_EQ(ReadIniInt(file, u"〜"_s, u"é"_s), 2);
    EXPECT_EQ(ReadIniSections(file), (QStringList{u"ALL"_s, u"～"_s}));
}

TEST_F(Ini, KeepsOuterQuotes) {
    for (const QString& value : {u"\"a\""_s, u"'a'"_s, u"\"\""_s, u"\""_s}) {
        WriteIni(file, u"FTP"_s, u"Pass"_s, value);
        EXPECT_EQ(ReadIni(file, u"FTP"_s, u"Pass"_s), value);
    }
}

TEST_F(Ini, OuterBlanksVanishOnReading) {
    WriteIni(file, u"s"_s, u"Separetor"_s, u" | "_s);
    EXPECT_EQ(ReadIni(file, u"s"_s, u"Separetor"_s), u"|");
}

TEST_F(Ini, ALineBreakInAValueBecomesABlank) {
    WriteIni(file, u"RSS"_s, u"Title"_s, u"one\r\n[ALL]\nDataPath=x\ry"_s);
    EXPECT_EQ(bytes(), "[RSS]\r\nTitle=one [ALL] DataPath=x y\r\n");
}

TEST_F(Ini, ReadsTheFirst255BytesOfALongValue) {
    WriteIni(file, u"s"_s, u"k"_s, QString(300, u'a'));
    EXPECT_EQ(ReadIni(file, u"s"_s, u"k"_s), QString(255, u'a'));
    WriteIni(file, u"s"_s, u"k"_s, QString(200, u'あ'));
    EXPECT_EQ(ReadIni(file, u"s"_s, u"k"_s), QString(127, u'あ'));
    EXPECT_EQ(ReadIniDef(file, u"s"_s, u"missing"_s, QString(200, u'あ')), QString(127, u'あ'));
    EXPECT_EQ(ReadIniDef(file, u"s"_s, u"missing"_s, u"é "_s), u"é");
}

TEST_F(Ini, AnEditFromOutsideShowsAtTheNextRead) {
    put("[s]\r\nk=1\r\n");
    EXPECT_EQ(ReadIniInt(file, u"s"_s, u"k"_s), 1);
    struct stat before = {};
    ASSERT_EQ(::stat(QFile::encodeName(file).constData(), &before), 0);
    {
        QFile edited(file); // same size, same times, same inode
        ASSERT_TRUE(edited.open(QIODevice::ReadWrite));
        edited.write("[s]\r\nk=2\r\n");
    }
    const timespec times[2] = {before.st_atim, before.st_mtim};
    ASSERT_EQ(::utimensat(AT_FDCWD, QFile::encodeName(file).constData(), times, 0), 0);
    EXPECT_EQ(ReadIniInt(file, u"s"_s, u"k"_s), 2);
    QFile::remove(file);
    EXPECT_EQ(ReadIniInt(file, u"s"_s, u"k"_s), 0);
}

TEST_F(Ini, ANumberBeyond16BitsIsAFailureThatNamesItsPlace) {
    for (const QByteArray value : {"40000", "32768", "-32769"}) {
        put("[Browser]\r\nLeft=" + value + "\r\n");
        try {
            ReadIniIntDef(file, u"Browser"_s, u"Left"_s, 7);
            ADD_FAILURE() << value.constData();
        } catch (const Failure& failure) {
            EXPECT_EQ(failure.file(), file);
            EXPECT_TRUE(failure.reason().contains(u"[Browser] Left="_s + QString::fromLatin1(value))) << failure.what();
        }
        EXPECT_THROW(ReadIniInt(file, u"Browser"_s, u"Left"_s), Failure);
    }
}

TEST_F(Ini, DeletingTheLastKeyLeavesTheHeader) {
    put("; note\r\n[s]\r\nk=1\r\nk=2\r\n");
    DeleteIniKey(file, u"S"_s, u"K"_s);
    EXPECT_EQ(bytes(), "; note\r\n[s]\r\nk=2\r\n");
    DeleteIniKey(file, u"s"_s, u"k"_s);
    EXPECT_EQ(bytes(), "; note\r\n[s]\r\n");
    DeleteIniKey(file, u"s"_s, u"k"_s);
    EXPECT_EQ(bytes(), "; note\r\n[s]\r\n");
    EXPECT_EQ(ReadIniSections(file), QStringList{u"s"_s});
}

TEST_F(Ini, AWriteThatTheMachineRefusesIsPassedOver) {
    put("[s]\r\nk=1\r\n");
    ASSERT_EQ(::chmod(QFile::encodeName(file).constData(), 0444), 0);
    WriteIni(file, u"s"_s, u"k"_s, u"2"_s);
    DeleteIniKey(file, u"s"_s, u"k"_s);
    EXPECT_EQ(bytes(), "[s]\r\nk=1\r\n");
    WriteIni(folder.path(), u"s"_s, u"k"_s, u"2"_s);
    WriteIni(folder.filePath(u"no/such.ini"_s), u"s"_s, u"k"_s, u"2"_s);
    WriteIni(QString(), u"s"_s, u"k"_s, u"2"_s);
    EXPECT_EQ(QDir(folder.path()).entryList(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot),
              QStringList{u"diary.ini"_s});
}

TEST_F(Ini, FindsAFileThatWindowsSpelledInCapitals) {
    put("[s]\r\nk=1\r\n");
    ASSERT_TRUE(QFile::rename(file, folder.filePath(u"DIARY.INI"_s)));
    EXPECT_EQ(ReadIniInt(file, u"s"_s, u"k"_s), 1);
    WriteIni(file, u"s"_s, u"k"_s, u"2"_s);
    EXPECT_EQ(ReadIni(file, u"s"_s, u"k"_s), u"2");
    EXPECT_EQ(ReadIniSections(file), QStringList{u"s"_s});
    EXPECT_EQ(QDir(folder.path()).entryList(QDir::Files), QStringList{u"DIARY.INI"_s});
}

TEST(TrimNull, GivesThePartAheadOfTheFirstNul) {
    EXPECT_EQ(TrimNull(u"a\0b\0c"_s), u"a");
    EXPECT_EQ(TrimNull(u"abc"_s), u"abc");
    EXPECT_EQ(TrimNull(u"\0abc"_s), u"");
    EXPECT_EQ(TrimNull(QString()), u"");
}

} // namespace
} // namespace velloria::tests
