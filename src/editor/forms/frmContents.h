// The editor: one diary entry, its title, three panes of HTML text, and the boxes beside them.
#pragma once

#include "desktop/icons.h"
#include "desktop/mdi_child.h"
#include "editor/draft.h"
#include "editor/edited_entry.h"
#include "editor/tags.h"
#include "editor/undo.h"
#include "exchange/clipboard_import.h"
#include "store/diary_store.h"

#include <QTimer>

#include <array>
#include <functional>
#include <memory>
#include <optional>
#include <vector>

class QToolButton;

namespace Ui {
class frmContents;
}

namespace velloria::desktop {
class TextPane;
} // namespace velloria::desktop

namespace velloria::editor {

enum class SaveOutcome { Saved, Refused };

class frmContents : public desktop::MdiChild {
    Q_OBJECT
public:
    explicit frmContents(desktop::Context& context);
    ~frmContents() override;

    bool ChangeYesNo = false; ///< the entry has unsaved changes
    bool Loading = false;     ///< the program fills the controls: their changes mean nothing
    QString FindDay;          ///< handed over by the find window
    QString Num;              ///< handed over by the find window

    void Contents_Initialize();
    void Contents_Enable();
    /// Sets `exists` to whether another year has an entry on this day.
    void OldDiaryChecker(const QString& day, bool& exists) const;
    void AddComboNumber(int count);
    void MakeGenretxt();

    /// Saves the entry. Refused, behind its box, without a title; a failure is thrown, and text and dirty mark stay.
    SaveOutcome Btn1Click_ToolBar();
    void Btn2Click_ToolBar(); ///< inserts the browser's address
    void Btn3Click_ToolBar(); ///< the image tag maker
    /// The same with a picture, as if it had been chosen there.
    void openImageMaker(const QString& path);
    void Btn5Click_ToolBar(); ///< saves and shows the preview, the latter also when the save is refused

    void Cut();
    void Copy();
    void Paste();
    void InsertFromCB_Text();
    void InsertFromCB_Exchange();
    void mnuUndo_Click();
    void mnuRedo_Click();
    void InitUndoRedo();
    void picPrevDiaryExist_Click();

    /// Whether a day is shown.
    bool hasDay() const { return m_hasDay; }
    /// Brings the window to the front with the caret in a pane, 0 to 2. Without a day nothing happens.
    void showPane(int index);
    /// The number that is shown, 0 without a day.
    int shownNumber() const;

    /// Reads a day and shows its last entry; without entries, an empty first one. The user decides on unsaved changes
    /// first. `EnterDay` and the calendar's value follow. On failure, which is thrown, the day that is shown stays,
    /// with what was unsaved in it.
    void openDay(const QString& day);
    /// The same with one entry of the day; where it is shown already it stays as it is. Without such an entry the last
    /// one of the day is shown, and the first status panel says so.
    void openEntry(const QString& day, int number);
    /// The same with an empty entry behind the last one of `EnterDay`.
    void openNewEntry();
    /// Removes the shown entry from the diary and empties the editor; row and unsaved changes go to the rescue file.
    void deleteEntry(const QString& day);

    /// Puts a text into `txtContents`, whatever pane is in front: tab 1 comes to the front with the focus, and the
    /// selected text goes to `replacement`, whose result takes its place. Without a day nothing is inserted, the first
    /// status panel says so, and the result is false.
    bool insertIntoContents(const std::function<QString(const QString& selected)>& replacement);
    /// The same in front of what is selected, which stays.
    bool insertAtCaretOfContents(const QString& text);

    /// Rows of these days have been changed from outside the editor. A shown entry without unsaved changes is read
    /// anew; one with such changes stays, and the first status panel says so.
    void daysChanged(const QStringList& days);

    /// Asks what is to become of unsaved changes before the window closes. False when window and program must stay: the
    /// save was refused or failed, which the user was told. Throws nothing.
    bool confirmClose();

    /// What an input method is composing becomes text.
    void commitComposition();

    /// Writes the draft now if there is something unsaved. Says a failure on the status panel; throws nothing.
    void keepDraft();
    /// Whether a draft of an earlier run waits to be taken.
    bool hasDraft() const { return !m_found.empty(); }
    /// Shows the entry of the last such draft with the draft's text, unsaved.
    void restoreDraft();
    /// The clean end of a run: what was typed in it needs no draft any more. One that was never taken waits on.
    void dropDraft();

protected:
    bool mayHide() override { return confirmClose(); }
    QSize neededContents() const override;

private:
    /// A day as it was read, before anything of it is shown.
    struct Day {
        std::vector<store::Entry> rows; ///< highest number first
        bool hasOldDiary = false;
    };

    // The window and its controls: frmContents.cpp
    void makeToolBar();
    QToolButton* addTool(const QString& key, desktop::IconName icon, const QString& tip, const QString& keys = {});
    void prepareControls();
    void fillLists();
    void connectControls();
    void connectPane(int index);
    void addFormKeys();
    void run(const std::function<void()>& action) const;
    void controlChanged();
    void paneChanged(int index);
    void paneFocused();
    void setSavable(bool isOn);
    void setInsertable(bool isOn);
    void setFieldsEnabled(bool isOn);
    void setOldDiary(bool exists);
    void focusTitle();
    bool openToday();
    void goToPane(int index);
    desktop::TextPane& pane() const;

    // What is shown: frmContents_load.cpp
    bool settleChanges();
    template <typename Read>
    auto readOrKeep(bool isDropped, Read read);
    Day readDay(const QString& day) const;
    void pickNumber();
    void selectNumber(int number);
    void openRow(const QString& day, std::optional<int> number);
    void showEntry(int count, int number, const std::optional<store::Entry>& row, bool hasOldDiary);
    void enable(bool hasOldDiary);
    void setCaption();
    void fill(const store::Entry& entry);
    void fillRow(const std::optional<store::Entry>& row);
    store::Entry fields(int number) const;
    void becomeClean();
    void finishLoad();
    void readGenreList();
    store::DiaryStore diary() const;

    // What is done with it: frmContents_commands.cpp
    bool bringContentsForward();
    static void insertAtCaret(desktop::TextPane& pane, const QString& text);
    void insertFromClipboard(exchange::ParagraphTags tags);
    void tellMoved(int number);
    void addGenre();
    void insertTag(int index);
    void openMaker(TagMaker maker);
    void restore(const std::optional<Snapshot>& snapshot);
    void writeDrafts(const std::vector<store::Entry>& drafts);
    void forgetDraft();
    void settleFoundDrafts(const store::Entry& saved);

    std::unique_ptr<Ui::frmContents> ui;
    QToolButton* m_save = nullptr;
    QToolButton* m_saveAndPreview = nullptr;
    std::array<QToolButton*, 3> m_insert{};
    std::array<desktop::TextPane*, 3> m_panes{};
    std::array<UndoList, 3> m_undo;
    EditedEntry m_edited;
    bool m_hasDay = false;
    QTimer m_draftTimer;
    QObject m_watch; ///< ends before the window, which is told on its own way out that it is no longer the active one
    bool m_hasWrittenDraft = false;
    DraftFile m_drafts;
    std::vector<store::Entry> m_found; ///< drafts of earlier runs
};

} // namespace velloria::editor
