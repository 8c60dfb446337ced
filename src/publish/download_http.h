// Saves one file of the web on the user's disk, and shows how far it has come.
#pragma once

#include "publish/internet.h"
#include "publish/progress_view.h"

#include <QElapsedTimer>

#include <functional>

namespace velloria::publish {

/// Text is read and written in the code page, so that a byte that is none of it does not stay; binary keeps every byte.
enum class DownloadMode { Text = 0, Binary = 1 };
enum class ShowProgress { No, Yes };

/// A text is held in memory as a whole: one that is longer than this is refused.
inline constexpr qint64 kLongestText = 1 << 20;
/// So is any other file beyond this.
inline constexpr qint64 kLargestFile = qint64(512) << 20;

/// What is shown of a download that the user has stopped.
inline const QString kStopped = QStringLiteral("ダウンロードを中止しました。");

/// "12.3": so many bytes in so many milliseconds as thousands of bits a second, halves rounded up; 0 ms counts as 1.
QString kilobitsPerSecond(qint64 bytes, qint64 milliseconds);

/// What a download asks wherever other commands may have run; both may be empty.
struct DownloadCalls {
    std::function<bool()> isProgramEnding = {};
    std::function<bool()> isStopWanted = {}; ///< by the button of the progress window
};

/// One download after the other over an open session, in the thread of the windows.
///
///     DownloadHttp download(internet, desk, calls);
///     if (download.DownloadHTTP(url, file, DownloadMode::Binary, ShowProgress::Yes) == 0 && !download.isStopped())
///         reason = download.networkError(); // the person knows already
class DownloadHttp {
public:
    /// `session` is open.
    DownloadHttp(Internet& session, platform::Desk& desk, DownloadCalls calls = {});

    /// The number of bytes received and saved, 0 when there are none; the boxes about that are shown in here. A file
    /// that breaks off counts as whole, one that the user stops does not. The old file stays until all of the new one
    /// is on the disk.
    ///
    /// Throws platform::Failure when the disk refuses, when there is too much of it, and when the program is about to
    /// end; the old file stays.
    qint64 DownloadHTTP(const QString& url, const QString& file, DownloadMode mode, ShowProgress showProgress);

    /// Why the last download has no bytes, in the words for the network's last error; "" when it has none.
    const QString& networkError() const { return m_networkError; }
    /// Whether the user has stopped the last download. No box tells what they know.
    bool isStopped() const { return m_isStopped; }

private:
    qint64 transfer(const QString& url, const QString& file, DownloadMode mode);
    void saveText(const QString& url, const QString& file, QByteArray bytes);
    void saveBinary(const QString& url, const QString& file, QByteArray block);
    QByteArray readBlock(const QString& file, qint64 most);
    qint64 tellStopped(const QString& file);
    qint64 tellNoConnection(const QString& url);
    qint64 tellNoBytes(const QString& url);
    void showWindow(const QString& text);
    void takeNetworkError();
    void stopIfEnding() const;

    Internet& m_session;
    platform::Desk& m_desk;
    DownloadCalls m_calls;
    ProgressView m_view;
    bool m_isShown = false; ///< the progress window
    bool m_isStopped = false;
    QElapsedTimer m_timer;
    QString m_url;
    qint64 m_count = 0;
    QString m_speed; ///< after the last block
    QString m_networkError;
};

} // namespace velloria::publish
