#include "shell/plugins.h"

using namespace Qt::StringLiterals;

namespace velloria::shell {
namespace {

namespace files = core::files;
using core::Session;

constexpr QLatin1StringView kMovableType[] = {"MnuMTExport"_L1, "MnuMTImport"_L1};
constexpr QLatin1StringView kHatena[] = {"MnuHTNExport"_L1, "MnuHTNImport"_L1};
constexpr QLatin1StringView kPing[] = {"MnuPING"_L1};
constexpr QLatin1StringView kInformation[] = {"MnuVellInfo"_L1};
constexpr QLatin1StringView kNoImport = "MnuImportNoFunction"_L1;
constexpr QLatin1StringView kNoPlugin = "MnuNoPlugin"_L1;

constexpr PluginRow kRows[] = {
    {files::kLarkport, "IsLarkportDll"_L1, &Session::IsLarkportDll, "MnuLarkportDll"_L1, kMovableType, kNoImport},
    {files::kWrenport, "IsWrenportDll"_L1, &Session::IsWrenportDll, "MnuWrenportDll"_L1, kHatena, kNoImport},
    {files::kChimer, "IsChimerDll"_L1, &Session::IsChimerDll, "MnuChimerDll"_L1, kPing, {}},
    {files::kVellInfo, "IsVellInfoDll"_L1, &Session::IsVellInfoDll, "MnuVellInfoDll"_L1, kInformation, {}},
};

} // namespace

std::span<const PluginRow> plugins() {
    return kRows;
}

QStringList commandsToHide(const Session& session) {
    QStringList hidden;
    for (const PluginRow& plugin : kRows) {
        if (session.*plugin.isThere) {
            hidden += kNoPlugin;
            if (!plugin.placeholder.isEmpty())
                hidden += plugin.placeholder;
        } else {
            hidden += plugin.versionCommand;
            for (const QLatin1StringView command : plugin.others)
                hidden += command;
        }
    }
    hidden.removeDuplicates();
    return hidden;
}

} // namespace velloria::shell
