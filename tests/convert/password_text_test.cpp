#include "convert/password_text.h"

#include "core/ini.h"
#include "platform/code_page.h"
#include "platform/profile_file.h"

#include <gtest/gtest.h>

#include <QSet>
#include <QTemporaryDir>

#include <random>

using namespace Qt::StringLiterals;
using namespace velloria::convert;

namespace velloria::tests {
namespace {

/// Every character that a password may hold, in the order of their codes.
const QString& passwordCharacters() {
    static const QString kAll = [] {
        QString all;
        for (unsigned code = 1; code <= 0xFFFF; ++code) {
            if (!platform::isCode(code))
                continue;
            const QChar character(platform::characterOf(code));
            if (platform::codeOf(character.unicode()) == code && isPasswordText(QStringView(&character, 1)))
                all += character;
        }
        return all;
    }();
    return kAll;
}

/// What a settings file makes of a value that is written and read again.
QString throughFile(const QString& value) {
    const QByteArray written = platform::changedProfile("[s]\r\nk=\r\nj=1\r\n", u"s"_s, u"k"_s, value);
    return platform::ProfileFile::fromBytes(written).value(u"s"_s, u"k"_s).value_or(u"(missing)"_s);
}

QString stored(const QString& password) {
    return passwordFromSetting(throughFile(EncryptPassword(password)));
}

TEST(PasswordText, StepsEachCharacterAndReversesTheWhole) {
    EXPECT_EQ(EncryptPassword(u"abc"_s), u"dcb"_s);
    EXPECT_EQ(DecryptPassword(u"dcb"_s), u"abc"_s);
    EXPECT_EQ(EncryptPassword(u"Pass word 1!"_s), u"\"2!espx!ttbQ"_s);
    EXPECT_EQ(EncryptPassword(u"~"_s), QString(QChar(0x7F)));
}

TEST(PasswordText, AnEmptyTextStaysEmpty) {
    EXPECT_EQ(EncryptPassword(u""_s), u""_s);
    EXPECT_EQ(DecryptPassword(u""_s), u""_s);
    EXPECT_EQ(stored(u""_s), u""_s);
}

TEST(PasswordText, DoubleByteCharactersStepToTheNextCode) {
    EXPECT_EQ(EncryptPassword(u"日記"_s), u"貴乳"_s);
    EXPECT_EQ(EncryptPassword(u"aあｱ"_s), u"ｲぃb"_s);
}

TEST(PasswordText, AtTheEndOfARunTheStepGoesBackToItsStart) {
    EXPECT_EQ(EncryptPassword(u"ﾟ"_s), QString(QChar(0xF8F0))) << "DF back to A0";
    EXPECT_EQ(EncryptPassword(u"×"_s), u"　"_s) << "817E back to 8140, for 817F is no code";
    EXPECT_EQ(EncryptPassword(u"ん"_s), u"ぁ"_s) << "82F1 back to 829F";
    EXPECT_EQ(EncryptPassword(u"熙"_s), u"黴"_s) << "EAA4, the last of the standard, back to EA80";
    EXPECT_EQ(EncryptPassword(QString(QChar(0x80))), QString(QChar(0x01)));
}

TEST(PasswordText, ARunEndsAheadOfTheSecondCodeOfACharacter) {
    EXPECT_EQ(EncryptPassword(u"㍼"_s), u"〝"_s) << "878F back to 8780: 8790 is a second code of ≒";
    EXPECT_EQ(EncryptPassword(u"∮"_s), u"∑"_s);
    EXPECT_EQ(EncryptPassword(u"∑"_s), u"∮"_s) << "8795 is a second code of √";
}

TEST(PasswordText, NoTwoCharactersScrambleToTheSame) {
    QSet<QString> seen;
    for (unsigned unit = 0; unit <= 0xFFFF; ++unit) {
        const QChar c{char16_t(unit)};
        if (c.isSurrogate())
            continue;
        const QString scrambled = EncryptPassword(QString(c));
        ASSERT_EQ(scrambled.size(), 1) << unit;
        ASSERT_FALSE(seen.contains(scrambled)) << unit;
        seen.insert(scrambled);
        ASSERT_EQ(DecryptPassword(scrambled), QString(c)) << unit;
    }
}

TEST(PasswordText, ACharacterKeepsItsNumberOfBytes) {
    for (const QChar c : passwordCharacters())
        ASSERT_EQ(platform::toCodePage(EncryptPassword(QString(c))).size(), platform::toCodePage(QString(c)).size());
}

TEST(PasswordText, CharactersOutsideTheCodePageStepOutsideIt) {
    EXPECT_EQ(EncryptPassword(u"é"_s), u"ê"_s);
    EXPECT_EQ(EncryptPassword(u"a😀b"_s), u"c😁b"_s) << "a surrogate pair is one character";
    EXPECT_EQ(DecryptPassword(EncryptPassword(u"\U0010FFFF\U00010000"_s)), u"\U0010FFFF\U00010000"_s);
    for (const QString& text : {u"é〜−—‖¢£¬¥‾"_s, u"日😀é本"_s})
        EXPECT_EQ(DecryptPassword(EncryptPassword(text)), text);
}

TEST(PasswordText, ANulAndControlCharactersMakeTheRoundTrip) {
    QString text;
    for (char16_t c = 0; c <= 0x80; ++c)
        text += QChar(c);
    EXPECT_EQ(DecryptPassword(EncryptPassword(text)), text);
}

TEST(PasswordText, EveryCharacterComesBackFromASettingsFile) {
    ASSERT_GT(passwordCharacters().size(), 9'000);
    for (const QChar c : passwordCharacters())
        ASSERT_EQ(stored(QString(c)), QString(c)) << uint(c.unicode());
}

TEST(PasswordText, EveryPairOfSingleByteCharactersComesBackFromASettingsFile) {
    for (const QChar a : passwordCharacters()) {
        for (const QChar b : passwordCharacters()) {
            if (platform::codeOf(a.unicode()) > 0xFF || platform::codeOf(b.unicode()) > 0xFF)
                break;
            const QString pair = QString(a) + b;
            ASSERT_EQ(stored(pair), pair);
            const QString around = pair.first(1) + u"日"_s + b;
            ASSERT_EQ(stored(around), around);
        }
    }
}

TEST(PasswordText, RandomPasswordsComeBackFromASettingsFile) {
    std::mt19937 random(1999);
    const QString odd = u"!\" &'#;:=[]%,~\\ 　ｱﾟ×ん12"_s; // what scrambles to or from something a settings file minds
    for (int round = 0; round < 50'000; ++round) {
        QString password;
        for (auto length = random() % 12; length > 0; --length) {
            const QString& from = random() % 2 ? odd : passwordCharacters();
            password += from[qsizetype(random() % unsigned(from.size()))];
        }
        ASSERT_EQ(stored(password), password);
    }
}

TEST(PasswordText, PasswordsThatScrambleToAFilesOwnSignsComeBack) {
    const QStringList passwords{
        u"!a!"_s,                                                             // in double quotes once scrambled
        u"&a&"_s,                                                             // in single quotes
        u"!!"_s,          u"!"_s,    u"!!!!"_s, u"&!a!&"_s, u":a"_s, u"a:"_s, // a semicolon at either end
        u"<a"_s,          u"Za\\"_s,                                          // "=", brackets
        u" a "_s,         u"  "_s,   u"　"_s,   u"×a×"_s,
        u":221\"%"_s, // "&#233;" once scrambled: a reference to é by its look
        u":623739\"%a"_s,
    };
    for (const QString& password : passwords) {
        ASSERT_TRUE(isPasswordText(password));
        EXPECT_EQ(stored(password).toStdString(), password.toStdString());
    }
}

TEST(PasswordText, AScrambledTextThatLooksLikeAReferenceIsNotTakenForOne) {
    const QString password = u":221\"%"_s;
    ASSERT_EQ(EncryptPassword(password), u"&#233;"_s);
    EXPECT_EQ(throughFile(u"&#233;"_s), u"é"_s) << "so the value alone is not what was written";
    EXPECT_EQ(stored(password), password);
}

TEST(PasswordText, ComesBackThroughTheWrappersAndADisk) {
    QTemporaryDir folder;
    const QString file = folder.filePath(u"velluser.ini"_s);
    for (const QString& password :
         {u"!a!"_s, u"&a&"_s, u":221\"%"_s, u"日記ﾟ×ん円改"_s, u" a "_s, u"a"_s.repeated(255)}) {
        ASSERT_TRUE(isPasswordText(password));
        core::WriteIni(file, u"太郎"_s, u"Pass"_s, EncryptPassword(password));
        EXPECT_EQ(passwordFromSetting(core::ReadIni(file, u"太郎"_s, u"Pass"_s)), password);
        EXPECT_EQ(passwordFromSetting(core::ReadIniDef(file, u"太郎"_s, u"Pass"_s, u""_s)), password);
    }
}

TEST(PasswordText, ABoxTakesPrintableCharactersOfTheCodePage) {
    EXPECT_TRUE(isPasswordText(u""_s));
    EXPECT_TRUE(isPasswordText(u" !~\"\\"_s));
    EXPECT_TRUE(isPasswordText(u"日記ｱﾟ　①髙～－"_s));
}

TEST(PasswordText, ABoxRefusesWhatWouldNotComeBack) {
    const QString missing = u"é¥‾"_s;
    const QString writtenAsAnother = u"〜−—‖¢£¬"_s;
    const QString control = u"\t\r\n\u0001\u001F\u007F\u0080"_s + QChar(0);
    for (const QChar c : missing + writtenAsAnother + control + QChar(0xD83D)) {
        EXPECT_FALSE(isPasswordText(QString(c))) << uint(c.unicode());
        EXPECT_FALSE(isPasswordText(u"a"_s + c + u"b"_s)) << uint(c.unicode());
    }
    EXPECT_FALSE(isPasswordText(u"😀"_s));
}

TEST(PasswordText, ABoxTakesAtMost255Bytes) {
    EXPECT_TRUE(isPasswordText(u"a"_s.repeated(255)));
    EXPECT_FALSE(isPasswordText(u"a"_s.repeated(256)));
    EXPECT_TRUE(isPasswordText(u"日"_s.repeated(127) + u"a"_s));
    EXPECT_FALSE(isPasswordText(u"日"_s.repeated(128)));
    for (const QString& longest : {u"!"_s.repeated(255), u"日"_s.repeated(127) + u"!"_s, u":221\"%"_s.repeated(42)})
        EXPECT_EQ(stored(longest), longest);
}

} // namespace
} // namespace velloria::tests
