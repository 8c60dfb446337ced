#include "shell/backup_commands.h"

#include "core/files.h"
#include "core/path_names.h"
#include "platform/directory.h"
#include "platform/failure.h"
#include "platform/file_write.h"
#include "shell/settings_files.h"
#include "store/backup_names.h"
#include "store/database_file.h"
#include "store/database_format.h"
#include "store/diary_backups.h"
#include "store/named_database.h"
#include "store/sqlite/connection.h"

#include <QFileInfo>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace velloria::shell {

using platform::Failure;

namespace {

[[noreturn]] void refuse(const QString& name, const QString& reason, const QString& advice) {
    throw Failure(u"バックアップを復元できません。"_s, name, reason, u"日記は変更されていません。"_s + advice);
}

store::DiaryCopy copyNamed(const core::Session& session, const QString& name) {
    std::vector<store::DiaryCopy> copies = store::diaryCopyFiles(session);
    const auto found =
        std::find_if(copies.begin(), copies.end(), [&](const store::DiaryCopy& copy) { return copy.name == name; });
    if (found == copies.end())
        refuse(name, u"この名前のバックアップはありません"_s, u"名前は、バックアップの一覧で確認してください。"_s);
    store::readCopy(*found);
    if (!found->problem.isEmpty())
        refuse(found->file, found->problem, u"別のバックアップを指定してください。"_s);
    return *found;
}

bool isSound(const QString& diary) {
    if (!QFileInfo::exists(diary))
        return false;
    try {
        store::requireSoundDiary(diary);
        return true;
    } catch (const store::sqlite::Busy&) {
        throw;
    } catch (const Failure&) {
        return false;
    }
}

/// What can't be read is not the same.
bool isSame(const QString& diary, const QString& copy) {
    try {
        return store::holdSameDiary(diary, copy);
    } catch (const Failure&) {
        return false;
    }
}

/// Copies of today move on whenever a new one is made, and tomorrow only the last one is left.
bool isLasting(const QString& name, QDate today) {
    const auto backup = store::BackupName::parse(name);
    return backup ? backup->copy == 1 && backup->day < today
                  : name.startsWith(core::GetBaseName(core::files::kReplacedDiary.name));
}

/// A copy that stays and holds the same as the diary; "" when there is none.
QString lastingCopyOf(const core::Run& run, const QString& diary) {
    const QDate today = run.clock.now().date();
    for (const store::DiaryCopy& copy : store::diaryCopyFiles(run.session)) {
        if (isLasting(copy.name, today) && isSame(diary, copy.file))
            return copy.file;
    }
    return {};
}

/// Whether the kept diary is gone because the backup holds the same. What came in between of another program is in the
/// kept one alone. The restoring is done: a disk that fails now leaves one file too many.
bool isRemoved(const QString& kept, const QString& backup) {
    if (!isSame(kept, backup))
        return false;
    try {
        platform::removeFile(kept);
        return true;
    } catch (const Failure&) {
        return false;
    }
}

/// A restored diary of an older version is brought up to date as a start does it, by the next start where this one has
/// no data folder yet.
Restoration settle(const core::Run& run, const QString& name, const QString& kept) {
    const QString told = name + u"を復元しました。"_s;
    run.desk.status(kept.isEmpty() ? told
                                   : told + u"今までの日記は「%1」に残しました。"_s.arg(core::GetFileName(kept)));
    if (!run.session.DataPath.isEmpty() && QFileInfo(run.session.DataPath).isDir())
        bringDiaryUpToDate(run);
    return {true, kept};
}

} // namespace

QString shownDate(const store::DiaryCopy& copy) {
    return copy.date.toString(u"yyyy/MM/dd HH:mm"_s);
}

QString shownEntries(const store::DiaryCopy& copy) {
    return copy.problem.isEmpty() ? QString::number(copy.entries) : QString();
}

QString shownTitle(const store::DiaryCopy& copy) {
    return copy.problem.isEmpty() ? copy.lastTitle : u"読み込めません: "_s + copy.problem;
}

QString shownCopy(const store::DiaryCopy& copy) {
    return u"「%1」\r\n日付: %2\r\n日記: %3件\r\n最後の日記: %4"_s.arg(copy.name, shownDate(copy))
        .arg(copy.entries)
        .arg(copy.lastTitle);
}

QString makeBackupCommand(const core::Run& run) {
    const platform::Hourglass hourglass(run.desk);
    const QString made = store::makeBackup(run);
    run.desk.status(made.isEmpty() ? kNothingToBackUp
                                   : u"バックアップ「%1」を作成しました。"_s.arg(core::GetFileName(made)));
    return made;
}

Restoration restoreBackupCommand(const core::Run& run, const QString& name) {
    store::DiaryCopy copy = copyNamed(run.session, name);
    store::NamedDatabase(copy.file).told(store::requireSoundDiary);
    if (!run.desk.ask(u"次のバックアップを復元しますか？\r\n"_s + shownCopy(copy) +
                      u"\r\n今の日記は、バックアップしてから置き換えます。"_s)) {
        run.desk.status(kRestoreRefused);
        return {};
    }
    const platform::Hourglass hourglass(run.desk);
    const QString diary = platform::existingPath(run.session.databaseFile());
    const bool hasSoundDiary = isSound(diary);
    const QString same = hasSoundDiary ? lastingCopyOf(run, diary) : QString();
    if (hasSoundDiary && same.isEmpty())
        store::makeBackup(run, copy.file);
    QString kept = store::restoreDatabase(diary, copy.file);
    if (!kept.isEmpty() && !same.isEmpty() && isRemoved(kept, same))
        kept = same;
    return settle(run, name, kept);
}

Restoration restoreFile(const core::Run& run, const QString& file) {
    const QString kept = store::restoreDatabase(platform::existingPath(run.session.databaseFile()), file);
    return settle(run, core::GetFileName(file), kept);
}

} // namespace velloria::shell
