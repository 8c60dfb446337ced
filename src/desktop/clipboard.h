// What the clipboard and a drop hold.
#pragma once

#include <QString>

#include <optional>

class QMimeData;

namespace velloria::desktop {

/// Whether somebody copied a text: files that are copied bring one along as well.
bool isText(const QMimeData& data);

/// The clipboard's text as it is there; nothing when it has no text format, as with files, a picture or HTML alone.
std::optional<QString> clipboardText();

} // namespace velloria::desktop
