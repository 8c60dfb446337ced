#include "publish/internet_error.h"
#include "support/print.h"

#include <gtest/gtest.h>

#include <QSet>

#include <cstdio>

using namespace Qt::StringLiterals;
using namespace velloria::publish;

namespace velloria::tests {
namespace {

/// A network that has just failed with a number, and on which nothing else works.
class FailedInternet : public Internet {
public:
    explicit FailedInternet(int number, QString response = u"not asked for"_s, QString detail = {})
        : m_number(number)
        , m_response(std::move(response))
        , m_detail(std::move(detail)) {}

    bool openSession() override { return false; }
    bool connectFtp(const FtpLogin&) override { return false; }
    bool changeDirectory(const QString&) override { return false; }
    bool createDirectory(const QString&) override { return false; }
    bool findFile(const QString&) override { return false; }
    bool findDirectory(const QString&) override { return false; }
    bool deleteFile(const QString&) override { return false; }
    bool putFile(const QString&, const QString&, TransferType) override { return false; }
    bool openUrl(const QString&) override { return false; }
    QByteArray readUrl() override { return {}; }
    void closeUrl() override {}
    void closeFtp() override {}
    void closeSession() override {}
    int lastError() const override { return m_number; }
    QString lastResponse() const override { return m_response; }
    QString lastDetail() const override { return m_detail; }
    void traceTo(Trace) override {}

private:
    int m_number;
    QString m_response;
    QString m_detail;
};

QString textOf(int number) {
    return InternetErrorText(FailedInternet(number));
}

struct Row {
    int number;
    QString text;
};

const Row kRows[] = {
    {0, u"アイテムがありません。"_s},
    {18, u"ファイルがありません。"_s},
    {12001, u"これ以上ハンドルを作成できません。"_s},
    {12002, u"タイムアウトです。"_s},
    {12004, u"内部エラーです。"_s},
    {12005, u"URLが無効です。"_s},
    {12006, u"The URL scheme could not be recognized, or is not supported."_s},
    {12007, u"サーバー名が認識出来ません。"_s},
    {12008, u"要求されたプロトコルが見つかりません。"_s},
    {12009, u"無効なオプションです。"_s},
    {12010, u"オプションに指定されたデータが長すぎます。"_s},
    {12011, u"The requested option cannot be set, only queried."_s},
    {12012, u"The Win32 Internet function support is being shut down or unloaded."_s},
    {12013, u"ユーザー名が正しくありません。"_s},
    {12014, u"パスワードが違います。"_s},
    {12015, u"FTPサーバーへのログオンに失敗しました。"_s},
    {12016, u"無効な操作です。"_s},
    {12017, u"操作は取り消されました。"_s},
    {12018, u"ハンドルの形式が無効です。"_s},
    {12019, u"ハンドルのSTATEが無効です。"_s},
    {12020, u"プロキシ経由で接続できません。"_s},
    {12021, u"A required registry value could not be located."_s},
    {12022, u"レジストリのパラメーターが無効です。"_s},
    {12023, u"ネットワークに直接接続できません。"_s},
    {12024, u"An asynchronous request could not be made because a zero context value was supplied."_s},
    {12025, u"コールバックできません。"_s},
    {12026, u"The required operation could not be completed because one or more requests are pending."_s},
    {12027, u"無効な要求です。"_s},
    {12028, u"アイテムが見つかりません。"_s},
    {12029, u"サーバーに接続できません。"_s},
    {12030, u"サーバーとの接続が終了しました。"_s},
    {12031, u"サーバーとの接続がリセットされました。"_s},
    {12032, u"再試行する必要があります。"_s},
    {12033, u"無効なプロキシ要求です。"_s},
    {12034, u"ユーザー入力待ちです。"_s},
    {12036, u"既にネットワークに接続しています。"_s},
    {12041,
     u"このコンテンツは包括的なセキュリティが掛けられていません。セキュリティの掛かっていないサーバーから見られる可能性があります。"_s},
    {12042, u"セキュリティの掛かっていないサーバー上の複数行のテキストを変更しようとしています。"_s},
    {12043, u"The application is posting data to a sever that is not secure."_s},
    {12044, u"クライアント認証を要求されました。"_s},
    {12045, u"The function is unfamiliar with the Certificate Authority that generated the server's certificate."_s},
    {12046, u"クライアント認証がインストールされていません。"_s},
    {12047, u"非同期スレッドとして起動できません。"_s},
    {12048, u"The function could not handle the redirection, because the scheme changed (for example, HTTP to FTP)."_s},
    {12049, u"パスワード要求ダイアログが出ています。"_s},
    {12053, u"CD-ROMをセットしてください。"_s},
    {12110, u"他のプロセスが実行中です。"_s},
    {12111, u"FTPセッションが切断されました。"_s},
    {12158, u"ファイルをキャッシュ出来ません。"_s},
    {12159, u"TCP/IPプロトコルがインストールされていません。"_s},
    {12163, u"ネットワークとの接続が失われました。"_s},
    {12164, u"サーバーが見つかりません。"_s},
    {12165, u"The designated proxy server cannot be reached."_s},
    {12166, u"プロキシを自動的に設定できません。"_s},
    {12167,
     u"The automatic proxy configuration script could not be downloaded. The INTERNET_FLAG_MUST_CACHE_REQUEST flag was set."_s},
    {12171, u"セキュリティチェックの為、失敗しました。"_s},
};

TEST(InternetErrorText, EveryKnownNumberHasItsText) {
    EXPECT_EQ(std::size(kRows), 56U);
    for (const Row& row : kRows)
        EXPECT_EQ(textOf(row.number), row.text) << row.number;
}

TEST(InternetErrorText, EveryOtherNumberUpTo13000IsShownInHexadecimal) {
    QSet<int> known{kExtendedError};
    for (const Row& row : kRows)
        known.insert(row.number);
    for (int number = 0; number <= 13000; ++number) {
        if (known.contains(number))
            continue;
        char expected[64];
        std::snprintf(expected, sizeof expected, "その他のエラー(&H%X)", unsigned(number));
        EXPECT_EQ(textOf(number), QString::fromUtf8(expected));
    }
}

TEST(InternetErrorText, AGapGivesItsNumberInUpperCaseWithoutZerosInFront) {
    EXPECT_EQ(textOf(12035), u"その他のエラー(&H2F03)"_s);
    EXPECT_EQ(textOf(12050), u"その他のエラー(&H2F12)"_s);
    EXPECT_EQ(textOf(2), u"その他のエラー(&H2)"_s);
    EXPECT_EQ(textOf(-1), u"その他のエラー(&HFFFFFFFF)"_s);
}

TEST(InternetErrorText, ARefusalIsToldInTheServersOwnWords) {
    EXPECT_EQ(InternetErrorText(FailedInternet(12003, u"550 だめです"_s)), u"550 だめです"_s);
    EXPECT_EQ(InternetErrorText(FailedInternet(12003, QString(255, u' '))), QString(255, u' '));
}

TEST(FailureReason, IsTheTextWithWhatIsKnownBeyondIt) {
    EXPECT_EQ(failureReason(FailedInternet(12029)), u"サーバーに接続できません。"_s);
    EXPECT_EQ(failureReason(FailedInternet(12035)), u"その他のエラー(&H2F03)"_s);
    EXPECT_EQ(failureReason(FailedInternet(12003, u"550 no"_s)), u"550 no"_s);
    EXPECT_EQ(failureReason(FailedInternet(12015, {}, u"530 must use encryption"_s)),
              u"FTPサーバーへのログオンに失敗しました。 530 must use encryption"_s);
}

TEST(FailureReason, TakesThePlaceOfATextThatSaysNothing) {
    EXPECT_EQ(failureReason(FailedInternet(12037, {}, u"expired"_s)), u"expired"_s);
    EXPECT_EQ(failureReason(FailedInternet(12003, QString(255, u' '), u"550 long"_s)), u"550 long"_s);
}

} // namespace
} // namespace velloria::tests
