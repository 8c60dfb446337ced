// A row of "FileDB" names its entry by day and number. Numbers change when an entry is deleted and the rows stay; only
// those of private entries follow, for otherwise their files would come to belong to public ones and go to the site.
#pragma once

#include "store/day_spellings.h"
#include "store/entry.h"

namespace velloria::store {

/// Works in the transaction of a connection, beside the change of "Contents" itself; entries without files are no
/// failure. A row whose day has another form counts by its date. Throws platform::Failure.
class EntryFiles {
public:
    explicit EntryFiles(const sqlite::Connection& connection);

    /// The rows of the day's private entries take their new numbers.
    void movePrivate(const QString& day, const QHash<int, int>& newNumbers);

    /// The rows of deleted private entries take the negative of their number, so that no entry which gets that number
    /// later makes their files public: a negative number says "of a private entry that is gone". Others stay as they
    /// are.
    void withhold(const std::vector<Entry>& deleted);

private:
    const sqlite::Connection& m_connection;
    DaySpellings m_days;
};

} // namespace velloria::store
