// The rescue file of the memo program.
#pragma once

#include "store/kept_lines.h"
#include "store/memo.h"

namespace velloria::store {

/// A memo that was kept.
struct KeptMemo {
    Memo memo;      ///< as it was then; its row means nothing
    QString reason; ///< "削除", "上書き" or "下書き"
    QString time;   ///< "yyyy/mm/dd hh:nn:ss", when it was kept
};

/// "memo_rescue.jsonl", apart from the diary's: `entry put` takes entries alone.
class MemoRescue : public KeptLines {
public:
    explicit MemoRescue(const core::Run& run);

    /// Keeps the memo as keepLines tells.
    void keep(const Memo& memo, const QString& reason);

    /// The newest first; empty when the file is not there. A line that is no memo is passed over. Throws
    /// platform::Failure for a file that can't be read.
    static std::vector<KeptMemo> all(const core::Run& run);
};

} // namespace velloria::store
