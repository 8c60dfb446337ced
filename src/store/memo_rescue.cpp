#include "store/memo_rescue.h"

#include "store/memo_line.h"

namespace velloria::store {

MemoRescue::MemoRescue(const core::Run& run)
    : KeptLines(run, core::files::kMemoRescue, core::files::kDamagedMemoRescue) {}

void MemoRescue::keep(const Memo& memo, const QString& reason) {
    keepLines({toJson(memo)}, reason);
}

} // namespace velloria::store
