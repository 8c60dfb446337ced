#include "cli/command.h"
#include "core/day_key.h"
#include "platform/text_fold.h"
#include "registers/file_registration.h"

#include <QDir>
#include <QFileInfo>
#include <QJsonArray>
#include <QJsonObject>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace velloria::cli {
namespace {

void list(Invocation& invocation) {
    QJsonArray json;
    std::vector<QStringList> rows;
    for (const store::FileRow& row : registers::FileRegistration(invocation).rows()) {
        json += QJsonObject{{u"Day"_s, row.day},
                            {u"Number"_s, row.number},
                            {u"FileName"_s, row.name},
                            {u"Uploaded"_s, row.isUploaded},
                            {u"Logged"_s, row.isLogged}};
        rows.push_back({row.day, QString::number(row.number), row.name, row.isUploaded ? u"1"_s : u"0"_s,
                        row.isLogged ? u"1"_s : u"0"_s});
    }
    invocation.print(json, rows);
}

/// A row of an old diary may hold any number, and one without any counts as 0.
qint16 rowNumber(const QString& text) {
    bool isNumber = false;
    const qint16 number = text.toShort(&isNumber);
    if (!isNumber)
        throw UsageError(u"「%1」は番号ではありません (file list に出る番号を指定してください)。"_s.arg(text));
    return number;
}

void checkAdd(const Invocation& invocation) {
    const QString day = invocation.argument(1);
    const QString number = invocation.argument(2);
    if (invocation.argument(0).isEmpty())
        throw UsageError(u"登録するファイルの名前が空です。"_s);
    if (invocation.has(u"--as"_s) && invocation.option(u"--as"_s).isEmpty())
        throw UsageError(u"オプション --as の値が空です。"_s);
    if (day == registers::kAllDays) {
        if (rowNumber(number) != 0)
            throw UsageError(u"「%1」ではなく 0 を指定してください (ALL の番号は 0 です)。"_s.arg(number));
        return;
    }
    if (!core::isDayKey(day))
        throw UsageError(u"「%1」という日はありません (yyyy/mm/dd か ALL で指定してください)。"_s.arg(day));
    numberArgument(number);
}

void add(Invocation& invocation) {
    const platform::Hourglass hourglass(invocation.desk);
    registers::FileRegistration files(invocation);
    const QString path = QDir::cleanPath(QFileInfo(invocation.argument(0)).absoluteFilePath());
    const qint16 number = rowNumber(invocation.argument(2));
    const QString day = invocation.argument(1);
    const platform::Outcome outcome = invocation.has(u"--as"_s)
                                          ? files.ResistFile2(path, invocation.option(u"--as"_s), day, number)
                                          : files.ResistFile(path, day, number);
    if (outcome == platform::Outcome::Refused)
        throw Refusal(u"ファイルの登録を中止しました。"_s);
}

void checkDelete(const Invocation& invocation) {
    rowNumber(invocation.argument(2));
}

void remove(Invocation& invocation) {
    registers::FileRegistration files(invocation);
    const QString name = invocation.argument(0);
    const QString day = invocation.argument(1);
    const qint16 number = rowNumber(invocation.argument(2));
    const std::vector<store::FileRow> rows = files.rows();
    const auto row = std::find_if(rows.begin(), rows.end(), [&](const store::FileRow& candidate) {
        return candidate.day == day && candidate.number == number && platform::equalText(candidate.name, name);
    });
    if (row == rows.end())
        throw Refusal(u"登録されていません: "_s + registers::shownFile({0, name, day, number, false, false}));
    if (files.deleteFile(*row) == platform::Outcome::Refused)
        throw Refusal(u"登録の削除を中止しました。"_s);
}

} // namespace

std::vector<Command> fileCommands() {
    return {
        {u"file list"_s, {}, 0, 0, {}, u"登録したファイルの一覧"_s, Start::Needed, list},
        {u"file add"_s,
         u"PATH DAY|ALL NUMBER [--as NAME]"_s,
         3,
         3,
         {{u"--as"_s, u"NAME"_s}},
         u"ファイルを日記に登録する (ALL の番号は 0)"_s,
         Start::Needed,
         add,
         checkAdd},
        {u"file delete"_s, u"NAME DAY|ALL NUMBER"_s, 3, 3, {}, u"登録を削除する"_s, Start::Needed, remove, checkDelete},
    };
}

} // namespace velloria::cli
