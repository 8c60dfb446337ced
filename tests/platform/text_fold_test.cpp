#include "platform/text_fold.h"

#include "support/vectors.h"

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

namespace velloria::tests {
namespace {

using platform::equalText;
using platform::fold;

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

} // namespace
} // namespace velloria::tests
