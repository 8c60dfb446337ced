#include "cli/command.h"
#include "cli/streams.h"
#include "core/files.h"
#include "platform/directory.h"
#include "shell/backup_commands.h"
#include "store/database_check.h"
#include "store/database_file.h"
#include "store/database_repair.h"
#include "store/optimize_command.h"

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

std::vector<QStringList> harmlessRows(const QStringList& lines) {
    std::vector<QStringList> rows;
    for (const QString& line : lines)
        rows.push_back({harmless(line)});
    return rows;
}

void repair(Invocation& invocation) {
    const auto [mended, remaining] = store::repairDatabase(invocation);
    invocation.print(QJsonObject{{u"mended"_s, QJsonArray::fromStringList(mended)},
                                 {u"remaining"_s, QJsonArray::fromStringList(remaining)}},
                     harmlessRows(mended + remaining));
    if (!remaining.isEmpty())
        throw Refusal(u"%1件を直しました。日記データベースに%2件の異常が残っています。"_s.arg(mended.size())
                          .arg(remaining.size()));
}

void check(Invocation& invocation) {
    if (invocation.has(u"--repair"_s)) {
        repair(invocation);
        return;
    }
    const QStringList findings = store::checkDatabase(invocation.session.databaseFile(), invocation.session.DataPath);
    invocation.print(QJsonArray::fromStringList(findings), harmlessRows(findings));
    if (!findings.isEmpty())
        throw Refusal(u"日記データベースに%1件の異常があります。何も変更していません。"_s.arg(findings.size()));
}

void optimize(Invocation& invocation) {
    if (!store::optimizeCommand(invocation))
        throw Refusal(u"最適化していません。"_s);
}

void restore(Invocation& invocation) {
    const QString backup = invocation.arguments.isEmpty()
                               ? platform::existingPath(core::files::kBackup.in(invocation.session))
                               : invocation.argument(0);
    const QString kept = shell::restoreFile(invocation, backup).kept;
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
        {u"db optimize"_s,
         {},
         0,
         0,
         {},
         u"日記データベースのファイルを小さくする (今までのものは diarymdb.bak に残す)"_s,
         Start::Needed,
         optimize},
        {u"db check"_s,
         u"[--repair]"_s,
         0,
         0,
         {{u"--repair"_s, {}}},
         u"日記データベースの異常を報告する (--repair: 日付の形と番号を直す。ほかは何も変更しない)"_s,
         Start::User,
         check},
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
