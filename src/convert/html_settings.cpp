#include "convert/html_settings.h"

#include "core/settings.h"

#include <algorithm>

namespace velloria::convert {
namespace {

using S = HtmlSettings;

constexpr core::SettingsSection kToHtml{core::SettingsFile::HtmlToText, u"HTML2HTML"}; ///< what goes in HTML mode
constexpr core::SettingsSection kToText{core::SettingsFile::HtmlToText, u"HTML"};      ///< what stays in text mode
constexpr core::SettingsSection kRule{core::SettingsFile::HtmlToText, u"HR"};
constexpr core::SettingsSection kGeneral{core::SettingsFile::HtmlToText, u"GENERAL"};

constexpr HtmlSetting kTable[] = {
    {kToHtml.number(u"BR"), u"HTML_BR", &S::htmlBr},
    {kToHtml.number(u"P"), u"HTML_P", &S::htmlP},
    {kToHtml.number(u"XMP"), u"HTML_XMP", &S::htmlXmp},
    {kToHtml.number(u"SPAN"), u"HTML_SPAN", &S::htmlSpan},
    {kToHtml.number(u"S"), u"HTML_S", &S::htmlS},
    {kToHtml.number(u"SUP"), u"HTML_SUP", &S::htmlSup},
    {kToHtml.number(u"SUB"), u"HTML_SUB", &S::htmlSub},
    {kToHtml.number(u"TT"), u"HTML_TT", &S::htmlTt},
    {kToHtml.number(u"PRE"), u"HTML_PRE", &S::htmlPre},
    {kToHtml.number(u"BLOCKQUOTE"), u"HTML_BLOCKQUOTE", &S::htmlBlockquote},
    {kToHtml.number(u"HR"), u"HTML_HR", &S::htmlHr},
    {kToHtml.number(u"HR_Num"), u"HTML_HR_Num", &S::htmlHrNumber},
    {kToHtml.number(u"TABLE"), u"HTML_TABLE", &S::htmlTable},
    {kToHtml.number(u"LIST"), u"HTML_LIST", &S::htmlList},
    {kToHtml.number(u"A"), u"HTML_A", &S::htmlA},
    {kToHtml.number(u"EM"), u"HTML_EM", &S::htmlEm},
    {kToHtml.number(u"STRONG"), u"HTML_STRONG", &S::htmlStrong},
    {kToHtml.number(u"INS"), u"HTML_INS", &S::htmlIns},
    {kToHtml.number(u"DEL"), u"HTML_DEL", &S::htmlDel},
    {kToHtml.number(u"Q"), u"HTML_Q", &S::htmlQ},
    {kToHtml.number(u"U"), u"HTML_U", &S::htmlU},
    {kToHtml.number(u"I"), u"HTML_I", &S::htmlI},
    {kToHtml.number(u"B"), u"HTML_B", &S::htmlB},
    {kToText.number(u"HR", u"1"), u"HR", &S::textHr},
    {kRule.number(u"NUM", u"5"), u"HR_NUM", &S::textHrNumber},
    {kToText.number(u"BR", u"1"), u"BR", &S::textBr},
    {kToText.number(u"P", u"1"), u"P", &S::textP},
    {kToText.number(u"IMG", u"1"), u"IMG", &S::textImg},
    {kToText.number(u"ANAME", u"1"), u"ANAME", &S::textAName},
    {kToText.number(u"AHREF", u"1"), u"AHREF", &S::textAHref},
    {kToText.number(u"AHREFSharp", u"1"), u"AHREFSharp", &S::textAHrefSharp},
    {kGeneral.number(u"ENTER", u"1"), u"ENTER", &S::enter},
    {kGeneral.number(u"A_LINK_TAG_TYPE", u"1"), u"A_LINK_TAG_TYPE", &S::linkTagType},
};

} // namespace

std::span<const HtmlSetting> htmlSettingTable() {
    return kTable;
}

qint16 HtmlSettings::*findHtmlNumber(QStringView name) {
    if (name == u"PBR")
        return &S::paragraphBreak;
    const auto* row = std::ranges::find(kTable, name, &HtmlSetting::name);
    return row == std::end(kTable) ? nullptr : row->number;
}

} // namespace velloria::convert
