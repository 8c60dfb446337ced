#include "core/menu_language.h"

#include "core/keys.h"
#include "core/settings.h"

using namespace Qt::StringLiterals;

namespace velloria::core {

MenuLanguage menuLanguage(const Session& session) {
    return Settings(session).text(keys::kMenuLanguage) == "English"_L1 ? MenuLanguage::English : MenuLanguage::Japanese;
}

} // namespace velloria::core
