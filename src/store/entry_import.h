// Entries that come from outside with a day, a title and a text, and nothing else.
#pragma once

#include "store/entry.h"

#include <functional>
#include <memory>

namespace velloria::store {

struct NewEntry {
    QString day;
    QString title;
    QString contents;
};

/// Writes such entries one after the other. Each stands on its own: when one is refused, which is thrown as
/// platform::Failure, those before it are in the diary. The disk gets them together every tenth of a second, since it
/// takes its time for each turn; a run that is killed leaves the first of them, and no half one.
///
///     EntryImport import(session.databaseFile());
///     import.add({day, title, contents}); // any number of them
///     import.settle();                    // before a question, and at the end: what is not settled is dropped
///
/// A day with a double quote fails and changes nothing. For one thread.
class EntryImport {
public:
    explicit EntryImport(QString file);
    ~EntryImport(); ///< drops what was not settled

    /// Whether the day has an entry.
    bool hasDay(const QString& day);

    /// Adds a row with the next number of its day. Every other field has the default of the table.
    void add(const NewEntry& entry);

    /// Gives the first row of the day this title and text, its other fields stay, and adds one when the row is gone.
    /// `overwritten` sees the row before. Settled when it returns; on failure the row is as it was.
    void overwrite(const NewEntry& entry, const std::function<void(const Entry&)>& overwritten);

    /// Puts everything so far on the disk and lets the file go: to be called before somebody is asked anything, and at
    /// the end.
    void settle();

    /// How many entries are on the disk, in the order in which they came.
    qsizetype stored() const { return m_stored; }

private:
    class Batch;

    Batch& batch();
    void storeSingly();

    QString m_file;
    std::unique_ptr<Batch> m_batch;
    qsizetype m_stored = 0;
};

} // namespace velloria::store
