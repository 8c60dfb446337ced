// How long a test waits for what comes at once on an idle machine.
#pragma once

#include <chrono>
#include <ctime>

namespace velloria::tests {

/// A busy machine may need that long. What is late by more is missing.
constexpr int kPatienceMs = 60'000;
constexpr std::chrono::milliseconds kPatience{kPatienceMs};

/// The processor time of this program so far, in seconds: what others do on the machine does not count.
inline double processorSeconds() {
    return double(std::clock()) / CLOCKS_PER_SEC;
}

} // namespace velloria::tests
