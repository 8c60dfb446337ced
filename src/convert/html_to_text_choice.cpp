#include "convert/html_to_text_choice.h"

#include "convert/html_to_text.h"
#include "platform/failure.h"

#include <algorithm>

using namespace Qt::StringLiterals;

namespace velloria::convert {
namespace {

constexpr QStringView kTags[] = {u"BR", u"P",   u"XMP",        u"SPAN", u"S",     u"SUP", u"SUB",
                                 u"TT", u"PRE", u"BLOCKQUOTE", u"HR",   u"TABLE", u"LIST"};
constexpr QStringView kBoxes[] = {u"HR", u"BR", u"P", u"IMG", u"ANAME", u"AHREF", u"AHREFSharp", u"ENTER"};

QString tagName(QStringView tag) {
    return u"HTML_"_s + tag.toString();
}

bool isSame(const clsHTML2TEXT& left, const clsHTML2TEXT& right) {
    return left.GetValue(u"MODE"_s) == right.GetValue(u"MODE"_s) &&
           std::ranges::all_of(htmlSettingTable(), [&](const HtmlSetting& row) {
               const QString name = row.name.toString();
               return left.GetValue(name) == right.GetValue(name);
           });
}

} // namespace

std::span<const QStringView> listedHtmlTags() {
    return kTags;
}

std::span<const QStringView> textModeBoxes() {
    return kBoxes;
}

HtmlToTextChoice::HtmlToTextChoice()
    : ruleLength(std::ranges::find(htmlSettingTable(), &HtmlSettings::textHrNumber, &HtmlSetting::number)
                     ->setting.whenMissing.toString()) {
    textBoxes.fill(true);
}

std::optional<HtmlToTextChoice> readHtmlToTextChoice(const QString& file) {
    clsHTML2TEXT settings;
    try {
        if (!settings.Initialize(file))
            return std::nullopt;
    } catch (const platform::Failure&) {
        return std::nullopt;
    }
    const auto isOn = [&](const QString& name) { return settings.GetValue(name) != u"0"_s; };
    HtmlToTextChoice choice;
    choice.isTextMode = settings.GetValue(u"MODE"_s) == u"TEXT"_s;
    for (std::size_t i = 0; i < std::size(kTags); ++i)
        choice.htmlTags[i] = isOn(tagName(kTags[i]));
    for (std::size_t i = 0; i < std::size(kBoxes); ++i)
        choice.textBoxes[i] = isOn(kBoxes[i].toString());
    choice.ruleLength = settings.GetValue(u"HR_NUM"_s);
    choice.linkTagType = settings.GetValue(u"A_LINK_TAG_TYPE"_s).toInt();
    return choice;
}

bool saveHtmlToTextChoice(const QString& file, const HtmlToTextChoice& choice) {
    clsHTML2TEXT settings;
    settings.SetValue(u"MODE"_s, choice.isTextMode ? u"TEXT"_s : u"HTML"_s);
    for (std::size_t i = 0; i < std::size(kTags); ++i)
        settings.SetValue(tagName(kTags[i]), choice.htmlTags[i] ? u"-1"_s : u"0"_s);
    settings.SetValue(u"HR_NUM"_s, choice.ruleLength);
    for (std::size_t i = 0; i < std::size(kBoxes); ++i)
        settings.SetValue(kBoxes[i].toString(), choice.textBoxes[i] ? u"1"_s : u"0"_s);
    settings.SetValue(u"A_LINK_TAG_TYPE"_s, QString::number(choice.linkTagType));
    if (!settings.SaveValue(file))
        return false;
    // Single keys are written without a word when the machine refuses.
    clsHTML2TEXT written;
    return written.Initialize(file) && isSame(written, settings);
}

} // namespace velloria::convert
