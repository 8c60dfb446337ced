#include "publish/ftp_upload.h"

#include "core/keys.h"
#include "core/path_names.h"
#include "core/settings.h"
#include "platform/file_write.h"
#include "publish/network_error.h"

using namespace Qt::StringLiterals;

namespace velloria::publish {
namespace {

QString successOf(const QString& name, qsizetype done, qsizetype total) {
    return u"ファイル「"_s + name + u"」のアップロードに成功しました。(%1/%2)"_s.arg(done).arg(total);
}

} // namespace

/// Takes away what the last run whose pages all went up has put there.
bool FtpUpload::deleteOldFiles() {
    if (!listExists(u"uploadold.tmp"_s))
        return true;
    m_view.setTitle(u"ファイルの削除"_s);
    for (const core::UploadRow& row : readList(u"uploadold.tmp"_s).rows) {
        take(row);
        // A row that someone has cut names nothing, and must not end every run from now on.
        if (!row.name.isEmpty() && !deleteIfThere(row.name, Announce::No))
            return false;
    }
    return true;
}

bool FtpUpload::deleteIfThere(const QString& name, Announce announce) {
    if (!m_internet.findFile(name)) {
        if (m_internet.lastError() == kNoMoreFiles)
            return true;
        return refused(u"エラー"_s, u"その他のエラー(FileDelete)。\r\n("_s + InternetErrorText(m_internet) + u')');
    }
    if (announce == Announce::Yes)
        showAndPump(u"ファイル「"_s + name + u"」を削除しています。"_s);
    if (!m_internet.deleteFile(name))
        return refused(u"エラー"_s, u"ファイルの削除に失敗。\r\n("_s + name + u" delete is missed.)"_s);
    showAndPump(u"ファイル「"_s + name + u"」を削除しました。"_s);
    m_desk.status(u"Deleting "_s + name + u" is Completed!"_s);
    return true;
}

bool FtpUpload::uploadPages() {
    const List pages = readList(u"upload.tmp"_s);
    m_done = 0;
    m_view.setBar(0, int(m_pageTotal));
    for (const core::UploadRow& row : pages.rows) {
        const QString local = localFile(row);
        showAndPump(u"HTMLファイルアップロード"_s,
                    u"ファイル「"_s + row.name + u"」をアップロード中。(%1/%2)"_s.arg(m_done).arg(m_pageTotal));
        if (!m_internet.putFile(local, row.name, TransferType::Text))
            return refused(u"HTMLアップロードエラー"_s,
                           u"その他のエラー(FileUpload)。\r\n("_s + InternetErrorText(m_internet) + u')');
        m_view.setBarValue(++m_done);
        showAndPump(successOf(row.name, m_done, m_pageTotal));
        m_desk.status(u"Upload \""_s + row.name + u"\" is Succeeded!"_s);
    }
    // The list as it was sent: a command that ran meanwhile may have written another one.
    platform::replaceFile(listFile(u"uploadold.tmp"_s), pages.bytes, platform::Durability::Derived);
    return true;
}

bool FtpUpload::uploadParts() {
    m_isHtmlOnly = core::Settings(m_session).number(core::keys::kHtmlOnlyUpload) != 0;
    if (m_isHtmlOnly)
        return true;
    m_view.setTitle(u"ファイルアップロード"_s);
    m_siteFiles.take(m_files.filesSent()); // only to tell of those that would not go any more
    const std::vector<store::FileRow> rows = m_siteFiles.take(m_files.filesToUpload(registers::SiteSide::Current));
    if (rows.empty()) {
        m_desk.status(u"HTMLファイル以外にアップロード対象となるファイルはありません。"_s);
        return true;
    }
    if (!enterFolder(u"ディレクトリの移動"_s, m_settings.startFolder, u"DiaryParts"_s,
                     m_settings.startFolder + u"\\DiaryParts"_s))
        return false;
    m_view.setBar(0, int(rows.size()));
    for (const store::FileRow& row : rows) {
        if (!uploadPart(row, qsizetype(rows.size())))
            return false;
    }
    return leaveParts();
}

/// This phase has no counter: its texts say 0, and its bar stays empty.
bool FtpUpload::uploadPart(const store::FileRow& row, qsizetype total) {
    const std::optional<QString> local = localPart(m_session.DataPath, row.name);
    if (!local)
        return true;
    m_desk.status(u"Uploading "_s + row.name);
    showAndPump(u"ファイル「"_s + row.name + u"」をアップロードします。(0/%1)"_s.arg(total));
    if (!m_internet.putFile(*local, row.name, TransferType::Binary))
        return refused(u"ファイルアップロードエラー"_s, u"その他のエラー(OtherFileUpload)。\r\n("_s + row.name + u':' +
                                                            InternetErrorText(m_internet) + u')');
    showAndPump(successOf(row.name, 0, total));
    m_desk.status(u"Upload Successful!"_s);
    m_files.markUploaded(row.id);
    return true;
}

bool FtpUpload::leaveParts() {
    showAndPump(u"元のディレクトリへの移動"_s, m_settings.startFolder + u"へ移動中"_s);
    if (!m_folders.ChangeFTPDirectory(m_settings.startFolder + u"DiaryParts/"_s, u".."_s)) {
        return tellNotEntered(m_settings.startFolder);
    }
    showAndPump(m_settings.startFolder + u"へ移動完了"_s);
    return true;
}

/// The logs and the files beside them; without a list of logs neither.
bool FtpUpload::uploadLogSide() {
    if (!listExists(u"uploadlog.tmp"_s))
        return true;
    if (!enterFolder(u"ログ：DiaryLogディレクトリへの移動"_s, m_settings.startFolder, u"DiaryLog"_s,
                     m_settings.startFolder + u"\\DiaryLog"_s))
        return false;
    const List logs = readList(u"uploadlog.tmp"_s);
    if (!uploadLogs(logs.rows) || !uploadLogParts())
        return false;
    // Logs that were listed while these went up stay listed, with the others.
    core::removeUploadList(m_session.UserPath + u"uploadlog.tmp"_s, logs.bytes);
    return true;
}

bool FtpUpload::uploadLogs(const std::vector<core::UploadRow>& rows) {
    m_done = 0;
    m_view.setBar(0, int(m_logTotal));
    m_view.setTitle(u"ログ：ファイルのアップロード"_s);
    for (const core::UploadRow& row : rows) {
        const QString local = localFile(row);
        if (!deleteIfThere(row.name, Announce::Yes))
            return false;
        showAndPump(u"ファイル「"_s + row.name + u"」をアップロードします。"_s);
        if (!m_internet.putFile(local, row.name, TransferType::Text)) {
            m_reason = m_view.text();
            addReason(showNetworkError(m_internet, m_desk));
            return false;
        }
        m_view.setBarValue(++m_done);
        showAndPump(successOf(row.name, m_done, m_pageTotal)); // the total is that of the pages
        m_desk.status(u"Upload \""_s + row.name + u"\" is Succeeded!"_s);
    }
    return true;
}

bool FtpUpload::uploadLogParts() {
    if (m_isHtmlOnly) {
        // This phase works on with the database of the one before, and pages alone go up without it.
        m_reason = u"HTMLファイルのみアップロードする設定では、ログのファイルを最後まで送れません。"_s;
        return false;
    }
    const std::vector<store::FileRow> rows = m_siteFiles.take(m_files.filesToUpload(registers::SiteSide::Log));
    if (rows.empty())
        return true;
    if (!enterFolder(u"ログ：DiaryPartsディレクトリへの移動"_s, m_settings.startFolder + u"DiaryLog/"_s,
                     u"DiaryParts"_s, m_settings.startFolder + u"\\DiaryLog\\DiaryParts"_s))
        return false;
    m_view.setText(m_settings.startFolder +
                   u"\\DiaryLogへ移動中"_s); // no move follows: the connection ends in this folder
    m_view.setBar(0, int(rows.size()));
    m_view.setTitle(u"ログ：ファイルのアップロード"_s);
    for (const store::FileRow& row : rows) {
        if (!uploadLogPart(row, qsizetype(rows.size())))
            return false;
    }
    return true;
}

bool FtpUpload::uploadLogPart(const store::FileRow& row, qsizetype total) {
    const std::optional<QString> local =
        localPart(m_session.DataPath + u"DiaryLog"_s + core::nativeSeparator(), row.name);
    if (!local)
        return true;
    m_desk.status(u"Uploading "_s + row.name);
    if (!m_internet.putFile(*local, row.name, TransferType::Binary))
        return refused(u"エラー"_s, u"ファイル「"_s + row.name + u"」のアップロードに失敗。\r\n("_s + m_lastName +
                                        u" delete is missed.)\r\n"
                                        u"サーバーが混んでいる可能性もありますので、時間帯を変更してお試し下さい。"_s);
    m_view.setBarValue(++m_done);
    showAndPump(successOf(row.name, m_done, total));
    m_desk.status(u"Upload Successful!"_s);
    m_files.markUploaded(row.id);
    return true;
}

} // namespace velloria::publish
