// The smallest plug-in: as "VellInfo.dll" it makes a page that says how large the diary is. The page "Writing a
// plug-in" of Velloria's documents tells what the calls mean.
#include "velloria_plugin.h"

#include <exception>
#include <filesystem>
#include <fstream>
#include <stdexcept>
#include <string>

namespace {

std::string g_database, g_page, g_error; // all calls come from one thread

// No exception may leave a call: it is kept for last_error, and the call gives a number below 0.
template <typename Work>
int32_t guarded(const Work& work) {
    try {
        g_error.clear();
        return work() ? 1 : 0;
    } catch (const std::exception& thrown) {
        g_error = thrown.what();
    } catch (...) {
        g_error = "理由は分かりません。";
    }
    return -1;
}

int32_t one() {
    return 1;
}
int32_t zero() {
    return 0;
}
const char* lastError() {
    return g_error.c_str();
}

int32_t setPaths(const char* database, const char* page) {
    return guarded([&] {
        g_database = database;
        g_page = page;
        return std::filesystem::is_regular_file(g_database);
    });
}

int32_t run() {
    return guarded([] {
        std::ofstream page(g_page, std::ios::binary);
        page << "<!DOCTYPE html>\n<meta charset=\"utf-8\">\n<title>日記の大きさ</title>\n"
             << "<p>この日記のファイルは " << std::filesystem::file_size(g_database) << " バイトです。</p>\n";
        if (!page.flush())
            throw std::runtime_error("ページを書けません。\n" + g_page);
        return true;
    });
}

const velloria_information kInformation = {sizeof kInformation, one, zero, zero}; // version 1.0.0
const velloria_diary_information kDiary = {sizeof kDiary, setPaths, run, nullptr};
const velloria_plugin kPlugin = {sizeof kPlugin, &kInformation, &kDiary, nullptr, nullptr, nullptr, lastError};

} // namespace

extern "C" __attribute__((visibility("default"))) const velloria_plugin* velloria_plugin_get(uint32_t version) {
    return version == VELLORIA_PLUGIN_INTERFACE ? &kPlugin : nullptr;
}
