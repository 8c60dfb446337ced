// How a refusal of the network is told.
#pragma once

#include "platform/desk.h"
#include "publish/internet.h"

namespace velloria::publish {

/// Shows the text of the last failure on the status panel, and behind it what is known beyond that text. Gives both in
/// one, for standard error and the log.
QString showNetworkError(const Internet& internet, platform::Desk& desk);

} // namespace velloria::publish
