// The editor: one diary entry, its title, three panes of HTML text, and the boxes beside them.
#pragma once

#include "desktop/mdi_child.h"
#include "editor/forms/entry_boxes.h"
#include "editor/forms/entry_panes.h"
#include "editor/open_day.h"

#include <functional>
#include <memory>
#include <optional>

namespace Ui {
class frmContents;
}

namespace velloria::editor {

class EditorToolBar;
class Insertions;

/// Shows the open day and writes into it. What is decided about the day is decided there; here is what the controls do.
class frmContents : public desktop::MdiChild, private EntryView {
    Q_OBJECT
public:
    explicit frmContents(desktop::Context& context);
    ~frmContents() override;

    /// The day that it shows, for those who open another one: the editor comes with it.
    OpenDay& day() const { return m_day; }

    bool ChangeYesNo() const { return m_day.isDirty(); } ///< the entry has unsaved changes
    bool Loading = false;                                ///< the program fills the controls: their changes mean nothing

    void Contents_Initialize() { m_day.close(); }
    void Contents_Enable();
    void AddComboNumber(int count);

    SaveOutcome Btn1Click_ToolBar() { return m_day.save(); }
    void Btn2Click_ToolBar(); ///< inserts the browser's address
    void Btn3Click_ToolBar(); ///< the image tag maker
    /// The same with a picture, as if it had been chosen there.
    void openImageMaker(const QString& path);
    void Btn5Click_ToolBar(); ///< saves and shows the preview, the latter also when the save is refused

    void Cut() { m_panes->front().cut(); }
    void Copy() { m_panes->front().copy(); }
    void Paste();
    void InsertFromCB_Text();
    void InsertFromCB_Exchange();
    void mnuUndo_Click();
    void mnuRedo_Click();
    void InitUndoRedo() { m_panes->beginUndo(); }
    void picPrevDiaryExist_Click();

    /// Brings the window to the front with the caret in a pane, 0 to 2. Without a day nothing happens.
    void showPane(int index);

    /// Asks what is to become of unsaved changes before the window closes. False when window and program must stay: the
    /// save was refused or failed, which the user was told. Throws nothing.
    bool confirmClose();

    void commitComposition() override;

protected:
    bool mayHide() override { return confirmClose(); }
    QSize neededContents() const override;

private:
    store::Entry fields() const override;
    void replaceSelection(const std::function<QString(const QString& selected)>& replacement) override;
    void insertAtCaret(const QString& text) override;

    void prepareControls();
    void connectDay();
    void connectControls();
    void addFormKeys();
    void watchForLeaving();
    void run(const std::function<void()>& action) const;

    void showNoDay();
    void showEntry(const std::optional<store::Entry>& entry);
    void showNumbers();
    void fill(const store::Entry& entry);
    void setCaption();
    void setFieldsEnabled(bool isOn);
    void setOldDiary(bool exists);
    void setInsertable(bool isOn);
    void paneFocused();
    void goToPane(int index);
    bool openToday();

    void insert(const std::function<void(Insertions&)>& what);
    void insertTag(int index);

    OpenDay& m_day;
    std::unique_ptr<Ui::frmContents> ui;
    EditorToolBar* m_tools = nullptr;
    EntryBoxes* m_boxes = nullptr;
    EntryPanes* m_panes = nullptr;
    std::unique_ptr<Insertions> m_insertions;
    QObject m_watch; ///< ends before the window, which is told on its own way out that it is no longer the active one
};

} // namespace velloria::editor
