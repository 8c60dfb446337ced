#include "desktop/input_block.h"

#include <QApplication>
#include <QDialog>
#include <QScopedValueRollback>
#include <QTimer>
#include <QWindow>

#include <algorithm>

namespace velloria::desktop {
namespace {

// The objects of the browser engine bring no type information that a sanitizer could read.

[[gnu::no_sanitize("vptr")]] const QWidget* windowOf(const QObject& object) {
    if (object.isWidgetType())
        return static_cast<const QWidget&>(object).window();
    if (!object.isWindowType())
        return nullptr;
    for (const QWidget* window : QApplication::topLevelWidgets()) {
        if (window->windowHandle() == &object)
            return window;
    }
    return nullptr;
}

[[gnu::no_sanitize("vptr")]] std::vector<QPointer<QWidget>> visibleWindows() {
    std::vector<QPointer<QWidget>> windows;
    for (QWidget* window : QApplication::topLevelWidgets()) {
        if (window->isVisible())
            windows.emplace_back(window);
    }
    return windows;
}

[[gnu::no_sanitize("vptr")]] const QWidget* windowBelow(const QWidget& window) {
    return window.parentWidget() ? window.parentWidget()->window() : nullptr;
}

} // namespace

InputBlock::InputBlock(QWidget* mainWindow)
    : m_mainWindow(mainWindow)
    , m_before(visibleWindows()) {
    qApp->installEventFilter(this);
}

InputBlock::~InputBlock() {
    dropWaiting();
    if (m_isCloseWanted && m_mainWindow)
        QTimer::singleShot(0, m_mainWindow, &QWidget::close);
}

void InputBlock::serve() {
    pump([] {
        QCoreApplication::processEvents(QEventLoop::ExcludeUserInputEvents | QEventLoop::ExcludeSocketNotifiers);
    });
}

void InputBlock::dropWaiting() {
    constexpr int kLongestMs = 50; // a timer that is always due must not hold this up
    pump([] { QCoreApplication::processEvents(QEventLoop::ExcludeSocketNotifiers, kLongestMs); });
}

void InputBlock::pump(const std::function<void()>& processEvents) {
    const QScopedValueRollback pumping(m_isPumping, true);
    processEvents();
}

bool InputBlock::eventFilter(QObject* watched, QEvent* event) {
    switch (event->type()) {
    case QEvent::SockAct:
        // Not every event loop of the toolkit knows how to leave them out. What a child process sends is read by the
        // work alone. A box serves them: behind it somebody may end the machine.
        return m_isPumping && !QApplication::activeModalWidget();
    case QEvent::Close:
    case QEvent::KeyPress:
    case QEvent::KeyRelease:
    case QEvent::Shortcut:
    case QEvent::ShortcutOverride:
    case QEvent::InputMethod:
    case QEvent::MouseButtonPress:
    case QEvent::MouseButtonRelease:
    case QEvent::MouseButtonDblClick:
    case QEvent::MouseMove:
    case QEvent::Wheel:
    case QEvent::ContextMenu:
    case QEvent::TouchBegin:
    case QEvent::TouchUpdate:
    case QEvent::TouchEnd:
    case QEvent::TouchCancel:
    case QEvent::TabletPress:
    case QEvent::TabletMove:
    case QEvent::TabletRelease:
    case QEvent::NativeGesture:
    case QEvent::DragEnter:
    case QEvent::DragMove:
    case QEvent::DragLeave:
    case QEvent::Drop:
        return !mayReach(*watched) && drop(*watched, *event);
    default:
        return false;
    }
}

/// What belongs to no window is no one's input.
bool InputBlock::mayReach(const QObject& watched) const {
    const QWidget* window = windowOf(watched);
    return window && isLaterBox(*window);
}

/// Or a menu or a list that such a box has opened.
bool InputBlock::isLaterBox(const QWidget& window) const {
    const bool isThere = std::ranges::any_of(m_before, [&](const auto& before) { return before == &window; });
    if (isThere)
        return false;
    const QWidget* below = windowBelow(window);
    return qobject_cast<const QDialog*>(&window) || (below && isLaterBox(*below));
}

bool InputBlock::drop(const QObject& watched, QEvent& event) {
    if (event.type() == QEvent::Close)
        m_isCloseWanted = m_isCloseWanted || windowOf(watched) == m_mainWindow;
    // A key that nobody takes would be tried as a shortcut.
    event.setAccepted(event.type() == QEvent::ShortcutOverride);
    return true;
}

} // namespace velloria::desktop
