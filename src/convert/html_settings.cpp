#include "convert/html_settings.h"

#include <algorithm>

namespace velloria::convert {
namespace {

using S = HtmlSettings;

// The section HTML belongs to text mode and HTML2HTML to HTML mode.
constexpr HtmlSetting kTable[] = {
    {u"HTML2HTML", u"BR", 0, u"HTML_BR", &S::htmlBr},
    {u"HTML2HTML", u"P", 0, u"HTML_P", &S::htmlP},
    {u"HTML2HTML", u"XMP", 0, u"HTML_XMP", &S::htmlXmp},
    {u"HTML2HTML", u"SPAN", 0, u"HTML_SPAN", &S::htmlSpan},
    {u"HTML2HTML", u"S", 0, u"HTML_S", &S::htmlS},
    {u"HTML2HTML", u"SUP", 0, u"HTML_SUP", &S::htmlSup},
    {u"HTML2HTML", u"SUB", 0, u"HTML_SUB", &S::htmlSub},
    {u"HTML2HTML", u"TT", 0, u"HTML_TT", &S::htmlTt},
    {u"HTML2HTML", u"PRE", 0, u"HTML_PRE", &S::htmlPre},
    {u"HTML2HTML", u"BLOCKQUOTE", 0, u"HTML_BLOCKQUOTE", &S::htmlBlockquote},
    {u"HTML2HTML", u"HR", 0, u"HTML_HR", &S::htmlHr},
    {u"HTML2HTML", u"HR_Num", 0, u"HTML_HR_Num", &S::htmlHrNumber},
    {u"HTML2HTML", u"TABLE", 0, u"HTML_TABLE", &S::htmlTable},
    {u"HTML2HTML", u"LIST", 0, u"HTML_LIST", &S::htmlList},
    {u"HTML2HTML", u"A", 0, u"HTML_A", &S::htmlA},
    {u"HTML2HTML", u"EM", 0, u"HTML_EM", &S::htmlEm},
    {u"HTML2HTML", u"STRONG", 0, u"HTML_STRONG", &S::htmlStrong},
    {u"HTML2HTML", u"INS", 0, u"HTML_INS", &S::htmlIns},
    {u"HTML2HTML", u"DEL", 0, u"HTML_DEL", &S::htmlDel},
    {u"HTML2HTML", u"Q", 0, u"HTML_Q", &S::htmlQ},
    {u"HTML2HTML", u"U", 0, u"HTML_U", &S::htmlU},
    {u"HTML2HTML", u"I", 0, u"HTML_I", &S::htmlI},
    {u"HTML2HTML", u"B", 0, u"HTML_B", &S::htmlB},
    {u"HTML", u"HR", 1, u"HR", &S::textHr},
    {u"HR", u"NUM", 5, u"HR_NUM", &S::textHrNumber},
    {u"HTML", u"BR", 1, u"BR", &S::textBr},
    {u"HTML", u"P", 1, u"P", &S::textP},
    {u"HTML", u"IMG", 1, u"IMG", &S::textImg},
    {u"HTML", u"ANAME", 1, u"ANAME", &S::textAName},
    {u"HTML", u"AHREF", 1, u"AHREF", &S::textAHref},
    {u"HTML", u"AHREFSharp", 1, u"AHREFSharp", &S::textAHrefSharp},
    {u"GENERAL", u"ENTER", 1, u"ENTER", &S::enter},
    {u"GENERAL", u"A_LINK_TAG_TYPE", 1, u"A_LINK_TAG_TYPE", &S::linkTagType},
    {u"", u"", 0, u"PBR", &S::paragraphBreak},
};

} // namespace

std::span<const HtmlSetting> htmlSettingTable() {
    return kTable;
}

const HtmlSetting* findHtmlSetting(QStringView name) {
    const auto* row = std::ranges::find(kTable, name, &HtmlSetting::name);
    return row == std::end(kTable) ? nullptr : row;
}

} // namespace velloria::convert
