#include "store/database_update.h"

#include "core/files.h"
#include "platform/directory.h"
#include "platform/failure.h"
#include "platform/file_write.h"
#include "store/database_file.h"
#include "store/database_format.h"
#include "store/foreign_parts.h"
#include "store/named_database.h"
#include "store/open_old_diary.h"
#include "store/sqlite/statement.h"

#include <QFileInfo>

using namespace Qt::StringLiterals;

namespace velloria::store {

using platform::Failure;
using sqlite::Access;
using sqlite::Connection;
using sqlite::Statement;

namespace {

std::pair<qint64, QDateTime> stateOf(const QString& file) {
    const QFileInfo info(file);
    return {info.size(), info.lastModified()};
}

/// A link in its place goes first: the journals at its end belong to somebody else.
void removeDatabase(const QString& file) {
    platform::removeFile(file);
    removeJournals(file);
}

/// In an older form the next start would take the copied rows for older ones, and what is theirs for missing.
void requirePresentForm(const QString& file) {
    if (formatOf(file) != DatabaseFormat::Sqlite || GetDBVersion(file) < core::kDatabaseVersion)
        throw Failure(u"新しい日記のもとになるファイルが今の形式ではありません。"_s, file, {},
                      u"Velloriaをインストールし直してください。"_s);
}

} // namespace

DatabaseUpdate::DatabaseUpdate(const core::Run& run, qint16 oldVersion)
    : m_run(run)
    , m_version(oldVersion)
    , m_diary(run.session.databaseFile())
    , m_old(core::files::kUpdatedDiary.in(run.session))
    , m_new(core::files::kFreshDiary.in(run.session))
    , m_updater(run.desk)
    , m_options(run.session) {}

void DatabaseUpdate::run() {
    {
        const platform::Hourglass hourglass(m_run.desk);
        try {
            replaceDiary();
        } catch (Failure& failure) {
            failure.addStage(u"「diary.mdb」は元のままです"_s);
            throw;
        }
        try {
            removeWorkingFiles();
        } catch (Failure& failure) {
            failure.addStage(u"「diary.mdb」は更新しました"_s);
            throw;
        }
    }
    if (!m_options.told().isEmpty())
        m_run.desk.message(platform::MessageKind::Plain, m_options.told());
}

void DatabaseUpdate::replaceDiary() {
    m_updater.append(u"テンポラリファイル作成中。"_s);
    lockSource();
    makeWorkingFiles();
    m_updater.append(u"テンポラリファイル作成完了。"_s);
    copyAll();
    m_updater.append(u"データベースの更新終了。"_s);
    m_updater.append(u"復元中。"_s);
    takePlace();
}

void DatabaseUpdate::lockSource() {
    if (formatOf(m_diary) == DatabaseFormat::Jet) {
        m_sourceState = stateOf(m_diary);
        return;
    }
    platform::requireReplaceable(m_diary);
    m_lock = std::make_unique<Connection>(m_diary, Access::ReadWrite);
    if (m_lock->hasWriteAheadLog())
        throw sqlite::Busy(m_diary, {});
    m_lock->execute("BEGIN IMMEDIATE");
    if (m_lock->hasLostItsFile()) // to the program that was waited for
        throw sqlite::Busy(m_diary, {});
    if (m_version >= core::kDatabaseVersion)
        refuseForeignParts(*m_lock, m_diary);
}

/// Those of a run that was broken off are made anew.
void DatabaseUpdate::makeWorkingFiles() {
    const unsigned mode = platform::modeOf(m_diary, 0600) | 0200; // who may not read the diary may not read its copies
    removeDatabase(m_old);
    if (m_lock)
        platform::replaceFile(
            m_old, [this](const platform::WriteBytes& write) { m_lock->read(write); }, platform::Durability::Derived,
            mode);
    else
        platform::copyFile(m_diary, m_old, mode);
    removeDatabase(m_new);
    const QString fresh = platform::existingPath(core::files::kFirstDiary.in(m_run.session));
    requirePresentForm(fresh);
    copyDatabase(fresh, m_new, mode);
}

void DatabaseUpdate::copyAll() {
    try {
        const std::unique_ptr<OldDiary> source = openOldDiary(m_old);
        Connection target(m_new, Access::ReadWrite);
        // A file that is made anew after any failure needs no way back.
        target.execute("PRAGMA journal_mode = MEMORY");
        target.execute("PRAGMA synchronous = OFF");
        sqlite::Transaction transaction(target);
        TableCopy copy(*source, target, m_diary, m_version, m_run.clock.now().date().year());
        for (const TableRule& rule : tableRules()) {
            if (m_version < rule.since) {
                if (qstrcmp(rule.name, "LogDB") == 0)
                    m_updater.append(u"ログ登録データベースのコピーはスキップ。"_s);
                continue;
            }
            m_updater.append(rule.begins);
            m_copied.push_back(copy.copy(
                rule, [this](qint64 rows) { m_updater.beginBar(rows); },
                [this](qint64 row) { m_updater.setBar(row); }));
            m_updater.append(rule.ends);
        }
        if (constexpr qint16 kFirstWithoutOption = 101; m_version < kFirstWithoutOption) {
            m_updater.append(u"オプションの書き出し開始。"_s);
            m_updater.beginBar(OptionFiles::kCount);
            m_options.write(*source, [this](int file) { m_updater.setBar(file); });
            m_updater.append(u"オプションの書き出しを終了。"_s);
        }
        if (m_version >= core::kDatabaseVersion) {
            m_updater.append(u"Database Informationのコピーを開始。"_s);
            m_updater.beginBar(1, 1);
            copyInformation(*source, target);
            m_updater.append(u"Database Informationのコピーを終了。"_s);
        }
        transaction.commit();
    } catch (const Failure& failure) {
        // A person knows the working copy by the name of what it is a copy of.
        if (failure.file() != m_old)
            throw;
        throw Failure(failure.whatFailed(), m_diary, failure.reason(), failure.advice());
    }
    platform::syncFile(m_new);
    requireCopied(m_new, m_copied);
}

/// The version stays the template's.
void DatabaseUpdate::copyInformation(OldDiary& source, const Connection& target) {
    source.open(u"DBInfo"_s, {u"IsMemoPass"_s, u"IsPass"_s});
    std::vector<OldValue> row;
    if (!source.next(row))
        return;
    const auto flag = [&row](std::size_t field) {
        const auto* number = std::get_if<qint64>(&row[field]);
        return OldValue(qint64(number && *number != 0));
    };
    const std::vector<OldValue> flags{flag(0), flag(1)};
    Statement(target, "UPDATE OR ABORT DBInfo SET IsMemoPass = ?1, IsPass = ?2 WHERE rowid = (SELECT min(rowid) FROM "
                      "DBInfo)")
        .bind(flags)
        .run();
    CopiedRows copied{"SELECT IsMemoPass, IsPass FROM DBInfo ORDER BY rowid LIMIT 1", 1};
    for (const OldValue& value : flags)
        addToChecksum(copied.checksum, value);
    m_copied.push_back(copied);
}

/// Nothing keeps others from the other format's file.
void DatabaseUpdate::requireUnchangedSource() const {
    if (!m_lock && stateOf(m_diary) != m_sourceState)
        throw sqlite::Busy(m_diary, {});
}

void DatabaseUpdate::takePlace() {
    requireUnchangedSource();
    if (!m_lock)
        platform::makeWritable(m_diary); // from a disk that can't be written, where every file is set so
    platform::moveOver(m_new, m_diary, [this] { removeJournals(m_diary); });
    m_options.keep();
    m_lock.reset();
}

void DatabaseUpdate::removeWorkingFiles() {
    m_updater.append(u"復元完了。"_s);
    m_updater.append(u"テンポラリファイルの削除中。"_s);
    removeDatabase(m_old);
    removeDatabase(m_new);
    m_updater.append(u"テンポラリファイルの削除完了。"_s);
}

} // namespace velloria::store
