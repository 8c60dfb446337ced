// What the reader of old diaries makes of bytes; it is linked into no program but its own.
#include "store/jet/jet_error.h"
#include "store/jet/jet_text.h"
#include "store/jet/jet_value.h"
#include "support/print.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

using namespace Qt::StringLiterals;

namespace velloria::tests {
namespace {

using store::jet::dateOf;
using store::jet::JetError;
using store::jet::textOfCodePage;
using store::jet::textOfUnits;

QByteArray hex(const char* bytes) {
    return QByteArray::fromHex(bytes);
}

TEST(JetText, OfUnitsIsReadToTheLastOne) {
    const std::vector<std::pair<const char*, QString>> texts{
        {"", u""_s},
        {"4200", u"B"_s},
        {"188a 0000 0d00 0a00", u"記\0\r\n"_s},
        {"42d8b7df 3dd800de", u"𠮷😀"_s},
        {"42d8 4100", u"\uFFFDA"_s},
        {"b7df 4100 42d8", u"\uFFFDA\uFFFD"_s},
        {"42d842d8b7df", u"\uFFFD𠮷"_s},
        {"0030", u"\u3000"_s},
    };
    for (const auto& [bytes, text] : texts)
        EXPECT_EQ(textOfUnits(hex(bytes)), text) << bytes;
}

TEST(JetText, BehindItsMarkChangesBetweenRuns) {
    const std::vector<std::pair<const char*, QString>> texts{
        {"fffe", u""_s},
        {"fffe 6162", u"ab"_s},
        {"fffe e9ff", u"éÿ"_s},
        {"fffe 61 00 188a 00 62", u"a記b"_s},
        {"fffe 00 188a e562", u"記拥"_s},
        {"fffe 00 00 61", u"a"_s},
        {"fffe 00 42d8b7df", u"𠮷"_s},
    };
    for (const auto& [bytes, text] : texts)
        EXPECT_EQ(textOfUnits(hex(bytes)), text) << bytes;
}

TEST(JetText, WithHalfAUnitIsDamage) {
    for (const char* bytes : {"42", "420041", "fffe0086", "fffe6100188a e5"})
        EXPECT_THROW(textOfUnits(hex(bytes)), JetError) << bytes;
}

TEST(JetText, OfTheOlderVersionIsOfTheFilesCodePage) {
    // A backslash stays one, also behind a character whose second byte looks like it.
    const QByteArray bytes = hex("433a5c 955c 5c 8740 878a fbfc 7e b1");
    for (const int codePage : {0, 932})
        EXPECT_EQ(textOfCodePage(bytes, codePage), u"C:\\表\\①㈱髙~ｱ"_s);
    EXPECT_EQ(textOfCodePage(hex("e9 80"), 1252), u"é€"_s);
    EXPECT_THROW(textOfCodePage(bytes, 12345), JetError);
}

TEST(JetDate, IsTheDayAndTheTimeThatThereIs) {
    const std::vector<std::pair<double, QString>> dates{
        {0, u"1899/12/30"_s},
        {1, u"1899/12/31"_s},
        {37622, u"2003/01/01"_s},
        {38046, u"2004/02/29"_s},
        {37622.5, u"2003/01/01 12:00:00"_s},
        {37622 + 7 / 24.0 + 8 / 1440.0 + 9 / 86400.0, u"2003/01/01 07:08:09"_s},
        {37622 + 86399.6 / 86400, u"2003/01/02"_s},
        {-1.25, u"1899/12/29 06:00:00"_s},
        {0.75, u"1899/12/30 18:00:00"_s},
        {-657434, u"0100/01/01"_s},
        {2958465, u"9999/12/31"_s},
    };
    for (const auto& [days, text] : dates)
        EXPECT_EQ(dateOf(days), text) << days;
}

TEST(JetDate, OutsideOfAllYearsIsDamage) {
    for (const double days : {-657436.0, 2958466.0, 1e300, -1e300, std::numeric_limits<double>::infinity(),
                              std::numeric_limits<double>::quiet_NaN()})
        EXPECT_THROW(dateOf(days), JetError) << days;
}

} // namespace
} // namespace velloria::tests
