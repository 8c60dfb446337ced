#include "publish/connection_test.h"

#include "publish/curl_internet.h"
#include "publish/internet_error.h"

using namespace Qt::StringLiterals;

namespace velloria::publish {
namespace {

/// Sees from what passes on the connection whether the server has agreed to encrypt it.
class Encryption {
public:
    void see(const QString& line) {
        if (line.startsWith(u'>'))
            m_isAsked = line.startsWith(u"> AUTH"_s);
        else if (m_isAsked && line.startsWith(u"< 2"_s))
            m_isAgreed = true;
    }
    QString text() const { return m_isAgreed ? u"暗号化あり"_s : u"暗号化なし"_s; }

private:
    bool m_isAsked = false;
    bool m_isAgreed = false;
};

/// Why the waiting has ended before the server's answer.
class Patience {
public:
    Patience(const KeepGoing& keepGoing, int limitMs)
        : m_keepGoing(keepGoing)
        , m_limitMs(limitMs) {
        m_timer.start();
    }

    bool lasts() {
        m_isOver = m_isOver || m_timer.hasExpired(m_limitMs);
        m_isStopped = m_isStopped || (m_keepGoing && !m_keepGoing());
        return !m_isOver && !m_isStopped;
    }
    QString end() const {
        if (m_isStopped)
            return u"接続の確認をやめました。"_s;
        return m_isOver ? u"%1秒待ちましたが、サーバーとのやりとりが終わりません。"_s.arg(m_limitMs / 1000) : QString();
    }

private:
    KeepGoing m_keepGoing;
    QElapsedTimer m_timer;
    int m_limitMs;
    bool m_isOver = false;
    bool m_isStopped = false;
};

ConnectionFinding find(Internet& internet, const FtpLogin& login, const QString& folder, const Encryption& encryption) {
    if (!internet.openSession() || !internet.connectFtp(login))
        return {false, failureReason(internet)};
    const QString remark = internet.lastDetail();
    if (!folder.isEmpty() && !internet.changeDirectory(folder))
        return {false, u"ログインできましたが、フォルダ「%1」に入れません。"_s.arg(folder) + failureReason(internet)};
    const QString place = folder.isEmpty() ? QString() : u"フォルダ「%1」に入れました。"_s.arg(folder);
    return {true, u"接続できました（%1）。"_s.arg(encryption.text()) + place + remark + internet.lastResponse()};
}

} // namespace

ConnectionFinding tryConnection(const FtpLogin& login, const QString& folder, const KeepGoing& keepGoing, int limitMs) {
    if (login.host.isEmpty() || login.user.isEmpty())
        return {false, u"サーバーとIDを入力してください。"_s};
    Patience patience(keepGoing, limitMs);
    Encryption encryption;
    CurlInternet internet([&patience] { return patience.lasts(); });
    internet.traceTo([&encryption](const QString& line) { encryption.see(line); });
    ConnectionFinding finding = find(internet, login, folder, encryption);
    internet.closeSession();
    if (!finding.isGood && !patience.end().isEmpty())
        finding.line = patience.end();
    finding.line = finding.line.simplified();
    return finding;
}

} // namespace velloria::publish
