#include "convert/colour.h"

#include "platform/failure.h"
#include "platform/file_write.h"

#include <gtest/gtest.h>

#include <QDir>
#include <QTemporaryDir>

using namespace Qt::StringLiterals;

namespace velloria::tests {
namespace {

using namespace convert;

class Colour : public testing::Test {
protected:
    void put(const QByteArray& bytes) const {
        platform::replaceFile(home + u"colorname.csv"_s, bytes, platform::Durability::Derived);
    }
    QString exchanged(QString text) const { return exchangeColour(home, text); }
    QString names() const { return colourNames(home).join(u'|'); }

    QTemporaryDir folder;
    QString home = folder.path() + u'/';
};

TEST_F(Colour, TheNamesStandInTheOrderOfTheFile) {
    put("red,#FF0000\r\naqua,#00FFFF\r\nBlue,#0000ff\r\n");
    EXPECT_EQ(names(), u"red|aqua|Blue"_s);
    const std::vector<NamedColour> colours = readColours(home);
    ASSERT_EQ(colours.size(), 3U);
    EXPECT_EQ(colours[2].number, u"#0000ff"_s);
}

TEST_F(Colour, ANameAndItsNumberChangePlacesAsTheyStandInTheFile) {
    put("Red,#FF0000\r\n\x90\xC2,#0000Ff\r\nred,#111111\r\nCrimson,#ff0000\r\n");
    const struct {
        QString text;
        QString answer;
    } cases[] = {
        {u"red"_s, u"#FF0000"_s}, // the first one counts
        {u"RED"_s, u"#FF0000"_s},       {u"青"_s, u"#0000Ff"_s},      {u"crimson"_s, u"#ff0000"_s},
        {u"#ff0000"_s, u"Red"_s},       {u"#Ff0000"_s, u"Red"_s},     {u"#0000FF"_s, u"青"_s},
        {u"#111111"_s, u"red"_s},       {u"#00ff00"_s, u"Nothing"_s}, {u"#0"_s, u"Nothing"_s},
        {u"ff0000"_s, u"Nothing"_s},    {u"green"_s, u"Nothing"_s},   {u""_s, u"Nothing"_s},
        {u" red"_s, u"Nothing"_s},      {u"red "_s, u"Nothing"_s},    {u"#"_s, u"Error"_s},
        {u"#zzzzzz"_s, u"Error"_s},     {u"##ff0000"_s, u"Error"_s},  {u"#ff 000"_s, u"Error"_s},
        {u"#-ff0000"_s, u"Error"_s},    {u"#ff0000h"_s, u"Error"_s},  {u"#1ffffffff"_s, u"Error"_s},
        {u"#ffffffff"_s, u"Nothing"_s}, {u"nothing"_s, u"Nothing"_s},
    };
    for (const auto& c : cases)
        EXPECT_EQ(exchanged(c.text), c.answer) << c.text.toStdString();
}

TEST_F(Colour, TheTextThatIsExchangedBecomesLowerCase) {
    put("red,#FF0000\r\n");
    for (const auto& [text, lower] : {std::pair(u"RED"_s, u"red"_s), std::pair(u"#ZZ"_s, u"#zz"_s)}) {
        QString changed = text;
        exchangeColour(home, changed);
        EXPECT_EQ(changed, lower);
    }
}

TEST_F(Colour, TheFileIsReadAnewAtEachUse) {
    put("red,#FF0000\r\n");
    EXPECT_EQ(exchanged(u"red"_s), u"#FF0000"_s);
    put("red,#EE0000\r\n");
    EXPECT_EQ(exchanged(u"red"_s), u"#EE0000"_s);
}

TEST_F(Colour, AFieldMayStandInQuotesAndBehindBlanks) {
    put("\"deep, red\" , \"#880000\"\r\n  \tgray,\t #808080,#000000\nlast,#010203");
    EXPECT_EQ(names(), u"deep, red|gray|last"_s);
    EXPECT_EQ(exchanged(u"Deep, Red"_s), u"#880000"_s);
    EXPECT_EQ(exchanged(u"gray"_s), u"#808080"_s);
    EXPECT_EQ(exchanged(u"#010203"_s), u"last"_s);
}

TEST_F(Colour, ALineWithoutTwoFieldsIsNoColour) {
    put("\r\nlonely\r\n,#112233\r\n\"open,#445566\r\nempty,\r\nred,#FF0000\r\n");
    EXPECT_EQ(names(), u"red"_s);
    EXPECT_EQ(exchanged(u"lonely"_s), u"Nothing"_s);
    EXPECT_EQ(exchanged(u""_s), u"Nothing"_s);
    EXPECT_EQ(exchanged(u"#445566"_s), u"Nothing"_s);
    EXPECT_EQ(exchanged(u"red"_s), u"#FF0000"_s);
}

TEST_F(Colour, AnEmptyListHasNoColours) {
    put("");
    EXPECT_EQ(names(), QString());
    EXPECT_EQ(exchanged(u"red"_s), u"Nothing"_s);
    EXPECT_EQ(exchanged(u"#zz"_s), u"Error"_s);
}

TEST_F(Colour, AnyBytesAreReadWithoutHarm) {
    put(QByteArray("\x81\0\xFF\"\"\",,\"\r\r\n\"\n\0,\0\n", 18));
    EXPECT_NO_THROW(names());
    EXPECT_EQ(exchanged(u"red"_s), u"Nothing"_s);
}

TEST_F(Colour, ACharacterThatTheFileHoldsAsAReferenceReadsBack) {
    put("caf&#233;,#775533\r\n");
    EXPECT_EQ(exchanged(u"café"_s), u"#775533"_s);
}

TEST_F(Colour, AListThatIsMissingIsAFailureThatNamesIt) {
    const auto fails = [&] {
        try {
            colourNames(home);
        } catch (const platform::Failure& failure) {
            EXPECT_TRUE(failure.text().contains(home + u"colorname.csv"_s)) << failure.text().toStdString();
            EXPECT_FALSE(failure.advice().isEmpty());
            return true;
        }
        return false;
    };
    EXPECT_TRUE(fails());
    EXPECT_THROW(exchanged(u"red"_s), platform::Failure);
    ASSERT_TRUE(QDir(home).mkdir(u"colorname.csv"_s));
    EXPECT_TRUE(fails()) << "a folder is no list";
}

TEST_F(Colour, TheFileIsFoundInAnyCase) {
    platform::replaceFile(home + u"ColorName.CSV"_s, "red,#FF0000\r\n", platform::Durability::Derived);
    EXPECT_EQ(names(), u"red"_s);
}

TEST_F(Colour, DigitsHaveRedFirstAndValuesHaveItLowest) {
    const struct {
        OleColour value;
        QString digits;
    } cases[] = {{0x0000FF, u"FF0000"_s}, {0x00FF00, u"00FF00"_s}, {0xFF0000, u"0000FF"_s}, {0, u"000000"_s},
                 {0xFFFFFF, u"FFFFFF"_s}, {0x0A0B01, u"010B0A"_s}, {0xC0FFEE, u"EEFFC0"_s}};
    for (const auto& c : cases) {
        EXPECT_EQ(colourDigits(c.value), c.digits);
        EXPECT_EQ(colourValue(c.digits), c.value);
        EXPECT_EQ(colourValue(c.digits.toLower()), c.value);
    }
    EXPECT_EQ(colourDigits(0x800000FF), u"FF0000"_s);
}

TEST_F(Colour, OtherTextsHaveNoValue) {
    for (const QString& text : {u""_s, u"ff000"_s, u"ff00000"_s, u"#ff0000"_s, u"gg0000"_s, u"ff 000"_s, u"-f0000"_s,
                                u"ff0000\n"_s, u"０００００0"_s, u"0x0000"_s, u"+10000"_s})
        EXPECT_EQ(colourValue(text), std::nullopt) << text.toStdString();
}

} // namespace
} // namespace velloria::tests
