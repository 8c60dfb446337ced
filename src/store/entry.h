// The records of the diary database: plain values, which hold nothing and may be copied to any thread.
#pragma once

#include <QString>

namespace velloria::store {

/// One row of table Contents as it is stored. A missing value (NULL) is a null QString, which is not the same as "":
/// a page marks an empty postscript and passes over a missing one.
struct Entry {
    QString day;    ///< "yyyy/mm/dd", zero-padded: text order is date order
    int number = 1; ///< place within the day: 1..n
    QString title;
    QString contents; ///< HTML as it was typed
    QString extend;   ///< postscript
    QString excerpt;  ///< summary
    QString weather;  ///< a word of the weather list, "-" for none
    QString genre;
    QString publishTime;    ///< "yyyy/mm/dd hh:nn:ss", local time of the last save
    bool isPrivate = false; ///< stays off the site and the feeds; the preview shows it
    QString importMark;     ///< label of the import that made the row, "" when written by hand
};

/// The entry as editor and blog read it: weather "-", genre "一般", all other texts "" where a value is missing.
Entry withDefaults(Entry entry);

/// One row of table FileDB: a registered file that goes to the site beside the pages.
struct FileRow {
    qint64 id = 0;
    QString name; ///< bare name; the file lies in "DiaryParts"
    QString day;  ///< the owning day, or "ALL"
    int number = 0;
    bool isUploaded = false;
    bool isLogged = false;
};

/// One row of table LogDB.
struct LogRow {
    QString month; ///< "yyyy/mm"
    QString fileName;
};

/// Key of an entry.
struct EntryKey {
    QString day;
    int number = 0;
};

} // namespace velloria::store
