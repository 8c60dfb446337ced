#include "platform/code_page.h"

#include "support/patience.h"
#include "support/vectors.h"

#include <gtest/gtest.h>

#include <QMap>
#include <QSet>
#include <QStringList>

#include <iconv.h>
#include <memory>

using namespace Qt::StringLiterals;

namespace velloria::tests {
namespace {

using platform::characterOf;
using platform::codeOf;
using platform::decodeReferences;
using platform::fromCodePage;
using platform::inCodePage;
using platform::isCode;
using platform::Missing;
using platform::toCodePage;

constexpr char16_t kUndefined = 0x30FB;

/// What input methods outside Windows type, and narrow signs; and what is written for them.
const QMap<char16_t, char16_t> kWrittenAs = {{0x2014, 0x2015}, {0x2016, 0x2225}, {0x2212, 0xFF0D}, {0x301C, 0xFF5E},
                                             {0x00A2, 0xFFE0}, {0x00A3, 0xFFE1}, {0x00AC, 0xFFE2}};

bool isLead(unsigned byte) {
    return (byte >= 0x81 && byte <= 0x9F) || (byte >= 0xE0 && byte <= 0xFC);
}

bool isTrail(unsigned byte) {
    return byte >= 0x40 && byte <= 0xFC && byte != 0x7F;
}

QByteArray bytesOf(unsigned code) {
    QByteArray bytes;
    if (code > 0xFF)
        bytes += char(code >> 8);
    bytes += char(code & 0xFF);
    return bytes;
}

QByteArray referenceOf(char16_t character) {
    return "&#" + QByteArray::number(uint(character)) + ';';
}

/// All codes of one or two bytes, defined or not, but for NUL.
std::vector<unsigned> allCodes() {
    std::vector<unsigned> codes;
    for (unsigned byte = 0x01; byte <= 0xFF; ++byte) {
        if (!isLead(byte))
            codes.push_back(byte);
        for (unsigned trail = 0; isLead(byte) && trail <= 0xFF; ++trail) {
            if (isTrail(trail))
                codes.push_back(byte << 8 | trail);
        }
    }
    return codes;
}

QSet<unsigned> undefinedCodes() {
    QSet<unsigned> codes;
    for (const VectorRow& row : readVectors("cp932_differences.tsv")) {
        const QString cell = row.text("bytes");
        if (row.text("kind") != u"undefined"_s || cell.startsWith(u"lead"))
            continue;
        const unsigned first = cell.left(4).toUInt(nullptr, 16);
        const unsigned last = cell.right(4).toUInt(nullptr, 16);
        for (unsigned code = first; code <= last; ++code) {
            if (isTrail(code & 0xFF))
                codes += code;
        }
    }
    return codes;
}

/// The converter that is said to be the code page but for the table of differences.
class Iconv {
public:
    Iconv(const char* to, const char* from)
        : m_converter(iconv_open(to, from)) {}
    ~Iconv() { iconv_close(m_converter); }
    Iconv(const Iconv&) = delete;
    Iconv& operator=(const Iconv&) = delete;

    /// Empty when it refuses.
    QByteArray convert(QByteArray in) {
        QByteArray out(16, '\0');
        char* from = in.data();
        char* to = out.data();
        auto fromLeft = std::size_t(in.size());
        auto toLeft = std::size_t(out.size());
        iconv(m_converter, nullptr, nullptr, nullptr, nullptr);
        const bool isRefused = iconv(m_converter, &from, &fromLeft, &to, &toLeft) == std::size_t(-1);
        return isRefused ? QByteArray() : out.first(out.size() - qsizetype(toLeft));
    }

private:
    iconv_t m_converter;
};

// --- The tables of the platform's own answers

TEST(CodePage, WritesTheDifferencesFromIconvByItsOwnRules) {
    QMap<QString, int> rows;
    for (const VectorRow& row : readVectors("cp932_differences.tsv")) {
        if (row.text("direction") != u"to bytes"_s)
            continue;
        const auto character = char16_t(row.text("unicode").mid(2).toUInt(nullptr, 16));
        const QString text(character);
        const QString kind = row.text("kind");
        const QByteArray platform = QByteArray::fromHex(row.text("bytes").toLatin1());
        const QByteArray iconv = row.has("iconv") ? QByteArray::fromHex(row.text("iconv").toLatin1()) : QByteArray();
        ++rows[kind];
        QByteArray expected = referenceOf(character);
        if (kind == u"platform only"_s)
            expected = platform;
        else if (kWrittenAs.contains(character))
            expected = iconv;
        EXPECT_EQ(toCodePage(text), expected) << "line " << row.line;
        const bool isMissing = expected.startsWith('&');
        EXPECT_EQ(toCodePage(text, Missing::Question), isMissing ? QByteArray("?") : expected) << "line " << row.line;
        EXPECT_EQ(inCodePage(text), !isMissing) << "line " << row.line;
        EXPECT_EQ(codeOf(character) == 0, isMissing) << "line " << row.line;
        if (isMissing)
            EXPECT_EQ(decodeReferences(QString::fromLatin1(expected)), text) << "line " << row.line;
        else
            EXPECT_EQ(fromCodePage(expected), QString(kWrittenAs.value(character, character))) << "line " << row.line;
    }
    EXPECT_EQ(rows, (QMap<QString, int>{{u"best fit"_s, 83}, {u"iconv only"_s, 5}, {u"platform only"_s, 5}}));
}

TEST(CodePage, ReadsTheDifferencesFromIconvAsThePlatform) {
    int rows = 0;
    for (const VectorRow& row : readVectors("cp932_differences.tsv")) {
        if (row.text("direction") != u"from bytes"_s || row.text("kind") == u"undefined"_s)
            continue;
        const QString text(QChar(row.text("unicode").mid(2).toUShort(nullptr, 16)));
        EXPECT_EQ(fromCodePage(QByteArray::fromHex(row.text("bytes").toLatin1())), text) << "line " << row.line;
        ++rows;
    }
    EXPECT_EQ(rows, 5);
}

TEST(CodePage, ReadsExactlyTheUndefinedPairsAsAMiddleDot) {
    const QSet<unsigned> undefined = undefinedCodes();
    // JIS X 0208, NEC's row 13, NEC's choice of IBM's characters, IBM's own, and those for the user
    EXPECT_EQ(undefined.size(), 60 * 188 - 6879 - 83 - 374 - 388 - 1880);
    for (const unsigned code : allCodes()) {
        const QString text = fromCodePage(bytesOf(code));
        ASSERT_EQ(text.size(), 1) << std::hex << code;
        EXPECT_EQ(isCode(code), !undefined.contains(code)) << std::hex << code;
        EXPECT_EQ(text[0] == kUndefined, undefined.contains(code) || code == 0x8145) << std::hex << code;
    }
}

TEST(CodePage, ConvertsAsIconvButForTheDifferences) {
    QSet<char16_t> different;
    for (const VectorRow& row : readVectors("cp932_differences.tsv"))
        different += char16_t(row.text("unicode").mid(2).toUInt(nullptr, 16));
    different -= kUndefined;
    Iconv writer("CP932", "UTF-16LE");
    Iconv reader("UTF-16LE", "CP932");
    int written = 0;
    for (unsigned unit = 1; unit < 0x10000; ++unit) {
        const auto character = char16_t(unit);
        if (different.contains(character) || QChar::isSurrogate(unit))
            continue;
        const QByteArray expected = writer.convert({reinterpret_cast<const char*>(&character), 2});
        written += !expected.isEmpty();
        ASSERT_EQ(toCodePage(QString(character)), expected.isEmpty() ? referenceOf(character) : expected) << unit;
        ASSERT_EQ(codeOf(character) != 0, !expected.isEmpty()) << unit;
    }
    EXPECT_GT(written, 9'000);
    for (const unsigned code : allCodes()) {
        const QByteArray expected = reader.convert(bytesOf(code));
        if (expected.isEmpty())
            continue;
        const char16_t character = fromCodePage(bytesOf(code))[0].unicode();
        ASSERT_EQ(QByteArray(reinterpret_cast<const char*>(&character), 2), expected) << std::hex << code;
    }
}

TEST(CodePage, AnswersForWholeTextsAsThePlatform) {
    // A look-alike would not read back: these rows are written by reference, and four by their counterparts.
    const QMap<QString, QByteArray> exceptions = {
        {u"〜"_s, "\x81\x60"},
        {u"−"_s, "\x81\x7C"},
        {u"—"_s, "\x81\x5C"},
        {u"‖"_s, "\x81\x61"},
        {u"¥"_s, "&#165;"},
        {u"café"_s, "caf&#233;"},
        {u"©2004 ®"_s, "&#169;2004 &#174;"},
        {u"naïve"_s, "na&#239;ve"},
        {u"«»"_s, "&#171;&#187;"},
        {u"Müller"_s, "M&#252;ller"},
        {u"ゔ"_s, "&#12436;"},
        {u"ß"_s, "&#223;"},
    };
    int excepted = 0;
    for (const VectorRow& row : readVectors("cp932_text.tsv")) {
        const QString text = row.text("text");
        const QByteArray bytes = QByteArray::fromHex(row.text("bytes").toLatin1());
        EXPECT_EQ(fromCodePage(bytes), row.text("back")) << "line " << row.line;
        if (exceptions.contains(text)) {
            EXPECT_EQ(toCodePage(text), exceptions[text]) << "line " << row.line;
            ++excepted;
            continue;
        }
        EXPECT_EQ(toCodePage(text, Missing::Question), bytes) << "line " << row.line;
        if (row.text("replaced") == u"0"_s)
            EXPECT_EQ(toCodePage(text), bytes) << "line " << row.line;
        else
            EXPECT_EQ(decodeReferences(fromCodePage(toCodePage(text))), text) << "line " << row.line;
    }
    EXPECT_EQ(excepted, exceptions.size());
}

// --- Whole texts

TEST(CodePage, EveryCharacterComesBack) {
    QString all;
    for (unsigned unit = 0; unit < 0x10000; ++unit) {
        if (!QChar::isSurrogate(unit) && !kWrittenAs.contains(char16_t(unit)))
            all += QChar(unit);
    }
    all += u"😀𠮷\U0010FFFF"_s;
    EXPECT_EQ(decodeReferences(fromCodePage(toCodePage(all))), all);
}

TEST(CodePage, EveryCodeComesBackAsItsCharacter) {
    int characters = 0;
    int withOneCode = 0;
    for (const unsigned code : allCodes()) {
        if (!isCode(code))
            continue;
        ++characters;
        const QString text = fromCodePage(bytesOf(code));
        EXPECT_EQ(text, QString(characterOf(code))) << std::hex << code;
        EXPECT_EQ(fromCodePage(toCodePage(text)), text) << std::hex << code;
        EXPECT_EQ(toCodePage(text), bytesOf(codeOf(text[0].unicode()))) << std::hex << code;
        withOneCode += codeOf(text[0].unicode()) == code;
    }
    EXPECT_EQ(characters, 195 + 60 * 188 - int(undefinedCodes().size()));
    EXPECT_EQ(characters - withOneCode, 398); // the copies: 374 in rows ED and EE, 9 in row 87 and 15 in row FA
}

TEST(CodePage, WritesACharacterWithSeveralCodesByTheOneOfThePlatform) {
    const std::vector<std::pair<QString, unsigned>> cases = {
        {u"≒"_s, 0x81E0},  {u"￢"_s, 0x81CA}, {u"∵"_s, 0x81E6},  {u"∪"_s, 0x81BE}, {u"Ⅰ"_s, 0x8754},
        {u"№"_s, 0x8782},  {u"㈱"_s, 0x878A}, {u"℡"_s, 0x8784},  {u"ⅰ"_s, 0xFA40}, {u"髙"_s, 0xFBFC},
        {u"＇"_s, 0xFA56}, {u"＂"_s, 0xFA57}, {u"￤"_s, 0xFA55},
    };
    for (const auto& [text, code] : cases)
        EXPECT_EQ(codeOf(text[0].unicode()), code) << text.toStdString();
}

TEST(CodePage, KeepsNulAndControlCharacters) {
    const QString text = QString::fromLatin1("a\0b\t\r\n\x1A\x7F", 8);
    EXPECT_EQ(toCodePage(text), QByteArray("a\0b\t\r\n\x1A\x7F", 8));
    EXPECT_EQ(fromCodePage(QByteArray("a\0b\t\r\n\x1A\x7F", 8)), text);
    EXPECT_TRUE(inCodePage(text));
    EXPECT_TRUE(isCode(0));
    EXPECT_EQ(codeOf(0), 0U);
}

TEST(CodePage, AnEmptyTextIsEmpty) {
    EXPECT_EQ(toCodePage({}), QByteArray());
    EXPECT_EQ(fromCodePage({}), QString());
    EXPECT_EQ(decodeReferences({}), QString());
    EXPECT_TRUE(inCodePage({}));
}

TEST(CodePage, ReadsDamagedBytesWithoutLosingTheirNeighbours) {
    const std::vector<std::pair<QByteArray, QString>> cases = {
        {"\x83", u"・"_s},
        {"a\x83", u"a・"_s},
        {"\x83\x83", u"ャ"_s},
        {"\x83\x83\x83", u"ャ・"_s},
        {QByteArray("\x83\0a", 3), u"・\0a"_s},
        {QByteArray("\x83\0\x83\0", 4), u"・\0・\0"_s},
        {"\x83\na", u"・a"_s}, // any byte but NUL goes with the lead byte
        {"\x81\x20z", u"・z"_s},
        {"\x81\x7Fz", u"・z"_s},
        {"\x81\xFDz", u"・z"_s},
        {"\xFC\xFCz", u"・z"_s},
        {"\x80\xA0\xFD\xFE\xFF", u"\u0080\uF8F0\uF8F1\uF8F2\uF8F3"_s},
        {"\x81\x45", u"・"_s},
        {"\xA5", u"･"_s},
        {"\x83\x5D]", u"ゾ]"_s},
    };
    for (const auto& [bytes, text] : cases)
        EXPECT_EQ(fromCodePage(bytes), text) << bytes.toHex().toStdString();
}

TEST(CodePage, ReadsEveryPairOfBytes) {
    for (unsigned first = 1; first <= 0xFF; ++first) {
        for (unsigned second = 0; second <= 0xFF; ++second) {
            const QByteArray bytes = QByteArray(1, char(first)) + char(second);
            const bool isPair = isLead(first) && second != 0;
            ASSERT_EQ(fromCodePage(bytes).size(), isPair ? 1 : 2) << first << ' ' << second;
            ASSERT_EQ(platform::characterLength(bytes, 0), isPair ? 2 : 1) << first << ' ' << second;
            if (isPair && !isTrail(second)) {
                ASSERT_EQ(fromCodePage(bytes), QString(kUndefined)) << first << ' ' << second;
            }
        }
    }
}

TEST(CodePage, CharacterLengthStaysWithinTheBytes) {
    EXPECT_EQ(platform::characterLength("\x83", 0), 1);
    EXPECT_EQ(platform::characterLength("a\x83", 1), 1);
    EXPECT_EQ(platform::characterLength("a\x83\x5D", 1), 2);
    EXPECT_EQ(platform::characterLength("\xB1\xB2", 0), 1);
}

TEST(CodePage, ReadsNothingBehindTheBytes) {
    // Arrays of their own without a final NUL: reading one unit too far is seen by the sanitizer.
    const std::unique_ptr<char[]> bytes(new char[2]{'a', '\x83'});
    EXPECT_EQ(fromCodePage(QByteArrayView(bytes.get(), 2)), u"a・"_s);
    const std::unique_ptr<char16_t[]> units(new char16_t[2]{u'a', 0xD842});
    EXPECT_EQ(toCodePage(QStringView(units.get(), 2)), "a?");
}

// --- What the code page lacks

TEST(CodePage, WritesTheMissingAsDecimalReferences) {
    EXPECT_EQ(toCodePage(u"日é記"_s), "\x93\xFA&#233;\x8B\x4C");
    EXPECT_EQ(toCodePage(u"😀𠮷"_s), "&#128512;&#134071;");
    EXPECT_EQ(toCodePage(u"\U0010FFFF\uFFFF"_s), "&#1114111;&#65535;");
    EXPECT_EQ(toCodePage(u"日é😀記"_s, Missing::Question), "\x93\xFA???\x8B\x4C");
    EXPECT_EQ(toCodePage(u"&#233;"_s), "&#233;");
}

TEST(CodePage, WritesALoneSurrogateAsAQuestionMark) {
    const QChar high(0xD83D);
    const QChar low(0xDE00);
    for (const Missing missing : {Missing::Reference, Missing::Question}) {
        EXPECT_EQ(toCodePage(QString(high), missing), "?");
        EXPECT_EQ(toCodePage(QString(low), missing), "?");
        EXPECT_EQ(toCodePage(QString(high) + u'a', missing), "?a");
        EXPECT_EQ(toCodePage(QString(low) + high, missing), "??");
    }
    EXPECT_EQ(toCodePage(QString(high) + high + low), "?&#128512;");
    EXPECT_FALSE(inCodePage(QString(high)));
}

TEST(CodePage, TurnsBackOnlyTheReferencesThatItWrites) {
    const std::vector<std::pair<QString, QString>> cases = {
        {u"&#233;"_s, u"é"_s},
        {u"a&#233;b"_s, u"aéb"_s},
        {u"&#233;&#233;&#128512;"_s, u"éé😀"_s},
        {u"&#1114111;"_s, u"\U0010FFFF"_s},
        {u"&#65279;"_s, u"\uFEFF"_s},
        {u"&#65534;"_s, u"\uFFFE"_s},
        {u"&#165;&#8254;"_s, u"¥‾"_s},
        {u"&#&#233;"_s, u"&#é"_s},
        {u"&&#233;;"_s, u"&é;"_s},
        {u"&#23&#233;"_s, u"&#23é"_s},
        // a leading zero, another base, blanks, no digits, no end
        {u"&#0233;"_s, u"&#0233;"_s},
        {u"&#xE9;"_s, u"&#xE9;"_s},
        {u"&# 233;"_s, u"&# 233;"_s},
        {u"&#+233;"_s, u"&#+233;"_s},
        {u"&#;"_s, u"&#;"_s},
        {u"&#"_s, u"&#"_s},
        {u"&#233"_s, u"&#233"_s},
        {u"&#233 ;"_s, u"&#233 ;"_s},
        {u"&#２３３;"_s, u"&#２３３;"_s},
        {u"＆#233;"_s, u"＆#233;"_s},
        // characters of the code page, those with a counterpart among them
        {u"&#65;"_s, u"&#65;"_s},
        {u"&#38;"_s, u"&#38;"_s},
        {u"&#127;"_s, u"&#127;"_s},
        {u"&#128;"_s, u"&#128;"_s},
        {u"&#12354;"_s, u"&#12354;"_s},
        {u"&#8212;&#8214;&#8722;&#12316;&#162;"_s, u"&#8212;&#8214;&#8722;&#12316;&#162;"_s},
        {u"&#63728;"_s, u"&#63728;"_s},
        // no characters
        {u"&#0;"_s, u"&#0;"_s},
        {u"&#55357;&#56832;"_s, u"&#55357;&#56832;"_s},
        {u"&#57343;"_s, u"&#57343;"_s},
        {u"&#1114112;"_s, u"&#1114112;"_s},
        {u"&#4294967529;"_s, u"&#4294967529;"_s},
        {u"&#99999999999999999999999;"_s, u"&#99999999999999999999999;"_s},
        // named references are not its own
        {u"&eacute;&amp;#233;"_s, u"&eacute;&amp;#233;"_s},
    };
    for (const auto& [text, expected] : cases)
        EXPECT_EQ(decodeReferences(text), expected) << text.toStdString();
}

TEST(CodePage, LongTextsTakeLinearTime) {
    constexpr qsizetype kUnits = 1 << 20;
    const double start = processorSeconds();
    const QString openings = u"&#"_s.repeated(kUnits / 2);
    EXPECT_EQ(decodeReferences(openings), openings);
    const QString digits = u"&#"_s + QString(kUnits, u'1');
    EXPECT_EQ(decodeReferences(digits), digits);
    const QString missing = u"é😀"_s.repeated(kUnits / 3);
    EXPECT_EQ(decodeReferences(fromCodePage(toCodePage(missing))), missing);
    EXPECT_LT(processorSeconds() - start, 30);
}

} // namespace
} // namespace velloria::tests
