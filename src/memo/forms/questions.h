// What the memo program asks besides Yes and No.
#pragma once

#include "memo/words.h"

#include <QString>

#include <optional>

class QWidget;

namespace velloria::memo {

enum class Unsaved { Save, Discard, Cancel };
enum class Conflict { Overwrite, SaveAsNew, Cancel };

/// What becomes of a memo that is not saved. Escape cancels.
Unsaved askAboutUnsaved(QWidget& owner, const Words& words);
/// What becomes of a save when another program has changed the memo, or, without `isThere`, removed it. Escape cancels.
Conflict askAboutConflict(QWidget& owner, const Words& words, bool isThere);
/// The password; nothing when it was cancelled.
std::optional<QString> askPassword(QWidget* owner, const Words& words);

} // namespace velloria::memo
