#include "shell/forms/tool_commands.h"

#include "convert/password_text.h"
#include "core/program_keys.h"
#include "core/settings.h"
#include "platform/directory.h"
#include "platform/failure.h"
#include "platform/file_write.h"
#include "platform/plugin.h"

#include <QProcess>

using namespace Qt::StringLiterals;

namespace velloria::shell {
namespace {

void startMemo(desktop::Context& context) {
    const core::Session& session = context.session;
    const QString program = platform::existingPath(session.MyPath + u"VellMemo.exe"_s);
    if (!platform::fileExists(program)) {
        context.desk.message(platform::MessageKind::Critical, u"VellMemo.exeが存在しません。"_s);
        return;
    }
    const core::Settings settings(session);
    const QString password =
        convert::DecryptPassword(settings.text(core::inSection(core::keys::kUserPass, session.UserID)));
    if (!QProcess::startDetached(program, {settings.file(core::SettingsFile::Users), session.UserID, password}))
        throw platform::Failure(u"プログラムを起動できません。"_s, program, {},
                                u"実行できるファイルか確認してください。"_s);
}

void showDiaryInformation(desktop::Context& context) {
    const QString page = context.session.DataPath + u"VellInfo_result.htm"_s;
    platform::removeFile(page);
    const platform::Plugin plugin(context.session.MyPath + u"VellInfo.dll"_s);
    const velloria_diary_information& information = plugin.diaryInformation();
    const QByteArray database = context.session.databaseFile().toUtf8();
    if (plugin.check(information.set_paths(database.constData(), page.toUtf8().constData())))
        plugin.check(information.run());
    else
        context.desk.message(platform::MessageKind::Critical, u"パスのエラーです"_s);
    context.desk.navigate(page);
}

void showVersion(desktop::Context& context, const QString& fileName) {
    const platform::Plugin plugin(context.session.MyPath + fileName);
    context.desk.message(platform::MessageKind::Plain, fileName + u" Version "_s + plugin.version(), fileName);
}

} // namespace

desktop::MenuCommands toolCommands(desktop::Context& context) {
    const auto version = [&context](const QString& fileName) {
        return [&context, fileName] { showVersion(context, fileName); };
    };
    return {
        {"mnuVellMemo"_L1, {}, [&context] { startMemo(context); }},
        {"MnuVellInfo"_L1, {}, [&context] { showDiaryInformation(context); }},
        {"MnuChimerDll"_L1, {}, version(u"Chimer.dll"_s)},
        {"MnuLarkportDll"_L1, {}, version(u"Larkport.dll"_s)},
        {"MnuWrenportDll"_L1, {}, version(u"Wrenport.dll"_s)},
        {"MnuVellInfoDll"_L1, {}, version(u"VellInfo.dll"_s)},
    };
}

} // namespace velloria::shell
