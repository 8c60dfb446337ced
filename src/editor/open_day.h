// The day that is worked on, without a window: one of its entries is open, changed, saved, dropped.
#pragma once

#include "core/run.h"
#include "editor/draft.h"
#include "editor/edited_entry.h"
#include "store/diary_store.h"

#include <QObject>
#include <QStringList>
#include <QTimer>

#include <functional>
#include <optional>
#include <vector>

namespace velloria::editor {

enum class SaveOutcome { Saved, Refused };

/// Where the open entry is written: the editor, or a test.
class EntryView {
public:
    virtual ~EntryView() = default;

    /// What an input method is composing becomes text.
    virtual void commitComposition() = 0;
    /// The texts as they are typed; day, number and time are nobody's question here.
    virtual store::Entry fields() const = 0;
    /// Puts the result of `replacement` in the place of what is selected in the contents, which come to the front.
    virtual void replaceSelection(const std::function<QString(const QString& selected)>& replacement) = 0;
    /// The same in front of what is selected, which stays.
    virtual void insertAtCaret(const QString& text) = 0;
};

/// There is one, and it alone changes `EnterDay`. What opens an entry reads first and shows then: a diary that can't
/// be read, which is thrown, leaves the old entry whole, with what was unsaved in it. Unsaved changes are asked about
/// first. Who shows any of it listens; the view is asked for what is typed, and tells each change by `edited`. What
/// opens, saves or deletes an entry needs the view.
///
///     OpenDay day(run);
///     day.attach(view);              // the drafts of earlier runs are read
///     day.openDay(u"2004/05/06"_s);  // dayOpened, then entryShown
///     day.edited();                  // dirtyChanged; the draft follows two seconds after
///     day.save();                    // diaryChanged
class OpenDay : public QObject {
    Q_OBJECT
public:
    explicit OpenDay(const core::Run& run);

    /// A new editor, with no day open. It lives until it is detached.
    void attach(EntryView& view);
    /// The editor is gone, and what was unsaved in it with it; the draft stays.
    void detach();

    bool isOpen() const { return m_isOpen; }
    /// Whether the diary had the entry when it was shown.
    bool isStored() const { return m_edited.isStored(); }
    /// Whether there is something unsaved.
    bool isDirty() const { return m_isDirty; }
    /// The number that is shown and saved to, 0 without a day.
    int number() const { return m_number; }
    /// The numbers to pick from: 1 to this. The last one may be of an entry that was never saved.
    int count() const { return m_count; }
    /// Whether another year has an entry on this day.
    bool isInOtherYears() const { return m_isInOtherYears; }
    /// As "Genre.csv" had them when it was last read.
    const QStringList& genres() const { return m_genres; }

    /// The day's last entry; without entries, an empty first one.
    void openDay(const QString& day);
    /// One entry of the day; where it is open already it stays as it is. Without it the last one is shown, and the
    /// first status panel says so.
    void openEntry(const QString& day, int number);
    /// An empty entry after the last one of `EnterDay`.
    void openNewEntry();
    /// Another entry of the day that is open. The changes of a Yes are saved under this number.
    void openNumber(int number);

    /// Rows of these days have been changed from outside the editor. A shown entry without unsaved changes is read
    /// anew; one with such changes stays, and the first status panel says so.
    void daysChanged(const QStringList& days);

    /// Lets `replace` put another diary in the place of this one, of which it tells whether it has. Unsaved changes are
    /// asked about before, and those of a No kept in the rescue file. The open day is read anew; genres that the list
    /// lacks are added to it. What `replace` throws leaves the entry as it is, unsaved.
    bool replaceDiary(const std::function<bool()>& replace);

    /// The typed text is another one.
    void edited();
    /// The same by an undo, which makes no entry a changed one.
    void undone();

    /// Saves the entry. Refused, after its box, without a title; a failure is thrown, and the changes stay unsaved.
    SaveOutcome save();
    /// The open entry as it is typed now, saved or not. Nothing without a day.
    std::optional<store::Entry> typed();
    /// Removes the shown entry from the diary; then no day is open. Row and unsaved changes go to the rescue file.
    void deleteEntry();
    /// Back to no day. Nothing is asked, and the mark of unsaved changes is left to the entry that comes next.
    void close();
    /// Asks what is to become of unsaved changes before the editor closes. False when the save was refused.
    bool mayClose();

    void readGenres();
    /// Makes the list of genres anew from the diary.
    void MakeGenretxt();

    /// Writes the draft now if there is something unsaved. Says a failure on the status panel; throws nothing.
    void keepDraft();
    /// Whether a draft of an earlier run waits to be taken.
    bool hasDraft() const { return !m_found.empty(); }
    /// Shows the entry of the last such draft with the draft's text, unsaved.
    void restoreDraft();
    /// The clean end of a run: what was typed in it needs no draft any more. One that was never taken waits on.
    void dropDraft();

    /// What a maker writes into the contents. Without a day nothing is inserted, the first status panel says so, and
    /// the result is false.
    bool insertIntoContents(const std::function<QString(const QString& selected)>& replacement);
    bool insertAtCaretOfContents(const QString& text);

Q_SIGNALS:
    /// `EnterDay` is another one, or was read anew.
    void dayOpened(const QString& day, const store::DaysWithEntries& daysAround);
    /// This is to be shown under `number`; nothing for an empty entry with the first items of its boxes.
    void entryShown(const std::optional<store::Entry>& entry);
    /// The shown text stands under another number, or there are other numbers to pick from.
    void numbersChanged();
    /// Something is unsaved, or no longer.
    void dirtyChanged(bool isDirty);
    /// The entry that is shown already was asked for.
    void entryWanted();
    /// No day is open any more.
    void closed();
    /// Entries have come, gone, or become private or public.
    void diaryChanged();
    void genresChanged();

private:
    bool settleChanges();
    template <typename Read>
    auto readOrKeep(bool isDropped, Read read);
    void open(const QString& day, std::optional<int> number);
    void show(int count, int number, const std::optional<store::Entry>& row, bool isInOtherYears);
    void show(int count, int number, const std::optional<store::Entry>& row, bool isInOtherYears,
              const std::optional<store::Entry>& text);
    void become(bool isDirty);
    void becomeClean();
    store::Entry fields(int number) const;
    void tellMoved(int number);
    void addGenre(const QString& genre);
    bool canInsert();
    void writeDrafts(const std::vector<store::Entry>& drafts);
    void settleFoundDrafts(const store::Entry& saved);
    store::DiaryStore diary() const { return store::DiaryStore(m_run); }

    core::Run m_run;
    EntryView* m_view = nullptr;
    EditedEntry m_edited;
    bool m_isOpen = false;
    bool m_isDirty = false;
    bool m_isInOtherYears = false;
    int m_number = 0;
    int m_count = 0;
    QStringList m_genres;
    QTimer m_draftTimer;
    bool m_hasWrittenDraft = false;
    DraftFile m_drafts;
    std::vector<store::Entry> m_found; ///< drafts of earlier runs
};

} // namespace velloria::editor
