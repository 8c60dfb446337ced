#include "core/settings_change.h"

#include "platform/directory.h"
#include "platform/failure.h"

namespace velloria::core {

void SettingsChange::set(const QString& file, const QString& section, const QString& key, const QString& value) {
    m_files[file].push_back({section, key, value});
}

void SettingsChange::remove(const QString& file, const QString& section, const QString& key) {
    m_files[file].push_back({section, key, std::nullopt});
}

void SettingsChange::write() const {
    for (const auto& [file, changes] : m_files) {
        try {
            platform::writeProfile(platform::existingPath(file), changes);
        } catch (const platform::Failure&) {
            // A setting that can't be kept stops nobody: the next read gives the old value.
        }
    }
}

} // namespace velloria::core
