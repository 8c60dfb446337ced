// The memos to choose from: the left side of the window.
#pragma once

#include "memo/forms/memo_list_model.h"
#include "memo/memo_book.h"

#include <QTimer>

#include <functional>

namespace Ui {
class frmMemo;
}

namespace velloria::memo {

class MemoList : public QObject {
    Q_OBJECT
public:
    /// Over the controls of the window, which outlive this, and so does the book. What the list reads by itself, after
    /// a search for example, runs within `guard`, the boundary of a command.
    MemoList(Ui::frmMemo& ui, const MemoBook& book, const Words& words,
             std::function<void(const std::function<void()>&)> guard, QObject* parent);

    /// Categories and memos as the diary has them now; what is chosen stays.
    void refresh();
    void refreshMemos();
    /// Marks the memo that is stored there, 0 for none, and opens nothing.
    void select(qint64 storedRow);
    /// 0 for none.
    qint64 selected() const;
    int count() const { return m_model.rowCount(); }

Q_SIGNALS:
    /// Somebody has chosen a memo; select() shows another one as chosen when it is not to be opened.
    void picked(qint64 storedRow);
    /// The list was read anew.
    void read();

private:
    std::optional<QString> category() const;
    void fillCategories();

    Ui::frmMemo& m_ui;
    const MemoBook& m_book;
    Words m_words;
    MemoListModel m_model;
    QTimer m_searchDelay;
    qint64 m_shown = 0; ///< what select() was told
    bool m_isSelecting = false;
};

} // namespace velloria::memo
