#include "core/settings_change.h"

#include "core/settings.h"
#include "core/stored_name.h"
#include "platform/directory.h"
#include "platform/failure.h"

namespace velloria::core {

void SettingsChange::set(const Session& session, const Setting& setting, const QString& value) {
    set(Settings(session).file(setting.file), setting, value);
}

void SettingsChange::set(const QString& file, const Setting& setting, const QString& value) {
    m_files[file].push_back({setting.section.toString(), setting.name.toString(),
                             setting.kind == SettingKind::Path ? storedName(value) : value});
}

void SettingsChange::remove(const Session& session, const Setting& setting) {
    remove(Settings(session).file(setting.file), setting);
}

void SettingsChange::remove(const QString& file, const Setting& setting) {
    m_files[file].push_back({setting.section.toString(), setting.name.toString(), std::nullopt});
}

void SettingsChange::write() const {
    std::optional<platform::Failure> refusal;
    for (const auto& [file, changes] : m_files) {
        try {
            platform::writeProfile(platform::existingPath(file), changes);
        } catch (const platform::Failure& failure) {
            if (!refusal)
                refusal = failure;
        }
    }
    if (refusal)
        throw *refusal;
}

void SettingsChange::writeQuietly() const {
    try {
        write();
    } catch (const platform::Failure&) {
        // The next read gives the old value.
    }
}

void writeQuietly(const Session& session, const Setting& setting, const QString& value) {
    SettingsChange change;
    change.set(session, setting, value);
    change.writeQuietly();
}

} // namespace velloria::core
