// Undo and redo of one pane: its text and caret at each change.
#pragma once

#include <QString>

#include <optional>
#include <vector>

namespace velloria::editor {

/// What a pane shows at one moment.
struct Snapshot {
    QString text;
    int caret = 0; ///< beginning of the selection
};

/// Any step that is not there is nothing, not a failure. In one thread.
///
///     list.reset(loaded, 0);
///     list.record(typed, 4);
///     const std::optional<Snapshot> shown = list.undo(); // the loaded one; showing it must not be recorded
///
/// The snapshots since the last load, numbered from 1. None is ever dropped: one that is made after an undo goes on
/// top of the list, and those that were undone stay below it. Kept are the differences alone, so that thousands of
/// changes of a long text take little room.
class UndoList {
public:
    UndoList() { reset({}, 0); }

    /// Forgets all and begins anew with this one.
    void reset(const QString& text, int caret);

    /// Puts a snapshot on top; it is the one now shown.
    void record(const QString& text, int caret);

    /// The snapshot below the one now shown; nothing at the first.
    std::optional<Snapshot> undo();

    /// The snapshot above the one now shown; nothing at the last.
    std::optional<Snapshot> redo();

    int count() const { return int(m_steps.size()); }
    int position() const { return m_position; }

private:
    /// A snapshot as the change of an earlier one, that which was shown when it was made.
    struct Step {
        int base; ///< number of that one; 0 for the first snapshot of the list
        qsizetype at;
        QString removed;
        QString inserted;
        int caret;
    };

    const Step& step(int number) const { return m_steps[std::size_t(number - 1)]; }
    Snapshot show(int number);

    std::vector<Step> m_steps;
    int m_position = 1;
    QString m_text; ///< of the snapshot now shown
};

} // namespace velloria::editor
