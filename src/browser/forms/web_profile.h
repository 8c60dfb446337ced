// What the browser windows of one user share: cookies, cache, downloads.
#pragma once

#include "core/session.h"
#include "platform/desk.h"

#include <QWebEngineProfile>

#include <memory>

namespace velloria::browser {

/// Kept in the user's folder, so that a login survives the run and no user gets another's. Every page of a profile must
/// be gone before it: each window holds its share until its own page is deleted. A download asks for its place.
std::shared_ptr<QWebEngineProfile> makeProfile(const core::Session& session, platform::Desk& desk);

} // namespace velloria::browser
