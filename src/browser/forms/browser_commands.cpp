#include "browser/forms/browser_commands.h"

#include "browser/forms/frmBrowser.h"
#include "platform/directory.h"
#include "platform/file_write.h"

using namespace Qt::StringLiterals;

namespace velloria::browser {
namespace {

void flushHistory(desktop::Context& context, const QString& question, const QString& fileName,
                  void (frmBrowser::*reload)()) {
    if (!context.desk.ask(question))
        return;
    platform::removeFile(platform::existingPath(context.session.UserPath + fileName));
    platform::removeFile(platform::existingPath(context.session.DataPath + fileName));
    (context.windows.get<frmBrowser>().*reload)();
}

} // namespace

desktop::MenuCommands browserCommands(desktop::Context& context) {
    return {
        {"MnuRefreshURLHist"_L1,
         {},
         [&context] {
             flushHistory(context, u"URL履歴を消去しますか？"_s, u"URLHist.txt"_s, &frmBrowser::HistoryAdd_URL);
         }},
        {"MnuRefreshFindHist"_L1,
         {},
         [&context] {
             flushHistory(context, u"検索履歴を消去しますか？"_s, u"FindHist.txt"_s, &frmBrowser::HistoryAdd_Find);
         }},
    };
}

} // namespace velloria::browser
