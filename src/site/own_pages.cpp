#include "site/own_pages.h"

#include "core/files.h"
#include "core/upload_list.h"
#include "platform/directory.h"
#include "platform/failure.h"
#include "platform/file_write.h"

#include <QFile>
#include <QRegularExpression>

#include <optional>

using namespace Qt::StringLiterals;

namespace velloria::site {

QSet<QString> listedNames(const core::Session& session) {
    QSet<QString> names;
    namespace files = core::files;
    for (const core::File& list : {files::kPageList, files::kSentList, files::kLogList, files::kLogPageList}) {
        for (const core::UploadRow& row : core::readUploadList(list.in(session))) {
            if (platform::isSameFile(row.folder, session.DataPath))
                names.insert(row.name);
        }
    }
    return names;
}

bool namesItsGenerator(const QString& file) {
    QFile page(file);
    constexpr qint64 kHead = 64 * 1024;
    if (!page.open(QIODevice::ReadOnly))
        return false;
    const QByteArray head = page.read(kHead);
    return head.contains("content=\"Velloria") || head.contains("<generator>Velloria");
}

void removeOldDayPages(const core::Session& session) {
    static const QRegularExpression kDay(u"^\\d{4}_\\d\\d_\\d\\d\\.htm$"_s);
    QSet<QString> kept = listedNames(session);
    kept.insert(session.FileName);
    std::optional<platform::Failure> first;
    for (const QString& name : platform::listFolder(session.DataPath, u"*.htm"_s)) {
        if (!kDay.match(name).hasMatch() || kept.contains(name) || !namesItsGenerator(session.DataPath + name))
            continue;
        try {
            platform::removeFile(session.DataPath + name);
        } catch (const platform::Failure& failure) {
            if (!first)
                first = failure;
        }
    }
    if (first)
        throw *first;
}

} // namespace velloria::site
