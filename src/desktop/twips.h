// Positions and sizes of windows are kept in twips: 15 to a device-independent pixel.
#pragma once

#include <QString>
#include <QtMath>

namespace velloria::desktop {

constexpr int kTwipsPerPixel = 15;

/// Pixels are device-independent ones here and everywhere in the windows.
constexpr qint32 toTwips(int pixels) {
    return pixels * kTwipsPerPixel;
}

inline int fromTwips(qint32 twips) {
    return qRound(double(twips) / kTwipsPerPixel);
}

} // namespace velloria::desktop
