#include "larkport/entry_writer.h"

#include "common/encoding.h"
#include "larkport/date_line.h"
#include "larkport/own_keys.h"
#include "larkport/safe_text.h"

namespace velloria::plugins::larkport {
namespace {

constexpr char kNobody[] = "velloria";
constexpr char kNoWeather[] = "-";
constexpr std::size_t kLongestPart = 3000; // twice as long at most when it is escaped
constexpr int kSecondsADay = 86400;

std::string line(const std::string& key, const std::string& value) {
    return key + ": " + value + "\n";
}

/// A text of any length for a key of ours, in as many lines as it takes.
std::string exactLines(const std::string& name, std::string_view text) {
    std::string lines;
    do {
        std::size_t end = std::min(kLongestPart, text.size());
        while (end < text.size() && (static_cast<unsigned char>(text[end]) & 0xC0) == 0x80)
            --end;
        lines += line(kExactPrefix + name, escapedLine(text.substr(0, end)));
        text.remove_prefix(end);
    } while (!text.empty());
    return lines;
}

std::string exactWhereNeeded(const std::string& name, const std::optional<std::string>& text) {
    return text && plainText(safeText(*text)) != *text ? exactLines(name, *text) : "";
}

std::string piece(const std::string& name, const std::optional<std::string>& text) {
    return text ? name + ":\n" + safeText(*text) + "\n-----\n" : "";
}

/// The names of what the diary does not have.
std::string missingNames(const Entry& entry) {
    const std::pair<const char*, const std::optional<std::string>*> kValues[] = {
        {"TITLE", &entry.title},     {"BODY", &entry.contents},  {"EXTENDED BODY", &entry.extend},
        {"EXCERPT", &entry.excerpt}, {"CATEGORY", &entry.genre}, {"WEATHER", &entry.weather},
        {"TIME", &entry.publishTime}};
    std::string names;
    for (const auto& [name, value] : kValues)
        if (!*value)
            names += (names.empty() ? "" : ",") + std::string(name);
    return names;
}

} // namespace

EntryWriter::EntryWriter(const std::string& author)
    : m_author(safeLine(author)) {
    if (m_author.empty())
        m_author = kNobody;
}

std::string EntryWriter::text(const Entry& stored) {
    Entry entry = stored;
    for (std::optional<std::string>* text : {&entry.title, &entry.contents, &entry.extend, &entry.excerpt,
                                             &entry.weather, &entry.genre, &entry.publishTime})
        if (*text)
            *text = validUtf8(**text, m_replaced);
    const std::optional<DateTime> day = dateTimeOf(entry.day);
    if (!day || entry.day.size() != day->dayKey().size()) {
        ++m_skipped;
        return {};
    }
    ++m_written;
    return headOf(entry, freeTime(entry, *day)) + "-----\n" + piece("BODY", entry.contents) +
           piece("EXTENDED BODY", entry.extend) + piece("EXCERPT", entry.excerpt) + "-----\n--------\n";
}

/// The day with the time of the last save, or the next second that no entry of the day has yet: there are readers that
/// take two entries with one date and one title for the same.
DateTime EntryWriter::freeTime(const Entry& entry, DateTime day) {
    if (entry.day != m_day) {
        m_takenSeconds.clear();
        m_searchedUpTo.clear();
    }
    m_day = entry.day;
    const std::optional<DateTime> saved = dateTimeOf(entry.publishTime.value_or(""));
    const int wanted = saved ? saved->hour * 3600 + saved->minute * 60 + saved->second : 0;
    int second = m_searchedUpTo.try_emplace(wanted, wanted).first->second;
    if (m_takenSeconds.size() < kSecondsADay) {
        while (!m_takenSeconds.insert(second).second)
            second = (second + 1) % kSecondsADay;
        m_searchedUpTo[wanted] = second;
    }
    day.hour = second / 3600;
    day.minute = second / 60 % 60;
    day.second = second % 60;
    return day;
}

std::string EntryWriter::headOf(const Entry& entry, const DateTime& time) const {
    std::string head = line("AUTHOR", m_author);
    const std::string missing = missingNames(entry);
    if (entry.title)
        head += line("TITLE", safeLine(*entry.title));
    head += line("STATUS", entry.isPrivate ? "Draft" : "Publish") + line("CONVERT BREAKS", "0");
    const std::string genre = safeLine(entry.genre.value_or(""));
    if (!genre.empty())
        head += line("PRIMARY CATEGORY", genre) + line("CATEGORY", genre);
    head += line("DATE", dateLine(time)) + line(kTextKey, kTextForm);
    if (!missing.empty())
        head += line(kMissingKey, missing);
    if (entry.weather && *entry.weather != kNoWeather)
        head += exactLines("WEATHER", *entry.weather);
    if (entry.publishTime && *entry.publishTime != time.stamp())
        head += exactLines("TIME", *entry.publishTime);
    if (entry.title && safeLine(*entry.title) != *entry.title)
        head += exactLines("TITLE", *entry.title);
    if (entry.genre && genre != *entry.genre)
        head += exactLines("CATEGORY", *entry.genre);
    return head + exactWhereNeeded("BODY", entry.contents) + exactWhereNeeded("EXTENDED BODY", entry.extend) +
           exactWhereNeeded("EXCERPT", entry.excerpt);
}

} // namespace velloria::plugins::larkport
