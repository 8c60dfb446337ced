#include "core/ini_reader.h"

#include "core/ini.h"
#include "platform/failure.h"
#include "platform/file_write.h"

#include <gtest/gtest.h>

#include <QTemporaryDir>

using namespace Qt::StringLiterals;

namespace velloria::tests {
namespace {

using core::IniReader;
using platform::Failure;

class IniReading : public testing::Test {
protected:
    void put(const QByteArray& bytes, const QString& name = u"Frame.ini"_s) const {
        platform::replaceFile(folder.filePath(name), bytes, platform::Durability::Derived);
    }
    IniReader reader() const { return IniReader(folder.filePath(u"Frame.ini"_s)); }

    QTemporaryDir folder;
};

TEST_F(IniReading, GivesWhatTheWrappersGive) {
    put("[S]\r\nText= 'a b' \r\nEmpty=\r\nLong=" + QByteArray(300, 'a') + "\r\n");
    const QString file = folder.filePath(u"Frame.ini"_s);
    for (const QString& key : {u"text"_s, u"EMPTY"_s, u"Long"_s, u"Missing"_s}) {
        EXPECT_EQ(reader().text(u"s"_s, key), core::ReadIni(file, u"s"_s, key)) << key.toStdString();
        EXPECT_EQ(reader().text(u"s"_s, key, u"d"_s), core::ReadIniDef(file, u"s"_s, key, u"d"_s)) << key.toStdString();
    }
    EXPECT_EQ(reader().text(u"S"_s, u"Text"_s), u"a b"_s);
    EXPECT_EQ(reader().text(u"S"_s, u"Long"_s).size(), 255);
}

TEST_F(IniReading, TakesADefaultOnlyForAMissingKey) {
    put("[S]\r\nEmpty=\r\n");
    EXPECT_EQ(reader().text(u"S"_s, u"Empty"_s, u"d"_s), u""_s);
    EXPECT_EQ(reader().number(u"S"_s, u"Empty"_s, 7), 0);
    EXPECT_EQ(reader().text(u"S"_s, u"Missing"_s, u"d"_s), u"d"_s);
    EXPECT_EQ(reader().number(u"S"_s, u"Missing"_s, 7), 7);
}

TEST_F(IniReading, HasNoKeysInAMissingFile) {
    EXPECT_EQ(reader().text(u"S"_s, u"K"_s), u""_s);
    EXPECT_EQ(reader().number(u"S"_s, u"K"_s), 0);
}

TEST_F(IniReading, ReadsNumbersAsTextsThatBeginWithOne) {
    const struct {
        const char* value;
        int number;
    } cases[] = {{"12", 12}, {"12abc", 12}, {"abc", 0},       {"-5", -5},         {"12.7", 12},
                 {"", 0},    {"0x10", 16},  {"32767", 32767}, {"-32768", -32768}, {"4294967295x", -1}};
    for (const auto& c : cases) {
        put(QByteArray("[S]\r\nK=") + c.value + "\r\n");
        EXPECT_EQ(reader().number(u"S"_s, u"K"_s), c.number) << c.value;
    }
}

TEST_F(IniReading, RefusesANumberBeyondSixteenBitsAndNamesItsPlace) {
    for (const char* value : {"32768", "-32769", "40000"}) {
        put(QByteArray("[Body]\r\nSize=") + value + "\r\n");
        try {
            reader().number(u"Body"_s, u"Size"_s);
            ADD_FAILURE() << value;
        } catch (const Failure& failure) {
            EXPECT_EQ(failure.file(), folder.filePath(u"Frame.ini"_s));
            EXPECT_EQ(failure.reason(), u"[Body] Size=%1"_s.arg(QLatin1StringView(value)));
        }
    }
}

TEST_F(IniReading, IsTheFileAsItWasWhenItBegan) {
    put("[S]\r\nK=old\r\n");
    const IniReader before = reader();
    put("[S]\r\nK=new\r\n");
    EXPECT_EQ(before.text(u"S"_s, u"K"_s), u"old"_s);
    EXPECT_EQ(reader().text(u"S"_s, u"K"_s), u"new"_s);
}

TEST_F(IniReading, FindsAFileOfAWindowsDisk) {
    put("[S]\r\nK=v\r\n", u"FRAME.INI"_s);
    EXPECT_EQ(reader().text(u"S"_s, u"K"_s), u"v"_s);
}

} // namespace
} // namespace velloria::tests
