// The settings as they are now, each in its file. What changes them is core/settings_change.h.
//
//     const core::Settings settings(session);
//     if (settings.isOn(core::keys::kFavoriteSort)) ...
#pragma once

#include "core/ini_reader.h"
#include "core/session.h"

namespace velloria::core {

/// The file of that kind beside the program, with the program's folder as `myPath`.
QString programFile(const QString& myPath, SettingsFile file);

/// Reads from disk at each call, so that what one window writes the next one sees. A missing file has no keys; one that
/// is there and can't be read is a platform::Failure. Made where it is needed: it costs nothing.
class Settings {
public:
    /// `session` outlives this; its files count as they are at each call.
    explicit Settings(const Session& session)
        : m_session(session) {}

    /// Where the file is now.
    QString file(SettingsFile file) const;

    /// For several rows of one file, all as they are at this moment.
    IniReader read(SettingsFile file) const { return IniReader(this->file(file)); }

    /// As IniReader gives them.
    QString text(const Setting& setting) const { return read(setting.file).text(setting); }
    qint16 number(const Setting& setting) const { return read(setting.file).number(setting); }
    bool isOn(const Setting& setting) const { return read(setting.file).isOn(setting); }

private:
    const Session& m_session;
};

} // namespace velloria::core
