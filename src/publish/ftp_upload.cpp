#include "publish/ftp_upload.h"

#include "core/keys.h"
#include "core/settings.h"
#include "platform/directory.h"
#include "platform/failure.h"
#include "platform/file_lock.h"

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
    , m_calls(std::move(calls))
    , m_view(run.desk)
    , m_folders(internet, run.desk)
    , m_files(run.session.databaseFile())
    , m_siteFiles(run.session) {}

UploadResult FtpUpload::FTP_Execute() {
    const auto untraced = qScopeGuard([this] { m_internet.traceTo({}); });
    bool isDone = false;
    try {
        m_view.open(u"FTP by Velloria"_s);
        isDone = transferAll();
    } catch (const platform::Failure& failure) {
        m_reason = failure.line();
        m_desk.notice(u"エラー："_s + m_reason);
        failureExit();
    } catch (...) {
        failureExit();
        throw;
    }
    if (!isDone)
        return notDone();
    if (m_settings.isPingWanted) {
        m_view.close();
        if (m_calls.ping)
            m_calls.ping();
    }
    return {true};
}

bool FtpUpload::transferAll() {
    // Of two runs at once one would send a picture into the other's, and call what is left of it whole.
    const platform::FileLock lock(m_session.UserPath + u"upload.lock"_s);
    if (!lock.isHeld())
        return tellOtherUpload();
    m_settings = readUploadSettings(m_session);
    if (!checkLocalFiles())
        return false; // nothing is open; the window stays and keeps its text
    if (!transfer()) {
        failureExit();
        return false;
    }
    finish();
    return true;
}

bool FtpUpload::tellOtherUpload() {
    fail(u"エラー"_s,
         u"この日記は、ほかのVelloriaがアップロードしています。\r\n終わってから、もう一度アップロードしてください。"_s,
         u"Another upload is running....Upload Failed."_s);
    m_view.allowClosing();
    return false;
}

/// Before any use of the network: what the lists name must be there.
bool FtpUpload::checkLocalFiles() {
    if (m_settings.login.host.isEmpty() || m_settings.login.user.isEmpty())
        return fail(u"エラー"_s, u"FTPのIDもしくはURLが設定されていません。\r\n(FTP_ID or FTP_URL is not invalid.)"_s,
                    u"FTP_ID or FTP_URL is not invalid....Upload Failed."_s);
    m_desk.pointer(platform::Pointer::Hourglass);
    m_desk.status(u"Checking..."_s);
    if (!listExists(u"upload.tmp"_s))
        return fail(u"エラー"_s, u"アップロードするファイルのリストが存在しません。\r\n(Upload.tmp is not exist.)"_s,
                    u"Upload File not exist!...Upload Failed."_s);
    const List pages = readList(u"upload.tmp"_s);
    if (!filesExist(pages, u"アップロードするファイルが存在しません。"_s))
        return false;
    m_pageTotal = qsizetype(pages.rows.size());
    requireCountable(m_pageTotal, listFile(u"upload.tmp"_s));
    if (!listExists(u"uploadlog.tmp"_s))
        return true;
    const List logs = readList(u"uploadlog.tmp"_s);
    if (!filesExist(logs, u"アップロードするログファイルが存在しません。"_s))
        return false;
    m_logTotal = qsizetype(logs.rows.size());
    requireCountable(m_logTotal, listFile(u"uploadlog.tmp"_s));
    return true;
}

bool FtpUpload::filesExist(const List& list, const QString& whenMissing) {
    for (const core::UploadRow& row : list.rows) {
        if (!platform::fileExists(localFile(row)))
            return fail(u"エラー"_s, whenMissing + u"\r\n("_s + row.name + u" is not exist.)"_s,
                        u"Upload File not exist!...Upload Failed."_s);
    }
    return true;
}

/// All that happens while a connection is open.
bool FtpUpload::transfer() {
    return connectToServer() && enterStartFolder() && deleteOldFiles() && uploadPages() && uploadParts() &&
           uploadLogSide();
}

void FtpUpload::beginLog() {
    m_log.emplace(m_session.UserPath + u"upload.log"_s,
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
    m_view.setTitleAndText(u"接続確認中"_s, u"インターネットへの接続成功。"_s);
    m_isFtpOpen = m_internet.connectFtp(m_settings.login);
    if (!m_isFtpOpen)
        return notConnected(u"FTPサーバーへの接続失敗。\r\n(FTP Connect Error.)"_s, u"Can't connect to "_s + host);
    const QString remark = m_internet.lastDetail();
    showAndPump(u"接続確認中"_s, u"FTP接続成功。"_s);
    m_desk.status(u"Connected to "_s + host);
    if (!remark.isEmpty())
        m_desk.notice(remark);
    return true;
}

/// These texts say nothing of the reason: it comes to the status panel behind them.
bool FtpUpload::notConnected(const QString& text, const QString& status) {
    fail(u"エラー"_s, text, status);
    const QString reason = failureReason(m_internet);
    addReason(reason);
    m_desk.notice(u"エラー："_s + reason);
    return false;
}

bool FtpUpload::enterStartFolder() {
    const QString& folder = m_settings.startFolder;
    return folder.isEmpty() || enterFolder(u"ディレクトリの移動"_s, {}, folder, folder);
}

void FtpUpload::finish() {
    m_internet.closeFtp();
    m_isFtpOpen = false;
    m_internet.closeSession();
    m_isSessionOpen = false;
    m_log->end(u"Uploading Files is Success!"_s);
    m_desk.status(u"Uploading Files is Success!"_s);
    const QString sound = core::Settings(m_session).text(core::keys::kSoundFile);
    SendMCICommand(u"Play \""_s + sound + u'"');
    m_view.setTitleAndText(u"Successful"_s, u"日記のアップロードに成功しました。"_s);
    m_desk.pump(); // all is done: an end of the program takes nothing away any more
    m_view.allowClosing();
    m_desk.pointer(platform::Pointer::Default);
    m_siteFiles.tell(m_desk);
}

void FtpUpload::SendMCICommand(const QString& command) {
    m_desk.sound(command);
}

UploadResult FtpUpload::notDone() const {
    return {false, oneLine(m_reason)};
}

/// The one way out behind the check of the local files.
void FtpUpload::failureExit() {
    if (m_isFtpOpen)
        m_internet.closeFtp();
    if (m_isSessionOpen)
        m_internet.closeSession();
    if (m_log)
        m_log->end(oneLine(m_reason));
    m_view.setText(m_view.text() + u"\r\n不明なエラーで終了しました。"_s);
    m_view.allowClosing();
    m_desk.pointer(platform::Pointer::Default);
}

} // namespace velloria::publish
