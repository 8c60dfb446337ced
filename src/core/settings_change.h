// Settings that change together.
#pragma once

#include "core/keys.h"
#include "platform/profile_file.h"

#include <map>

namespace velloria::core {

/// Collects keys and writes them so that each file is replaced once: another program that writes or reads the same keys
/// finds all of them or none. Like WriteIni it reports nothing: a file that the machine refuses keeps its old values,
/// the other ones are written all the same.
class SettingsChange {
public:
    void set(const QString& file, const QString& section, const QString& key, const QString& value);
    void set(const QString& file, const Key& key, const QString& value) { set(file, key.section, key.name, value); }
    void remove(const QString& file, const QString& section, const QString& key);

    /// Writes the keys of each file in the order in which they were set.
    void write() const;

private:
    std::map<QString, std::vector<platform::ProfileChange>> m_files;
};

} // namespace velloria::core
