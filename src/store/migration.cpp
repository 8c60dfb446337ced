#include "store/migration.h"

#include "core/files.h"
#include "core/keys.h"
#include "core/settings_change.h"
#include "platform/directory.h"
#include "platform/failure.h"
#include "platform/file_write.h"
#include "store/database_file.h"
#include "store/database_format.h"
#include "store/database_update.h"
#include "store/diary_backups.h"
#include "store/disk_room.h"
#include "store/jet_original.h"
#include "store/updater.h"

#include <QFileInfo>

#include <algorithm>
#include <optional>

using namespace Qt::StringLiterals;

namespace velloria::store {
namespace {

struct Found {
    explicit Found(const QString& diary)
        : version(GetDBVersion(diary))
        , isThere(QFileInfo::exists(diary))
        , isJet(isThere && formatOf(diary) == DatabaseFormat::Jet) {}

    bool isOld() const { return version < core::kDatabaseVersion || isJet; }
    /// Whether its version was ever given out, or it is one of those that are read whatever they say.
    bool isConverted() const {
        constexpr qint16 kGivenOut[] = {0, 100, 101, 110, 150, 200, 210};
        return isJet || std::ranges::find(kGivenOut, version) != std::end(kGivenOut);
    }

    qint16 version;
    bool isThere;
    bool isJet;
};

void refuseLaterJet(const QString& diary, qint16 version) {
    if (version > core::kDatabaseVersion)
        throw platform::Failure(u"新しすぎる日記データベースです。"_s, diary, u"バージョン%1"_s.arg(version),
                                u"ファイルは変更されていません。新しいVelloriaで開いてください。"_s);
}

/// Nobody is kept from their diary by the copy of the day: what this update needs is the backup behind it.
void makeBackupIfPossible(const core::Run& run) {
    try {
        makeBackup(run);
    } catch (const platform::Failure& failure) {
        run.desk.notice(failure.line());
    }
}

} // namespace

platform::FileTurn turnAtUpdate(const core::Session& session) {
    return {core::files::kUpdateLock.in(session), u"日記データベースは他のプログラムが使用中です。"_s};
}

void updateOldDiary(const core::Run& run, const std::function<void()>& addCustomizeFiles) {
    const QString diary = run.session.databaseFile();
    const Found seen(diary);
    if (!seen.isOld())
        return;
    refuseLaterJet(diary, seen.version);
    if (seen.isThere)
        requireRoomForUpdate(run.session);
    addCustomizeFiles();
    run.desk.message(platform::MessageKind::Plain,
                     u"diary.mdbがアップデートされています。\r\nデータベースをアップデートします。\r\n"_s
                     u"(念のために、今までの「diary.mdb」は「diarymdb.bak」というファイル名で保存します。)"_s);
    std::optional<ShownUpdater> window;
    {
        const platform::FileTurn turn = turnAtUpdate(run.session);
        const Found old(diary); // unless another program has brought it up to date by now
        if (old.isOld() && old.isThere) {
            makeBackupIfPossible(run);
            backUpDatabase(diary, core::files::kBackup.in(run.session));
        }
        if (old.isJet)
            keepJetOriginal(run.session);
        window.emplace(run.desk);
        if (old.isOld() && old.isConverted())
            UpdateDatabase(run, old.version);
    }
    run.desk.message(platform::MessageKind::Plain, u"diary.mdbのアップデートは完了しました。\r\n"_s
                                                   u"念のためにVelloriaを再起動してください。"_s);
    core::writeQuietly(run.session, core::keys::kDBVersion, QString::number(core::kDatabaseVersion));
}

void UpdateDatabase(const core::Run& run, qint16 oldVersion) {
    const QString diary = run.session.databaseFile();
    platform::refuseLostLink(diary);
    if (!QFileInfo::exists(diary)) {
        copyDatabase(platform::existingPath(core::files::kFirstDiary.in(run.session)), diary);
        return;
    }
    DatabaseUpdate(run, oldVersion).run();
}

} // namespace velloria::store
