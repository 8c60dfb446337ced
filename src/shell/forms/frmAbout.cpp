#include "shell/forms/frmAbout.h"

#include "desktop/command.h"
#include "shell/forms/maker_pages.h"
#include "ui_frmAbout.h"

#include <QMdiArea>

using namespace Qt::StringLiterals;

namespace velloria::shell {

frmAbout::frmAbout(desktop::Context& context)
    : QDialog(context.mdi->window())
    , ui(std::make_unique<Ui::frmAbout>()) {
    ui->setupUi(this);
    ui->labelVersion->setText(u"Velloria v"_s + core::kProgramVersion.text());
    connect(ui->Btn_OK, &QPushButton::clicked, this, &QDialog::accept);
    const auto onLink = [this, &context](QLabel* label, void (*follow)(desktop::Context&)) {
        connect(label, &QLabel::linkActivated, this, [this, &context, follow] {
            accept(); // the page comes up in the window behind
            desktop::runCommand(context.desk, [&] { follow(context); });
        });
    };
    onLink(ui->FormAboutLabel, &Click_FormAboutLabel);
    onLink(ui->Zelkova, &Click_Zelkova);
}

frmAbout::~frmAbout() = default;

} // namespace velloria::shell
