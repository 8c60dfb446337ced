#include "vellinfo/sections.h"

#include "vellinfo/charts.h"
#include "vellinfo/html.h"

namespace velloria::plugins::vellinfo {
namespace {

constexpr std::size_t kWordsShown = 20;

/// Words that stand in most entries and tell nothing of them.
const std::vector<std::string_view> kLeftOutKanji{"今日", "昨日", "明日", "今回", "本日", "自分"};
const std::vector<std::string_view> kLeftOutLatin{
    "the", "an", "and", "or",   "but",  "of",   "to",   "in",   "on",    "at",  "for",  "with", "from",  "by",
    "as",  "is", "are", "was",  "were", "be",   "been", "am",   "it",    "its", "this", "that", "these", "those",
    "my",  "me", "we",  "you",  "he",   "she",  "they", "his",  "her",   "our", "your", "not",  "no",    "do",
    "did", "so", "if",  "then", "had",  "have", "has",  "http", "https", "www", "com",  "jp",   "html",  "htm"};

std::string tile(const char* id, const char* name, const std::string& value) {
    return std::string("<div><dt>") + name + "</dt><dd id=\"" + id + "\">" + value + "</dd></div>\n";
}

std::string paragraph(const std::string& text) {
    return "<p>" + text + "</p>\n";
}

std::string counted(const std::string& text) {
    return "<p class=\"counted\">" + text + "</p>\n";
}

std::string joined(const std::vector<std::string_view>& words) {
    std::string text;
    for (const std::string_view word : words)
        text += (text.empty() ? "" : " ") + std::string(word);
    return text;
}

} // namespace

std::string dayLink(const std::string& day, std::int64_t number) {
    constexpr std::int64_t kMostNumber = 999'999;
    if (dayOf(day) == kNoDay || number < 1 || number > kMostNumber)
        return day.empty() ? "（日付なし）" : escaped(day);
    return "<a href=\"event:" + day + "_" + std::to_string(number) + "\" title=\"この日記を編集画面で開きます\">" +
           day + "</a>";
}

std::string totalsSection(const Diary&, const Figures& figures) {
    const Sum& total = figures.total;
    std::string html = "<dl class=\"tiles\">\n" + tile("entries", "日記", number(total.entries) + "件") +
                       tile("days", "日記のある日", number(total.days) + "日") +
                       tile("characters", "文字", number(total.characters) + "字") +
                       tile("average", "1件あたり", number(total.characters / total.entries) + "字");
    if (!figures.byDay.empty()) {
        const Day first = figures.byDay.begin()->first;
        const Day last = figures.byDay.rbegin()->first;
        const auto span = static_cast<std::uint64_t>(last - first + 1);
        html += tile("first", "最初の日", dayLink(textOf(first), 1)) +
                tile("last", "最後の日", dayLink(textOf(last), 1)) + tile("span", "その間の日数", number(span) + "日") +
                tile("kept", "書いた日の割合", percent(total.days, span));
    }
    html += "</dl>\n";
    if (figures.undated.entries > 0)
        html += paragraph("日付として読めない日記が<span id=\"undated\">" + number(figures.undated.entries) +
                          "</span>件あります。合計には入っていますが、年月・カレンダー・曜日には入っていません。"
                          "velloria-cli の「db check」で調べられます。");
    return html +
           counted(
               "文字は「内容」と「追記」の、目に見える文字の数です。タグ・コメント・スクリプト・スタイルは除き、文字参"
               "照は"
               "一字に直し、空白と改行は数えません。濁点などの結合文字と異体字セレクタは、前の文字と合わせて一字です。"
               "タイトルと「概要」は数えません。日付を押すと、Velloriaの編集画面でその日記を開きます。");
}

std::string recordsSection(const Diary& diary, const Figures& figures) {
    Table runs{"t-runs", "続けて書いた日数の長いもの", {"日数", "最初の日", "最後の日"}, {}, {}};
    for (const Run& run : figures.longestRuns)
        runs.rows.push_back({number(static_cast<std::uint64_t>(run.days())) + "日", dayLink(textOf(run.first), 1),
                             dayLink(textOf(run.last), 1)});
    const auto notes = [](const char* id, const char* caption, const std::vector<NamedNote>& named) {
        Table table{id, caption, {"文字", "日付", "タイトル"}, {}, {}};
        for (const NamedNote& note : named) {
            const std::string mark = note.isPrivate ? "<span class=\"private\">非公開</span> " : "";
            const std::string title = note.title.empty() ? "（無題）" : escaped(note.title);
            table.rows.push_back(
                {number(note.characters) + "字", dayLink(note.day, note.number), mark + "<bdi>" + title + "</bdi>"});
        }
        return table;
    };
    std::string html = "<h3>続いた日</h3>\n" + printed(runs, "texts");
    if (runs.rows.empty())
        html = paragraph("日付のわかる日記がありません。");
    const auto add = [&](const char* title, const Table& table) {
        html += std::string("<h3>") + title + "</h3>\n";
        html += table.rows.empty() ? paragraph("文字のある日記がありません。") : printed(table, "texts");
    };
    add("長い日記", notes("t-longest", "文字の多い日記", diary.longest));
    add("短い日記", notes("t-shortest", "文字の少ない日記（文字のないものを除く）", diary.shortest));
    return html;
}

std::string wordsSection(const Diary& diary, const Figures&) {
    const auto words = [&](const char* id, const std::string& title, WordKind kind,
                           const std::vector<std::string_view>& leftOut) {
        const std::vector<Word> found = diary.words.top(kind, kWordsShown, leftOut);
        std::string html = "<div><h3>" + title + "</h3>\n";
        if (found.empty())
            return html + paragraph("ありません。") + "</div>\n";
        std::vector<Column> bars;
        Table table{id, title, {"言葉", "回数"}, {}, {}};
        for (const Word& word : found) {
            bars.push_back({word.text, word.count});
            table.rows.push_back({escaped(word.text), number(word.count)});
        }
        const std::string told = "いちばん多いのは「" + found[0].text + "」で" + number(found[0].count) + "回です。";
        return html + barChart({"よく使う言葉（" + title + "）", told}, bars, Shares::Hidden) + folded(table) +
               "</div>\n";
    };
    std::string html = "<div class=\"pair\">\n" + words("t-kanji", "漢字", WordKind::Kanji, kLeftOutKanji) +
                       words("t-katakana", "カタカナ", WordKind::Katakana, {}) +
                       words("t-latin", "英字", WordKind::Latin, kLeftOutLatin) + "</div>\n";
    html += counted(
        "文法を調べて分けたものではありません。「内容」と「追記」から、漢字だけ、カタカナだけ、英字（途中の数字と"
        "アポストロフィを含む）だけが、" +
        std::to_string(kShortestWord) + "字から" + std::to_string(kLongestWord) +
        "字まで続くところを一語としています。「食べ物」のような漢字一字とかなの言葉、ひらがなの言葉は数えません。"
        "続いた漢字は「東京都内」のようにまとめて一語です。英字は小文字にそろえ、全角と半角を区別しません。");
    html += counted("数えても並べない語: " + joined(kLeftOutKanji) + " / " + joined(kLeftOutLatin));
    if (diary.words.greatestLoss() > 0)
        html += counted("言葉の種類がとても多いので、数の少ないものは途中で忘れました。回数は、最大で" +
                        number(diary.words.greatestLoss()) + "回少なく出ていることがあります。");
    return html;
}

std::string picturesSection(const Diary& diary, const Figures& figures) {
    std::uint64_t withPictures = 0;
    for (const Note& note : diary.notes)
        withPictures += note.pictures > 0;
    return "<dl class=\"tiles\">\n" +
           tile("pictures-count", "本文の画像（IMGタグ）", number(figures.total.pictures) + "枚") +
           tile("pictures-entries", "画像のある日記", number(withPictures) + "件") +
           tile("files", "登録したファイル", number(diary.files.names) + "個") +
           tile("files-pictures", "そのうち画像", number(diary.files.pictures) + "個") +
           tile("files-days", "そのうち日記に付くもの", number(diary.files.ofEntries) + "個") + "</dl>\n" +
           counted("画像は「内容」と「追記」のIMGタグの数です。登録したファイルは名前ごとに一個と数え、画像かどうかは"
                   "名前の終わり（jpg、png、gif など）で決めます。年ごとの画像の数は「年と月」の表にあります。");
}

std::string privateSection(const Diary&, const Figures& figures) {
    const Sum& total = figures.total;
    const auto row = [&](const char* name, std::uint64_t entries, std::uint64_t characters) {
        return std::vector<std::string>{name, number(entries), percent(entries, total.entries), number(characters),
                                        percent(characters, total.characters)};
    };
    const std::uint64_t open = total.entries - total.privateEntries;
    const Table table{"t-private",
                      "公開と非公開の割合",
                      {"", "日記", "割合", "文字", "割合"},
                      {row("公開", open, total.characters - total.privateCharacters),
                       row("非公開", total.privateEntries, total.privateCharacters)},
                      row("計", total.entries, total.characters)};
    const std::string told = "公開" + number(open) + "件、非公開" + number(total.privateEntries) + "件。";
    return barChart({"公開と非公開の割合", told}, {{"公開", open}, {"非公開", total.privateEntries}}, Shares::Shown) +
           folded(table) +
           counted("このページはこのコンピューターだけのもので、非公開の日記も数えています。サイトには送られません。");
}

} // namespace velloria::plugins::vellinfo
