#include "core/settings_file.h"

#include "platform/directory.h"
#include "platform/failure.h"
#include "platform/file_read.h"

using namespace Qt::StringLiterals;

namespace velloria::core {

bool isSettingsText(const QString& file) {
    const std::optional<QByteArray> bytes = platform::readFileIfThere(platform::existingPath(file));
    return !bytes || !bytes->contains('\0');
}

void refuseUnreadableSettings(const QString& file) {
    if (!isSettingsText(file))
        throw platform::Failure(u"設定ファイルを読み取れません。"_s, file, u"テキストではありません"_s,
                                u"バックアップから戻すか、削除してからもう一度実行してください。"_s);
}

} // namespace velloria::core
