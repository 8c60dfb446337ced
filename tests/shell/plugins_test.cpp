#include "shell/plugins.h"

#include "shell/menu_table.h"

#include <gtest/gtest.h>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace velloria::tests {
namespace {

QStringList sorted(QStringList names) {
    names.sort();
    return names;
}

bool isInMenu(const QString& command) {
    return std::ranges::any_of(shell::menuRows(), [&](const shell::MenuRow& row) { return row.name == command; });
}

TEST(Plugins, AreEachOnceInTheSessionAndInTheMenu) {
    core::Session session;
    for (const shell::PluginRow& plugin : shell::plugins()) {
        EXPECT_FALSE(session.*plugin.isThere) << plugin.file.name.data();
        session.*plugin.isThere = true;
        EXPECT_TRUE(isInMenu(plugin.versionCommand)) << plugin.versionCommand.data();
        for (const QLatin1StringView command : plugin.others)
            EXPECT_TRUE(isInMenu(command)) << command.data();
    }
    EXPECT_TRUE(session.IsLarkportDll && session.IsWrenportDll && session.IsChimerDll && session.IsVellInfoDll);
}

TEST(Plugins, ThatAreMissingHideTheirCommands) {
    EXPECT_EQ(
        sorted(shell::commandsToHide({})),
        (QStringList{u"MnuChimerDll"_s, u"MnuHTNExport"_s, u"MnuHTNImport"_s, u"MnuLarkportDll"_s, u"MnuMTExport"_s,
                     u"MnuMTImport"_s, u"MnuPING"_s, u"MnuVellInfo"_s, u"MnuVellInfoDll"_s, u"MnuWrenportDll"_s}));
}

TEST(Plugins, ThatAreThereHideThePlaceholders) {
    core::Session session;
    session.IsChimerDll = session.IsVellInfoDll = true;
    EXPECT_EQ(sorted(shell::commandsToHide(session)),
              (QStringList{u"MnuHTNExport"_s, u"MnuHTNImport"_s, u"MnuLarkportDll"_s, u"MnuMTExport"_s,
                           u"MnuMTImport"_s, u"MnuNoPlugin"_s, u"MnuWrenportDll"_s}));
    session.IsLarkportDll = session.IsWrenportDll = true;
    EXPECT_EQ(sorted(shell::commandsToHide(session)), (QStringList{u"MnuImportNoFunction"_s, u"MnuNoPlugin"_s}));
    session.IsLarkportDll = false;
    EXPECT_TRUE(shell::commandsToHide(session).contains(u"MnuImportNoFunction"_s));
}

} // namespace
} // namespace velloria::tests
