#include "support/desktop_home.h"

#include <QApplication>

namespace velloria::tests {

DesktopHome::DesktopHome()
    : context{run} {
    // The clock may be replaced by startAt; the windows keep the one they were made with.
    top();
}

DesktopHome::~DesktopHome() {
    tidyUp(context, home);
}

void DesktopHome::showTop() {
    top().resize(1100, 800);
    top().show();
    EXPECT_TRUE(becomesVisible(top()));
    top().activateWindow();
    EXPECT_TRUE(becomesActive(top()));
}

QString DesktopHome::panel() const {
    const QStringList texts = desk.texts(QStringLiteral("status"));
    return texts.isEmpty() ? QString() : texts.last();
}

void tidyUp(desktop::Context& context, QTemporaryDir& home) {
    context.windows.closeAll();
    EXPECT_TRUE(waitFor([&] { return home.remove(); }));
    QTimer::singleShot(0, [] { QCoreApplication::exit(); });
    QApplication::exec();
}

bool becomesActive(QWidget& window) {
    constexpr int kQuietMs = 40;
    return waitFor([&] {
        if (window.isActiveWindow())
            QTest::qWait(kQuietMs);
        return window.isActiveWindow();
    });
}

QMessageBox* visibleBox() {
    for (QWidget* window : QApplication::topLevelWidgets()) {
        auto* box = qobject_cast<QMessageBox*>(window);
        if (box && box->isVisible())
            return box;
    }
    return nullptr;
}

void settle() {
    QCoreApplication::sendPostedEvents();
    QCoreApplication::processEvents();
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
}

} // namespace velloria::tests
