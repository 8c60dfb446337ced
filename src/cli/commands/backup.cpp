#include "cli/command.h"
#include "shell/backup_commands.h"

#include <QJsonArray>
#include <QJsonObject>

using namespace Qt::StringLiterals;

namespace velloria::cli {
namespace {

void list(Invocation& invocation) {
    QJsonArray json;
    std::vector<QStringList> rows;
    for (const store::DiaryCopy& copy : store::diaryCopies(invocation.session)) {
        const bool isReadable = copy.problem.isEmpty();
        const QString size = QString::number(copy.size);
        json += QJsonObject{{u"Name"_s, copy.name},
                            {u"Date"_s, shell::shownDate(copy)},
                            {u"Size"_s, copy.size},
                            {u"Entries"_s, isReadable ? QJsonValue(copy.entries) : QJsonValue()},
                            {u"Title"_s, isReadable ? QJsonValue(copy.lastTitle) : QJsonValue()},
                            {u"Problem"_s, isReadable ? QJsonValue() : QJsonValue(copy.problem)}};
        rows.push_back({copy.name, shell::shownDate(copy), size, shell::shownEntries(copy), shell::shownTitle(copy)});
    }
    invocation.print(json, rows);
}

void make(Invocation& invocation) {
    const QString made = shell::makeBackupCommand(invocation);
    if (made.isEmpty())
        throw Refusal(shell::kNothingToBackUp);
    invocation.print(QJsonObject{{u"file"_s, made}}, {{made}});
}

void restore(Invocation& invocation) {
    const shell::Restoration restored = shell::restoreBackupCommand(invocation, invocation.argument(0));
    if (!restored.isDone)
        throw Refusal(shell::kRestoreRefused);
    const QString& kept = restored.kept;
    invocation.print(QJsonObject{{u"kept"_s, kept.isEmpty() ? QJsonValue() : QJsonValue(kept)}},
                     kept.isEmpty() ? std::vector<QStringList>{} : std::vector<QStringList>{{kept}});
}

} // namespace

std::vector<Command> backupCommands() {
    return {
        {u"backup list"_s,
         {},
         0,
         0,
         {},
         u"日記のバックアップ (名前、日付、大きさ、件数、最後の日記のタイトル)"_s,
         Start::User,
         list},
        {u"backup make"_s, {}, 0, 0, {}, u"今日のバックアップを作り、そのファイルを出力する"_s, Start::User, make},
        {u"backup restore"_s,
         u"NAME"_s,
         1,
         1,
         {},
         u"一覧にあるバックアップを日記にする (今までの日記は残し、その名前を出力する)"_s,
         Start::User,
         restore},
    };
}

} // namespace velloria::cli
