#include "vellinfo/page.h"

#include "vellinfo/html.h"
#include "vellinfo/sections.h"
#include "vellinfo/style.h"

namespace velloria::plugins::vellinfo {
namespace {

struct Section {
    const char* id;
    const char* title;
    std::string (*make)(const Diary&, const Figures&);
};

constexpr Section kSections[] = {
    {"totals", "全体", totalsSection},
    {"months", "年と月", monthsSection},
    {"calendar", "カレンダー", calendarSection},
    {"hours", "曜日と時刻", hoursSection},
    {"genres", "ジャンル", genresSection},
    {"weathers", "天気", weathersSection},
    {"records", "連続・長い日記・短い日記", recordsSection},
    {"words", "よく使う言葉", wordsSection},
    {"pictures", "画像とファイル", picturesSection},
    {"private", "公開と非公開", privateSection},
};

// Nothing is loaded and no script runs, whatever a title may hold.
constexpr char kHead[] = R"html(<!DOCTYPE html>
<html lang="ja" xmlns="http://www.w3.org/1999/xhtml">
<head>
<meta charset="utf-8"/>
<meta name="viewport" content="width=device-width, initial-scale=1"/>
<meta name="color-scheme" content="light dark"/>
<meta http-equiv="Content-Security-Policy" content="default-src 'none'; style-src 'unsafe-inline'"/>
<title>日記情報</title>
<style>)html";

constexpr char kEnd[] = "</body>\n</html>\n";

std::string sections(const Diary& diary) {
    const Figures figures(diary);
    std::string html = "<nav aria-label=\"目次\"><ul>";
    for (const Section& section : kSections)
        html += std::string("<li><a href=\"#") + section.id + "\">" + section.title + "</a></li>";
    html += "</ul></nav>\n<main>\n";
    for (const Section& section : kSections)
        html += std::string("<section id=\"") + section.id + "\" aria-labelledby=\"h-" + section.id +
                "\">\n<h2 id=\"h-" + section.id + "\">" + section.title + "</h2>\n" + section.make(diary, figures) +
                "</section>\n";
    return html + "</main>\n";
}

} // namespace

std::string makePage(const Diary& diary) {
    std::string html = std::string(kHead) + kStyle + "</style>\n</head>\n<body>\n<h1>日記情報</h1>\n";
    if (diary.notes.empty())
        html += "<main><p>日記はまだありません。日記を書いて保存してから、もう一度「日記情報表示」を選んでください。</"
                "p></main>\n";
    else
        html += sections(diary);
    return html + kEnd;
}

} // namespace velloria::plugins::vellinfo
