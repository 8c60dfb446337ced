#include "desktop/tool_window.h"

#include "desktop/command.h"
#include "desktop/dialog_size.h"
#include "desktop/window_place.h"

#include <QMdiArea>
#include <QPushButton>
#include <QRadioButton>
#include <QScreen>

using namespace Qt::StringLiterals;

namespace velloria::desktop {

ToolWindow::ToolWindow(Context& context, const QString& name, Blocks blocks, const core::PlaceSettings* settings)
    : QDialog(context.mdi->window())
    , m_context(context)
    , m_settings(settings) {
    setObjectName(name);
    setWindowFlag(Qt::WindowContextHelpButtonHint, false);
    if (blocks == Blocks::MainWindow) {
        setWindowModality(Qt::WindowModal);
        setWindowFlag(Qt::WindowStaysOnTopHint);
    }
}

ToolWindow::~ToolWindow() {
    if (!m_settings || !m_wasShown)
        return;
    WindowPlace place = placeOf(*this, {pos(), size()});
    place.height.reset();
    place.width.reset();
    writePlace(m_context.session, *m_settings, place);
}

void ToolWindow::showWindow() {
    if (!m_wasShown) {
        // With the focus on it, Enter is its own and not OK's.
        if (auto* cancel = findChild<QPushButton*>(u"Btn_Cancel"_s))
            cancel->setAutoDefault(true);
        takeItsPlace();
        m_wasShown = true;
    }
    setWindowState(windowState() & ~Qt::WindowMinimized);
    show();
    raise();
    activateWindow();
}

void ToolWindow::takeItsPlace() {
    const QWidget& mainWindow = *parentWidget();
    const QMargins frame = frameOf(mainWindow);
    const QRect area = mainWindow.screen()->availableGeometry();
    sizeInto(*this, area.size().shrunkBy(frame));
    QRect middle(QPoint(), size().grownBy(frame));
    middle.moveCenter(mainWindow.frameGeometry().center());
    move(movedInto(middle, area).topLeft());
    if (!m_settings)
        return;
    WindowPlace place = readPlace(m_context.session, *m_settings);
    place.height.reset();
    place.width.reset();
    restorePlace(*this, place, frame);
}

bool ToolWindow::focusNextPrevChild(bool next) {
    const bool hasMoved = QDialog::focusNextPrevChild(next);
    const auto* option = qobject_cast<QRadioButton*>(focusWidget());
    if (!hasMoved || !option || option->isChecked())
        return hasMoved;
    for (auto* other : option->parentWidget()->findChildren<QRadioButton*>(Qt::FindDirectChildrenOnly)) {
        if (other->isChecked() && other->isEnabled() && other->group() == option->group())
            other->setFocus(next ? Qt::TabFocusReason : Qt::BacktabFocusReason);
    }
    return hasMoved;
}

void ToolWindow::done(int result) {
    QDialog::done(result);
    parentWidget()->activateWindow();
    if (m_giveBack)
        m_giveBack();
    deleteLater();
}

void ToolWindow::run(const std::function<void()>& action) const {
    runCommand(m_context.desk, action);
}

} // namespace velloria::desktop
