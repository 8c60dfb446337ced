// Why an encrypted connection could not be had. To be asked after a transfer that failed, before the next one.
#pragma once

#include "publish/curl_run.h"

#include <QString>

#include <optional>

namespace velloria::publish {

struct TlsFault {
    int number = 0; ///< for Internet::lastError
    QString text;   ///< one line for people, the library's words in it
};

/// What encryption has to do with the failure of the last transfer with that host: a certificate that is not taken, or
/// one that can't be agreed upon. Nothing for another failure.
std::optional<TlsFault> tlsFault(const CurlRun& run, const QString& host);

} // namespace velloria::publish
