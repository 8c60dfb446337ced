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

    static core::Setting row(QStringView section, QStringView name, QStringView whenMissing = {}) {
        return core::SettingsSection{core::SettingsFile::Frame, section}.text(name, whenMissing);
    }
    static core::Setting number(QStringView section, QStringView name, QStringView whenMissing = {}) {
        return core::SettingsSection{core::SettingsFile::Frame, section}.number(name, whenMissing);
    }

    QTemporaryDir folder;
};

TEST_F(IniReading, GivesWhatTheWrappersGive) {
    put("[S]\r\nText= 'a b' \r\nEmpty=\r\nLong=" + QByteArray(300, 'a') + "\r\n");
    const QString file = folder.filePath(u"Frame.ini"_s);
    for (const QString& key : {u"text"_s, u"EMPTY"_s, u"Long"_s, u"Missing"_s}) {
        EXPECT_EQ(reader().text(row(u"s", key)), core::ReadIni(file, u"s"_s, key)) << key.toStdString();
        EXPECT_EQ(reader().text(row(u"s", key, u"d")), core::ReadIniDef(file, u"s"_s, key, u"d"_s))
            << key.toStdString();
    }
    EXPECT_EQ(reader().text(row(u"S", u"Text")), u"a b"_s);
    EXPECT_EQ(reader().text(row(u"S", u"Long")).size(), 255);
}

TEST_F(IniReading, TakesADefaultOnlyForAMissingKey) {
    put("[S]\r\nEmpty=\r\n");
    EXPECT_EQ(reader().text(row(u"S", u"Empty", u"d")), u""_s);
    EXPECT_EQ(reader().number(number(u"S", u"Empty", u"7")), 0);
    EXPECT_EQ(reader().text(row(u"S", u"Missing", u"d")), u"d"_s);
    EXPECT_EQ(reader().number(number(u"S", u"Missing", u"7")), 7);
}

TEST_F(IniReading, HasNoKeysInAMissingFile) {
    EXPECT_EQ(reader().text(row(u"S", u"K")), u""_s);
    EXPECT_EQ(reader().number(number(u"S", u"K")), 0);
}

TEST_F(IniReading, ReadsNumbersAsTextsThatBeginWithOne) {
    const struct {
        const char* value;
        int number;
    } cases[] = {{"12", 12}, {"12abc", 12}, {"abc", 0},       {"-5", -5},         {"12.7", 12},
                 {"", 0},    {"0x10", 16},  {"32767", 32767}, {"-32768", -32768}, {"4294967295x", -1}};
    for (const auto& c : cases) {
        put(QByteArray("[S]\r\nK=") + c.value + "\r\n");
        EXPECT_EQ(reader().number(number(u"S", u"K")), c.number) << c.value;
    }
}

TEST_F(IniReading, RefusesANumberBeyondSixteenBitsAndNamesItsPlace) {
    for (const char* value : {"32768", "-32769", "40000"}) {
        put(QByteArray("[Body]\r\nSize=") + value + "\r\n");
        try {
            reader().number(number(u"Body", u"Size"));
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
    EXPECT_EQ(before.text(row(u"S", u"K")), u"old"_s);
    EXPECT_EQ(reader().text(row(u"S", u"K")), u"new"_s);
}

TEST_F(IniReading, FindsAFileOfAWindowsDisk) {
    put("[S]\r\nK=v\r\n", u"FRAME.INI"_s);
    EXPECT_EQ(reader().text(row(u"S", u"K")), u"v"_s);
}

} // namespace
} // namespace velloria::tests
