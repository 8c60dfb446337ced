#include "editor/forms/frmHTMLMakeHR.h"

#include "convert/forms/colour_row.h"
#include "editor/makers.h"
#include "editor/open_day.h"
#include "ui_frmHTMLMakeHR.h"

using namespace Qt::StringLiterals;

namespace velloria::editor {

frmHTMLMakeHR::frmHTMLMakeHR(desktop::Context& context)
    : ToolWindow(context, u"frmHTMLMakeHR"_s, Blocks::MainWindow)
    , ui(std::make_unique<Ui::frmHTMLMakeHR>()) {
    ui->setupUi(this);
    ui->cmbAlign->setCurrentIndex(RuleBoxes().align);
    setAlignable(false);
    new convert::ColourRow(context, *ui->cmbColor, *ui->Btn_Color_Exchange, *ui->Btn_GetColorDialog);
    connect(ui->txtWidth, &desktop::LineBox::changed, this, [this] { run([this] { txtWidth_Change(); }); });
    connect(ui->Btn_OK, &QPushButton::clicked, this, [this] { run([this] { Btn_OK_Click(); }); });
    connect(ui->Btn_Cancel, &QPushButton::clicked, this, &QDialog::reject);
}

frmHTMLMakeHR::~frmHTMLMakeHR() = default;

void frmHTMLMakeHR::txtWidth_Change() {
    const QString width = ui->txtWidth->text();
    if (const std::optional<bool> isOn = isAlignable(width))
        setAlignable(*isOn);
    if (const std::optional<QString> complaint = widthComplaint(width)) {
        m_context.desk.message(platform::MessageKind::Exclamation, *complaint);
        ui->txtWidth->setFocus();
    }
}

void frmHTMLMakeHR::setAlignable(bool isOn) {
    ui->cmbAlign->setEnabled(isOn);
    QPalette colours = palette();
    colours.setBrush(QPalette::Button, colours.brush(isOn ? QPalette::Base : QPalette::Button));
    ui->cmbAlign->setPalette(colours);
}

void frmHTMLMakeHR::Btn_OK_Click() {
    RuleBoxes boxes;
    boxes.size = ui->txtSize->text();
    boxes.width = ui->txtWidth->text();
    boxes.align = ui->cmbAlign->currentIndex();
    boxes.isWithoutShade = ui->chkNoshade->isChecked();
    boxes.colour = ui->cmbColor->currentText();
    const QString tag = ruleTag(boxes);
    m_context.windows.get<OpenDay>().insertIntoContents([&](const QString&) { return tag; });
    accept();
}

} // namespace velloria::editor
