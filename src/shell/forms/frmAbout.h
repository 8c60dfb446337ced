// Which program this is, and where its maker is found.
#pragma once

#include "desktop/context.h"

#include <QDialog>

#include <memory>

namespace Ui {
class frmAbout;
}

namespace velloria::shell {

class frmAbout : public QDialog {
    Q_OBJECT
public:
    explicit frmAbout(desktop::Context& context);
    ~frmAbout() override;

private:
    std::unique_ptr<Ui::frmAbout> ui;
};

} // namespace velloria::shell
