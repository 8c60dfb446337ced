// Tells update-ping servers that the site has changed, through the plug-in "Chimer.dll".
#pragma once

#include "core/run.h"

namespace velloria::publish {

/// One call is one ping, which blocks until the plug-in is done; nothing is kept between calls. In the thread of the
/// windows: plug-ins are called there alone.
class Ping {
public:
    explicit Ping(const core::Run& run);

    /// Hands the site's name and address and the list of servers to the plug-in and waits until it is done. An empty
    /// address goes out as well. Throws platform::Failure when the plug-in is missing, lacks a call or reports a
    /// failure, with which the rest of the calls is left out.
    void MnuPING() const;

private:
    const core::Session& m_session;
    platform::Desk& m_desk;
};

} // namespace velloria::publish
