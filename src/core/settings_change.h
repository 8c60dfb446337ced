// Settings that change together.
#pragma once

#include "core/session.h"
#include "core/setting.h"
#include "platform/profile_file.h"

#include <map>

namespace velloria::core {

/// Collects settings, of one file or of several, and writes them so that each file is replaced once: another program
/// that writes or reads the same keys finds all of them or none.
class SettingsChange {
public:
    /// In the file in which the setting is now, or in `file`: a missing file is made, but not its folder. A line break
    /// within `value` becomes a blank; a path is given as the name that it is.
    void set(const Session& session, const Setting& setting, const QString& value);
    void set(const QString& file, const Setting& setting, const QString& value);

    /// Removes the key's line; the section's header stays.
    void remove(const Session& session, const Setting& setting);
    void remove(const QString& file, const Setting& setting);

    /// Writes the keys of each file in the order in which they were set. A file that the machine refuses keeps its old
    /// values and stops no other one; then the first refusal is thrown, a platform::Failure.
    void write() const;
    /// The same without a word of refusals, for what nobody asked to keep: where a window stood, a folder of last time.
    void writeQuietly() const;

private:
    std::map<QString, std::vector<platform::ProfileChange>> m_files;
};

/// Writes one setting at once, in the file in which it is now, without a word of a refusal: the next read gives the old
/// value.
void writeQuietly(const Session& session, const Setting& setting, const QString& value);

} // namespace velloria::core
