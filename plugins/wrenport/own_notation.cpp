#include "wrenport/own_notation.h"

#include "common/dates.h"
#include "common/encoding.h"
#include "wrenport/day_parts.h"
#include "wrenport/shown_html.h"
#include "wrenport/text_marks.h"

#include <cstdio>
#include <utility>

namespace velloria::plugins::wrenport {
namespace {

constexpr std::string_view kOpensHtml = "><div>";
constexpr std::string_view kClosesHtml = "</div><";
constexpr std::string_view kReadOn = "====";
constexpr int64_t kFirstTime = 100'000'000; // a heading has nine or ten digits
constexpr int64_t kLastTime = 9'999'999'999;

constexpr std::pair<const char*, std::optional<std::string> Entry::*> kFields[] = {
    {"title", &Entry::title},     {"contents", &Entry::contents}, {"extend", &Entry::extend},
    {"excerpt", &Entry::excerpt}, {"weather", &Entry::weather},   {"genre", &Entry::genre},
    {"time", &Entry::publishTime}};

std::string asCategory(std::string_view genre) {
    std::string category;
    for (const char c : shownText(genre)) {
        if (c == '[')
            category += "［";
        else if (c == ']')
            category += "］";
        else if (c == ':')
            category += "：";
        else
            category += c == '\n' ? ' ' : c;
    }
    return category;
}

std::string headingFor(const Entry& entry) {
    std::string heading = "*";
    const std::optional<DateTime> time = dateTimeOf(entry.publishTime.value_or(""));
    const int64_t seconds = time ? secondsOfTokyo(*time) : 0;
    const bool hasTime = seconds >= kFirstTime && seconds <= kLastTime;
    if (hasTime)
        heading += std::to_string(seconds) + "*";
    if (const std::string category = asCategory(entry.genre.value_or("")); !category.empty())
        heading += "[" + category + "]";
    return heading + shownTitle(entry.title.value_or(""), hasTime);
}

std::string linesFor(const std::string& text) {
    if (text.empty())
        return {};
    const std::string shown = shownHtml(text);
    if (shown.find_first_of("<\n") == std::string::npos)
        return shown + "\n";
    return std::string(kOpensHtml) + "\n" + shown + "\n" + std::string(kClosesHtml) + "\n";
}

std::string textOf(std::vector<std::string_view> lines) {
    if (lines.size() > 1 && lines.front() == kOpensHtml && lines.back() == kClosesHtml) {
        lines.erase(lines.begin());
        lines.pop_back();
    }
    return withoutReferences(joined(lines));
}

/// What the text alone tells.
Entry readBack(std::string_view text, const std::string& day) {
    const std::vector<DayPart> parts = partsOf(text);
    const Heading heading = parts.front().heading.value_or(Heading{});
    std::vector<std::string_view> contents = parts.front().lines;
    std::vector<std::string_view> extend;
    for (std::size_t index = 0; index < contents.size(); ++index) {
        if (contents[index] == kReadOn) {
            extend.assign(contents.begin() + index + 1, contents.end());
            contents.resize(index);
            break;
        }
    }
    Entry entry;
    entry.day = day;
    entry.title = withoutReferences(heading.title);
    entry.genre = heading.categories.empty() ? "" : std::string(heading.categories.front());
    entry.contents = textOf(std::move(contents));
    entry.extend = textOf(std::move(extend));
    entry.excerpt = "";
    entry.weather = "-";
    if (const auto time = heading.seconds ? tokyoTime(*heading.seconds) : std::nullopt)
        entry.publishTime = time->stamp();
    return entry;
}

} // namespace

OwnNotation notationOf(const Entry& entry) {
    OwnNotation own;
    own.text = headingFor(entry) + "\n" + linesFor(entry.contents.value_or(""));
    if (const std::string extend = linesFor(entry.extend.value_or("")); !extend.empty())
        own.text += std::string(kReadOn) + "\n" + extend;
    const std::string_view text(own.text.data(), own.text.size() - 1);
    own.kept.check = checkOf(text);
    own.kept.isPrivate = entry.isPrivate;
    const Entry read = readBack(text, entry.day);
    for (const auto& [name, field] : kFields) {
        if (!(entry.*field))
            own.kept.missing.insert(name);
        else if (entry.*field != read.*field)
            own.kept.fields[name] = keptText(*(entry.*field));
    }
    return own;
}

Entry entryOf(std::string_view text, const KeptEntry& kept, const std::string& day) {
    Entry entry = readBack(text, day);
    entry.isPrivate = kept.isPrivate;
    for (const auto& [name, field] : kFields) {
        if (kept.missing.contains(name))
            (entry.*field).reset();
        else if (const auto exact = kept.fields.find(name); exact != kept.fields.end())
            entry.*field = fromKeptText(exact->second);
    }
    return entry;
}

std::string checkOf(std::string_view text) {
    uint64_t sum = 0xcbf29ce484222325; // FNV-1a
    for (const char c : text)
        sum = (sum ^ static_cast<unsigned char>(c)) * 0x100000001b3;
    char digits[20];
    std::snprintf(digits, sizeof digits, "%016llx", static_cast<unsigned long long>(sum));
    return digits;
}

std::string keptText(std::string_view bytes) {
    constexpr char kDigits[] = "0123456789abcdef";
    const bool isWhole = isUtf8(bytes);
    std::string text;
    text.reserve(bytes.size());
    for (std::size_t at = 0; at < bytes.size(); ++at) {
        const auto byte = static_cast<unsigned char>(bytes[at]);
        const bool isNoCharacter = byte >= 0x80 && (!isWhole || bytes.substr(at).starts_with("\xEF\xBF\xBE") ||
                                                    bytes.substr(at).starts_with("\xEF\xBF\xBF"));
        if (byte < 0x20 || byte == 0x7F || byte == '\\' || isNoCharacter) {
            const std::size_t count = isNoCharacter && isWhole ? 3 : 1;
            for (std::size_t index = 0; index < count; ++index) {
                const auto each = static_cast<unsigned char>(bytes[at + index]);
                text += {'\\', kDigits[each >> 4], kDigits[each & 15]};
            }
            at += count - 1;
        } else {
            text += bytes[at];
        }
    }
    return text;
}

std::string fromKeptText(std::string_view text) {
    const auto digit = [](char c) { return c >= '0' && c <= '9' ? c - '0' : c >= 'a' && c <= 'f' ? c - 'a' + 10 : -1; };
    std::string bytes;
    bytes.reserve(text.size());
    for (std::size_t at = 0; at < text.size(); ++at) {
        const bool isEscape =
            text[at] == '\\' && at + 2 < text.size() && digit(text[at + 1]) >= 0 && digit(text[at + 2]) >= 0;
        if (isEscape) {
            bytes += char(digit(text[at + 1]) * 16 + digit(text[at + 2]));
            at += 2;
        } else {
            bytes += text[at];
        }
    }
    return bytes;
}

} // namespace velloria::plugins::wrenport
