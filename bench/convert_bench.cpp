// Throughput of the converters. Bytes are those of the input's UTF-8 form.
#include "convert/html_to_text.h"
#include "convert/url_encoding.h"

#include <benchmark/benchmark.h>

#include <initializer_list>

using namespace Qt::StringLiterals;
using namespace velloria::convert;

namespace {

/// An entry as people write it by hand: Japanese text in lines, paragraphs, links, an image, a list, entities.
const QString kEntry =
    u"<p class=\"lead\">今日は朝から雨が降っていたので、家で<b>本</b>を読んで過ごした。昼すぎに"
    "<a href=\"http://www.example.com/diary/200405.htm#2004/05/06_1\">先週の日記</a>を読み返す。</p>\r\n"
    "<p>夕方になってやっと晴れたので、川沿いの道を駅まで歩く。途中で見つけた喫茶店の珈琲がおいしかった。<br />\r\n"
    "写真は店の窓から見えた桜の木。もう葉桜になっている。<br />\r\n"
    "<img src=\"./DiaryParts/sakura.jpg\" width=\"320\" height=\"240\" alt=\"葉桜\" /></p>\r\n"
    "\r\n"
    "<ul>\r\n<li>牛乳と卵 &amp; パン</li>\r\n<li>切手(80円 &lt; 90円)</li>\r\n</ul>\r\n"
    "<hr>\r\n"
    "Memo: <span style=\"color:#993333\">the server moved to a new address</span>, the old one stays until "
    "June.<BR>\r\n"
    "家に帰ってから、去年の同じ日の日記を見ると、やはり雨だった。来年の今日はどこで何をしているだろうか。<BR>\r\n"_s;

const QString kHtml = kEntry.repeated(8'000);
const qint64 kHtmlBytes = kHtml.toUtf8().size();

clsHTML2TEXT converter(const QString& mode, std::initializer_list<const char*> flags) {
    clsHTML2TEXT result;
    result.SetValue(u"MODE"_s, mode);
    for (const char* flag : flags)
        result.SetValue(QString::fromLatin1(flag), u"1"_s);
    return result;
}

void convertHtml(benchmark::State& state, const clsHTML2TEXT& html2text) {
    for (auto _ : state) {
        QString text = kHtml;
        benchmark::DoNotOptimize(html2text.Execute(text));
    }
    state.SetBytesProcessed(state.iterations() * kHtmlBytes);
}

void htmlToText(benchmark::State& state) {
    convertHtml(state,
                converter(u"TEXT"_s, {"ENTER", "HR", "HR_NUM", "BR", "P", "IMG", "ANAME", "AHREF", "AHREFSharp"}));
}
BENCHMARK(htmlToText)->Unit(benchmark::kMillisecond);

void htmlToTextWithoutLineBreaks(benchmark::State& state) {
    convertHtml(state, converter(u"TEXT"_s, {"PBR", "BR", "P", "IMG", "AHREF"}));
}
BENCHMARK(htmlToTextWithoutLineBreaks)->Unit(benchmark::kMillisecond);

void htmlToHtmlAllKept(benchmark::State& state) {
    convertHtml(state, converter(u"HTML"_s, {"ENTER"}));
}
BENCHMARK(htmlToHtmlAllKept)->Unit(benchmark::kMillisecond);

void htmlToHtmlAllDropped(benchmark::State& state) {
    convertHtml(state, converter(u"HTML"_s,
                                 {"ENTER",       "HTML_BR",    "HTML_P",    "HTML_XMP", "HTML_SPAN",       "HTML_S",
                                  "HTML_SUP",    "HTML_SUB",   "HTML_TT",   "HTML_PRE", "HTML_BLOCKQUOTE", "HTML_HR",
                                  "HTML_HR_Num", "HTML_TABLE", "HTML_LIST", "HTML_EM",  "HTML_STRONG",     "HTML_INS",
                                  "HTML_DEL",    "HTML_Q",     "HTML_U"}));
}
BENCHMARK(htmlToHtmlAllDropped)->Unit(benchmark::kMillisecond);

/// Only text goes into a query, half Japanese and half ASCII by characters. 0.9 MB: results up to 32 MB are kept from
/// one round to the next by the C library, so that the encoders are measured and not the kernel's fresh pages.
const QString kQuery = u"日記サイトの作り方 how to write a diary, 2004/05/06 ﾍﾞﾛﾘｱ 「葉桜」~100% "_s.repeated(10'000);
const qint64 kQueryBytes = kQuery.toUtf8().size();

void encodeQuery(benchmark::State& state, QString (*encode)(const QString&)) {
    for (auto _ : state)
        benchmark::DoNotOptimize(encode(kQuery));
    state.SetBytesProcessed(state.iterations() * kQueryBytes);
}
BENCHMARK_CAPTURE(encodeQuery, ShiftJis, ModURLEncode)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(encodeQuery, EucJp, ModURLEncodeEUC)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(encodeQuery, Utf8, ModURLEncodeUTF8)->Unit(benchmark::kMillisecond);

} // namespace

BENCHMARK_MAIN();
