#include "core/settings.h"

#include "core/files.h"

namespace velloria::core {

QString programFile(const QString& myPath, SettingsFile file) {
    switch (file) {
    case SettingsFile::Users:
        return files::kUsers.below(myPath);
    case SettingsFile::Endpoints:
        return files::kEndpoints.below(myPath);
    case SettingsFile::HtmlToText:
        return files::kHtmlToText.below(myPath);
    case SettingsFile::Update:
        return files::kOffers.below(myPath);
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
    case SettingsFile::BlogUserData:
        return files::kBlogUserData.in(m_session);
    default:
        return programFile(m_session.MyPath, file);
    }
}

} // namespace velloria::core
