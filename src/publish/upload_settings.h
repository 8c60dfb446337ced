// What the settings say about the web server.
#pragma once

#include "core/session.h"
#include "publish/internet.h"

namespace velloria::publish {

struct UploadSettings {
    FtpLogin login;
    QString startFolder; ///< "" stays in the folder of the login
    bool isPingWanted = false;
};

/// What the stored text of the setting means.
Tls tlsOf(const QString& setting);

/// The command that plays the sound at the end of an upload.
QString soundCommand(const QString& file);

/// A setting that is missing is its default and no failure. Read anew for each run, from the user's "diary.ini". Throws
/// platform::Failure for a number beyond 16 bits.
UploadSettings readUploadSettings(const core::Session& session);

} // namespace velloria::publish
