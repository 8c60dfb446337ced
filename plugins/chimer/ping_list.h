// "PINGList.csv", the person's list of the servers that are told of a change.
#pragma once

#include "chimer/address.h"

#include <string>
#include <string_view>
#include <vector>

namespace velloria::plugins {

struct Server {
    Address address;
    std::string name; ///< the person's own, may be empty
};

/// One server a line, "address,name" with the quoting of CSV, a name may be missing; what stands behind a second comma,
/// blank lines and those that begin with # do not matter. An address comes once however often it stands there, and also
/// when it can't be asked.
std::vector<Server> parsePingList(std::string_view text);

/// The same of a file, in UTF-8 with or without mark or else in code page 932. Throws Error when it is missing or can't
/// be read.
std::vector<Server> readPingList(const std::string& path);

} // namespace velloria::plugins
