// Pictures of an import on their way to "DiaryParts".
#pragma once

#include "core/run.h"
#include "platform/directory.h"
#include "platform/file_write.h"

#include <QHash>
#include <QSet>
#include <QStringList>

namespace velloria::exchange {

/// Lives as long as the import: no other program registers files meanwhile, and what was copied goes again unless it is
/// kept. Throws platform::Failure.
///
///     PictureCopies copies(run);
///     const QString name = copies.place(file); // "DiaryParts" holds it under this name
///     addRows(name);
///     copies.keep();
class PictureCopies {
public:
    explicit PictureCopies(const core::Run& run);
    ~PictureCopies();
    PictureCopies(const PictureCopies&) = delete;
    PictureCopies& operator=(const PictureCopies&) = delete;

    /// The name under which the picture lies in "DiaryParts": its own, freed of what an address or the code page of the
    /// pages lacks, when nothing else has that name. A file there of the same content is the picture itself and not
    /// copied again; another one, or a registered name without a file, makes it take a number.
    QString place(const QString& file);

    /// All copies stay.
    void keep() { m_copied.clear(); }

private:
    bool isTaken(const QString& name) const;
    bool hasOtherSize(const QString& name, qint64 size) const;
    bool holds(const QString& name, const QString& file);

    QString m_folder; ///< ends in its separator
    platform::FolderLock m_lock;
    platform::FolderNames m_present;
    QSet<QString> m_registered; ///< in the form in which names compare
    QHash<QString, QString> m_placed;
    QHash<QString, qint64> m_sizes; ///< of files there: a thousand pictures of one name are not opened for each other
    QStringList m_copied;
};

} // namespace velloria::exchange
