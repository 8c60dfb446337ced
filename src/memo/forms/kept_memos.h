// What was removed or overwritten, to choose from.
#pragma once

#include "memo/words.h"
#include "store/memo_rescue.h"

#include <optional>
#include <vector>

class QWidget;

namespace velloria::memo {

/// The one that is to become a memo again; nothing when none is.
std::optional<store::Memo> chooseKept(QWidget& owner, const Words& words, const std::vector<store::KeptMemo>& kept);

} // namespace velloria::memo
