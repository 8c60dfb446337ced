#include "platform/profile_file.h"

#include "platform/code_page.h"
#include "platform/failure.h"
#include "platform/file_write.h"
#include "support/vectors.h"

#include <gtest/gtest.h>

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QTemporaryDir>

#include <sys/stat.h>
#include <thread>

using namespace Qt::StringLiterals;

namespace velloria::tests {
namespace {

using platform::changedProfile;
using platform::Failure;
using platform::ProfileFile;
using platform::toCodePage;
using platform::writeProfile;

std::optional<QString> valueIn(const QByteArray& bytes, const QString& section, const QString& key) {
    return ProfileFile::fromBytes(bytes).value(section, key);
}

/// A value written into an empty file and read again.
QString roundTrip(const QString& value) {
    return valueIn(changedProfile({}, u"s"_s, u"k"_s, value), u"s"_s, u"k"_s).value_or(u"missing"_s);
}

/// The file of a table's row, on disk unless the row has none.
class RowFile {
public:
    RowFile(const VectorRow& row, const char* column) {
        if (row.has(column))
            platform::replaceFile(name(), row.bytes(column), platform::Durability::Derived);
    }
    QString name() const { return m_folder.filePath(u"a.ini"_s); }

private:
    QTemporaryDir m_folder;
};

// --- Reading

TEST(ProfileFile, ReadsValuesAsThePlatformDoes) {
    for (const VectorRow& row : readVectors("profile_read.tsv")) {
        const RowFile file(row, "file");
        EXPECT_EQ(ProfileFile(file.name()).valueOr(row.text("section"), row.text("key"), row.text("default")),
                  row.text("result"))
            << "line " << row.line;
    }
}

TEST(ProfileFile, ReadsNumbersAsThePlatformDoes) {
    for (const VectorRow& row : readVectors("profile_int.tsv")) {
        const RowFile file(row, "file");
        const qint32 number =
            ProfileFile(file.name()).number(row.text("section"), row.text("key")).value_or(row.text("default").toInt());
        EXPECT_EQ(number, row.text("result").toInt()) << "line " << row.line;
    }
}

TEST(ProfileFile, ListsSectionsAsThePlatformDoes) {
    for (const VectorRow& row : readVectors("profile_sections.tsv")) {
        const RowFile file(row, "file");
        EXPECT_EQ(ProfileFile(file.name()).sections(), row.text("names").split(u'\n', Qt::SkipEmptyParts))
            << "line " << row.line;
    }
}

TEST(ProfileFile, AMissingKeyIsNoEmptyValue) {
    EXPECT_EQ(valueIn("[s]\r\nk=\r\n", u"s"_s, u"k"_s), QString(u""_s));
    EXPECT_FALSE(valueIn("[s]\r\nk=\r\n", u"s"_s, u"l"_s).has_value());
    EXPECT_FALSE(valueIn("[s]\r\nk\r\n", u"s"_s, u"k"_s).has_value());
    EXPECT_EQ(ProfileFile::fromBytes("[s]\r\nk=\r\n").number(u"s"_s, u"k"_s), 0);
    EXPECT_FALSE(ProfileFile::fromBytes("[s]\r\nk=\r\n").number(u"s"_s, u"l"_s).has_value());
}

TEST(ProfileFile, NamesHaveNoCaseInAsciiAlone) {
    const QByteArray bytes = toCodePage(u"[ÄΣД]\r\nＡ=1\r\n[ア]\r\nk=2\r\n"_s);
    EXPECT_EQ(valueIn(bytes, u"äΣД"_s, u"Ａ"_s), std::nullopt);
    EXPECT_EQ(valueIn(bytes, u"ÄσД"_s, u"Ａ"_s), std::nullopt);
    EXPECT_EQ(valueIn(bytes, u"ÄΣД"_s, u"ａ"_s), std::nullopt);
    EXPECT_EQ(valueIn(bytes, u"ÄΣД"_s, u"Ａ"_s), u"1"_s);
    // ア is 83 41, チ is 83 61: the second bytes differ as "A" and "a" do.
    EXPECT_EQ(valueIn(bytes, u"チ"_s, u"k"_s), std::nullopt);
    EXPECT_EQ(valueIn(bytes, u"ア"_s, u"K"_s), u"2"_s);
}

TEST(ProfileFile, KeepsAValueWithin255BytesAndItsCharactersWhole) {
    const struct {
        int ahead; ///< one-byte characters
        QString last;
        int kept; ///< characters of `last` that are read
    } cases[] = {
        {300, u""_s, 0},
        {254, u"xyz"_s, 1},
        {254, u"日記"_s, 0},
        {253, u"日記"_s, 1},
        {254, u"ｱｲ"_s, 1},
        {249, u"é"_s, 1}, // "&#233;" ends at byte 255
        {250, u"é"_s, 0}, // at 256
        {254, u"é"_s, 0}, // only the "&" would fit
        {246, u"😀"_s, 2}, // "&#128512;" is one character more than a single unit
        {247, u"😀"_s, 0},
        {248, u"éé"_s, 1},
        {245, u"éxxxxx;"_s, 5}, // a whole reference before the cut, a semicolon behind it
        {250, u"&#65;x"_s, 5},  // no reference of ours: as good as any
                                // text
        {253, u"&#65;x"_s, 2},
        {253, u"&x&#233;"_s, 2}, // the reference behind the cut does not matter
    };
    for (const auto& [ahead, last, kept] : cases) {
        const QString x(ahead, u'x');
        EXPECT_EQ(roundTrip(x + last), x.left(255) + last.left(kept)) << ahead << ' ' << last.toStdString();
    }
}

TEST(ProfileFile, CutsAfterTheQuotesAreGone) {
    const QString longest(253, u'x');
    EXPECT_EQ(valueIn("[s]\r\nk=\"" + QByteArray(255, 'x') + "\"\r\n", u"s"_s, u"k"_s), QString(255, u'x'));
    EXPECT_EQ(roundTrip(u'"' + longest + u'"'), u'"' + longest + u'"');
}

TEST(ProfileFile, TurnsReferencesBackWhenTheCodePageLacksTheCharacter) {
    EXPECT_EQ(valueIn("[s]\r\nk=&#233;&#65;&amp;&#128512;\r\n", u"s"_s, u"k"_s), u"é&#65;&amp;😀"_s);
    EXPECT_EQ(valueIn("[&#233;]\r\n&#128512;=1\r\n", u"é"_s, u"😀"_s), u"1"_s);
    EXPECT_EQ(ProfileFile::fromBytes("[&#233;]\r\n").sections(), QStringList{u"é"_s});
}

TEST(ProfileFile, AValueEndsAtANul) {
    EXPECT_EQ(valueIn(QByteArray("[s]\r\nk=a\0b\r\nl=2\r\n", 17), u"s"_s, u"k"_s), u"a"_s);
    EXPECT_EQ(valueIn(QByteArray("[s]\r\nk=a\0b\r\nl=2\r\n", 17), u"s"_s, u"l"_s), u"2"_s);
    EXPECT_EQ(roundTrip(u"a\0b"_s), u"a");
}

TEST(ProfileFile, ReadsNumbersWithOddFronts) {
    const struct {
        QByteArray value;
        qint32 number;
    } cases[] = {
        {"-0x10", -16},
        {"0x", 0},
        {"0xfFg", 255},
        {"\" 5\"", 5},
        {"+-5", 0},
        {"-2147483648", INT_MIN},
        {"0X10", 0},
        {"-", 0},
        {"-2147483649", INT_MAX},
        {"\x83\x41"
         "5",
         0},
    };
    for (const auto& [value, number] : cases)
        EXPECT_EQ(ProfileFile::fromBytes("[s]\r\nk=" + value).number(u"s"_s, u"k"_s), number) << value.constData();
}

TEST(ProfileFile, TheSectionListEndsInsideItsBuffer) {
    QByteArray bytes;
    for (int i = 0; i < 600; ++i)
        bytes += "[user" + QByteArray::number(i).rightJustified(3, '0') + "]\r\n";
    // 511 names with their NULs take 4088 bytes, two NULs end the list: 6 are left, and the platform uses them.
    QStringList names = ProfileFile::fromBytes(bytes).sections();
    ASSERT_EQ(names.size(), 512);
    EXPECT_EQ(names.first(), u"user000");
    EXPECT_EQ(names[510], u"user510");
    EXPECT_EQ(names.last(), u"user51");

    names = ProfileFile::fromBytes("[12345]\r\n" + bytes).sections();
    ASSERT_EQ(names.size(), 511 + 1);
    EXPECT_EQ(names.last(), u"user510"); // 12345 leaves no byte for the next one
}

TEST(ProfileFile, ACutSectionNameHoldsNoHalfCharacter) {
    const QByteArray bytes = '[' + QByteArray(4091, 'x') + "]\r\n" + toCodePage(u"[日記]"_s);
    EXPECT_EQ(ProfileFile::fromBytes(bytes).sections().last(), u"日");
    EXPECT_EQ(ProfileFile::fromBytes("[x" + bytes.sliced(1)).sections().size(), 1);
    EXPECT_EQ(ProfileFile::fromBytes('[' + QByteArray(5000, 'x')).sections(), QStringList{QString(4094, u'x')});
}

TEST(ProfileFile, HalfACharacterSpoilsNoOtherLine) {
    const QByteArray bytes = "[s]\r\nk=a\x83\r\nl=2\n[t\x83\nm=3\n";
    EXPECT_EQ(valueIn(bytes, u"s"_s, u"k"_s), u"a・"_s);
    EXPECT_EQ(valueIn(bytes, u"s"_s, u"l"_s), u"2"_s);
    EXPECT_EQ(valueIn(bytes, u"t・"_s, u"m"_s), u"3"_s);
}

TEST(ProfileFile, AMissingFileHasNoKeysAndAFolderIsNone) {
    const QTemporaryDir folder;
    EXPECT_THROW(ProfileFile{folder.path()}, Failure);
    EXPECT_TRUE(ProfileFile(folder.filePath(u"no/such"_s)).sections().isEmpty());
    EXPECT_TRUE(ProfileFile(QString()).sections().isEmpty());
}

// --- Writing

/// Rows whose value the platform writes as it is and reads back without its quotes; ours keeps them.
bool isDeliberatelyQuoted(const VectorRow& row) {
    return row.text("value") == u"\"v\"";
}

TEST(ProfileFile, WritesAsThePlatformDoes) {
    int exceptions = 0;
    for (const VectorRow& row : readVectors("profile_write.tsv")) {
        const RowFile file(row, "before");
        const std::optional<QString> value = row.has("value") ? std::optional(row.text("value")) : std::nullopt;
        writeProfile(file.name(), row.text("section"), row.text("key"), value);
        QByteArray expected = row.bytes("after");
        if (isDeliberatelyQuoted(row)) {
            ++exceptions;
            expected.replace("\"v\"", "\"\"v\"\"");
        }
        EXPECT_EQ(platform::readFile(file.name()), expected) << "line " << row.line;
    }
    EXPECT_EQ(exceptions, 1);
}

TEST(ProfileFile, ReadsBackWhatItWrote) {
    for (const QString& value : {u"a b"_s,
                                 u"é"_s,
                                 u"😀 & &amp; &#65;"_s,
                                 u"C:\\日記\\"_s,
                                 u"\"v\""_s,
                                 u"'v'"_s,
                                 u"\"\""_s,
                                 u"''"_s,
                                 u"\""_s,
                                 u"'"_s,
                                 u"\"v'"_s,
                                 u"\"\"v\"\""_s,
                                 u"'\"v\"'"_s,
                                 u"\" v \""_s,
                                 u"\"é\""_s,
                                 u"\"a\" and \"b\""_s,
                                 u"　全角　"_s,
                                 u"表ソ[ゾ]"_s,
                                 u";c"_s,
                                 u"[s]"_s,
                                 u"a=b"_s,
                                 u"¥"_s,
                                 u"\u0080"_s}) {
        EXPECT_EQ(roundTrip(value), value) << value.toStdString();
    }
}

TEST(ProfileFile, LosesWhatThePlatformLoses) {
    EXPECT_EQ(roundTrip(u" v\t"_s), u"v");
    EXPECT_EQ(roundTrip(u"〜−‖—"_s), u"～－∥―"); // written as the characters that the code page has in their place
    EXPECT_EQ(roundTrip(u"&#233;"_s), u"é");
    EXPECT_EQ(roundTrip(QString(QChar(0xD83D))), u"?");
    EXPECT_EQ(roundTrip(u" 'v' "_s), u" 'v' "); // blanks outside of quotes stay with them
}

TEST(ProfileFile, AnEmptyQuotedAndALongValueAreWrittenWhole) {
    EXPECT_EQ(changedProfile({}, u"s"_s, u"k"_s, u"''"_s), "[s]\r\nk=\"''\"\r\n");
    EXPECT_EQ(changedProfile({}, u"s"_s, u"k"_s, u"\""_s), "[s]\r\nk=\"\r\n");
    EXPECT_EQ(changedProfile({}, u"s"_s, u"k"_s, QString(300, u'x')), "[s]\r\nk=" + QByteArray(300, 'x') + "\r\n");
}

TEST(ProfileFile, ALineBreakStaysWithinItsLine) {
    EXPECT_EQ(changedProfile({}, u"s"_s, u"k"_s, u"a\r\nb\nc\rd"_s), "[s]\r\nk=a b c d\r\n");
    const QByteArray bytes = changedProfile({}, u"s\r\n[t]"_s, u"k\nl"_s, u"v"_s);
    EXPECT_EQ(ProfileFile::fromBytes(bytes).sections().size(), 1);
    EXPECT_EQ(bytes.count('\n'), 2);
}

TEST(ProfileFile, FindsTheNamesThatItWrote) {
    for (const QString& name : {u"é"_s, u"😀"_s, u"〜"_s, u"−‖—"_s, u"ゾーン"_s, u"¥"_s, u" blanks "_s, u"a\nb"_s, u""_s,
                                u"&#233;"_s, QString(QChar(0xD83D)), u"ä"_s, u"a\0b"_s}) {
        QByteArray bytes = changedProfile("[first]\r\nk=0\r\n", name, name, u"1"_s);
        EXPECT_EQ(valueIn(bytes, name, name), u"1"_s) << name.toStdString();
        const QByteArray again = changedProfile(bytes, name, name, u"2"_s);
        EXPECT_EQ(again.size(), bytes.size()) << name.toStdString();
        EXPECT_EQ(valueIn(again, name, name), u"2"_s) << name.toStdString();
        EXPECT_EQ(valueIn(changedProfile(again, name, name, std::nullopt), name, name), std::nullopt);
    }
    EXPECT_EQ(valueIn(changedProfile({}, u"[a;"_s, u"k]"_s, u"1"_s), u"[A;"_s, u"K]"_s), u"1"_s);
}

TEST(ProfileFile, KeepsEveryOtherByte) {
    const QByteArray before = "\xEF\xBB\xBF; head \x83\n\n  [ S ] x\r  K = 'v' ; c\n;k=2\r\nk = 3\n\t\r\nbare\r\n[t]";
    EXPECT_EQ(changedProfile(before, u"s"_s, u"k"_s, u"w"_s),
              "\xEF\xBB\xBF; head \x83\n\n  [ S ] x\r  K =w\r\n;k=2\r\nk = 3\n\t\r\nbare\r\n[t]");
    EXPECT_EQ(changedProfile(before, u"s"_s, u"k"_s, std::nullopt),
              "\xEF\xBB\xBF; head \x83\n\n  [ S ] x\r;k=2\r\nk = 3\n\t\r\nbare\r\n[t]");
    EXPECT_EQ(changedProfile(before, u"s"_s, u"n"_s, u"w"_s),
              "\xEF\xBB\xBF; head \x83\n\n  [ S ] x\r  K = 'v' ; c\n;k=2\r\nk = 3\nn=w\r\n\t\r\nbare\r\n[t]");
    EXPECT_EQ(changedProfile(before, u"t"_s, u"n"_s, u"w"_s), before + "\r\nn=w\r\n");
    EXPECT_EQ(changedProfile(before, u"u"_s, u"n"_s, u"w"_s), before + "\r\n[u]\r\nn=w\r\n");
    EXPECT_EQ(changedProfile(before, u"u"_s, u"n"_s, std::nullopt), before);
}

TEST(ProfileFile, ANewKeyOfASectionWithoutKeysGoesBehindItsHeader) {
    EXPECT_EQ(changedProfile("[s]\r\n; c\r\n[t]\r\n", u"s"_s, u"k"_s, u"1"_s), "[s]\r\nk=1\r\n; c\r\n[t]\r\n");
}

TEST(ProfileFile, ALineBreakMayBeACarriageReturnAlone) {
    EXPECT_EQ(changedProfile("[s]\rk=1\r", u"t"_s, u"k"_s, u"1"_s), "[s]\rk=1\r[t]\r\nk=1\r\n");
    EXPECT_EQ(changedProfile("[s]\rk=1\rl=2\r", u"s"_s, u"k"_s, std::nullopt), "[s]\rl=2\r");
}

TEST(ProfileFile, ALineWithoutEqualSignIsNoKey) {
    EXPECT_EQ(changedProfile("[s]\r\nk\r\n", u"s"_s, u"k"_s, std::nullopt), "[s]\r\nk\r\n");
    const QByteArray bytes = changedProfile("[s]\r\nk\r\n", u"s"_s, u"k"_s, u"1"_s);
    EXPECT_EQ(valueIn(bytes, u"s"_s, u"k"_s), u"1"_s);
}

TEST(ProfileFile, FindsAKeyBehindACharacterThatEndsInABracket) {
    // The second byte of ゾ is "]", that of ー "[" and that of ソ "\".
    const QByteArray before = toCodePage(u"[ゾーン]\r\nソ[=ゾ\r\n[ゾ]\r\nk=1\r\n"_s);
    EXPECT_EQ(valueIn(before, u"ゾーン"_s, u"ソ["_s), u"ゾ"_s);
    EXPECT_EQ(valueIn(before, u"ゾ"_s, u"k"_s), u"1"_s);
    EXPECT_EQ(ProfileFile::fromBytes(before).sections(), (QStringList{u"ゾーン"_s, u"ゾ"_s}));
}

// --- The file on disk

class ProfileOnDisk : public testing::Test {
protected:
    QString path(const QString& name) const { return m_folder.filePath(name); }
    void put(const QString& name, const QByteArray& bytes) {
        QFile file(path(name));
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
        file.write(bytes);
    }
    QByteArray bytes(const QString& name) const { return platform::readFile(path(name)); }
    static struct stat status(const QString& file) {
        struct stat status = {};
        ::stat(QFile::encodeName(file).constData(), &status);
        return status;
    }
    static mode_t mode(const QString& file) { return status(file).st_mode & 0777; }
    QStringList names() const { return QDir(m_folder.path()).entryList(QDir::AllEntries | QDir::NoDotAndDotDot); }

private:
    QTemporaryDir m_folder;
};

TEST_F(ProfileOnDisk, FilesWithPasswordsBelongToTheirOwnerAlone) {
    const mode_t mask = ::umask(022);
    for (const QString& name : {u"velluser.ini"_s, u"DIARY.INI"_s, u"BlogUserData.ini"_s, u"bloguserdata.ini"_s}) {
        writeProfile(path(name), u"s"_s, u"k"_s, u"v"_s);
        EXPECT_EQ(mode(path(name)), 0600U) << name.toStdString();
    }
    for (const QString& name : {u"Blog.ini"_s, u"mydiary.ini"_s, u"diary.ini.bak"_s}) {
        writeProfile(path(name), u"s"_s, u"k"_s, u"v"_s);
        EXPECT_EQ(mode(path(name)), 0644U) << name.toStdString();
    }
    ::umask(mask);
}

TEST_F(ProfileOnDisk, AnExistingFileKeepsItsMode) {
    put(u"diary.ini"_s, "[s]\r\nk=1\r\n");
    ASSERT_EQ(::chmod(QFile::encodeName(path(u"diary.ini"_s)).constData(), 0640), 0);
    writeProfile(path(u"diary.ini"_s), u"s"_s, u"k"_s, u"2"_s);
    EXPECT_EQ(mode(path(u"diary.ini"_s)), 0640U);
    EXPECT_EQ(bytes(u"diary.ini"_s), "[s]\r\nk=2\r\n");
}

TEST_F(ProfileOnDisk, ASymbolicLinkStaysOne) {
    ASSERT_TRUE(QDir().mkdir(path(u"real"_s)));
    put(u"real/a.ini"_s, "[s]\r\nk=1\r\n");
    ASSERT_TRUE(QFile::link(path(u"real/a.ini"_s), path(u"link.ini"_s)));
    writeProfile(path(u"link.ini"_s), u"s"_s, u"k"_s, u"2"_s);
    EXPECT_TRUE(QFileInfo(path(u"link.ini"_s)).isSymLink());
    EXPECT_EQ(bytes(u"real/a.ini"_s), "[s]\r\nk=2\r\n");

    ASSERT_TRUE(QFile::link(path(u"real/gone.ini"_s), path(u"lost.ini"_s)));
    EXPECT_THROW(writeProfile(path(u"lost.ini"_s), u"s"_s, u"k"_s, u"3"_s), Failure);
    EXPECT_TRUE(QFileInfo(path(u"lost.ini"_s)).isSymLink());
    EXPECT_FALSE(QFileInfo::exists(path(u"real/gone.ini"_s)));
}

TEST_F(ProfileOnDisk, AnUnchangedFileIsLeftAlone) {
    put(u"a.ini"_s, "[s]\r\nk=1\r\n");
    const auto inode = status(path(u"a.ini"_s)).st_ino;
    writeProfile(path(u"a.ini"_s), u"S"_s, u"K"_s, u"1"_s);
    writeProfile(path(u"a.ini"_s), u"s"_s, u"missing"_s, std::nullopt);
    EXPECT_EQ(status(path(u"a.ini"_s)).st_ino, inode);
    writeProfile(path(u"a.ini"_s), u"s"_s, u"k"_s, u"2"_s);
    EXPECT_NE(status(path(u"a.ini"_s)).st_ino, inode);
}

TEST_F(ProfileOnDisk, RemovingAKeyMakesNoFile) {
    writeProfile(path(u"a.ini"_s), u"s"_s, u"k"_s, std::nullopt);
    EXPECT_TRUE(names().isEmpty());
}

TEST_F(ProfileOnDisk, AReadOnlyFileStaysAsItIs) {
    put(u"a.ini"_s, "[s]\r\nk=1\r\n");
    ASSERT_EQ(::chmod(QFile::encodeName(path(u"a.ini"_s)).constData(), 0444), 0);
    EXPECT_THROW(writeProfile(path(u"a.ini"_s), u"s"_s, u"k"_s, u"2"_s), Failure);
    EXPECT_EQ(bytes(u"a.ini"_s), "[s]\r\nk=1\r\n");
    EXPECT_NO_THROW(writeProfile(path(u"a.ini"_s), u"s"_s, u"k"_s, u"1"_s));
    EXPECT_EQ(names(), QStringList{u"a.ini"_s});
}

TEST_F(ProfileOnDisk, WhatIsNoFileIsAFailure) {
    EXPECT_THROW(writeProfile(path(u""_s), u"s"_s, u"k"_s, u"v"_s), Failure);
    EXPECT_THROW(writeProfile(path(u"no/a.ini"_s), u"s"_s, u"k"_s, u"v"_s), Failure);
    EXPECT_THROW(writeProfile(QString(), u"s"_s, u"k"_s, u"v"_s), Failure);
    EXPECT_TRUE(names().isEmpty());
}

TEST_F(ProfileOnDisk, TwoWritersLoseNoKey) {
    constexpr int kKeys = 50;
    put(u"a.ini"_s, "[s]\r\n");
    ASSERT_TRUE(QDir().mkdir(path(u"elsewhere"_s)));
    ASSERT_TRUE(QFile::link(path(u"a.ini"_s), path(u"elsewhere/a.ini"_s)));
    const auto writer = [this](const QString& name, const QString& prefix) {
        for (int i = 0; i < kKeys; ++i)
            writeProfile(path(name), u"s"_s, prefix + QString::number(i), QString::number(i));
    };
    std::thread one(writer, u"a.ini"_s, u"one"_s);
    std::thread two(writer, u"elsewhere/a.ini"_s, u"two"_s);
    one.join();
    two.join();
    const ProfileFile profile(path(u"a.ini"_s));
    for (int i = 0; i < kKeys; ++i) {
        EXPECT_EQ(profile.number(u"s"_s, u"one"_s + QString::number(i)), i);
        EXPECT_EQ(profile.number(u"s"_s, u"two"_s + QString::number(i)), i);
    }
}

TEST_F(ProfileOnDisk, AFileThatCantBeReadIsNeitherTakenForAnEmptyOneNorReplaced) {
    ASSERT_TRUE(QFile::link(u"/proc/self/mem"_s, path(u"a.ini"_s))); // there, and its first bytes are an error
    EXPECT_THROW(ProfileFile(path(u"a.ini"_s)), Failure);
    EXPECT_THROW(writeProfile(path(u"a.ini"_s), u"s"_s, u"k"_s, u"v"_s), Failure);
    EXPECT_EQ(QFileInfo(path(u"a.ini"_s)).symLinkTarget(), u"/proc/self/mem"_s);
}

TEST_F(ProfileOnDisk, NoPipeIsWaitedForAndNoDeviceReadWhole) {
    ASSERT_EQ(::mkfifo(QFile::encodeName(path(u"pipe.ini"_s)).constData(), 0600), 0);
    for (const QString& file : {path(u"pipe.ini"_s), u"/dev/zero"_s}) {
        EXPECT_THROW(ProfileFile{file}, Failure);
        EXPECT_THROW(writeProfile(file, u"s"_s, u"k"_s, u"v"_s), Failure);
    }
    put(u"a.ini"_s, "[s]\r\nk=1\r\nl=2\r\n");
    EXPECT_EQ(ProfileFile(path(u"a.ini"_s), 9).value(u"s"_s, u"k"_s), u"1"_s);
    EXPECT_EQ(ProfileFile(path(u"a.ini"_s), 9).value(u"s"_s, u"l"_s), std::nullopt);
}

TEST_F(ProfileOnDisk, AVerticalTabIsABlankAroundAValue) {
    put(u"a.ini"_s, "[s]\r\nk=\v v\vw \v\r\nn=\v7\r\n");
    const ProfileFile profile(path(u"a.ini"_s));
    EXPECT_EQ(profile.value(u"s"_s, u"k"_s), u"v\vw"_s);
    EXPECT_EQ(profile.number(u"s"_s, u"n"_s), 7);
}

} // namespace
} // namespace velloria::tests
