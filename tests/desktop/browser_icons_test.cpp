#include "desktop/icons.h"

#include <gtest/gtest.h>

#include <QImage>
#include <QSet>

using namespace velloria::desktop;

namespace velloria::tests {
namespace {

QPalette paletteOf(const QColor& text) {
    QPalette palette;
    palette.setColor(QPalette::ButtonText, text);
    palette.setColor(QPalette::Disabled, QPalette::ButtonText, Qt::gray);
    return palette;
}

QImage imageOf(IconName name, const QColor& text = Qt::black, int side = 16, QIcon::Mode mode = QIcon::Normal) {
    return icon(name, paletteOf(text)).pixmap(QSize(side, side), 1.0, mode).toImage();
}

/// The colour of what is drawn fully, invalid when nothing is.
QColor colourOf(const QImage& image) {
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x) {
            if (image.pixelColor(x, y).alpha() == 255)
                return image.pixelColor(x, y);
        }
    }
    return {};
}

TEST(Icons, DifferFromOneAnother) {
    QSet<QByteArray> images;
    for (int i = int(IconName::Save); i <= int(IconName::ManageBlog); ++i) {
        const QImage image = imageOf(IconName(i));
        images.insert(QByteArray(reinterpret_cast<const char*>(image.constBits()), image.sizeInBytes()));
    }
    EXPECT_EQ(images.size(), int(IconName::ManageBlog) + 1);
}

TEST(Icons, HaveTheColourOfTheText) {
    for (const QColor& colour : {QColor(Qt::black), QColor(Qt::white), QColor(Qt::yellow)})
        EXPECT_EQ(colourOf(imageOf(IconName::Home, colour, 64)), colour) << colour.name().toStdString();
    EXPECT_EQ(colourOf(imageOf(IconName::Home, Qt::black, 64, QIcon::Disabled)), QColor(Qt::gray));
}

TEST(Icons, AreDrawnForTheScreensOwnPixels) {
    const QPixmap pixmap = icon(IconName::Save, paletteOf(Qt::black)).pixmap(QSize(16, 16), 2.0);
    EXPECT_EQ(pixmap.size(), QSize(32, 32));
    EXPECT_EQ(pixmap.devicePixelRatio(), 2.0);
    EXPECT_NE(pixmap.toImage(), imageOf(IconName::Save).scaled(32, 32));
}

} // namespace
} // namespace velloria::tests
