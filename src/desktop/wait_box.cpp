#include "desktop/wait_box.h"

#include "platform/waiting.h"

#include <QApplication>

using namespace Qt::StringLiterals;

namespace velloria::desktop {
namespace {

constexpr std::chrono::milliseconds kShortWait{400};
constexpr std::chrono::milliseconds kEndOfWait{200};

} // namespace

WaitBox::WaitBox() {
    m_end.setSingleShot(true);
    m_end.setInterval(kEndOfWait);
    connect(&m_end, &QTimer::timeout, this, &WaitBox::end);
    qApp->installEventFilter(this);
}

void WaitBox::end() {
    m_end.stop();
    delete m_box;
}

bool WaitBox::eventFilter(QObject*, QEvent* event) {
    if (event->type() != platform::Waiting::kType)
        return false;
    serve(static_cast<platform::Waiting&>(*event));
    return true;
}

void WaitBox::serve(platform::Waiting& waiting) {
    if (waiting.waited < kShortWait) {
        QCoreApplication::processEvents(QEventLoop::ExcludeUserInputEvents);
        return;
    }
    if (!m_box) {
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
