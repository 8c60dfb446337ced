#include "site/background_picture.h"

#include "core/files.h"
#include "core/path_names.h"
#include "platform/directory.h"
#include "registers/file_registration.h"

using namespace Qt::StringLiterals;

namespace velloria::site {

std::optional<QString> choosePicture(const core::Run& run) {
    const std::optional<QString> path = run.desk.choosePath(
        {platform::PathMode::Open, u"背景画像の選択"_s,
         u"GIF Files(*.gif)|*.gif|JPEG Files(*.jpg)|*.jpg|PNG Files(*.png)|*.png|ALL Files(*.*)|*.*|"_s,
         platform::existingPath(core::files::kParts.in(run.session))});
    if (!path || path->isEmpty())
        return std::nullopt;
    if (platform::fileExists(*path))
        return path;
    run.desk.message(platform::MessageKind::Plain, u"不正なパスです。"_s);
    return std::nullopt;
}

QString pictureAddress(const QString& path) {
    return u"./DiaryParts/"_s + core::GetFileName(path);
}

void offerRegistration(const core::Run& run, const QString& path) {
    if (run.desk.ask(u"ファイルを登録しますか？"_s))
        registers::FileRegistration(run).ResistFile(path, u"ALL"_s, 0);
}

} // namespace velloria::site
