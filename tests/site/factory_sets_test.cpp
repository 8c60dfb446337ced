// The customize sets that the program comes with, as files.
#include "support/factory_sets.h"

#include "core/ini.h"
#include "core/site_keys.h"
#include "platform/code_page.h"
#include "platform/directory.h"
#include "platform/profile_file.h"
#include "support/test_home.h"

using namespace Qt::StringLiterals;

namespace velloria::tests {
namespace {

namespace keys = core::keys;

class FactorySets : public FactoryHome, public testing::WithParamInterface<QString> {
protected:
    FactorySets() { bringCustomizeSets(home.path()); }

    QString file() const { return path(u"Customize/"_s + GetParam() + u".ini"_s); }
    QString piece() const { return path(u"Customize/"_s + GetParam() + u"_Head.htm"_s); }
};

TEST_P(FactorySets, HaveEverySettingAndNoOther) {
    qsizetype count = 0;
    for (const core::Setting* setting : keys::kCustomizeSet) {
        const QString value =
            core::ReadIniDef(file(), setting->section.toString(), setting->name.toString(), u"(missing)"_s);
        EXPECT_NE(value, u"(missing)"_s) << setting->name.toString().toStdString();
        ++count;
    }
    EXPECT_EQ(bytesOf(file()).count('='),
              count + QString(core::ReadIni(file(), u"Contents"_s, u"TitleSpanTag"_s)).count(u'='));
}

TEST_P(FactorySets, KeepNoValueThatIsCut) {
    for (const QByteArray& line : bytesOf(file()).split('\n'))
        EXPECT_LE(line.sliced(line.indexOf('=') + 1).trimmed().size(), 255) << line.toStdString();
}

TEST_P(FactorySets, GiveEveryKindOfPageTheirPiece) {
    for (const core::Setting* setting : {&keys::general::kHeadTag, &keys::general::kHeadTagDiv,
                                         &keys::general::kHeadTagDivLog, &keys::calender_window::kHeadTag})
        EXPECT_EQ(core::ReadIni(file(), setting->section.toString(), setting->name.toString()),
                  GetParam() + u"_Head"_s);
    EXPECT_TRUE(exists(piece()));
}

TEST_P(FactorySets, AreTextOfWindowsAndAskForNothingFromElsewhere) {
    for (const QString& name : {file(), piece()}) {
        const QByteArray bytes = bytesOf(name);
        EXPECT_EQ(bytes.count('\n'), bytes.count("\r\n")) << name.toStdString();
        EXPECT_TRUE(platform::toCodePage(platform::fromCodePage(bytes)) == bytes) << name.toStdString();
        for (const char* foreign : {"<script", "http", "url(", "@import", "src=", "javascript"})
            EXPECT_FALSE(bytes.toLower().contains(foreign)) << name.toStdString() << ": " << foreign;
    }
}

class FactoryFolder : public FactoryHome {};

TEST_F(FactoryFolder, HasNoOtherSet) {
    bringCustomizeSets(home.path());
    QStringList names;
    for (const QString& set : platform::listFolder(path(u"Customize/"_s), u"*.ini"_s))
        names += set.chopped(4);
    EXPECT_EQ(names, kFactorySets);
}

INSTANTIATE_TEST_SUITE_P(Of, FactorySets, testing::ValuesIn(kFactorySets),
                         [](const auto& set) { return set.param.toStdString(); });

} // namespace
} // namespace velloria::tests
