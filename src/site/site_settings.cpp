#include "site/site_settings.h"

#include "core/path_names.h"
#include "core/text_file.h"

using namespace Qt::StringLiterals;

namespace velloria::site {

SiteSettings::SiteSettings(const core::Session& session)
    : m_session(session)
    , m_customize(session.CustIniFile)
    , m_frame(session.FrameIniFile)
    , m_rss(session.RSSIniFile)
    , m_haloScan(session.HaloScanIniFile)
    , m_endpoints(session.MyPath + u"endpoints.ini"_s) {}

QString SiteSettings::text(const SiteKey& key) const {
    return reader(key.file).text(key.section, key.name);
}

QString SiteSettings::text(const SiteKey& key, const QString& whenMissing) const {
    return reader(key.file).text(key.section, key.name, whenMissing);
}

int SiteSettings::number(const SiteKey& key) const {
    return reader(key.file).number(key.section, key.name);
}

QString SiteSettings::piece(const SiteKey& key) const {
    const QString name = text(key);
    // A set may come from somebody else, and the preview with its private entries lies one folder above.
    return core::isBareName(name) ? core::ReadTextFile(m_session.DataPath + u"Customize/"_s + name + u".htm"_s)
                                  : QString();
}

QString SiteSettings::logScript() const {
    return core::ReadTextFile(m_session.MyPath + u"JS_Log.txt"_s);
}

const core::IniReader& SiteSettings::reader(SettingsFile file) const {
    switch (file) {
    case SettingsFile::Frame:
        return m_frame;
    case SettingsFile::Rss:
        return m_rss;
    case SettingsFile::HaloScan:
        return m_haloScan;
    case SettingsFile::Endpoints:
        return m_endpoints;
    case SettingsFile::Customize:
        break;
    }
    return m_customize;
}

} // namespace velloria::site
