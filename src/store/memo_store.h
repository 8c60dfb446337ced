// The memos of the diary database, which the memo program works on.
#pragma once

#include "core/run.h"
#include "store/memo.h"

#include <QStringList>

#include <functional>
#include <vector>

namespace velloria::store {

/// Which memos a list shows.
struct MemoQuery {
    QString word;                    ///< in title, category and text; "" for all. No sign in it is a wildcard.
    std::optional<QString> category; ///< nothing for all, "" for those without one
    bool findsInLocked = false;      ///< whether the texts of those that may be locked are searched too
};

/// What became of a save or a removal.
struct MemoOutcome {
    enum class Kind {
        Done,
        Changed, ///< another program has changed the memo since it was read: nothing was done
        Gone     ///< or removed it: nothing was done
    } kind = Kind::Done;
    Memo memo; ///< Done: as it stands now, without what was removed. Changed: what the other program left.
};

/// Sees the memo that a change replaces or removes before the change reaches the disk. What it throws takes the change
/// back.
using BeforeMemoLoss = std::function<void(const Memo&)>;

/// The one door to table Memo. As with store::DiaryStore each operation opens its own connection, works in one
/// transaction and closes; when the file or the engine refuses, platform::Failure is thrown and all is as it was. Text
/// compares without regard to case, width and kana type.
class MemoStore {
public:
    explicit MemoStore(const core::Run& run);

    /// Newest first, without their texts; those without a time come last.
    std::vector<Memo> list(const MemoQuery& query) const;
    /// Each once, in text order, without "" and missing ones.
    QStringList categories() const;
    std::optional<Memo> load(qint64 row) const;

    /// Sets all fields of `memo` but the row, and stamps it with the present time. `seen` is what it was made from,
    /// nothing for a new one, which gets the next number. What the optimisation of the diary has reset since, or moved
    /// to another row, is no change by somebody else.
    MemoOutcome save(const Memo& memo, const std::optional<Memo>& seen, const BeforeMemoLoss& overwritten) const;
    MemoOutcome remove(const Memo& seen, const BeforeMemoLoss& removed) const;

    /// Field IsMemoPass of the diary: whether the memo program asks for the password at its start.
    bool isLockedAsAWhole() const;
    void setLockedAsAWhole(bool isLocked) const;

    /// Gives each memo without a number one; hasReset tells whether there is any. The optimisation of the diary resets
    /// number, category and lock: they come back from the first of `copies`, older copies of the diary, that has the
    /// same memo; what can't be read is passed over. Returns whether there was any such memo.
    bool takeBackReset(const QStringList& copies) const;
    bool hasReset() const;

private:
    QString m_file;
    const platform::Clock& m_clock;
};

} // namespace velloria::store
