#include "common/diary_file.h"

#include <sqlite3.h>

#include <chrono>
#include <limits>
#include <map>
#include <thread>
#include <utility>

namespace velloria::plugins {
namespace {

constexpr int64_t kLongestWaitMs = 5000;
constexpr std::chrono::milliseconds kPause(20);
constexpr std::size_t kEntriesAPump = 256;

constexpr char kSelect[] = "SELECT Day, Title, Contents, Extend, Excerpt, Weather, Genre, PublishTime, Private "
                           "FROM Contents ORDER BY Day, Number, RecordID";
constexpr char kInsert[] = "INSERT OR ABORT INTO Contents (Day, Number, Title, Contents, Extend, Excerpt, Weather, "
                           "Genre, PublishTime, Private, TrackBack, ImportMark) "
                           "VALUES (?1, ?2, ?3, ?4, ?5, ?6, ?7, ?8, ?9, ?10, '', ?11)";
constexpr char kLastNumber[] = "SELECT coalesce(max(CAST(Number AS INTEGER)), 0) FROM Contents WHERE Day = ?1";

constexpr char kNoDiary[] = "Velloriaの日記データベースではありません。";

int64_t nowMs() {
    using namespace std::chrono;
    return duration_cast<milliseconds>(steady_clock::now().time_since_epoch()).count();
}

} // namespace

/// Of one SQL statement, with the texts that are bound to it, which must outlive its run.
class DiaryFile::Statement {
public:
    Statement(const DiaryFile& diary, const char* sql)
        : m_diary(diary) {
        const int code = sqlite3_prepare_v2(diary.m_handle, sql, -1, &m_handle, nullptr);
        if (code != SQLITE_OK)
            diary.fail(code);
    }
    ~Statement() { sqlite3_finalize(m_handle); }
    Statement(const Statement&) = delete;
    Statement& operator=(const Statement&) = delete;

    void bind(int at, const std::string& text) {
        check(sqlite3_bind_text64(m_handle, at, text.data(), text.size(), SQLITE_STATIC, SQLITE_UTF8));
    }
    void bind(int at, const std::optional<std::string>& text) {
        if (text)
            bind(at, *text);
        else
            check(sqlite3_bind_null(m_handle, at));
    }
    void bind(int at, int64_t number) { check(sqlite3_bind_int64(m_handle, at, number)); }

    /// Whether there is a further row.
    bool next() {
        const int code = sqlite3_step(m_handle);
        if (code != SQLITE_ROW && code != SQLITE_DONE)
            m_diary.fail(code);
        return code == SQLITE_ROW;
    }
    void reset() { sqlite3_reset(m_handle); }
    Row row() const { return Row(m_handle); }

    std::optional<std::string> text(int column) const {
        const auto* bytes = reinterpret_cast<const char*>(sqlite3_column_text(m_handle, column));
        if (!bytes)
            return std::nullopt;
        return std::string(bytes, std::size_t(sqlite3_column_bytes(m_handle, column)));
    }
    int64_t number(int column) const { return sqlite3_column_int64(m_handle, column); }

private:
    void check(int code) const {
        if (code != SQLITE_OK)
            m_diary.fail(code);
    }

    const DiaryFile& m_diary;
    sqlite3_stmt* m_handle = nullptr;
};

std::string_view Row::text(int column) const {
    const auto* bytes = reinterpret_cast<const char*>(sqlite3_column_text(m_handle, column));
    const auto size = std::size_t(sqlite3_column_bytes(m_handle, column));
    return bytes ? std::string_view(bytes, size) : std::string_view();
}

int64_t Row::number(int column) const {
    return sqlite3_column_int64(m_handle, column);
}

DiaryFile::DiaryFile(std::string path, const Host& host)
    : m_path(std::move(path))
    , m_host(host) {
    const int code = sqlite3_open_v2(m_path.c_str(), &m_handle, SQLITE_OPEN_READWRITE | SQLITE_OPEN_EXRESCODE, nullptr);
    try {
        if (code != SQLITE_OK)
            fail(code);
        // The diary may be somebody else's, and what it brings along beside its tables is not to act here.
        constexpr std::pair<int, int> kSwitches[] = {{SQLITE_DBCONFIG_ENABLE_TRIGGER, 0},
                                                     {SQLITE_DBCONFIG_ENABLE_VIEW, 0},
                                                     {SQLITE_DBCONFIG_TRUSTED_SCHEMA, 0},
                                                     {SQLITE_DBCONFIG_DEFENSIVE, 1}};
        for (const auto& [option, value] : kSwitches)
            sqlite3_db_config(m_handle, option, value, nullptr);
        sqlite3_busy_handler(m_handle, waitForOther, this);
        execute("PRAGMA synchronous = FULL");
        requireTables();
    } catch (...) {
        sqlite3_close(m_handle);
        throw;
    }
}

DiaryFile::~DiaryFile() {
    sqlite3_close(m_handle);
}

void DiaryFile::requireTables() const {
    sqlite3_stmt* rows = nullptr;
    const int code = sqlite3_prepare_v2(m_handle, kSelect, -1, &rows, nullptr);
    sqlite3_finalize(rows);
    if ((code & 0xFF) == SQLITE_ERROR)
        throw Error(std::string(kNoDiary) + "\n" + m_path + "\n" + sqlite3_errmsg(m_handle));
    if (code != SQLITE_OK)
        fail(code);
}

void DiaryFile::read(const std::function<void(const Entry&)>& take) const {
    Statement rows(*this, kSelect);
    std::size_t taken = 0;
    while (rows.next()) {
        Entry entry;
        entry.day = rows.text(0).value_or("");
        entry.title = rows.text(1);
        entry.contents = rows.text(2);
        entry.extend = rows.text(3);
        entry.excerpt = rows.text(4);
        entry.weather = rows.text(5);
        entry.genre = rows.text(6);
        entry.publishTime = rows.text(7);
        entry.isPrivate = rows.number(8) != 0;
        take(entry);
        if (++taken % kEntriesAPump == 0)
            m_host.pump();
    }
}

void DiaryFile::query(const char* sql, const std::function<void(const Row&)>& take) const {
    Statement rows(*this, sql);
    for (std::size_t taken = 1; rows.next(); ++taken) {
        take(rows.row());
        if (taken % kEntriesAPump == 0)
            m_host.pump();
    }
}

int64_t DiaryFile::count() const {
    Statement statement(*this, "SELECT count(*) FROM Contents");
    statement.next();
    return statement.number(0);
}

void DiaryFile::append(const std::vector<Entry>& entries, const std::string& importMark) {
    execute("BEGIN IMMEDIATE");
    try {
        addAll(entries, importMark);
        execute("COMMIT");
    } catch (...) {
        sqlite3_exec(m_handle, "ROLLBACK", nullptr, nullptr, nullptr);
        throw;
    }
}

void DiaryFile::addAll(const std::vector<Entry>& entries, const std::string& importMark) {
    Statement lastNumber(*this, kLastNumber);
    Statement insert(*this, kInsert);
    std::map<std::string, int64_t> numbers;
    std::size_t added = 0;
    for (const Entry& entry : entries) {
        auto number = numbers.find(entry.day);
        if (number == numbers.end()) {
            lastNumber.bind(1, entry.day);
            lastNumber.next();
            number = numbers.emplace(entry.day, std::max<int64_t>(lastNumber.number(0), 0)).first;
            lastNumber.reset();
        }
        if (++number->second > std::numeric_limits<int32_t>::max())
            throw Error(entry.day + "の日記の番号が大きすぎるため、後ろに追加できません。\n" + m_path +
                        "\n日記は変更されていません。この日の日記を保存し直してから、もう一度実行してください。");
        insert.bind(1, entry.day);
        insert.bind(2, number->second);
        insert.bind(3, entry.title);
        insert.bind(4, entry.contents);
        insert.bind(5, entry.extend);
        insert.bind(6, entry.excerpt);
        insert.bind(7, entry.weather);
        insert.bind(8, entry.genre);
        insert.bind(9, entry.publishTime);
        insert.bind(10, int64_t(entry.isPrivate));
        insert.bind(11, importMark);
        insert.next();
        insert.reset();
        if (++added % kEntriesAPump == 0)
            m_host.pump();
    }
}

/// Called while the file is locked; `times` counts the calls of one wait.
int DiaryFile::waitForOther(void* self, int times) {
    DiaryFile& diary = *static_cast<DiaryFile*>(self);
    if (times == 0)
        diary.m_waitingSince = nowMs();
    if (nowMs() - diary.m_waitingSince >= kLongestWaitMs)
        return 0;
    diary.m_host.pump();
    std::this_thread::sleep_for(kPause);
    return 1;
}

void DiaryFile::execute(const char* sql) const {
    const int code = sqlite3_exec(m_handle, sql, nullptr, nullptr, nullptr);
    if (code != SQLITE_OK)
        fail(code);
}

void DiaryFile::fail(int code) const {
    const std::string reason = m_handle ? sqlite3_errmsg(m_handle) : sqlite3_errstr(code);
    std::string what = "日記データベースを処理できません。";
    std::string advice = "日記は変更されていません。";
    switch (code & 0xFF) {
    case SQLITE_BUSY:
    case SQLITE_LOCKED:
        what = "日記データベースは他のプログラムが使用中です。";
        advice += "そのプログラムを終了してから、もう一度実行してください。";
        break;
    case SQLITE_FULL:
        what = "ディスクの空き容量が足りません。";
        advice += "空き容量を増やしてから、もう一度実行してください。";
        break;
    case SQLITE_READONLY:
        what = "日記データベースに書き込めません。";
        advice += "ファイルの属性を確認してください。";
        break;
    case SQLITE_CANTOPEN:
        what = "日記データベースを開けません。";
        advice = "ファイルの場所を確認してください。";
        break;
    case SQLITE_CORRUPT:
        what = "日記データベースが壊れています。";
        advice += "バックアップから復元してください。";
        break;
    case SQLITE_NOTADB:
        what = kNoDiary;
        break;
    default:
        break;
    }
    throw Error(what + "\n" + m_path + "\n" + reason + "\n" + advice);
}

} // namespace velloria::plugins
