#include "exchange/export_target.h"

#include "core/files.h"
#include "core/path_names.h"
#include "platform/directory.h"
#include "platform/failure.h"
#include "platform/file_write.h"

#include <QFileInfo>

using namespace Qt::StringLiterals;

namespace velloria::exchange {
namespace {

/// Whether it lies in the folder or deeper.
bool isWithin(const QString& file, const QString& folder) {
    const QString end = QFileInfo(folder).canonicalFilePath();
    return !folder.isEmpty() && !end.isEmpty() && file.startsWith(end + u'/');
}

/// Whether a file of this name, in small letters, is one of the program's in the folders of a user: settings, lists,
/// logs, histories, and all that keeps texts or copies of the diary.
bool isNameOfProgram(const QString& name) {
    static const QStringList kEndings{u"ini"_s,     u"mdb"_s, u"csv"_s, u"json"_s, u"jsonl"_s,
                                      u"damaged"_s, u"tmp"_s, u"bak"_s, u"log"_s,  u"lock"_s};
    // The engine's files beside the diary; the backups, numbered ones and their journals too.
    const bool isOfDiary = name.startsWith(core::files::kDiary.name) || name.startsWith(u"diarymdb."_s);
    const auto isNamed = [&](const core::File& file) { return name.compare(file.name, Qt::CaseInsensitive) == 0; };
    return isOfDiary || isNamed(core::files::kAddressHistory) || isNamed(core::files::kWordHistory) ||
           kEndings.contains(core::GetFileExt(name));
}

/// `file` without links on its way.
bool belongsToProgram(const core::Session& session, const QString& file) {
    if (platform::isSameFile(QFileInfo(file).path(), session.MyPath) ||
        isWithin(file, platform::existingPath(core::files::kExportFormats.in(session))))
        return true;
    const bool isOurs = isWithin(file, session.UserPath) || isWithin(file, session.DataPath);
    return isOurs && isNameOfProgram(core::GetFileName(file).toLower());
}

} // namespace

void requireExportTarget(const core::Session& session, const QString& file, const QString& formatFile) {
    const auto refuse = [&](const QString& reason) {
        throw platform::Failure(u"ファイルを保存できません。"_s, file, reason,
                                u"別のファイル名を指定してください。元のファイルはそのままです。"_s);
    };
    const QFileInfo target(file);
    if (!target.exists())
        return;
    if (!target.isFile())
        refuse(u"ファイルではありません"_s);
    for (const QString& own : {session.databaseFile(), session.DiaryIniFile, formatFile}) {
        if (platform::isSameFile(file, own))
            refuse(u"日記に必要なファイルです"_s);
    }
    // As it is named, and behind a link.
    const QString named = QFileInfo(target.absolutePath()).canonicalFilePath() + u'/' + target.fileName();
    if (belongsToProgram(session, named) || belongsToProgram(session, target.canonicalFilePath()))
        refuse(u"日記に必要なファイルです"_s);
}

} // namespace velloria::exchange
