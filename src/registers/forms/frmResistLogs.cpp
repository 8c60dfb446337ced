#include "registers/forms/frmResistLogs.h"

#include "core/keys.h"
#include "core/path_names.h"
#include "core/settings.h"
#include "desktop/leave_check.h"
#include "desktop/line_box.h"
#include "ui_frmResistLogs.h"

#include <QDir>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace velloria::registers {
namespace {

const QString kFilter = u"HTML Files(*.htm,*.html,*.shtm,*.shtml)|*.htm;*.html;*.shtm;*.shtml|ALL Files(*.*)|*|"_s;

} // namespace

frmResistLogs::frmResistLogs(desktop::Context& context)
    : ToolWindow(context, u"frmResistLogs"_s, Blocks::Nothing)
    , ui(std::make_unique<Ui::frmResistLogs>())
    , m_register(context) {
    ui->setupUi(this);
    desktop::keepShort(*ui->txtYear, 4);
    ui->txtOpenFile->setAcceptDrops(false); // a file would be dropped there as an address
    ui->txtYear->setText(QString::number(context.clock.now().date().year()));
    fillList();
    m_yearCheck = new desktop::LeaveCheck(*ui->txtYear, *ui->BtnClose, [this] { run([this] { checkYear(); }); });
    connect(ui->BtnOpenFolder, &QPushButton::clicked, this, [this] { run([this] { BtnOpenFolder_Click(); }); });
    connect(ui->BtnResist, &QPushButton::clicked, this, [this] { run([this] { BtnResist_Click(); }); });
    connect(ui->BtnDelete, &QPushButton::clicked, this, [this] { run([this] { BtnDelete_Click(); }); });
    connect(ui->BtnClose, &QPushButton::clicked, this, &QDialog::reject);
}

frmResistLogs::~frmResistLogs() = default;

void frmResistLogs::fillList() {
    const platform::Hourglass hourglass(m_context.desk);
    m_rows = m_register.rows();
    QStringList items;
    for (const store::LogRow& row : m_rows)
        items += shownLog(row);
    const int selected = ui->ResisterdList->selectedItems().isEmpty() ? -1 : ui->ResisterdList->currentRow();
    ui->ResisterdList->clear();
    ui->ResisterdList->addItems(items);
    ui->ResisterdList->setCurrentRow(std::min(selected, int(items.size()) - 1));
}

/// Whether the year passes; else its box is shown, and the focus is where it is to be put right.
bool frmResistLogs::checkYear() {
    m_yearCheck->drop();
    const std::optional<QString> problem = yearProblem(ui->txtYear->text());
    if (problem)
        complain(*problem, *ui->txtYear);
    return !problem;
}

/// Why nothing happens; the focus is where it is to be put right.
void frmResistLogs::complain(const QString& problem, QWidget& box) {
    m_yearCheck->drop();
    tellLogProblem(m_context.desk, problem);
    box.setFocus();
}

void frmResistLogs::BtnOpenFolder_Click() {
    const QString shown = ui->txtOpenFile->text();
    const QString kept = core::Settings(m_context.session).text(core::keys::kLogResistPath);
    const QString folder = !shown.isEmpty()               ? core::GetParentFolder(shown)
                           : core::isAbsoluteFolder(kept) ? kept
                                                          : QString();
    const std::optional<QString> chosen =
        m_context.desk.choosePath({platform::PathMode::Open, u"登録するログを開く"_s, kFilter, folder});
    if (chosen && !chosen->isEmpty())
        ui->txtOpenFile->setText(QDir::toNativeSeparators(*chosen));
}

void frmResistLogs::BtnResist_Click() {
    const QString path = ui->txtOpenFile->text();
    const QString year = ui->txtYear->text();
    const QString month = ui->cmbMonth->currentText();
    if (path.isEmpty())
        return complain(u"登録するログのファイルが指定されていません。\r\nファイルを指定してください。"_s,
                        *ui->txtOpenFile);
    if (year.isEmpty())
        return complain(u"ログの年が入力されていません。\r\n年を入力してください。"_s, *ui->txtYear);
    if (month.isEmpty())
        return complain(u"ログの月が選択されていません。\r\n月を選択してください。"_s, *ui->cmbMonth);
    if (!checkYear())
        return;
    {
        const platform::Hourglass hourglass(m_context.desk);
        m_register.ResistLogFile(path, year, month);
    }
    fillList();
}

void frmResistLogs::BtnDelete_Click() {
    if (ui->ResisterdList->selectedItems().isEmpty()) {
        m_context.desk.status(u"削除するログが選択されていません。"_s);
        ui->ResisterdList->setFocus();
        return;
    }
    const store::LogRow row = m_rows[std::size_t(ui->ResisterdList->currentRow())];
    platform::Outcome outcome = platform::Outcome::Done;
    run([&] { outcome = m_register.deleteLog(row); });
    // Also after a failure: when a page could not be removed, its row has gone all the same.
    if (outcome == platform::Outcome::Done)
        fillList();
}

} // namespace velloria::registers
