#include "core/settings_change.h"

#include "core/keys.h"
#include "platform/failure.h"
#include "platform/file_write.h"
#include "support/disk_watch.h"

#include <gtest/gtest.h>

#include <QFile>
#include <QTemporaryDir>

#include <thread>

using namespace Qt::StringLiterals;

namespace velloria::tests {
namespace {

using core::SettingsChange;

class SettingsChanges : public testing::Test {
protected:
    void put(const QString& name, const QByteArray& bytes) {
        platform::replaceFile(name, bytes, platform::Durability::Derived);
    }

    static core::Setting row(QStringView section, QStringView name) {
        return {core::SettingsFile::Diary, section, name, {}};
    }

    QTemporaryDir folder;
    const QString file = folder.filePath(u"diary.ini"_s);
    const QString other = folder.filePath(u"Frame.ini"_s);
};

TEST_F(SettingsChanges, WritesKeysInTheirOrderAndLeavesTheOthers) {
    put(file, "[S]\r\na=1\r\nb=2\r\nc=3\r\n");
    SettingsChange change;
    change.set(file, row(u"S", u"d"), u"4"_s);
    change.set(file, row(u"T", u"e"), u"5"_s);
    change.set(file, row(u"s", u"A"), u"6"_s);
    change.remove(file, row(u"S", u"b"));
    change.set(other, core::keys::kDBVersion, u"210"_s);
    change.write();
    EXPECT_EQ(platform::readFile(file), "[S]\r\na=6\r\nc=3\r\nd=4\r\n[T]\r\ne=5\r\n");
    EXPECT_EQ(platform::readFile(other), "[ALL]\r\nDBVersion=210\r\n");
}

TEST_F(SettingsChanges, ReplacesEachFileOnce) {
    SettingsChange change;
    for (int i = 0; i < 5; ++i) {
        const QString name = QString::number(i);
        change.set(file, row(u"S", name), u"v"_s);
        change.set(other, row(u"S", name), u"v"_s);
    }
    const DiskWatch watch;
    change.write();
    EXPECT_EQ(watch.synced().filter(u".velltmp-"_s).size(), 2);
    EXPECT_EQ(watch.synced().size(), 4) << "each file and its folder";
}

TEST_F(SettingsChanges, AFileThatIsRefusedKeepsItsValuesAndStopsNoOther) {
    put(file, "[S]\r\na=1\r\n");
    ASSERT_TRUE(QFile::setPermissions(file, QFileDevice::ReadOwner));
    SettingsChange change;
    change.set(file, row(u"S", u"a"), u"2"_s);
    change.set(file, row(u"S", u"b"), u"2"_s);
    change.set(other, row(u"S", u"a"), u"2"_s);
    EXPECT_NO_THROW(change.writeQuietly());
    EXPECT_EQ(platform::readFile(file), "[S]\r\na=1\r\n");
    EXPECT_EQ(platform::readFile(other), "[S]\r\na=2\r\n");
    change.set(other, row(u"S", u"a"), u"3"_s);
    try {
        change.write();
        ADD_FAILURE() << "a refusal without a word";
    } catch (const platform::Failure& failure) {
        EXPECT_EQ(failure.file(), file);
    }
    EXPECT_EQ(platform::readFile(file), "[S]\r\na=1\r\n");
    EXPECT_EQ(platform::readFile(other), "[S]\r\na=3\r\n");
}

TEST_F(SettingsChanges, TwoWritersNeverMixTheirKeys) {
    constexpr int kTurns = 40;
    const auto writer = [this](const QString& value) {
        for (int i = 0; i < kTurns; ++i) {
            SettingsChange change;
            change.set(file, core::keys::kSaveFileName, value);
            change.set(file, core::keys::kSaveFilePath, value);
            change.write();
        }
    };
    std::thread one(writer, u"one"_s);
    std::thread two(writer, u"two"_s);
    bool isMixed = false;
    for (int i = 0; i < 10 * kTurns; ++i) {
        const platform::ProfileFile profile(file);
        isMixed = isMixed || profile.value(u"ALL"_s, u"SaveFileName"_s) != profile.value(u"ALL"_s, u"SaveFilePath"_s);
    }
    one.join();
    two.join();
    EXPECT_FALSE(isMixed);
    EXPECT_NE(platform::readFile(file).count("=one") == 2, platform::readFile(file).count("=two") == 2);
}

} // namespace
} // namespace velloria::tests
