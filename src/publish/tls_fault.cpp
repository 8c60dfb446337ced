#include "publish/tls_fault.h"

#include "publish/internet_number.h"

using namespace Qt::StringLiterals;

namespace velloria::publish {
namespace {

// The numbers by which the encryption's library tells what is wrong with a certificate.
constexpr long kNotYetValid = 9;
constexpr long kExpired = 10;

TlsFault certificateFault(long verification, const QString& host, const QString& words) {
    if (verification == kExpired)
        return {kCertificateDate, u"サーバーの証明書の有効期限が切れています。"_s};
    if (verification == kNotYetValid)
        return {kCertificateDate, u"サーバーの証明書はまだ有効ではありません。パソコンの日付を確認してください。"_s};
    // The name is the transfer library's to look at: it has no number, but words.
    if (words.contains(u" name "_s))
        return {kCertificateName, u"サーバーの証明書は「%1」のものではありません。"_s.arg(host)};
    return {kUntrustedCertificate, u"サーバーの証明書を発行したところを信頼できません。"_s};
}

} // namespace

std::optional<TlsFault> tlsFault(const CurlRun& run, const QString& host) {
    std::optional<TlsFault> fault;
    switch (run.result()) {
    case CURLE_PEER_FAILED_VERIFICATION:
        fault = certificateFault(run.verification(), host, run.words());
        break;
    case CURLE_SSL_CACERT_BADFILE:
        fault = {kUntrustedCertificate, u"信頼する証明書のファイルを読み込めません。"_s};
        break;
    case CURLE_SSL_CONNECT_ERROR:
        fault = {kCannotConnect, u"サーバーと暗号化の方法が合いません。"_s};
        break;
    default:
        return fault;
    }
    if (!run.words().isEmpty())
        fault->text += u" ("_s + run.words() + u')';
    return fault;
}

} // namespace velloria::publish
