#include "site/site_settings.h"

#include "core/files.h"
#include "core/path_names.h"
#include "core/settings.h"
#include "core/text_file.h"

using namespace Qt::StringLiterals;

namespace velloria::site {

SiteSettings::SiteSettings(const core::Session& session)
    : m_session(session)
    , m_customize(session.CustIniFile)
    , m_frame(session.FrameIniFile)
    , m_rss(session.RSSIniFile)
    , m_haloScan(session.HaloScanIniFile)
    , m_endpoints(core::programFile(session.MyPath, core::SettingsFile::Endpoints)) {}

QString SiteSettings::text(const core::Setting& setting) const {
    return reader(setting.file).text(setting);
}

int SiteSettings::number(const core::Setting& setting) const {
    return reader(setting.file).number(setting);
}

QString SiteSettings::piece(const core::Setting& setting) const {
    Q_ASSERT(setting.kind == core::SettingKind::PieceName);
    const QString name = text(setting);
    // A set may come from somebody else, and the preview with its private entries lies one folder above.
    return core::isBareName(name) ? core::ReadTextFile(core::files::kCustomize.in(m_session) + u'/' + name + u".htm"_s)
                                  : QString();
}

QString SiteSettings::logScript() const {
    return core::ReadTextFile(core::files::kLogScript.in(m_session));
}

const core::IniReader& SiteSettings::reader(core::SettingsFile file) const {
    switch (file) {
    case core::SettingsFile::Frame:
        return m_frame;
    case core::SettingsFile::Rss:
        return m_rss;
    case core::SettingsFile::HaloScan:
        return m_haloScan;
    case core::SettingsFile::Endpoints:
        return m_endpoints;
    default:
        Q_ASSERT(file == core::SettingsFile::Customize);
        return m_customize;
    }
}

} // namespace velloria::site
