// What an upload takes from the user's disk: the lists of what goes up, and the files that they name.
#pragma once

#include "core/files.h"
#include "core/session.h"
#include "core/upload_list.h"
#include "platform/directory.h"
#include "registers/site_files.h"

#include <QByteArray>

#include <map>
#include <optional>
#include <vector>

namespace velloria::publish {

struct UploadList {
    QByteArray bytes; ///< as it was when its rows were read
    std::vector<core::UploadRow> rows;
};

/// The files of one run. Registered files are looked for below the folder of the last row that was taken, so pages come
/// before them. What the disk refuses, a missing list too, is thrown as platform::Failure.
///
///     for (const core::UploadRow& row : files.readList(core::files::kPageList).rows)
///         send(files.localFile(row), row.name);
///     const std::optional<QString> picture = files.localPart(session.DataPath, name);
class UploadFiles {
public:
    /// Both outlive this; `siteFiles` is asked which registered files may go.
    UploadFiles(const core::Session& session, registers::SiteFiles& siteFiles);

    /// The full path of a list such as "upload.tmp".
    QString listFile(const core::File& list) const;
    bool listExists(const core::File& list) const;
    UploadList readList(const core::File& list) const;

    /// Makes the row the last one taken.
    void take(const core::UploadRow& row);
    /// The same, and its file on the user's disk.
    QString localFile(const core::UploadRow& row);
    const QString& lastName() const { return m_lastName; }

    /// A registered file below the folder of the last row; one that is missing there is first copied from
    /// `dataFolder`. Nothing for a file that may not go.
    std::optional<QString> localPart(const QString& dataFolder, const QString& name);

private:
    platform::FolderNames& partsBelow(const QString& folder);

    const core::Session& m_session;
    registers::SiteFiles& m_siteFiles;
    std::map<QString, platform::FolderNames> m_parts; ///< "DiaryParts" below each folder that was asked for
    QString m_lastFolder;                             ///< of the last row taken, with its separator
    QString m_lastName;
};

} // namespace velloria::publish
