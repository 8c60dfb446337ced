#include "exchange/forms/frmOtherFormats.h"

#include "exchange/foreign_import.h"
#include "ui_frmOtherFormats.h"

#include <QPointer>
#include <QStandardPaths>

using namespace Qt::StringLiterals;

namespace velloria::exchange {

frmOtherFormats::frmOtherFormats(desktop::Context& context)
    : ToolWindow(context, u"frmOtherFormats"_s, Blocks::Nothing)
    , ui(std::make_unique<Ui::frmOtherFormats>()) {
    ui->setupUi(this);
    for (const ForeignFormat& each : foreignFormats())
        ui->LstFormats->addItem(each.program);
    ui->LstFormats->setCurrentRow(0);
    showPlaces();
    connect(ui->LstFormats, &QListWidget::currentRowChanged, this, &frmOtherFormats::showPlaces);
    connect(ui->LstFormats, &QListWidget::itemActivated, this, [this] { run([this] { Btn_OK_Click(); }); });
    connect(ui->Btn_OK, &QPushButton::clicked, this, [this] { run([this] { Btn_OK_Click(); }); });
    connect(ui->Btn_Cancel, &QPushButton::clicked, this, &QDialog::reject);
}

frmOtherFormats::~frmOtherFormats() = default;

const ForeignFormat& frmOtherFormats::format() const {
    return foreignFormats()[std::size_t(ui->LstFormats->currentRow())];
}

/// A format that lies in a file or in a folder leaves the choice; of the others the box tells which it is.
void frmOtherFormats::showPlaces() {
    const ForeignFormat::Place place = format().place;
    ui->Chk_Folder->setEnabled(place == ForeignFormat::Place::Either);
    ui->Chk_Folder->setChecked(place != ForeignFormat::Place::File);
}

std::optional<QString> frmOtherFormats::choosePath() const {
    const QString title = u"%1の読み込み"_s.arg(format().program);
    const QString start = QStandardPaths::writableLocation(QStandardPaths::DocumentsLocation);
    if (ui->Chk_Folder->isChecked())
        return m_context.desk.choosePath({platform::PathMode::Folder, title, {}, start});
    return m_context.desk.choosePath({platform::PathMode::Open, title, format().filter, start});
}

void frmOtherFormats::Btn_OK_Click() {
    const QPointer<frmOtherFormats> window(this); // the program may end while a dialog is open
    const ForeignFormat& chosen = format();
    const std::optional<QString> path = choosePath();
    if (!window || !path || path->isEmpty())
        return;
    const platform::Outcome outcome = importForeignDiary(m_context, chosen, *path, m_context.requests.daysChanged);
    if (!window || outcome == platform::Outcome::Refused)
        return;
    m_context.requests.rebuildGenres(); // into the editor's box, too
    accept();
}

} // namespace velloria::exchange
