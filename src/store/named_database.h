// A database that somebody names: a backup, perhaps the only one.
#pragma once

#include "platform/failure.h"

#include <QString>
#include <QTemporaryDir>

#include <optional>

namespace velloria::store {

/// What the engine may leave beside a database.
inline constexpr QLatin1StringView kJournals[] = {QLatin1StringView("-journal"), QLatin1StringView("-wal"),
                                                  QLatin1StringView("-shm")};

/// It has its own files beside the end of a link.
QString fileBeside(const QString& database, QLatin1StringView ending);

/// A journal that was left beside a file which gets another one's bytes would be rolled into these. Throws
/// platform::Failure.
void removeJournals(const QString& database);

/// A database, damaged perhaps, and what the engine left beside it: together they may still give somebody their
/// entries. Throws platform::Failure.
void copyAsItLies(const QString& database, const QString& copy);

/// Reading leaves the named file and what lies beside it as they are. The engine would roll a journal back and put a
/// log's entries into the file: where there is one, it gets a copy of them, which lives as long as this. A journal of a
/// program at work is left alone by the engine and needs no copy.
///
///     const NamedDatabase named(backup);
///     const qint16 version = named.told(GetDBVersion);
class NamedDatabase {
public:
    /// Throws platform::Failure.
    explicit NamedDatabase(const QString& file);

    /// Where to read it.
    const QString& path() const { return m_path; }

    /// What `read` says of path(); what it throws speaks of the named file.
    template <typename Read>
    auto told(Read read) const {
        try {
            return read(m_path);
        } catch (const platform::Failure& failure) {
            if (failure.file() != m_path)
                throw;
            throw platform::Failure(failure.whatFailed(), m_file, failure.reason(), failure.advice());
        }
    }

private:
    QString m_file;
    QString m_path;
    std::optional<QTemporaryDir> m_folder;
};

} // namespace velloria::store
