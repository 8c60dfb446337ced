#include "store/migration.h"

#include "core/files.h"
#include "platform/directory.h"
#include "platform/failure.h"
#include "store/database_file.h"

#include <QFileInfo>

using namespace Qt::StringLiterals;

namespace velloria::store {

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
