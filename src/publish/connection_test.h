// Whether a web server takes an account, before anything is sent there.
#pragma once

#include "publish/curl_run.h"
#include "publish/internet.h"

namespace velloria::publish {

struct ConnectionFinding {
    bool isGood = false;
    QString line; ///< for people, the server's own words in it
};

/// Connects, logs in, enters the folder ("" stays in that of the login) and takes leave. Nothing is written on the
/// disk or the server. Blocks as Internet does; when `keepGoing` says no or the time is over, the finding tells that.
ConnectionFinding tryConnection(const FtpLogin& login, const QString& folder, const KeepGoing& keepGoing,
                                int limitMs = 60'000);

} // namespace velloria::publish
