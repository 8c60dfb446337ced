#include "larkport/movable_type_reader.h"

#include "common/encoding.h"
#include "common/losses.h"
#include "larkport/entry_reader.h"
#include "larkport/file_parts.h"
#include "larkport/own_keys.h"

#include <algorithm>
#include <map>
#include <set>

namespace velloria::plugins::larkport {
namespace {

constexpr std::size_t kNamedEntries = 5;
constexpr std::size_t kShownTitle = 60;

std::string counted(const std::string& what, int64_t count, const std::string& unit, const std::string& more) {
    return count == 0 ? "" : what + ": " + std::to_string(count) + unit + more + "\n";
}

std::string shortened(const std::string& text) {
    std::size_t end = std::min(text.size(), kShownTitle);
    while (end < text.size() && end > 0 && (static_cast<unsigned char>(text[end]) & 0xC0) == 0x80)
        --end;
    return text.substr(0, end) + (end < text.size() ? "…" : "");
}

class Reading {
public:
    explicit Reading(const ReadingOptions& options)
        : m_options(options) {}

    void take(const EntryParts& parts) {
        m_isClosed = parts.isClosed;
        if (parts.value("NO ENTRY")) {
            takeComments(parts, entryAt(parts));
            return;
        }
        std::optional<Entry> entry = entryOf(parts);
        if (!entry) {
            refuse(parts);
            return;
        }
        m_isOwn = m_isOwn && isOwn(parts);
        m_privates += entry->isPrivate;
        countLosses(parts);
        m_entries.push_back(std::move(*entry));
        if (const std::string* date = parts.value("DATE"))
            m_byDate.emplace(*date, m_entries.size() - 1);
        takeComments(parts, &m_entries.back());
    }

    ReadDiary result(const DecodedText& text) {
        if (m_entries.empty())
            throw Error(m_refused > 0 ? "取り込める日記がありません。\n" + refusedNote()
                                      : "Movable Typeの形式のテキストではありません。");
        // Our own file has the entries of a day in their order; others have the newest first, or in any.
        std::stable_sort(m_entries.begin(), m_entries.end(), [&](const Entry& left, const Entry& right) {
            return left.day != right.day ? left.day < right.day : !m_isOwn && left.publishTime < right.publishTime;
        });
        std::string notes = std::string("文字コード: ") + nameOf(text.encoding) + "\n";
        notes += counted("読めない文字", int64_t(text.replaced), "個", " (「\uFFFD」に置きかえます)");
        const std::string losses = m_losses.text();
        notes += losses.empty() ? "" : losses + "\n";
        notes +=
            counted("追記の後ろに入れるコメントとトラックバック", m_kept, "件", " (メールとIPのアドレスは除きます)");
        notes += counted("タグに直さないMarkdownなどの本文", m_markdown, "件", "");
        notes += counted("非公開にする日記", m_privates, "件", m_isOwn ? "" : " (下書きなど、公開でないもの)");
        notes += refusedNote();
        if (!m_isClosed)
            notes += "最後の日記に終わりの印「--------」がありません。ファイルが途中で切れているかもしれません。\n";
        notes.pop_back();
        return {std::move(m_entries), notes};
    }

private:
    void refuse(const EntryParts& parts) {
        const std::string* title = parts.value("TITLE");
        const std::string* date = parts.value("DATE");
        if (!title && !date && !parts.value("AUTHOR") && !parts.value("STATUS")) {
            m_losses.count("日記でない部分");
            return;
        }
        ++m_refused;
        if (m_refused <= kNamedEntries)
            m_refusedNames += "\n  「" + shortened(title ? *title : "") + "」 " +
                              (date ? "DATE: " + shortened(*date) : std::string("DATEがありません"));
    }

    std::string refusedNote() const {
        return counted("正しい日付がないため取り込まない日記", int64_t(m_refused), "件",
                       m_refusedNames + (m_refused > kNamedEntries ? "\n  …" : ""));
    }

    Entry* entryAt(const EntryParts& parts) {
        const std::string* date = parts.value("DATE");
        const auto found = date ? m_byDate.find(*date) : m_byDate.end();
        return found == m_byDate.end() ? nullptr : &m_entries[found->second];
    }

    /// `entry` is null when they belong to none.
    void takeComments(const EntryParts& parts, Entry* entry) {
        std::string text;
        for (const Piece& piece : parts.pieces) {
            const bool isPing = piece.name == "PING";
            if (!isPing && piece.name != "COMMENT")
                continue;
            if (!entry || !(isPing ? m_options.keepsPings : m_options.keepsComments)) {
                m_losses.count(isPing ? "トラックバック" : "コメント");
                continue;
            }
            ++m_kept;
            for (const char c : "\n" + commentText(piece))
                text.append(c == '\n' ? "\r" : "") += c;
        }
        if (text.empty())
            return;
        if (entry->extend && !entry->extend->empty())
            *entry->extend += text;
        else
            entry->extend = text.substr(2);
    }

    void countLosses(const EntryParts& parts) {
        std::set<std::string> categories;
        std::set<std::string> names;
        for (const Key& key : parts.head)
            countKey(key, categories, names);
        m_losses.count("2番目からのカテゴリー", std::max(int64_t(categories.size()) - 1, int64_t(0)));
        for (const Piece& piece : parts.pieces) {
            const bool isEmpty = piece.text.find_first_not_of(" \t\n") == std::string::npos;
            if (piece.name == "KEYWORDS" && !isEmpty)
                m_losses.count("キーワードの欄");
            else if (piece.name.starts_with("CF50_") && !isEmpty)
                m_losses.count("カスタムフィールド");
        }
    }

    void countKey(const Key& key, std::set<std::string>& categories, std::set<std::string>& names) {
        static const std::set<std::string> kKnown = {"TITLE",       "BASENAME",       "STATUS",       "ALLOW COMMENTS",
                                                     "ALLOW PINGS", "CONVERT BREAKS", "DATE",         "UNIQUE URL",
                                                     "START BODY",  "AUTHOR",         "AUTHOR EMAIL", "VELLORIA TEXT"};
        if (key.name.starts_with(kExactPrefix) || key.value.empty())
            return;
        if (key.name == "AUTHOR" && m_authors.insert(key.value).second && m_authors.size() > 1)
            m_losses.count("2人目からの著者の名前");
        else if (key.name == "CATEGORY" || key.name == "PRIMARY CATEGORY")
            categories.insert(key.value);
        else if (key.name == "TAGS")
            m_losses.count("タグの欄");
        else if (key.name == "IMAGE")
            m_losses.count("画像のアドレス");
        else if (key.name == "CONVERT BREAKS")
            m_markdown += key.value.starts_with("markdown") || key.value.starts_with("textile");
        else if (!kKnown.contains(key.name))
            m_losses.count("知らない項目");
        else if (!names.insert(key.name).second)
            m_losses.count("同じ名前の2番目からの項目");
    }

    const ReadingOptions& m_options;
    std::vector<Entry> m_entries;
    std::map<std::string, std::size_t> m_byDate;
    std::set<std::string> m_authors;
    Losses m_losses;
    std::string m_refusedNames;
    std::size_t m_refused = 0;
    int64_t m_privates = 0;
    int64_t m_markdown = 0;
    int64_t m_kept = 0;
    bool m_isOwn = true; ///< all of them
    bool m_isClosed = true;
};

} // namespace

ReadDiary readMovableType(std::string_view bytes, const ReadingOptions& options, const std::function<void()>& pump) {
    const DecodedText text = decoded(bytes);
    Reading reading(options);
    FileParts parts(text.utf8);
    while (const std::optional<EntryParts> entry = parts.next()) {
        reading.take(*entry);
        pump();
    }
    return reading.result(text);
}

} // namespace velloria::plugins::larkport
