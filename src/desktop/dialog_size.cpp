#include "desktop/dialog_size.h"

#include <QApplication>
#include <QBoxLayout>
#include <QScrollArea>
#include <QScrollBar>

#include <memory>

namespace velloria::desktop {
namespace {

void moveItem(QBoxLayout& from, QBoxLayout& to) {
    const int stretch = from.stretch(0);
    std::unique_ptr<QLayoutItem> item(from.takeAt(0));
    if (QWidget* widget = item->widget())
        to.addWidget(widget, stretch, item->alignment());
    else if (item->layout())
        to.addLayout(static_cast<QLayout*>(item.release()), stretch);
    else
        to.addItem(item.release());
}

/// Puts all rows but the last into an area that scrolls. Made below the dialog from the beginning, so that the order of
/// the Tab key stays.
QScrollArea* letScroll(QDialog& dialog, QBoxLayout& rows) {
    auto* area = new QScrollArea(&dialog);
    area->setFrameShape(QFrame::NoFrame);
    area->setFocusPolicy(Qt::NoFocus);
    area->setWidgetResizable(true);
    auto* page = new QWidget(area);
    auto* pageRows = new QVBoxLayout(page);
    pageRows->setContentsMargins({});
    while (rows.count() > 1)
        moveItem(rows, *pageRows);
    area->setWidget(page);
    rows.insertWidget(0, area, 1);
    QObject::connect(qApp, &QApplication::focusChanged, area, [area](const QWidget*, QWidget* now) {
        if (now && area->isAncestorOf(now))
            area->ensureWidgetVisible(now);
    });
    return area;
}

} // namespace

void sizeInto(QDialog& dialog, const QSize& room) {
    dialog.ensurePolished();
    auto* rows = qobject_cast<QBoxLayout*>(dialog.layout());
    if (!rows)
        return;
    QSize wanted = dialog.sizeHint();
    const QSize least = dialog.minimumSizeHint();
    if (least.width() > room.width() || least.height() > room.height()) {
        const QScrollArea* area = letScroll(dialog, *rows);
        wanted +=
            QSize(area->verticalScrollBar()->sizeHint().width(), area->horizontalScrollBar()->sizeHint().height());
    }
    dialog.setMinimumSize(dialog.minimumSize().boundedTo(room)); // of a form that is wide for the eye alone
    dialog.resize(wanted.boundedTo(room));
}

} // namespace velloria::desktop
