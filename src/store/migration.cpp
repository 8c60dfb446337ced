#include "store/migration.h"

#include "platform/directory.h"
#include "platform/failure.h"
#include "store/database_file.h"

#include <QFileInfo>

using namespace Qt::StringLiterals;

namespace velloria::store {

void UpdateDatabase(const core::Session& session, qint16 oldVersion) {
    if (!platform::fileExists(session.databaseFile())) {
        copyDatabase(platform::existingPath(session.MyPath + u"default.mdb"_s), session.databaseFile());
        return;
    }
    throw platform::Failure(u"バージョン%1の日記データベースはまだ変換できません。"_s.arg(oldVersion),
                            session.databaseFile(), {},
                            u"「diary.mdb」は変更されていません。「diarymdb.bak」に写しがあります。"_s);
}

} // namespace velloria::store
