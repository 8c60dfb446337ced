#include "shell/forms/diary_change.h"

#include "desktop/command.h"
#include "editor/forms/frmContents.h"
#include "editor/open_day.h"
#include "exchange/forms/frmDeleteImportDiary.h"
#include "registers/forms/frmResistFiles.h"
#include "registers/forms/frmResistLogs.h"
#include "shell/backup_commands.h"
#include "site/forms/frmFind.h"
#include "site/save_html.h"

using namespace Qt::StringLiterals;

namespace velloria::shell {
namespace {

void followDiary(desktop::Context& context) {
    const auto step = [&context](const std::function<void()>& action) { desktop::runCommand(context.desk, action); };
    if (auto* find = context.windows.find<site::frmFind>())
        step([&] { find->fillGenres(); });
    if (auto* files = context.windows.find<registers::frmResistFiles>())
        step([&] {
            files->fillDays();
            files->fillList();
        });
    if (auto* logs = context.windows.find<registers::frmResistLogs>())
        step([&] { logs->fillList(); });
    context.windows.unload<exchange::frmDeleteImportDiary>(); // its groups are those of the other diary
    step([&] {
        site::SaveHtml preview(context);
        preview.SaveTmpFile();
        preview.showPreview();
    });
}

} // namespace

void restoreInWindows(desktop::Context& context, const QString& name) {
    if (context.runs.isAnyRunning()) {
        context.desk.message(platform::MessageKind::Exclamation,
                             u"通信中は日記を復元できません。\r\n通信が終わってから、もう一度実行してください。"_s);
        return;
    }
    const bool isReplaced =
        context.windows.get<editor::OpenDay>().replaceDiary([&] { return restoreBackupCommand(context, name).isDone; });
    if (isReplaced)
        followDiary(context);
}

} // namespace velloria::shell
