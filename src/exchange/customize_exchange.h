// Customize sets as single files, to keep or to hand to other people. The text pieces that a set names stay behind.
#pragma once

#include "core/run.h"

#include <optional>

namespace velloria::exchange {

enum class CustomizeFormat {
    Ini, ///< the whole set
    Cst, ///< for others: without what says something of its user
};

/// Who signs an exported set.
struct CustomizeAuthor {
    QString name;
    QString url;
    QString email;
};

/// Both ways throw platform::Failure when the machine refuses; each file is then the old one or the new one.
class CustomizeExchange {
public:
    /// `path` answers the file dialog where it is known already; "" is a cancel.
    explicit CustomizeExchange(const core::Run& run, std::optional<QString> path = std::nullopt);

    /// Copies a file that somebody chooses, byte by byte, beside the set that is selected, which stays the one
    /// selected. A name that is taken there is asked for once more. False after a cancel and for a name that can't be
    /// had.
    bool ImportCustomize();
    /// The command: the import, and a word on the status panel of how it went.
    bool importCommand();
    /// The file that came in, behind an import.
    const QString& importedFile() const { return m_imported; }
    /// What must be known of that file; "" when it is a set like any other.
    QString remark() const;

    /// Writes the set to a file that somebody chooses, with the author's name below it. False after a cancel. Who does
    /// not want the file there replaced gets it with no more than the signature, and for others the blanks, written
    /// into it, which is a success. The set's own file, also behind a symbolic link, gets the signature alone.
    bool ExportCustomize(const QString& setName, CustomizeFormat format, const CustomizeAuthor& author);
    /// The same as a command.
    bool exportCommand(const QString& setName, CustomizeFormat format, const CustomizeAuthor& author);
    /// The file that was written, behind an export.
    const QString& exportedFile() const { return m_exported; }

private:
    QString setFolder() const;
    std::optional<QString> chosenSource() const;
    std::optional<QString> targetOfImport(const QString& source) const;
    std::optional<QString> chosenTarget(CustomizeFormat format) const;
    void requireFreeName(const QString& target) const;

    core::Run m_run;
    std::optional<QString> m_path;
    QString m_imported;
    QString m_exported;
};

} // namespace velloria::exchange
