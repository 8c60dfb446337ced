#include "desktop/mdi_child.h"

#include "desktop/command.h"

#include <QAction>
#include <QCloseEvent>
#include <QMdiArea>
#include <QMenu>
#include <QScrollArea>

namespace velloria::desktop {

MdiChild::MdiChild(Context& context, const QString& name)
    : m_context(context) {
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

void MdiChild::place(const QRect& geometry) {
    if (isMinimized() || isMaximized())
        showNormal();
    setGeometry(geometry);
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
