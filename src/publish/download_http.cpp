#include "publish/download_http.h"

#include "platform/code_page.h"
#include "platform/failure.h"
#include "platform/file_write.h"
#include "publish/internet_error.h"

#include <QScopeGuard>

#include <algorithm>
#include <utility>

using namespace Qt::StringLiterals;

namespace velloria::publish {
namespace {

using platform::MessageKind;

/// Thrown on the way out of a file that is being written, and caught in here.
struct Stopped {};

const QString kBusy = u"サーバーが混んでいる可能性もありますので、時間帯を変更してお試し下さい。"_s;

} // namespace

QString kilobitsPerSecond(qint64 bytes, qint64 milliseconds) {
    // A bit in a millisecond is a thousand in a second. Counted in tenths, so that a half is a half.
    constexpr qint64 kTenthsOfBits = 80;
    const qint64 time = std::max<qint64>(1, milliseconds);
    const qint64 tenths = (2 * kTenthsOfBits * bytes + time) / (2 * time);
    return u"%1.%2"_s.arg(tenths / 10).arg(tenths % 10);
}

DownloadHttp::DownloadHttp(Internet& session, platform::Desk& desk, DownloadCalls calls)
    : m_session(session)
    , m_desk(desk)
    , m_calls(std::move(calls))
    , m_view(desk) {}

qint64 DownloadHttp::DownloadHTTP(const QString& url, const QString& file, DownloadMode mode,
                                  ShowProgress showProgress) {
    m_url = url;
    m_count = 0;
    m_speed = kilobitsPerSecond(0, 0);
    m_networkError.clear();
    m_isShown = false;
    m_isStopped = false;
    m_desk.status(u"Connectiong to "_s + url);
    if (!m_session.openUrl(url))
        return tellNoConnection(url);
    const auto closing = qScopeGuard([this] { m_session.closeUrl(); });
    m_desk.status(u"Connected to "_s + url);
    try {
        if (showProgress == ShowProgress::Yes) {
            m_isShown = true;
            m_view.open(u"Velloria"_s);
            m_view.allowStopping();
            m_view.setTitleAndText(u"ダウンロード on HTTP"_s, u"ダウンロード中...\r\n"_s + file);
            m_desk.pump();
        }
        return transfer(url, file, mode);
    } catch (const Stopped&) {
        return tellStopped(file);
    } catch (...) {
        // Nobody could close a window that still seems to be at work.
        showWindow(u"ダウンロード失敗"_s);
        throw;
    }
}

qint64 DownloadHttp::transfer(const QString& url, const QString& file, DownloadMode mode) {
    m_timer.start();
    m_desk.status(u"Downloading "_s + url);
    const QByteArray first = readBlock(file, mode == DownloadMode::Text ? kLongestText : kLargestFile);
    if (first.isEmpty())
        m_desk.status(u"Saveing "_s + url + u" to "_s + file);
    else if (mode == DownloadMode::Text)
        saveText(url, file, first);
    else
        saveBinary(url, file, first);
    if (first.isEmpty())
        return tellNoBytes(url);
    showWindow(u"ダウンロード完了！\r\n%1\r\n%2bytes received(%3kbps)."_s.arg(file, QString::number(m_count), m_speed));
    m_desk.status(u"Downloading "_s + url + u" is Succeeded!"_s);
    return m_count;
}

void DownloadHttp::saveText(const QString& url, const QString& file, QByteArray bytes) {
    for (QByteArray block = readBlock(file, kLongestText); !block.isEmpty(); block = readBlock(file, kLongestText))
        bytes += block;
    m_desk.status(u"Saveing "_s + url + u" to "_s + file);
    platform::replaceFile(file, platform::toCodePage(platform::fromCodePage(bytes)), platform::Durability::Durable);
}

/// Block by block to the disk: an archive may be larger than the memory.
void DownloadHttp::saveBinary(const QString& url, const QString& file, QByteArray block) {
    platform::replaceFile(
        file,
        [&](const platform::WriteBytes& write) {
            for (; !block.isEmpty(); block = readBlock(file, kLargestFile))
                write(block);
            m_desk.status(u"Saveing "_s + url + u" to "_s + file);
        },
        platform::Durability::Durable);
}

/// "" at the end, which a read that failed is as well.
QByteArray DownloadHttp::readBlock(const QString& file, qint64 most) {
    const QByteArray block = m_session.readUrl();
    m_count += block.size();
    if (m_count > most)
        throw platform::Failure(u"サーバーのファイルが大きすぎるため、読み込みを中止しました。"_s, m_url,
                                u"%1バイトまでしか読み込めません"_s.arg(most),
                                u"元のファイルはそのままです。しばらくしてから、もう一度実行してください。"_s);
    if (m_isShown && !block.isEmpty()) {
        m_speed = kilobitsPerSecond(m_count, m_timer.elapsed());
        m_view.setText(
            u"ダウンロード中...\r\n%1\r\n...%2 bytes received(%3kbps)."_s.arg(file, QString::number(m_count), m_speed));
        m_desk.pump();
    }
    stopIfEnding();
    if (m_isShown && m_calls.isStopWanted && m_calls.isStopWanted())
        throw Stopped();
    return block;
}

qint64 DownloadHttp::tellStopped(const QString& file) {
    m_isStopped = true;
    m_desk.status(kStopped);
    showWindow(kStopped + u"\r\n"_s + file);
    return 0;
}

qint64 DownloadHttp::tellNoConnection(const QString& url) {
    takeNetworkError();
    stopIfEnding();
    m_desk.status(u"Can't connect to "_s + url);
    m_desk.message(MessageKind::Critical, u"サーバーに接続できませんでした。\r\n"_s + kBusy);
    return 0;
}

qint64 DownloadHttp::tellNoBytes(const QString& url) {
    takeNetworkError();
    m_desk.status(u"Can't download "_s + url);
    showWindow(u"ダウンロード失敗\r\n"_s + kBusy);
    m_desk.message(MessageKind::Critical, u"update.txtをダウンロードできませんでした。\r\n"_s + kBusy);
    return 0;
}

/// The last text of the window, which may be closed from now on.
void DownloadHttp::showWindow(const QString& text) {
    if (!m_isShown)
        return;
    m_view.setText(text);
    m_view.allowOk();
}

void DownloadHttp::takeNetworkError() {
    if (m_session.lastError() != 0)
        m_networkError = failureReason(m_session);
}

void DownloadHttp::stopIfEnding() const {
    if (m_calls.isProgramEnding && m_calls.isProgramEnding())
        throw platform::Failure(u"プログラムを終了するため、ダウンロードを中止しました。"_s, {}, {},
                                u"次の起動後にもう一度実行してください。"_s);
}

} // namespace velloria::publish
