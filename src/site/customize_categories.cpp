#include "site/customize_categories.h"

#include "core/site_keys.h"

namespace velloria::site {
namespace {

namespace keys = core::keys;
using Panel = CustomizePanel;

constexpr CustomizeCategory kCategories[] = {
    {u"全般", Panel::General},
    {u"Head", Panel::Head, &keys::general::kHeadTag, nullptr, true},
    {u"Head(分割用)", Panel::Head, &keys::general::kHeadTagDiv},
    {u"Body", Panel::Body},
    {u"上下追加テキスト", Panel::HeadFoot, &keys::body::kUpText, &keys::body::kDownText, true},
    {u"上下追加テキスト(分割用)", Panel::HeadFoot, &keys::body::kUpTextDiv, &keys::body::kDownTextDiv},
    {u"上下追加テキスト(Log)", Panel::HeadFoot, &keys::body::kUpTextLog, &keys::body::kDownTextLog, true},
    {u"上下追加テキスト(分割用Log)", Panel::HeadFoot, &keys::body::kUpTextDivLog, &keys::body::kDownTextDivLog},
    {u"Calender", Panel::Calender},
    {u"本文", Panel::Contents},
    {u"ページ間移動リンク", Panel::PageMoveLink},
    {u"左側フレーム", Panel::CalenderFrame},
    {u"左側フレーム(Head)", Panel::Head, &keys::calender_window::kHeadTag},
    {u"左側フレーム(上下追加テキスト)", Panel::HeadFoot, &keys::calender_window::kUpText,
     &keys::calender_window::kDownText},
};

} // namespace

std::span<const CustomizeCategory> customizeCategories() {
    return kCategories;
}

} // namespace velloria::site
