#include "desktop/combo.h"

#include "desktop/line_box.h"

#include <QHelpEvent>
#include <QKeyEvent>
#include <QStyleOptionComboBox>
#include <QStylePainter>
#include <QToolTip>
#include <QWheelEvent>

using namespace Qt::StringLiterals;

namespace velloria::desktop {

Combo::Combo(QWidget* parent)
    : QComboBox(parent) {
    setInsertPolicy(NoInsert);
}

QSize Combo::minimumSizeHint() const {
    QStyleOptionComboBox option;
    initStyleOption(&option);
    const QFontMetrics metrics = fontMetrics();
    const QSize least(minimumContentsLength() * metrics.horizontalAdvance(u'X'), metrics.height());
    return {style()->sizeFromContents(QStyle::CT_ComboBox, &option, least, this).width(),
            QComboBox::minimumSizeHint().height()};
}

LineBox& Combo::makeEditable() {
    auto* edit = new LineBox(this);
    // Its place among the keys is behind its box: at the end of the window Shift+Tab would come back to the box for
    // ever.
    setTabOrder(this, edit);
    edit->setAccessibleName(accessibleName());
    setLineEdit(edit);
    setCompleter(nullptr); // it would also exchange a typed text for an item that differs in case alone
    return *edit;
}

QRect Combo::field() const {
    QStyleOptionComboBox option;
    initStyleOption(&option);
    return style()
        ->subControlRect(QStyle::CC_ComboBox, &option, QStyle::SC_ComboBoxEditField, this)
        .adjusted(1, 0, -1, 0);
}

/// The tip of a box that ends in "…" begins with the whole text.
bool Combo::event(QEvent* event) {
    const bool isCut = !isEditable() && fontMetrics().horizontalAdvance(currentText()) > field().width();
    if (event->type() != QEvent::ToolTip || !isCut)
        return QComboBox::event(event);
    QStringList lines{currentText().toHtmlEscaped()};
    if (!toolTip().isEmpty())
        lines += toolTip().toHtmlEscaped();
    QToolTip::showText(static_cast<QHelpEvent*>(event)->globalPos(), lines.join("<br>"_L1), this);
    return true;
}

/// As ever, but for "…" where the text is longer than the box.
void Combo::paintEvent(QPaintEvent*) {
    QStylePainter painter(this);
    QStyleOptionComboBox option;
    initStyleOption(&option);
    painter.drawComplexControl(QStyle::CC_ComboBox, option);
    if (currentIndex() < 0 && !isEditable()) {
        option.currentText = placeholderText();
        option.palette.setBrush(QPalette::ButtonText, option.palette.placeholderText());
    }
    option.currentText = fontMetrics().elidedText(option.currentText, Qt::ElideRight, field().width());
    painter.drawControl(QStyle::CE_ComboBoxLabel, option);
}

void Combo::wheelEvent(QWheelEvent* event) {
    event->ignore();
}

void Combo::keyPressEvent(QKeyEvent* event) {
    if (!m_isAction) {
        QComboBox::keyPressEvent(event);
        return;
    }
    switch (event->key()) {
    case Qt::Key_Up:
    case Qt::Key_Down:
    case Qt::Key_PageUp:
    case Qt::Key_PageDown:
    case Qt::Key_Home:
    case Qt::Key_End:
        showPopup();
        return;
    default:
        // Letters look for an item; they find it in the open list.
        if (event->text().isEmpty() || !event->text().front().isPrint())
            QComboBox::keyPressEvent(event);
        else
            showPopup();
    }
}

} // namespace velloria::desktop
