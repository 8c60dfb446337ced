// The settings of the site: which file, section and key each value has, and the text pieces.
#pragma once

#include "core/ini_reader.h"
#include "core/session.h"

#include <QLatin1StringView>

namespace velloria::site {

/// The files that hold site settings.
enum class SettingsFile { Customize, Frame, Rss, HaloScan, Endpoints };

struct SiteKey {
    SettingsFile file;
    QLatin1StringView section;
    QLatin1StringView name;
};

/// All settings as they are on disk at the start of one run of the generator. A missing key reads as "" or 0; a number
/// beyond 16 bits throws platform::Failure where it is asked for.
class SiteSettings {
public:
    explicit SiteSettings(const core::Session& session);

    QString text(const SiteKey& key) const;
    QString text(const SiteKey& key, const QString& whenMissing) const;
    int number(const SiteKey& key) const;
    /// Whether the number is 1.
    bool isOn(const SiteKey& key) const { return number(key) == 1; }

    /// The text piece that the key names: the whole file "Customize/<name>.htm", "" when there is none.
    QString piece(const SiteKey& key) const;
    /// The script of the log select box, "JS_Log.txt" of the program.
    QString logScript() const;

private:
    const core::IniReader& reader(SettingsFile file) const;

    const core::Session& m_session;
    core::IniReader m_customize;
    core::IniReader m_frame;
    core::IniReader m_rss;
    core::IniReader m_haloScan;
    core::IniReader m_endpoints;
};

} // namespace velloria::site
