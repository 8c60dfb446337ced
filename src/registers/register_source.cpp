#include "registers/register_source.h"

#include "core/ini.h"
#include "core/path_names.h"
#include "platform/code_page.h"

#include <QFileInfo>

using namespace Qt::StringLiterals;

namespace velloria::registers {

RegisterSource registerSource(const QString& path) {
    const QString whole = core::TrimNull(path);
    const QFileInfo file(whole);
    if (file.isDir())
        throw platform::Failure(u"フォルダは登録できません。"_s, whole, {}, u"ファイルを指定してください。"_s);
    if (!file.isFile())
        throw platform::Failure(u"登録するファイルがありません。"_s, whole, {},
                                u"何も登録していません。ファイルの場所と名前を確認してください。"_s);
    return {whole, core::GetParentFolder(whole), core::GetFileName(whole)};
}

void requireRegisterName(const QString& name) {
    const QString nothingDone = u"何も登録していません。名前を変えてから、もう一度登録してください。"_s;
    if (!core::isBareName(name))
        throw platform::Failure(u"この名前では登録できません。"_s, name, u"ファイルの名前ではありません"_s,
                                nothingDone);
    if (!platform::inCodePage(name))
        throw platform::Failure(u"この名前では登録できません。"_s, name,
                                u"ページの文字コード（Shift JIS）にない文字があります"_s, nothingDone);
}

bool isSameFolder(const QString& left, const QString& right) {
#ifdef Q_OS_WIN
    return left.toLower() == right.toLower();
#else
    return left == right;
#endif
}

platform::Failure removalFailure(const QStringList& files, const QString& reason) {
    platform::Failure failure(u"ファイルを削除できません。"_s, files.join(u"、"_s), reason,
                              u"ファイルは残っています。不要なら、ファイルマネージャーなどで削除してください。"_s);
    failure.addStage(u"登録は削除しました"_s);
    return failure;
}

} // namespace velloria::registers
