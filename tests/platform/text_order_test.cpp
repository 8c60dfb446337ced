#include "platform/text_order.h"

#include "platform/text_fold.h"
#include "platform/text_pieces.h"
#include "support/vectors.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <tuple>

using namespace Qt::StringLiterals;

namespace velloria::tests {
namespace {

using platform::equalText;
using platform::TextOrder;

int sign(int value) {
    return (value > 0) - (value < 0);
}

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
    TextPieces pieces({u"-"_s,
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

} // namespace
} // namespace velloria::tests
