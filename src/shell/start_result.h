// How a start ends, or a part of it.
#pragma once

namespace velloria::shell {

enum class StartResult {
    Ready,
    Ended, ///< the user cancelled, or a box has said why there is no going on
};

} // namespace velloria::shell
