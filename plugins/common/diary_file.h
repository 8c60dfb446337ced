// The diary database, as any program may read and add to it.
#pragma once

#include "common/calls.h"

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

struct sqlite3;
struct sqlite3_stmt;

namespace velloria::plugins {

/// One entry. A value that is missing in the diary (NULL) is not the same as an empty one: a page marks an empty
/// postscript and passes over a missing one.
struct Entry {
    std::string day; ///< "yyyy/mm/dd"
    std::optional<std::string> title = {};
    std::optional<std::string> contents = {};
    std::optional<std::string> extend = {};
    std::optional<std::string> excerpt = {};
    std::optional<std::string> weather = {};     ///< "-" for none
    std::optional<std::string> genre = {};       ///< "一般" for none
    std::optional<std::string> publishTime = {}; ///< "yyyy/mm/dd hh:nn:ss", local time of the last save
    bool isPrivate = false;

    bool operator==(const Entry&) const = default;
};

/// What a query has found, one row of it, until the next one.
class Row {
public:
    explicit Row(sqlite3_stmt* handle)
        : m_handle(handle) {}

    /// The bytes as they are; "" for a missing value.
    std::string_view text(int column) const;
    int64_t number(int column) const;

private:
    sqlite3_stmt* m_handle;
};

/// One connection to a diary for its life. It waits some seconds for another program and lets the windows paint
/// meanwhile. Throws Error.
class DiaryFile {
public:
    /// `host` outlives it.
    DiaryFile(std::string path, const Host& host);
    ~DiaryFile();
    DiaryFile(const DiaryFile&) = delete;
    DiaryFile& operator=(const DiaryFile&) = delete;

    /// Hands over each entry, oldest day first, in the order within the day; all of them as they stand at one moment.
    void read(const std::function<void(const Entry&)>& take) const;

    /// Hands over each row of a query.
    void query(const char* sql, const std::function<void(const Row&)>& take) const;

    /// How many entries there are.
    int64_t count() const;

    /// Adds entries behind those that their days have, in the given order, with this import mark. On failure none is
    /// added.
    void append(const std::vector<Entry>& entries, const std::string& importMark);

private:
    class Statement;

    static int waitForOther(void* self, int times);
    void requireTables() const;
    void execute(const char* sql) const;
    void addAll(const std::vector<Entry>& entries, const std::string& importMark);
    [[noreturn]] void fail(int code) const;

    std::string m_path;
    const Host& m_host;
    sqlite3* m_handle = nullptr;
    int64_t m_waitingSince = 0; ///< milliseconds
};

} // namespace velloria::plugins
