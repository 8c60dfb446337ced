// What an import is about to write, as the person is shown it beforehand.
#pragma once

#include <QStringList>

#include <functional>
#include <optional>

namespace velloria::platform {

struct ImportPlan {
    QString program;  ///< where the entries come from, as the import mark names it
    QStringList days; ///< the day of each entry, "yyyy/mm/dd", in any order
    QString notes;    ///< what is not carried, with counts; line ends are CR LF; "" when all is
};

/// Shows a plan and gives the import mark of all its entries; nothing when the person does not want them.
using BeginImport = std::function<std::optional<QString>(const ImportPlan&)>;

} // namespace velloria::platform
