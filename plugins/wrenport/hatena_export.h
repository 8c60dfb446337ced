// A diary of Hatena out of our entries.
#pragma once

#include "common/diary_file.h"

#include <functional>
#include <string_view>

namespace velloria::plugins::wrenport {

/// Writes the entries as they are handed over, which must be all of a day at a time.
class HatenaWriter {
public:
    explicit HatenaWriter(std::function<void(std::string_view)> write);

    void add(const Entry& entry);
    void finish();
    int64_t written() const { return m_written; } ///< entries so far

private:
    void endDay();

    std::function<void(std::string_view)> m_write;
    int64_t m_written = 0;
    std::string m_day;
    std::string m_kept;
    std::string m_body;
};

} // namespace velloria::plugins::wrenport
