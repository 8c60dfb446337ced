#include "publish/upload_settings.h"

#include "convert/password_text.h"
#include "core/keys.h"

#include <QRegularExpression>

using namespace Qt::StringLiterals;

namespace velloria::publish {
namespace {

/// Whoever writes "yes" or "２" means encryption as well, and must not see the password go out in clear: all but the
/// two numbers that allow that requires it.
Tls tlsOf(const QString& setting) {
    static const QRegularExpression zero(u"^([+-]?0+|0x0+)?$"_s, QRegularExpression::CaseInsensitiveOption);
    static const QRegularExpression one(u"^(\\+?0*|0x0*)1$"_s, QRegularExpression::CaseInsensitiveOption);
    if (zero.match(setting).hasMatch())
        return Tls::Off;
    return one.match(setting).hasMatch() ? Tls::WhenOffered : Tls::Required;
}

} // namespace

UploadSettings readUploadSettings(const QString& file) {
    namespace keys = core::keys;
    const auto text = [&](const core::Key& key) { return core::TrimNull(core::ReadIni(file, key)); };
    UploadSettings settings;
    settings.login.host = text(keys::kFtpUrl);
    settings.login.user = text(keys::kFtpId);
    settings.login.password = convert::passwordFromSetting(text(keys::kFtpPass));
    settings.login.isPassive = core::ReadIniIntDef(file, keys::kFtpPassive, 0) != 0;
    settings.login.tls = tlsOf(text(keys::kTls));
    settings.startFolder = text(keys::kFtpStartFolder);
    settings.isPingWanted = core::ReadIniIntDef(file, keys::kFtpPing, 0) != 0;
    return settings;
}

} // namespace velloria::publish
