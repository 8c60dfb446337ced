#include "shell/backup_offer.h"

#include "platform/directory.h"
#include "platform/failure.h"
#include "platform/file_read.h"
#include "shell/backup_commands.h"
#include "store/database_file.h"
#include "store/database_format.h"
#include "store/diary_copies.h"
#include "store/named_database.h"
#include "store/sqlite/connection.h"
#include "store/sqlite/statement.h"

#include <QFileInfo>

using namespace Qt::StringLiterals;

namespace velloria::shell {
namespace {

using platform::Failure;

enum class Diary { Missing, Empty, HasEntries };

/// What can't be read is for the steps that need it to refuse.
bool hasEntries(const QString& diary) {
    try {
        if (QFileInfo(diary).size() == 0)
            return false;
        if (store::formatOf(diary) != store::DatabaseFormat::Sqlite)
            return true;
        const store::sqlite::Connection connection(diary, store::sqlite::Access::ReadOnly);
        return store::sqlite::Statement(connection, "SELECT 1 FROM Contents LIMIT 1").next();
    } catch (const Failure&) {
        return true;
    }
}

Diary stateOf(const core::Session& session) {
    const QString diary = platform::existingPath(session.databaseFile());
    platform::refuseLostLink(diary);
    if (!QFileInfo::exists(diary))
        return Diary::Missing;
    return hasEntries(diary) ? Diary::HasEntries : Diary::Empty;
}

bool isSound(const store::DiaryCopy& copy) {
    try {
        store::NamedDatabase(copy.file).told(store::requireSoundDiary);
        return true;
    } catch (const Failure&) {
        return false;
    }
}

std::optional<store::DiaryCopy> newestWithEntries(const core::Session& session) {
    for (store::DiaryCopy& copy : store::diaryCopyFiles(session)) {
        store::readCopy(copy);
        if (copy.problem.isEmpty() && copy.entries > 0 && isSound(copy))
            return copy;
    }
    return std::nullopt;
}

} // namespace

bool isDiaryLost(const core::Session& session) {
    return stateOf(session) == Diary::Missing && newestWithEntries(session);
}

Offer offerCopy(const core::Run& run) {
    const Diary state = stateOf(run.session);
    if (state == Diary::HasEntries)
        return {};
    const std::optional<store::DiaryCopy> copy = newestWithEntries(run.session);
    if (!copy)
        return {};
    const QString problem =
        state == Diary::Missing ? u"「diary.mdb」がありません。"_s : u"「diary.mdb」には日記が1件もありません。"_s;
    if (run.desk.ask(problem + u"\r\n次のバックアップを復元しますか？\r\n"_s + shownCopy(*copy))) {
        const platform::Hourglass hourglass(run.desk);
        store::restoreDatabase(platform::existingPath(run.session.databaseFile()), copy->file);
        return {};
    }
    if (state == Diary::Empty)
        return {};
    if (run.desk.ask(u"空の日記から始めますか？\r\n「いいえ」を選ぶと、何も作成しないで終了します。"_s))
        return {};
    return {StartResult::Ended, problem + u"バックアップ「%1」を復元できます。"_s.arg(copy->name)};
}

} // namespace velloria::shell
