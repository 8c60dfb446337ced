#include "cli/command.h"
#include "publish/curl_internet.h"
#include "publish/ftp_upload.h"
#include "publish/ping.h"

using namespace Qt::StringLiterals;

namespace velloria::cli {
namespace {

void upload(Invocation& invocation) {
    publish::CurlInternet internet;
    const publish::UploadCalls calls{.ping = [&] { publish::Ping(invocation).MnuPING(); }};
    const publish::UploadResult result = publish::FtpUpload(invocation, internet, calls).FTP_Execute();
    if (!result.isDone)
        throw Refusal(result.reason);
}

} // namespace

std::vector<Command> uploadCommands() {
    return {{u"upload"_s, {}, 0, 0, {}, u"サイトをFTPサーバーへアップロードする"_s, Start::Needed, upload}};
}

} // namespace velloria::cli
