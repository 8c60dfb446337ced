#include "editor/forms/frmHTMLMakeList.h"

#include "desktop/leave_check.h"
#include "editor/makers.h"
#include "editor/open_day.h"
#include "ui_frmHTMLMakeList.h"

using namespace Qt::StringLiterals;

namespace velloria::editor {
namespace {

/// What the box of numberings shows before anything was typed or picked: none of its items.
constexpr QStringView kNumberingRest = u"算用数字(1,2,3,...)";

/// The text with its own blanks, which the control's plain text exchanges for others.
QString linesIn(const QPlainTextEdit& box) {
    QString text = box.document()->toRawText();
    for (const QChar lineEnd : {QChar(QChar::ParagraphSeparator), QChar(QChar::LineSeparator)})
        text.replace(lineEnd, u"\r\n"_s);
    return text;
}

} // namespace

frmHTMLMakeList::frmHTMLMakeList(desktop::Context& context)
    : ToolWindow(context, u"frmHTMLMakeList"_s, Blocks::MainWindow)
    , ui(std::make_unique<Ui::frmHTMLMakeList>()) {
    ui->setupUi(this);
    ui->cmbOL->makeEditable();
    ui->cmbOL->setCurrentIndex(-1);
    ui->cmbOL->setEditText(kNumberingRest.toString());
    ui->txtListContents->setAcceptDrops(false); // a file would become its address
    ui->txtListContents->setFocus();
    enableKind();
    connect(ui->optTypeUL, &QRadioButton::toggled, this, &frmHTMLMakeList::enableKind);
    m_startCheck =
        new desktop::LeaveCheck(*ui->txtOLStart, *ui->Btn_Cancel, [this] { run([this] { txtOLStart_LostFocus(); }); });
    connect(ui->Btn_OK, &QPushButton::clicked, this, [this] { run([this] { Btn_OK_Click(); }); });
    connect(ui->Btn_Cancel, &QPushButton::clicked, this, &QDialog::reject);
}

frmHTMLMakeList::~frmHTMLMakeList() = default;

void frmHTMLMakeList::enableKind() {
    const bool isNumbered = ui->optTypeOL->isChecked();
    ui->cmbUL->setEnabled(!isNumbered);
    ui->cmbOL->setEnabled(isNumbered);
    ui->txtOLStart->setEnabled(isNumbered);
}

void frmHTMLMakeList::txtOLStart_LostFocus() {
    if (const std::optional<QString> complaint = startComplaint(ui->txtOLStart->text())) {
        m_context.desk.message(platform::MessageKind::Exclamation, *complaint);
        ui->txtOLStart->setFocus();
    }
}

void frmHTMLMakeList::Btn_OK_Click() {
    m_startCheck->drop();
    ListBoxes boxes;
    boxes.kind = ui->optTypeOL->isChecked() ? ListKind::Numbers : ListKind::Marks;
    boxes.mark = ui->cmbUL->currentIndex();
    boxes.numbering = ui->cmbOL->currentText();
    boxes.start = ui->txtOLStart->text();
    boxes.contents = linesIn(*ui->txtListContents);
    boxes.dropsLastEmpty = ui->chkDeleteLastLi->isChecked();
    const QString tag = listTag(boxes);
    m_context.windows.get<OpenDay>().insertIntoContents([&](const QString&) { return tag; });
    accept();
}

} // namespace velloria::editor
