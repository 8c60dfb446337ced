#include "cli/command.h"
#include "platform/text_fold.h"
#include "registers/log_registration.h"

#include <QDir>
#include <QFileInfo>
#include <QJsonArray>
#include <QJsonObject>
#include <QRegularExpression>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace velloria::cli {
namespace {

void list(Invocation& invocation) {
    QJsonArray json;
    std::vector<QStringList> rows;
    for (const store::LogRow& row : registers::LogRegistration(invocation).rows()) {
        json += QJsonObject{{u"LogMonth"_s, row.month}, {u"LogFileName"_s, row.fileName}};
        rows.push_back({row.month, row.fileName});
    }
    invocation.print(json, rows);
}

void checkAdd(const Invocation& invocation) {
    if (invocation.argument(0).isEmpty())
        throw UsageError(u"登録するログの名前が空です。"_s);
    static const QRegularExpression kMonth(u"^(|0?[1-9]|1[0-2])$"_s);
    if (!kMonth.match(invocation.argument(2)).hasMatch())
        throw UsageError(
            u"「%1」という月はありません (1から12までの整数で指定してください)。"_s.arg(invocation.argument(2)));
}

void add(Invocation& invocation) {
    const QString year = invocation.argument(1);
    const QString month = invocation.argument(2);
    if (year.isEmpty() || month.isEmpty())
        throw Refusal(u"年か月が空なので、何も登録していません。"_s);
    if (const std::optional<QString> problem = registers::yearProblem(year)) {
        registers::tellLogProblem(invocation.desk, *problem);
        throw Refusal(u"何も登録していません。年を確認してください: "_s + year);
    }
    const platform::Hourglass hourglass(invocation.desk);
    registers::LogRegistration logs(invocation);
    const QString path = QDir::cleanPath(QFileInfo(invocation.argument(0)).absoluteFilePath());
    if (logs.ResistLogFile(path, year, month) == platform::Outcome::Refused)
        throw Refusal(u"ログの登録を中止しました。"_s);
}

void remove(Invocation& invocation) {
    registers::LogRegistration logs(invocation);
    const QString name = invocation.argument(0);
    const std::vector<store::LogRow> rows = logs.rows();
    const auto row = std::find_if(rows.begin(), rows.end(), [&](const store::LogRow& candidate) {
        return platform::equalText(candidate.fileName, name);
    });
    if (row == rows.end())
        throw Refusal(u"登録されていません: "_s + name);
    if (logs.deleteLog(*row) == platform::Outcome::Refused)
        throw Refusal(u"登録の削除を中止しました。"_s);
}

} // namespace

std::vector<Command> logCommands() {
    return {
        {u"log list"_s, {}, 0, 0, {}, u"登録したログの一覧"_s, Start::Needed, list},
        {u"log add"_s,
         u"PATH YEAR MONTH"_s,
         3,
         3,
         {},
         u"ほかで作ったページをその月のログとして登録する"_s,
         Start::Needed,
         add,
         checkAdd},
        {u"log delete"_s, u"NAME"_s, 1, 1, {}, u"ログの登録を削除する"_s, Start::Needed, remove},
    };
}

} // namespace velloria::cli
