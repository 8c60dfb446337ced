#include "wrenport/import_notes.h"

namespace velloria::plugins::wrenport {
namespace {

constexpr std::size_t kMostNamed = 5;
constexpr std::size_t kLongestName = 60;

std::string shortened(std::string_view text) {
    if (text.size() <= kLongestName)
        return std::string(text);
    std::size_t length = kLongestName; // not within a character
    while (length > 0 && (static_cast<unsigned char>(text[length]) & 0xC0) == 0x80)
        --length;
    return std::string(text.substr(0, length)) + "…";
}

} // namespace

void Examples::add(std::string_view text) {
    std::string name = shortened(text);
    if (m_named.size() < kMostNamed)
        m_named.insert(std::move(name));
    else if (!m_named.contains(name))
        m_hasMore = true;
}

std::string Examples::text() const {
    std::string all;
    for (const std::string& name : m_named)
        all += (all.empty() ? "" : "、") + name;
    return all + (m_hasMore ? "など" : "");
}

std::string ImportNotes::text(const XmlReading& reading, const DecodedText& decoding) const {
    std::string lines;
    const auto add = [&](const std::string& line) {
        if (!line.empty())
            lines += (lines.empty() ? "" : "\n") + line;
    };
    const auto addExamples = [&](const std::string& what, const Examples& examples) {
        if (const std::string named = examples.text(); !named.empty())
            add(what + ": " + named);
    };
    Losses all = losses;
    all.count("XMLに使えない文字", reading.removed);
    all.count("知らない要素", reading.leftOut);
    all.count("要素の外の文", reading.stray);
    all.count("読めない文字", int64_t(decoding.replaced));
    if (decoding.encoding != Encoding::Utf8)
        add(std::string("文字コード: ") + nameOf(decoding.encoding));
    add(all.text());
    addExamples("持ち込めないカテゴリー", categories);
    addExamples("持ち込めない日の題", titles);
    addExamples("暦にない日付", dates);
    if (reading.isCut)
        add(reading.cutDay.empty()
                ? "ファイルが途中で切れています。切れたところまでの日を持ち込みます。"
                : "ファイルが途中で切れています。" + reading.cutDay + "の日は、切れたところまでを持ち込みます。");
    return lines;
}

} // namespace velloria::plugins::wrenport
