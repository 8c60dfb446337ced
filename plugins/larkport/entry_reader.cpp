#include "larkport/entry_reader.h"

#include "common/escaped.h"
#include "larkport/date_line.h"
#include "larkport/own_keys.h"
#include "larkport/paragraphs.h"
#include "larkport/safe_text.h"

#include <algorithm>

namespace velloria::plugins::larkport {
namespace {

constexpr char kNoGenre[] = "一般";
constexpr char kNoWeather[] = "-";

std::string withCrLf(std::string_view text) {
    std::string result;
    for (const char c : text)
        result.append(c == '\n' ? "\r" : "") += c;
    return result;
}

/// Without the blank lines and blanks around it, as the format's own reader takes it; indents stay.
std::string_view withoutBlankEnds(std::string_view text) {
    const std::size_t last = text.find_last_not_of(" \t\n");
    if (last == std::string_view::npos)
        return {};
    text = text.substr(0, last + 1);
    const std::size_t first = text.find_first_not_of(" \t\n");
    const std::size_t line = text.substr(0, first).rfind('\n');
    return line == std::string_view::npos ? text : text.substr(line + 1);
}

std::string lowered(std::string text) {
    std::transform(text.begin(), text.end(), text.begin(),
                   [](char c) { return c >= 'A' && c <= 'Z' ? char(c - 'A' + 'a') : c; });
    return text;
}

/// Everything but what says clearly that it may be read by all; nothing said at all is a draft to other readers too.
bool isPrivate(const EntryParts& parts) {
    const std::string* status = parts.value("STATUS");
    if (!status)
        return true;
    const std::string word = lowered(*status);
    return !word.empty() && word != "publish" && word != "published";
}

bool wantsParagraphs(const EntryParts& parts, std::string_view text) {
    const std::string* breaks = parts.value("CONVERT BREAKS");
    if (!breaks)
        return !hasParagraphs(text);
    const std::string word = lowered(*breaks);
    return word == "1" || word == "__default__" || word == "true" || word == "convert_breaks";
}

/// What a foreign entry has in a piece; "" without one.
std::string foreignText(const EntryParts& parts, std::string_view name, bool isBody) {
    const std::string* found = parts.text(name);
    if (!found)
        return {};
    const std::string_view text = withoutBlankEnds(*found);
    return withCrLf(isBody && wantsParagraphs(parts, text) ? withParagraphs(text) : std::string(text));
}

/// What we wrote beside the readable form of a value; nothing when we needed not to.
std::optional<std::string> exactValue(const EntryParts& parts, std::string_view name) {
    const std::string key = kExactPrefix + std::string(name);
    std::optional<std::string> value;
    for (const Key& each : parts.head) {
        if (each.name != key)
            continue;
        if (!value)
            value.emplace();
        *value += unescapedLine(each.value);
    }
    return value;
}

bool isMissing(const EntryParts& parts, const std::string& name) {
    const std::string* missing = parts.value(kMissingKey);
    return missing && ("," + *missing + ",").find("," + name + ",") != std::string::npos;
}

std::optional<std::string> ownText(const EntryParts& parts, const std::string& name) {
    const std::string* found = parts.text(name);
    if (!found)
        return isMissing(parts, name) ? std::nullopt : std::optional<std::string>("");
    const std::optional<std::string> exact = exactValue(parts, name);
    return exact && safeText(*exact) == *found ? exact : plainText(*found);
}

std::optional<std::string> ownLine(const EntryParts& parts, const std::string& name, const std::string* found) {
    if (!found && isMissing(parts, name))
        return std::nullopt;
    const std::string line = found ? *found : "";
    const std::optional<std::string> exact = exactValue(parts, name);
    return exact && safeLine(*exact) == line ? exact : line;
}

const std::string* genreOf(const EntryParts& parts) {
    const std::string* primary = parts.value("PRIMARY CATEGORY");
    return primary && !primary->empty() ? primary : parts.value("CATEGORY");
}

void readOwn(const EntryParts& parts, const DateTime& time, Entry& entry) {
    entry.title = ownLine(parts, "TITLE", parts.value("TITLE"));
    entry.contents = ownText(parts, "BODY");
    entry.extend = ownText(parts, "EXTENDED BODY");
    entry.excerpt = ownText(parts, "EXCERPT");
    entry.genre = ownLine(parts, "CATEGORY", genreOf(parts));
    entry.weather = exactValue(parts, "WEATHER");
    if (!entry.weather && !isMissing(parts, "WEATHER"))
        entry.weather = kNoWeather;
    entry.publishTime = exactValue(parts, "TIME");
    if (!entry.publishTime && !isMissing(parts, "TIME"))
        entry.publishTime = time.stamp();
}

void readForeign(const EntryParts& parts, const DateTime& time, Entry& entry) {
    const std::string* title = parts.value("TITLE");
    const std::string* genre = genreOf(parts);
    entry.title = title ? *title : "";
    entry.contents = foreignText(parts, "BODY", true);
    entry.extend = foreignText(parts, "EXTENDED BODY", true);
    entry.excerpt = foreignText(parts, "EXCERPT", false);
    entry.genre = genre && !genre->empty() ? *genre : kNoGenre;
    entry.weather = kNoWeather;
    entry.publishTime = time.stamp();
}

struct CommentKeys {
    std::string author;
    std::string date;
    std::string url;
};

/// Takes the keys from the beginning of the text; gives the rest.
std::string_view readCommentKeys(std::string_view text, bool isPing, CommentKeys& keys) {
    while (!text.empty()) {
        const std::size_t end = std::min(text.find('\n'), text.size());
        const std::string_view line = text.substr(0, end);
        const std::size_t colon = std::min(line.find(':'), line.size());
        const std::string_view name = trimmed(line.substr(0, colon));
        const std::string value(trimmed(line.substr(std::min(colon + 1, line.size()))));
        if (colon == line.size())
            break;
        if (name == (isPing ? "BLOG NAME" : "AUTHOR"))
            keys.author = value;
        else if (name == "DATE")
            keys.date = value;
        else if (name == "URL")
            keys.url = value;
        else if (isPing && name == "TITLE")
            keys.author = keys.author.empty() ? value : keys.author;
        else if (name != "IP" && (isPing || name != "EMAIL"))
            break;
        text.remove_prefix(std::min(end + 1, text.size()));
    }
    return text;
}

} // namespace

bool isOwn(const EntryParts& parts) {
    const std::string* form = parts.value(kTextKey);
    return form && *form == kTextForm;
}

std::optional<Entry> entryOf(const EntryParts& parts) {
    const std::string* date = parts.value("DATE");
    const std::optional<DateTime> time = date ? readDateLine(*date) : std::nullopt;
    if (!time)
        return std::nullopt;
    Entry entry;
    entry.day = time->dayKey();
    entry.isPrivate = isPrivate(parts);
    if (isOwn(parts))
        readOwn(parts, *time, entry);
    else
        readForeign(parts, *time, entry);
    return entry;
}

std::string commentText(const Piece& piece) {
    const bool isPing = piece.name == "PING";
    CommentKeys keys;
    const std::string text = harmlessText(readCommentKeys(withoutBlankEnds(piece.text), isPing, keys));
    const std::optional<DateTime> time = readDateLine(keys.date);
    std::string head = (isPing ? "トラックバック: " : "コメント: ") + escaped(keys.author);
    if (!keys.date.empty())
        head += " (" + (time ? time->stamp() : escaped(keys.date)) + ")";
    if (!keys.url.empty())
        head += " " + escaped(keys.url);
    return "<HR>\n<P>" + head + "</P>\n<P>" + text + "</P>";
}

} // namespace velloria::plugins::larkport
