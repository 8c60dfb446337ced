// The lists of files for the web server: "upload.tmp", "uplogtmp.tmp" and "uploadlog.tmp" in the user's folder.
//
// A row is the local folder without its last separator, a comma, and the file name; every name reads back as it is on
// disk. Two programs may work on a list at once: each change reads and replaces it under the FolderLock of its folder
// (never call one while holding that), and touches no row but its own. Throws platform::Failure; the list is then as it
// was.
#pragma once

#include <QString>

#include <optional>
#include <vector>

namespace velloria::core {

struct UploadRow {
    QString folder; ///< without its last separator
    QString name;
};

/// Replaces the list.
void writeUploadList(const QString& file, const std::vector<UploadRow>& rows);

/// Appends to the list; what stands there already stays byte for byte.
void appendUploadList(const QString& file, const std::vector<UploadRow>& rows);

/// Leaves one row a file, the first.
void removeRepeatedRows(const QString& file);

/// Gives the list its earlier bytes back, or removes it when it was not there, unless it is no more what writing `rows`
/// made of it.
void restoreUploadList(const QString& file, const std::vector<UploadRow>& rows,
                       const std::optional<QByteArray>& before);

/// Removes the list unless its bytes are others by now.
void removeUploadList(const QString& file, const QByteArray& bytes);

/// Two fields a line: white space in front of a field is skipped, a field may stand in double quotes. A missing file
/// has no rows; a further field of a line is passed over. Throws Failure for a list that can't be read.
std::vector<UploadRow> readUploadList(const QString& file);

/// The same of the bytes of a list.
std::vector<UploadRow> uploadRows(const QByteArray& bytes);

} // namespace velloria::core
