#include "site/forms/frmSaveLog.h"

#include "core/keys.h"
#include "desktop/line_box.h"
#include "site/log_archive.h"
#include "ui_frmSaveLog.h"

#include <QPointer>

using namespace Qt::StringLiterals;

namespace velloria::site {

frmSaveLog::frmSaveLog(desktop::Context& context)
    : ToolWindow(context, u"frmSaveLog"_s, Blocks::Nothing, &core::keys::kLogPlace)
    , ui(std::make_unique<Ui::frmSaveLog>()) {
    ui->setupUi(this);
    desktop::keepShort(*ui->txtYear, 4);
    desktop::keepShort(*ui->txtMonth, 2);
    const LogMonth month = monthToLog(m_context.clock.now().date());
    ui->txtYear->setText(month.year);
    ui->txtMonth->setText(month.month);
    connect(ui->btn_Save, &QPushButton::clicked, this, &frmSaveLog::btn_Save_Click);
    connect(ui->BtnCancel, &QPushButton::clicked, this, &QDialog::reject);
}

frmSaveLog::~frmSaveLog() = default;

void frmSaveLog::btn_Save_Click() {
    const QPointer<frmSaveLog> window(this); // the program may end while events are served
    setBusy(true);
    run([this] { makeLog(); });
    if (!window)
        return;
    setBusy(false);
    // Hidden, the log is there, whatever became of the preview.
    if (isHidden())
        accept();
    else
        ui->btn_Save->setFocus();
}

void frmSaveLog::makeLog() {
    const QPointer<frmSaveLog> window(this);
    logCommand(m_context, ui->txtYear->text(), ui->txtMonth->text(), [&window] {
        if (window)
            window->hide();
    });
}

void frmSaveLog::setBusy(bool isBusy) {
    m_isBusy = isBusy;
    ui->btn_Save->setEnabled(!isBusy);
    ui->BtnCancel->setEnabled(!isBusy);
}

void frmSaveLog::done(int result) {
    if (!m_isBusy)
        ToolWindow::done(result);
}

} // namespace velloria::site
