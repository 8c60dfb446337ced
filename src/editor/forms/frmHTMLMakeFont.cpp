#include "editor/forms/frmHTMLMakeFont.h"

#include "convert/forms/colour_row.h"
#include "desktop/line_box.h"
#include "editor/makers.h"
#include "editor/open_day.h"
#include "ui_frmHTMLMakeFont.h"

#include <QFontDatabase>

using namespace Qt::StringLiterals;

namespace velloria::editor {

frmHTMLMakeFont::frmHTMLMakeFont(desktop::Context& context)
    : ToolWindow(context, u"frmHTMLMakeFont"_s, Blocks::MainWindow)
    , ui(std::make_unique<Ui::frmHTMLMakeFont>()) {
    ui->setupUi(this);
    for (desktop::Combo* box : {ui->cmbSize, ui->cmbFace})
        box->makeEditable();
    new convert::ColourRow(context, *ui->cmbColor, *ui->Btn_Color_Exchange, *ui->Btn_GetColorDialog);
    ui->cmbFace->addItems(QFontDatabase::families());
    ui->cmbFace->setCurrentIndex(-1);
    fillSizes();
    connect(ui->optAbsolute, &QRadioButton::toggled, this, &frmHTMLMakeFont::fillSizes);
    connect(ui->Btn_OK, &QPushButton::clicked, this, [this] { run([this] { Btn_OK_Click(); }); });
    connect(ui->Btn_Cancel, &QPushButton::clicked, this, &QDialog::reject);
}

frmHTMLMakeFont::~frmHTMLMakeFont() = default;

void frmHTMLMakeFont::fillSizes() {
    const FontSizes sizes = ui->optAbsolute->isChecked() ? absoluteFontSizes() : relativeFontSizes();
    ui->cmbSize->clear();
    ui->cmbSize->addItems(sizes.texts);
    ui->cmbSize->setCurrentIndex(sizes.first);
}

void frmHTMLMakeFont::Btn_OK_Click() {
    const QString opening =
        fontOpening({ui->cmbSize->currentText(), ui->cmbColor->currentText(), ui->cmbFace->currentText()});
    m_context.windows.get<OpenDay>().insertIntoContents(
        [&](const QString& selected) { return opening + selected + kFontClosing; });
    accept();
}

} // namespace velloria::editor
