#include "cli/command.h"
#include "publish/curl_internet.h"
#include "publish/update_check.h"

using namespace Qt::StringLiterals;

namespace velloria::cli {
namespace {

void checkForUpdate(Invocation& invocation) {
    publish::CurlInternet internet;
    const publish::UpdateResult result = publish::UpdateCheck(invocation, internet).MnuUpdateCheck();
    if (!result.isDone)
        throw Refusal(result.reason);
}

} // namespace

std::vector<Command> updateCommands() {
    return {{u"update check"_s,
             {},
             0,
             0,
             {},
             u"新しいバージョンがあるか確認し、あればダウンロードする"_s,
             Start::Needed,
             checkForUpdate}};
}

} // namespace velloria::cli
