#include "wrenport/hatena_import.h"

#include "common/dates.h"
#include "wrenport/day_parts.h"
#include "wrenport/import_notes.h"
#include "wrenport/notation.h"
#include "wrenport/own_notation.h"
#include "wrenport/text_marks.h"
#include "wrenport/xml_cleaner.h"

#include <algorithm>
#include <charconv>
#include <map>
#include <utility>

namespace velloria::plugins::wrenport {
namespace {

// Of nothing but line ends or headings a file would take a hundred times its size in memory.
constexpr std::ptrdiff_t kMostLines = 2'000'000; // of a day
constexpr std::size_t kMostEntries = 1'000'000;

constexpr uint32_t kFirstOutside = 0xA0; // references to characters of ASCII are there for a reason

bool isBlank(std::string_view text) {
    return text.find_first_not_of(" \t\n") == std::string_view::npos;
}

std::string_view trimmed(std::string_view text) {
    const std::size_t begin = text.find_first_not_of(" \t\r\n");
    return begin == std::string_view::npos ? "" : text.substr(begin, text.find_last_not_of(" \t\r\n") + 1 - begin);
}

/// "2024-03-08", with or without zeros in front.
std::optional<std::string> dayOf(std::string_view date) {
    int parts[3] = {};
    const char* at = date.data();
    const char* end = at + date.size();
    for (int index = 0; index < 3; ++index) {
        const auto [behind, error] = std::from_chars(at, end, parts[index]);
        if (error != std::errc() || (index < 2 && (behind == end || (*behind != '-' && *behind != '/'))))
            return std::nullopt;
        at = index < 2 ? behind + 1 : behind;
    }
    const DateTime time{parts[0], parts[1], parts[2], 0, 0, 0};
    return at == end && time.exists() ? std::optional(time.dayKey()) : std::nullopt;
}

/// The service kept characters beyond its encoding as references, which came into the file as text.
std::string withCharacters(std::string_view text) {
    std::string result;
    result.reserve(text.size());
    for (std::size_t at = 0; at < text.size();) {
        const auto reference = text[at] == '&' ? numberReference(text.substr(at)) : std::nullopt;
        if (reference && reference->character >= kFirstOutside && isXmlCharacter(reference->character)) {
            appendUtf8(result, reference->character);
            at += reference->length;
        } else {
            result += text[at++];
        }
    }
    return result;
}

std::string commentHtml(const Comment& comment) {
    std::string head = escaped(trimmed(comment.name));
    const std::string_view digits = trimmed(comment.seconds); // an editor may have put them in a line of their own
    int64_t seconds = 0;
    const auto [behind, error] = std::from_chars(digits.data(), digits.data() + digits.size(), seconds);
    if (const auto time = error == std::errc() ? tokyoTime(seconds) : std::nullopt)
        head += " " + time->stamp();
    std::string text;
    for (const char c : escaped(withCharacters(comment.text)))
        text += c == '\n' ? "<br>\r\n" : std::string(1, c);
    return "<p>コメント: " + head + "</p>\r\n<p>" + text + "</p>";
}

class Importer {
public:
    explicit Importer(const ImportChoices& choices)
        : m_choices(choices) {}

    void take(HatenaDay&& day) {
        std::erase(day.body, '\r');
        if (std::ranges::count(day.body, '\n') > kMostLines)
            throw Error(day.date + "の日の行が多すぎます。一日は" + std::to_string(kMostLines / 10000) +
                        "万行までです。ファイルの中の日を分けてください。");
        std::vector<DayPart> parts = partsOf(day.body);
        std::erase_if(parts, [](const DayPart& part) { return !part.heading && isBlank(part.text); });
        const std::optional<std::string> key = dayOf(day.date);
        if (m_entries.size() + parts.size() > kMostEntries)
            throw Error("日記が多すぎます。一度に" + std::to_string(kMostEntries / 10000) +
                        "万件までです。ファイルを分けてください。");
        if (!key) {
            m_notes.losses.count("暦にない日付の日記", int64_t(std::max<std::size_t>(parts.size(), 1)));
            m_notes.dates.add(day.date.empty() ? "日付なし" : day.date);
            return;
        }
        const std::size_t before = m_entries.size();
        takeParts(parts, day, *key);
        takeTitle(day, *key, before);
        takeComments(day, *key, before);
    }

    std::vector<Entry> entries() {
        std::ranges::stable_sort(m_entries, {}, &Entry::day);
        return std::move(m_entries);
    }

    const ImportNotes& notes() const { return m_notes; }

private:
    /// What an export of ours tells beside the notation goes to the part that it was written for. A part that was
    /// changed since may be any of those that are left, and is private when one of them was.
    void takeParts(const std::vector<DayPart>& parts, const HatenaDay& day, const std::string& key) {
        std::multimap<std::string_view, const KeptEntry*> kept;
        for (const KeptEntry& each : day.kept)
            kept.emplace(each.check, &each);
        std::vector<std::size_t> changed;
        for (const DayPart& part : parts) {
            // Of several with the same text the first one comes first.
            const std::string check = kept.empty() ? "" : checkOf(part.text);
            const auto own = kept.lower_bound(check);
            if (own != kept.end() && own->first == check) {
                m_entries.push_back(entryOf(part.text, *own->second, key));
                kept.erase(own);
            } else {
                m_entries.push_back(foreignEntry(part, day, key));
                changed.push_back(m_entries.size() - 1);
            }
        }
        if (kept.empty())
            return;
        const bool isAnyPrivate = std::ranges::any_of(kept, [](const auto& each) { return each.second->isPrivate; });
        for (const std::size_t entry : changed)
            m_entries[entry].isPrivate = isAnyPrivate;
        m_notes.losses.count("書き出したあとに変えられた日記の、天気などの項目", int64_t(kept.size()));
    }

    Entry foreignEntry(const DayPart& part, const HatenaDay& day, const std::string& key) {
        Entry entry;
        entry.day = key;
        entry.weather = "-";
        entry.genre = "一般";
        if (part.heading)
            takeHeading(*part.heading, entry);
        else
            entry.title = withCharacters(day.title);
        std::vector<std::string> texts;
        texts.reserve(part.lines.size());
        for (const std::string_view line : part.lines)
            texts.push_back(withCharacters(line));
        const std::vector<std::string_view> lines(texts.begin(), texts.end());
        if (m_choices.notation == ImportChoices::Notation::AsTyped) {
            entry.contents = joined(lines);
            return entry;
        }
        std::string anchor = "f" + key + "-" + std::to_string(m_entries.size());
        std::erase(anchor, '/');
        NotationHtml html = htmlOf(lines, anchor);
        entry.contents = std::move(html.contents);
        entry.extend = std::move(html.extend);
        m_notes.losses.count("隠された文 (<!-- -->)", html.hidden);
        return entry;
    }

    void takeHeading(const Heading& heading, Entry& entry) {
        std::string_view title = heading.title;
        while (title.starts_with(' '))
            title.remove_prefix(1);
        entry.title = withCharacters(title);
        if (const auto time = heading.seconds ? tokyoTime(*heading.seconds) : std::nullopt)
            entry.publishTime = time->stamp();
        if (!heading.name.empty())
            m_notes.losses.count("見出しの名前 (*p1* など)");
        for (std::size_t index = 0; index < heading.categories.size(); ++index) {
            const std::string category = withCharacters(heading.categories[index]);
            if (index == 0) {
                entry.genre = category;
            } else {
                m_notes.losses.count("二つ目からのカテゴリー");
                m_notes.categories.add(category);
            }
        }
    }

    /// The title of a day belongs to the text above its headings, and is one when there is no text at all.
    void takeTitle(const HatenaDay& day, const std::string& key, std::size_t before) {
        if (isBlank(day.title))
            return;
        const std::string title = withCharacters(day.title);
        if (m_entries.size() == before) {
            m_entries.push_back(emptyEntry(key));
            m_entries.back().title = title;
        } else if (m_entries[before].title != title) {
            m_notes.losses.count("日の題");
            m_notes.titles.add(title);
        }
    }

    void takeComments(const HatenaDay& day, const std::string& key, std::size_t before) {
        if (m_choices.comments == ImportChoices::Comments::Dropped || day.comments.empty()) {
            m_notes.losses.count("コメント", int64_t(day.comments.size()));
            return;
        }
        if (m_entries.size() == before)
            m_entries.push_back(emptyEntry(key));
        std::string extend = m_entries.back().extend.value_or("");
        for (const Comment& comment : day.comments)
            extend += (extend.empty() ? "" : "\r\n") + commentHtml(comment);
        m_entries.back().extend = std::move(extend);
    }

    static Entry emptyEntry(const std::string& key) {
        Entry entry;
        entry.day = key;
        entry.title = "";
        entry.contents = "";
        entry.weather = "-";
        entry.genre = "一般";
        return entry;
    }

    const ImportChoices m_choices;
    std::vector<Entry> m_entries;
    ImportNotes m_notes;
};

} // namespace

ImportedDiary importedDiary(std::string bytes, const ImportChoices& choices, const std::function<void()>& pump) {
    const DecodedText text = decoded(bytes);
    bytes = {};
    Importer importer(choices);
    const XmlReading reading = readHatenaXml(text.utf8, [&](HatenaDay&& day) {
        importer.take(std::move(day));
        pump();
    });
    ImportedDiary diary{importer.entries(), importer.notes().text(reading, text)};
    if (diary.entries.empty())
        throw Error("持ち込める日記がありません。" + (diary.notes.empty() ? "" : "\n" + diary.notes));
    return diary;
}

} // namespace velloria::plugins::wrenport
