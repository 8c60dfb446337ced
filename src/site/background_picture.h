// The background picture of a page: chosen from the user's files, and registered when they want it on the site.
#pragma once

#include "core/run.h"

#include <optional>

namespace velloria::site {

/// The path of a file that exists; nothing when the dialog is cancelled, or after the box about a path that is none.
std::optional<QString> choosePicture(const core::Run& run);

/// The address under which a page of the site finds the picture once it is registered.
QString pictureAddress(const QString& path);

/// Registers the picture for the whole site when the user says so. Throws platform::Failure.
void offerRegistration(const core::Run& run, const QString& path);

} // namespace velloria::site
