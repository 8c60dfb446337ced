// The language of the menus.
#pragma once

#include "core/session.h"

namespace velloria::core {

enum class MenuLanguage { Japanese, English };

/// "English" is English; every other value of key `MenuLanguage` is Japanese.
MenuLanguage menuLanguage(const Session& session);

} // namespace velloria::core
