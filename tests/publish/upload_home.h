// An upload to a web server in memory, and all of it that anybody sees, as lines of text.
#pragma once

#include "core/keys.h"
#include "core/setting.h"
#include "core/settings_change.h"
#include "publish/ftp_upload.h"
#include "registers/file_register.h"
#include "support/test_home.h"

#include <QMap>
#include <QSet>

namespace velloria::tests {

/// A web server that keeps its folders in memory and refuses what it is told to refuse. Its calls read like
/// "connect ftp.example.com me secret active", "find directory pub", "put a.gif binary"; a connection with encryption
/// ends in " encrypted" or " encrypted when offered".
class MemoryServer : public publish::Internet {
public:
    explicit MemoryServer(QStringList& transcript)
        : m_transcript(transcript) {}

    /// The error number of every call that reads like this.
    QMap<QString, int> refusals;
    QString response = QStringLiteral("550 Permission denied.");
    QString detail; ///< of a refusal
    QString remark; ///< the detail of all that goes well
    /// Called before each call with its text.
    std::function<void(const QString& call)> beforeCall;

    void makeFolder(const QString& path) { m_folders.insert(path); }
    void addFile(const QString& path, const QByteArray& bytes = "old") { m_files[path] = bytes; }
    const QMap<QString, QByteArray>& files() const { return m_files; }
    const QSet<QString>& folders() const { return m_folders; }
    bool isOpen() const { return m_isSessionOpen || m_isFtpOpen; }
    void clear() { m_files.clear(); }

    bool openSession() override;
    bool connectFtp(const publish::FtpLogin& login) override;
    bool changeDirectory(const QString& name) override;
    bool createDirectory(const QString& name) override;
    bool findFile(const QString& name) override;
    bool findDirectory(const QString& name) override;
    bool deleteFile(const QString& name) override;
    bool putFile(const QString& localFile, const QString& name, publish::TransferType type) override;
    bool openUrl(const QString&) override { return false; }
    QByteArray readUrl() override { return {}; }
    void closeUrl() override {}
    void closeFtp() override;
    void closeSession() override;
    int lastError() const override { return m_error; }
    QString lastResponse() const override { return response; }
    QString lastDetail() const override { return m_error == 0 ? remark : detail; }
    void traceTo(publish::Trace trace) override { m_trace = std::move(trace); }

private:
    bool accepts(const QString& call);
    bool result(bool isDone, int error);

    QStringList& m_transcript;
    publish::Trace m_trace;
    QMap<QString, QByteArray> m_files; ///< by their whole path
    QSet<QString> m_folders{QString()};
    QString m_current;
    int m_error = 0;
    bool m_isSessionOpen = false;
    bool m_isFtpOpen = false;
};

/// Writes everything shown into the transcript, between the calls of the server.
class TranscriptDesk : public ScriptedDesk {
public:
    explicit TranscriptDesk(QStringList& transcript)
        : m_transcript(transcript) {}

    std::function<void()> onPump;                  ///< the commands that run meanwhile
    std::vector<platform::ProgressWindow> windows; ///< that were shown, one by one
    void progressWindow(const platform::ProgressWindow& window) override;
    void closeProgressWindow() override { m_transcript += QStringLiteral("window closed"); }
    void pump() override;

protected:
    void record(const QJsonObject& event) override;

private:
    QStringList& m_transcript;
};

/// Fixture: a home with a server, its settings and a site whose files can be listed.
class UploadHome : public TestHome {
protected:
    UploadHome();

    /// Writes a page and its row of "upload.tmp".
    void addPage(const QString& name, const QByteArray& bytes = "page\r\n");
    /// The same below "DiaryLog" and in "uploadlog.tmp".
    void addLog(const QString& name, const QByteArray& bytes = "log\r\n");
    /// Registers a file and writes it where the site has it.
    void addPart(const QString& name, registers::SiteSide side = registers::SiteSide::Current,
                 const QByteArray& bytes = "\1\n");
    void addRow(const QString& name, registers::SiteSide side = registers::SiteSide::Current);

    /// Two pages, two logs and a registered file beside each; an earlier page and the first log are on the server.
    void fillSite();
    /// What the server holds once all that has gone up.
    static QMap<QString, QByteArray> filledServer();
    void set(const core::Setting& key, const QString& value) const { core::writeQuietly(session, key, value); }

    publish::UploadResult run();
    /// The events and calls of the last run, one a line; line breaks within a text are " / ". The window's read
    /// "window: title | text | value/max" and, once it may be closed, "| OK".
    QString transcript() const { return m_lines.join(u'\n'); }
    /// The lines that begin like this, without that beginning.
    QStringList lines(const QString& beginning) const;
    /// The transcript from this call of the server to the end.
    QString transcriptFrom(const QString& call) const;
    /// "a.gif 1, b.gif 0": which rows have gone up.
    QString uploaded();
    QString list(const QString& name) const { return session.UserPath + name; }

    QString logFolder() const { return session.FilePath + QStringLiteral("DiaryLog/"); }

private:
    QStringList m_lines;

protected:
    MemoryServer server{m_lines};
    TranscriptDesk shown{m_lines};
    publish::UploadCalls calls;
};

/// The lines of a text in the source, without its outer line breaks.
QString textOf(const char* utf8);

} // namespace velloria::tests
