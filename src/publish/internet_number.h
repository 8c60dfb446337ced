// From the transfer library's results to the numbers that InternetErrorText knows.
#pragma once

#include <curl/curl.h>

namespace velloria::publish {

inline constexpr int kFileNotFound = 2;
inline constexpr int kAccessDenied = 5;
inline constexpr int kTimeout = 12002;
inline constexpr int kInternalError = 12004;
inline constexpr int kInvalidUrl = 12005;
inline constexpr int kUnknownScheme = 12006;
inline constexpr int kNameNotResolved = 12007;
inline constexpr int kWrongUser = 12013;
inline constexpr int kWrongPassword = 12014;
inline constexpr int kLoginFailure = 12015;
inline constexpr int kCancelled = 12017;
inline constexpr int kWrongHandle = 12018;
inline constexpr int kNoProxy = 12020;
inline constexpr int kCannotConnect = 12029;
inline constexpr int kConnectionAborted = 12030;
inline constexpr int kConnectionReset = 12031;
inline constexpr int kCertificateDate = 12037;
inline constexpr int kCertificateName = 12038;
inline constexpr int kUntrustedCertificate = 12045;
inline constexpr int kRedirectionRefused = 12048;
inline constexpr int kNotSecure = 12171;

/// `lastReply` is the code of the last FTP reply of the transfer, 0 when there was none. A refusal of the server is
/// kExtendedError, whatever the library makes of it. 0 for a transfer that went well.
int internetNumber(CURLcode result, int lastReply);

} // namespace velloria::publish
