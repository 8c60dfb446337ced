#include "registers/forms/frmResistFiles.h"

#include "core/keys.h"
#include "core/path_names.h"
#include "core/settings.h"
#include "core/settings_change.h"
#include "desktop/clipboard.h"
#include "store/diary_store.h"
#include "ui_frmResistFiles.h"

#include <QDir>
#include <QDropEvent>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace velloria::registers {
namespace {

const QString kFilter = u"Resist Files(*.gif,*.jpg,*.png,*.css)|*.gif;*.jpg;*.png;*.css|"
                        u"GIF Files(*.gif)|*.gif|JPG Files(*.jpg)|*.jpg|PNG Files(*.png)|*.png|"
                        u"CSS Files(*.css)|*.css|ALL Files(*.*)|*|"_s;

} // namespace

frmResistFiles::frmResistFiles(desktop::Context& context)
    : ToolWindow(context, u"frmResistFiles"_s, Blocks::Nothing)
    , ui(std::make_unique<Ui::frmResistFiles>())
    , m_register(context) {
    ui->setupUi(this);
    setAcceptDrops(true);
    ui->txtOpenFile->setAcceptDrops(false); // the window takes what is dropped there; the box would take an address
    fillDays();
    fillList();
    connect(ui->BtnOpenFolder, &QPushButton::clicked, this, [this] { run([this] { BtnOpenFolder_Click(); }); });
    connect(ui->BtnResist, &QPushButton::clicked, this, [this] { run([this] { BtnResist_Click(); }); });
    connect(ui->BtnDelete, &QPushButton::clicked, this, [this] { run([this] { BtnDelete_Click(); }); });
    connect(ui->BtnClose, &QPushButton::clicked, this, &QDialog::reject);
}

frmResistFiles::~frmResistFiles() {
    core::writeQuietly(m_context.session, core::keys::kDefaultLoadPath, core::GetParentFolder(ui->txtOpenFile->text()));
}

void frmResistFiles::fillDays() {
    const platform::Hourglass hourglass(m_context.desk);
    m_days = store::DiaryStore(m_context).AllEntryKeys();
    m_days.insert(m_days.begin(), store::EntryKey{registers::kAllDays, 0});
    QStringList items;
    for (const store::EntryKey& key : m_days)
        items += shownKey(key);
    ui->cmbResisterdDay->addItems(items);
    ui->cmbResisterdDay->setCurrentIndex(0);
}

void frmResistFiles::fillList() {
    const platform::Hourglass hourglass(m_context.desk);
    m_rows = m_register.rows();
    QStringList items;
    for (const store::FileRow& row : m_rows)
        items += shownFile(row);
    const int selected = ui->ResisterdList->selectedItems().isEmpty() ? -1 : ui->ResisterdList->currentRow();
    ui->ResisterdList->clear();
    ui->ResisterdList->addItems(items);
    ui->ResisterdList->setCurrentRow(std::min(selected, int(items.size()) - 1));
}

void frmResistFiles::BtnOpenFolder_Click() {
    const QString shown = ui->txtOpenFile->text();
    const QString kept = core::Settings(m_context.session).text(core::keys::kDefaultLoadPath);
    const QString folder = !shown.isEmpty()               ? core::GetParentFolder(shown)
                           : core::isAbsoluteFolder(kept) ? kept
                                                          : QString();
    const std::optional<QString> chosen =
        m_context.desk.choosePath({platform::PathMode::Open, u"登録するファイルを開く"_s, kFilter, folder});
    if (chosen && !chosen->isEmpty())
        ui->txtOpenFile->setText(QDir::toNativeSeparators(*chosen));
}

void frmResistFiles::BtnResist_Click() {
    const QString path = ui->txtOpenFile->text();
    const int index = ui->cmbResisterdDay->currentIndex();
    if (path.isEmpty()) {
        m_context.desk.message(platform::MessageKind::Critical,
                               u"登録するファイルが指定されていません。\r\nファイルを指定してください。"_s,
                               u"Resist Files"_s);
        ui->txtOpenFile->setFocus();
    }
    if (path.isEmpty() || index < 0)
        return;
    const store::EntryKey key = m_days[std::size_t(index)];
    {
        const platform::Hourglass hourglass(m_context.desk);
        m_register.ResistFile(path, key.day, qint16(key.number));
    }
    fillList();
}

void frmResistFiles::BtnDelete_Click() {
    if (ui->ResisterdList->selectedItems().isEmpty()) {
        m_context.desk.status(u"削除するファイルが選択されていません。"_s);
        ui->ResisterdList->setFocus();
        return;
    }
    const store::FileRow row = m_rows[std::size_t(ui->ResisterdList->currentRow())];
    platform::Outcome outcome = platform::Outcome::Done;
    run([&] { outcome = m_register.deleteFile(row); });
    // Also after a failure: when the file could not be removed, its row has gone all the same.
    if (outcome == platform::Outcome::Done)
        fillList();
}

void frmResistFiles::dragEnterEvent(QDragEnterEvent* event) {
    if (desktop::droppedFiles(*event).isEmpty())
        return;
    // Always a copy: a file manager removes what was moved.
    event->setDropAction(Qt::CopyAction);
    event->accept();
}

void frmResistFiles::dropEvent(QDropEvent* event) {
    const QStringList files = desktop::droppedFiles(*event);
    if (files.isEmpty())
        return;
    ui->txtOpenFile->setText(files.front());
    event->setDropAction(Qt::CopyAction);
    event->accept();
}

} // namespace velloria::registers
