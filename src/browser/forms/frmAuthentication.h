// The window that asks for user and password when a server wants them itself.
#pragma once

#include <QDialog>

#include <memory>

class QUrl;

namespace Ui {
class frmAuthentication;
}

namespace velloria::browser {

struct Login {
    QString user;
    QString password;
};

/// Names the host that asks and what it calls the place. A server's own words are plain text and do not widen the
/// window.
class frmAuthentication : public QDialog {
    Q_OBJECT
public:
    frmAuthentication(const QUrl& address, const QString& realm, QWidget* owner);
    ~frmAuthentication() override;

    void propose(const Login& login);
    Login login() const;

private:
    std::unique_ptr<Ui::frmAuthentication> ui;
};

} // namespace velloria::browser
