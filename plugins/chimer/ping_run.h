// Asks ping servers, several at once.
#pragma once

#include "chimer/ping_list.h"
#include "chimer/xml_rpc.h"

#include <chrono>
#include <cstddef>
#include <functional>
#include <string>
#include <vector>

namespace velloria::plugins {

struct PingLimits {
    std::chrono::milliseconds each{10'000}; ///< from the connection to the end of the answer, redirects with it
    std::size_t atOnce = 16;
    std::size_t largestAnswer = 1 << 20; ///< bytes
};

struct PingCalls {
    /// Some server is done with: its place in the list, and how. In the order in which they end.
    std::function<void(std::size_t, const Answer&)> answered;
    std::function<void()> waiting; ///< several times a second
};

/// Hands the call to every server. What a server does or does not do is its answer, never a failure. Throws Error when
/// the machine has no means to ask anybody.
void sendPings(const std::vector<Server>& servers, const std::string& call, const PingCalls& calls,
               const PingLimits& limits = {});

} // namespace velloria::plugins
