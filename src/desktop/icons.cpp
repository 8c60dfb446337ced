#include "desktop/icons.h"

#include <QIconEngine>
#include <QPainter>
#include <QPainterPath>

namespace velloria::desktop {
namespace {

// All shapes stand on a square of 16 units.
constexpr qreal kGrid = 16;
constexpr qreal kStroke = 1.4;

QPainterPath lines(std::initializer_list<QPointF> points, bool isClosed = false) {
    QPainterPath path;
    path.moveTo(*points.begin());
    for (const QPointF& point : points)
        path.lineTo(point);
    if (isClosed)
        path.closeSubpath();
    return path;
}

QPainterPath rectangle(qreal left, qreal top, qreal width, qreal height) {
    QPainterPath path;
    path.addRect(left, top, width, height);
    return path;
}

QPainterPath circle(qreal x, qreal y, qreal radius) {
    QPainterPath path;
    path.addEllipse(QPointF(x, y), radius, radius);
    return path;
}

/// A disk with its label and its slide.
QPainterPath disk(qreal size) {
    const qreal edge = size - 1.5;
    QPainterPath path = lines({{1.5, 1.5}, {edge - 2.5, 1.5}, {edge, 4}, {edge, edge}, {1.5, edge}}, true);
    path.addRect(size * 0.3, 1.5, size * 0.35, size * 0.22);
    path.addRect(size * 0.25, size * 0.55, size * 0.5, edge - size * 0.55);
    return path;
}

QPainterPath sheet(qreal left, qreal top, qreal width, qreal height) {
    const qreal fold = width * 0.35;
    return lines({{left, top},
                  {left + width - fold, top},
                  {left + width, top + fold},
                  {left + width, top + height},
                  {left, top + height}},
                 true);
}

QPainterPath eye(qreal x, qreal y) {
    QPainterPath path;
    path.moveTo(x - 4, y);
    path.quadTo(x, y - 4.5, x + 4, y);
    path.quadTo(x, y + 4.5, x - 4, y);
    path.addEllipse(QPointF(x, y), 1, 1);
    return path;
}

QPainterPath chain() {
    QPainterPath path;
    path.addRoundedRect(1.5, 5.5, 7, 5, 2.5, 2.5);
    path.addRoundedRect(7.5, 5.5, 7, 5, 2.5, 2.5);
    return path;
}

QPainterPath turn() {
    QPainterPath path;
    path.arcMoveTo(2.5, 2.5, 11, 11, 60);
    path.arcTo(2.5, 2.5, 11, 11, 60, 300);
    path.addPath(lines({{10.5, 0.8}, {10.8, 3.4}, {13.6, 3.2}}));
    return path;
}

/// A rail with a knob to be shifted.
QPainterPath slider(qreal knob, qreal y) {
    constexpr qreal kRadius = 1.7;
    QPainterPath path = lines({{1.5, y}, {knob - kRadius, y}});
    path.addPath(circle(knob, y, kRadius));
    path.addPath(lines({{knob + kRadius, y}, {14.5, y}}));
    return path;
}

QPainterPath pathOf(IconName name) {
    QPainterPath path;
    switch (name) {
    case IconName::Save:
        return disk(16);
    case IconName::SaveAndPreview:
        path = disk(10.5);
        path.addPath(eye(11.2, 12));
        return path;
    case IconName::InsertUrl:
        return chain();
    case IconName::InsertImage:
        path = rectangle(1.5, 2.5, 13, 11);
        path.addPath(circle(5, 6, 1.3));
        path.addPath(lines({{2, 13}, {6.5, 8.5}, {9, 11}, {11.5, 8}, {14.5, 11.5}}));
        return path;
    case IconName::InsertTag:
        path = lines({{5, 4}, {1.5, 8}, {5, 12}});
        path.addPath(lines({{11, 4}, {14.5, 8}, {11, 12}}));
        path.addPath(lines({{9.5, 3}, {6.5, 13}}));
        return path;
    case IconName::PreviewPage:
        path = sheet(2.5, 1.5, 9, 12);
        path.addPath(eye(10.5, 11.5));
        return path;
    case IconName::Refresh:
        return turn();
    case IconName::Back:
        path = lines({{7, 3}, {2, 8}, {7, 13}});
        path.addPath(lines({{2, 8}, {14, 8}}));
        return path;
    case IconName::Forward:
        path = lines({{9, 3}, {14, 8}, {9, 13}});
        path.addPath(lines({{14, 8}, {2, 8}}));
        return path;
    case IconName::Home:
        path = lines({{1.5, 8}, {8, 2}, {14.5, 8}});
        path.addPath(lines({{3.5, 7}, {3.5, 14}, {12.5, 14}, {12.5, 7}}));
        path.addPath(lines({{6.7, 14}, {6.7, 9.5}, {9.3, 9.5}, {9.3, 14}}));
        return path;
    case IconName::Folder:
        return lines({{1.5, 3.5}, {6, 3.5}, {7.5, 5.5}, {14.5, 5.5}, {14.5, 13}, {1.5, 13}}, true);
    case IconName::Shortcut:
        path = circle(8, 8, 6.5);
        path.addEllipse(QPointF(8, 8), 2.8, 6.5);
        path.addPath(lines({{1.5, 8}, {14.5, 8}}));
        return path;
    case IconName::Up:
        path = lines({{3, 7}, {8, 2}, {13, 7}});
        path.addPath(lines({{8, 2}, {8, 14}}));
        return path;
    case IconName::PostBlog:
        path = lines({{1.5, 9.5}, {1.5, 14}, {14.5, 14}, {14.5, 9.5}});
        path.addPath(lines({{4.5, 5.5}, {8, 2}, {11.5, 5.5}}));
        path.addPath(lines({{8, 2}, {8, 11}}));
        return path;
    case IconName::ViewBlog:
        path = rectangle(1.5, 2, 13, 12);
        path.addPath(lines({{1.5, 5}, {14.5, 5}}));
        path.addPath(eye(8, 9.5));
        return path;
    case IconName::ManageBlog:
        path = slider(10.5, 3.5);
        path.addPath(slider(5, 8));
        path.addPath(slider(9, 12.5));
        return path;
    }
    return path;
}

/// Draws at the size that is asked for.
class DrawnIcon : public QIconEngine {
public:
    DrawnIcon(IconName name, const QPalette& palette)
        : m_name(name)
        , m_palette(palette) {}

    void paint(QPainter* painter, const QRect& rectangle, QIcon::Mode mode, QIcon::State) override {
        const qreal side = qMin(rectangle.width(), rectangle.height());
        painter->save();
        painter->setRenderHint(QPainter::Antialiasing);
        painter->translate(QRectF(rectangle).center() - QPointF(side / 2, side / 2));
        painter->scale(side / kGrid, side / kGrid);
        painter->strokePath(pathOf(m_name), QPen(colour(mode), kStroke, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
        painter->restore();
    }

    QPixmap pixmap(const QSize& size, QIcon::Mode mode, QIcon::State state) override {
        QPixmap pixmap(size);
        pixmap.fill(Qt::transparent);
        QPainter painter(&pixmap);
        paint(&painter, QRect(QPoint(), size), mode, state);
        return pixmap;
    }

    QIconEngine* clone() const override { return new DrawnIcon(*this); }

private:
    QColor colour(QIcon::Mode mode) const {
        if (mode == QIcon::Disabled)
            return m_palette.color(QPalette::Disabled, QPalette::ButtonText);
        if (mode == QIcon::Selected)
            return m_palette.color(QPalette::Active, QPalette::HighlightedText);
        return m_palette.color(QPalette::Active, QPalette::ButtonText);
    }

    IconName m_name;
    QPalette m_palette;
};

} // namespace

QIcon programIcon() {
    QIcon icon;
    for (const int side : {16, 24, 32, 48, 64, 128, 256}) {
        QPixmap pixmap(side, side);
        pixmap.fill(Qt::transparent);
        QPainter painter(&pixmap);
        painter.setRenderHint(QPainter::Antialiasing);
        painter.scale(side / kGrid, side / kGrid);
        painter.setPen(Qt::NoPen);
        painter.setBrush(QColor(0x2F, 0x6F, 0x73));
        painter.drawRoundedRect(QRectF(1, 2, 14, 12), 1.5, 1.5);
        painter.setBrush(QColor(0xF6, 0xF4, 0xEE));
        painter.drawRect(QRectF(2.2, 3, 5.3, 10));
        painter.drawRect(QRectF(8.5, 3, 5.3, 10));
        painter.setBrush(QColor(0xC2, 0x66, 0x3D));
        painter.drawPath(lines({{10.5, 2}, {12.5, 2}, {12.5, 8.5}, {11.5, 7.3}, {10.5, 8.5}}, true));
        painter.setPen(QPen(QColor(0x9A, 0xA5, 0xA0), 0.6));
        for (const qreal line : {5.5, 7.5, 9.5})
            painter.drawLine(QPointF(3.2, line), QPointF(6.5, line));
        icon.addPixmap(pixmap);
    }
    return icon;
}

QIcon icon(IconName name, const QPalette& palette) {
    return QIcon(new DrawnIcon(name, palette));
}

} // namespace velloria::desktop
