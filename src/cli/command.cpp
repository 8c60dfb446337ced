#include "cli/command.h"

#include "cli/streams.h"
#include "platform/failure.h"
#include "platform/file_write.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QStringDecoder>

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
    // Scripts get what is stored; on a screen it is not to command the terminal.
    writeOutput((standardOutputIsTerminal() ? harmless(text) : text).toUtf8());
}

void Invocation::printList(const QStringList& texts) const {
    std::vector<QStringList> rows;
    for (const QString& text : texts)
        rows.push_back({text});
    print(QJsonArray::fromStringList(texts), rows);
}

const std::vector<Command>& allCommands() {
    static const std::vector<Command> commands = [] {
        std::vector<Command> all;
        for (const auto& part : {startCommands(),   entryCommands(),     genreCommands(),          siteCommands(),
                                 exportCommands(),  importCommands(),    pluginExchangeCommands(), exchangeCommands(),
                                 convertCommands(), iniCommands(),       fileCommands(),           logCommands(),
                                 uploadCommands(),  pingCommands(),      updateCommands(),         databaseCommands(),
                                 backupCommands(),  customizeCommands(), userCommands(),           blogCommands()})
            all.insert(all.end(), part.begin(), part.end());
        return all;
    }();
    return commands;
}

int numberArgument(const QString& text) {
    bool isNumber = false;
    const int number = text.toInt(&isNumber);
    if (!isNumber || number < 1 || number > 32767)
        throw UsageError(u"「%1」は番号ではありません (1から32767までの整数で指定してください)。"_s.arg(text));
    return number;
}

QByteArray readArgumentFile(const QString& file) {
    if (file.isEmpty() || file == u"-"_s)
        return readInput();
    try {
        return platform::readAnything(file);
    } catch (const platform::Failure& failure) {
        throw platform::Failure(failure.whatFailed(), file, failure.reason(), u"ファイル名を確認してください。"_s);
    }
}

QString readArgumentText(const QString& file) {
    const QByteArray bytes = readArgumentFile(file);
    QStringDecoder decode(QStringDecoder::Utf8, QStringDecoder::Flag::Stateless);
    QString text = decode(bytes);
    if (decode.hasError())
        throw platform::Failure(u"入力を読み取れません。"_s, shownFile(file), u"UTF-8ではありません"_s,
                                u"UTF-8に変換してから、もう一度実行してください。"_s);
    return text;
}

QString shownFile(const QString& file) {
    return file.isEmpty() || file == u"-"_s ? u"標準入力"_s : file;
}

void refuseUnreadableSettings(const QString& file) {
    const std::optional<QByteArray> bytes = platform::readFileIfThere(file);
    if (bytes && bytes->contains('\0'))
        throw platform::Failure(u"設定ファイルを読み取れません。"_s, file, u"テキストではありません"_s,
                                u"ファイルは変更されていません。テキストの設定ファイルを指定してください。"_s);
}

} // namespace velloria::cli
