// The settings file of a plug-in, "Larkport.ini" beside the diary:
//
//     [Import]
//     Comments=keep
#pragma once

#include <map>
#include <string>
#include <string_view>
#include <vector>

namespace velloria::plugins {

class Settings {
public:
    /// The file `name` in the folder of `database`; where there is none every value is missing. Throws Error.
    Settings(const std::string& database, const std::string& name);

    /// Which of the words stands there, counted from 0; 0 when the key is missing. Upper and lower case are one. Throws
    /// Error for any other word, which names those that may stand there.
    std::size_t choice(const std::string& section, const std::string& key,
                       const std::vector<std::string_view>& words) const;

private:
    std::string m_file;
    std::map<std::string, std::string> m_values; ///< by "section\nkey" in lower case
};

} // namespace velloria::plugins
