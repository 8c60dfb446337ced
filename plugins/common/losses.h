// What an import can't carry, for the person to read before it is written.
#pragma once

#include <cstdint>
#include <map>
#include <string>

namespace velloria::plugins {

class Losses {
public:
    /// `what` in a person's words: "タグ".
    void count(const std::string& what, int64_t times = 1) {
        if (times > 0)
            m_counts[what] += times;
    }

    /// "持ち込めないもの: タグ 3件、画像 1件", "" when there is nothing.
    std::string text() const {
        std::string counted;
        for (const auto& [what, times] : m_counts)
            counted += (counted.empty() ? "" : "、") + what + " " + std::to_string(times) + "件";
        return counted.empty() ? "" : "持ち込めないもの: " + counted;
    }

private:
    std::map<std::string, int64_t> m_counts;
};

} // namespace velloria::plugins
