// The memo that somebody reads or writes: the right side of the window.
#pragma once

#include "store/memo.h"

#include <QObject>

namespace Ui {
class frmMemo;
}

namespace velloria::memo {

/// What is not changed there stays what it is in the diary, to the letter: line ends, missing values, line breaks in a
/// title.
class MemoSheet : public QObject {
    Q_OBJECT
public:
    /// Over the controls of the window, which outlive this.
    MemoSheet(Ui::frmMemo& ui, QObject* parent);

    /// Shows a memo as it is stored, or an empty sheet; a closed one without its text, and for reading alone.
    void show(const std::optional<store::Memo>& seen, bool isClosed);
    /// Puts what was typed before over it.
    void type(const store::Memo& draft);
    /// What stands there is what is stored now.
    void setSaved(const store::Memo& saved);

    const std::optional<store::Memo>& seen() const { return m_seen; }
    bool isClosed() const { return m_isClosed; }
    bool isModified() const { return m_isModified; }
    /// What a save would store.
    store::Memo typed() const;
    /// Whether there is nothing in it at all.
    bool isEmpty() const;
    /// Makes what an input method is composing part of the texts.
    void commitCompositions();

Q_SIGNALS:
    void modified();
    /// After each change of isModified, and of what is shown.
    void changed();

private:
    void setModified(bool isModified);
    void fill(const store::Memo& memo);
    void noteChange(bool& field);
    void showMenu(const QPoint& at);

    Ui::frmMemo& m_ui;
    std::optional<store::Memo> m_seen;
    bool m_isClosed = false;
    bool m_isModified = false;
    bool m_isFilling = false;
    bool m_isTitleChanged = false;
    bool m_isCategoryChanged = false;
    bool m_isTextChanged = false;
};

} // namespace velloria::memo
