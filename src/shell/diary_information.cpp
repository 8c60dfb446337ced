#include "shell/diary_information.h"

#include "core/files.h"
#include "platform/file_write.h"
#include "platform/plugin.h"

using namespace Qt::StringLiterals;

namespace velloria::shell {

void diaryInformationCommand(const core::Run& run) {
    const QString page = core::files::kInformationPage.in(run.session);
    platform::removeFile(page);
    const platform::Plugin plugin(core::files::kVellInfo.in(run.session));
    plugin.use(&velloria_plugin::diary_information, [&](const velloria_diary_information& information) {
        const QByteArray database = run.session.databaseFile().toUtf8();
        if (plugin.check(information.set_paths(database.constData(), page.toUtf8().constData()))) {
            const auto runWithHost = platform::Plugin::known(information, &velloria_diary_information::run_with_host);
            const platform::PluginHost host(run.desk);
            plugin.check(runWithHost ? runWithHost(host.table()) : information.run());
        } else {
            run.desk.message(platform::MessageKind::Critical, u"パスのエラーです"_s);
        }
    });
    run.desk.navigate(page);
}

} // namespace velloria::shell
