#include "site/customize_sets.h"

#include "core/files.h"
#include "core/keys.h"
#include "core/path_names.h"
#include "core/settings_change.h"
#include "core/settings_file.h"
#include "core/stored_name.h"
#include "platform/code_page.h"
#include "platform/directory.h"
#include "platform/failure.h"

#include <QFileInfo>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace velloria::site {
namespace {

constexpr QLatin1StringView kSetEnding(".ini");
constexpr QLatin1StringView kPieceEnding(".htm");

/// Each page reads its set whole. No set comes near it, and a larger file is none.
constexpr qint64 kMostBytes = 16 * 1024 * 1024;

QString folderOf(const core::Session& session) {
    return platform::existingPath(core::files::kCustomize.in(session)) + core::nativeSeparator();
}

QStringList namesWithout(QLatin1StringView ending, const core::Session& session) {
    QStringList names = platform::listFolder(folderOf(session), u'*' + ending);
    for (QString& name : names)
        name.chop(ending.size());
    names.removeAll(QString()); // a file that is nothing but an ending
    return names;
}

QString fileOf(const core::Session& session, const QString& name, QLatin1StringView ending) {
    return platform::existingPath(folderOf(session) + name + ending);
}

} // namespace

QStringList allCustomizeSets(const core::Session& session) {
    return namesWithout(kSetEnding, session);
}

QStringList customizeSets(const core::Session& session) {
    QStringList names = allCustomizeSets(session);
    names.removeIf([](const QString& name) { return name.compare(u"RSS"_s, Qt::CaseInsensitive) == 0; });
    return names;
}

QStringList textPieces(const core::Session& session) {
    return namesWithout(kPieceEnding, session);
}

QString customizeSetFile(const core::Session& session, const QString& name) {
    return fileOf(session, name, kSetEnding);
}

QString textPieceFile(const core::Session& session, const QString& name) {
    return fileOf(session, name, kPieceEnding);
}

bool isCustomizeName(const core::Session& session, const QString& name) {
    const auto isNotOnEveryDisk = [](QChar character) { return u":*?\"<>|"_s.contains(character); };
    return core::isBareName(name) && name.trimmed() == name && !name.endsWith(u'.') &&
           std::ranges::none_of(name, isNotOnEveryDisk) && platform::inCodePage(name) &&
           core::fitsSetting(folderOf(session) + name + kSetEnding);
}

QString selectedCustomizeSet(const core::Session& session) {
    return core::GetBaseName(core::GetFileName(session.CustIniFile));
}

QString existingSetFile(const core::Session& session, const QString& name) {
    const QString file = customizeSetFile(session, name);
    const auto refuse = [&](const QString& reason) {
        throw platform::Failure(u"カスタマイズセットを選択できません。"_s, file, reason,
                                u"選択は元のままです。ほかのカスタマイズセットを選択してください。"_s);
    };
    if (!core::isBareName(name) || !platform::fileExists(file))
        refuse(u"ファイルがありません"_s);
    if (!core::fitsSetting(file))
        refuse(u"名前が長すぎて設定に保存できません"_s);
    if (QFileInfo(file).size() > kMostBytes)
        refuse(u"ファイルが大きすぎます"_s);
    if (!core::isSettingsText(file))
        refuse(u"テキストではありません"_s); // the next start would refuse it
    return file;
}

void selectCustomizeSet(core::Session& session, const QString& name) {
    const QString file = existingSetFile(session, name);
    core::SettingsChange change;
    change.set(session, core::keys::kCustomizeIni, file);
    change.write();
    session.CustIniFile = file;
}

} // namespace velloria::site
