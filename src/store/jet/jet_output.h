// The answers of the program to the one that started it.
#pragma once

#include "store/jet_record.h"

#include <chrono>

namespace velloria::store::jet {

/// Writes records to standard output. When nobody reads any more the program ends.
class JetOutput {
public:
    void write(const Record& record);
    /// At most once a second: that the program lives.
    void showProgress();
    /// Returns whether all has been written.
    bool finish();

private:
    using Clock = std::chrono::steady_clock;
    Clock::time_point m_shown = Clock::now();
};

} // namespace velloria::store::jet
