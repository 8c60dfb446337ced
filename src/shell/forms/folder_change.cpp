#include "shell/forms/folder_change.h"

#include "blog/forms/frmBlogManager.h"
#include "browser/forms/frmBrowser.h"
#include "core/path_names.h"
#include "desktop/command.h"
#include "editor/forms/frmCalender.h"
#include "editor/forms/frmContents.h"
#include "editor/open_day.h"
#include "exchange/forms/frmExport.h"
#include "platform/file_write.h"
#include "shell/forms/arrangement.h"
#include "shell/shutdown.h"
#include "site/forms/frmFind.h"
#include "site/save_html.h"

#include <QUrl>

namespace velloria::shell {
namespace {

bool showsPageOf(const desktop::Context& context, const QString& folder) {
    const auto* browser = context.windows.find<browser::frmBrowser>();
    return browser && !folder.isEmpty() && QUrl(browser->LocationURL()).toLocalFile().startsWith(folder);
}

} // namespace

void leaveDataFolder(desktop::Context& context, const QString& before) {
    const core::Session& session = context.session;
    if (session.IsLogin && core::isAbsoluteFolder(before) && !platform::isSameFile(before, session.DataPath))
        desktop::runCommand(context.desk, [&] { removeLocalPages(before); });
}

void followDataFolder(desktop::Context& context, const QString& before) {
    const auto step = [&context](const std::function<void()>& action) { desktop::runCommand(context.desk, action); };
    if (context.windows.find<editor::frmContents>())
        step([&] { context.windows.get<editor::OpenDay>().readGenres(); });
    if (auto* calendar = context.windows.find<editor::frmCalender>())
        step([&] { calendar->fillBlogs(); });
    if (auto* blogs = context.windows.find<blog::frmBlogManager>())
        step([&] { blogs->fillBlogs(); });
    if (auto* find = context.windows.find<site::frmFind>())
        step([&] { find->fillGenres(); });
    if (auto* exported = context.windows.find<exchange::frmExport>())
        step([&] { exported->fillFormats(); });
    if (showsPageOf(context, before)) {
        step([&] { site::SaveHtml(context).SaveTmpFile(); });
        Arrangement(context).showStartPage();
    }
    leaveDataFolder(context, before);
}

} // namespace velloria::shell
