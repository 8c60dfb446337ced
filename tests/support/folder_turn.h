// Whether a change of files takes turns with other programs, told without luck.
#pragma once

#include "platform/file_write.h"
#include "support/patience.h"

#include <QString>

#include <functional>
#include <future>
#include <optional>

namespace velloria::tests {

/// Whether `action` waits while another program changes the files of `folder`. The action calls what it is given where
/// the other program's turn begins.
inline bool waitsForTurn(const QString& folder, const std::function<void(const std::function<void()>& begin)>& action) {
    using namespace std::chrono_literals;
    std::optional<platform::FolderLock> other;
    std::promise<void> begun;
    std::future<void> done = std::async(std::launch::async, action, [&] {
        other.emplace(folder);
        begun.set_value();
    });
    begun.get_future().wait_for(kPatience);
    const bool isWaiting = done.wait_for(200ms) == std::future_status::timeout;
    other.reset();
    done.get();
    return isWaiting;
}

/// The same with the other program's turn before all.
inline bool waitsForTurn(const QString& folder, const std::function<void()>& action) {
    return waitsForTurn(folder, [&](const std::function<void()>& begin) {
        begin();
        action();
    });
}

} // namespace velloria::tests
