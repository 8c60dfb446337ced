#include "desktop/link_label.h"

#include <QFocusEvent>

namespace velloria::desktop {

LinkLabel::LinkLabel(QWidget* parent)
    : QLabel(parent) {
    setTextInteractionFlags(Qt::LinksAccessibleByKeyboard | Qt::LinksAccessibleByMouse);
}

void LinkLabel::focusInEvent(QFocusEvent* event) {
    QLabel::focusInEvent(event);
    if (event->reason() == Qt::MouseFocusReason)
        return;
    setSelection(0, 0); // or the link that was marked before would be looked behind
    QLabel::focusNextPrevChild(true);
}

/// The toolkit's label would stop before its link as well, and Shift+Tab would find the same link for ever.
bool LinkLabel::focusNextPrevChild(bool next) {
    return QFrame::focusNextPrevChild(next);
}

} // namespace velloria::desktop
