#include "shell/forms/frmPassword.h"

#include "shell/forms/password_box.h"
#include "ui_frmPassword.h"

#include <QPointer>

namespace velloria::shell {

frmPassword::frmPassword(const QString& caption, platform::PasswordLines lines, QWidget* parent)
    : QDialog(parent)
    , ui(std::make_unique<Ui::frmPassword>()) {
    ui->setupUi(this);
    setWindowTitle(caption);
    makePasswordBox(*ui->txtPassword);
    makePasswordBox(*ui->txtNewPassword);
    const bool hasConfirmation = lines == platform::PasswordLines::WithConfirmation;
    ui->fields->setRowVisible(ui->txtNewPassword, hasConfirmation);
    connect(ui->Btn_OK, &QPushButton::clicked, this, &frmPassword::Btn_OK_Click);
    connect(ui->Btn_Cancel, &QPushButton::clicked, this, &QDialog::reject);
}

frmPassword::~frmPassword() = default;

void frmPassword::Btn_OK_Click() {
    IsOK = true;
    Password = ui->txtPassword->text();
    NewPassword = ui->txtNewPassword->text();
    accept();
}

std::optional<platform::Passwords> askPasswords(QWidget* owner, const QString& caption, platform::PasswordLines lines) {
    const QPointer<QWidget> behind(owner); // the program may end while the window is open
    const QPointer<frmPassword> window(new frmPassword(caption, lines, owner));
    window->exec();
    std::optional<platform::Passwords> typed;
    if (window && window->IsOK)
        typed = platform::Passwords{window->Password, window->NewPassword};
    delete window;
    if (behind && behind->isVisible()) {
        behind->raise();
        behind->activateWindow();
    }
    return typed;
}

} // namespace velloria::shell
