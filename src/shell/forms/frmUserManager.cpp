#include "shell/forms/frmUserManager.h"

#include "ui_frmUserManager.h"

#include <QPointer>

namespace velloria::shell {

frmUserManager::frmUserManager(desktop::Context& context)
    : ToolWindow(context, QStringLiteral("frmUserManager"), Blocks::Nothing)
    , ui(std::make_unique<Ui::frmUserManager>()) {
    ui->setupUi(this);
    const bool hasUsers = Users(context.session.MyPath).exist();
    for (QPushButton* button : {ui->Btn_DeleteUser, ui->Btn_ChangeUserPath, ui->Btn_SingleToComplex})
        button->setEnabled(hasUsers);
    ui->Btn_ChangePassword->setEnabled(hasUsers && !context.session.UserID.isEmpty());
    fillUsers();
    onClick(ui->Btn_MakeUser, [](UserAccounts& accounts, const QString&) { accounts.makeUser(); });
    onClick(ui->Btn_ChangePassword, [](UserAccounts& accounts, const QString&) { accounts.changePassword(); });
    onClick(ui->Btn_DeleteUser, [](UserAccounts& accounts, const QString& id) { accounts.deleteUser(id); });
    onClick(ui->Btn_ChangeUserPath, [](UserAccounts& accounts, const QString& id) { accounts.changePath(id); });
    onClick(ui->Btn_SingleToComplex,
            [](UserAccounts& accounts, const QString& id) { accounts.takeSingleUserData(id); });
    connect(ui->Btn_OK, &QPushButton::clicked, this, &QDialog::accept);
}

frmUserManager::~frmUserManager() = default;

void frmUserManager::onClick(QPushButton* button, Command command) {
    connect(button, &QPushButton::clicked, this, [this, command] {
        const QPointer<frmUserManager> window(this); // the program may end while a box is open
        run([this, command] {
            UserAccounts accounts(m_context);
            command(accounts, ui->txtUID->currentText());
        });
        // Also after a failure or a refusal: what they leave may be another list.
        if (window)
            run([this] { fillUsers(); });
    });
}

/// Nobody is selected at first: what the buttons do is done to nobody by accident.
void frmUserManager::fillUsers() {
    const QString selected = ui->txtUID->currentText();
    ui->txtUID->clear();
    ui->txtUID->addItems(Users(m_context.session.MyPath).ids());
    ui->txtUID->setCurrentIndex(
        selected.isEmpty() ? -1 : ui->txtUID->findText(selected, Qt::MatchExactly | Qt::MatchCaseSensitive));
}

} // namespace velloria::shell
