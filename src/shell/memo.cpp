#include "shell/memo.h"

#include "convert/password_text.h"
#include "core/files.h"
#include "core/program_keys.h"
#include "core/settings.h"
#include "platform/directory.h"
#include "platform/failure.h"
#include "platform/file_read.h"
#include "platform/launcher.h"

using namespace Qt::StringLiterals;

namespace velloria::shell {

void memoCommand(const core::Run& run) {
    const core::Session& session = run.session;
    const QString program = platform::existingPath(core::files::kMemo.in(session));
    if (!platform::fileExists(program)) {
        run.desk.message(platform::MessageKind::Critical, u"VellMemo.exeが存在しません。"_s);
        return;
    }
    const core::Settings settings(session);
    const QString password =
        convert::passwordFromSetting(settings.text(core::inSection(core::keys::kUserPass, session.UserID)));
    const QStringList arguments{settings.file(core::SettingsFile::Users), session.UserID,
                                QString::fromUtf16(kPasswordByInput)};
    if (!platform::startWithInput(program, arguments, password.toUtf8() + '\n'))
        throw platform::Failure(u"プログラムを起動できません。"_s, program, {},
                                u"実行できるファイルか確認してください。"_s);
}

} // namespace velloria::shell
