// The window of the memo program.
#pragma once

#include "memo/memo_book.h"
#include "memo/memo_draft.h"
#include "memo/words.h"

#include <QMainWindow>
#include <QTimer>

#include <functional>
#include <memory>

namespace Ui {
class frmMemo;
}

namespace velloria::memo {

class MemoList;
class MemoSheet;

/// Memos on the left, the one that is worked on at the right. Whatever leaves a memo asks about what is not saved.
class frmMemo : public QMainWindow {
    Q_OBJECT
public:
    explicit frmMemo(const core::Run& run);
    ~frmMemo() override;

    /// What a run has to say at its start: the password that the diary may want before anything is shown, and a draft
    /// of an earlier run. False when the password was not given.
    bool begin();

    /// Of what is not saved, for the next run. A refusal of the machine is shown in the status bar.
    void keepDraft();
    void keepPlace() const;

    void Btn_New_Click();
    /// False when it could not be saved, or was called off.
    bool Btn_Save_Click();
    void Btn_Delete_Click();

    void setStatus(const QString& text);

protected:
    void closeEvent(QCloseEvent* event) override;

private:
    bool run(const std::function<void()>& action) const;
    void connectControls();
    void refresh();
    qint64 shownRow() const;
    void openPicked(qint64 storedRow);
    void open(qint64 storedRow);
    bool leaveMemo();
    bool save(const std::optional<store::Memo>& seen);
    bool unlock();
    void showState();
    void showNew();
    void Btn_Unlock_Click();
    void chkLock_Click(bool isLocked);
    void askAtStart(bool isWanted);
    void lockAgain();
    void takeDraftOver();
    Typed typedDraft() const;
    void showDraft(const Typed& draft);
    void putBack();
    void inform(const QString& japanese, const QString& english) const;

    core::Run m_run;
    Words m_words;
    std::unique_ptr<Ui::frmMemo> ui;
    MemoBook m_book;
    MemoDraft m_draft;
    MemoSheet* m_sheet;
    MemoList* m_list;
    QTimer m_draftDelay;
    bool m_isAsking = false; ///< a question about the memo is open: no other one begins
};

} // namespace velloria::memo
