#include "publish/ping.h"
#include "cli/command.h"

using namespace Qt::StringLiterals;

namespace velloria::cli {
namespace {

void ping(Invocation& invocation) {
    publish::Ping(invocation).MnuPING();
}

} // namespace

std::vector<Command> pingCommands() {
    return {{u"ping"_s, {}, 0, 0, {}, u"サイトの更新をPINGサーバーへ知らせる"_s, Start::Needed, ping}};
}

} // namespace velloria::cli
