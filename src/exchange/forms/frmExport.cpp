#include "exchange/forms/frmExport.h"

#include "core/day_key.h"
#include "core/keys.h"
#include "desktop/line_box.h"
#include "ui_frmExport.h"

#include <QLineEdit>
#include <QPointer>

using namespace Qt::StringLiterals;

namespace velloria::exchange {

frmExport::frmExport(desktop::Context& context)
    : ToolWindow(context, u"frmExport"_s, Blocks::Nothing, &core::keys::kExportPlace)
    , ui(std::make_unique<Ui::frmExport>()) {
    ui->setupUi(this);
    prepareControls();
    connect(ui->optFile_Divide, &QRadioButton::toggled, ui->FrameFileName, &QWidget::setEnabled);
    connect(ui->Btn_OK, &QPushButton::clicked, this, &frmExport::Btn_OK_Click);
    connect(ui->Btn_Cancel, &QPushButton::clicked, this, &QDialog::reject);
}

frmExport::~frmExport() = default;

void frmExport::prepareControls() {
    desktop::keepShort(*ui->txtYear, 4);
    desktop::keepShort(*ui->txtMonth, 2);
    const QDate today = m_context.clock.now().date();
    ui->DTPickerStart->setDate({today.year(), today.month(), 1});
    ui->DTPickerEnd->setDate(today);
    ui->DTPickerDay->setDate(today);
    ui->txtYear->setText(QString::number(today.year()));
    ui->txtMonth->setText(QString::number(today.month()));
    fillFormats();
    ui->FrameFileName->setEnabled(false);
    for (QDateEdit* picker : {ui->DTPickerStart, ui->DTPickerEnd, ui->DTPickerDay})
        picker->findChild<QLineEdit*>()->setAccessibleName(picker->accessibleName());
}

void frmExport::fillFormats() {
    const QString picked = ui->cmbExportFormat_User->currentText();
    const QStringList formats = userFormats(m_context.session);
    ui->cmbExportFormat_User->clear();
    ui->cmbExportFormat_User->addItems(formats);
    ui->cmbExportFormat_User->setCurrentIndex(picked.isEmpty() ? -1 : int(formats.indexOf(picked)));
}

store::Period frmExport::period() const {
    using Kind = store::Period::Kind;
    if (ui->optPeriod_Month->isChecked())
        return exportMonth(ui->txtYear->text(), ui->txtMonth->text());
    if (ui->optPeriod_Day->isChecked())
        return {Kind::Day, core::dayKey(ui->DTPickerDay->date()), {}};
    return {Kind::Between, core::dayKey(ui->DTPickerStart->date()), core::dayKey(ui->DTPickerEnd->date())};
}

ExportSettings frmExport::settings() const {
    ExportSettings settings;
    settings.period = period();
    if (ui->optFormat_User->isChecked())
        settings.format = ExportFormat::User;
    else
        settings.format = ui->optFormat_HTML->isChecked() ? ExportFormat::Html : ExportFormat::Text;
    settings.userFormat = ui->cmbExportFormat_User->currentText();
    if (ui->optSortDir_DESC->isChecked())
        settings.direction = store::SortDirection::Descending;
    settings.unit = ui->optFile_Divide->isChecked() ? ExportUnit::Divided : ExportUnit::OneFile;
    settings.name = ui->optFileName_Title->isChecked() ? ExportName::Title : ExportName::Day;
    settings.contents = ui->optContents_TEXT->isChecked() ? ExportContents::Converted : ExportContents::AsTheyAre;
    return settings;
}

void frmExport::Btn_OK_Click() {
    const QPointer<frmExport> window(this); // the program may end while events are served
    ExportOutcome outcome = ExportOutcome::Refused;
    setBusy(true);
    run([this, &outcome] { outcome = clsExport(m_context, settings()).run(); });
    if (!window)
        return;
    setBusy(false);
    if (outcome == ExportOutcome::Done)
        accept();
    else
        ui->Btn_OK->setFocus();
}

void frmExport::setBusy(bool isBusy) {
    m_isBusy = isBusy;
    ui->Btn_OK->setEnabled(!isBusy);
    ui->Btn_Cancel->setEnabled(!isBusy);
}

void frmExport::done(int result) {
    if (!m_isBusy)
        ToolWindow::done(result);
}

} // namespace velloria::exchange
