#include "shell/forms/maker_pages.h"

#include "browser/forms/frmBrowser.h"
#include "core/program_keys.h"
#include "core/settings.h"

namespace velloria::shell {
namespace {

void show(desktop::Context& context, const core::Setting& page) {
    context.windows.get<browser::frmBrowser>().showChild();
    context.desk.navigate(core::Settings(context.session).text(page));
}

} // namespace

void Click_FormAboutLabel(desktop::Context& context) {
    show(context, core::keys::kMakerHomePage);
}

void Click_Zelkova(desktop::Context& context) {
    show(context, core::keys::kMakerBlog);
}

void showMakerNews(desktop::Context& context) {
    show(context, core::keys::kMakerNews);
}

} // namespace velloria::shell
