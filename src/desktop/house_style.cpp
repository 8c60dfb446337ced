#include "desktop/house_style.h"

#include <QApplication>
#include <QPainter>
#include <QStyleOption>

namespace velloria::desktop {
namespace {

bool isDark(const QPalette& palette) {
    constexpr int kMiddle = 128;
    return palette.color(QPalette::Window).lightness() < kMiddle;
}

/// The picture's shape in one colour.
QPixmap drawnIn(const QColor& colour, QPixmap picture) {
    QPainter painter(&picture);
    painter.setCompositionMode(QPainter::CompositionMode_SourceIn);
    painter.fillRect(picture.rect(), colour);
    return picture;
}

} // namespace

HouseStyle::HouseStyle()
    : QProxyStyle(QApplication::style()->name()) {}

/// A desktop that tells its colours seldom tells this one, which then is what it is on a light ground.
void HouseStyle::polish(QPalette& palette) {
    QProxyStyle::polish(palette);
    constexpr float kFaint = 0.5F;
    QColor hint = palette.color(QPalette::Active, QPalette::Text); // an editor without a day is disabled and has one
    hint.setAlphaF(hint.alphaF() * kFaint);
    palette.setColor(QPalette::PlaceholderText, hint);
}

/// The room for check marks grows with a row's height when it is drawn, and not when it is measured: what is missing is
/// cut out of the middle of the caption.
QSize HouseStyle::sizeFromContents(ContentsType type, const QStyleOption* option, const QSize& contents,
                                   const QWidget* widget) const {
    QSize size = QProxyStyle::sizeFromContents(type, option, contents, widget);
    if (type == CT_MenuItem)
        size.rwidth() += size.height() / 2;
    return size;
}

int HouseStyle::styleHint(StyleHint hint, const QStyleOption* option, const QWidget* widget,
                          QStyleHintReturn* answer) const {
    return hint == SH_DialogButtonBox_ButtonsHaveIcons ? 0 : QProxyStyle::styleHint(hint, option, widget, answer);
}

/// Buttons are black on an inactive bar, whatever its colour. On an active one they are white.
void HouseStyle::drawComplexControl(ComplexControl control, const QStyleOptionComplex* option, QPainter* painter,
                                    const QWidget* widget) const {
    const auto* bar = qstyleoption_cast<const QStyleOptionTitleBar*>(option);
    if (control != CC_TitleBar || !bar || !isDark(bar->palette) || (bar->titleBarState & State_Active)) {
        QProxyStyle::drawComplexControl(control, option, painter, widget);
        return;
    }
    QStyleOptionTitleBar readable(*bar);
    readable.titleBarState |= State_Active;
    readable.palette.setBrush(QPalette::Highlight, bar->palette.window());
    QProxyStyle::drawComplexControl(control, &readable, painter, widget);
}

/// The frame buttons of a maximised child, which stand in the menu bar, are black pictures.
QIcon HouseStyle::standardIcon(StandardPixmap picture, const QStyleOption* option, const QWidget* widget) const {
    const QIcon icon = QProxyStyle::standardIcon(picture, option, widget);
    const bool isOfFrame = picture == SP_TitleBarMinButton || picture == SP_TitleBarNormalButton ||
                           picture == SP_TitleBarMaxButton || picture == SP_TitleBarCloseButton;
    const QPalette palette = option ? option->palette : QApplication::palette();
    if (!isOfFrame || !isDark(palette))
        return icon;
    QIcon readable;
    for (const QSize& size : icon.availableSizes())
        readable.addPixmap(drawnIn(palette.color(QPalette::WindowText), icon.pixmap(size)));
    return readable.isNull() ? icon : readable;
}

} // namespace velloria::desktop
