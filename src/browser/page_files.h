// Which files of this machine a page may have.
#pragma once

#include "core/session.h"

#include <QUrl>

namespace velloria::browser {

/// What a page wants a file for. What it shows gives a script no text; what it reads can be read by one.
enum class FileUse { Picture, Style, Script, Frame, Other };

/// Whether a page at `shown`, the address of the whole window, may have `file`: it must lie, links resolved, in the
/// site's folder or the data folder, and in a frame beside the page or below it. A page of the web gets none, and no
/// page one that is neither shown as a picture (sounds and fonts are alike) nor bears the ending of a style, a script
/// or a page: diary and settings often lie in the data folder itself.
bool mayHaveFile(const core::Session& session, const QUrl& file, FileUse use, const QUrl& shown);

} // namespace velloria::browser
