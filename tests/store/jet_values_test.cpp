// What the reader of old diaries makes of bytes; it is linked into no program but its own.
#include "store/jet/jet_error.h"
#include "store/jet/jet_text.h"
#include "store/jet/jet_value.h"
#include "support/print.h"

#include <gtest/gtest.h>

#include <QtEndian>

#include <bit>
#include <limits>

using namespace Qt::StringLiterals;

namespace velloria::tests {
namespace {

using store::OldValue;
using store::jet::Column;
using store::jet::dateOf;
using store::jet::JetError;
using store::jet::JetFile;
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

QByteArray bytesOf(double number) {
    QByteArray bytes(8, '\0');
    qToLittleEndian(std::bit_cast<quint64>(number), bytes.data());
    return bytes;
}

TEST(JetValue, IsOfItsColumnsKind) {
    const JetFile file(QStringLiteral(VELLORIA_TEST_DATA "/jet/v110.mdb"));
    const auto value = [&file](int type, int size, const QByteArray& bytes, bool isNull = false) {
        const Column column{u"x"_s, type, size, size != 0 || type == MDB_BOOL, false, 0};
        store::jet::requireKnownKind(column);
        return valueOf(file, column, {isNull, bytes});
    };
    EXPECT_EQ(value(MDB_BOOL, 0, {}), OldValue(qint64(1)));
    EXPECT_EQ(value(MDB_BOOL, 1, {}, true), OldValue(qint64(0))) << "it has no missing value";
    EXPECT_EQ(value(MDB_BYTE, 1, hex("ff")), OldValue(qint64(255)));
    EXPECT_EQ(value(MDB_INT, 2, hex("feff")), OldValue(qint64(-2)));
    EXPECT_EQ(value(MDB_LONGINT, 4, hex("00000080")), OldValue(qint64(-2147483648)));
    EXPECT_EQ(value(MDB_DATETIME, 8, bytesOf(37622)), OldValue(QByteArray("2003/01/01")));
    EXPECT_EQ(value(MDB_TEXT, 0, hex("188a")), OldValue(u"記"_s.toUtf8()));
    EXPECT_EQ(value(MDB_TEXT, 0, {}), OldValue(QByteArray("")));
    EXPECT_EQ(value(MDB_MEMO, 0, {}), OldValue(QByteArray("")));
    EXPECT_EQ(value(MDB_MEMO, 0, hex("02000080 00000000 00000000 188a")), OldValue(u"記"_s.toUtf8()));
    for (const auto& [type, size] :
         std::vector<std::pair<int, int>>{{MDB_INT, 2}, {MDB_LONGINT, 4}, {MDB_DATETIME, 8}, {MDB_TEXT, 0}})
        EXPECT_EQ(value(type, size, {}, true), OldValue()) << type;

    for (const auto& [type, bytes] :
         std::vector<std::pair<int, QByteArray>>{{MDB_INT, hex("01")},
                                                 {MDB_LONGINT, hex("0102")},
                                                 {MDB_TEXT, hex("01")},
                                                 {MDB_MEMO, hex("00")},
                                                 {MDB_MEMO, hex("03000080 00000000 00000000 188a")},
                                                 {MDB_MEMO, hex("020000c0 00000000 00000000 188a")},
                                                 {MDB_MEMO, hex("ffffff3f 01010000 00000000")},
                                                 {MDB_MEMO, hex("02000000 00000000 00000000")},
                                                 {MDB_MEMO, hex("02000040 ffffffff 00000000")}}) {
        const int size = type == MDB_INT ? 2 : type == MDB_LONGINT ? 4 : 0;
        EXPECT_THROW(value(type, size, bytes), JetError) << type << ' ' << bytes.toHex().toStdString();
    }
    for (const auto& [type, size] : std::vector<std::pair<int, int>>{{MDB_INT, 4},
                                                                     {MDB_LONGINT, 2},
                                                                     {MDB_DATETIME, 0},
                                                                     {MDB_MONEY, 8},
                                                                     {MDB_OLE, 0},
                                                                     {MDB_DOUBLE, 8},
                                                                     {MDB_MEMO, 12},
                                                                     {0, 0},
                                                                     {255, 0}})
        EXPECT_THROW(value(type, size, {}, true), JetError) << type << ' ' << size;
}

} // namespace
} // namespace velloria::tests
