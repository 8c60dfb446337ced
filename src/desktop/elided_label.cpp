#include "desktop/elided_label.h"

#include <QPainter>
#include <QStyle>

namespace velloria::desktop {

ElidedLabel::ElidedLabel(QWidget* parent)
    : QLabel(parent) {
    setTextFormat(Qt::PlainText);
    setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Preferred); // a long text must not widen the window
}

void ElidedLabel::setLine(const QString& text) {
    setText(text);
    setToolTip(text.toHtmlEscaped());
}

void ElidedLabel::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    const QString line = fontMetrics().elidedText(text().simplified(), Qt::ElideRight, contentsRect().width());
    style()->drawItemText(&painter, contentsRect(), int(alignment()), palette(), isEnabled(), line, foregroundRole());
}

} // namespace velloria::desktop
