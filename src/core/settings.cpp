#include "core/settings.h"

#include "core/settings_change.h"

using namespace Qt::StringLiterals;

namespace velloria::core {

QString programFile(const QString& myPath, SettingsFile file) {
    switch (file) {
    case SettingsFile::Users:
        return myPath + u"velluser.ini"_s;
    case SettingsFile::Endpoints:
        return myPath + u"endpoints.ini"_s;
    case SettingsFile::HtmlToText:
        return myPath + u"HTML2TXT.ini"_s;
    case SettingsFile::Update:
        return myPath + u"update.txt"_s;
    default:
        Q_UNREACHABLE();
    }
}

QString Settings::file(SettingsFile file) const {
    switch (file) {
    case SettingsFile::Diary:
        return m_session.DiaryIniFile;
    case SettingsFile::Customize:
        return m_session.CustIniFile;
    case SettingsFile::Frame:
        return m_session.FrameIniFile;
    case SettingsFile::Rss:
        return m_session.RSSIniFile;
    case SettingsFile::HaloScan:
        return m_session.HaloScanIniFile;
    case SettingsFile::Blog:
        return m_session.BlogIniFile;
    default:
        return programFile(m_session.MyPath, file);
    }
}

void Settings::writeQuietly(const Setting& setting, const QString& value) const {
    SettingsChange change;
    change.set(file(setting.file), setting, value);
    change.writeQuietly();
}

} // namespace velloria::core
