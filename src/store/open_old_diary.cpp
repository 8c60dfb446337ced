#include "store/open_old_diary.h"

#include "store/database_format.h"
#include "store/jet_diary.h"
#include "store/sqlite_diary.h"

namespace velloria::store {

std::unique_ptr<OldDiary> openOldDiary(const QString& file) {
    switch (formatOf(file)) {
    case DatabaseFormat::Sqlite:
        return std::make_unique<SqliteDiary>(file);
    case DatabaseFormat::Jet:
        return std::make_unique<JetDiary>(file);
    case DatabaseFormat::None:
        break;
    }
    refuseForeignFile(file);
}

} // namespace velloria::store
