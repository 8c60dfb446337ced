#include "store/migration.h"

#include "core/files.h"
#include "core/keys.h"
#include "core/settings_change.h"
#include "platform/directory.h"
#include "platform/failure.h"
#include "store/database_file.h"

#include <QFileInfo>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace velloria::store {

void updateOldDiary(const core::Run& run, const std::function<void()>& addCustomizeFiles) {
    constexpr qint16 kGivenOut[] = {0, 100, 101, 110, 150, 200, 210};
    const QString diary = run.session.databaseFile();
    const qint16 version = GetDBVersion(diary);
    if (version >= core::kDatabaseVersion)
        return;
    addCustomizeFiles();
    run.desk.message(platform::MessageKind::Plain,
                     u"diary.mdbがアップデートされています。\r\nデータベースをアップデートします。\r\n"_s
                     u"(念のために、今までの「diary.mdb」は「diarymdb.bak」というファイル名で保存します。)"_s);
    if (QFileInfo::exists(diary))
        backUpDatabase(diary, core::files::kBackup.in(run.session));
    if (std::ranges::find(kGivenOut, version) != std::end(kGivenOut))
        UpdateDatabase(run, version);
    run.desk.message(platform::MessageKind::Plain, u"diary.mdbのアップデートは完了しました。\r\n"_s
                                                   u"念のためにVelloriaを再起動してください。"_s);
    core::writeQuietly(run.session, core::keys::kDBVersion, QString::number(core::kDatabaseVersion));
}

void UpdateDatabase(const core::Run& run, qint16 oldVersion) {
    const QString diary = run.session.databaseFile();
    if (!platform::fileExists(diary)) {
        copyDatabase(platform::existingPath(core::files::kFirstDiary.in(run.session)), diary);
        return;
    }
    throw platform::Failure(u"バージョン%1の日記データベースはまだ変換できません。"_s.arg(oldVersion), diary, {},
                            u"「diary.mdb」は変更されていません。「diarymdb.bak」に写しがあります。"_s);
}

} // namespace velloria::store
