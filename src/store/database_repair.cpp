#include "store/database_repair.h"

#include "platform/failure.h"
#include "store/database_check.h"
#include "store/database_file.h"
#include "store/database_format.h"
#include "store/day_repair.h"
#include "store/diary_backups.h"
#include "store/sqlite/statement.h"

using namespace Qt::StringLiterals;

namespace velloria::store {

using platform::Failure;
using sqlite::Access;
using sqlite::Connection;

namespace {

void refuseWhatIsNotToBeMended(const QString& file) {
    requireDiaryFormat(file);
    refuseOldDiary(file);
    if (const qint16 version = GetDBVersion(file); version > core::kDatabaseVersion)
        throw Failure(u"新しい版のVelloriaの日記データベースなので、修復しません。"_s, file,
                      u"バージョン%1"_s.arg(version), u"ファイルは変更されていません。"_s);
    const Connection connection(file, Access::ReadOnly);
    sqlite::Statement check(connection, "PRAGMA integrity_check(1)");
    if (check.next() && check.text(0) != u"ok"_s)
        throw Failure(u"日記データベースが壊れているので、修復できません。"_s, file, check.text(0),
                      unchangedAndRestore());
}

bool hasSomethingToMend(const QString& file) {
    const Connection connection(file, Access::ReadOnly);
    return DayRepair(connection).isNeeded();
}

} // namespace

Repair repairDatabase(const core::Run& run) {
    const platform::Hourglass hourglass(run.desk);
    const QString file = run.session.databaseFile();
    refuseWhatIsNotToBeMended(file);
    Repair repair;
    if (hasSomethingToMend(file)) {
        makeBackup(run);
        Connection connection(file, Access::ReadWrite);
        sqlite::Transaction transaction(connection);
        repair.mended = DayRepair(connection).run();
        transaction.commit();
    }
    try {
        repair.remaining = checkDatabase(file, run.session.DataPath);
    } catch (Failure& failure) {
        if (!repair.mended.isEmpty())
            failure.addStage(u"日記データベースの%1件を直しました"_s.arg(repair.mended.size()));
        throw;
    }
    return repair;
}

} // namespace velloria::store
