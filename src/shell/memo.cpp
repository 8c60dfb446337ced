#include "shell/memo.h"

#include "convert/password_text.h"
#include "core/files.h"
#include "core/program_keys.h"
#include "core/settings.h"
#include "platform/directory.h"
#include "platform/failure.h"
#include "platform/file_read.h"

#include <QProcess>

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
    if (!QProcess::startDetached(program, {settings.file(core::SettingsFile::Users), session.UserID, password}))
        throw platform::Failure(u"プログラムを起動できません。"_s, program, {},
                                u"実行できるファイルか確認してください。"_s);
}

} // namespace velloria::shell
