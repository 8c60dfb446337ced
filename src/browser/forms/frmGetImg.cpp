#include "browser/forms/frmGetImg.h"

#include "browser/entry_images.h"
#include "ui_frmGetImg.h"

#include <QSignalBlocker>

using namespace Qt::StringLiterals;

namespace velloria::browser {
namespace {

constexpr int kMostImages = 3;

enum Column { kFileName, kFullPath, kCheck };

} // namespace

frmGetImg::frmGetImg(desktop::Context& context)
    : m_context(context)
    , ui(std::make_unique<Ui::frmGetImg>()) {
    ui->setupUi(this);
    connect(ui->ListView1, &QTreeWidget::itemChanged, this, &frmGetImg::onCheck);
    connect(ui->Btn_OK, &QPushButton::clicked, this, &frmGetImg::takeImages);
    connect(ui->Btn_Close, &QPushButton::clicked, this, &frmGetImg::reject);
    connect(ui->Btn_End, &QPushButton::clicked, this, [this] { leave(u"Exit"_s); });
}

frmGetImg::~frmGetImg() = default;

void frmGetImg::fill(const QString& body) {
    const QSignalBlocker blocker(ui->ListView1);
    ui->ListView1->clear();
    for (const EntryImage& image : imagesOf(body, m_context.session.DataPath)) {
        auto* item = new QTreeWidgetItem(ui->ListView1, {image.fileName, image.fullPath});
        item->setText(kCheck, image.exists ? u"OK"_s : QString());
        item->setCheckState(kFileName, Qt::Unchecked);
    }
}

int frmGetImg::checkedCount() const {
    int count = 0;
    for (int i = 0; i < ui->ListView1->topLevelItemCount(); ++i)
        count += ui->ListView1->topLevelItem(i)->checkState(kFileName) == Qt::Checked;
    return count;
}

void frmGetImg::onCheck(QTreeWidgetItem* item) {
    if (item->checkState(kFileName) == Qt::Checked && checkedCount() > kMostImages)
        item->setCheckState(kFileName, Qt::Unchecked);
}

void frmGetImg::takeImages() {
    QString* const images[kMostImages] = {&Images1, &Images2, &Images3};
    int taken = 0;
    for (int i = 0; i < ui->ListView1->topLevelItemCount(); ++i) {
        const QTreeWidgetItem& item = *ui->ListView1->topLevelItem(i);
        if (item.checkState(kFileName) == Qt::Checked)
            *images[taken++] = item.text(kFullPath);
    }
    leave(u"OK"_s);
}

void frmGetImg::reject() {
    leave(u"Cancel"_s);
}

void frmGetImg::leave(const QString& result) {
    Result = result;
    done(result == u"OK"_s ? Accepted : Rejected);
}

} // namespace velloria::browser
