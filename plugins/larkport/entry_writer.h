// Writes entries of a diary in the text format of Movable Type.
#pragma once

#include "common/dates.h"
#include "common/diary_file.h"

#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <unordered_set>

namespace velloria::plugins::larkport {

/// Makes the text of one entry after the other, in the order of the diary.
///
///     EntryWriter writer(userId);
///     diary.read([&](const Entry& entry) { file.write(writer.text(entry)); });
class EntryWriter {
public:
    /// `author` is who shows as the writer; "" gives a name of ours.
    explicit EntryWriter(const std::string& author);

    /// UTF-8 in lines that end in LF. "" for an entry whose day is none of the calendar, which no reader could place.
    std::string text(const Entry& entry);

    std::size_t written() const { return m_written; }
    std::size_t skipped() const { return m_skipped; }   ///< for their day
    std::size_t replaced() const { return m_replaced; } ///< pieces that were no UTF-8

private:
    DateTime freeTime(const Entry& entry, DateTime day);
    std::string headOf(const Entry& entry, const DateTime& time) const;

    std::string m_author;
    std::string m_day;
    std::unordered_set<int> m_takenSeconds; ///< by the entries of m_day
    std::map<int, int> m_searchedUpTo;      ///< by the second that an entry of m_day wanted, the one that the last got
    std::size_t m_written = 0;
    std::size_t m_skipped = 0;
    std::size_t m_replaced = 0;
};

} // namespace velloria::plugins::larkport
