#include "store/diary_backups.h"

#include "core/files.h"
#include "core/path_names.h"
#include "platform/directory.h"
#include "platform/failure.h"
#include "platform/file_write.h"
#include "store/backup_names.h"
#include "store/database_file.h"
#include "store/database_format.h"
#include "store/named_database.h"
#include "store/sqlite/connection.h"
#include "store/sqlite/statement.h"

#include <QDir>
#include <QFileInfo>

using namespace Qt::StringLiterals;

namespace velloria::store {
namespace {

using platform::Failure;
using sqlite::Access;
using sqlite::Connection;
using sqlite::Statement;

QString folderOf(const core::Session& session) {
    return core::withSeparator(platform::existingPath(core::files::kBackups.in(session)));
}

qint64 entriesIn(const Connection& connection) {
    Statement count(connection, "SELECT count(*) FROM Contents");
    return count.next() ? count.integer64(0) : 0;
}

/// What the engine finds wrong; "" when nothing.
QString damageOf(const Connection& connection) {
    Statement check(connection, "PRAGMA quick_check(1)");
    return check.next() && check.text(0) != u"ok"_s ? check.text(0) : QString();
}

/// The copy while it is made: gone at the end, unless it has its name by then.
class CopyInWork {
public:
    CopyInWork(const core::Session& session, const Connection& source, unsigned mode)
        : m_file(core::files::kBackupInWork.in(session)) {
        for (const QString& leftover : {m_file, m_file + kJournals[0]}) // of a run that was killed
            platform::removeFile(leftover);
        platform::replaceFile(
            m_file, [&source](const platform::WriteBytes& write) { source.read(write); }, platform::Durability::Derived,
            mode);
    }
    ~CopyInWork() {
        if (!m_isPlaced)
            QFile::remove(m_file);
    }
    CopyInWork(const CopyInWork&) = delete;
    CopyInWork& operator=(const CopyInWork&) = delete;

    const QString& file() const { return m_file; }
    void moveTo(const QString& name) {
        platform::moveFile(m_file, name);
        m_isPlaced = true;
    }

private:
    QString m_file;
    bool m_isPlaced = false;
};

/// What it returns from is a whole copy.
void requireWhole(const QString& copy, const QString& diary, const Connection& source) {
    const Connection readBack(copy, Access::ReadOnly);
    QString reason;
    try {
        reason = damageOf(readBack);
        if (reason.isEmpty() && entriesIn(readBack) != entriesIn(source))
            reason = u"日記の件数が違います"_s;
    } catch (const Failure& failure) {
        reason = failure.reason();
    }
    if (reason.isEmpty())
        return;
    if (const QString damage = damageOf(source); !damage.isEmpty())
        throw Failure(u"日記データベースが壊れています。"_s, diary, damage, unchangedAndRestore());
    throw Failure(u"作成したバックアップを読み戻せません。"_s, copy, reason,
                  u"日記と今までのバックアップはそのままです。ディスクを確認してください。"_s);
}

/// Whether a copy, which is not the diary itself by another name, has the very bytes of it.
bool holdsAll(const QString& copy, const QString& diary, const Connection& source) {
    const QFileInfo info(copy);
    QFile file(copy);
    if (!info.isFile() || info.isSymLink() || platform::isSameFile(copy, diary) ||
        !file.open(QIODevice::ReadOnly | QIODevice::Unbuffered))
        return false;
    bool isSame = true;
    QByteArray block;
    source.read([&](QByteArrayView piece) {
        block.resize(piece.size());
        isSame = isSame && file.read(block.data(), block.size()) == block.size() && block == piece;
    });
    return isSame && file.atEnd();
}

class Backups {
public:
    Backups(const core::Run& run, QString& spared)
        : m_session(run.session)
        , m_today(run.clock.now().date())
        , m_folder(folderOf(run.session))
        , m_spared(spared) {}

    QString make(const QString& diary) {
        refuseCutOffPage(diary);
        Connection source(diary, Access::ReadOnly);
        source.execute("BEGIN"); // the first row that is read fixes the state
        if (entriesIn(source) == 0)
            return {};
        const unsigned mode = platform::modeOf(diary, 0600) | 0200;
        if (holdsAll(file(1), diary, source)) {
            platform::limitMode(file(1), mode);
            removeSurplus();
            return file(1);
        }
        platform::makeFolder(core::GetParentFolder(m_folder), 0700);
        CopyInWork copy(m_session, source, mode);
        requireWhole(copy.file(), diary, source);
        displace(copy.file());
        copy.moveTo(file(1));
        removeSurplus();
        return file(1);
    }

private:
    QString file(int copy) const { return m_folder + BackupName{m_today, copy}.text(); }
    bool isSpared(const QString& file) const { return !m_spared.isEmpty() && platform::isSameFile(file, m_spared); }

    /// The copies of the day move on by one; the oldest one goes when all names are taken.
    void displace(const QString& newer) {
        if (!QFileInfo::exists(file(1)) || platform::haveSameBytes(file(1), newer))
            return;
        int last = 2;
        while (last < kCopiesOfDay && QFileInfo::exists(file(last)))
            ++last;
        if (last == kCopiesOfDay && isSpared(file(last)))
            --last;
        for (int copy = last; copy > 1; --copy) {
            const bool movesSpared = isSpared(file(copy - 1));
            if (copy > 2)
                platform::moveFile(file(copy - 1), file(copy));
            else // its name is never without a copy of the day
                platform::copyFile(file(1), file(2), platform::modeOf(file(1), 0600), platform::Durability::Durable);
            if (movesSpared)
                m_spared = file(copy);
        }
    }

    /// The new one is made, and what can't be removed does not take it back: the next one tries again.
    void removeSurplus() const {
        const QStringList names = QDir(m_folder).entryList(QDir::Files | QDir::NoSymLinks);
        for (const QString& name : surplusBackups(names, m_today)) {
            if (!isSpared(m_folder + name))
                QFile::remove(m_folder + name);
        }
    }

    const core::Session& m_session;
    QDate m_today;
    QString m_folder;
    QString& m_spared;
};

/// Whether there is a file that could be copied here.
bool isOfThisFormat(const QString& diary) {
    platform::refuseLostLink(diary);
    if (!QFileInfo::exists(diary))
        return false;
    requireDiaryFormat(diary);
    return formatOf(diary) == DatabaseFormat::Sqlite;
}

template <typename Make>
auto withStage(Make make) {
    try {
        return make();
    } catch (Failure& failure) {
        failure.addStage(u"日記のバックアップを作成できません"_s);
        throw;
    }
}

} // namespace

QString makeBackup(const core::Run& run) {
    QString nothing;
    return makeBackup(run, nothing);
}

QString makeBackup(const core::Run& run, QString& spared) {
    return withStage([&]() -> QString {
        const QString diary = platform::existingPath(run.session.databaseFile());
        if (!isOfThisFormat(diary))
            return {};
        const platform::FileTurn turn = turnAtBackups(core::GetParentFolder(diary));
        return Backups(run, spared).make(diary);
    });
}

bool makeBackupOfDay(const core::Run& run) {
    const QString ofToday = folderOf(run.session) + BackupName{run.clock.now().date()}.text();
    return !QFileInfo(ofToday).isFile() && !makeBackup(run).isEmpty();
}

} // namespace velloria::store
