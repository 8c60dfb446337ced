#include "desktop/wait_box.h"

#include "platform/waiting.h"

#include <QApplication>
#include <QKeyEvent>
#include <QWindow>

using namespace Qt::StringLiterals;

namespace velloria::desktop {
namespace {

constexpr std::chrono::milliseconds kShortWait{400};
constexpr std::chrono::milliseconds kEndOfWait{200};
constexpr std::chrono::milliseconds kMoment{20};
constexpr std::chrono::milliseconds kTypingPause{1000};
constexpr std::chrono::milliseconds kLongestText{30'000}; ///< that is typed without a pause

// The objects of the browser engine bring no type information that a sanitizer could read.

[[gnu::no_sanitize("vptr")]] bool isScreenWindow(const QObject& object) {
    return object.isWindowType();
}

[[gnu::no_sanitize("vptr")]] bool takesText(const QWidget& control) {
    return control.testAttribute(Qt::WA_InputMethodEnabled);
}

[[gnu::no_sanitize("vptr")]] const QWidget* windowOf(const QWidget& control) {
    return control.window();
}

bool isFailureBox(const QWidget& window) {
    const auto* box = qobject_cast<const QMessageBox*>(&window);
    return box && box->icon() == QMessageBox::Critical;
}

} // namespace

WaitBox::WaitBox() {
    m_end.setSingleShot(true);
    m_end.setInterval(kEndOfWait);
    connect(&m_end, &QTimer::timeout, this, &WaitBox::end);
    m_handOver.setInterval(kMoment);
    connect(&m_handOver, &QTimer::timeout, this, &WaitBox::handOver);
    qApp->installEventFilter(this);
}

void WaitBox::makeWay() {
    m_end.stop();
    QElapsedTimer sinceAsked;
    sinceAsked.start();
    ++m_depth;
    while (m_box && m_box->isVisible() && !m_typed.empty() && !m_sinceTyped.hasExpired(kTypingPause.count()) &&
           !sinceAsked.hasExpired(kLongestText.count()))
        QCoreApplication::processEvents(QEventLoop::AllEvents | QEventLoop::WaitForMoreEvents);
    --m_depth;
    end();
}

/// The wait is over, which else shows a moment later.
void WaitBox::end() {
    m_end.stop();
    if (!m_box)
        return;
    m_sinceTyped.start();
    const QMessageBox* box = m_box;
    m_box.clear(); // what it sends on its way out finds no half of it
    delete box;
}

bool WaitBox::eventFilter(QObject* watched, QEvent* event) {
    if (event->type() == platform::Waiting::kType) {
        serve(static_cast<platform::Waiting&>(*event));
        return true;
    }
    switch (event->type()) {
    case QEvent::ShortcutOverride:
    case QEvent::KeyPress:
    case QEvent::KeyRelease:
        return holdKey(*watched, *static_cast<QKeyEvent*>(event));
    case QEvent::InputMethod:
        if (!isWaiting() || watched != m_writer)
            return false;
        hold(*event);
        return true;
    default:
        return blocks(*watched, *event);
    }
}

/// The box is no modal one: of what is typed into a window behind such a box nobody hears.
bool WaitBox::blocks(const QObject& watched, QEvent& event) const {
    if (!m_box || !isScreenWindow(watched) || &watched == m_box->windowHandle())
        return false;
    switch (event.type()) {
    case QEvent::MouseButtonPress:
    case QEvent::MouseButtonDblClick:
    case QEvent::Wheel:
    case QEvent::TouchBegin:
    case QEvent::TabletPress:
    case QEvent::DragEnter:
    case QEvent::DragMove:
    case QEvent::Drop:
    case QEvent::Close:
        event.ignore();
        return true;
    default:
        return false;
    }
}

/// The window that has come over the text meanwhile.
const QWidget* WaitBox::cover() const {
    const QWidget* modal = QApplication::activeModalWidget();
    return m_writer && modal && modal != windowOf(*m_writer) ? modal : nullptr;
}

/// After the wait too, until what was typed earlier is in its place. A box that comes up in the middle of a word is
/// answered once the writer has paused.
bool WaitBox::holdsKeys() const {
    if (isWaiting())
        return true;
    const QWidget* window = cover();
    if (!window)
        return !m_typed.empty();
    return (!m_typed.empty() || isFailureBox(*window)) && m_sinceTyped.isValid() &&
           !m_sinceTyped.hasExpired(kTypingPause.count());
}

/// As it comes from the screen, before all that has keys of its own.
bool WaitBox::holdKey(const QObject& watched, QKeyEvent& event) {
    if (!holdsKeys())
        return false;
    if (event.type() == QEvent::ShortcutOverride) {
        event.accept(); // else a shortcut of the menus would start the next command now
        return true;
    }
    if (!isScreenWindow(watched))
        return false;
    if (event.key() == Qt::Key_Escape) {
        if (m_box && event.type() == QEvent::KeyPress)
            m_box->reject();
    } else {
        hold(event);
    }
    return true;
}

void WaitBox::hold(const QEvent& event) {
    m_typed.emplace_back(event.clone());
    m_sinceTyped.start();
    m_handOver.start();
}

/// A change of the text while a command is at work would pass for a part of what that has saved.
void WaitBox::handOver() {
    while (!m_typed.empty()) {
        if (isWaiting() || cover())
            return;
        const std::unique_ptr<QEvent> event = std::move(m_typed.front());
        m_typed.pop_front();
        // A blank or Enter on a button would be its command once more.
        if (m_writer && takesText(*m_writer))
            QCoreApplication::sendEvent(m_writer, event.get());
    }
    m_handOver.stop();
}

void WaitBox::serve(platform::Waiting& waiting) {
    if (!isWaiting() && m_typed.empty())
        m_writer = QApplication::focusWidget();
    ++m_depth;
    if (waiting.waited < kShortWait) {
        QCoreApplication::processEvents(QEventLoop::ExcludeUserInputEvents);
    } else {
        if (!m_box)
            show(waiting.what);
        m_end.stop();
        const QPointer<QMessageBox> box = m_box;
        QCoreApplication::processEvents();
        waiting.isGivenUp = box && box->isHidden();
        if (waiting.isGivenUp)
            end();
        else
            m_end.start();
    }
    --m_depth;
}

void WaitBox::show(const QString& what) {
    m_box = new QMessageBox(QMessageBox::NoIcon, u"Velloria"_s, what + u"\n使い終わるのを待っています..."_s,
                            QMessageBox::Cancel, QApplication::activeWindow());
    m_box->setTextFormat(Qt::PlainText);
    m_box->setModal(false);
    // The keyboard stays where it is: an input method would drop what it is composing.
    m_box->setWindowFlag(Qt::WindowDoesNotAcceptFocus);
    m_box->setAttribute(Qt::WA_ShowWithoutActivating);
    m_box->show();
}

} // namespace velloria::desktop
