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

/// "12.3": so many bytes in so many milliseconds as thousands of bits a second, halves rounded up; 0 ms counts as 1.
QString kilobitsPerSecond(qint64 bytes, qint64 milliseconds);

class DownloadHttp {
public:
    /// `session` is open. `isProgramEnding`, which may be empty, is asked wherever other commands may have run.
    DownloadHttp(Internet& session, platform::Desk& desk, std::function<bool()> isProgramEnding = {});

    /// The number of bytes received and saved, 0 when there are none; the boxes about that are shown in here. A file
    /// that breaks off counts as whole. The old file stays until all of the new one is on the disk.
    ///
    /// Throws platform::Failure when the disk refuses, when a text is longer than kLongestText, and when the program is
    /// about to end; the old file stays.
    qint64 DownloadHTTP(const QString& url, const QString& file, DownloadMode mode, ShowProgress showProgress);

    /// Why the last download has no bytes, in the words for the network's last error; "" when it has none.
    const QString& networkError() const { return m_networkError; }

private:
    qint64 transfer(const QString& url, const QString& file, DownloadMode mode);
    void saveText(const QString& url, const QString& file, QByteArray bytes);
    void saveBinary(const QString& url, const QString& file, QByteArray block);
    QByteArray readBlock(const QString& file);
    qint64 tellNoConnection(const QString& url);
    qint64 tellNoBytes(const QString& url);
    void showWindow(const QString& text);
    void takeNetworkError();
    void stopIfEnding() const;

    Internet& m_session;
    platform::Desk& m_desk;
    std::function<bool()> m_isProgramEnding;
    ProgressView m_view;
    bool m_isShown = false; ///< the progress window
    QElapsedTimer m_timer;
    qint64 m_count = 0;
    QString m_speed; ///< behind the last block
    QString m_networkError;
};

} // namespace velloria::publish
