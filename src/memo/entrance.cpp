#include "memo/entrance.h"

#include "core/files.h"
#include "core/path_names.h"
#include "memo/words.h"
#include "platform/directory.h"
#include "platform/file_read.h"
#include "platform/utf8.h"
#include "shell/home.h"
#include "shell/memo.h"
#include "shell/users.h"
#include "store/database_file.h"
#include "store/database_format.h"

#include <QFileInfo>

using namespace Qt::StringLiterals;

namespace velloria::memo {

using platform::MessageKind;

namespace {

bool refuse(const core::Run& run, const QString& japanese, const QString& english) {
    const Words words(core::menuLanguage(run.session));
    run.desk.message(MessageKind::Critical, words(japanese, english), words(u"ベロリアメモ"_s, u"VellMemo"_s));
    return false;
}

QString passwordFrom(const QString& argument, const ReadLine& input) {
    if (argument != QString::fromUtf16(shell::kPasswordByInput))
        return argument;
    QByteArray line = input();
    while (line.endsWith('\n') || line.endsWith('\r'))
        line.chop(1);
    return platform::fromUtf8(line);
}

void setUserPath(core::Session& session, const QString& folder) {
    session.UserPath = core::withSeparator(platform::existingPath(folder));
    session.DiaryIniFile = platform::existingPath(core::files::kSettings.in(session));
    session.dbFileName = core::GetFileName(platform::existingPath(core::files::kDiary.in(session)));
}

bool hasDiary(const core::Session& session) {
    const QString diary = session.databaseFile();
    return platform::fileExists(diary) && store::formatOf(diary) == store::DatabaseFormat::Sqlite &&
           store::GetDBVersion(diary) >= core::kDatabaseVersion;
}

} // namespace

bool enter(const core::Run& run, const QStringList& arguments, const ReadLine& input, const QString& programFolder) {
    core::Session& session = run.session;
    session = core::Session();
    session.MyPath = core::withSeparator(arguments.isEmpty() ? shell::findHome({}, programFolder)
                                                             : QFileInfo(arguments.front()).absolutePath());
    session.CurrentVersion = core::kProgramVersion.joined();
    session.UserID = arguments.value(1);
    const QString password = passwordFrom(arguments.value(2), input);
    const shell::Users users(session.MyPath);
    if (arguments.isEmpty() && users.exist())
        return refuse(run, u"ベロリアメモは、Velloriaの「ツール」メニューから起動してください。"_s,
                      u"Start VellMemo from the menu \"Tools\" of Velloria."_s);
    // A diary that was open before the first user was made is still that of the single user.
    setUserPath(session, core::files::kUserData.in(session));
    if (users.exist() && !(session.UserID.isEmpty() && platform::fileExists(session.databaseFile()))) {
        setUserPath(session, users.folder(session.UserID));
        session.IsLogin = true;
        if (!users.UserCheck(session.UserID, password))
            return refuse(run, u"不正なユーザもしくはパスワードです。\r\nベロリアメモを終了します。"_s,
                          u"The user or the password is wrong.\r\nVellMemo ends."_s);
    }
    if (!hasDiary(session))
        return refuse(
            run,
            u"メモを保存する日記がありません。\r\n先にVelloriaを起動してください。\r\n%1"_s.arg(session.databaseFile()),
            u"There is no diary to keep memos in.\r\nStart Velloria first.\r\n%1"_s.arg(session.databaseFile()));
    return true;
}

} // namespace velloria::memo
