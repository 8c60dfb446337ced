// How a failure of the network is told. To be asked before the next call of Internet, which changes the last failure:
//
//     if (!internet.putFile(file, name, TransferType::Text))
//         reason = showNetworkError(internet, desk);
#pragma once

#include "platform/desk.h"
#include "publish/internet.h"

namespace velloria::publish {

/// The line for the user that the number of the last failure stands for.
QString InternetErrorText(const Internet& internet);

/// The same with what is known beyond it, for the status panel, standard error and the log.
QString failureReason(const Internet& internet);

/// Shows the text of the last failure on the status panel, and after it what is known beyond that text. Gives both in
/// one, for standard error and the log.
QString showNetworkError(const Internet& internet, platform::Desk& desk);

} // namespace velloria::publish
