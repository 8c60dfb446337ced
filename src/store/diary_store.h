// The diary database: entries by day and number, one SQLite file a user.
#pragma once

#include "core/run.h"
#include "store/entry.h"

#include <QStringList>

#include <functional>
#include <optional>
#include <vector>

namespace velloria::store {

namespace sqlite {
class Connection;
}

enum class Entries { All, Public };
struct EntryLine;

enum class SortDirection { Ascending, Descending };
enum class PublishTime { Now, AsGiven };

/// A period of the export: between two days, one month, or one day.
struct Period {
    enum class Kind { Between, Month, Day } kind = Kind::Day;
    QString first; ///< first day, "yyyy/mm/", or the day
    QString last;  ///< last day of Kind::Between
};

/// What a search asks for; Like wildcards work in both. The word is looked for in title and contents.
struct FindQuery {
    QString word;
    std::optional<QString> genre;
};

/// Days that have entries, ascending.
struct DaysWithEntries {
    QStringList all;
    QStringList withPublic; ///< of these, the ones with a public entry
};

/// A day as editor and calendar show it.
struct DayPicture {
    std::vector<Entry> entries;   ///< highest number first
    bool isInOtherYears = false;  ///< whether another year has an entry on this month and day
    DaysWithEntries daysAround{}; ///< of its month and the two beside it
};

/// An entry that is to stand behind those of its day, and the registered files that belong to it.
struct Addition {
    Entry entry;            ///< its number counts for nothing
    QStringList files = {}; ///< bare names, as they lie in "DiaryParts"
};

/// Sees all rows that a change replaces or deletes, in their order, before the change reaches the disk; not called when
/// there are none. What it throws takes the change back.
using BeforeLoss = std::function<void(const std::vector<Entry>&)>;

/// The one door to table Contents. Each operation opens its own connection, works in one transaction and closes, so no
/// lock outlives a call, and any thread may call. What is not there is no failure: a day without entries is an empty
/// list, and nothing is deleted. When the file or the engine refuses, platform::Failure is thrown and the diary is as
/// it was. What a change destroys is kept first:
///
///     RescueFile rescue(run);
///     DiaryStore(run).DeleteEntry(day, number, [&](const std::vector<Entry>& rows) { rescue.keep(rows, u"削除"_s); });
///
/// Text compares without regard to case, width and kana type. A day or month given with Like wildcards works as one;
/// a value with a double quote fails the operations that take it as a literal, and changes nothing.
class DiaryStore {
public:
    /// The diary of the run.
    explicit DiaryStore(const core::Run& run);
    /// `clock` stamps what is saved and outlives the store.
    DiaryStore(QString file, const platform::Clock& clock);

    /// Highest number first. A day without entries gives an empty list, not a failure.
    std::vector<Entry> LoadDay(const QString& day) const;
    std::optional<Entry> LoadEntry(const QString& day, int number) const;

    /// Saves all entries in one transaction, in order: each sets every field of the row of its day and number but the
    /// import mark, and adds the row when it is not there. A number of 0 takes the next one of its day; days whose
    /// numbers are not 1..n at the end are renumbered. Returns the keys under which the entries stand.
    std::vector<EntryKey> saveEntries(std::vector<Entry> entries, PublishTime publishTime,
                                      const BeforeLoss& overwritten) const;

    /// The same for lines. One of the rescue file brings its text back and destroys none: a number that is taken, in
    /// the diary or by an earlier line, becomes the next one of its day.
    std::vector<EntryKey> saveLines(std::vector<EntryLine> lines, PublishTime publishTime,
                                    const BeforeLoss& overwritten) const;

    /// Adds all of them, with their rows in the register of files, in one transaction and in order: each gets the next
    /// number of its day and stays as it is given, with time and import mark. No row is overwritten. Returns the keys
    /// under which the entries stand.
    std::vector<EntryKey> addEntries(std::vector<Addition> additions) const;

    /// Removes the row if it is there and renumbers the day from 1: anchors of later entries of the day change.
    void DeleteEntry(const QString& day, int number, const BeforeLoss& deleted = {}) const;

    /// Removes all rows of an import and renumbers their days.
    void DeleteImportBatch(const QString& mark, const BeforeLoss& deleted = {}) const;

    /// Gives a day whose numbers are not 1..n those numbers, in the order of number and row.
    void repairDay(const QString& day) const;

    /// Marks of imports, last first, without "".
    QStringList ListImportBatches() const;
    /// Genres in text order without "一般" and missing ones; spellings that compare equal count once, as first written.
    QStringList ListGenres() const;

    /// Number of entries on this month and day in other years, private ones too.
    int SameDayInOtherYears(const QString& day) const;
    /// These entries, newest year first, within a day lowest number first.
    std::vector<Entry> SameDayEntries(const QString& day) const;

    /// What a click on a day shows, with one connection. A text that is no day key gives no days around it, and neither
    /// do days that can't be read.
    DayPicture pictureOf(const QString& day) const;
    /// The days of a month ("yyyy/mm") and of the two beside it, as a page of the calendar shows them.
    DaysWithEntries daysAround(const QString& month) const;

    /// Days with entries in a month, ascending.
    QStringList DaysOfMonth(const QString& month) const;
    QStringList PublicDaysOfMonth(const QString& month) const;
    /// All columns, newest day first, within a day highest number first.
    std::vector<Entry> EntriesOfMonth(const QString& month) const;
    std::vector<Entry> PublicEntriesOfMonth(const QString& month) const;
    /// The same order without the texts; `month` may be any beginning of a day key, "" for all days.
    std::vector<Entry> EntryListOfMonth(const QString& month, Entries entries = Entries::All) const;
    std::vector<Entry> EntriesForFeed(const QString& month) const;

    /// The newest day with a public entry; nothing when there is none.
    std::optional<QString> LatestPublicDay() const;
    /// Months with public or private entries, ascending.
    QStringList months() const;

    /// One entry after the other, so that no diary is too large, newest day first and lowest number first: without
    /// summary and import mark.
    void FindEntries(const FindQuery& query, const std::function<void(Entry&)>& each) const;
    /// One entry after the other, so that no diary is too large, without postscript, summary and import mark. `each`
    /// also gets how many there are; what it throws ends the reading.
    void ExportEntries(const Period& period, SortDirection direction,
                       const std::function<void(Entry&, int count)>& each) const;
    /// Newest day first, within a day lowest number first.
    std::vector<EntryKey> AllEntryKeys() const;

    const QString& file() const { return m_file; }

private:
    QString present() const;

    QString m_file;
    const platform::Clock& m_clock;
};

} // namespace velloria::store
