// The command that deletes an entry.
#pragma once

#include "core/run.h"

#include <QString>

#include <functional>

namespace velloria::site {

inline const QString kDeletionRefused = QStringLiteral("日記の削除を中止しました。");

enum class Deletion {
    Refused,        ///< the user's No
    Done,           ///< and the preview is without the entry
    WithoutPreview, ///< the entry is gone, but its preview could not be made, which was told
};

/// Asks, lets `remove` delete the entry, makes the preview of the month of `EnterDay`, and tells. What `remove` throws
/// ends the command.
Deletion deleteCommand(const core::Run& run, const QString& day, int number, const std::function<void()>& remove);

} // namespace velloria::site
