// How a command ended that a person may refuse.
#pragma once

namespace velloria::platform {

enum class Outcome {
    Done,
    Refused ///< a person said No, or was told what is missing; nothing has been changed
};

} // namespace velloria::platform
