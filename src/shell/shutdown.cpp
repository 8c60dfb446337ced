#include "shell/shutdown.h"

#include "core/files.h"
#include "core/path_names.h"
#include "platform/directory.h"
#include "platform/failure.h"
#include "platform/file_write.h"
#include "site/local_page.h"
#include "site/own_pages.h"

#include <QFile>
#include <QFileInfo>

#include <functional>
#include <optional>

using namespace Qt::StringLiterals;

namespace velloria::shell {
namespace {

QString freeName(const QString& folder, const QString& name) {
    QString target = folder + name;
    for (int copy = 2; QFileInfo::exists(target); ++copy)
        target = folder + core::GetBaseName(name) + u" ("_s + QString::number(copy) + u")."_s + core::GetFileExt(name);
    return target;
}

void keep(const QString& folder, const QString& name) {
    const QString kept = core::files::kKeptPages.below(folder) + u'/';
    platform::makeFolder(kept.chopped(1));
    QFile file(folder + name);
    if (!file.rename(freeName(kept, name)))
        throw platform::Failure(u"ファイルを移動できません。"_s, folder + name, file.errorString(),
                                u"このファイルはデータフォルダに残っています。"_s);
}

/// The first refusal is thrown once all pages have had their turn.
void forEachPage(const QString& folder, const std::function<void(const QString& name)>& action) {
    std::optional<platform::Failure> first;
    for (const QString& pattern : {u"*.htm"_s, u"*.xml"_s}) {
        for (const QString& name : platform::listFolder(folder, pattern)) {
            try {
                action(name);
            } catch (const platform::Failure& failure) {
                if (!first)
                    first = failure;
            }
        }
    }
    if (first)
        throw *first;
}

} // namespace

void removeGeneratedPages(const core::Session& session) {
    const QSet<QString> listed = site::listedNames(session);
    forEachPage(session.DataPath, [&](const QString& name) {
        if (site::isLocalPage(name) || listed.contains(name) || site::namesItsGenerator(session.DataPath + name))
            platform::removeFile(session.DataPath + name);
        else
            keep(session.DataPath, name);
    });
}

void removeLocalPages(const QString& folder) {
    forEachPage(folder, [&](const QString& name) {
        if (site::isLocalPage(name))
            platform::removeFile(folder + name);
    });
}

} // namespace velloria::shell
