#include "shell/forms/frmLogin.h"

#include "shell/forms/password_box.h"
#include "ui_frmLogin.h"

#include <QKeyEvent>

namespace velloria::shell {

frmLogin::frmLogin(const QString& previousId)
    : ui(std::make_unique<Ui::frmLogin>()) {
    ui->setupUi(this);
    makePasswordBox(*ui->txtPassword);
    ui->txtUID->setText(previousId);
    (previousId.isEmpty() ? ui->txtUID : ui->txtPassword)->setFocus();
    // The hint keeps its place while it is not seen, so that nothing moves when it comes.
    QSizePolicy keepsPlace = ui->labelCapsLock->sizePolicy();
    keepsPlace.setRetainSizeWhenHidden(true);
    ui->labelCapsLock->setSizePolicy(keepsPlace);
    ui->labelCapsLock->hide();
    ui->txtPassword->installEventFilter(this);
    connect(ui->Btn_Login, &QPushButton::clicked, this, &frmLogin::Btn_Login_Click);
    connect(ui->Btn_Cancel, &QPushButton::clicked, this, &QDialog::reject);
}

frmLogin::~frmLogin() = default;

void frmLogin::Btn_Login_Click() {
    IsOK = true;
    UID = ui->txtUID->text();
    Password = ui->txtPassword->text();
    accept();
}

/// The toolkit does not tell the lock itself: a letter whose case is not what the shift key asks for gives it away.
bool frmLogin::eventFilter(QObject* watched, QEvent* event) {
    if (watched == ui->txtPassword && event->type() == QEvent::KeyPress) {
        const auto* key = static_cast<QKeyEvent*>(event);
        const QChar letter = key->text().isEmpty() ? QChar() : key->text().front();
        if (letter.isLetter() && letter.toUpper() != letter.toLower())
            ui->labelCapsLock->setVisible(letter.isUpper() != key->modifiers().testFlag(Qt::ShiftModifier));
    }
    return QDialog::eventFilter(watched, event);
}

} // namespace velloria::shell
