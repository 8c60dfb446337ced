#include "shell/backup_offer.h"

#include "core/files.h"
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
    } catch (const store::sqlite::Busy&) {
        throw; // who waits once more for the same program hears no more
    } catch (const Failure&) {
        return true;
    }
}

bool isMissing(const QString& diary) {
    platform::refuseLostLink(diary);
    return !QFileInfo::exists(diary);
}

Diary stateOf(const core::Session& session) {
    const QString diary = platform::existingPath(session.databaseFile());
    if (isMissing(diary))
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

/// What lies there beside a diary without entries.
struct Copies {
    std::optional<store::DiaryCopy> newest = {}; ///< sound, with entries
    QString unreadable = {}; ///< the name of what may hold entries, too; told only where there is no newest one
};

/// A folder that can't be looked into looks as if it were empty.
bool isClosed(const QString& folder) {
    const QFileInfo info(folder);
    return info.exists() ? info.isDir() && !(info.isReadable() && info.isExecutable()) : info.isSymLink();
}

Copies copiesOf(const core::Session& session) {
    Copies copies;
    for (store::DiaryCopy& copy : store::diaryCopyFiles(session)) {
        store::readCopy(copy);
        if (copy.problem.isEmpty() && copy.entries == 0)
            continue;
        if (copy.problem.isEmpty() && isSound(copy))
            return {copy, {}};
        if (copies.unreadable.isEmpty() && copy.size > 0)
            copies.unreadable = copy.name;
    }
    if (copies.unreadable.isEmpty() && isClosed(platform::existingPath(core::files::kBackups.in(session))))
        copies.unreadable = core::files::kBackups.name;
    return copies;
}

/// Without a diary and without one to offer.
Offer askForEmptyDiary(const core::Run& run, const QString& problem, const QString& what) {
    if (run.desk.ask(problem + u"\r\n"_s + what +
                     u"\r\n空の日記から始めますか？\r\n「いいえ」を選ぶと、何も作成しないで終了します。"_s))
        return {};
    return {StartResult::Ended, problem + what};
}

} // namespace

bool isDiaryLost(const core::Session& session) {
    // Asked under a lock: its entries might have to be waited for.
    if (!isMissing(platform::existingPath(session.databaseFile())))
        return false;
    const Copies copies = copiesOf(session);
    return copies.newest || !copies.unreadable.isEmpty();
}

Offer offerCopy(const core::Run& run) {
    const Diary state = stateOf(run.session);
    if (state == Diary::HasEntries)
        return {};
    const auto [copy, unreadable] = copiesOf(run.session);
    const QString problem =
        state == Diary::Missing ? u"「diary.mdb」がありません。"_s : u"「diary.mdb」には日記が1件もありません。"_s;
    if (!copy) {
        if (unreadable.isEmpty() || state == Diary::Empty)
            return {};
        return askForEmptyDiary(run, problem, u"バックアップ「%1」は読み込めません。"_s.arg(unreadable));
    }
    const QString reason = problem + u"バックアップ「%1」を復元できます。"_s.arg(copy->name);
    if (run.desk.ask(problem + u"\r\n次のバックアップを復元しますか？\r\n"_s + shownCopy(*copy))) {
        const platform::Hourglass hourglass(run.desk);
        store::restoreDatabase(platform::existingPath(run.session.databaseFile()), copy->file);
        return {};
    }
    if (state == Diary::Empty)
        return {StartResult::Ready, reason};
    if (run.desk.ask(u"空の日記から始めますか？\r\n「いいえ」を選ぶと、何も作成しないで終了します。"_s))
        return {};
    return {StartResult::Ended, reason};
}

} // namespace velloria::shell
