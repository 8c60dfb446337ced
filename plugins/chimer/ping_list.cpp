#include "chimer/ping_list.h"

#include "common/calls.h"
#include "common/encoding.h"
#include "common/input_file.h"

#include <set>

namespace velloria::plugins {
namespace {

constexpr std::size_t kMostBytes = 4 << 20;
constexpr std::string_view kBlanks = " \t";

constexpr const char* kForm = "一行に一つ、「http://アドレス,名前」の形で送り先を書いたテキストファイルを置いてください"
                              "（名前はなくてもかまいません）。";

std::string_view trimmed(std::string_view text) {
    const std::size_t begin = text.find_first_not_of(kBlanks);
    if (begin == std::string_view::npos)
        return {};
    return text.substr(begin, text.find_last_not_of(kBlanks) - begin + 1);
}

/// Takes the first field and its comma off the line. A quote that is not closed takes all of it.
std::string takeField(std::string_view& line) {
    std::string field;
    line = trimmed(line);
    if (line.starts_with('"')) {
        line.remove_prefix(1);
        while (!line.empty()) {
            const bool isQuote = line.front() == '"';
            const bool isDoubled = line.starts_with("\"\"");
            if (!isQuote || isDoubled)
                field += line.front();
            line.remove_prefix(isDoubled ? 2 : 1);
            if (isQuote && !isDoubled)
                break;
        }
    }
    const std::size_t comma = line.find(',');
    field += line.substr(0, comma);
    line.remove_prefix(comma == std::string_view::npos ? line.size() : comma + 1);
    return std::string(trimmed(field));
}

std::string_view takeLine(std::string_view& text) {
    const std::size_t end = text.find_first_of("\r\n");
    const std::string_view line = text.substr(0, end);
    text.remove_prefix(end == std::string_view::npos ? text.size() : end + 1);
    return line;
}

std::string textOf(std::string_view bytes) {
    return isUtf8(bytes) ? decoded(bytes).utf8 : decodedShiftJis(bytes).utf8;
}

} // namespace

std::vector<Server> parsePingList(std::string_view text) {
    std::vector<Server> servers;
    std::set<std::string> known;
    while (!text.empty()) {
        std::string_view line = takeLine(text);
        const std::string address = takeField(line);
        const std::string name = takeField(line);
        if (address.starts_with('#') || (address.empty() && name.empty()))
            continue;
        Server server{Address(address), name};
        if (known.insert(server.address.same()).second)
            servers.push_back(std::move(server));
    }
    return servers;
}

std::vector<Server> readPingList(const std::string& path) {
    if (!fileExists(path))
        throw Error("PINGの送り先のリストがありません。\n" + path + "\n" + kForm);
    const std::string bytes = readFile(path, kMostBytes);
    if (bytes.find('\0') != std::string::npos)
        throw Error("PINGの送り先のリストがテキストではありません。\n" + path +
                    "\nShift_JISかUTF-8で保存しなおしてください。");
    return parsePingList(textOf(bytes));
}

} // namespace velloria::plugins
