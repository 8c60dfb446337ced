#include "site/forms/frmCustomizeSelection.h"

#include "core/keys.h"
#include "desktop/command.h"
#include "platform/failure.h"
#include "site/customize_sets.h"
#include "site/forms/set_picture.h"
#include "site/save_html.h"
#include "ui_frmCustomizeSelection.h"

#include <QSignalBlocker>
#include <QTimer>

using namespace Qt::StringLiterals;

namespace velloria::site {

frmCustomizeSelection::frmCustomizeSelection(desktop::Context& context)
    : ToolWindow(context, u"frmCustomizeSelection"_s, Blocks::MainWindow, &core::keys::kCustomizeSelectionPlace)
    , ui(std::make_unique<Ui::frmCustomizeSelection>())
    , m_picture(new SetPicture(context, this)) {
    ui->setupUi(this);
    ui->pictureLayout->setContentsMargins(0, 0, 0, 0);
    ui->pictureLayout->addWidget(m_picture);
    fill();
    connect(ui->cmbSelectCustomize, &QComboBox::currentIndexChanged, this, &frmCustomizeSelection::showChosen);
    connect(ui->Btn_OK, &QPushButton::clicked, this, [this] { run([this] { Btn_OK_Click(); }); });
    connect(ui->Btn_Cancel, &QPushButton::clicked, this, &QDialog::reject);
    QTimer::singleShot(0, this, &frmCustomizeSelection::showChosen); // the window is there before its picture
}

frmCustomizeSelection::~frmCustomizeSelection() = default;

void frmCustomizeSelection::fill() {
    const QSignalBlocker blocker(ui->cmbSelectCustomize);
    ui->cmbSelectCustomize->clear();
    ui->cmbSelectCustomize->addItems(customizeSets(m_context.session));
    const QString selected = selectedCustomizeSet(m_context.session);
    ui->cmbSelectCustomize->setCurrentIndex(ui->cmbSelectCustomize->findText(selected, Qt::MatchFixedString));
    ui->Btn_OK->setEnabled(ui->cmbSelectCustomize->currentIndex() >= 0);
}

void frmCustomizeSelection::showChosen() {
    ui->Btn_OK->setEnabled(ui->cmbSelectCustomize->currentIndex() >= 0);
    m_picture->showSet(ui->cmbSelectCustomize->currentText());
}

void frmCustomizeSelection::Btn_OK_Click() {
    try {
        selectCustomizeSet(m_context.session, ui->cmbSelectCustomize->currentText());
    } catch (const platform::Failure&) {
        fill(); // what can't be selected may be there no more
        showChosen();
        throw;
    }
    accept();
}

void frmCustomizeSelection::done(int result) {
    desktop::Context& context = m_context; // outlives the window
    ToolWindow::done(result);
    desktop::runCommand(context.desk, [&] { SaveHtml(context).previewStep(); });
}

} // namespace velloria::site
