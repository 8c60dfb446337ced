// How the memo program finds out whose memos it shows.
#pragma once

#include "core/run.h"

#include <QByteArray>
#include <QStringList>

#include <functional>

namespace velloria::memo {

/// Gives the first line of the standard input, its end included.
using ReadLine = std::function<QByteArray()>;

/// Fills the session from the arguments (file of users, name, password), as the diary fills its own: the same folders
/// and the same database. The password is read from `input` when shell::kPasswordByInput stands in its place. Without
/// arguments the program folder is what shell::findHome makes of `programFolder`, and there must be no users. False
/// when a box has said why there is nothing to show: a wrong password, a diary that was never begun. Writes nothing.
bool enter(const core::Run& run, const QStringList& arguments, const ReadLine& input, const QString& programFolder);

} // namespace velloria::memo
