#include "cli/command.h"
#include "store/database_file.h"

#include <QJsonArray>
#include <QJsonObject>

using namespace Qt::StringLiterals;

namespace velloria::cli {
namespace {

void version(Invocation& invocation) {
    const bool hasFile = !invocation.arguments.isEmpty();
    const qint16 version = store::GetDBVersion(hasFile ? invocation.argument(0) : invocation.session.databaseFile());
    invocation.print(QJsonObject{{u"version"_s, version}}, {{QString::number(version)}});
}

void check(Invocation& invocation) {
    const QStringList findings = store::checkDatabase(invocation.session.databaseFile());
    std::vector<QStringList> rows;
    for (const QString& finding : findings)
        rows.push_back({finding});
    invocation.print(QJsonArray::fromStringList(findings), rows);
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
        {u"db check"_s, {}, 0, 0, {}, u"日記データベースの異常を報告する (何も変更しない)"_s, Start::Needed, check},
    };
}

} // namespace velloria::cli
