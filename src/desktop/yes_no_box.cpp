#include "desktop/yes_no_box.h"

#include <QCloseEvent>
#include <QKeyEvent>

using namespace Qt::StringLiterals;

namespace velloria::desktop {

QString shownText(const QString& text) {
    return QString(text).replace("\r\n"_L1, "\n"_L1);
}

YesNoBox::YesNoBox(const QString& title, const QString& text, QWidget* owner)
    : QMessageBox(QMessageBox::Question, title, shownText(text), QMessageBox::Yes | QMessageBox::No, owner) {
    setTextFormat(Qt::PlainText);
    setDefaultButton(QMessageBox::Yes);
    setWindowFlags((windowFlags() | Qt::CustomizeWindowHint) & ~Qt::WindowCloseButtonHint);
}

bool YesNoBox::isYes() {
    return exec() == QMessageBox::Yes;
}

void YesNoBox::keyPressEvent(QKeyEvent* event) {
    if (event->key() == Qt::Key_Escape) {
        event->accept();
        return;
    }
    QMessageBox::keyPressEvent(event);
}

void YesNoBox::closeEvent(QCloseEvent* event) {
    event->ignore();
}

} // namespace velloria::desktop
