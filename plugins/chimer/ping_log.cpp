#include "chimer/ping_log.h"

#include "common/calls.h"
#include "common/input_file.h"
#include "common/output_file.h"

#include <ctime>

namespace velloria::plugins {
namespace {

constexpr const char* kHeading = "=== "; ///< no other line begins like this
constexpr std::size_t kLongestText = 500;

std::string now() {
    const std::time_t seconds = std::time(nullptr);
    char text[32] = "";
    if (const std::tm* local = std::localtime(&seconds))
        std::strftime(text, sizeof text, "%Y/%m/%d %H:%M:%S", local);
    return text;
}

/// How many bytes stand at the begin of the text that would move what a person reads: other than one line from left to
/// right.
std::size_t controlAt(std::string_view text) {
    const auto byte = [&](std::size_t at) { return at < text.size() ? static_cast<unsigned char>(text[at]) : 0U; };
    if (byte(0) < ' ' || byte(0) == 0x7F)
        return 1;
    if (byte(0) == 0xC2 && byte(1) < 0xA0) // U+0080 to U+009F
        return 2;
    const bool isGeneral = byte(0) == 0xE2 && (byte(1) == 0x80 || byte(1) == 0x81);
    const bool isDirection = byte(1) == 0x80 ? byte(2) >= 0xA8 && byte(2) <= 0xAE : byte(2) >= 0xA6 && byte(2) <= 0xA9;
    return isGeneral && isDirection ? 3 : 0; // U+2028 to U+202E, U+2066 to U+2069
}

/// One line of bearable length.
std::string oneLine(std::string_view text) {
    std::string line;
    while (!text.empty()) {
        const std::size_t control = controlAt(text);
        const bool isInside = (static_cast<unsigned char>(text.front()) & 0xC0U) == 0x80U; // of a character
        if (line.size() >= kLongestText && !isInside)
            return line + "…";
        line += control ? ' ' : text.front();
        text.remove_prefix(control ? control : 1);
    }
    return line;
}

/// The last run in a log; "" when there is none.
std::string lastRun(const std::string& file) {
    const std::string text = "\n" + (fileExists(file) ? readFile(file) : "");
    const std::size_t begin = text.rfind(std::string("\n") + kHeading);
    return begin == std::string::npos ? "" : text.substr(begin + 1);
}

} // namespace

PingLog::PingLog(const std::string& list)
    : m_file(list.substr(0, list.rfind('/') + 1) + "ping.log")
    , m_run(kHeading + now() + " PING\n") {}

void PingLog::add(const Server& server, const Answer& answer) {
    m_run += now() + '\t' + oneLine(server.address.shown()) + '\t' + oneLine(server.name) + '\t' +
             (answer.isDone ? "完了" : "失敗") + '\t' + oneLine(server.address.withoutPassword(answer.message)) + '\n';
}

void PingLog::write(const std::string& end) const {
    try {
        OutputFile file(m_file, 0600); // addresses may be nobody else's business
        file.write(lastRun(m_file) + m_run + "--- " + end + '\n');
        file.commit();
    } catch (const std::exception& thrown) {
        throw Error("PING: " + end + "\nその記録を書けません。前の記録はそのままです。\n" + thrown.what());
    }
}

} // namespace velloria::plugins
