#include "store/open_old_diary.h"

#include "platform/failure.h"
#include "store/database_format.h"
#include "store/sqlite_diary.h"

using namespace Qt::StringLiterals;

namespace velloria::store {

std::unique_ptr<OldDiary> openOldDiary(const QString& file) {
    switch (formatOf(file)) {
    case DatabaseFormat::Sqlite:
        return std::make_unique<SqliteDiary>(file);
    case DatabaseFormat::Jet:
        throw platform::Failure(u"旧形式(Jet)の日記データベースです。"_s, file, {},
                                u"ファイルは変更されていません。この版では旧形式からの変換はまだできません。"_s);
    case DatabaseFormat::None:
        break;
    }
    refuseForeignFile(file);
}

} // namespace velloria::store
