#include "core/stored_name.h"

#include "support/print.h"

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

namespace velloria::tests {
namespace {

using namespace core;

TEST(StoredName, ComesBackWithTheCharactersThatTheCodePageWritesAsOthers) {
    for (const QString& name : {u"/〜日記/"_s, u"/～日記/"_s, u"/a−b—c‖d/"_s, u"/¢£¬/"_s, u"/josé/😀"_s, u"/plain"_s}) {
        EXPECT_EQ(nameOfStored(storedName(name)), name);
        EXPECT_TRUE(fitsSetting(name)) << name.toStdString();
    }
    EXPECT_EQ(storedName(u"/〜/é"_s), u"/&#12316;/é"_s);
}

TEST(StoredName, FitsASettingUnlessItWouldComeBackAsAnother) {
    EXPECT_TRUE(fitsSetting(u'/' + QString(254, u'x')));
    EXPECT_FALSE(fitsSetting(u'/' + QString(255, u'x')));
    EXPECT_TRUE(fitsSetting(u'/' + QString(127, u'日')));
    EXPECT_FALSE(fitsSetting(u'/' + QString(128, u'日')));
    EXPECT_FALSE(fitsSetting(u'/' + QString(40, u'〜'))) << "a reference takes more room";
    for (const QString& name : {u"/a\nb"_s, u"/a\r"_s, u"/a&#12316;b"_s, u"/a "_s, u"/a"_s + QChar(0xD800)})
        EXPECT_FALSE(fitsSetting(name)) << name.toStdString();
}

} // namespace
} // namespace velloria::tests
