#include "publish/ftp_upload.h"

#include "core/path_names.h"
#include "platform/directory.h"
#include "platform/failure.h"
#include "platform/file_write.h"
#include "publish/network_error.h"

using namespace Qt::StringLiterals;

namespace velloria::publish {

bool FtpUpload::enterFolder(const QString& title, const QString& path, const QString& name, const QString& shown) {
    showAndPump(title, shown + u"へ移動中"_s);
    if (!m_folders.CheckFTPFolder(name) || !m_folders.ChangeFTPDirectory(path, name))
        return tellNotEntered(shown);
    showAndPump(shown + u"へ移動完了"_s);
    return true;
}

bool FtpUpload::tellNotEntered(const QString& shown) {
    m_reason = shown + u"へ移動失敗"_s;
    m_view.setText(m_reason);
    addReason(m_folders.refusal());
    return false;
}

QString FtpUpload::listFile(const QString& name) const {
    return platform::existingPath(m_session.UserPath + name);
}

bool FtpUpload::listExists(const QString& name) const {
    return platform::fileExists(m_session.UserPath + name);
}

FtpUpload::List FtpUpload::readList(const QString& name) const {
    // Read once: another program may replace the list at any time, and what counts as sent is what these rows name.
    QByteArray bytes = platform::readFile(listFile(name));
    std::vector<core::UploadRow> rows = core::uploadRows(bytes);
    return {std::move(bytes), std::move(rows)};
}

void FtpUpload::take(const core::UploadRow& row) {
    m_lastFolder = row.folder.isEmpty() ? QString(core::nativeSeparator()) : core::withSeparator(row.folder);
    m_lastName = row.name;
}

QString FtpUpload::localFile(const core::UploadRow& row) {
    take(row);
    return platform::existingPath(m_lastFolder + m_lastName);
}

/// Nothing for a file that may not go.
std::optional<QString> FtpUpload::localPart(const QString& dataFolder, const QString& name) {
    platform::FolderNames& site = partsBelow(m_lastFolder);
    // Saving the site copies the files of its month alone: one of another month is still in the data folder only.
    const platform::FolderNames& data = partsBelow(dataFolder);
    if (!m_lastFolder.isEmpty() && !site.hasFile(name) && data.hasFile(name)) {
        if (!m_siteFiles.isCopy(data.path(name)))
            return std::nullopt;
        const QString part = site.path(name);
        platform::makeFolder(core::GetParentFolder(part));
        platform::placeFile(data.path(name), part);
        site.add(name);
    }
    const QString part = site.path(name);
    if (!m_siteFiles.isCopy(part))
        return std::nullopt;
    return part;
}

/// Each folder is listed once a run, however many of its files are missing.
platform::FolderNames& FtpUpload::partsBelow(const QString& folder) {
    return m_parts.try_emplace(folder, platform::existingPath(folder + u"DiaryParts"_s) + core::nativeSeparator())
        .first->second;
}

void FtpUpload::showAndPump(const QString& text) {
    m_view.setText(text);
    pump();
}

void FtpUpload::showAndPump(const QString& title, const QString& text) {
    m_view.setTitleAndText(title, text);
    pump();
}

void FtpUpload::pump() {
    m_desk.pump();
    if (m_calls.isProgramEnding && m_calls.isProgramEnding())
        throw platform::Failure(u"プログラムを終了するため、アップロードを中止しました。"_s, {}, {},
                                u"次の起動後にもう一度アップロードしてください。"_s);
}

bool FtpUpload::fail(const QString& title, const QString& text, const QString& status) {
    m_reason = text;
    m_view.setTitleAndText(title, text);
    m_desk.status(status);
    return false;
}

bool FtpUpload::refused(const QString& title, const QString& text) {
    m_reason = text;
    m_view.setTitleAndText(title, text);
    addReason(showNetworkError(m_internet, m_desk));
    return false;
}

void FtpUpload::addReason(const QString& reason) {
    if (!m_reason.contains(reason))
        m_reason += u' ' + reason;
}

} // namespace velloria::publish
