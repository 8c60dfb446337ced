#include "editor/makers.h"

#include "core/numbers.h"
#include "platform/failure.h"

#include <array>

using namespace Qt::StringLiterals;

namespace velloria::editor {
namespace {

constexpr int kFullWidth = 100;
constexpr QLatin1StringView kItem("<li>");

/// "disk" stands in the pages of all these years.
QString markType(int mark) {
    constexpr std::array<QLatin1StringView, 3> kTypes{"disk"_L1, "circle"_L1, "square"_L1};
    return mark >= 0 && std::size_t(mark) < kTypes.size() ? QString(kTypes[std::size_t(mark)]) : QString();
}

/// By the digit that is typed: an item that is picked from the list is none of these texts and leaves the type empty.
QString numberType(const QString& numbering) {
    constexpr std::array<QLatin1StringView, 5> kTypes{"1"_L1, "I"_L1, "i"_L1, "A"_L1, "a"_L1};
    for (std::size_t i = 0; i < kTypes.size(); ++i) {
        if (numbering == QString::number(i))
            return kTypes[i];
    }
    return {};
}

void refuseNoNumber(const QString& text) {
    if (!core::numericValue(text))
        throw platform::Failure(u"リストを作れません。"_s, {}, u"開始番号「%1」は数値ではありません。"_s.arg(text),
                                u"開始番号に数値を入力してください。"_s);
}

/// The failure says which box it is.
int wholeNumber(const QString& box, const QString& text) {
    try {
        return core::cint(text);
    } catch (platform::Failure& failure) {
        failure.addStage(box);
        throw;
    }
}

QString attribute(QLatin1StringView name, const QString& value) {
    return value.isEmpty() ? QString() : u' ' + name + u"=\""_s + value + u'"';
}

} // namespace

QString listTag(const ListBoxes& boxes) {
    const bool isNumbered = boxes.kind == ListKind::Numbers;
    if (isNumbered)
        refuseNoNumber(boxes.start);
    const QString opening = isNumbered ? u"<OL TYPE='"_s + numberType(boxes.numbering) + u"' START='"_s + boxes.start
                                       : u"<UL TYPE='"_s + markType(boxes.mark);
    QString items = boxes.contents;
    items.replace("\r\n"_L1, kItem);
    if (boxes.dropsLastEmpty && items.endsWith(kItem))
        items.chop(kItem.size());
    return opening + u"'>"_s + kItem + items + (isNumbered ? u"</OL>"_s : u"</UL>"_s);
}

QString ruleTag(const RuleBoxes& boxes) {
    const int size = wholeNumber(u"太さ[SIZE]"_s, boxes.size);
    const int width = wholeNumber(u"幅[WIDTH]"_s, boxes.width);
    QString tag = u"<HR Size=%1"_s.arg(size);
    if (width != kFullWidth) {
        tag += u" Width=%1%"_s.arg(width);
        if (boxes.align == 0)
            tag += u" Align='Left'"_s;
        else if (boxes.align == 2)
            tag += u" Align='Right'"_s;
    }
    if (boxes.isWithoutShade)
        tag += u" NOSHADE"_s;
    if (!boxes.colour.isEmpty())
        tag += u" Color='"_s + boxes.colour + u'\'';
    return tag + u'>';
}

QString fontOpening(const FontBoxes& boxes) {
    return u"<FONT"_s + attribute("Size"_L1, boxes.size) + attribute("Color"_L1, boxes.colour) +
           attribute("Face"_L1, boxes.face) + u'>';
}

FontSizes absoluteFontSizes() {
    FontSizes sizes{{}, 3};
    for (int size = 1; size <= 7; ++size)
        sizes.texts += QString::number(size);
    return sizes;
}

FontSizes relativeFontSizes() {
    FontSizes sizes{{}, 7};
    for (int step = -6; step <= -1; ++step)
        sizes.texts += QString::number(step);
    for (int step = 1; step <= 6; ++step)
        sizes.texts += u'+' + QString::number(step);
    return sizes;
}

std::optional<QString> startComplaint(const QString& text) {
    if (core::numericValue(text))
        return std::nullopt;
    return u"不正な文字列が与えられました。\r\nここには数値を入力してください。"_s;
}

std::optional<QString> widthComplaint(const QString& text) {
    const std::optional<double> width = core::numericValue(text);
    if (!width)
        return u"不正な文字列が入力されました。\r\n数字を入力してください。"_s;
    if (*width <= 0 || *width > kFullWidth)
        return u"値の範囲は、0～100%でお願いします。"_s;
    return std::nullopt;
}

std::optional<bool> isAlignable(const QString& width) {
    const std::optional<double> value = core::numericValue(width);
    return value ? std::optional(*value != kFullWidth) : std::nullopt;
}

} // namespace velloria::editor
