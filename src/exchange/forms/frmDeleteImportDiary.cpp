#include "exchange/forms/frmDeleteImportDiary.h"

#include "exchange/import_groups.h"
#include "store/diary_store.h"
#include "ui_frmDeleteImportDiary.h"

#include <QPointer>

using namespace Qt::StringLiterals;

namespace velloria::exchange {

frmDeleteImportDiary::frmDeleteImportDiary(desktop::Context& context)
    : ToolWindow(context, u"frmDeleteImportDiary"_s, Blocks::Nothing)
    , ui(std::make_unique<Ui::frmDeleteImportDiary>()) {
    ui->setupUi(this);
    ui->Lbl_Description->setText(
        u"Importした日記を一括で削除します。\n"
        "グループ名の書式は、[ インポートした日付 + インポートしたプログラム名 ] となります。\n"
        "下のコンボボックスから削除したいグループを選択し、OKボタンを押してください。"_s);
    ui->CmbDiaryGroup->addItems(store::DiaryStore(m_context).ListImportBatches());
    ui->CmbDiaryGroup->setCurrentIndex(-1); // nobody deletes what they did not pick
    connect(ui->Btn_OK, &QPushButton::clicked, this, [this] { run([this] { Btn_OK_Click(); }); });
    connect(ui->Btn_Cancel, &QPushButton::clicked, this, &QDialog::reject);
}

frmDeleteImportDiary::~frmDeleteImportDiary() = default;

void frmDeleteImportDiary::Btn_OK_Click() {
    const std::optional<QStringList> days = deleteImportGroup(m_context, ui->CmbDiaryGroup->currentText());
    const QPointer<frmDeleteImportDiary> window(this); // the program may end while a box is open
    // The entries are gone, whatever becomes of the list of genres.
    if (days)
        run([this] { finishImportDeletion(m_context.desk, [this] { m_context.requests.rebuildGenres(); }); });
    if (!window)
        return;
    accept();
    if (days)
        m_context.requests.daysChanged(*days);
}

} // namespace velloria::exchange
