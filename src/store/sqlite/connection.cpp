#include "store/sqlite/connection.h"

#include "platform/file_write.h"
#include "platform/like_pattern.h"
#include "platform/text_fold.h"
#include "platform/text_order.h"
#include "platform/utf8.h"
#include "platform/waiting.h"
#include "store/sqlite/statement.h"

#include <QFile>
#include <QFileInfo>

#include <sqlite3.h>

using namespace Qt::StringLiterals;

namespace velloria::store::sqlite {
namespace {

const QString kBusy = u"日記データベースは他のプログラムが使用中です。"_s;

/// Called while the file is locked; `times` counts the calls of one wait.
int waitForOther(void* clock, int times) {
    constexpr std::chrono::milliseconds kLongestWait{5000};
    auto& waiting = *static_cast<QElapsedTimer*>(clock);
    if (times == 0)
        waiting.start();
    const std::chrono::milliseconds waited(waiting.elapsed());
    return waited < kLongestWait && platform::waitOn(kBusy, waited);
}

QByteArrayView bytesOf(sqlite3_value* value) {
    const auto* text = reinterpret_cast<const char*>(sqlite3_value_text(value));
    return {text, text ? sqlite3_value_bytes(value) : 0};
}

void resultText(sqlite3_context* context, const QString& text) {
    const QByteArray utf8 = text.toUtf8();
    sqlite3_result_text64(context, utf8.constData(), sqlite3_uint64(utf8.size()), SQLITE_TRANSIENT, SQLITE_UTF8);
}

void foldFunction(sqlite3_context* context, int, sqlite3_value** arguments) {
    if (sqlite3_value_type(arguments[0]) != SQLITE_NULL)
        resultText(context, platform::fold(platform::fromUtf8(bytesOf(arguments[0]))));
}

/// like(pattern, text): the pattern is folded once a statement.
void likeFunction(sqlite3_context* context, int, sqlite3_value** arguments) {
    if (sqlite3_value_type(arguments[0]) == SQLITE_NULL || sqlite3_value_type(arguments[1]) == SQLITE_NULL)
        return;
    auto* pattern = static_cast<platform::LikePattern*>(sqlite3_get_auxdata(context, 0));
    std::unique_ptr<platform::LikePattern> made;
    if (!pattern) {
        try {
            made = std::make_unique<platform::LikePattern>(platform::fromUtf8(bytesOf(arguments[0])));
        } catch (const platform::Failure& failure) {
            sqlite3_result_error(context, failure.line().toUtf8().constData(), -1);
            return;
        }
        pattern = made.get();
    }
    sqlite3_result_int(context, pattern->matchesUtf8(bytesOf(arguments[1])));
    if (made)
        sqlite3_set_auxdata(context, 0, made.release(), [](void* p) { delete static_cast<platform::LikePattern*>(p); });
}

int compareTexts(void* order, int leftSize, const void* left, int rightSize, const void* right) {
    return static_cast<platform::TextOrder*>(order)->compare(
        platform::fromUtf8({static_cast<const char*>(left), leftSize}),
        platform::fromUtf8({static_cast<const char*>(right), rightSize}));
}

} // namespace

QString restoreAdvice() {
    return u"バックアップ「diarymdb.bak」は、velloria-cli の「db restore」で復元してください。"_s
           u"手でコピーするときは、先に「diary.mdb-journal」を別の場所へ移してください(残っていると、復元した日記が壊れます)。"_s;
}

Busy::Busy(const QString& file, const QString& reason)
    : Failure(kBusy, file, reason,
              u"データベースは変更されていません。そのプログラムを終了してから、もう一度実行してください。"_s) {}

bool isBeingWritten(const QString& file) {
    sqlite3* handle = nullptr;
    const int code = sqlite3_open_v2(QFile::encodeName(file).constData(), &handle, SQLITE_OPEN_READONLY, nullptr);
    sqlite3_file* opened = nullptr;
    int isReserved = 0;
    if (code == SQLITE_OK && sqlite3_file_control(handle, "main", SQLITE_FCNTL_FILE_POINTER, &opened) == SQLITE_OK &&
        opened->pMethods)
        opened->pMethods->xCheckReservedLock(opened, &isReserved);
    sqlite3_close(handle);
    return isReserved != 0;
}

Connection::Connection(const QString& file, Access access)
    : m_file(file) {
    platform::refuseLostLink(file);
    // Readers, too: a killed program leaves half a change behind, and only who may write can roll it back.
    constexpr int kFlags = SQLITE_OPEN_READWRITE | SQLITE_OPEN_EXRESCODE;
    const int code = sqlite3_open_v2(QFile::encodeName(file).constData(), &m_handle, kFlags, nullptr);
    try {
        if (code != SQLITE_OK)
            fail(code);
        distrustSchema();
        // The diary is one file that people copy. Another tool may have made two of it; while that is at work it stays
        // so, and what else is wrong shows itself in the next statement.
        sqlite3_exec(m_handle, "PRAGMA journal_mode = DELETE", nullptr, nullptr, nullptr);
        sqlite3_busy_handler(m_handle, waitForOther, &m_waiting);
        constexpr int kPure = SQLITE_UTF8 | SQLITE_DETERMINISTIC;
        sqlite3_create_function(m_handle, "Fold", 1, kPure, nullptr, foldFunction, nullptr, nullptr);
        sqlite3_create_function(m_handle, "like", 2, kPure, nullptr, likeFunction, nullptr, nullptr);
        sqlite3_create_collation_v2(m_handle, "JET", SQLITE_UTF8, new platform::TextOrder, compareTexts,
                                    [](void* order) { delete static_cast<platform::TextOrder*>(order); });
        execute("PRAGMA synchronous = FULL");
        if (access == Access::ReadOnly)
            execute("PRAGMA query_only = ON");
    } catch (...) {
        sqlite3_close(m_handle);
        throw;
    }
}

Connection::~Connection() {
    sqlite3_close(m_handle);
}

/// The diary may be somebody else's, and what it brings along beside its tables is not to act here.
void Connection::distrustSchema() {
    constexpr std::pair<int, int> kSwitches[] = {{SQLITE_DBCONFIG_ENABLE_TRIGGER, 0},
                                                 {SQLITE_DBCONFIG_ENABLE_VIEW, 0},
                                                 {SQLITE_DBCONFIG_ENABLE_FKEY, 0},
                                                 {SQLITE_DBCONFIG_TRUSTED_SCHEMA, 0},
                                                 {SQLITE_DBCONFIG_DEFENSIVE, 1}};
    for (const auto& [option, value] : kSwitches) {
        const int code = sqlite3_db_config(m_handle, option, value, nullptr);
        if (code != SQLITE_OK)
            fail(code);
    }
}

bool Connection::hasWriteAheadLog() const {
    Statement mode(*this, "PRAGMA journal_mode");
    return mode.next() && mode.text(0) == u"wal"_s;
}

bool Connection::hasLostItsFile() const {
    int hasMoved = 0;
    sqlite3_file_control(m_handle, "main", SQLITE_FCNTL_HAS_MOVED, &hasMoved);
    return hasMoved != 0;
}

QByteArray Connection::bytes() const {
    sqlite3_int64 size = 0;
    const std::unique_ptr<unsigned char, void (*)(void*)> database(sqlite3_serialize(m_handle, "main", &size, 0),
                                                                   sqlite3_free);
    if (!database)
        fail(sqlite3_errcode(m_handle));
    QByteArray bytes(reinterpret_cast<const char*>(database.get()), qsizetype(size));
    // The two bytes that send a reader to a log beside the file.
    constexpr qsizetype kFormatAt = 18;
    if (bytes.size() > kFormatAt + 1)
        bytes[kFormatAt] = bytes[kFormatAt + 1] = 1;
    return bytes;
}

void Connection::read(const std::function<void(QByteArrayView)>& take) const {
    if (hasWriteAheadLog())
        return take(bytes());
    sqlite3_file* file = nullptr;
    sqlite3_int64 size = 0;
    int code = sqlite3_file_control(m_handle, "main", SQLITE_FCNTL_FILE_POINTER, &file);
    if (code == SQLITE_OK)
        code = file->pMethods->xFileSize(file, &size);
    QByteArray block(1 << 18, Qt::Uninitialized);
    for (sqlite3_int64 at = 0; code == SQLITE_OK && at < size; at += block.size()) {
        block.resize(qMin<qint64>(block.size(), size - at));
        code = file->pMethods->xRead(file, block.data(), int(block.size()), at);
        if (code == SQLITE_OK)
            take(block);
    }
    if (code != SQLITE_OK)
        fail(code);
}

void Connection::execute(const char* sql) {
    const int code = sqlite3_exec(m_handle, sql, nullptr, nullptr, nullptr);
    if (code != SQLITE_OK)
        fail(code);
}

qint64 Connection::lastInsertedRow() const {
    return sqlite3_last_insert_rowid(m_handle);
}

void Connection::fail(int code) const {
    const QString reason = platform::fromUtf8(m_handle ? sqlite3_errmsg(m_handle) : sqlite3_errstr(code));
    QString what = u"日記データベースを処理できません。"_s;
    QString advice = u"データベースは変更されていません。"_s;
    switch (code & 0xFF) {
    case SQLITE_BUSY:
    case SQLITE_LOCKED:
        throw Busy(m_file, reason);
    case SQLITE_FULL:
        what = u"ディスクの空き容量が足りません。"_s;
        advice += u"空き容量を増やしてから、もう一度実行してください。"_s;
        break;
    case SQLITE_READONLY:
        if (code == SQLITE_READONLY_DBMOVED)
            throw Busy(m_file, reason);
        what = u"日記データベースに書き込めません。"_s;
        advice += u"ファイルの属性を確認してください。"_s;
        break;
    case SQLITE_CANTOPEN:
        what = QFileInfo::exists(m_file) ? u"日記データベースを開けません。"_s : u"日記データベースがありません。"_s;
        advice = u"ファイルの場所を確認してください。"_s;
        break;
    case SQLITE_CORRUPT:
    case SQLITE_NOTADB:
        what = u"日記データベースが壊れています。"_s;
        advice += restoreAdvice();
        break;
    default:
        break;
    }
    throw platform::Failure(what, m_file, reason, advice);
}

Transaction::Transaction(Connection& connection)
    : m_connection(connection) {
    m_connection.execute("BEGIN IMMEDIATE");
}

Transaction::~Transaction() {
    if (m_isOpen)
        sqlite3_exec(m_connection.handle(), "ROLLBACK", nullptr, nullptr, nullptr);
}

void Transaction::commit() {
    m_connection.execute("COMMIT");
    m_isOpen = false;
}

} // namespace velloria::store::sqlite
