#include "store/migration.h"

#include "core/files.h"
#include "core/keys.h"
#include "core/settings_change.h"
#include "platform/directory.h"
#include "platform/failure.h"
#include "store/database_file.h"

#include <QFileInfo>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace velloria::store {

void updateOldDiary(const core::Session& session, const UpdateProgress& progress) {
    constexpr qint16 kGivenOut[] = {0, 100, 101, 110, 150, 200, 210};
    const QString diary = session.databaseFile();
    const qint16 version = GetDBVersion(diary);
    if (version >= core::kDatabaseVersion)
        return;
    progress(UpdateStage::Begins);
    if (QFileInfo::exists(diary))
        backUpDatabase(diary, core::files::kBackup.in(session));
    if (std::ranges::find(kGivenOut, version) != std::end(kGivenOut))
        UpdateDatabase(session, version);
    progress(UpdateStage::Done);
    core::writeQuietly(session, core::keys::kDBVersion, QString::number(core::kDatabaseVersion));
}

void UpdateDatabase(const core::Session& session, qint16 oldVersion) {
    if (!platform::fileExists(session.databaseFile())) {
        copyDatabase(platform::existingPath(core::files::kFirstDiary.in(session)), session.databaseFile());
        return;
    }
    throw platform::Failure(u"バージョン%1の日記データベースはまだ変換できません。"_s.arg(oldVersion),
                            session.databaseFile(), {},
                            u"「diary.mdb」は変更されていません。「diarymdb.bak」に写しがあります。"_s);
}

} // namespace velloria::store
