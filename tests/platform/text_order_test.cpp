#include "platform/text_order.h"

#include "platform/failure.h"
#include "platform/utf8.h"
#include "support/patience.h"
#include "support/vectors.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>
#include <memory>
#include <random>
#include <tuple>

using namespace Qt::StringLiterals;

namespace velloria::tests {
namespace {

using platform::equalText;
using platform::Failure;
using platform::fold;
using platform::LikePattern;
using platform::TextOrder;

int sign(int value) {
    return (value > 0) - (value < 0);
}

bool like(const QString& text, const QString& pattern) {
    const LikePattern compiled(pattern);
    const bool matches = compiled.matches(text);
    EXPECT_EQ(compiled.matchesUtf8(text.toUtf8()), matches)
        << "UTF-8: " << text.toStdString() << " like " << pattern.toStdString();
    return matches;
}

/// Random texts out of a few pieces, so that equal, overlapping and nearly equal ones are frequent.
class Pieces {
public:
    explicit Pieces(QStringList pieces)
        : m_pieces(std::move(pieces)) {}

    QString text(int longest) {
        QString text;
        for (int left = number(longest); left > 0; --left)
            text += m_pieces[number(int(m_pieces.size()) - 1)];
        return text;
    }
    int number(int highest) { return std::uniform_int_distribution<int>(0, highest)(m_engine); }

private:
    QStringList m_pieces;
    std::mt19937 m_engine{20040105};
};

// --- The fold

TEST(TextFold, TakesCaseWidthAndKanaTypeAway) {
    const std::vector<std::pair<QString, QString>> cases = {
        {u"ABCabc"_s, u"abcabc"_s},
        {u"ＡＢＣａｂｃ０９"_s, u"abcabc09"_s},
        {u"！＂＃＄％＆＇（）＊＋，－．／：；＜＝＞？＠［＼］＾＿｀｛｜｝～"_s,
         u"!\"#$%&'()*+,-./:;<=>?@[\\]^_`{|}~"_s},
        {u"\u3000"_s, u" "_s},
        {u"ΣДЁÉⅣ"_s, u"σдёéⅳ"_s},
        {u"￠￡￢￥￤"_s, u"\u00A2\u00A3\u00AC\u00A5\u00A6"_s},
        {u"アイウエオッャュョヮヰヱヲンヵヶ"_s, u"あいうえおっゃゅょゎゐゑをんゕゖ"_s},
        {u"ｱｲｳｴｵｯｬｭｮｦﾝ"_s, u"あいうえおっゃゅょをん"_s},
        {u"ァィゥェォｧｨｩｪｫ"_s, u"ぁぃぅぇぉぁぃぅぇぉ"_s},
        {u"｡｢｣､･ｰﾞﾟ"_s, u"。「」、・ー゛゜"_s},
        {u"ヽヾ"_s, u"ゝゞ"_s},
    };
    for (const auto& [text, folded] : cases)
        EXPECT_EQ(fold(text), folded) << text.toStdString();
}

TEST(TextFold, JoinsHalfWidthKanaWithItsMarks) {
    const QString plain = u"ｶｷｸｹｺｻｼｽｾｿﾀﾁﾂﾃﾄﾊﾋﾌﾍﾎ"_s;
    QString voiced;
    QString halfVoiced;
    for (const QChar kana : plain)
        voiced += kana + u"ﾞ"_s;
    for (const QChar kana : u"ﾊﾋﾌﾍﾎ"_s)
        halfVoiced += kana + u"ﾟ"_s;
    EXPECT_EQ(fold(voiced), u"がぎぐげござじずぜぞだぢづでどばびぶべぼ"_s);
    EXPECT_EQ(fold(halfVoiced), u"ぱぴぷぺぽ"_s);
    EXPECT_EQ(fold(u"ｳﾞ"_s), u"ゔ"_s);
    EXPECT_EQ(fold(u"ヴ"_s), u"ゔ"_s);
    EXPECT_EQ(fold(u"ﾜﾞｦﾞ"_s), u"ヷヺ"_s);
}

TEST(TextFold, LeavesMarksThatBelongToNoHalfWidthKana) {
    const std::vector<std::pair<QString, QString>> cases = {
        {u"ｱﾞ"_s, u"あ゛"_s},  {u"ｶﾟ"_s, u"か゜"_s},  {u"ﾅﾞ"_s, u"な゛"_s},           {u"ﾏﾟ"_s, u"ま゜"_s},
        {u"カﾞ"_s, u"か゛"_s}, {u"ｶ゛"_s, u"か゛"_s}, {u"ｶﾞﾞ"_s, u"が゛"_s},          {u"ﾞｶ"_s, u"゛か"_s},
        {u"ｯﾞ"_s, u"っ゛"_s},  {u"ｰﾞ"_s, u"ー゛"_s},  {u"か\u3099"_s, u"か\u3099"_s},
    };
    for (const auto& [text, folded] : cases)
        EXPECT_EQ(fold(text), folded) << text.toStdString();
}

TEST(TextFold, LeavesWhatHasNoCounterpart) {
    const QString text = u"ヷヸヹヺヿゟ①㈱日記ー・゛á\u0301"_s;
    EXPECT_EQ(fold(text), text);
}

TEST(TextFold, JoinsTheCharactersThatTheCodePageWritesAsOne) {
    EXPECT_FALSE(equalText(u"\u2014", u"\u2015"));
    EXPECT_TRUE(equalText(u"\u2016", u"\u2225"));
    EXPECT_TRUE(equalText(u"\u2212", u"\uFF0D"));
    EXPECT_TRUE(equalText(u"\u2212", u"-"));
    EXPECT_TRUE(equalText(u"\u301C", u"\uFF5E"));
    EXPECT_TRUE(equalText(u"\u301C", u"~"));
    EXPECT_FALSE(equalText(u"\u00A5", u"\\"));
    EXPECT_FALSE(equalText(u"\u203E", u"~"));
}

TEST(TextFold, PassesSurrogatesWholeAndAlone) {
    const char16_t lone[] = {0xD842, u'A', 0xDFB7, 0xDFB7, 0xD842};
    const char16_t loneFolded[] = {0xD842, u'a', 0xDFB7, 0xDFB7, 0xD842};
    EXPECT_EQ(fold(QStringView(lone)), QStringView(loneFolded));
    EXPECT_EQ(fold(u"𠮷😀"_s), u"𠮷😀"_s);
}

TEST(TextFold, OfAFoldIsTheFold) {
    for (unsigned unit = 0; unit < 0x10000; ++unit) {
        const QString folded = fold(QString(QChar(unit)));
        ASSERT_EQ(folded.size(), 1) << unit;
        ASSERT_EQ(fold(folded), folded) << unit;
    }
}

TEST(TextFold, ReadsNothingBehindTheText) {
    const QString text = u"ｶﾞ"_s;
    EXPECT_EQ(fold(QStringView(text).first(1)), u"か"_s);
    EXPECT_TRUE(equalText(QStringView(text).first(1), u"カ"));
    EXPECT_EQ(fold({}), QString());
}

TEST(EqualText, TellsApartWhatTheFoldKeepsApart) {
    EXPECT_FALSE(equalText(u"は", u"ば"));
    EXPECT_FALSE(equalText(u"ば", u"ぱ"));
    EXPECT_FALSE(equalText(u"っ", u"つ"));
    EXPECT_FALSE(equalText(u"co-op", u"coop"));
    EXPECT_FALSE(equalText(u"ab", u"abc"));
    EXPECT_FALSE(equalText(u"abc", u"ab"));
    EXPECT_FALSE(equalText(u"", u" "));
    EXPECT_TRUE(equalText(u"", u""));
}

// --- The order

TEST(TextOrder, AgreesWithTheOldEngine) {
    const TextOrder order;
    int rows = 0;
    for (const VectorRow& row : readVectors("compare.tsv")) {
        const QString a = row.text("a");
        const QString b = row.text("b");
        const int expected = row.text("result").toInt();
        EXPECT_EQ(sign(order.compare(a, b)), expected) << "line " << row.line;
        EXPECT_EQ(sign(order.compare(b, a)), -expected) << "line " << row.line << ", reversed";
        EXPECT_EQ(equalText(a, b), expected == 0) << "line " << row.line;
        ++rows;
    }
    EXPECT_EQ(rows, 123);
}

TEST(TextOrder, PutsTheSignsInTheOldOrder) {
    const QString signs = u" !\"#$%&()*,./:;?@[]^_`{|}~\\+<=>09azあ亜"_s;
    const TextOrder order;
    for (qsizetype i = 0; i + 1 < signs.size(); ++i) {
        EXPECT_LT(order.compare(signs.mid(i, 1), signs.mid(i + 1, 1)), 0) << signs.mid(i, 2).toStdString();
        EXPECT_LT(order.compare(u"x"_s + signs[i] + u"z"_s, u"x"_s + signs[i + 1] + u"a"_s), 0)
            << signs.mid(i, 2).toStdString();
    }
    EXPECT_LT(order.compare(u"！", u"~"), 0);
}

TEST(TextOrder, LooksAtMarksOnLettersBeforeTheCode) {
    const TextOrder order;
    EXPECT_LT(order.compare(u"á", u"à"), 0);
    EXPECT_GT(order.compare(u"がー", u"かあ"), 0) << "a sound mark counts more than the kind of a kana";
    EXPECT_LT(order.compare(u"はつ", u"ばっ"), 0);
    EXPECT_LT(order.compare(u"つは", u"っば"), 0);
}

TEST(TextOrder, LooksAtHyphensAndApostrophesLast) {
    const QStringList ascending = {u"aa"_s,  u"ab"_s,  u"-ab"_s,   u"--ab"_s,   u"a'b"_s,     u"a-b"_s,   u"a-b-"_s,
                                   u"ab-"_s, u"acb"_s, u"a-c-b"_s, u"きって"_s, u"き-って"_s, u"きつて"_s};
    const TextOrder order;
    for (qsizetype i = 0; i + 1 < ascending.size(); ++i) {
        EXPECT_LT(order.compare(ascending[i], ascending[i + 1]), 0) << i;
        EXPECT_GT(order.compare(ascending[i + 1], ascending[i]), 0) << i;
    }
}

TEST(TextOrder, IsAStrictWeakOrder) {
    Pieces pieces({u"-"_s,
                   u"'"_s,
                   u"－"_s,
                   u"a"_s,
                   u"A"_s,
                   u"ａ"_s,
                   u"b"_s,
                   u"á"_s,
                   u"~"_s,
                   u"\\"_s,
                   u"_"_s,
                   u"."_s,
                   u"1"_s,
                   u"①"_s,
                   u"か"_s,
                   u"カ"_s,
                   u"ｶ"_s,
                   u"ﾞ"_s,
                   u"が"_s,
                   u"ー"_s,
                   u"っ"_s,
                   u"つ"_s,
                   u"ゝ"_s,
                   u"ゞ"_s,
                   u"は"_s,
                   u"ﾊ"_s,
                   u"ﾟ"_s,
                   u"亜"_s,
                   u"日"_s,
                   u"一"_s,
                   u" "_s,
                   u"　"_s,
                   u"・"_s,
                   u"𠮷"_s,
                   u"😀"_s,
                   u"㈱"_s,
                   u"\u0301"_s,
                   u"\u3099"_s,
                   u"\u200B"_s,
                   u"\n"_s,
                   QString(QChar(0xD842)),
                   QString(QChar(0xDFB7))});
    const TextOrder order;
    for (int round = 0; round < 300; ++round) {
        const int longest = 1 + round % 6;
        std::vector<QString> texts;
        for (int i = 0; i < 30; ++i)
            texts.push_back(pieces.text(longest));
        const auto compare = [&](std::size_t i, std::size_t j) { return sign(order.compare(texts[i], texts[j])); };
        // Sorted by inserting, each text must stand to every other one as their places say.
        std::vector<std::size_t> sorted;
        for (std::size_t i = 0; i < texts.size(); ++i) {
            const auto isBefore = [&](std::size_t l, std::size_t r) { return compare(l, r) < 0; };
            sorted.insert(std::upper_bound(sorted.begin(), sorted.end(), i, isBefore), i);
        }
        for (std::size_t l = 0; l < sorted.size(); ++l) {
            bool isEqualSoFar = true;
            ASSERT_EQ(compare(sorted[l], sorted[l]), 0);
            for (std::size_t r = l + 1; r < sorted.size(); ++r) {
                const QString& left = texts[sorted[l]];
                const QString& right = texts[sorted[r]];
                isEqualSoFar = isEqualSoFar && equalText(left, right);
                const int expected = isEqualSoFar ? 0 : -1;
                ASSERT_EQ(compare(sorted[l], sorted[r]), expected)
                    << left.toStdString() << " | " << right.toStdString();
                ASSERT_EQ(compare(sorted[r], sorted[l]), -expected)
                    << left.toStdString() << " | " << right.toStdString();
            }
        }
    }
}

// --- Like

TEST(LikePattern, CoversTheWholeText) {
    EXPECT_TRUE(like(u"abc"_s, u"abc"_s));
    EXPECT_FALSE(like(u"abcd"_s, u"abc"_s));
    EXPECT_FALSE(like(u"xabc"_s, u"abc"_s));
    EXPECT_FALSE(like(u"ab"_s, u"abc"_s));
    EXPECT_TRUE(like(u""_s, u""_s));
    EXPECT_FALSE(like(u"a"_s, u""_s));
    EXPECT_FALSE(like(u""_s, u"a"_s));
}

TEST(LikePattern, PercentIsAnyRun) {
    const std::vector<std::tuple<QString, QString, bool>> cases = {
        {u""_s, u"%"_s, true},
        {u"日記"_s, u"%"_s, true},
        {u""_s, u"%%"_s, true},
        {u"2004/01/05"_s, u"2004/01%"_s, true},
        {u"2004/01"_s, u"2004/01%"_s, true},
        {u"2004/02/05"_s, u"2004/01%"_s, false},
        {u"2004/01/05"_s, u"%/01/05"_s, true},
        {u"2004/01/05 "_s, u"%/01/05"_s, false},
        {u"2004/01/05"_s, u"%01%05%"_s, true},
        {u"2004/05/01"_s, u"%01%05%"_s, false},
        {u"aab"_s, u"%ab"_s, true},
        {u"abab"_s, u"%ab"_s, true},
        {u"aba"_s, u"%ab"_s, false},
        {u"abcabd"_s, u"a%b%d"_s, true},
        {u"ab"_s, u"%%a%%%b%%"_s, true},
        {u"散歩の日記"_s, u"%日記%"_s, true},
        {u"日記"_s, u"%日記%"_s, true},
        {u"日"_s, u"%日記%"_s, false},
        {u"aaaaab"_s, u"%aab%"_s, true},
        {u"日日記"_s, u"%日記%"_s, true},
    };
    for (const auto& [text, pattern, expected] : cases)
        EXPECT_EQ(like(text, pattern), expected) << text.toStdString() << " like " << pattern.toStdString();
}

TEST(LikePattern, UnderscoreIsOneCharacter) {
    const std::vector<std::tuple<QString, QString, bool>> cases = {
        {u"a"_s, u"_"_s, true},       {u""_s, u"_"_s, false},         {u"ab"_s, u"_"_s, false},
        {u"𠮷"_s, u"_"_s, true},      {u"𠮷"_s, u"__"_s, false},      {u"x𠮷y"_s, u"x_y"_s, true},
        {u"𠮷"_s, u"%__"_s, false},   {u"𠮷"_s, u"%_%_%"_s, false},   {u"𠮷𠮷"_s, u"%_%_%"_s, true},
        {u"ｶﾞ"_s, u"_"_s, true},      {u"ｶﾞ"_s, u"__"_s, false},      {u"ｱﾞ"_s, u"__"_s, true},
        {u"\n"_s, u"_"_s, true},      {u"日記2"_s, u"日記_"_s, true}, {u"日記"_s, u"日記_"_s, false},
        {u"abc"_s, u"%_c"_s, true},   {u"c"_s, u"%_c"_s, false},      {u"abc"_s, u"_%_%_"_s, true},
        {u"ab"_s, u"_%_%_"_s, false},
    };
    for (const auto& [text, pattern, expected] : cases)
        EXPECT_EQ(like(text, pattern), expected) << text.toStdString() << " like " << pattern.toStdString();
}

TEST(LikePattern, BracketsListCharacters) {
    const std::vector<std::tuple<QString, QString, bool>> cases = {
        {u"b"_s, u"[abc]"_s, true},
        {u"d"_s, u"[abc]"_s, false},
        {u""_s, u"[abc]"_s, false},
        {u"ab"_s, u"[abc]"_s, false},
        {u"m"_s, u"[a-z]"_s, true},
        {u"Ｍ"_s, u"[a-z]"_s, true},
        {u"m"_s, u"[Ａ-Ｚ]"_s, true},
        {u"3"_s, u"[a-z]"_s, false},
        {u"3"_s, u"[a-z0-9]"_s, true},
        {u"_"_s, u"[a-z0-9]"_s, false},
        {u"m"_s, u"[z-a]"_s, false},
        {u"a"_s, u"[!a]"_s, false},
        {u"Ａ"_s, u"[!a]"_s, false},
        {u"b"_s, u"[!a]"_s, true},
        {u""_s, u"[!a]"_s, false},
        {u"𠮷"_s, u"%[!𠮷]"_s, false},
        {u"𠮷"_s, u"[𠮷野]"_s, true},
        {u"m"_s, u"[!a-z]"_s, false},
        {u"あ"_s, u"[!a-z]"_s, true},
        // "!" elsewhere, "-" at either end, and other brackets are themselves
        {u"!"_s, u"[!]"_s, true},
        {u"a"_s, u"[!]"_s, false},
        {u"!"_s, u"[a!]"_s, true},
        {u"!"_s, u"[!!]"_s, false},
        {u"a"_s, u"[！a]"_s, true},
        {u"-"_s, u"[-a]"_s, true},
        {u"-"_s, u"[a-]"_s, true},
        {u"b"_s, u"[a-]"_s, false},
        {u"-"_s, u"[!-]"_s, false},
        {u"b"_s, u"[a－c]"_s, false},
        {u"－"_s, u"[a－c]"_s, true},
        {u"["_s, u"[[]"_s, true},
        {u"]"_s, u"[]]"_s, true},
        {u"]"_s, u"]"_s, true},
        {u"ab"_s, u"a[]b"_s, true},
        {u"a]b"_s, u"a]b"_s, true},
        {u""_s, u"[]"_s, true},
        {u"[a]"_s, u"［a］"_s, true},
        // no wildcards within a list
        {u"100%"_s, u"%[%]"_s, true},
        {u"100"_s, u"%[%]"_s, false},
        {u"a_b"_s, u"a[_]b"_s, true},
        {u"axb"_s, u"a[_]b"_s, false},
        // kana of either type and width, the voiced ones between the plain ones in code order
        {u"ｶ"_s, u"[あ-ん]"_s, true},
        {u"が"_s, u"[ｶﾞ]"_s, true},
        {u"か"_s, u"[ｶﾞ]"_s, false},
        {u"ﾞ"_s, u"[ｶﾞ]"_s, false},
        {u"ｸﾞ"_s, u"[ｶﾞ-ｺﾞ]"_s, true},
        {u"カ"_s, u"[ｶﾞ-ｺﾞ]"_s, false},
        {u"日記3号"_s, u"%日記[0-9]%"_s, true},
    };
    for (const auto& [text, pattern, expected] : cases)
        EXPECT_EQ(like(text, pattern), expected) << text.toStdString() << " like " << pattern.toStdString();
}

TEST(LikePattern, AnUnclosedListIsAFailure) {
    for (const QString& pattern : {u"["_s, u"%[%"_s, u"[abc"_s, u"[!"_s, u"a[b]c["_s, u"[a］"_s})
        EXPECT_THROW(LikePattern{pattern}, Failure) << pattern.toStdString();
}

TEST(LikePattern, HasNoRegardToCaseWidthAndKanaTypeOnEitherSide) {
    const QStringList sames = {u"Ａﾃﾞーﾀ　Ｘ"_s, u"aデータ X"_s, u"ａでｰたﾠ"_s.left(4) + u" x"_s, u"aﾃﾞｰﾀ ｘ"_s};
    for (const QString& text : sames) {
        for (const QString& word : sames) {
            EXPECT_TRUE(like(text, word));
            EXPECT_TRUE(like(u"これは"_s + text + u"です"_s, u"%"_s + word + u"%"_s));
            EXPECT_TRUE(like(text + u"です"_s, word + u"%"_s));
        }
    }
}

TEST(LikePattern, TellsVoicedKanaFromPlain) {
    EXPECT_FALSE(like(u"ば"_s, u"%は%"_s));
    EXPECT_FALSE(like(u"は"_s, u"%ば%"_s));
    EXPECT_FALSE(like(u"ぱ"_s, u"%ば%"_s));
    // Half-width kana and its mark are one character: neither part is found alone.
    EXPECT_FALSE(like(u"ﾊﾞ"_s, u"%ﾊ%"_s));
    EXPECT_FALSE(like(u"ﾊﾞ"_s, u"%は%"_s));
    EXPECT_FALSE(like(u"ﾊﾞ"_s, u"%ﾞ%"_s));
    EXPECT_FALSE(like(u"ﾊﾞ"_s, u"%゛%"_s));
    EXPECT_FALSE(like(u"ﾜﾞ"_s, u"%わ%"_s));
    EXPECT_FALSE(like(u"はﾊﾟ"_s, u"%はは%"_s));
    EXPECT_TRUE(like(u"ﾊﾞ"_s, u"%ば%"_s));
    EXPECT_TRUE(like(u"ﾊﾟﾊﾞ"_s, u"%ぱば%"_s));
    EXPECT_TRUE(like(u"ｱﾞ"_s, u"%゛%"_s));
    EXPECT_TRUE(like(u"ﾞ"_s, u"%゛%"_s));
}

TEST(LikePattern, AFullWidthSignIsNoWildcard) {
    EXPECT_TRUE(like(u"税率5%です"_s, u"%5％%"_s));
    EXPECT_TRUE(like(u"税率５％です"_s, u"%5％%"_s));
    EXPECT_FALSE(like(u"税率5です"_s, u"%5％で%"_s));
    EXPECT_FALSE(like(u"axb"_s, u"a＿b"_s));
    EXPECT_TRUE(like(u"a_b"_s, u"a＿b"_s));
}

TEST(LikePattern, WildcardsInATypedWordAreWildcards) {
    EXPECT_TRUE(like(u"今日は良い天気だ"_s, u"%今日%天気%"_s));
    EXPECT_TRUE(like(u"日本記"_s, u"%日_記%"_s));
    EXPECT_FALSE(like(u"日記"_s, u"%日_記%"_s));
    EXPECT_TRUE(like(u"*?#"_s, u"%*?#%"_s));
    EXPECT_FALSE(like(u"abc5"_s, u"%*?#%"_s));
}

TEST(LikePattern, FindsAWordWhereverItsRarestLetterStands) {
    for (const QString& text : {u"xhouse"_s, u"<p>HOUSE</p>"_s, u"日記ｈＯｕＳｅ"_s, u"用hoｕse用"_s, u"Ｈouse"_s})
        EXPECT_TRUE(like(text, u"%house%"_s)) << text.toStdString();
    for (const QString& text : {u"u"_s, u"ouse"_s, u"ｕ"_s, u"h日use"_s, u"ﾎouse"_s, u"mouse"_s, u"hous"_s})
        EXPECT_FALSE(like(text, u"%house%"_s)) << text.toStdString();
    EXPECT_TRUE(like(u"２００４年"_s, u"%2004年%"_s));
    EXPECT_FALSE(like(u"２０04月"_s, u"%2004年%"_s));
    EXPECT_TRUE(like(u"日a日k日"_s, u"%a_k%"_s));
}

TEST(LikePattern, FindsWordsThatStartWithAnything) {
    for (const QString& word : {u"k"_s, u"\u212A"_s, u"ヷ"_s, u"𠮷野"_s, u"😀"_s, u"é"_s, u"ß"_s, u"\uFFFD"_s,
                                u"\uFEFF"_s, u"\0x"_s, u"\uFFFF"_s, u"ー"_s, u"<br>"_s, u"ｦﾞ"_s, u"ﾞ"_s, u"゜"_s}) {
        EXPECT_TRUE(like(u"日記　"_s + word + u"　日記"_s, u"%"_s + word + u"%"_s)) << word.toStdString();
        EXPECT_TRUE(like(u"日記　"_s + word, u"%"_s + word + u"%"_s)) << word.toStdString();
        EXPECT_FALSE(like(u"日記　日記"_s, u"%"_s + word + u"%"_s)) << word.toStdString();
    }
}

TEST(LikePattern, ALoneSurrogateIsNoPartOfAPair) {
    const QString pair = u"𠮷"_s;
    EXPECT_FALSE(LikePattern(QString(u"%"_s + pair[0] + u"%"_s)).matches(pair));
    EXPECT_FALSE(LikePattern(QString(u"%"_s + pair[1] + u"%"_s)).matches(pair));
    EXPECT_TRUE(LikePattern(QString(u"%"_s + pair[1] + u"%"_s)).matches(pair + pair[1]));
    EXPECT_FALSE(LikePattern(QString(u"%"_s + pair[1] + u"%"_s)).matchesUtf8("?\xED\xBE\xB7\xF0\xA0\xAE\xB7"));
}

TEST(LikePattern, AMarkInFrontIsACharacter) {
    const QByteArray text = u"\uFEFF日記"_s.toUtf8();
    EXPECT_TRUE(LikePattern(u"\uFEFF日記").matchesUtf8(text));
    EXPECT_TRUE(LikePattern(u"_日記").matchesUtf8(text));
    EXPECT_TRUE(LikePattern(u"%\uFEFF%").matchesUtf8(text));
    EXPECT_FALSE(LikePattern(u"日記").matchesUtf8(text));
    EXPECT_FALSE(LikePattern(u"\uFEFF日記").matchesUtf8(u"日記"_s.toUtf8()));
}

TEST(LikePattern, ManyRunsStayFast) {
    const QString text(200'000, u'a');
    const double start = processorSeconds();
    EXPECT_FALSE(like(text, u"%a%a%a%a%a%a%a%a%b"_s));
    EXPECT_FALSE(like(text, u"%aaaaaaaab%"_s));
    EXPECT_TRUE(like(text, u"%a%a%a%a%a%a%a%a%"_s));
    EXPECT_LT(processorSeconds() - start, 30);
}

/// Matches by the definition alone: the rest of the text against the rest of the pattern, for "%", "_" and characters.
bool likeByDefinition(QList<uint> text, QList<uint> pattern) {
    std::vector<bool> reaches(std::size_t(text.size()) + 1, false);
    reaches.back() = true;
    while (!pattern.isEmpty()) {
        const uint sign = pattern.takeLast();
        std::vector<bool> before(reaches.size(), false);
        for (std::size_t i = reaches.size(); i-- > 0;) {
            const bool hasNext = i + 1 < reaches.size();
            if (sign == u'%')
                before[i] = reaches[i] || (hasNext && before[i + 1]);
            else
                before[i] = hasNext && reaches[i + 1] && (sign == u'_' || sign == text[qsizetype(i)]);
        }
        reaches = std::move(before);
    }
    return reaches.front();
}

TEST(LikePattern, MatchesAsDefinedOnRandomTexts) {
    Pieces texts({u"a"_s, u"Ａ"_s, u"k"_s, u"Ｋ"_s, u"か"_s, u"ｶ"_s, u"が"_s, u"ﾞ"_s, u"日"_s, u"𠮷"_s});
    Pieces patterns({u"a"_s, u"k"_s, u"か"_s, u"ガ"_s, u"゛"_s, u"日"_s, u"𠮷"_s, u"%"_s, u"_"_s});
    int matched = 0;
    for (int i = 0; i < 30'000; ++i) {
        const QString text = texts.text(8);
        QString pattern = patterns.text(4);
        if (i % 2)
            pattern = u'%' + pattern + u'%';
        const bool expected = likeByDefinition(fold(text).toUcs4(), fold(pattern).toUcs4());
        ASSERT_EQ(like(text, pattern), expected) << text.toStdString() << " like " << pattern.toStdString();
        matched += expected;
    }
    EXPECT_GT(matched, 3'000);
    EXPECT_LT(matched, 27'000);
}

TEST(LikePattern, ReadsDamagedUtf8AsTheTextOfIt) {
    const QList<QByteArray> pieces = {"a",
                                      "A",
                                      "\xEF\xBD\x81",
                                      "\xE3\x81\x8B",
                                      "\xEF\xBD\xB6",
                                      "\xEF\xBE\x9E",
                                      "\xE3\x82",
                                      "\xE3",
                                      "\x8B",
                                      "\xF0\x9F\x98\x80",
                                      "\xF0\x9F",
                                      "\xED\xA0\x80",
                                      "\xC0\x80",
                                      "\xFF",
                                      "\xEF\xBB\xBF",
                                      "\xEF\xBF\xBD",
                                      "\xF5",
                                      "\xF4\x90\x80\x80",
                                      "\xC3\xA9",
                                      "\xE0\x81\x8B",
                                      "\xEF\xBD",
                                      QByteArray(1, '\0'),
                                      "\xE6\x97\xA5",
                                      "\xC2"};
    Pieces patterns({u"a"_s, u"か"_s, u"が"_s, u"ｶ"_s, u"゛"_s, u"\uFFFD"_s, u"\uFEFF"_s, u"😀"_s, u"é"_s, u"日"_s,
                     u"%"_s, u"_"_s, u"[!a]"_s, u"[か-が]"_s});
    std::mt19937 engine{7};
    const auto number = [&](int highest) { return std::uniform_int_distribution<int>(0, highest)(engine); };
    int matched = 0;
    for (int i = 0; i < 40'000; ++i) {
        QByteArray joined;
        for (int left = number(7); left > 0; --left)
            joined += i % 3 ? pieces[number(int(pieces.size()) - 1)] : QByteArray(1, char(number(255)));
        // An array of its own without a final NUL: reading one byte too far is seen by the sanitizer.
        const auto size = std::size_t(joined.size());
        const std::unique_ptr<char[]> bytes(new char[size]);
        std::memcpy(bytes.get(), joined.constData(), size);
        const QByteArrayView utf8(bytes.get(), joined.size());
        QString pattern = patterns.text(3);
        if (i % 4)
            pattern = u'%' + pattern + u'%';
        const LikePattern compiled(pattern);
        const bool expected = compiled.matches(platform::fromUtf8(utf8));
        ASSERT_EQ(compiled.matchesUtf8(utf8), expected)
            << joined.toHex().toStdString() << " like " << pattern.toStdString();
        matched += expected;
    }
    EXPECT_GT(matched, 4'000);
    EXPECT_LT(matched, 36'000);
}

} // namespace
} // namespace velloria::tests
