#include "editor/forms/empty_page.h"

#include <QApplication>
#include <QKeyEvent>
#include <QWidget>

#include <memory>
#include <utility>

namespace velloria::editor {
namespace {

/// The left button, or a key that writes something.
bool isMeant(const QEvent& event) {
    if (event.type() == QEvent::MouseButtonPress)
        return static_cast<const QMouseEvent&>(event).button() == Qt::LeftButton;
    if (event.type() != QEvent::KeyPress)
        return false;
    const auto& key = static_cast<const QKeyEvent&>(event);
    const bool isCommand = key.modifiers() & (Qt::ControlModifier | Qt::AltModifier | Qt::MetaModifier);
    return !isCommand && !key.text().isEmpty() && key.text().front().isPrint();
}

} // namespace

EmptyPage::EmptyPage(QObject* parent, std::function<bool()> isEmpty, std::function<bool()> write)
    : QObject(parent)
    , m_isEmpty(std::move(isEmpty))
    , m_write(std::move(write)) {}

bool EmptyPage::eventFilter(QObject* watched, QEvent* event) {
    // What the page is told on its way out comes when whoever could answer is gone.
    if (!isMeant(*event) || !m_isEmpty())
        return QObject::eventFilter(watched, event);
    std::unique_ptr<QEvent> key(event->type() == QEvent::KeyPress ? event->clone() : nullptr);
    const bool takesKey = m_write();
    QWidget* focused = QApplication::focusWidget();
    if (key && focused && takesKey)
        QCoreApplication::postEvent(focused, key.release());
    return true;
}

} // namespace velloria::editor
