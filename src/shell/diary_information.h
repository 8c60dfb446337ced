// The page of figures that a plug-in makes of the diary.
#pragma once

#include "core/run.h"

namespace velloria::shell {

/// Lets "VellInfo.dll" write "VellInfo_result.htm" anew and sends the browser there. A box tells when the plug-in does
/// not take the paths. Throws platform::Failure when it is missing, lacks a call or reports a failure.
void diaryInformationCommand(const core::Run& run);

} // namespace velloria::shell
