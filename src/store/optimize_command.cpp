#include "store/optimize_command.h"

#include "core/files.h"
#include "store/database_file.h"
#include "store/migration.h"

using namespace Qt::StringLiterals;

namespace velloria::store {

bool optimizeCommand(const core::Run& run) {
    if (!run.desk.ask(u"diary.mdbを最適化しますか？\r\n"_s
                      u"バックアップとして、現在のファイルを「diary.bak」として保存します。"_s)) {
        run.desk.message(platform::MessageKind::Plain, kOptimizeRefused);
        return false;
    }
    backUpDatabase(run.session.databaseFile(), core::files::kBackup.in(run.session));
    UpdateDatabase(run, core::kDatabaseVersion);
    return true;
}

} // namespace velloria::store
