#include "shell/forms/maker_pages.h"

#include "browser/forms/frmBrowser.h"
#include "core/ini.h"
#include "core/keys.h"

using namespace Qt::StringLiterals;

namespace velloria::shell {
namespace {

void show(desktop::Context& context, const core::Key& key) {
    context.windows.get<browser::frmBrowser>().showChild();
    context.desk.navigate(core::ReadIni(context.session.MyPath + u"endpoints.ini"_s, key));
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
