#include "cli/command.h"

#include "cli/streams.h"
#include "core/day_key.h"
#include "platform/file_write.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

using namespace Qt::StringLiterals;

namespace velloria::cli {
namespace {

QString escaped(QString field) {
    return field.replace(u'\\', u"\\\\"_s).replace(u'\t', u"\\t"_s).replace(u'\r', u"\\r"_s).replace(u'\n', u"\\n"_s);
}

} // namespace

void Invocation::print(const QJsonValue& json, const std::vector<QStringList>& rows) const {
    if (global.isJson) {
        const QJsonDocument document = json.isArray() ? QJsonDocument(json.toArray()) : QJsonDocument(json.toObject());
        writeOutput(document.toJson(QJsonDocument::Compact) + '\n');
        return;
    }
    QString text;
    for (const QStringList& row : rows) {
        for (qsizetype i = 0; i < row.size(); ++i)
            text += (i ? u"\t"_s : QString()) + escaped(row[i]);
        text += u'\n';
    }
    writeOutput(text.toUtf8());
}

const std::vector<Command>& allCommands() {
    static const std::vector<Command> commands = [] {
        std::vector<Command> all;
        for (const auto& part : {startCommands(), entryCommands(), genreCommands(), siteCommands(), convertCommands(),
                                 iniCommands(), databaseCommands()})
            all.insert(all.end(), part.begin(), part.end());
        return all;
    }();
    return commands;
}

QString dayArgument(const QString& text) {
    if (!core::isDayKey(text))
        throw UsageError(u"「%1」という日はありません (yyyy/mm/dd で指定してください)。"_s.arg(text));
    return text;
}

QString monthArgument(const QString& text) {
    if (!core::isMonthKey(text))
        throw UsageError(u"「%1」という月はありません (yyyy/mm で指定してください)。"_s.arg(text));
    return text;
}

int numberArgument(const QString& text) {
    bool isNumber = false;
    const int number = text.toInt(&isNumber);
    if (!isNumber || number < 1 || number > 32767)
        throw UsageError(u"「%1」は番号ではありません (1から32767までの整数で指定してください)。"_s.arg(text));
    return number;
}

QByteArray readArgumentFile(const QString& file) {
    return file.isEmpty() || file == u"-"_s ? readInput() : platform::readFile(file);
}

} // namespace velloria::cli
