#include "shell/forms/frmDBUpdater.h"

#include "shell/forms/MDIFormTop.h"
#include "ui_frmDBUpdater.h"

#include <QApplication>
#include <QScreen>
#include <QScrollBar>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace velloria::shell {

frmDBUpdater::frmDBUpdater(desktop::Context& context)
    : QWidget(context.windows.find<MDIFormTop>(),
              Qt::Window | Qt::CustomizeWindowHint | Qt::WindowTitleHint | Qt::WindowDoesNotAcceptFocus)
    , ui(std::make_unique<Ui::frmDBUpdater>()) {
    ui->setupUi(this);
    setAttribute(Qt::WA_QuitOnClose, false);
    setAttribute(Qt::WA_ShowWithoutActivating);
    constexpr int kLines = 12;
    ui->txtStatus->setMinimumHeight(kLines * ui->txtStatus->fontMetrics().lineSpacing());
    ui->txtStatus->viewport()->unsetCursor(); // the window's, which tells whether it works
}

frmDBUpdater::~frmDBUpdater() = default;

void frmDBUpdater::display(const platform::UpdaterWindow& shown) {
    const QString text = QString(shown.text).replace(u"\r\n"_s, u"\n"_s);
    if (text != ui->txtStatus->toPlainText())
        ui->txtStatus->setPlainText(text);
    const int max = std::max(1, shown.max); // 0 would be the bar of work without an end
    ui->ProgressBar1->setMaximum(max);
    ui->ProgressBar1->setValue(std::clamp(shown.value, 0, max));
    if (!isVisible())
        showInTheMiddle();
    ui->txtStatus->verticalScrollBar()->setValue(ui->txtStatus->verticalScrollBar()->maximum());
}

void frmDBUpdater::showInTheMiddle() {
    adjustSize();
    const QRect around =
        parentWidget() && parentWidget()->isVisible() ? parentWidget()->frameGeometry() : screen()->availableGeometry();
    move(around.center() - rect().center());
    show();
}

} // namespace velloria::shell
