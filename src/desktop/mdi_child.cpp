#include "desktop/mdi_child.h"

#include "desktop/command.h"

#include <QAction>
#include <QCloseEvent>
#include <QMdiArea>
#include <QMenu>
#include <QScrollArea>

namespace velloria::desktop {

MdiChild::MdiChild(Context& context, const QString& name)
    : m_context(context)
    , m_largest(QWIDGETSIZE_MAX, QWIDGETSIZE_MAX) {
    setObjectName(name);
    setAttribute(Qt::WA_DeleteOnClose, false);
    // Ctrl+W in the system menu would close the window that somebody writes in.
    if (QMenu* menu = systemMenu()) {
        for (QAction* action : menu->actions())
            action->setShortcuts(QList<QKeySequence>());
    }
    context.mdi->addSubWindow(this);
    hide();
}

void MdiChild::setContents(QWidget* contents) {
    m_contents = contents;
    auto* area = new QScrollArea;
    area->setFrameShape(QFrame::NoFrame);
    area->setWidgetResizable(true);
    area->setFocusPolicy(Qt::NoFocus);
    area->setWidget(contents);
    area->setMinimumSize(1, 1);
    setWidget(area);
}

void MdiChild::showChild() {
    if (widget())
        widget()->show();
    if (isMinimized())
        showNormal();
    show();
    m_context.mdi->setActiveSubWindow(this);
}

void MdiChild::becomeNormal() {
    if (isMinimized() || isMaximized())
        showNormal();
}

void MdiChild::place(const QRect& geometry) {
    becomeNormal();
    setGeometry(geometry);
}

QSize MdiChild::neededContents() const {
    return m_contents->minimumSizeHint();
}

QSize MdiChild::neededSize() const {
    return neededContents().grownBy(contentsMargins());
}

void MdiChild::keepWithin(const QSize& least, const QSize& largest) {
    m_least = least;
    m_largest = largest;
    applyLimits();
}

/// A maximised window fills the area and a minimised one is a title bar, whatever the limits.
void MdiChild::applyLimits() {
    const bool isNormal = !isMinimized() && !isMaximized();
    setMinimumSize(isNormal ? m_least : QSize(0, 0));
    setMaximumSize(isNormal ? m_largest : QSize(QWIDGETSIZE_MAX, QWIDGETSIZE_MAX));
}

void MdiChild::changeEvent(QEvent* event) {
    if (event->type() == QEvent::WindowStateChange)
        applyLimits();
    QMdiSubWindow::changeEvent(event);
}

QRect MdiChild::normalPlace() const {
    return isMaximized() || isMinimized() || isShaded() ? m_normalPlace : geometry();
}

void MdiChild::moveEvent(QMoveEvent* event) {
    QMdiSubWindow::moveEvent(event);
    rememberPlace();
}

void MdiChild::resizeEvent(QResizeEvent* event) {
    QMdiSubWindow::resizeEvent(event);
    rememberPlace();
}

void MdiChild::rememberPlace() {
    m_normalPlace = normalPlace();
}

void MdiChild::closeEvent(QCloseEvent* event) {
    event->ignore();
    runCommand(m_context.desk, [this] {
        if (mayHide())
            hide();
    });
}

} // namespace velloria::desktop
