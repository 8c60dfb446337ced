#include "site/forms/frmFind.h"

#include "browser/forms/frmPrevDiaryViewer.h"
#include "core/files.h"
#include "core/keys.h"
#include "core/text_file.h"
#include "platform/code_page.h"
#include "platform/directory.h"
#include "platform/file_read.h"
#include "site/find_page.h"
#include "ui_frmFind.h"

using namespace Qt::StringLiterals;

namespace velloria::site {

frmFind::frmFind(desktop::Context& context)
    : ToolWindow(context, u"frmFind"_s, Blocks::Nothing, &core::keys::kFindPlace)
    , ui(std::make_unique<Ui::frmFind>()) {
    ui->setupUi(this);
    connect(ui->Btn_OK, &QPushButton::clicked, this, [this] { run([this] { Btn_OK_Click(); }); });
    connect(ui->Btn_Cancel, &QPushButton::clicked, this, &QDialog::reject);
    run([this] { fillGenres(); });
}

frmFind::~frmFind() = default;

void frmFind::fillGenres() {
    const QString list = platform::existingPath(core::files::kGenres.in(m_context.session));
    const std::optional<QByteArray> bytes = platform::readFileIfThere(list);
    const QString picked = ui->cmbGenre->currentText();
    const QStringList genres = bytes ? core::linesOf(platform::fromCodePage(*bytes)) : QStringList{u"一般"_s};
    ui->cmbGenre->clear();
    ui->cmbGenre->addItems(genres);
    ui->cmbGenre->setCurrentIndex(picked.isEmpty() ? -1 : int(genres.indexOf(picked)));
}

void frmFind::Btn_OK_Click() {
    SearchForm form;
    form.word = ui->txtFindWord->text();
    if (ui->chkTerm->isChecked())
        form.term = {ui->txtStart->text(), ui->txtEnd->text()};
    form.isOfGenre = ui->chkGenre->isChecked();
    if (ui->cmbGenre->currentIndex() >= 0)
        form.genre = ui->cmbGenre->currentText();
    desktop::Context& context = m_context; // outlives the window
    findCommand(context, form, [&](const QString& caption, const QString& file) {
        accept(); // before the result, which comes to the front of all windows
        context.windows.get<browser::frmPrevDiaryViewer>().showPage(caption, file);
    });
}

} // namespace velloria::site
