#include "publish/ftp_upload.h"

#include "core/keys.h"
#include "core/settings.h"
#include "platform/directory.h"
#include "platform/failure.h"
#include "platform/file_lock.h"
#include "publish/internet_error.h"
#include "publish/upload_phases.h"

#include <QScopeGuard>

#include <limits>

using namespace Qt::StringLiterals;

namespace velloria::publish {
namespace {

constexpr qsizetype kMostFiles = std::numeric_limits<qint16>::max(); ///< that the row counter can count

void requireCountable(qsizetype rows, const QString& file) {
    if (rows > kMostFiles)
        throw platform::Failure(u"一度にアップロードできるファイルは%1個までです。"_s.arg(kMostFiles), file,
                                u"%1個のファイルがあります。"_s.arg(rows),
                                u"サーバーのファイルは変更されていません。リストを作り直してください。"_s);
}

QString oneLine(QString text) {
    return text.replace(u"\r\n"_s, u" "_s);
}

} // namespace

FtpUpload::FtpUpload(const core::Run& run, Internet& internet, UploadCalls calls)
    : m_session(run.session)
    , m_internet(internet)
    , m_desk(run.desk)
    , m_clock(run.clock)
    , m_ping(std::move(calls.ping))
    , m_progress(internet, run.desk, std::move(calls.isProgramEnding))
    , m_siteFiles(run.session)
    , m_files(run.session, m_siteFiles) {}

UploadResult FtpUpload::FTP_Execute() {
    const auto untraced = qScopeGuard([this] { m_internet.traceTo({}); });
    bool isDone = false;
    try {
        m_progress.view().open(u"FTP by Velloria"_s);
        isDone = transferAll();
    } catch (const platform::Failure& failure) {
        m_progress.setReason(failure.line());
        m_desk.notice(u"エラー："_s + failure.line());
        failureExit();
    } catch (...) {
        failureExit();
        throw;
    }
    if (!isDone)
        return notDone();
    if (m_settings.isPingWanted) {
        m_progress.view().close();
        if (m_ping)
            m_ping();
    }
    return {true};
}

bool FtpUpload::transferAll() {
    // Of two runs at once one would send a picture into the other's, and call what is left of it whole.
    const platform::FileLock lock(core::files::kUploadLock.in(m_session));
    if (!lock.isHeld())
        return tellOtherUpload();
    m_settings = readUploadSettings(m_session);
    if (!checkLocalFiles())
        return false; // nothing is open; the window stays and keeps its text
    UploadPhases phases(m_session, m_internet, m_desk, m_progress, m_files, m_siteFiles, m_settings.startFolder);
    if (!connectToServer() || !phases.run(m_pageTotal, m_logTotal)) {
        failureExit();
        return false;
    }
    finish();
    return true;
}

bool FtpUpload::tellOtherUpload() {
    m_progress.fail(
        u"エラー"_s,
        u"この日記は、ほかのVelloriaがアップロードしています。\r\n終わってから、もう一度アップロードしてください。"_s,
        u"Another upload is running....Upload Failed."_s);
    m_progress.view().allowClosing();
    return false;
}

/// Before any use of the network: what the lists name must be there.
bool FtpUpload::checkLocalFiles() {
    if (m_settings.login.host.isEmpty() || m_settings.login.user.isEmpty())
        return m_progress.fail(u"エラー"_s,
                               u"FTPのIDもしくはURLが設定されていません。\r\n(FTP_ID or FTP_URL is not invalid.)"_s,
                               u"FTP_ID or FTP_URL is not invalid....Upload Failed."_s);
    m_desk.pointer(platform::Pointer::Hourglass);
    m_desk.status(u"Checking..."_s);
    if (!m_files.listExists(core::files::kPageList))
        return m_progress.fail(u"エラー"_s,
                               u"アップロードするファイルのリストが存在しません。\r\n(Upload.tmp is not exist.)"_s,
                               u"Upload File not exist!...Upload Failed."_s);
    const UploadList pages = m_files.readList(core::files::kPageList);
    if (!filesExist(pages, u"アップロードするファイルが存在しません。"_s))
        return false;
    m_pageTotal = qsizetype(pages.rows.size());
    requireCountable(m_pageTotal, m_files.listFile(core::files::kPageList));
    if (!m_files.listExists(core::files::kLogList))
        return true;
    const UploadList logs = m_files.readList(core::files::kLogList);
    if (!filesExist(logs, u"アップロードするログファイルが存在しません。"_s))
        return false;
    m_logTotal = qsizetype(logs.rows.size());
    requireCountable(m_logTotal, m_files.listFile(core::files::kLogList));
    return true;
}

bool FtpUpload::filesExist(const UploadList& list, const QString& whenMissing) {
    for (const core::UploadRow& row : list.rows) {
        if (!platform::fileExists(m_files.localFile(row)))
            return m_progress.fail(u"エラー"_s, whenMissing + u"\r\n("_s + row.name + u" is not exist.)"_s,
                                   u"Upload File not exist!...Upload Failed."_s);
    }
    return true;
}

void FtpUpload::beginLog() {
    m_log.emplace(core::files::kUploadLog.in(m_session),
                  m_clock.now().toString(u"yyyy/MM/dd HH:mm:ss "_s) + m_settings.login.host);
    m_internet.traceTo([this](const QString& line) { m_log->add(line); });
}

bool FtpUpload::connectToServer() {
    const QString& host = m_settings.login.host;
    beginLog();
    m_desk.status(u"Starting Connection to "_s + host);
    m_isSessionOpen = m_internet.openSession();
    if (!m_isSessionOpen)
        return notConnected(u"インターネットへの接続失敗。\r\n(Internet Connect Error.)"_s,
                            u"Can't connect Internet!"_s);
    m_progress.view().setTitleAndText(u"接続確認中"_s, u"インターネットへの接続成功。"_s);
    m_isFtpOpen = m_internet.connectFtp(m_settings.login);
    if (!m_isFtpOpen)
        return notConnected(u"FTPサーバーへの接続失敗。\r\n(FTP Connect Error.)"_s, u"Can't connect to "_s + host);
    const QString remark = m_internet.lastDetail();
    m_progress.show(u"接続確認中"_s, u"FTP接続成功。"_s);
    m_desk.status(u"Connected to "_s + host);
    if (!remark.isEmpty())
        m_desk.notice(remark);
    return true;
}

/// These texts say nothing of the reason: it comes to the status panel after them.
bool FtpUpload::notConnected(const QString& text, const QString& status) {
    m_progress.fail(u"エラー"_s, text, status);
    const QString reason = failureReason(m_internet);
    m_progress.addReason(reason);
    m_desk.notice(u"エラー："_s + reason);
    return false;
}

void FtpUpload::finish() {
    m_internet.closeFtp();
    m_isFtpOpen = false;
    m_internet.closeSession();
    m_isSessionOpen = false;
    m_log->end(u"Uploading Files is Success!"_s);
    m_desk.status(u"Uploading Files is Success!"_s);
    SendMCICommand(soundCommand(core::Settings(m_session).text(core::keys::kSoundFile)));
    m_progress.view().setTitleAndText(u"Successful"_s, u"日記のアップロードに成功しました。"_s);
    m_desk.pump(); // all is done: an end of the program takes nothing away any more
    m_progress.view().allowClosing();
    m_desk.pointer(platform::Pointer::Default);
    m_siteFiles.tell(m_desk);
}

void FtpUpload::SendMCICommand(const QString& command) {
    m_desk.sound(command);
}

UploadResult FtpUpload::notDone() const {
    return {false, oneLine(m_progress.reason())};
}

/// The one way out after the check of the local files.
void FtpUpload::failureExit() {
    if (m_isFtpOpen)
        m_internet.closeFtp();
    if (m_isSessionOpen)
        m_internet.closeSession();
    if (m_log)
        m_log->end(oneLine(m_progress.reason()));
    m_progress.view().setText(m_progress.view().text() + u"\r\n不明なエラーで終了しました。"_s);
    m_progress.view().allowClosing();
    m_desk.pointer(platform::Pointer::Default);
}

} // namespace velloria::publish
