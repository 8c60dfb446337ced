#include "shell/shutdown.h"

#include "core/path_names.h"
#include "core/upload_list.h"
#include "platform/directory.h"
#include "platform/failure.h"
#include "platform/file_write.h"

#include <QFile>
#include <QFileInfo>
#include <QRegularExpression>
#include <QSet>

#include <optional>

using namespace Qt::StringLiterals;

namespace velloria::shell {
namespace {

/// The names below the data folder that the lists of the upload hold: pages of a site that lies there.
QSet<QString> listedNames(const core::Session& session) {
    QSet<QString> names;
    for (const QString& list : {u"upload.tmp"_s, u"uploadold.tmp"_s, u"uploadlog.tmp"_s, u"uplogtmp.tmp"_s}) {
        for (const core::UploadRow& row : core::readUploadList(session.UserPath + list)) {
            if (platform::isSameFile(row.folder, session.DataPath))
                names.insert(row.name);
        }
    }
    return names;
}

/// Whether the name is one of the local pages, their parts and feeds: "tmp.htm", "tmp_01.htm", "Customize_C.htm".
bool isLocalPage(const QString& name) {
    static const QRegularExpression kPages(
        u"^(oldtmp|findtmp|VellInfo_result|(tmp|Customize)(_C|_D|(_D)?_\\d{2,}|_RSS091|_RSS100|_RSS200|_ATOM)?)\\.[^.]+$"_s,
        QRegularExpression::CaseInsensitiveOption);
    return kPages.match(name).hasMatch();
}

/// Whether the file says of itself that this program made it, which pages and RSS 2.0 and Atom feeds do.
bool namesItsGenerator(const QString& file) {
    QFile page(file);
    constexpr qint64 kHead = 64 * 1024;
    if (!page.open(QIODevice::ReadOnly))
        return false;
    const QByteArray head = page.read(kHead);
    return head.contains("content=\"Velloria") || head.contains("<generator>Velloria");
}

QString freeName(const QString& folder, const QString& name) {
    QString target = folder + name;
    for (int copy = 2; QFileInfo::exists(target); ++copy)
        target = folder + core::GetBaseName(name) + u" ("_s + QString::number(copy) + u")."_s + core::GetFileExt(name);
    return target;
}

void keep(const QString& folder, const QString& name) {
    const QString kept = folder + u"Kept/"_s;
    platform::makeFolder(kept.chopped(1));
    QFile file(folder + name);
    if (!file.rename(freeName(kept, name)))
        throw platform::Failure(u"ファイルを移動できません。"_s, folder + name, file.errorString(),
                                u"このファイルはデータフォルダに残っています。"_s);
}

} // namespace

void removeGeneratedPages(const core::Session& session) {
    const QSet<QString> listed = listedNames(session);
    std::optional<platform::Failure> first;
    for (const QString& pattern : {u"*.htm"_s, u"*.xml"_s}) {
        for (const QString& name : platform::listFolder(session.DataPath, pattern)) {
            try {
                if (isLocalPage(name) || listed.contains(name) || namesItsGenerator(session.DataPath + name))
                    platform::removeFile(session.DataPath + name);
                else
                    keep(session.DataPath, name);
            } catch (const platform::Failure& failure) {
                if (!first)
                    first = failure;
            }
        }
    }
    if (first)
        throw *first;
}

} // namespace velloria::shell
