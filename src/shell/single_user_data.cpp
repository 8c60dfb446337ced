#include "shell/single_user_data.h"

#include "core/files.h"
#include "core/keys.h"
#include "core/path_names.h"
#include "core/settings_file.h"
#include "core/stored_name.h"
#include "platform/directory.h"
#include "platform/failure.h"
#include "platform/file_write.h"
#include "platform/profile_file.h"
#include "store/database_file.h"

#include <QFile>
#include <QFileInfo>

#include <cerrno>
#include <cstdio>
#include <functional>

using namespace Qt::StringLiterals;

namespace velloria::shell {
namespace {

using platform::Failure;

constexpr unsigned kOwnerOnly = 0600; // settings hold passwords, and a diary is private

bool tryRename(const QString& from, const QString& to) {
    return std::rename(QFile::encodeName(from).constData(), QFile::encodeName(to).constData()) == 0;
}

/// A file of the user whose place another one takes, and the way back.
class TakenPlace {
public:
    explicit TakenPlace(const QString& file)
        : m_file(platform::existingPath(file))
        , m_hadFile(QFileInfo::exists(m_file))
        , m_backup(backupName({})) {
        platform::refuseLostLink(m_file);
    }

    const QString& file() const { return m_file; }

    /// Keeps what is there; `copy` gets it, the name of the backup, and the rights that this one is to have. From here
    /// on the file may be replaced.
    void backUp(const std::function<void(const QString& from, const QString& to, unsigned mode)>& copy) {
        if (m_hadFile) {
            moveOlderBackup();
            m_state = State::Copying;
            copy(m_file, m_backup, platform::modeOf(m_file, kOwnerOnly));
        }
        m_state = State::BackedUp;
    }

    /// "" when all is as it was, else the name of what is kept beside it.
    QString putBack() {
        if (m_state == State::BackedUp && !m_hadFile)
            return QFileInfo::exists(m_file) && !QFile::remove(m_file) ? m_file : QString();
        // By its name alone: a full disk has no room for another copy.
        if (m_state == State::BackedUp && !tryRename(m_backup, QFileInfo(m_file).canonicalFilePath()))
            return m_backup;
        if (m_state == State::Copying)
            QFile::remove(m_backup);
        return !m_older.isEmpty() && !tryRename(m_older, m_backup) ? m_older : QString();
    }

private:
    enum class State { Untouched, Copying, BackedUp };

    QString backupName(const QString& number) const {
        return core::GetBaseName(m_file) + u"_BackUp"_s + number + u'.' + core::GetFileExt(m_file);
    }

    void moveOlderBackup() {
        if (!QFileInfo::exists(m_backup))
            return;
        int number = 2;
        while (QFileInfo::exists(backupName(QString::number(number))))
            ++number;
        const QString older = backupName(QString::number(number));
        if (!tryRename(m_backup, older))
            throw Failure(u"ファイルの名前を変更できません。"_s, m_backup, platform::systemReason(errno),
                          u"フォルダを確認してください。"_s);
        m_older = older;
    }

    QString m_file;
    bool m_hadFile;
    QString m_backup;
    QString m_older; ///< the new name of a backup that was there
    State m_state = State::Untouched;
};

/// The single user's settings as they are to be in the user's folder; without a file of theirs, the least that leads
/// there.
QByteArray settingsFor(const QString& folder, const QString& source) {
    const std::pair<core::Setting, QString> changed[] = {
        {core::keys::kDataPath, folder},
        {core::keys::kCustomizeIni, core::files::kCustomizeIni.below(folder)},
        {core::keys::kFrameIni, core::files::kFrameIni.below(folder)},
        {core::keys::kHaloScanIni, core::files::kHaloScanIni.below(folder)},
        {core::keys::kBlogIni, core::files::kBlogIni.below(folder)},
    };
    QByteArray bytes = source.isEmpty() ? QByteArray() : platform::readFile(source);
    for (const auto& [setting, value] : changed)
        bytes = platform::changedProfile(bytes, setting.section.toString(), setting.name.toString(),
                                         core::storedName(value));
    return bytes;
}

void copyBesides(const QString& from, const QString& to, unsigned mode) {
    platform::copyFile(from, to, mode, platform::Durability::Durable);
}

QString firstOf(const core::File& file, std::initializer_list<QString> folders) {
    for (const QString& folder : folders) {
        const QString path = platform::existingPath(file.below(folder));
        platform::refuseLostLink(path); // to a disk that is not there: what lies in the next folder is older
        if (platform::fileExists(path))
            return path;
    }
    return {};
}

/// Puts the files back and adds to the failure how that went.
void takeBack(Failure& failure, std::initializer_list<TakenPlace*> places) {
    QStringList kept;
    for (TakenPlace* place : places) {
        if (const QString file = place->putBack(); !file.isEmpty())
            kept += u'「' + core::GetFileName(file) + u'」';
    }
    failure.addStage(kept.isEmpty()
                         ? u"データを移行していません"_s
                         : u"データの移行を途中で中止しました。元のファイルは%1に残っています"_s.arg(kept.join(u'と')));
}

} // namespace

bool SingleUserData::liesIn(const QString& folder) const {
    const auto isThere = [&](const QString& file, const core::File& name) {
        return !file.isEmpty() && platform::isSameFile(file, platform::existingPath(name.below(folder)));
    };
    return isThere(settings, core::files::kSettings) || isThere(diary, core::files::kDiary);
}

SingleUserData findSingleUserData(const core::Session& session) {
    const QString userData = core::withSeparator(platform::existingPath(core::files::kUserData.in(session)));
    return {firstOf(core::files::kSettings, {userData, session.MyPath}),
            firstOf(core::files::kDiary, {userData, session.MyPath})};
}

void moveSingleUserData(const SingleUserData& data, const QString& folder) {
    // A user whose start can't read them could not go back alone.
    if (!data.diary.isEmpty())
        store::GetDBVersion(data.diary);
    core::refuseUnreadableSettings(data.settings);
    platform::makeFolder(core::GetParentFolder(folder), 0700);
    // Two moves to one user come one after the other: each backup gets a name of its own.
    const platform::FolderLock lock(core::GetParentFolder(folder));
    TakenPlace settings(core::files::kSettings.below(folder));
    TakenPlace diary(core::files::kDiary.below(folder));
    const bool takesSettings = !data.settings.isEmpty() || !QFileInfo::exists(settings.file());
    try {
        const QByteArray newSettings = takesSettings ? settingsFor(folder, data.settings) : QByteArray();
        if (!data.diary.isEmpty()) {
            diary.backUp(store::copyDatabase);
            store::copyDatabase(data.diary, diary.file(), kOwnerOnly);
        }
        if (takesSettings) {
            settings.backUp(copyBesides);
            platform::replaceFile(settings.file(), newSettings, platform::Durability::Durable, kOwnerOnly);
        }
    } catch (Failure& failure) {
        takeBack(failure, {&settings, &diary});
        throw;
    }
}

} // namespace velloria::shell
