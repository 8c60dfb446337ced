// Folders as a Windows disk shows them: names without regard to case.
#pragma once

#include <QHash>
#include <QString>
#include <QStringList>

#include <optional>

namespace velloria::platform {

enum class Listed { Files, FilesAndFolders };

/// Names in `folder` that match `pattern` ("*.ini", "*"), by name without regard to case, subfolders among the files.
/// A folder that can't be read is empty.
QStringList listFolder(const QString& folder, const QString& pattern, Listed listed = Listed::Files);

/// `path` if it exists; else the one path that differs from it alone in case, or in a character that settings files
/// give back as another one; else `path` again. Folders brought from a Windows disk may spell the program's own names
/// in any case.
QString existingPath(const QString& path);

/// Whether existingPath leads to a file.
bool fileExists(const QString& path);

/// One folder that is asked for many names: it is listed once, and only when a name is not there as it is spelt.
class FolderNames {
public:
    /// `folder` ends in its separator.
    explicit FolderNames(QString folder);

    /// existingPath of a bare name in the folder.
    QString path(const QString& name) const;
    bool hasFile(const QString& name) const;
    /// Tells that the file has come since.
    void add(const QString& name);

private:
    void count(const QString& name) const;

    QString m_folder;
    mutable std::optional<QHash<QString, QString>> m_names; ///< by each form; "" where more than one has it
};

} // namespace velloria::platform
