// "ping.log", beside the list of servers: what each of them has answered.
#pragma once

#include "chimer/ping_list.h"
#include "chimer/xml_rpc.h"

#include <string>

namespace velloria::plugins {

/// One run. UTF-8, a line a server: time, address, name, done or failed, the server's words, with tabs in between.
class PingLog {
public:
    /// `list` is the path of the list of servers.
    explicit PingLog(const std::string& list);

    void add(const Server& server, const Answer& answer);
    /// Puts this run and the one before into the file, readable by its owner alone, under a line that says how it has
    /// ended. Throws Error and leaves the file as it is when the disk refuses.
    void write(const std::string& end) const;

private:
    std::string m_file;
    std::string m_run;
};

} // namespace velloria::plugins
