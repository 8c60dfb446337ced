#include "desktop/window_place.h"

#include "core/settings.h"
#include "core/settings_change.h"
#include "desktop/twips.h"

#include <QGuiApplication>
#include <QScreen>
#include <QWidget>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace velloria::desktop {
namespace {

struct Edge {
    core::Setting core::PlaceSettings::*setting;
    std::optional<qint32> WindowPlace::*value;
};

constexpr Edge kEdges[] = {
    {&core::PlaceSettings::top, &WindowPlace::top},
    {&core::PlaceSettings::left, &WindowPlace::left},
    {&core::PlaceSettings::height, &WindowPlace::height},
    {&core::PlaceSettings::width, &WindowPlace::width},
};

constexpr QSize kLeastSize(200, 150);

bool isSet(const std::optional<qint32>& value) {
    return value.value_or(0) != 0;
}

bool isSize(const std::optional<qint32>& value) {
    return value.value_or(0) > 0;
}

bool placesWindowsItself() {
    return QGuiApplication::platformName().startsWith("wayland"_L1);
}

} // namespace

WindowPlace readPlace(const core::Session& session, const core::PlaceSettings& settings) {
    const core::IniReader file = core::Settings(session).read(settings.top.file);
    WindowPlace place;
    for (const Edge& edge : kEdges)
        place.*edge.value = file.wideNumber(settings.*edge.setting);
    return place;
}

void writePlace(const core::Session& session, const core::PlaceSettings& settings, const WindowPlace& place) {
    core::SettingsChange change;
    addPlace(change, session, settings, place);
    change.writeQuietly();
}

void addPlace(core::SettingsChange& change, const core::Session& session, const core::PlaceSettings& settings,
              const WindowPlace& place) {
    for (const Edge& edge : kEdges) {
        if (const std::optional<qint32>& value = place.*edge.value)
            change.set(session, settings.*edge.setting, QString::number(*value));
    }
}

WindowPlace placeOf(const QRect& geometry) {
    return {toTwips(geometry.top()), toTwips(geometry.left()), toTwips(geometry.height()), toTwips(geometry.width())};
}

WindowPlace placeOf(const QWidget& window, const QRect& geometry) {
    WindowPlace place = placeOf(geometry);
    if (window.isWindow() && placesWindowsItself()) {
        place.top.reset();
        place.left.reset();
    }
    return place;
}

QMargins frameOf(const QWidget& window) {
    const QRect inner = window.geometry();
    const QRect outer = window.frameGeometry();
    return {inner.left() - outer.left(), inner.top() - outer.top(), outer.right() - inner.right(),
            outer.bottom() - inner.bottom()};
}

void restorePlace(QWidget& window, const WindowPlace& place, const QMargins& frame) {
    QRect geometry(window.pos(), window.size());
    if (isSize(place.width))
        geometry.setWidth(fromTwips(*place.width));
    if (isSize(place.height))
        geometry.setHeight(fromTwips(*place.height));
    geometry.setSize(geometry.size().expandedTo(kLeastSize).grownBy(frame)); // the position is the frame's as well
    if (!window.isVisible() && !window.testAttribute(Qt::WA_Moved) && QGuiApplication::primaryScreen())
        geometry.moveCenter(QGuiApplication::primaryScreen()->availableGeometry().center());
    if (isSet(place.left))
        geometry.moveLeft(fromTwips(*place.left));
    if (isSet(place.top))
        geometry.moveTop(fromTwips(*place.top));
    const QScreen* screen = QGuiApplication::screenAt(geometry.center());
    if (!screen)
        screen = QGuiApplication::primaryScreen();
    if (screen)
        geometry = movedInto(geometry, screen->availableGeometry());
    window.resize(geometry.size().shrunkBy(frame));
    const bool isPlacedByUs = isSet(place.left) || isSet(place.top) || window.isVisible();
    if (isPlacedByUs && !placesWindowsItself() && geometry.topLeft() != window.pos())
        window.move(geometry.topLeft());
}

QRect movedBeside(QRect frame, const QRect& other, const QRect& area) {
    const int left = other.left() - area.left();
    const int right = area.right() - other.right();
    frame.setWidth(std::clamp(std::max(left, right), std::min(kLeastSize.width(), frame.width()), frame.width()));
    if (right >= left)
        frame.moveLeft(other.right() + 1);
    else
        frame.moveRight(other.left() - 1);
    return movedInto(frame, area);
}

QRect movedInto(QRect frame, const QRect& area) {
    frame.setSize(frame.size().expandedTo({1, 1}).boundedTo(area.size()));
    frame.moveLeft(std::clamp(frame.left(), area.left(), area.right() - frame.width() + 1));
    frame.moveTop(std::clamp(frame.top(), area.top(), area.bottom() - frame.height() + 1));
    return frame;
}

} // namespace velloria::desktop
