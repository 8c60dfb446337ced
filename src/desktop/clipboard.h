// What the clipboard and a drop hold.
#pragma once

#include <QString>
#include <QStringList>

#include <optional>

class QDropEvent;
class QMimeData;

namespace velloria::desktop {

/// Whether somebody copied a text: files that are copied bring one along as well.
bool isText(const QMimeData& data);

/// The text that somebody copied or drops, to its first character.
QString textOf(const QMimeData& data);

/// The files of this computer that are dropped, as full paths; none of a drag that began in this program: what is
/// dragged out of a page is a copy that goes with the page.
QStringList droppedFiles(const QDropEvent& event);

/// The first of them when it is a picture by its name; nothing otherwise.
std::optional<QString> droppedImage(const QDropEvent& event);

/// The clipboard's text as it is there, "" of an empty clipboard; nothing when it has no text format, as with files, a
/// picture or HTML alone.
std::optional<QString> clipboardText();

} // namespace velloria::desktop
