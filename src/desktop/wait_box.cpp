#include "desktop/wait_box.h"

#include "platform/waiting.h"

#include <QApplication>
#include <QKeyEvent>

#include <utility>

using namespace Qt::StringLiterals;

namespace velloria::desktop {
namespace {

constexpr std::chrono::milliseconds kShortWait{400};
constexpr std::chrono::milliseconds kEndOfWait{200};
constexpr std::chrono::milliseconds kMoment{20};

} // namespace

WaitBox::WaitBox() {
    m_end.setSingleShot(true);
    m_end.setInterval(kEndOfWait);
    connect(&m_end, &QTimer::timeout, this, &WaitBox::end);
    m_handOver.setInterval(kMoment);
    connect(&m_handOver, &QTimer::timeout, this, &WaitBox::handOver);
    qApp->installEventFilter(this);
}

void WaitBox::end() {
    m_end.stop();
    const QMessageBox* box = m_box;
    m_box.clear(); // what it sends on its way out finds no half of it
    delete box;
}

bool WaitBox::eventFilter(QObject* watched, QEvent* event) {
    if (event->type() == platform::Waiting::kType) {
        ++m_depth;
        serve(static_cast<platform::Waiting&>(*event));
        --m_depth;
        return true;
    }
    if (!isTypedAhead(*watched, *event))
        return false;
    m_typed.emplace_back(event->clone());
    m_handOver.start();
    return true;
}

/// Whoever writes without a look at the screen must not lose a word to the box, nor press its button with a blank.
bool WaitBox::isTypedAhead(const QObject& watched, const QEvent& event) const {
    const bool isKey = event.type() == QEvent::KeyPress || event.type() == QEvent::KeyRelease;
    if (!isKey || !m_box || !m_writer || !watched.isWidgetType())
        return false;
    const auto& widget = static_cast<const QWidget&>(watched);
    return widget.window() == m_box && static_cast<const QKeyEvent&>(event).key() != Qt::Key_Escape;
}

/// A change of the text while a command is at work would pass for a part of what that has saved.
void WaitBox::handOver() {
    const QWidget* modal = QApplication::activeModalWidget();
    if (m_depth > 0 || m_box || (modal && m_writer && modal != m_writer->window()))
        return;
    m_handOver.stop();
    const std::vector<std::unique_ptr<QEvent>> typed = std::exchange(m_typed, {});
    for (const std::unique_ptr<QEvent>& event : typed) {
        if (m_writer)
            QCoreApplication::sendEvent(m_writer, event.get());
    }
}

void WaitBox::serve(platform::Waiting& waiting) {
    if (waiting.waited < kShortWait) {
        QCoreApplication::processEvents(QEventLoop::ExcludeUserInputEvents);
        return;
    }
    if (!m_box) {
        if (QWidget* writer = QApplication::focusWidget())
            m_writer = writer;
        m_box = new QMessageBox(QMessageBox::NoIcon, u"Velloria"_s, waiting.what + u"\n使い終わるのを待っています..."_s,
                                QMessageBox::Cancel, QApplication::activeWindow());
        m_box->setTextFormat(Qt::PlainText);
        m_box->setModal(true);
        m_box->show();
    }
    m_end.stop();
    const QPointer<QMessageBox> box = m_box;
    QCoreApplication::processEvents();
    waiting.isGivenUp = box && box->isHidden();
    if (waiting.isGivenUp)
        end();
    else
        m_end.start();
}

} // namespace velloria::desktop
