// A plug-in for tests: version 1.2.3; it says no to a diary whose path has "refused" in it.
#include "velloria_plugin.h"

#include <cstdio>
#include <cstring>
#include <string>

namespace {

std::string g_page;

const velloria_information kInformation{[] { return int32_t(1); }, [] { return int32_t(2); },
                                        [] { return int32_t(3); }};

const velloria_diary_information kDiary{[](const char* database, const char* page) {
                                            g_page = page;
                                            return int32_t(std::strstr(database, "refused") == nullptr);
                                        },
                                        [] {
                                            if (std::FILE* file = std::fopen(g_page.c_str(), "wb")) {
                                                std::fputs("<HTML>", file);
                                                std::fclose(file);
                                            }
                                        }};

const velloria_plugin kPlugin{sizeof(velloria_plugin), &kInformation, &kDiary};

} // namespace

extern "C" __attribute__((visibility("default"))) const velloria_plugin* velloria_plugin_get(uint32_t version) {
    return version == VELLORIA_PLUGIN_INTERFACE ? &kPlugin : nullptr;
}
