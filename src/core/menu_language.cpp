#include "core/menu_language.h"

#include "core/ini.h"
#include "core/keys.h"

using namespace Qt::StringLiterals;

namespace velloria::core {

MenuLanguage menuLanguage(const Session& session) {
    return ReadIni(session.DiaryIniFile, keys::kMenuLanguage) == "English"_L1 ? MenuLanguage::English
                                                                              : MenuLanguage::Japanese;
}

} // namespace velloria::core
