#include "publish/upload_phases.h"

#include "core/files.h"
#include "core/keys.h"
#include "core/path_names.h"
#include "core/settings.h"
#include "platform/file_write.h"
#include "publish/internet_error.h"

using namespace Qt::StringLiterals;

namespace velloria::publish {
namespace {

QString successOf(const QString& name, qsizetype done, qsizetype total) {
    return u"ファイル「"_s + name + u"」のアップロードに成功しました。(%1/%2)"_s.arg(done).arg(total);
}

} // namespace

UploadPhases::UploadPhases(const core::Session& session, Internet& internet, platform::Desk& desk,
                           UploadProgress& progress, UploadFiles& files, registers::SiteFiles& siteFiles,
                           QString startFolder)
    : m_session(session)
    , m_internet(internet)
    , m_desk(desk)
    , m_progress(progress)
    , m_local(files)
    , m_siteFiles(siteFiles)
    , m_register(session.databaseFile())
    , m_folders(internet, desk)
    , m_startFolder(std::move(startFolder)) {}

bool UploadPhases::run(qsizetype pageTotal, qsizetype logTotal) {
    m_pageTotal = pageTotal;
    m_logTotal = logTotal;
    return enterStartFolder() && deleteOldFiles() && uploadPages() && uploadParts() && uploadLogSide();
}

bool UploadPhases::enterStartFolder() {
    return m_startFolder.isEmpty() || enterFolder(u"ディレクトリの移動"_s, {}, m_startFolder, m_startFolder);
}

bool UploadPhases::enterFolder(const QString& title, const QString& path, const QString& name, const QString& shown) {
    m_progress.show(title, shown + u"へ移動中"_s);
    if (!m_folders.CheckFTPFolder(name) || !m_folders.ChangeFTPDirectory(path, name))
        return m_progress.notEntered(shown, m_folders.refusal());
    m_progress.show(shown + u"へ移動完了"_s);
    return true;
}

/// Takes away what the last run whose pages all went up has put there.
bool UploadPhases::deleteOldFiles() {
    if (!m_local.listExists(core::files::kSentList))
        return true;
    m_progress.view().setTitle(u"ファイルの削除"_s);
    for (const core::UploadRow& row : m_local.readList(core::files::kSentList).rows) {
        m_local.take(row);
        // A row that someone has cut names nothing, and must not end every run from now on.
        if (!row.name.isEmpty() && !deleteIfThere(row.name, Announce::No))
            return false;
    }
    return true;
}

bool UploadPhases::deleteIfThere(const QString& name, Announce announce) {
    if (!m_internet.findFile(name)) {
        if (m_internet.lastError() == kNoMoreFiles)
            return true;
        return m_progress.refused(u"エラー"_s,
                                  u"その他のエラー(FileDelete)。\r\n("_s + InternetErrorText(m_internet) + u')');
    }
    if (announce == Announce::Yes)
        m_progress.show(u"ファイル「"_s + name + u"」を削除しています。"_s);
    if (!m_internet.deleteFile(name))
        return m_progress.refused(u"エラー"_s, u"ファイルの削除に失敗。\r\n("_s + name + u" delete is missed.)"_s);
    m_progress.show(u"ファイル「"_s + name + u"」を削除しました。"_s);
    m_desk.status(u"Deleting "_s + name + u" is Completed!"_s);
    return true;
}

bool UploadPhases::uploadPages() {
    const UploadList pages = m_local.readList(core::files::kPageList);
    m_done = 0;
    m_progress.view().setBar(0, int(m_pageTotal));
    for (const core::UploadRow& row : pages.rows) {
        const QString local = m_local.localFile(row);
        m_progress.show(u"HTMLファイルアップロード"_s,
                        u"ファイル「"_s + row.name + u"」をアップロード中。(%1/%2)"_s.arg(m_done).arg(m_pageTotal));
        if (!m_internet.putFile(local, row.name, TransferType::Text))
            return m_progress.refused(u"HTMLアップロードエラー"_s,
                                      u"その他のエラー(FileUpload)。\r\n("_s + InternetErrorText(m_internet) + u')');
        m_progress.view().setBarValue(++m_done);
        m_progress.show(successOf(row.name, m_done, m_pageTotal));
        m_desk.status(u"Upload \""_s + row.name + u"\" is Succeeded!"_s);
    }
    // The list as it was sent: a command that ran meanwhile may have written another one.
    platform::replaceFile(m_local.listFile(core::files::kSentList), pages.bytes, platform::Durability::Derived);
    return true;
}

bool UploadPhases::uploadParts() {
    m_isHtmlOnly = core::Settings(m_session).number(core::keys::kHtmlOnlyUpload) != 0;
    if (m_isHtmlOnly)
        return true;
    m_progress.view().setTitle(u"ファイルアップロード"_s);
    m_siteFiles.take(m_register.filesSent()); // only to tell of those that would not go any more
    const std::vector<store::FileRow> rows = m_siteFiles.take(m_register.filesToUpload(registers::SiteSide::Current));
    if (rows.empty()) {
        m_desk.status(u"HTMLファイル以外にアップロード対象となるファイルはありません。"_s);
        return true;
    }
    if (!enterFolder(u"ディレクトリの移動"_s, m_startFolder, core::files::kParts.name,
                     m_startFolder + u"\\DiaryParts"_s))
        return false;
    m_progress.view().setBar(0, int(rows.size()));
    for (const store::FileRow& row : rows) {
        if (!uploadPart(row, qsizetype(rows.size())))
            return false;
    }
    return leaveParts();
}

/// This phase has no counter: its texts say 0, and its bar stays empty.
bool UploadPhases::uploadPart(const store::FileRow& row, qsizetype total) {
    const std::optional<QString> local = m_local.localPart(m_session.DataPath, row.name);
    if (!local)
        return true;
    m_desk.status(u"Uploading "_s + row.name);
    m_progress.show(u"ファイル「"_s + row.name + u"」をアップロードします。(0/%1)"_s.arg(total));
    if (!m_internet.putFile(*local, row.name, TransferType::Binary))
        return m_progress.refused(u"ファイルアップロードエラー"_s, u"その他のエラー(OtherFileUpload)。\r\n("_s +
                                                                       row.name + u':' + InternetErrorText(m_internet) +
                                                                       u')');
    m_progress.show(successOf(row.name, 0, total));
    m_desk.status(u"Upload Successful!"_s);
    m_register.markUploaded(row.id);
    return true;
}

bool UploadPhases::leaveParts() {
    m_progress.show(u"元のディレクトリへの移動"_s, m_startFolder + u"へ移動中"_s);
    if (!m_folders.ChangeFTPDirectory(core::files::kParts.below(m_startFolder) + u'/', u".."_s)) {
        return m_progress.notEntered(m_startFolder, m_folders.refusal());
    }
    m_progress.show(m_startFolder + u"へ移動完了"_s);
    return true;
}

/// The logs and the files beside them; without a list of logs neither.
bool UploadPhases::uploadLogSide() {
    if (!m_local.listExists(core::files::kLogList))
        return true;
    if (!enterFolder(u"ログ：DiaryLogディレクトリへの移動"_s, m_startFolder, core::files::kLogs.name,
                     m_startFolder + u"\\DiaryLog"_s))
        return false;
    const UploadList logs = m_local.readList(core::files::kLogList);
    if (!uploadLogs(logs.rows) || !uploadLogParts())
        return false;
    // Logs that were listed while these went up stay listed, with the others.
    core::removeUploadList(core::files::kLogList.in(m_session), logs.bytes);
    return true;
}

bool UploadPhases::uploadLogs(const std::vector<core::UploadRow>& rows) {
    m_done = 0;
    m_progress.view().setBar(0, int(m_logTotal));
    m_progress.view().setTitle(u"ログ：ファイルのアップロード"_s);
    for (const core::UploadRow& row : rows) {
        const QString local = m_local.localFile(row);
        if (!deleteIfThere(row.name, Announce::Yes))
            return false;
        m_progress.show(u"ファイル「"_s + row.name + u"」をアップロードします。"_s);
        if (!m_internet.putFile(local, row.name, TransferType::Text)) {
            return m_progress.refused();
        }
        m_progress.view().setBarValue(++m_done);
        m_progress.show(successOf(row.name, m_done, m_pageTotal)); // the total is that of the pages
        m_desk.status(u"Upload \""_s + row.name + u"\" is Succeeded!"_s);
    }
    return true;
}

bool UploadPhases::uploadLogParts() {
    if (m_isHtmlOnly) {
        // This phase works on with the database of the one before, and pages alone go up without it.
        m_progress.setReason(u"HTMLファイルのみアップロードする設定では、ログのファイルを最後まで送れません。"_s);
        return false;
    }
    const std::vector<store::FileRow> rows = m_siteFiles.take(m_register.filesToUpload(registers::SiteSide::Log));
    if (rows.empty())
        return true;
    if (!enterFolder(u"ログ：DiaryPartsディレクトリへの移動"_s, core::files::kLogs.below(m_startFolder) + u'/',
                     core::files::kParts.name, m_startFolder + u"\\DiaryLog\\DiaryParts"_s))
        return false;
    m_progress.view().setText(m_startFolder +
                              u"\\DiaryLogへ移動中"_s); // no move follows: the connection ends in this folder
    m_progress.view().setBar(0, int(rows.size()));
    m_progress.view().setTitle(u"ログ：ファイルのアップロード"_s);
    for (const store::FileRow& row : rows) {
        if (!uploadLogPart(row, qsizetype(rows.size())))
            return false;
    }
    return true;
}

bool UploadPhases::uploadLogPart(const store::FileRow& row, qsizetype total) {
    const std::optional<QString> local =
        m_local.localPart(core::files::kLogs.in(m_session) + core::nativeSeparator(), row.name);
    if (!local)
        return true;
    m_desk.status(u"Uploading "_s + row.name);
    if (!m_internet.putFile(*local, row.name, TransferType::Binary))
        return m_progress.refused(u"エラー"_s,
                                  u"ファイル「"_s + row.name + u"」のアップロードに失敗。\r\n("_s + m_local.lastName() +
                                      u" delete is missed.)\r\n"
                                      u"サーバーが混んでいる可能性もありますので、時間帯を変更してお試し下さい。"_s);
    m_progress.view().setBarValue(++m_done);
    m_progress.show(successOf(row.name, m_done, total));
    m_desk.status(u"Upload Successful!"_s);
    m_register.markUploaded(row.id);
    return true;
}

} // namespace velloria::publish
