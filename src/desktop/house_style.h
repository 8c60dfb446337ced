// How the toolkit's own parts look in this program.
#pragma once

#include <QProxyStyle>

namespace velloria::desktop {

/// The style that the desktop has chosen, without coloured pictures on the buttons of boxes, with hints and with frame
/// buttons of child windows that a dark palette leaves readable, and with menus as wide as their captions in any font.
class HouseStyle : public QProxyStyle {
    Q_OBJECT
public:
    /// Over the application's present style, which stays as it is.
    HouseStyle();

    using QProxyStyle::polish;
    void polish(QPalette& palette) override;
    QSize sizeFromContents(ContentsType type, const QStyleOption* option, const QSize& contents,
                           const QWidget* widget) const override;
    int styleHint(StyleHint hint, const QStyleOption* option, const QWidget* widget,
                  QStyleHintReturn* answer) const override;
    void drawComplexControl(ComplexControl control, const QStyleOptionComplex* option, QPainter* painter,
                            const QWidget* widget) const override;
    QIcon standardIcon(StandardPixmap picture, const QStyleOption* option, const QWidget* widget) const override;
};

} // namespace velloria::desktop
