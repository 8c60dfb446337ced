#include "publish/upload_settings.h"

#include "convert/password_text.h"
#include "core/keys.h"
#include "core/settings.h"

#include <QRegularExpression>

using namespace Qt::StringLiterals;

namespace velloria::publish {

/// Whoever writes "yes" or "２" means encryption as well, and must not see the password go out in clear: all but the
/// two numbers that allow that requires it.
Tls tlsOf(const QString& setting) {
    static const QRegularExpression zero(u"^([+-]?0+|0x0+)?$"_s, QRegularExpression::CaseInsensitiveOption);
    static const QRegularExpression one(u"^(\\+?0*|0x0*)1$"_s, QRegularExpression::CaseInsensitiveOption);
    if (zero.match(setting).hasMatch())
        return Tls::Off;
    return one.match(setting).hasMatch() ? Tls::WhenOffered : Tls::Required;
}

QString soundCommand(const QString& file) {
    return u"Play \""_s + file + u'"';
}

UploadSettings readUploadSettings(const core::Session& session) {
    namespace keys = core::keys;
    const core::IniReader ini = core::Settings(session).read(core::SettingsFile::Diary);
    UploadSettings settings;
    settings.login.host = ini.text(keys::kFtpUrl);
    settings.login.user = ini.text(keys::kFtpId);
    settings.login.password = convert::passwordFromSetting(ini.text(keys::kFtpPass));
    settings.login.isPassive = ini.number(keys::kFtpPassive) != 0;
    settings.login.tls = tlsOf(ini.text(keys::kTls));
    settings.startFolder = ini.text(keys::kFtpStartFolder);
    settings.isPingWanted = ini.number(keys::kFtpPing) != 0;
    return settings;
}

} // namespace velloria::publish
