// The settings of the site and the text pieces, as one run of the generator sees them.
#pragma once

#include "core/ini_reader.h"
#include "core/session.h"
#include "core/site_keys.h"

namespace velloria::site {

namespace keys = core::keys;

/// All settings as they are on disk at the start of one run of the generator: those of core/site_keys.h, and the
/// addresses of others. What is written meanwhile counts for the next run. A missing key is its default and no failure;
/// a number beyond 16 bits throws platform::Failure where it is asked for.
class SiteSettings {
public:
    explicit SiteSettings(const core::Session& session);

    QString text(const core::Setting& setting) const;
    int number(const core::Setting& setting) const;
    /// Whether the number is 1.
    bool isOn(const core::Setting& setting) const { return number(setting) == 1; }

    /// The text piece that the setting names: the whole file "Customize/<name>.htm", "" when there is none.
    QString piece(const core::Setting& setting) const;
    /// The script of the log select box, "JS_Log.txt" of the program.
    QString logScript() const;

private:
    const core::IniReader& reader(core::SettingsFile file) const;

    const core::Session& m_session;
    core::IniReader m_customize;
    core::IniReader m_frame;
    core::IniReader m_rss;
    core::IniReader m_haloScan;
    core::IniReader m_endpoints;
};

} // namespace velloria::site
