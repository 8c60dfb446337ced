// The memos of a user, and the lock before them.
#pragma once

#include "core/run.h"
#include "store/memo_rescue.h"
#include "store/memo_store.h"

namespace velloria::memo {

/// What the window of the memo program works with. Each operation stands on its own and throws platform::Failure, with
/// all as it was; what a save overwrites or a removal removes goes to store::MemoRescue first.
///
/// The lock keeps a text from being read at a glance, as the user's password does for the diary; the file is not
/// encrypted. Where the user has no password nothing is locked.
class MemoBook {
public:
    explicit MemoBook(const core::Run& run);

    bool hasPassword() const;
    /// From here on locked memos show their texts; false for a wrong password.
    bool unlock(const QString& password);
    void lockAgain() { m_isUnlocked = false; }
    /// Whether the password has to be asked for before this memo's text is shown, changed or removed.
    bool isClosed(const store::Memo& memo) const { return store::mayBeLocked(memo) && !isOpen(); }
    /// Whether nothing is kept back: the password was given, or there is none.
    bool isOpen() const { return m_isUnlocked || !hasPassword(); }

    /// Whether the program asks for the password before it shows anything.
    bool asksAtStart() const { return m_store.isLockedAsAWhole() && hasPassword(); }
    bool isLockedAsAWhole() const { return m_store.isLockedAsAWhole(); }
    void setLockedAsAWhole(bool isLocked) const { m_store.setLockedAsAWhole(isLocked); }

    // What the optimisation of the diary has reset comes back before anything below; where it can't, a memo is locked.

    /// As MemoStore has it.
    std::vector<store::Memo> list(const QString& word, const std::optional<QString>& category) const;
    QStringList categories() const { return settled().categories(); }

    /// Nothing when it is there no more; without its text while it is closed.
    std::optional<store::Memo> load(qint64 row) const;
    /// The memo of that number that was saved last at that time.
    std::optional<store::Memo> find(std::optional<qint64> no, const QString& publishTime) const;
    /// Whether the password has to be asked for before a text is shown that a memo of this number once had.
    bool isClosed(std::optional<qint64> no) const;
    /// Whether what is removed or overwritten is kept at all.
    bool keepsWhatGoes() const { return store::MemoRescue(m_run).isOn(); }
    /// What was removed or overwritten, the newest first.
    std::vector<store::KeptMemo> kept() const { return store::MemoRescue::all(m_run); }
    store::MemoOutcome save(const store::Memo& memo, const std::optional<store::Memo>& seen) const;
    store::MemoOutcome remove(const store::Memo& seen) const;

private:
    const store::MemoStore& settled() const;

    core::Run m_run;
    store::MemoStore m_store;
    bool m_isUnlocked = false;
};

} // namespace velloria::memo
