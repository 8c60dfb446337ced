#include "browser/forms/browser_commands.h"

#include "browser/forms/frmBrowser.h"
#include "browser/histories.h"

using namespace Qt::StringLiterals;

namespace velloria::browser {

desktop::MenuCommands browserCommands(desktop::Context& context) {
    return {
        {"MnuRefreshURLHist"_L1,
         {},
         [&context] {
             if (clearAddresses(context) == platform::Outcome::Done)
                 context.windows.get<frmBrowser>().HistoryAdd_URL();
         }},
        {"MnuRefreshFindHist"_L1,
         {},
         [&context] {
             if (clearWords(context) == platform::Outcome::Done)
                 context.windows.get<frmBrowser>().HistoryAdd_Find();
         }},
    };
}

} // namespace velloria::browser
