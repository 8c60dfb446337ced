#include "memo/forms/kept_memos.h"

#include <QDialog>
#include <QDialogButtonBox>
#include <QHeaderView>
#include <QPlainTextEdit>
#include <QPointer>
#include <QPushButton>
#include <QSplitter>
#include <QTreeWidget>
#include <QVBoxLayout>

using namespace Qt::StringLiterals;

namespace velloria::memo {
namespace {

constexpr QSize kFirstSize(720, 480);
constexpr qsizetype kLongestShown = 200; // what nobody can see costs time with every row that is drawn

enum Column { Time, Reason, Title, Category };

QString reasonIn(const Words& words, const QString& reason) {
    if (reason == u"削除"_s)
        return words(reason, u"Removed"_s);
    if (reason == u"上書き"_s)
        return words(reason, u"Overwritten"_s);
    return reason == u"下書き"_s ? words(reason, u"Draft"_s) : reason.left(kLongestShown);
}

void fill(QTreeWidget& list, const Words& words, const std::vector<store::KeptMemo>& kept) {
    list.setObjectName(u"lstKept"_s);
    list.setAccessibleName(words(u"控えの一覧"_s, u"Kept memos"_s));
    list.setRootIsDecorated(false);
    list.setUniformRowHeights(true);
    list.setHeaderLabels({words(u"残した日時"_s, u"Kept"_s), words(u"理由"_s, u"Why"_s),
                          words(u"タイトル"_s, u"Title"_s), words(u"分類"_s, u"Category"_s)});
    QList<QTreeWidgetItem*> items;
    for (const store::KeptMemo& one : kept)
        items += new QTreeWidgetItem(
            {one.time.left(kLongestShown), reasonIn(words, one.reason),
             one.memo.title.isEmpty() ? words(u"(無題)"_s, u"(untitled)"_s) : one.memo.title.left(kLongestShown),
             one.memo.category.left(kLongestShown)});
    list.addTopLevelItems(items);
    list.header()->setStretchLastSection(false);
    list.header()->setSectionResizeMode(Title, QHeaderView::Stretch);
    for (const Column column : {Time, Reason, Category})
        list.resizeColumnToContents(column);
}

} // namespace

std::optional<store::Memo> chooseKept(QWidget& owner, const Words& words, const std::vector<store::KeptMemo>& kept) {
    const QPointer<QDialog> dialog(new QDialog(&owner));
    dialog->setWindowTitle(words(u"控えから戻す"_s, u"Put back a removed memo"_s));
    auto* list = new QTreeWidget;
    fill(*list, words, kept);
    auto* text = new QPlainTextEdit;
    text->setObjectName(u"txtKept"_s);
    text->setAccessibleName(words(u"控えの本文"_s, u"Text of the kept memo"_s));
    text->setReadOnly(true);
    text->setTabChangesFocus(true);
    QObject::connect(list, &QTreeWidget::currentItemChanged, text, [&kept, list, text] {
        const int row = list->indexOfTopLevelItem(list->currentItem());
        text->setPlainText(row < 0 ? QString() : kept[std::size_t(row)].memo.text);
    });
    auto* buttons = new QDialogButtonBox;
    QPushButton* putBack = buttons->addButton(words(u"新しいメモとして戻す(&N)"_s, u"Put back as a &new memo"_s),
                                              QDialogButtonBox::AcceptRole);
    putBack->setObjectName(u"Btn_PutBack"_s);
    putBack->setEnabled(!kept.empty());
    buttons->addButton(words(u"閉じる(&C)"_s, u"&Close"_s), QDialogButtonBox::RejectRole);
    QObject::connect(buttons, &QDialogButtonBox::accepted, dialog, &QDialog::accept);
    QObject::connect(buttons, &QDialogButtonBox::rejected, dialog, &QDialog::reject);
    auto* panes = new QSplitter(Qt::Vertical);
    panes->setChildrenCollapsible(false);
    panes->addWidget(list);
    panes->addWidget(text);
    auto* rows = new QVBoxLayout(dialog);
    rows->addWidget(panes);
    rows->addWidget(buttons);
    dialog->resize(kFirstSize);
    list->setCurrentItem(list->topLevelItem(0));
    std::optional<store::Memo> chosen;
    if (dialog->exec() == QDialog::Accepted && dialog) {
        if (const int row = list->indexOfTopLevelItem(list->currentItem()); row >= 0)
            chosen = kept[std::size_t(row)].memo;
    }
    delete dialog;
    return chosen;
}

} // namespace velloria::memo
