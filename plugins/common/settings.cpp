#include "common/settings.h"

#include "common/calls.h"
#include "common/encoding.h"
#include "common/input_file.h"

#include <algorithm>

namespace velloria::plugins {
namespace {

constexpr std::size_t kLargestSettings = 1 << 20;

std::string lowered(std::string_view text) {
    std::string result(text);
    for (char& c : result)
        if (c >= 'A' && c <= 'Z')
            c = char(c - 'A' + 'a');
    return result;
}

std::string_view trimmed(std::string_view text) {
    const std::size_t begin = text.find_first_not_of(" \t\r");
    return begin == std::string_view::npos ? "" : text.substr(begin, text.find_last_not_of(" \t\r") + 1 - begin);
}

} // namespace

Settings::Settings(const std::string& database, const std::string& name)
    : m_file(database.substr(0, database.rfind('/') + 1) + name) {
    if (!fileExists(m_file))
        return;
    const std::string text = decoded(readFile(m_file, kLargestSettings)).utf8;
    std::string section;
    for (std::size_t at = 0; at < text.size();) {
        const std::size_t end = std::min(text.find('\n', at), text.size());
        const std::string_view line = trimmed(std::string_view(text).substr(at, end - at));
        at = end + 1;
        const std::size_t equals = line.find('=');
        if (line.starts_with('[') && line.ends_with(']'))
            section = lowered(trimmed(line.substr(1, line.size() - 2)));
        else if (!line.starts_with(';') && equals != std::string_view::npos)
            m_values.emplace(section + "\n" + lowered(trimmed(line.substr(0, equals))),
                             trimmed(line.substr(equals + 1)));
    }
}

std::size_t Settings::choice(const std::string& section, const std::string& key,
                             const std::vector<std::string_view>& words) const {
    const auto value = m_values.find(lowered(section) + "\n" + lowered(key));
    if (value == m_values.end())
        return 0;
    const auto word = std::find(words.begin(), words.end(), lowered(value->second));
    if (word != words.end())
        return std::size_t(word - words.begin());
    std::string known;
    for (const std::string_view each : words)
        known += (known.empty() ? "" : ", ") + std::string(each);
    throw Error("設定ファイルに知らない値があります。\n" + m_file + "\n[" + section + "] " + key + "=" + value->second +
                "\n次のどれかにしてください: " + known);
}

} // namespace velloria::plugins
