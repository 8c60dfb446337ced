#include "desktop/form_keys.h"

#include <QCoreApplication>
#include <QKeyEvent>
#include <QKeySequence>

using namespace Qt::StringLiterals;

namespace velloria::desktop {
namespace {

/// The widgets of the browser engine bring no type information that the checked downcast of a sanitizer could read.
[[gnu::no_sanitize("vptr")]] const QWidget* widgetOf(QObject* object) {
    return object->isWidgetType() ? static_cast<QWidget*>(object) : nullptr;
}

} // namespace

/// Filters all events of the program: the area of the child windows does so too, to change the window with Ctrl+Tab,
/// and the filter that was made last is asked first.
FormKeys::FormKeys(QWidget& window)
    : QObject(&window)
    , m_window(window) {
    QCoreApplication::instance()->installEventFilter(this);
}

void FormKeys::add(QKeyCombination keys, std::function<void()> action) {
    m_keys.push_back({keys, std::move(action)});
}

bool FormKeys::eventFilter(QObject* watched, QEvent* event) {
    if (event->type() != QEvent::ShortcutOverride && event->type() != QEvent::KeyPress)
        return false;
    const QWidget* control = widgetOf(watched);
    if (!control || (control != &m_window && !m_window.isAncestorOf(control)))
        return false;
    const auto& key = *static_cast<QKeyEvent*>(event);
    const QKeyCombination pressed(key.modifiers() & ~Qt::KeypadModifier, Qt::Key(key.key()));
    for (const Key& own : m_keys) {
        if (own.keys != pressed)
            continue;
        event->accept();
        if (event->type() == QEvent::KeyPress)
            own.action();
        return true;
    }
    return false;
}

QString tipWithKeys(const QString& tip, const QString& keys) {
    return u"%1 (%2)"_s.arg(tip, QKeySequence(keys).toString(QKeySequence::NativeText));
}

} // namespace velloria::desktop
