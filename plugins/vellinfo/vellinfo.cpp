// "VellInfo.dll": a page of figures about the diary.
#include "common/calls.h"
#include "common/output_file.h"
#include "vellinfo/diary_reader.h"
#include "vellinfo/page.h"

#include <filesystem>

namespace {

using namespace velloria::plugins;

struct Paths {
    std::string database;
    std::string page;
};
Paths g_paths; // from one call to the next; all of them come from one thread

/// Whoever may read the diary may read the page, and nobody else: it shows what is private.
unsigned rightsLike(const std::string& database) {
    std::error_code error;
    const auto rights = unsigned(std::filesystem::status(database, error).permissions());
    return error ? 0600 : (rights & 0444) | 0600;
}

bool isWritable(const std::string& page) {
    try {
        const OutputFile tried(page);
        return true;
    } catch (const Error&) {
        return false;
    }
}

int32_t setPaths(const char* database, const char* page) {
    return answers([&] {
        g_paths = {};
        if (!database || !page || !*page || !vellinfo::isDatabase(database) || !isWritable(page))
            return false;
        g_paths = {database, page};
        return true;
    });
}

int32_t runWithHost(const velloria_host* table) {
    return does([&] {
        if (g_paths.page.empty())
            throw Error("日記とページの場所が決まっていません。\n");
        const vellinfo::Diary diary = vellinfo::readDiary(g_paths.database, Host(table));
        OutputFile page(g_paths.page, rightsLike(g_paths.database));
        page.write(vellinfo::makePage(diary));
        page.commit();
    });
}

int32_t run() {
    return runWithHost(nullptr);
}

const velloria_diary_information kDiaryInformation = {sizeof kDiaryInformation, setPaths, run, runWithHost};

const velloria_plugin kPlugin = {sizeof kPlugin, &kInformation, &kDiaryInformation, nullptr,
                                 nullptr,        nullptr,       lastError};

} // namespace

VELLORIA_PLUGIN_EXPORT const velloria_plugin* velloria_plugin_get(uint32_t interface_version) {
    return interface_version == VELLORIA_PLUGIN_INTERFACE ? &kPlugin : nullptr;
}
