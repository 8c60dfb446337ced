#include "core/numbers.h"

#include "platform/failure.h"
#include "support/vectors.h"

#include <gtest/gtest.h>

#include <limits>

using namespace Qt::StringLiterals;

namespace velloria::tests {
namespace {

using core::cint;
using core::formatNumber;
using core::NumberForm;
using core::numericValue;
using core::singleText;
using core::twoDigits;
using platform::Failure;

/// The result of cint as the table writes it.
template <typename Value>
QString converted(const Value& value) {
    try {
        return QString::number(cint(value));
    } catch (const Failure& failure) {
        return failure.reason().contains(u"範囲") ? u"overflow"_s : u"mismatch"_s;
    }
}

TEST(Numbers, ReadsTextsAsThePlatformDoes) {
    for (const VectorRow& row : readVectors("isnumeric.tsv")) {
        SCOPED_TRACE(row.line);
        const std::optional<double> value = numericValue(row.text("text"));
        EXPECT_EQ(value.has_value(), row.text("is_numeric") == u"1") << row.text("text").toStdString();
        if (value) {
            EXPECT_DOUBLE_EQ(*value, row.text("value").toDouble());
        }
    }
}

TEST(Numbers, ReadsOddTexts) {
    const struct {
        QString text;
        std::optional<double> value;
    } cases[] = {
        {u"\\-5"_s, std::nullopt},  {u"-\\5"_s, -5},
        {u"(1,234.5)"_s, -1234.5},  {u"(5"_s, std::nullopt},
        {u"5)"_s, std::nullopt},    {u"(-5)"_s, std::nullopt},
        {u"-5-"_s, std::nullopt},   {u"1.5,0"_s, std::nullopt},
        {u"-1e-3"_s, -0.001},       {u"1e3.5"_s, std::nullopt},
        {u"&HFFFF"_s, -1},          {u"&H10000"_s, 65536},
        {u"&HFFFFFFFF"_s, -1},      {u"&H100000000"_s, std::nullopt},
        {u"&O177777"_s, -1},        {u"&O8"_s, std::nullopt},
        {u"-&H10"_s, std::nullopt}, {u"＆Ｈ１０"_s, 16},
        {u"（５）"_s, -5},          {u"－３"_s, -3},
        {u"٣"_s, std::nullopt}, // digits of another script
        {u"inf"_s, std::nullopt},   {u"nan"_s, std::nullopt},
    };
    for (const auto& [text, value] : cases)
        EXPECT_EQ(numericValue(text), value) << text.toStdString();
}

TEST(Numbers, ALongTextIsReadInOnePass) {
    const QString blanks(200'000, u' ');
    EXPECT_EQ(numericValue(blanks + u'5' + blanks), 5);
    EXPECT_EQ(numericValue(blanks), std::nullopt);
    EXPECT_EQ(numericValue(u'5' + blanks + u'x'), std::nullopt);
    EXPECT_EQ(numericValue(QString(200'000, u'0') + u"7"_s), 7);
    EXPECT_EQ(numericValue(QString(200'000, u'9') + u'x'), std::nullopt);
}

TEST(Numbers, ConvertsTo16BitsAsThePlatformDoes) {
    for (const VectorRow& row : readVectors("cint.tsv")) {
        SCOPED_TRACE(row.line);
        const QString value = row.text("value");
        if (row.text("kind") == u"text")
            EXPECT_EQ(converted(QStringView(value)), row.text("result")) << value.toStdString();
        else
            EXPECT_EQ(converted(value.toDouble()), row.text("result")) << value.toStdString();
    }
}

TEST(Numbers, WhatIsNoFiniteNumberIsBeyond16Bits) {
    EXPECT_EQ(converted(std::numeric_limits<double>::quiet_NaN()), u"overflow");
    EXPECT_EQ(converted(std::numeric_limits<double>::infinity()), u"overflow");
    EXPECT_EQ(converted(-std::numeric_limits<double>::infinity()), u"overflow");
}

TEST(Numbers, AFailedConversionNamesTheValue) {
    for (const QString& value : {u"abc"_s, u"40000"_s}) {
        try {
            cint(value);
            ADD_FAILURE() << value.toStdString();
        } catch (const Failure& failure) {
            EXPECT_TRUE(failure.reason().contains(u"「"_s + value + u"」"_s)) << failure.what();
        }
    }
}

TEST(Numbers, PrintsAsTheFormatFunctionDoes) {
    const QHash<QString, NumberForm> forms = {
        {u"0"_s, NumberForm::Whole}, {u"0.0"_s, NumberForm::OneDecimal}, {u"00"_s, NumberForm::TwoDigits}};
    for (const VectorRow& row : readVectors("format.tsv")) {
        SCOPED_TRACE(row.line);
        const QString kind = row.text("kind");
        const QString form = row.text("format");
        if (kind == u"number") {
            ASSERT_TRUE(forms.contains(form));
            EXPECT_EQ(formatNumber(row.text("value").toDouble(), forms[form]), row.text("result"));
        } else if (kind == u"text" && form == u"00") {
            EXPECT_EQ(twoDigits(row.text("value")), row.text("result"));
        }
    }
}

TEST(Numbers, RoundsByTheDigitsThatAPersonSees) {
    EXPECT_EQ(formatNumber(1.15, NumberForm::OneDecimal), u"1.2"); // 1.149999... in binary
    EXPECT_EQ(formatNumber(8.35, NumberForm::OneDecimal), u"8.4"); // 8.349999...
    EXPECT_EQ(formatNumber(-0.05, NumberForm::OneDecimal), u"-0.1");
    EXPECT_EQ(formatNumber(0.1499999, NumberForm::OneDecimal), u"0.1");
    EXPECT_EQ(formatNumber(-0.5, NumberForm::Whole), u"-1");
    EXPECT_EQ(formatNumber(2.4999999999999996, NumberForm::Whole), u"3"); // as a sum may leave it
    EXPECT_EQ(formatNumber(2.4999, NumberForm::Whole), u"2");
}

TEST(Numbers, AZeroHasNoSign) {
    EXPECT_EQ(formatNumber(-0.04, NumberForm::OneDecimal), u"0.0");
    EXPECT_EQ(formatNumber(-0.4, NumberForm::Whole), u"0");
    EXPECT_EQ(formatNumber(-0.4, NumberForm::TwoDigits), u"00");
    EXPECT_EQ(singleText(-0.0F), u"0");
}

TEST(Numbers, WritesTwoDigitsOfWholeNumbers) {
    EXPECT_EQ(twoDigits(0), u"00");
    EXPECT_EQ(twoDigits(7), u"07");
    EXPECT_EQ(twoDigits(-7), u"-07");
    EXPECT_EQ(twoDigits(-12), u"-12");
    EXPECT_EQ(twoDigits(std::numeric_limits<int>::max()), u"2147483647");
    EXPECT_EQ(twoDigits(std::numeric_limits<int>::min()), u"-2147483648");
}

TEST(Numbers, WritesSinglePrecisionAsThePlatformDoes) {
    for (const VectorRow& row : readVectors("single_text.tsv"))
        EXPECT_EQ(singleText(row.text("value").toFloat()), row.text("text")) << "line " << row.line;
}

} // namespace
} // namespace velloria::tests
