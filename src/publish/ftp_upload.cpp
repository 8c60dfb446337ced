#include "publish/ftp_upload.h"

#include "convert/password_text.h"
#include "core/keys.h"
#include "core/stored_name.h"
#include "platform/directory.h"
#include "platform/failure.h"

#include <QRegularExpression>

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

/// Whoever writes "yes" or "２" means encryption as well, and must not see the password go out in clear: all but the
/// two numbers that allow that requires it.
Tls tlsOf(const QString& setting) {
    static const QRegularExpression zero(u"^([+-]?0+|0x0+)?$"_s, QRegularExpression::CaseInsensitiveOption);
    static const QRegularExpression one(u"^(\\+?0*|0x0*)1$"_s, QRegularExpression::CaseInsensitiveOption);
    if (zero.match(setting).hasMatch())
        return Tls::Off;
    return one.match(setting).hasMatch() ? Tls::WhenOffered : Tls::Required;
}

} // namespace

FtpUpload::FtpUpload(const core::Session& session, Internet& internet, platform::Desk& desk, UploadCalls calls)
    : m_session(session)
    , m_internet(internet)
    , m_desk(desk)
    , m_calls(std::move(calls))
    , m_view(desk)
    , m_folders(internet, desk)
    , m_files(session.databaseFile())
    , m_siteFiles(session) {}

UploadResult FtpUpload::FTP_Execute() {
    try {
        m_view.open(u"FTP by Velloria"_s);
        readSettings();
        if (!checkLocalFiles())
            return notDone(); // nothing is open; the window stays and keeps its text
        if (!transfer()) {
            failureExit();
            return notDone();
        }
        finish();
    } catch (const platform::Failure& failure) {
        m_reason = failure.line();
        m_desk.notice(u"エラー："_s + m_reason);
        failureExit();
        return notDone();
    } catch (...) {
        failureExit();
        throw;
    }
    if (m_isPingWanted) {
        m_view.close();
        if (m_calls.ping)
            m_calls.ping();
    }
    return {true};
}

void FtpUpload::readSettings() {
    namespace keys = core::keys;
    const QString& file = m_session.DiaryIniFile;
    const auto text = [&](const core::Key& key) { return core::TrimNull(core::ReadIni(file, key)); };
    m_login.host = text(keys::kFtpUrl);
    m_login.user = text(keys::kFtpId);
    m_login.password = convert::passwordFromSetting(text(keys::kFtpPass));
    m_login.isPassive = core::ReadIniIntDef(file, keys::kFtpPassive, 0) != 0;
    m_login.tls = tlsOf(text(keys::kTls));
    m_startFolder = text(keys::kFtpStartFolder);
    m_isPingWanted = core::ReadIniIntDef(file, keys::kFtpPing, 0) != 0;
}

/// Before any use of the network: what the lists name must be there.
bool FtpUpload::checkLocalFiles() {
    if (m_login.host.isEmpty() || m_login.user.isEmpty())
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

bool FtpUpload::connectToServer() {
    m_desk.status(u"Starting Connection to "_s + m_login.host);
    m_isSessionOpen = m_internet.openSession();
    if (!m_isSessionOpen)
        return fail(u"エラー"_s, u"インターネットへの接続失敗。\r\n(Internet Connect Error.)"_s,
                    u"Can't connect Internet!"_s);
    m_view.setTitleAndText(u"接続確認中"_s, u"インターネットへの接続成功。"_s);
    m_isFtpOpen = m_internet.connectFtp(m_login);
    if (!m_isFtpOpen) {
        const QString error = InternetErrorText(m_internet);
        fail(u"エラー"_s, u"FTPサーバーへの接続失敗。\r\n(FTP Connect Error.)"_s,
             u"Can't connect to "_s + m_login.host);
        m_reason += u' ' + error;
        return false;
    }
    showAndPump(u"接続確認中"_s, u"FTP接続成功。"_s);
    m_desk.status(u"Connected to "_s + m_login.host);
    return true;
}

bool FtpUpload::enterStartFolder() {
    if (m_startFolder.isEmpty())
        return true;
    return enterFolder(u"ディレクトリの移動"_s, {}, m_startFolder, m_startFolder);
}

void FtpUpload::finish() {
    m_internet.closeFtp();
    m_isFtpOpen = false;
    m_internet.closeSession();
    m_isSessionOpen = false;
    m_desk.status(u"Uploading Files is Success!"_s);
    const QString sound =
        core::nameOfStored(core::TrimNull(core::ReadIni(m_session.DiaryIniFile, core::keys::kSoundFile)));
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
    return {false, QString(m_reason).replace(u"\r\n"_s, u" "_s)};
}

/// The one way out behind the check of the local files.
void FtpUpload::failureExit() {
    if (m_isFtpOpen)
        m_internet.closeFtp();
    if (m_isSessionOpen)
        m_internet.closeSession();
    m_view.setText(m_view.text() + u"\r\n不明なエラーで終了しました。"_s);
    m_view.allowClosing();
    m_desk.pointer(platform::Pointer::Default);
}

} // namespace velloria::publish
