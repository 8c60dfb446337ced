// The user manager: makes and changes the accounts of the people who share the program.
#pragma once

#include "desktop/tool_window.h"
#include "shell/user_accounts.h"

#include <memory>

class QPushButton;
namespace Ui {
class frmUserManager;
}

namespace velloria::shell {

/// What its buttons may do is decided when it opens: after the first user it is opened again for the rest.
class frmUserManager : public desktop::ToolWindow {
    Q_OBJECT
public:
    /// Throws platform::Failure when the user file can't be read.
    explicit frmUserManager(desktop::Context& context);
    ~frmUserManager() override;

private:
    using Command = void (*)(UserAccounts& accounts, const QString& selected);

    void onClick(QPushButton* button, Command command);
    void fillUsers();

    std::unique_ptr<Ui::frmUserManager> ui;
};

} // namespace velloria::shell
