// A plug-in for tests, with every part: version 1.2.3. What it does is told by environment variables:
//   VELLORIA_PLUGIN_LOG    file to which each call of an object is added, a line each with its arguments
//   VELLORIA_PLUGIN_FAILS  name of the call that fails with "the stub fails"
//   VELLORIA_PLUGIN_THROWS name of the call that breaks the contract by throwing "the stub throws", or the number 7
//   when
//                          " 7" stands behind the name
//   VELLORIA_PLUGIN_DENIES name of the call that answers no
//   VELLORIA_PLUGIN_LACKS  "interface", "newer_parts", "ping", "pings_execute", "read_entries", "run_with_host", "the
//                          size of run_with_host" or "words": what it does not have
//   VELLORIA_PLUGIN_ENDS   "loading" or "velloria_plugin_get", and behind a blank "crash", "exit" or "hang": where, and
//                          how, it takes along the program that loads it
//   VELLORIA_PLUGIN_LOADS  file to which each loading adds a line
//   VELLORIA_PLUGIN_TALKS  when set, the pings use all that the program offers, and an export and the page of
//                          information tell what they do
//   VELLORIA_PLUGIN_BRINGS days, parted by blanks: what an import finds and, when the program wants it, adds
//   VELLORIA_PLUGIN_NOTES  what it says that it does not carry
//   VELLORIA_PLUGIN_WRITES what an export writes into its file
// It says no to a diary whose path has "refused" in it, and fails at one with "broken".
#include "velloria_plugin.h"

#include <sqlite3.h>

#include <chrono>
#include <cstddef>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <sstream>
#include <stdexcept>
#include <string>
#include <thread>
#include <vector>

namespace {

std::string g_page;
std::string g_error;

std::string valueOf(const char* variable) {
    const char* found = std::getenv(variable);
    return found ? found : "";
}

bool isSet(const char* variable, const std::string& value) {
    const char* found = std::getenv(variable);
    return found && value == found;
}

void log(const std::string& line, const char* variable = "VELLORIA_PLUGIN_LOG") {
    const char* name = std::getenv(variable);
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

void endIfWanted(const std::string& place) {
    const std::string wanted = valueOf("VELLORIA_PLUGIN_ENDS");
    if (wanted.compare(0, place.size() + 1, place + " ") != 0)
        return;
    std::puts("the stub prints");
    std::fflush(stdout);
    if (wanted == place + " crash")
        std::abort();
    if (wanted == place + " exit")
        std::_Exit(0);
    for (;;)
        std::this_thread::sleep_for(std::chrono::milliseconds(10));
}

const struct Loading {
    Loading() {
        log("loaded", "VELLORIA_PLUGIN_LOADS");
        endIfWanted("loading");
    }
} kLoading;

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

/// What the objects of every part are.
struct Worker {
    const velloria_host* host;
    std::string database = {};
    std::string file = {};
    std::string mark = {};
    bool isExport = false;
};

Worker& of(void* object) {
    return *static_cast<Worker*>(object);
}

std::vector<std::string> days() {
    std::istringstream words(valueOf("VELLORIA_PLUGIN_BRINGS"));
    std::vector<std::string> days;
    for (std::string day; words >> day;)
        days.push_back(day);
    return days;
}

/// Whether the program wants what an import has found.
bool begin(Worker& worker) {
    const std::vector<std::string> found = days();
    if (found.empty())
        return true;
    const std::string notes = valueOf("VELLORIA_PLUGIN_NOTES");
    std::vector<const char*> texts;
    for (const std::string& day : found)
        texts.push_back(day.c_str());
    const velloria_import_plan plan{sizeof plan, "Stub", uint32_t(texts.size()), texts.data(), notes.c_str()};
    const char* mark = worker.host->begin_import(worker.host->context, &plan);
    log(mark ? std::string("mark ") + mark : "no mark");
    worker.mark = mark ? mark : "";
    return mark != nullptr;
}

void addEntries(const Worker& worker) {
    if (days().empty())
        return;
    sqlite3* base = nullptr;
    sqlite3_open(worker.database.c_str(), &base);
    for (const std::string& day : days()) {
        char* statement = sqlite3_mprintf(
            "INSERT INTO Contents (Day, Number, Title, Genre, ImportMark) SELECT %Q, IFNULL(MAX(Number), 0) + 1, "
            "'stub', 'genre of the stub', %Q FROM Contents WHERE Day = %Q",
            day.c_str(), worker.mark.c_str(), day.c_str());
        if (sqlite3_exec(base, statement, nullptr, nullptr, nullptr) != SQLITE_OK)
            log(sqlite3_errmsg(base));
        sqlite3_free(statement);
    }
    sqlite3_close(base);
}

int32_t connect(void* object, const char* database) {
    of(object).database = database;
    return called("connect", database);
}

int32_t opened(void* object, const char* path, int32_t* isAccepted, int32_t isExport) {
    of(object).file = path;
    of(object).isExport = isExport;
    std::string line = "open_file " + std::string(path) + " " + std::to_string(isExport);
    if (std::FILE* file = isExport ? std::fopen(path, "rb") : nullptr) {
        line += ", which is in the way";
        std::fclose(file);
    }
    log(line);
    const int32_t opening = result("open_file");
    *isAccepted = opening > 0;
    return opening;
}

int32_t writeEntries(void* object) {
    const std::string content = valueOf("VELLORIA_PLUGIN_WRITES");
    if (std::FILE* file = content.empty() ? nullptr : std::fopen(of(object).file.c_str(), "wb")) {
        std::fputs(content.c_str(), file);
        std::fclose(file);
    }
    if (std::getenv("VELLORIA_PLUGIN_TALKS"))
        of(object).host->status(of(object).host->context, "3件を書き、1件を除きました。");
    return called("write_entries");
}

int32_t finishMovableType(void* object) {
    const int32_t finishing = called("finish");
    if (finishing > 0 && !of(object).isExport)
        addEntries(of(object));
    return finishing;
}

int32_t readEntries(void* object) {
    const int32_t reading = called("read_entries");
    return reading > 0 ? begin(of(object)) : reading;
}

int32_t finishHatena(void* object) {
    const int32_t finishing = called("finish");
    if (finishing <= 0 || of(object).isExport)
        return finishing;
    if (!begin(of(object)))
        return 0;
    addEntries(of(object));
    return finishing;
}

void* create(const velloria_host* host) {
    return result("create") < 0 ? nullptr : new Worker{host};
}

void release(void* object) {
    log("release");
    delete &of(object);
    throwIfWanted("release");
}

int32_t pingsExecute(void* object) {
    if (std::getenv("VELLORIA_PLUGIN_TALKS")) {
        const velloria_host& host = *of(object).host;
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

void writePage() {
    if (std::FILE* file = std::fopen(g_page.c_str(), "wb")) {
        std::fputs("<HTML>", file);
        std::fclose(file);
    }
}

int32_t runWithHost(const velloria_host* host) {
    if (std::getenv("VELLORIA_PLUGIN_TALKS")) {
        host->pump(host->context);
        host->status(host->context, "ページを書いています...");
    }
    writePage();
    return called("run_with_host");
}

velloria_diary_information g_diary{sizeof(velloria_diary_information),
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
                                       writePage();
                                       return called("run");
                                   },
                                   runWithHost};

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

velloria_movable_type_exchange g_movableType{
    sizeof(velloria_movable_type_exchange),
    create,
    release,
    connect,
    [](void*) { return called("prepare_import"); },
    [](void*) { return called("prepare_export"); },
    [](void*, const char* user) { return called("set_user_id", user); },
    writeEntries,
    opened,
    finishMovableType,
    readEntries,
};

const velloria_hatena_exchange kHatena{
    sizeof(velloria_hatena_exchange),
    create,
    release,
    connect,
    [](void*) { return called("prepare_import"); },
    [](void*) { return called("prepare_export"); },
    writeEntries,
    opened,
    finishHatena,
};

velloria_plugin g_plugin{sizeof(velloria_plugin), &kInformation, &g_diary, &g_ping, &g_movableType, &kHatena, [] {
                             throwIfWanted("last_error");
                             return g_error.c_str();
                         }};

} // namespace

extern "C" __attribute__((visibility("default"))) const velloria_plugin* velloria_plugin_get(uint32_t version) {
    endIfWanted("velloria_plugin_get");
    throwIfWanted("velloria_plugin_get");
    constexpr const char* kLacks = "VELLORIA_PLUGIN_LACKS";
    // What lies behind the end of an older plug-in is no pointer of its own.
    if (isSet(kLacks, "newer_parts")) {
        static const velloria_plugin kOld{offsetof(velloria_plugin, ping),
                                          &kInformation,
                                          &g_diary,
                                          reinterpret_cast<const velloria_ping*>(16),
                                          nullptr,
                                          nullptr,
                                          reinterpret_cast<const char* (*)()>(16)};
        return &kOld;
    }
    g_plugin.ping = isSet(kLacks, "ping") ? nullptr : &g_ping;
    g_ping.pings_execute = isSet(kLacks, "pings_execute") ? nullptr : pingsExecute;
    g_movableType.size = isSet(kLacks, "read_entries") ? offsetof(velloria_movable_type_exchange, read_entries)
                                                       : sizeof(velloria_movable_type_exchange);
    // What an older plug-in has behind its end is no call.
    const bool isOld = isSet(kLacks, "the size of run_with_host");
    g_diary.size = isOld ? offsetof(velloria_diary_information, run_with_host) : sizeof(velloria_diary_information);
    g_diary.run_with_host = isSet(kLacks, "run_with_host") ? nullptr : runWithHost;
    if (isOld)
        g_diary.run_with_host = reinterpret_cast<decltype(&runWithHost)>(16);
    if (isSet(kLacks, "words"))
        g_plugin.last_error = [] { return static_cast<const char*>(nullptr); };
    return version == VELLORIA_PLUGIN_INTERFACE && !isSet(kLacks, "interface") ? &g_plugin : nullptr;
}
