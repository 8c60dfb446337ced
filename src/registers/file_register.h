// Table FileDB: the files that go to the site beside the generated pages.
#pragma once

#include "store/entry.h"

#include <QStringList>

#include <vector>

namespace velloria::registers {

/// The day of a file that belongs to no day; its number is 0.
inline constexpr QLatin1StringView kAllDays("ALL");

/// The address of a registered file on a page.
QString pageAddress(const QString& name);

/// Where a registered file lies in the site: in "DiaryParts" beside the current pages, or in that of "DiaryLog".
enum class SiteSide { Current, Log };

/// Each operation opens its own connection. Names compare without regard to case, width and kana type. Throws
/// platform::Failure when the file or the engine refuses, or a value taken as a literal holds a double quote.
class FileRegister {
public:
    explicit FileRegister(QString databaseFile);

    /// All rows of a name. For this, CountFile and DeleteFile a missing name is an empty one.
    std::vector<store::FileRow> FindFile(const QString& name) const;
    /// All rows, by day, number and name.
    std::vector<store::FileRow> ListFiles() const;
    /// Removes the rows of this key. A missing number counts as 0; a null day is a missing one.
    void DeleteFile(const QString& name, const QString& day, int number) const;
    int CountFile(const QString& name) const;
    /// The files of a month, in the order of their rows; a day in another date form counts by its date.
    std::vector<store::FileRow> FilesOfMonth(const QString& month) const;
    /// The files of all months that have not gone up.
    std::vector<store::FileRow> CommonFilesToUpload() const;
    /// Rows between two days (compared as texts) that are not yet part of a log.
    std::vector<store::FileRow> FilesOfPeriod(const QString& firstDay, const QString& lastDay) const;
    /// The files of all months.
    std::vector<store::FileRow> CommonFiles() const;
    /// Rows of one side that have not gone up, in the order in which they were made.
    std::vector<store::FileRow> filesToUpload(SiteSide side) const;
    /// Rows of both sides that have gone up.
    std::vector<store::FileRow> filesSent() const;
    /// Names that begin with "dimage" on a day, last first.
    QStringList ImageFilesOfDay(const QString& day) const;

    /// Adds a row; the flags are false unless given.
    void addFile(const store::FileRow& row) const;
    /// Marks rows as part of a log that is still to go up, all of them or none.
    void markLogged(const std::vector<qint64>& ids) const;
    /// Marks a row as gone up; nothing when the row is gone.
    void markUploaded(qint64 id) const;
    /// Registers files for all months, all of them or none, but each once however many programs do so. On the side of
    /// the logs this is a second row, under which their copy of the file goes up.
    void addCommonFiles(const QStringList& names, SiteSide side) const;

private:
    QString m_file;
};

} // namespace velloria::registers
