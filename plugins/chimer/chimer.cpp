// "Chimer.dll": tells the servers of "PINGList.csv" that a site has changed.
#include "chimer/ping_list.h"
#include "chimer/ping_log.h"
#include "chimer/ping_run.h"
#include "chimer/xml_rpc.h"
#include "common/calls.h"

using namespace velloria::plugins;

namespace {

struct Chimer {
    Host host;
    std::string list;
    std::string url;
    std::string name;

    void execute() const {
        const std::vector<Server> servers = readPingList(list);
        PingLog log(list);
        std::size_t ended = 0;
        std::size_t done = 0;
        const std::string all = std::to_string(servers.size()) + "件中";
        const PingCalls calls{[&](std::size_t place, const Answer& answer) {
                                  log.add(servers[place], answer);
                                  ++ended;
                                  done += answer.isDone;
                                  host.status("PINGの送信中... " + all + std::to_string(ended) + "件");
                              },
                              [&] { host.pump(); }};
        sendPings(servers, pingCall(name, url), calls);
        std::string end = all + std::to_string(done) + "件に送信しました。";
        if (servers.empty())
            end = "PINGList.csvに送り先がないので、送信しませんでした。";
        log.write(end);
        if (done < servers.size())
            end += "理由はping.logにあります。";
        host.status("PING: " + end);
    }
};

const Chimer& of(void* object) {
    return *static_cast<const Chimer*>(object);
}

void* create(const velloria_host* host) {
    return makes([&] { return new Chimer{Host(host), {}, {}, {}}; });
}

void release(void* object) {
    delete static_cast<Chimer*>(object);
}

int32_t keep(void* object, std::string Chimer::*member, const char* text) {
    return does([&] { static_cast<Chimer*>(object)->*member = text; });
}

int32_t setPopUp(void*, int32_t) {
    return 1; // it has no windows
}

int32_t setPingListFile(void* object, const char* path) {
    return keep(object, &Chimer::list, path);
}

int32_t setBlogUrl(void* object, const char* url) {
    return keep(object, &Chimer::url, url);
}

int32_t setBlogName(void* object, const char* name) {
    return keep(object, &Chimer::name, name);
}

int32_t pingsExecute(void* object) {
    return does([&] { of(object).execute(); });
}

constexpr velloria_ping kPing = {sizeof kPing,    create,     release,     setPopUp,
                                 setPingListFile, setBlogUrl, setBlogName, pingsExecute};

const velloria_plugin kPlugin = {sizeof kPlugin, &kInformation, nullptr, &kPing, nullptr, nullptr, lastError};

} // namespace

VELLORIA_PLUGIN_EXPORT const velloria_plugin* velloria_plugin_get(uint32_t version) {
    return version == VELLORIA_PLUGIN_INTERFACE ? &kPlugin : nullptr;
}
