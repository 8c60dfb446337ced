#include "cli/command.h"
#include "cli/streams.h"
#include "core/files.h"
#include "core/path_names.h"
#include "platform/directory.h"
#include "store/database_check.h"
#include "store/database_file.h"

#include <QJsonArray>
#include <QJsonObject>

using namespace Qt::StringLiterals;

namespace velloria::cli {
namespace {

void version(Invocation& invocation) {
    const bool hasFile = !invocation.arguments.isEmpty();
    const qint16 version = hasFile ? store::versionOfNamed(invocation.argument(0))
                                   : store::GetDBVersion(invocation.session.databaseFile());
    invocation.print(QJsonObject{{u"version"_s, version}}, {{QString::number(version)}});
}

void check(Invocation& invocation) {
    const QStringList findings = store::checkDatabase(invocation.session.databaseFile());
    if (findings.isEmpty())
        store::GetDBVersion(invocation.session.databaseFile()); // refuses what is no version
    std::vector<QStringList> rows;
    for (const QString& finding : findings)
        rows.push_back({harmless(finding)});
    invocation.print(QJsonArray::fromStringList(findings), rows);
    if (!findings.isEmpty())
        throw Refusal(u"日記データベースに%1件の異常があります。何も変更していません。"_s.arg(findings.size()));
}

void restore(Invocation& invocation) {
    const QString backup = invocation.arguments.isEmpty()
                               ? platform::existingPath(core::files::kBackup.in(invocation.session))
                               : invocation.argument(0);
    const QString kept = store::restoreDatabase(platform::existingPath(invocation.session.databaseFile()), backup);
    const QString told = core::GetFileName(backup) + u"を復元しました。"_s;
    invocation.desk.status(
        kept.isEmpty() ? told : told + u"今までの日記は「%1」に残しました。"_s.arg(core::GetFileName(kept)));
    invocation.print(QJsonObject{{u"kept"_s, kept.isEmpty() ? QJsonValue() : QJsonValue(kept)}},
                     kept.isEmpty() ? std::vector<QStringList>{} : std::vector<QStringList>{{kept}});
}

} // namespace

std::vector<Command> databaseCommands() {
    return {
        {u"db version"_s,
         u"[FILE]"_s,
         0,
         1,
         {},
         u"日記データベースのバージョン (FILEを指定すると起動しない)"_s,
         Start::UnlessArgument,
         version},
        {u"db check"_s, {}, 0, 0, {}, u"日記データベースの異常を報告する (何も変更しない)"_s, Start::User, check},
        {u"db restore"_s,
         u"[FILE]"_s,
         0,
         1,
         {},
         u"FILE (既定: diarymdb.bak) を日記にする (今までの日記は残し、その名前を出力する)"_s,
         Start::User,
         restore},
    };
}

} // namespace velloria::cli
