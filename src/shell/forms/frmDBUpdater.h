// The window of a database update.
#pragma once

#include "desktop/context.h"

#include <QWidget>

#include <memory>

namespace Ui {
class frmDBUpdater;
}

namespace velloria::shell {

/// Shows what it is told, and does nothing of its own. It takes no keyboard: that stays where somebody was writing.
/// Before the main window is there, it stands in the middle of the screen.
class frmDBUpdater : public QWidget {
    Q_OBJECT
public:
    explicit frmDBUpdater(desktop::Context& context);
    ~frmDBUpdater() override;

    void display(const platform::UpdaterWindow& shown);

private:
    void showInTheMiddle();

    std::unique_ptr<Ui::frmDBUpdater> ui;
};

} // namespace velloria::shell
