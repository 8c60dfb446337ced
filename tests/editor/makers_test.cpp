#include "editor/makers.h"

#include "platform/failure.h"

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

namespace velloria::tests {
namespace {

using namespace editor;

ListBoxes marks(int mark, const QString& contents, bool dropsLastEmpty = false) {
    ListBoxes boxes;
    boxes.mark = mark;
    boxes.contents = contents;
    boxes.dropsLastEmpty = dropsLastEmpty;
    return boxes;
}

ListBoxes numbers(const QString& numbering, const QString& start = u"1"_s) {
    ListBoxes boxes;
    boxes.kind = ListKind::Numbers;
    boxes.numbering = numbering;
    boxes.start = start;
    boxes.contents = u"a"_s;
    return boxes;
}

RuleBoxes rule(const QString& size, const QString& width, int align = 1) {
    RuleBoxes boxes;
    boxes.size = size;
    boxes.width = width;
    boxes.align = align;
    return boxes;
}

TEST(ListMaker, ItemsStandInOneLineBehindTheKindOfMark) {
    const struct {
        ListBoxes boxes;
        QString tag;
    } cases[] = {
        {marks(0, u"a\r\nb\r\n"_s), u"<UL TYPE='disk'><li>a<li>b<li></UL>"_s},
        {marks(0, u"a\r\nb\r\n"_s, true), u"<UL TYPE='disk'><li>a<li>b</UL>"_s},
        {marks(0, u"a\r\n\r\n"_s, true), u"<UL TYPE='disk'><li>a<li></UL>"_s}, // one empty line, not all
        {marks(0, u"a\r\nb"_s, true), u"<UL TYPE='disk'><li>a<li>b</UL>"_s},
        {marks(1, u"a"_s), u"<UL TYPE='circle'><li>a</UL>"_s},
        {marks(2, u"a"_s), u"<UL TYPE='square'><li>a</UL>"_s},
        {marks(0, u""_s), u"<UL TYPE='disk'><li></UL>"_s},
        {marks(0, u""_s, true), u"<UL TYPE='disk'><li></UL>"_s},
        {marks(0, u"\r\n"_s, true), u"<UL TYPE='disk'><li></UL>"_s},
        {marks(0, u"a<li>"_s, true), u"<UL TYPE='disk'><li>a</UL>"_s},
        {marks(-1, u"a"_s), u"<UL TYPE=''><li>a</UL>"_s},
    };
    for (const auto& c : cases)
        EXPECT_EQ(listTag(c.boxes), c.tag) << c.tag.toStdString();
}

TEST(ListMaker, ATypedDigitIsTheKindOfNumbersAndNoOtherTextIs) {
    const struct {
        QString numbering;
        QString type;
    } cases[] = {{u"0"_s, u"1"_s}, {u"1"_s, u"I"_s},  {u"2"_s, u"i"_s},
                 {u"3"_s, u"A"_s}, {u"4"_s, u"a"_s},  {u"5"_s, u""_s},
                 {u"00"_s, u""_s}, {u" 1"_s, u""_s},  {u""_s, u""_s},
                 {u"２"_s, u""_s}, {u"-0"_s, u""_s},  {u"算用数字(1,2,...)"_s, u""_s},
                 {u"A"_s, u""_s},  {u"0.0"_s, u""_s}, {u"英字小(a,b,...)"_s, u""_s}};
    for (const auto& c : cases)
        EXPECT_EQ(listTag(numbers(c.numbering)), u"<OL TYPE='"_s + c.type + u"' START='1'><li>a</OL>"_s)
            << c.numbering.toStdString();
}

TEST(ListMaker, TheStartStandsAsItWasTyped) {
    for (const QString& start : {u"3"_s, u" 3"_s, u"-1"_s, u"1.5"_s, u"&H10"_s, u"100000"_s})
        EXPECT_EQ(listTag(numbers(u"0"_s, start)), u"<OL TYPE='1' START='"_s + start + u"'><li>a</OL>"_s);
}

TEST(ListMaker, AStartThatIsNoNumberIsRefusedWhereItCounts) {
    for (const QString& start : {u""_s, u"x"_s, u"1x"_s, u"'1"_s, u"一"_s}) {
        EXPECT_THROW(listTag(numbers(u"0"_s, start)), platform::Failure) << start.toStdString();
        ListBoxes boxes = marks(0, u"a"_s);
        boxes.start = start;
        EXPECT_EQ(listTag(boxes), u"<UL TYPE='disk'><li>a</UL>"_s);
    }
}

TEST(ListMaker, TheCheckOfTheStartTakesAnyNumber) {
    for (const QString& start : {u"1"_s, u" 1 "_s, u"１"_s, u"-3"_s, u"1e2"_s, u"&HFF"_s, u"1,000"_s})
        EXPECT_EQ(startComplaint(start), std::nullopt) << start.toStdString();
    for (const QString& start : {u""_s, u" "_s, u"x"_s, u"1 2"_s})
        EXPECT_EQ(startComplaint(start), u"不正な文字列が与えられました。\r\nここには数値を入力してください。"_s);
}

TEST(RuleMaker, AttributesComeInTheirOrder) {
    EXPECT_EQ(ruleTag({}), u"<HR Size=2>"_s);
    RuleBoxes boxes = rule(u"2"_s, u"50"_s, 2);
    boxes.isWithoutShade = true;
    boxes.colour = u"#ff0000"_s;
    EXPECT_EQ(ruleTag(boxes), u"<HR Size=2 Width=50% Align='Right' NOSHADE Color='#ff0000'>"_s);
    boxes.width = u"100"_s;
    EXPECT_EQ(ruleTag(boxes), u"<HR Size=2 NOSHADE Color='#ff0000'>"_s);
    boxes.isWithoutShade = false;
    boxes.colour = u"red"_s;
    EXPECT_EQ(ruleTag(boxes), u"<HR Size=2 Color='red'>"_s);
}

TEST(RuleMaker, OnlyTheSidesAlignAndOnlyWhatIsNarrower) {
    EXPECT_EQ(ruleTag(rule(u"2"_s, u"50"_s, 0)), u"<HR Size=2 Width=50% Align='Left'>"_s);
    EXPECT_EQ(ruleTag(rule(u"2"_s, u"50"_s, 1)), u"<HR Size=2 Width=50%>"_s);
    EXPECT_EQ(ruleTag(rule(u"2"_s, u"50"_s, -1)), u"<HR Size=2 Width=50%>"_s);
    EXPECT_EQ(ruleTag(rule(u"2"_s, u"100"_s, 0)), u"<HR Size=2>"_s);
    EXPECT_EQ(ruleTag(rule(u"2"_s, u"100.0"_s, 2)), u"<HR Size=2>"_s);
}

TEST(RuleMaker, NumbersBecomeWholeOnesHalvesToEven) {
    const struct {
        QString size;
        QString width;
        QString tag;
    } cases[] = {
        {u"2.5"_s, u"50.5"_s, u"<HR Size=2 Width=50%>"_s}, {u"3.5"_s, u"51.5"_s, u"<HR Size=4 Width=52%>"_s},
        {u" 1 "_s, u"５０"_s, u"<HR Size=1 Width=50%>"_s}, {u"&H10"_s, u"1e1"_s, u"<HR Size=16 Width=10%>"_s},
        {u"-1"_s, u"0"_s, u"<HR Size=-1 Width=0%>"_s},     {u"0"_s, u"101"_s, u"<HR Size=0 Width=101%>"_s},
        {u"32767"_s, u"99.5"_s, u"<HR Size=32767>"_s},
    };
    for (const auto& c : cases)
        EXPECT_EQ(ruleTag(rule(c.size, c.width)), c.tag) << c.tag.toStdString();
}

TEST(RuleMaker, WhatIsNoNumberOf16BitsIsRefused) {
    for (const QString& text : {u""_s, u"x"_s, u"50%"_s, u"32768"_s, u"-32769"_s, u"1e99"_s}) {
        EXPECT_THROW(ruleTag(rule(text, u"100"_s)), platform::Failure) << text.toStdString();
        EXPECT_THROW(ruleTag(rule(u"2"_s, text)), platform::Failure) << text.toStdString();
    }
}

TEST(RuleMaker, TheCheckOfTheWidthTellsNoNumberFromOneOutOfRange) {
    for (const QString& width : {u"1"_s, u"100"_s, u"0.1"_s, u"99.9"_s, u"５０"_s, u"&H64"_s})
        EXPECT_EQ(widthComplaint(width), std::nullopt) << width.toStdString();
    for (const QString& width : {u"0"_s, u"-1"_s, u"101"_s, u"100.1"_s, u"1e9"_s})
        EXPECT_EQ(widthComplaint(width), u"値の範囲は、0～100%でお願いします。"_s) << width.toStdString();
    for (const QString& width : {u""_s, u"x"_s, u"5x"_s, u"50%"_s, u" "_s})
        EXPECT_EQ(widthComplaint(width), u"不正な文字列が入力されました。\r\n数字を入力してください。"_s);
}

TEST(RuleMaker, AFullWidthCantBeAligned) {
    EXPECT_EQ(isAlignable(u"100"_s), false);
    EXPECT_EQ(isAlignable(u"100.0"_s), false);
    EXPECT_EQ(isAlignable(u"99"_s), true);
    EXPECT_EQ(isAlignable(u"101"_s), true);
    EXPECT_EQ(isAlignable(u"x"_s), std::nullopt);
    EXPECT_EQ(isAlignable(u""_s), std::nullopt);
}

TEST(FontMaker, WhatIsFilledInStandsInDoubleQuotesInItsOrder) {
    const struct {
        FontBoxes boxes;
        QString tag;
    } cases[] = {
        {{u"4"_s, u""_s, u""_s}, u"<FONT Size=\"4\">"_s},
        {{u"+2"_s, u"red"_s, u""_s}, u"<FONT Size=\"+2\" Color=\"red\">"_s},
        {{u"4"_s, u"#FF0000"_s, u"ＭＳ 明朝"_s}, u"<FONT Size=\"4\" Color=\"#FF0000\" Face=\"ＭＳ 明朝\">"_s},
        {{u""_s, u"red"_s, u"serif"_s}, u"<FONT Color=\"red\" Face=\"serif\">"_s},
        {{u""_s, u""_s, u"serif"_s}, u"<FONT Face=\"serif\">"_s},
        {{}, u"<FONT>"_s},
    };
    for (const auto& c : cases)
        EXPECT_EQ(fontOpening(c.boxes), c.tag);
    EXPECT_EQ(QString(kFontClosing), u"</FONT>"_s);
}

TEST(FontMaker, SizesAreSevenOrStepsWithoutZero) {
    const FontSizes absolute = absoluteFontSizes();
    EXPECT_EQ(absolute.texts.join(u' '), u"1 2 3 4 5 6 7"_s);
    EXPECT_EQ(absolute.texts[absolute.first], u"4"_s);
    const FontSizes relative = relativeFontSizes();
    EXPECT_EQ(relative.texts.join(u' '), u"-6 -5 -4 -3 -2 -1 +1 +2 +3 +4 +5 +6"_s);
    EXPECT_EQ(relative.texts[relative.first], u"+2"_s);
}

} // namespace
} // namespace velloria::tests
