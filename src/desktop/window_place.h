// Where a window stood when it was left, in the user's settings.
#pragma once

#include <QMargins>
#include <QRect>
#include <QString>

#include <optional>

class QWidget;

namespace velloria::core {
struct PlaceSettings;
class SettingsChange;
struct Session;
} // namespace velloria::core

namespace velloria::desktop {

/// In twips; a missing value is nothing. They are read in 32 bits: a large screen has more twips than 16 bits hold.
struct WindowPlace {
    std::optional<qint32> top;
    std::optional<qint32> left;
    std::optional<qint32> height;
    std::optional<qint32> width;
};

/// What is no number reads as 0.
WindowPlace readPlace(const core::Session& session, const core::PlaceSettings& settings);

/// Writes position and size as decimal text, each as far as it is told. A refusal of the machine is passed over.
void writePlace(const core::Session& session, const core::PlaceSettings& settings, const WindowPlace& place);

/// The same as a part of a larger change.
void addPlace(core::SettingsChange& change, const core::Session& session, const core::PlaceSettings& settings,
              const WindowPlace& place);

/// The rectangle in pixels as a place in twips.
WindowPlace placeOf(const QRect& geometry);

/// The same of a top-level window at that place. On Wayland, which tells no positions, the size alone.
WindowPlace placeOf(const QWidget& window, const QRect& geometry);

/// What the window manager puts round the window, and will put round another one; nothing before the window is seen.
QMargins frameOf(const QWidget& window);

/// Moves and sizes a top-level window by those values that are told and not 0, and no size below it, then moves it onto
/// a screen that is there and cuts it down so that its frame fits there too, but never to less than can be seen and
/// grasped. An edge that is not told stays; that of a window which has no place yet is in the middle of the screen. On
/// Wayland, which places windows itself, the size alone.
void restorePlace(QWidget& window, const WindowPlace& place, const QMargins& frame);

/// `frame` moved to the side of `other` with more room in `area`, the right one if both have as much, and made as
/// narrow as that, but never narrower than can be read.
QRect movedBeside(QRect frame, const QRect& other, const QRect& area);

/// `frame` moved, and cut down if need be, so that it lies within `area`.
QRect movedInto(QRect frame, const QRect& area);

} // namespace velloria::desktop
