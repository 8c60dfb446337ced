#include "publish/upload_files.h"

#include "core/files.h"
#include "core/path_names.h"
#include "platform/file_read.h"
#include "platform/file_write.h"

using namespace Qt::StringLiterals;

namespace velloria::publish {

UploadFiles::UploadFiles(const core::Session& session, registers::SiteFiles& siteFiles)
    : m_session(session)
    , m_siteFiles(siteFiles) {}

QString UploadFiles::listFile(const core::File& list) const {
    return platform::existingPath(list.in(m_session));
}

bool UploadFiles::listExists(const core::File& list) const {
    return platform::fileExists(list.in(m_session));
}

UploadList UploadFiles::readList(const core::File& list) const {
    // Read once: another program may replace the list at any time, and what counts as sent is what these rows name.
    QByteArray bytes = platform::readFile(listFile(list));
    std::vector<core::UploadRow> rows = core::uploadRows(bytes);
    return {std::move(bytes), std::move(rows)};
}

void UploadFiles::take(const core::UploadRow& row) {
    m_lastFolder = row.folder.isEmpty() ? QString(core::nativeSeparator()) : core::withSeparator(row.folder);
    m_lastName = row.name;
}

QString UploadFiles::localFile(const core::UploadRow& row) {
    take(row);
    return platform::existingPath(m_lastFolder + m_lastName);
}

std::optional<QString> UploadFiles::localPart(const QString& dataFolder, const QString& name) {
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
platform::FolderNames& UploadFiles::partsBelow(const QString& folder) {
    return m_parts
        .try_emplace(folder, platform::existingPath(core::files::kParts.below(folder)) + core::nativeSeparator())
        .first->second;
}

} // namespace velloria::publish
