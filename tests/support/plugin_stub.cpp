// A plug-in for tests, with every part: version 1.2.3. What it does is told by environment variables:
//   VELLORIA_PLUGIN_LOG    file to which each call of an object is added, a line each with its arguments
//   VELLORIA_PLUGIN_FAILS  name of the call that fails with "the stub fails"
//   VELLORIA_PLUGIN_THROWS name of the call that breaks the contract by throwing "the stub throws", or the number 7
//   when
//                          " 7" stands behind the name
//   VELLORIA_PLUGIN_DENIES name of the call that answers no
//   VELLORIA_PLUGIN_LACKS  "interface", "newer_parts", "ping", "pings_execute" or "words": what it does not have
//   VELLORIA_PLUGIN_TALKS  when set, the pings use all that the program offers
// It says no to a diary whose path has "refused" in it, and fails at one with "broken".
#include "velloria_plugin.h"

#include <cstddef>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <stdexcept>
#include <string>

namespace {

std::string g_page;
std::string g_error;

bool isSet(const char* variable, const std::string& value) {
    const char* found = std::getenv(variable);
    return found && value == found;
}

void log(const std::string& line) {
    const char* name = std::getenv("VELLORIA_PLUGIN_LOG");
    if (std::FILE* file = name ? std::fopen(name, "ab") : nullptr) {
        std::fputs((line + "\n").c_str(), file);
        std::fclose(file);
    }
}

void throwIfWanted(const std::string& call) {
    if (isSet("VELLORIA_PLUGIN_THROWS", call))
        throw std::runtime_error("the stub throws");
    if (isSet("VELLORIA_PLUGIN_THROWS", call + " 7"))
        throw 7;
}

int32_t result(const char* call) {
    g_error.clear();
    throwIfWanted(call);
    if (isSet("VELLORIA_PLUGIN_FAILS", call)) {
        g_error = "the stub fails";
        return -1;
    }
    return isSet("VELLORIA_PLUGIN_DENIES", call) ? 0 : 1;
}

int32_t called(const char* call) {
    log(call);
    return result(call);
}

int32_t called(const char* call, const char* text) {
    log(std::string(call) + " " + text);
    return result(call);
}

int32_t opened(const char* path, int32_t* isAccepted, int32_t isExport) {
    log("open_file " + std::string(path) + " " + std::to_string(isExport));
    const int32_t opening = result("open_file");
    *isAccepted = opening > 0;
    return opening;
}

void* create(const velloria_host* host) {
    return result("create") < 0 ? nullptr : new const velloria_host*(host);
}

void release(void* object) {
    log("release");
    delete static_cast<const velloria_host**>(object);
    throwIfWanted("release");
}

int32_t pingsExecute(void* object) {
    if (std::getenv("VELLORIA_PLUGIN_TALKS")) {
        const velloria_host& host = **static_cast<const velloria_host**>(object);
        host.pump(host.context);
        host.status(host.context, "PINGの送信中...");
        log("ok " +
            std::to_string(host.message(host.context, VELLORIA_MESSAGE_EXCLAMATION, "PING", "一\n二\r\n三", 0)));
        log("yes " + std::to_string(host.message(host.context, VELLORIA_MESSAGE_PLAIN, "PING", "続けますか？", 1)));
    }
    return called("pings_execute");
}

const velloria_information kInformation{sizeof(velloria_information),
                                        [] {
                                            throwIfWanted("get_version_major");
                                            return int32_t(1);
                                        },
                                        [] { return int32_t(2); }, [] { return int32_t(3); }};

const velloria_diary_information kDiary{sizeof(velloria_diary_information),
                                        [](const char* database, const char* page) {
                                            g_page = page;
                                            throwIfWanted("set_paths");
                                            if (std::strstr(database, "broken")) {
                                                g_error = "the diary is broken";
                                                return int32_t(-1);
                                            }
                                            return int32_t(std::strstr(database, "refused") == nullptr);
                                        },
                                        [] {
                                            if (std::FILE* file = std::fopen(g_page.c_str(), "wb")) {
                                                std::fputs("<HTML>", file);
                                                std::fclose(file);
                                            }
                                            return called("run");
                                        }};

velloria_ping g_ping{
    sizeof(velloria_ping),
    create,
    release,
    [](void*, int32_t isOn) { return called("set_pop_up", std::to_string(isOn).c_str()); },
    [](void*, const char* path) { return called("set_ping_list_file", path); },
    [](void*, const char* url) { return called("set_blog_url", url); },
    [](void*, const char* name) { return called("set_blog_name", name); },
    pingsExecute,
};

const velloria_movable_type_exchange kMovableType{
    sizeof(velloria_movable_type_exchange),
    create,
    release,
    [](void*, const char* database) { return called("connect", database); },
    [](void*) { return called("prepare_import"); },
    [](void*) { return called("prepare_export"); },
    [](void*, const char* user) { return called("set_user_id", user); },
    [](void*) { return called("write_entries"); },
    [](void*, const char* path, int32_t* isAccepted, int32_t isExport) { return opened(path, isAccepted, isExport); },
    [](void*) { return called("finish"); },
    [](void*) { return called("read_entries"); },
};

const velloria_hatena_exchange kHatena{
    sizeof(velloria_hatena_exchange),
    create,
    release,
    [](void*, const char* database) { return called("connect", database); },
    [](void*) { return called("prepare_import"); },
    [](void*) { return called("prepare_export"); },
    [](void*) { return called("write_entries"); },
    [](void*, const char* path, int32_t* isAccepted, int32_t isExport) { return opened(path, isAccepted, isExport); },
    [](void*) { return called("finish"); },
};

velloria_plugin g_plugin{sizeof(velloria_plugin), &kInformation, &kDiary, &g_ping, &kMovableType, &kHatena, [] {
                             throwIfWanted("last_error");
                             return g_error.c_str();
                         }};

} // namespace

extern "C" __attribute__((visibility("default"))) const velloria_plugin* velloria_plugin_get(uint32_t version) {
    throwIfWanted("velloria_plugin_get");
    constexpr const char* kLacks = "VELLORIA_PLUGIN_LACKS";
    // What lies behind the end of an older plug-in is no pointer of its own.
    if (isSet(kLacks, "newer_parts")) {
        static const velloria_plugin kOld{offsetof(velloria_plugin, ping),
                                          &kInformation,
                                          &kDiary,
                                          reinterpret_cast<const velloria_ping*>(16),
                                          nullptr,
                                          nullptr,
                                          reinterpret_cast<const char* (*)()>(16)};
        return &kOld;
    }
    g_plugin.ping = isSet(kLacks, "ping") ? nullptr : &g_ping;
    g_ping.pings_execute = isSet(kLacks, "pings_execute") ? nullptr : pingsExecute;
    if (isSet(kLacks, "words"))
        g_plugin.last_error = [] { return static_cast<const char*>(nullptr); };
    return version == VELLORIA_PLUGIN_INTERFACE && !isSet(kLacks, "interface") ? &g_plugin : nullptr;
}
