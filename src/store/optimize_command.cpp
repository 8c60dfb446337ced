#include "store/optimize_command.h"

#include "core/files.h"
#include "platform/failure.h"
#include "store/database_file.h"
#include "store/database_format.h"
#include "store/diary_backups.h"
#include "store/disk_room.h"
#include "store/foreign_parts.h"
#include "store/jet_original.h"
#include "store/migration.h"
#include "store/updater.h"

#include <optional>

using namespace Qt::StringLiterals;

namespace velloria::store {
namespace {

/// What a copy would leave behind is not given up for a smaller file.
void refuseToLose(const QString& diary) {
    if (const qint16 version = GetDBVersion(diary); version > core::kDatabaseVersion)
        throw platform::Failure(u"新しいVelloriaの日記データベースは最適化できません。"_s, diary,
                                u"バージョン%1"_s.arg(version), u"データベースは変更されていません。"_s);
    if (formatOf(diary) == DatabaseFormat::Sqlite)
        refuseForeignParts(sqlite::Connection(diary, sqlite::Access::ReadOnly), diary);
}

} // namespace

bool optimizeCommand(const core::Run& run) {
    if (!run.desk.ask(u"diary.mdbを最適化しますか？\r\n"_s
                      u"バックアップとして、現在のファイルを「diary.bak」として保存します。"_s)) {
        run.desk.message(platform::MessageKind::Plain, u"diary.mdbの最適化を中止しました。"_s);
        return false;
    }
    const QString diary = run.session.databaseFile();
    std::optional<ShownUpdater> window;
    {
        const platform::FileTurn turn = turnAtUpdate(run.session);
        refuseToLose(diary);
        requireRoomForUpdate(run.session);
        makeBackup(run);
        backUpDatabase(diary, core::files::kBackup.in(run.session));
        if (formatOf(diary) == DatabaseFormat::Jet) // put there since the start
            keepJetOriginal(run.session);
        window.emplace(run.desk);
        UpdateDatabase(run, core::kDatabaseVersion);
    }
    run.desk.message(platform::MessageKind::Plain, u"diary.mdbの最適化は完了しました。\r\n"_s
                                                   u"念のためにVelloriaを再起動してください。"_s);
    return true;
}

} // namespace velloria::store
