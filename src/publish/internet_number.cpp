#include "publish/internet_number.h"

#include "publish/internet.h"

namespace velloria::publish {

namespace {
constexpr int kServiceClosing = 421;
}

int internetNumber(CURLcode result, int lastReply) {
    // What has a number of its own even when a reply came.
    switch (result) {
    case CURLE_LOGIN_DENIED:
        return kLoginFailure;
    case CURLE_REMOTE_FILE_NOT_FOUND:
        return kNoMoreFiles;
    case CURLE_FTP_ACCEPT_TIMEOUT:
        return kTimeout;
    case CURLE_USE_SSL_FAILED:
        return kNotSecure; // the server's words would not say that encryption is what it lacks
    case CURLE_OPERATION_TIMEDOUT:
        if (lastReply != kServiceClosing)
            return kTimeout;
        break; // that reply is what the library calls a time-out
    case CURLE_ABORTED_BY_CALLBACK:
        return kCancelled;
    default:
        break;
    }
    if (lastReply >= 400)
        return kExtendedError;
    switch (result) {
    case CURLE_OK:
        return 0;
    case CURLE_URL_MALFORMAT:
        return kInvalidUrl;
    case CURLE_UNSUPPORTED_PROTOCOL:
        return kUnknownScheme;
    case CURLE_COULDNT_RESOLVE_PROXY:
        return kNoProxy;
    case CURLE_COULDNT_RESOLVE_HOST:
        return kNameNotResolved;
    case CURLE_COULDNT_CONNECT:
    case CURLE_SSL_CONNECT_ERROR:
        return kCannotConnect;
    case CURLE_PEER_FAILED_VERIFICATION:
    case CURLE_SSL_CACERT_BADFILE:
        return kUntrustedCertificate;
    case CURLE_FTP_ACCEPT_FAILED:
        return kTimeout;
    case CURLE_SEND_ERROR:
    case CURLE_RECV_ERROR:
        return kConnectionReset;
    case CURLE_WEIRD_SERVER_REPLY:
    case CURLE_PARTIAL_FILE:
    case CURLE_GOT_NOTHING:
        return kConnectionAborted;
    default:
        return kInternalError;
    }
}

} // namespace velloria::publish
