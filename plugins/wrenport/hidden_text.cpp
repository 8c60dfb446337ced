#include "wrenport/hidden_text.h"

#include "wrenport/day_parts.h"

#include <algorithm>

namespace velloria::plugins::wrenport {
namespace {

constexpr std::string_view kOpens = "<!--";
constexpr std::string_view kCloses = "-->";

} // namespace

ShownLines::ShownLines(const std::vector<std::string_view>& typed) {
    const auto last = [&](const auto& holds) {
        const auto found = std::find_if(typed.rbegin(), typed.rend(), holds);
        return typed.size() - std::size_t(found - typed.rbegin());
    };
    const std::size_t closesUntil = last([](std::string_view line) { return line.find(kCloses) != line.npos; });
    const std::size_t preUntil = last([](std::string_view line) { return line == kClosesSuperPre; });
    bool isHidden = false;
    bool isPre = false;
    std::string shown;
    for (std::size_t index = 0; index < typed.size(); ++index) {
        std::string_view line = typed[index];
        const bool opensPre = !isPre && !isHidden && opensSuperPre(line) && index + 1 < preUntil;
        if (isPre || opensPre) {
            isPre = opensPre || line != kClosesSuperPre;
            lines.emplace_back(line);
            continue;
        }
        bool wasHidden = isHidden;
        for (;;) {
            if (isHidden) {
                const std::size_t end = line.find(kCloses);
                if (end == line.npos)
                    break;
                line.remove_prefix(end + kCloses.size());
                isHidden = false;
            }
            const std::size_t begin = line.find(kOpens);
            const bool ends = begin != line.npos &&
                              (index + 1 < closesUntil || line.find(kCloses, begin + kOpens.size()) != line.npos);
            shown += line.substr(0, ends ? begin : line.npos);
            if (!ends)
                break;
            line.remove_prefix(begin + kOpens.size());
            isHidden = wasHidden = true;
            ++hidden;
        }
        if (isHidden)
            continue; // what follows the comment stands in the same line
        if (!wasHidden || !shown.empty())
            lines.push_back(shown);
        shown.clear();
    }
}

} // namespace velloria::plugins::wrenport
