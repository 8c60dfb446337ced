#include "publish/internet_error.h"

#include <algorithm>
#include <optional>

using namespace Qt::StringLiterals;

namespace velloria::publish {

namespace {

struct ErrorText {
    int number;
    QStringView text;
};

// By number. Japanese and English stand beside each other as people know them.
constexpr ErrorText kErrorTexts[] = {
    {0, u"アイテムがありません。"},
    {18, u"ファイルがありません。"},
    {12001, u"これ以上ハンドルを作成できません。"},
    {12002, u"タイムアウトです。"},
    {12004, u"内部エラーです。"},
    {12005, u"URLが無効です。"},
    {12006, u"The URL scheme could not be recognized, or is not supported."},
    {12007, u"サーバー名が認識出来ません。"},
    {12008, u"要求されたプロトコルが見つかりません。"},
    {12009, u"無効なオプションです。"},
    {12010, u"オプションに指定されたデータが長すぎます。"},
    {12011, u"The requested option cannot be set, only queried."},
    {12012, u"The Win32 Internet function support is being shut down or unloaded."},
    {12013, u"ユーザー名が正しくありません。"},
    {12014, u"パスワードが違います。"},
    {12015, u"FTPサーバーへのログオンに失敗しました。"},
    {12016, u"無効な操作です。"},
    {12017, u"操作は取り消されました。"},
    {12018, u"ハンドルの形式が無効です。"},
    {12019, u"ハンドルのSTATEが無効です。"},
    {12020, u"プロキシ経由で接続できません。"},
    {12021, u"A required registry value could not be located."},
    {12022, u"レジストリのパラメーターが無効です。"},
    {12023, u"ネットワークに直接接続できません。"},
    {12024, u"An asynchronous request could not be made because a zero context value was supplied."},
    {12025, u"コールバックできません。"},
    {12026, u"The required operation could not be completed because one or more requests are pending."},
    {12027, u"無効な要求です。"},
    {12028, u"アイテムが見つかりません。"},
    {12029, u"サーバーに接続できません。"},
    {12030, u"サーバーとの接続が終了しました。"},
    {12031, u"サーバーとの接続がリセットされました。"},
    {12032, u"再試行する必要があります。"},
    {12033, u"無効なプロキシ要求です。"},
    {12034, u"ユーザー入力待ちです。"},
    {12036, u"既にネットワークに接続しています。"},
    {12041, u"このコンテンツは包括的なセキュリティが掛けられていません。セキュリティの掛かっていないサーバーから見られ"
            u"る可能性があります。"},
    {12042, u"セキュリティの掛かっていないサーバー上の複数行のテキストを変更しようとしています。"},
    {12043, u"The application is posting data to a sever that is not secure."},
    {12044, u"クライアント認証を要求されました。"},
    {12045, u"The function is unfamiliar with the Certificate Authority that generated the server's certificate."},
    {12046, u"クライアント認証がインストールされていません。"},
    {12047, u"非同期スレッドとして起動できません。"},
    {12048, u"The function could not handle the redirection, because the scheme changed (for example, HTTP to FTP)."},
    {12049, u"パスワード要求ダイアログが出ています。"},
    {12053, u"CD-ROMをセットしてください。"},
    {12110, u"他のプロセスが実行中です。"},
    {12111, u"FTPセッションが切断されました。"},
    {12158, u"ファイルをキャッシュ出来ません。"},
    {12159, u"TCP/IPプロトコルがインストールされていません。"},
    {12163, u"ネットワークとの接続が失われました。"},
    {12164, u"サーバーが見つかりません。"},
    {12165, u"The designated proxy server cannot be reached."},
    {12166, u"プロキシを自動的に設定できません。"},
    {12167, u"The automatic proxy configuration script could not be downloaded. The INTERNET_FLAG_MUST_CACHE_REQUEST "
            u"flag was set."},
    {12171, u"セキュリティチェックの為、失敗しました。"},
};

std::optional<QString> textOf(int number) {
    const auto* row = std::ranges::lower_bound(kErrorTexts, number, {}, &ErrorText::number);
    const bool isThere = row != std::end(kErrorTexts) && row->number == number;
    return isThere ? std::optional(row->text.toString()) : std::nullopt;
}

} // namespace

QString InternetErrorText(const Internet& internet) {
    const int number = internet.lastError();
    if (number == kExtendedError)
        return internet.lastResponse();
    if (const auto text = textOf(number))
        return *text;
    return u"その他のエラー(&H%1)"_s.arg(QString::number(unsigned(number), 16).toUpper());
}

QString failureReason(const Internet& internet) {
    const QString detail = internet.lastDetail();
    if (detail.isEmpty())
        return InternetErrorText(internet);
    const auto text = textOf(internet.lastError()); // none for a reply that is too long to be shown, for one
    return text ? *text + u' ' + detail : detail;
}

QString showNetworkError(const Internet& internet, platform::Desk& desk) {
    const QString text = InternetErrorText(internet);
    const QString reason = failureReason(internet);
    desk.status(text);
    if (reason != text)
        desk.notice(u"エラー："_s + reason);
    return reason;
}

} // namespace velloria::publish
