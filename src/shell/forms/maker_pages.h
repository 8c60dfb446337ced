// The maker's pages, in the browser window.
#pragma once

#include "desktop/context.h"

namespace velloria::shell {

/// The home page.
void Click_FormAboutLabel(desktop::Context& context);
/// The blog of the development.
void Click_Zelkova(desktop::Context& context);
void showMakerNews(desktop::Context& context);

} // namespace velloria::shell
