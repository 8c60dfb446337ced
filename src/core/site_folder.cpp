#include "core/site_folder.h"

#include "platform/failure.h"

#include <QFileInfo>

using namespace Qt::StringLiterals;

namespace velloria::core {

void requireSiteFolder(const Session& session) {
    if (!session.FilePath.isEmpty() && !QFileInfo(session.FilePath).isDir())
        throw platform::Failure(u"保存先のフォルダがありません。"_s, session.FilePath, {},
                                u"ディスクをつなぐか、名前を付けて保存で別のフォルダを指定してください。"_s);
}

} // namespace velloria::core
