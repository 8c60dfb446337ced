#include "shell/forms/frmBackups.h"

#include "shell/backup_commands.h"
#include "shell/forms/diary_change.h"
#include "ui_frmBackups.h"

#include <QHeaderView>
#include <QLocale>
#include <QPointer>

using namespace Qt::StringLiterals;

namespace velloria::shell {
namespace {

enum Column { kDate, kEntries, kTitle, kSize, kName };

/// Kilobytes, as people compare files.
QString shownSize(qint64 bytes) {
    constexpr qint64 kKilobyte = 1024;
    return QLocale(QLocale::Japanese).toString((bytes + kKilobyte - 1) / kKilobyte) + u" KB"_s;
}

/// The keyboard may be at a row that nobody chose.
QTreeWidgetItem* selectedItem(const QTreeWidget& list) {
    return list.selectedItems().value(0);
}

} // namespace

frmBackups::frmBackups(desktop::Context& context)
    : ToolWindow(context, u"frmBackups"_s, Blocks::Nothing)
    , ui(std::make_unique<Ui::frmBackups>()) {
    ui->setupUi(this);
    ui->BackupList->header()->setStretchLastSection(false);
    ui->BackupList->header()->setSectionResizeMode(kTitle, QHeaderView::Stretch);
    fillList();
    connect(ui->Btn_Make, &QPushButton::clicked, this, [this] { run([this] { Btn_Make_Click(); }); });
    connect(ui->Btn_Restore, &QPushButton::clicked, this, [this] { run([this] { Btn_Restore_Click(); }); });
    connect(ui->BtnClose, &QPushButton::clicked, this, &QDialog::reject);
}

frmBackups::~frmBackups() = default;

void frmBackups::fillList() {
    const platform::Hourglass hourglass(m_context.desk);
    const QTreeWidgetItem* selected = selectedItem(*ui->BackupList);
    const QString name = selected ? selected->text(kName) : QString();
    m_copies = store::diaryCopies(m_context.session);
    ui->BackupList->clear();
    for (const store::DiaryCopy& copy : m_copies) {
        auto* item = new QTreeWidgetItem(
            ui->BackupList, {shownDate(copy), shownEntries(copy), shownTitle(copy), shownSize(copy.size), copy.name});
        item->setTextAlignment(kEntries, Qt::AlignRight | Qt::AlignVCenter);
        item->setTextAlignment(kSize, Qt::AlignRight | Qt::AlignVCenter);
        item->setToolTip(kTitle, shownTitle(copy));
        if (copy.name == name)
            ui->BackupList->setCurrentItem(item);
    }
    for (const int column : {kDate, kEntries, kSize, kName})
        ui->BackupList->resizeColumnToContents(column);
}

void frmBackups::Btn_Make_Click() {
    makeBackupCommand(m_context);
    fillList();
}

void frmBackups::Btn_Restore_Click() {
    const int row = ui->BackupList->indexOfTopLevelItem(selectedItem(*ui->BackupList));
    if (row < 0) {
        m_context.desk.status(u"復元するバックアップが選択されていません。"_s);
        ui->BackupList->setFocus();
        return;
    }
    const QPointer<frmBackups> window(this); // the program may end while a box is open
    restoreInWindows(m_context, m_copies[std::size_t(row)].name);
    if (window)
        fillList();
}

} // namespace velloria::shell
