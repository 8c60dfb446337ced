#include "core/ini.h"
#include "cli/command.h"
#include "cli/streams.h"
#include "platform/directory.h"
#include "platform/failure.h"
#include "platform/profile_file.h"

#include <QJsonArray>
#include <QJsonObject>

using namespace Qt::StringLiterals;

namespace velloria::cli {
namespace {

/// The file argument, which need not exist.
QString iniFile(const Invocation& invocation) {
    const QString file = platform::existingPath(invocation.argument(0));
    refuseUnreadableSettings(file);
    return file;
}

void get(Invocation& invocation) {
    const QString file = iniFile(invocation);
    const QString value =
        core::ReadIniDef(file, invocation.argument(1), invocation.argument(2), invocation.argument(3));
    if (invocation.global.isJson)
        invocation.print(QJsonObject{{u"value"_s, value}}, {});
    else
        writeLine(value); // for scripts: nothing is escaped
}

void getInteger(Invocation& invocation) {
    const QString file = iniFile(invocation);
    bool isNumber = true;
    const QString whenMissing = invocation.argument(3);
    const qint16 defaultValue = whenMissing.isEmpty() ? qint16(0) : whenMissing.toShort(&isNumber);
    if (!isNumber)
        throw UsageError(u"「%1」は-32768から32767までの整数ではありません。"_s.arg(whenMissing));
    const qint16 value = core::ReadIniIntDef(file, invocation.argument(1), invocation.argument(2), defaultValue);
    invocation.print(QJsonObject{{u"value"_s, value}}, {{QString::number(value)}});
}

/// A key that would read as a section, a comment or another key: written, it would not be found again. A value changes
/// by the rules of the settings, which are the same for every program.
void refuseLostKey(const QString& file, const QString& section, const QString& key, const QString& value) {
    const QByteArray before = platform::readFileIfThere(file).value_or(QByteArray());
    const QByteArray after = platform::changedProfile(before, section, key, value);
    if (platform::ProfileFile::fromBytes(after).value(section, key))
        return;
    throw platform::Failure(u"設定を元の通りに読み出せないので、書きません。"_s, file,
                            u"[%1] %2: セクションかキーの名前を設定に書けません"_s.arg(section, key),
                            u"ファイルは変更されていません。"_s);
}

void set(Invocation& invocation) {
    const QString file = iniFile(invocation);
    refuseLostKey(file, invocation.argument(1), invocation.argument(2), invocation.argument(3));
    platform::writeProfile(file, invocation.argument(1), invocation.argument(2), invocation.argument(3));
}

void remove(Invocation& invocation) {
    const QString file = iniFile(invocation);
    const QString section = invocation.argument(1);
    const QString key = invocation.argument(2);
    if (!platform::ProfileFile(file).value(section, key))
        throw platform::Failure(u"キーがないので、何も削除していません。"_s, file, u"[%1] %2"_s.arg(section, key),
                                u"ファイル、セクション、キーの名前を確認してください。"_s);
    platform::writeProfile(file, section, key, std::nullopt);
}

void sections(Invocation& invocation) {
    const QStringList names = core::ReadIniSections(iniFile(invocation));
    std::vector<QStringList> rows;
    for (const QString& name : names) {
        if (!name.isEmpty())
            rows.push_back({name});
    }
    invocation.print(QJsonArray::fromStringList(names), rows);
}

} // namespace

std::vector<Command> iniCommands() {
    return {
        {u"ini get"_s, u"FILE SECTION KEY [DEFAULT]"_s, 3, 4, {}, u"設定の値"_s, Start::None, get},
        {u"ini int"_s,
         u"FILE SECTION KEY [DEFAULT]"_s,
         3,
         4,
         {},
         u"設定の値 (16ビット整数)"_s,
         Start::None,
         getInteger},
        {u"ini set"_s, u"FILE SECTION KEY VALUE"_s, 4, 4, {}, u"設定を書く"_s, Start::None, set},
        {u"ini delete"_s, u"FILE SECTION KEY"_s, 3, 3, {}, u"設定のキーを削除する"_s, Start::None, remove},
        {u"ini sections"_s, u"FILE"_s, 1, 1, {}, u"セクションの一覧"_s, Start::None, sections},
    };
}

} // namespace velloria::cli
