// What pages may ask for, whatever window shows them.
#pragma once

#include "core/session.h"

#include <QWebEngineUrlRequestInterceptor>

namespace velloria::browser {

/// Scripts run in the preview as they do on the site, and there they reach no file: diary, settings and passwords lie
/// beside the preview, and entries come from other people as well. A page of the disk asks the web for what it shows,
/// too, and carries nothing there behind its reader's back.
class FileGuard : public QWebEngineUrlRequestInterceptor {
public:
    /// `session` outlives the guard.
    FileGuard(const core::Session& session, QObject* parent);

    void interceptRequest(QWebEngineUrlRequestInfo& request) override;

private:
    bool mayHave(const QWebEngineUrlRequestInfo& request) const;

    const core::Session& m_session;
};

} // namespace velloria::browser
