#include "memo/forms/memo_list.h"

#include "ui_frmMemo.h"

#include <QHeaderView>
#include <QScopedValueRollback>

using namespace Qt::StringLiterals;

namespace velloria::memo {
namespace {

constexpr std::chrono::milliseconds kSearchDelay{200};

/// The first two items of the filter; the categories follow.
enum FilterItem { AllCategories, NoCategory, FirstCategory };

/// The title has the room that the others leave.
void arrangeColumns(QTreeView& view) {
    const auto widthOf = [&view](const QString& text) {
        constexpr int kAround = 16;
        return view.fontMetrics().horizontalAdvance(text) + kAround;
    };
    QHeaderView& header = *view.header();
    header.setStretchLastSection(false);
    header.setSectionResizeMode(MemoListModel::Title, QHeaderView::Stretch);
    header.resizeSection(MemoListModel::Category, widthOf(u"あいうえお"_s));
    header.resizeSection(MemoListModel::Time, widthOf(u"0000/00/00 00:00:00"_s));
    header.resizeSection(MemoListModel::Lock,
                         widthOf(view.model()->headerData(MemoListModel::Lock, Qt::Horizontal).toString()));
}

} // namespace

MemoList::MemoList(Ui::frmMemo& ui, const MemoBook& book, const Words& words,
                   std::function<void(const std::function<void()>&)> guard, QObject* parent)
    : QObject(parent)
    , m_ui(ui)
    , m_book(book)
    , m_words(words)
    , m_model(words, this) {
    ui.lstMemos->setModel(&m_model);
    arrangeColumns(*ui.lstMemos);
    m_searchDelay.setSingleShot(true);
    m_searchDelay.setInterval(kSearchDelay);
    const auto readAnew = [this, guard] { guard([this] { refreshMemos(); }); };
    connect(ui.txtFind, &desktop::LineBox::changed, &m_searchDelay, qOverload<>(&QTimer::start));
    connect(&m_searchDelay, &QTimer::timeout, this, readAnew);
    connect(ui.cmbFilter, &QComboBox::activated, this, readAnew);
    connect(ui.lstMemos->selectionModel(), &QItemSelectionModel::currentRowChanged, this, [this] {
        // A question in the middle of a click would leave the list with its button down.
        if (!m_isSelecting)
            QTimer::singleShot(0, this, [this] { Q_EMIT picked(selected()); });
    });
}

std::optional<QString> MemoList::category() const {
    const int chosen = m_ui.cmbFilter->currentIndex();
    if (chosen < NoCategory)
        return std::nullopt;
    return chosen == NoCategory ? u""_s : m_ui.cmbFilter->currentText();
}

void MemoList::fillCategories() {
    const QStringList categories = m_book.categories();
    const int chosen = m_ui.cmbFilter->currentIndex();
    const qsizetype again = categories.indexOf(m_ui.cmbFilter->currentText());
    m_ui.cmbFilter->clear();
    m_ui.cmbFilter->addItems({m_words(u"(すべて)"_s, u"(all)"_s), m_words(u"(分類なし)"_s, u"(none)"_s)});
    m_ui.cmbFilter->addItems(categories);
    if (chosen < FirstCategory)
        m_ui.cmbFilter->setCurrentIndex(std::max<int>(chosen, AllCategories));
    else
        m_ui.cmbFilter->setCurrentIndex(again < 0 ? int(AllCategories) : FirstCategory + int(again));
    const QString typed = m_ui.cmbCategory->currentText();
    const QSignalBlocker blocker(m_ui.cmbCategory->lineEdit());
    m_ui.cmbCategory->clear();
    m_ui.cmbCategory->addItems(categories);
    m_ui.cmbCategory->setEditText(typed);
}

void MemoList::refresh() {
    fillCategories();
    refreshMemos();
}

void MemoList::refreshMemos() {
    m_searchDelay.stop();
    std::vector<store::Memo> memos = m_book.list(m_ui.txtFind->text(), category());
    {
        const QScopedValueRollback selecting(m_isSelecting, true);
        m_model.setMemos(std::move(memos));
    }
    select(m_shown);
    Q_EMIT read();
}

void MemoList::select(qint64 storedRow) {
    const QScopedValueRollback selecting(m_isSelecting, true);
    m_shown = storedRow;
    const int row = storedRow == 0 ? -1 : m_model.rowOf(storedRow);
    m_ui.lstMemos->setCurrentIndex(row < 0 ? QModelIndex() : m_model.index(row, 0));
    if (row < 0)
        m_ui.lstMemos->clearSelection();
}

qint64 MemoList::selected() const {
    const QModelIndex index = m_ui.lstMemos->currentIndex();
    return index.isValid() ? m_model.memoAt(index.row()).row : 0;
}

} // namespace velloria::memo
