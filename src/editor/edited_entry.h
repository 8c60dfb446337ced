// The entry that the editor shows, as the diary knows it, and what becomes of it at a save.
#pragma once

#include "core/run.h"
#include "store/entry.h"

#include <functional>
#include <optional>
#include <vector>

namespace velloria::editor {

/// What a save did.
struct SaveResult {
    int number = 0;           ///< under which the entry stands now
    bool isMoved = false;     ///< another one than asked for: then it is the last of its day
    bool isOlderKept = false; ///< a row with another text was overwritten and went to the rescue file
};

/// Whatever the editor shows is told here, or a save could not know what it overwrites. In one thread.
///
///     edited.show(2, row);                          // what the diary has; nothing for a new entry
///     const SaveResult result = edited.save(typed); // from here on `typed` is what is shown
///     edited.follow(diary.LoadDay(typed.day));      // when others have changed the day
class EditedEntry {
public:
    explicit EditedEntry(const core::Run& run);

    /// The editor shows the row that stands under `number`; without one, an entry that was never saved.
    void show(int number, const std::optional<store::Entry>& row);

    /// The day's rows, highest number first, have been changed from outside: finds the one that is shown among them. An
    /// entry whose row is gone, or that never had one, becomes the day's next. Returns its number.
    int follow(const std::vector<store::Entry>& rows);

    /// The number that was shown last.
    int number() const { return m_number; }

    /// Whether the diary had a row for it when it was shown.
    bool isStored() const { return m_row.has_value(); }

    /// `publishTime` of the row that was shown, null without one.
    QString publishTime() const;

    /// Saves under entry.day and entry.number. That may be another number than the one shown: the row that stands
    /// there is overwritten, and goes to the rescue file first. A row that appeared under a number that was free when
    /// it was shown stays, and the entry takes the day's next number; one that another program has changed since goes
    /// to the rescue file. On failure, which is thrown, diary and rescue file are as they were.
    SaveResult save(const store::Entry& entry);

    /// Removes the row and renumbers its day. The row goes to the rescue file.
    void remove(const QString& day, int number);

    /// Puts a text that is about to be dropped unsaved into the rescue file. False when there was nothing to keep.
    bool keepDropped(const store::Entry& entry);

private:
    SaveResult write(const store::Entry& entry);
    bool mustKeep(const store::Entry& row, const store::Entry& entry) const;

    core::Run m_run;
    int m_number = 0;
    std::optional<store::Entry> m_row; ///< as it was when it was shown
};

} // namespace velloria::editor
