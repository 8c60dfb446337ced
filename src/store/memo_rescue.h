// The rescue file of the memo program.
#pragma once

#include "store/kept_lines.h"
#include "store/memo.h"

namespace velloria::store {

/// "memo_rescue.jsonl", apart from the diary's: `entry put` takes entries alone.
class MemoRescue : public KeptLines {
public:
    explicit MemoRescue(const core::Run& run);

    /// Keeps the memo as keepLines tells.
    void keep(const Memo& memo, const QString& reason);
};

} // namespace velloria::store
