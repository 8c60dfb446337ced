#include "publish/archive_name.h"

#include "core/files.h"

#include <algorithm>

using namespace Qt::StringLiterals;

namespace velloria::publish {
namespace {

constexpr QLatin1StringView kEndings[] = {".lzh"_L1, ".zip"_L1, ".exe"_L1, ".deb"_L1, ".tar.gz"_L1};

/// The programs that are started from the program's folder, by us or by the user.
constexpr QLatin1StringView kPrograms[] = {
    "velloria.exe"_L1,       "velloria-cli.exe"_L1,      "velloria-jet.exe"_L1,          "velloria-plugin.exe"_L1,
    "velloria-sound.exe"_L1, core::files::kUpdater.name, core::files::kUpdaterCopy.name, core::files::kMemo.name};

bool isSpecial(QChar character) {
    return character < u' ' || character == u'\x7f' || QStringView(u"/\\:*?\"<>|").contains(character);
}

} // namespace

bool isArchiveName(const QString& name) {
    const auto isSameName = [&](const auto& other) { return name.compare(other, Qt::CaseInsensitive) == 0; };
    const auto isItsEnding = [&](QLatin1StringView ending) {
        return name.size() > ending.size() && name.endsWith(ending, Qt::CaseInsensitive);
    };
    // A name that begins with a dot may be that of a file that is only on its way.
    if (name.startsWith(u'.') || name.contains(u".."_s) || std::ranges::any_of(name, isSpecial))
        return false;
    return std::ranges::none_of(kPrograms, isSameName) && std::ranges::any_of(kEndings, isItsEnding);
}

} // namespace velloria::publish
