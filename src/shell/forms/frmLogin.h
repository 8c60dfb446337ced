// The login window: who is to work with this run.
#pragma once

#include <QDialog>

#include <memory>

namespace Ui {
class frmLogin;
}

namespace velloria::shell {

/// Modal. Its variables stay readable after its end.
class frmLogin : public QDialog {
    Q_OBJECT
public:
    /// `previousId` is filled in, the id of the last login.
    explicit frmLogin(const QString& previousId);
    ~frmLogin() override;

    bool IsOK = false; ///< Log-in was pressed
    QString UID;
    QString Password;

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void Btn_Login_Click();

    std::unique_ptr<Ui::frmLogin> ui;
};

} // namespace velloria::shell
