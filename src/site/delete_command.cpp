#include "site/delete_command.h"

#include "platform/failure.h"
#include "site/save_html.h"

using namespace Qt::StringLiterals;

namespace velloria::site {

Deletion deleteCommand(const core::Run& run, const QString& day, int number, const std::function<void()>& remove) {
    if (!run.desk.ask(u"%1の%2番目の日記を削除します。"_s.arg(day).arg(number))) {
        run.desk.status(kDeletionRefused);
        return Deletion::Refused;
    }
    const platform::Hourglass hourglass(run.desk);
    remove();
    SaveHtml preview(run);
    Deletion result = Deletion::Done;
    try {
        preview.SaveTmpFile();
    } catch (const platform::Failure& failure) {
        run.desk.failure(failure); // the deletion stands
        result = Deletion::WithoutPreview;
    }
    preview.showPreview();
    run.desk.status(day + u"の日記を削除しました。"_s);
    return result;
}

} // namespace velloria::site
