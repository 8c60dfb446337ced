// The window that asks for a password.
#pragma once

#include "platform/desk.h"

#include <QDialog>

#include <memory>

namespace Ui {
class frmPassword;
}

namespace velloria::shell {

/// Modal. Its variables stay readable after its end.
class frmPassword : public QDialog {
    Q_OBJECT
public:
    /// The second line is for typing the password again; with one line it is not shown.
    frmPassword(const QString& caption, platform::PasswordLines lines, QWidget* parent);
    ~frmPassword() override;

    bool IsOK = false; ///< OK was pressed
    QString Password;
    QString NewPassword; ///< the second line, "" without one

private:
    void Btn_OK_Click();

    std::unique_ptr<Ui::frmPassword> ui;
};

/// Shows the window over the one that asks, which has the keyboard again after it; nothing when it is cancelled.
std::optional<platform::Passwords> askPasswords(QWidget* owner, const QString& caption, platform::PasswordLines lines);

} // namespace velloria::shell
