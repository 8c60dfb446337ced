#include "publish/forms/frmProgress.h"

#include "ui_frmProgress.h"

#include <QCloseEvent>
#include <QLayout>
#include <QMdiArea>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace velloria::publish {

frmProgress::frmProgress(desktop::Context& context)
    : QWidget(context.mdi->window(), Qt::Window)
    , ui(std::make_unique<Ui::frmProgress>()) {
    ui->setupUi(this);
    setWindowIcon(parentWidget()->windowIcon());
    setAttribute(Qt::WA_QuitOnClose, false);
    // Room for the longest message, so that the window does not change its size from file to file.
    constexpr int kLines = 4;
    ui->txtText->setMinimumHeight(kLines * ui->txtText->fontMetrics().lineSpacing());
    connect(ui->Btn_OK, &QPushButton::clicked, this, &frmProgress::Btn_OK_Click);
    connect(ui->Btn_Stop, &QPushButton::clicked, this, &frmProgress::Btn_Stop_Click);
}

frmProgress::~frmProgress() = default;

void frmProgress::display(const platform::ProgressWindow& shown) {
    setWindowTitle(shown.caption);
    ui->txtTitle->setText(shown.title);
    ui->txtText->setText(QString(shown.text).replace(u"\r\n"_s, u"\n"_s));
    const int max = std::max(1, shown.max); // 0 would be the bar of work without an end
    ui->ProgressBar1->setMaximum(max);
    ui->ProgressBar1->setValue(std::clamp(shown.value, 0, max));
    ui->Btn_OK->setEnabled(shown.isOkEnabled);
    EnableBatsuBtn = shown.isFrameEnabled;
    m_isStopEnabled = shown.isStopEnabled;
    m_isStopWanted = m_isStopWanted && m_isStopEnabled;
    ui->Btn_Stop->setVisible(m_isStopEnabled);
    ui->Btn_Stop->setEnabled(!m_isStopWanted);
    if (!isVisible()) {
        adjustSize();
        move(parentWidget()->frameGeometry().center() - rect().center());
        show();
    }
    growToText();
    repaint();
}

/// A long name takes more lines.
void frmProgress::growToText() {
    layout()->activate();
    const int needed = layout()->totalHeightForWidth(width());
    if (needed > height())
        resize(width(), needed);
}

void frmProgress::Btn_OK_Click() {
    EnableBatsuBtn = true;
    close();
}

/// The work ends when it next looks here.
void frmProgress::Btn_Stop_Click() {
    m_isStopWanted = true;
    ui->Btn_Stop->setEnabled(false);
}

void frmProgress::closeEvent(QCloseEvent* event) {
    // The user's request alone: a refusal to the program would also stop the end of the session.
    event->setAccepted(EnableBatsuBtn || !event->spontaneous());
}

} // namespace velloria::publish
