#include "shell/diary_information.h"

#include "platform/file_write.h"
#include "platform/plugin.h"

using namespace Qt::StringLiterals;

namespace velloria::shell {

void diaryInformationCommand(const core::Run& run) {
    const QString page = run.session.DataPath + u"VellInfo_result.htm"_s;
    platform::removeFile(page);
    const platform::Plugin plugin(run.session.MyPath + u"VellInfo.dll"_s);
    const velloria_diary_information& information = plugin.diaryInformation();
    const QByteArray database = run.session.databaseFile().toUtf8();
    if (plugin.check(information.set_paths(database.constData(), page.toUtf8().constData())))
        plugin.check(information.run());
    else
        run.desk.message(platform::MessageKind::Critical, u"パスのエラーです"_s);
    run.desk.navigate(page);
}

} // namespace velloria::shell
