// The three panes of the editor on their tabs, each with its undo.
#pragma once

#include "core/session.h"
#include "desktop/text_pane.h"
#include "editor/undo.h"

#include <QTabWidget>

#include <array>
#include <optional>

namespace velloria::editor {

/// The text is the panes' own; this knows which of them is in front and what they have shown since the last load.
class EntryPanes : public QObject {
    Q_OBJECT
public:
    static constexpr int kCount = 3;

    /// Contents, postscript, summary: a tab each, in this order. Belongs to the tabs.
    EntryPanes(QTabWidget& tabs, const std::array<desktop::TextPane*, kCount>& panes, const core::Session& session);

    desktop::TextPane& front() const;
    int frontIndex() const { return m_tabs.currentIndex(); }
    /// Brings a pane to the front with the focus.
    void bringForward(int index);

    void setEnabled(bool isOn);
    void commitComposition();
    /// Inserts in front of what is selected in the front pane, which stays.
    void insertAtCaret(const QString& text);

    /// Forgets all steps: what is shown now is the first one.
    void beginUndo();
    /// Makes what the pane shows a step of its own.
    void record(int index);
    /// Steps in the front pane; false when there was none to go. The last pane has no undo, only steps.
    bool undo();
    bool redo();

    /// What is needed for all of the tabs' words, which can do with less.
    int tabsWidth() const;

Q_SIGNALS:
    void changed(int index);
    void focused();
    void popUpWanted(const QPoint& globalPosition);
    void lineBreakWanted();
    void paragraphWanted();
    void undoWanted();
    void redoWanted();
    /// Sent after the drop: whoever drags waits for the drop's end.
    void imageDropped(const QString& path);
    void tabClicked(int index);

private:
    void prepareTabs();
    void connectPane(int index);
    bool restore(const std::optional<Snapshot>& snapshot);

    QTabWidget& m_tabs;
    const std::array<desktop::TextPane*, kCount> m_panes;
    std::array<UndoList, kCount> m_undo;
};

} // namespace velloria::editor
