#include "browser/forms/frmAuthentication.h"

#include "ui_frmAuthentication.h"

#include <QUrl>

using namespace Qt::StringLiterals;

namespace velloria::browser {
namespace {

constexpr qsizetype kMostOfARealm = 300;

/// Whole, since its end says whose it is; a long one goes on below.
QString hostOf(const QUrl& address) {
    const QString host = address.host().replace(u'.', u".\u200b"_s);
    return address.port() < 0 ? host : u"%1:%2"_s.arg(host).arg(address.port());
}

} // namespace

frmAuthentication::frmAuthentication(const QUrl& address, const QString& realm, QWidget* owner)
    : QDialog(owner)
    , ui(std::make_unique<Ui::frmAuthentication>()) {
    ui->setupUi(this);
    ui->lblHost->setText(hostOf(address));
    ui->lblRealm->setLine(realm.simplified().left(kMostOfARealm));
    ui->boxes->setRowVisible(ui->lblRealm, !realm.isEmpty());
    connect(ui->Btn_OK, &QPushButton::clicked, this, &QDialog::accept);
    connect(ui->Btn_Cancel, &QPushButton::clicked, this, &QDialog::reject);
}

frmAuthentication::~frmAuthentication() = default;

/// The keyboard comes where something is missing.
void frmAuthentication::propose(const Login& login) {
    ui->txtUser->setText(login.user);
    ui->txtPassword->setText(login.password);
    if (login.user.isEmpty())
        ui->txtUser->setFocus();
    else if (login.password.isEmpty())
        ui->txtPassword->setFocus();
    else
        ui->Btn_OK->setFocus();
}

Login frmAuthentication::login() const {
    return {ui->txtUser->text(), ui->txtPassword->text()};
}

} // namespace velloria::browser
