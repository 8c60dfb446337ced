#include "exchange/forms/frmExportCust.h"

#include "core/keys.h"
#include "core/settings.h"
#include "core/settings_change.h"
#include "site/customize_sets.h"
#include "ui_frmExportCust.h"

#include <QApplication>
#include <QPointer>

using namespace Qt::StringLiterals;

namespace velloria::exchange {

namespace keys = core::keys;

frmExportCust::frmExportCust(desktop::Context& context)
    : ToolWindow(context, u"frmExportCust"_s, Blocks::Nothing, &keys::kExportCustFilePlace)
    , ui(std::make_unique<Ui::frmExportCust>()) {
    ui->setupUi(this);
    fill();
    connect(ui->Btn_Exec, &QPushButton::clicked, this, [this] { run([this] { Btn_Exec_Click(); }); });
    connect(ui->Btn_Cancel, &QPushButton::clicked, this, &QDialog::reject);
}

frmExportCust::~frmExportCust() = default;

void frmExportCust::fill() {
    ui->cmbCustomize->addItems(site::allCustomizeSets(m_context.session));
    const QString selected = site::selectedCustomizeSet(m_context.session);
    ui->cmbCustomize->setCurrentIndex(ui->cmbCustomize->findText(selected, Qt::MatchFixedString));
    const auto allow = [this] { ui->Btn_Exec->setEnabled(ui->cmbCustomize->currentIndex() >= 0); };
    connect(ui->cmbCustomize, &QComboBox::currentIndexChanged, this, allow);
    allow();
    const core::Settings settings(m_context.session);
    ui->txtName->setText(settings.text(keys::kExportCustName));
    ui->txtURL->setText(settings.text(keys::kExportCustUrl));
    ui->txtEmail->setText(settings.text(keys::kExportCustEmail));
}

CustomizeAuthor frmExportCust::author() const {
    return {ui->txtName->text(), ui->txtURL->text(), ui->txtEmail->text()};
}

void frmExportCust::Btn_Exec_Click() {
    const QPointer<frmExportCust> window(this); // the program may end while a dialog is open
    const auto format = ui->optIni->isChecked() ? CustomizeFormat::Ini : CustomizeFormat::Cst;
    const CustomizeAuthor signer = author();
    CustomizeExchange(m_context).exportCommand(ui->cmbCustomize->currentText(), format, signer);
    QApplication::beep();
    if (!window)
        return;
    keep(signer);
    accept();
}

void frmExportCust::keep(const CustomizeAuthor& author) const {
    core::SettingsChange change;
    change.set(m_context.session, keys::kExportCustName, author.name);
    change.set(m_context.session, keys::kExportCustUrl, author.url);
    change.set(m_context.session, keys::kExportCustEmail, author.email);
    change.writeQuietly();
}

} // namespace velloria::exchange
