#include "exchange/formats/markdown_html.h"

#include "platform/utf8.h"

#include <cmark-gfm-core-extensions.h>
#include <cmark-gfm.h>

#include <algorithm>
#include <cstdlib>
#include <memory>

namespace velloria::exchange {
namespace {

using Parser = std::unique_ptr<cmark_parser, decltype(&cmark_parser_free)>;
using Node = std::unique_ptr<cmark_node, decltype(&cmark_node_free)>;
using Html = std::unique_ptr<char, decltype(&std::free)>;

/// The library gives each row of a table all the cells that its head has: such a head is no table of a person's.
constexpr qsizetype kMostColumns = 1000;

bool hasAbsurdTable(const QByteArray& markdown) {
    for (qsizetype begin = 0; begin < markdown.size();) {
        qsizetype end = markdown.indexOf('\n', begin);
        if (end < 0)
            end = markdown.size();
        if (std::count(markdown.begin() + begin, markdown.begin() + end, '|') > kMostColumns)
            return true;
        begin = end + 1;
    }
    return false;
}

} // namespace

QString htmlOfMarkdown(const QString& markdown, LineBreaks breaks) {
    cmark_gfm_core_extensions_ensure_registered();
    const int options =
        CMARK_OPT_UNSAFE | CMARK_OPT_FOOTNOTES | (breaks == LineBreaks::Breaks ? CMARK_OPT_HARDBREAKS : 0);
    const QByteArray source = markdown.toUtf8();
    const Parser parser(cmark_parser_new(options), &cmark_parser_free);
    for (const char* name : {"table", "strikethrough", "autolink", "tasklist"}) {
        if (name != std::string_view("table") || !hasAbsurdTable(source))
            cmark_parser_attach_syntax_extension(parser.get(), cmark_find_syntax_extension(name));
    }
    cmark_parser_feed(parser.get(), source.constData(), std::size_t(source.size()));
    const Node document(cmark_parser_finish(parser.get()), &cmark_node_free);
    const Html html(cmark_render_html(document.get(), options, cmark_parser_get_syntax_extensions(parser.get())),
                    &std::free);
    return platform::fromUtf8(html.get());
}

} // namespace velloria::exchange
