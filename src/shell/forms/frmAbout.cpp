#include "shell/forms/frmAbout.h"

#include "desktop/command.h"
#include "shell/forms/MDIFormTop.h"
#include "ui_frmAbout.h"

using namespace Qt::StringLiterals;

namespace velloria::shell {

frmAbout::frmAbout(desktop::Context& context)
    : QDialog(&context.windows.get<MDIFormTop>())
    , ui(std::make_unique<Ui::frmAbout>()) {
    ui->setupUi(this);
    ui->labelVersion->setText(u"Velloria v"_s + core::kProgramVersion.text());
    connect(ui->Btn_OK, &QPushButton::clicked, this, &QDialog::accept);
    const auto onLink = [this, &context](QLabel* label, void (MDIFormTop::*follow)()) {
        connect(label, &QLabel::linkActivated, this, [this, &context, follow] {
            accept(); // the page comes up in the window behind
            desktop::runCommand(context.desk, [&] { (context.windows.get<MDIFormTop>().*follow)(); });
        });
    };
    onLink(ui->FormAboutLabel, &MDIFormTop::Click_FormAboutLabel);
    onLink(ui->Zelkova, &MDIFormTop::Click_Zelkova);
}

frmAbout::~frmAbout() = default;

} // namespace velloria::shell
