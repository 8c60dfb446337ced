#include "shell/settings_files.h"

#include "core/files.h"
#include "core/keys.h"
#include "core/path_names.h"
#include "core/settings.h"
#include "core/settings_change.h"
#include "core/settings_file.h"
#include "platform/directory.h"
#include "platform/file_write.h"
#include "shell/data_folder.h"
#include "store/migration.h"

#include <QFileInfo>

#include <array>

namespace velloria::shell {

using namespace core;

namespace {

/// A settings file whose path the user's "diary.ini" keeps.
struct KeptPath {
    Setting setting;
    QString Session::*path;
    File standard; ///< where it lies until it is named
};

const std::array<KeptPath, 5> kKeptPaths{{
    {keys::kCustomizeIni, &Session::CustIniFile, files::kCustomizeIni},
    {keys::kFrameIni, &Session::FrameIniFile, files::kFrameIni},
    {keys::kRssIni, &Session::RSSIniFile, files::kRssIni},
    {keys::kHaloScanIni, &Session::HaloScanIniFile, files::kHaloScanIni},
    {keys::kBlogIni, &Session::BlogIniFile, files::kBlogIni},
}};

/// Old versions had none.
void addCustomizeFiles(const Session& session) {
    {
        const platform::FolderLock lock(session.DataPath); // two programs may begin with an old diary at once
        makeCustomizeFolder(session);
    }
    SettingsChange defaults;
    for (const KeptPath& file : kKeptPaths) {
        if (file.path != &Session::RSSIniFile)
            defaults.set(session, file.setting, file.standard.in(session));
    }
    defaults.writeQuietly();
}

} // namespace

void findSettingsFiles(Session& session) {
    SettingsChange defaults;
    for (const KeptPath& file : kKeptPaths) {
        QString path = Settings(session).text(file.setting);
        // What is there and can't be read is not missing: the default does not take its place.
        if (isAbsoluteFolder(path) && !QFileInfo(platform::existingPath(path)).isDir())
            refuseUnreadableSettings(path);
        if (!isAbsoluteFolder(path) || !platform::fileExists(path)) {
            path = file.standard.in(session);
            defaults.set(session, file.setting, path);
            refuseUnreadableSettings(path);
        }
        session.*file.path = path;
    }
    defaults.writeQuietly();
}

void bringDiaryUpToDate(const Run& run) {
    store::updateOldDiary(run, [&run] { addCustomizeFiles(run.session); });
}

} // namespace velloria::shell
