#include "store/rescue_file.h"

#include "store/entry_line.h"

namespace velloria::store {

RescueFile::RescueFile(const core::Run& run)
    : KeptLines(run, core::files::kRescue, core::files::kDamagedRescue) {}

void RescueFile::keep(const std::vector<Entry>& entries, const QString& reason) {
    std::vector<QJsonObject> lines;
    if (isOn()) {
        for (const Entry& entry : entries)
            lines.push_back(toJson(entry));
    }
    keepLines(std::move(lines), reason);
}

} // namespace velloria::store
