#include "publish/forms/frmProgress.h"

#include "shell/forms/MDIFormTop.h"
#include "ui_frmProgress.h"

#include <QCloseEvent>

#include <algorithm>

namespace velloria::publish {

frmProgress::frmProgress(desktop::Context& context)
    : QWidget(&context.windows.get<shell::MDIFormTop>(), Qt::Window)
    , m_context(context)
    , ui(std::make_unique<Ui::frmProgress>()) {
    ui->setupUi(this);
    setWindowIcon(parentWidget()->windowIcon());
    setAttribute(Qt::WA_QuitOnClose, false);
    connect(ui->Btn_OK, &QPushButton::clicked, this, &frmProgress::Btn_OK_Click);
}

frmProgress::~frmProgress() = default;

void frmProgress::setTitle(const QString& title) {
    ui->txtTitle->setText(title);
}

void frmProgress::setText(const QString& text) {
    ui->txtText->setText(text);
}

void frmProgress::setProgress(int value, int max) {
    ui->ProgressBar1->setMaximum(std::max(1, max)); // 0 would be the bar of work without an end
    ui->ProgressBar1->setValue(std::clamp(value, 0, std::max(1, max)));
}

void frmProgress::Btn_OK_Click() {
    EnableBatsuBtn = true;
    close();
}

void frmProgress::closeEvent(QCloseEvent* event) {
    // The user's request alone: a refusal to the program would also stop the end of the session.
    if (event->spontaneous() && !EnableBatsuBtn) {
        event->ignore();
        return;
    }
    event->accept();
    deleteLater(); // unloaded: the next use finds a window as new
}

} // namespace velloria::publish
