// The lists of files for the web server: "upload.tmp", "uplogtmp.tmp" and "uploadlog.tmp" in the user's folder.
//
// A row is the local folder without its last separator, a comma, and the file name; every name reads back as it is on
// disk.
#pragma once

#include <QString>

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

/// Two fields a line: white space in front of a field is skipped, a field may stand in double quotes. A missing file
/// has no rows; a further field of a line is passed over.
std::vector<UploadRow> readUploadList(const QString& file);

} // namespace velloria::core
