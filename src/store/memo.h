// The records of table Memo: plain values.
#pragma once

#include <QString>

#include <optional>

namespace velloria::store {

/// One memo as it is stored. A missing value (NULL), which old diaries have, is a null QString or nothing, and not the
/// same as "" or 0.
struct Memo {
    qint64 row = 0;      ///< by which the engine finds it; 0 for a memo that is not stored yet
    QString publishTime; ///< "yyyy/mm/dd hh:nn:ss", local time of the last save
    QString title;
    QString text;             ///< as it was typed, lines end in CR LF
    std::optional<qint64> no; ///< a running number that stays with the memo; 0 when something has reset it
    QString category;
    bool isLocked = false; ///< its text is shown to those alone who know the user's password
};

/// Whether both hold the same, wherever they are stored.
bool holdSame(const Memo& left, const Memo& right);

/// Whether a stored memo is locked, or was: of one without a number something has reset the lock as well.
bool mayBeLocked(const Memo& memo);

} // namespace velloria::store
