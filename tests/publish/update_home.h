// The maker's web site in memory, a check for updates against it, and all that anybody sees of it as lines of text.
#pragma once

#include "core/setting.h"
#include "publish/update_check.h"
#include "publish/upload_home.h"

#include <QMap>

namespace velloria::tests {

/// The lines of the boxes; a question's answer is %1.
namespace update_boxes {
inline const QString kNothingNewer =
    QStringLiteral("information Velloria ok: 確認しましたが、新しいバージョンはありませんでした。");
inline const QString kOffered =
    QStringLiteral("question Velloria %1: 新しいバージョンが存在します(%2)。 / ダウンロードしますか？");
inline const QString kFailed = QStringLiteral("critical Velloria ok: ダウンロードに失敗しました。");
inline const QString kComplete = QStringLiteral("information Velloria ok: ダウンロードが完了しました。");
inline const QString kNoUpdater = QStringLiteral("critical Velloria ok: Velloria Updaterが見つかりません。");
inline const QString kLaunch =
    QStringLiteral("question Velloria %1: VelloriaUpdaterを起動しますか？ / (Velloriaは終了します。)");
inline const QString kNoLibrary =
    QStringLiteral("critical Velloria ok: 「UNLHA32.DLL」が存在しません。 / インストール後、再度実行してください。");
inline const QString kBusy = QStringLiteral("サーバーが混んでいる可能性もありますので、時間帯を変更してお試し下さい。");
inline const QString kNoConnection =
    QStringLiteral("critical Velloria ok: サーバーに接続できませんでした。 / ") + kBusy;
inline const QString kNoBytes =
    QStringLiteral("critical Velloria ok: update.txtをダウンロードできませんでした。 / ") + kBusy;
inline const QString kNoOffers = QStringLiteral("critical Velloria ok: update.txtの取得に失敗しました。");
} // namespace update_boxes

/// One file of the web.
struct WebFile {
    QByteArray bytes = {};
    int error = 0; ///< after the bytes; 0 is a good end
};

/// A web that holds these files alone. Its calls read like "url http://a/b", "close url".
class MemoryWeb : public publish::Internet {
public:
    explicit MemoryWeb(QStringList& transcript)
        : m_transcript(transcript) {}

    QMap<QString, WebFile> files; ///< by address; any other address can't be reached
    bool isReachable = true;
    QString detail;                     ///< of the last error
    std::function<void()> onRead = {};  ///< before each block
    std::function<void()> onClose = {}; ///< after each file

    bool isOpen() const { return m_isSessionOpen || m_isUrlOpen; }

    bool openSession() override;
    bool openUrl(const QString& url) override;
    QByteArray readUrl() override;
    void closeUrl() override;
    void closeSession() override;
    int lastError() const override { return m_error; }
    QString lastResponse() const override { return {}; }
    QString lastDetail() const override { return detail; }
    void traceTo(publish::Trace) override {}

    bool connectFtp(const publish::FtpLogin&) override { return false; }
    bool changeDirectory(const QString&) override { return false; }
    bool createDirectory(const QString&) override { return false; }
    bool findFile(const QString&) override { return false; }
    bool findDirectory(const QString&) override { return false; }
    bool deleteFile(const QString&) override { return false; }
    bool putFile(const QString&, const QString&, publish::TransferType) override { return false; }
    void closeFtp() override {}

private:
    QStringList& m_transcript;
    WebFile m_file; ///< that is read, with what is left of it
    int m_error = 0;
    bool m_isSessionOpen = false;
    bool m_isUrlOpen = false;
};

/// Fixture: a home after its start whose maker has a site.
class UpdateHome : public TestHome {
protected:
    UpdateHome();

    /// Puts an "update.txt" on the maker's site, lines parted by "/".
    void offer(const QString& lines);
    /// A newer release with this archive on the site.
    void offerRelease(const QString& fileName = QStringLiteral("v.lzh"), const QByteArray& bytes = "archive");
    void putUpdater(const QByteArray& script = "#!/bin/sh\n") const;
    void putLibrary() const { writeFile(path(QStringLiteral("UnLHA32.DLL")), {}); }
    void setEndpoint(const core::Setting& key, const QString& value) const;

    publish::UpdateResult check();
    /// The events and calls of the last command, one a line, without paths of this machine and the speed of its disk.
    QString transcript() const;
    QStringList lines(const QString& beginning) const;
    QStringList boxLines() const { return lines(QStringLiteral("box ")); }
    /// "on off": what became of the updater's command.
    QString updaterStates() const { return lines(QStringLiteral("updater ")).join(QChar(u' ')); }
    /// The command must have ended with the session closed and the pointer at rest.
    void expectEnding() const;
    /// What is in a file of the home once it is there; "" when it does not come.
    QByteArray waitFor(const QString& name) const;
    QString offersFile() const { return session.MyPath + QStringLiteral("update.txt"); }

private:
    QStringList m_lines;

protected:
    MemoryWeb web{m_lines};
    TranscriptDesk shown{m_lines};
    publish::UpdateCalls calls;
    void forget();
};

} // namespace velloria::tests
