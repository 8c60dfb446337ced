#include "memo/forms/memo_list_model.h"

#include <QApplication>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace velloria::memo {
namespace {

constexpr qsizetype kLongestShown = 200; // what nobody can see costs time with every row that is drawn

} // namespace

MemoListModel::MemoListModel(Words words, QObject* parent)
    : QAbstractTableModel(parent)
    , m_words(words) {}

void MemoListModel::setMemos(std::vector<store::Memo> memos) {
    beginResetModel();
    m_memos = std::move(memos);
    endResetModel();
}

int MemoListModel::rowOf(qint64 storedRow) const {
    const auto found = std::find_if(m_memos.begin(), m_memos.end(),
                                    [storedRow](const store::Memo& memo) { return memo.row == storedRow; });
    return found == m_memos.end() ? -1 : int(found - m_memos.begin());
}

int MemoListModel::rowCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : int(m_memos.size());
}

int MemoListModel::columnCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : kColumns;
}

QVariant MemoListModel::data(const QModelIndex& index, int role) const {
    if (role == Qt::SizeHintRole) // the same whatever the script of the first memo
        return QSize(0, QFontMetrics(QApplication::font()).height() * 3 / 2);
    if (role != Qt::DisplayRole && role != Qt::ToolTipRole)
        return {};
    const store::Memo& memo = memoAt(index.row());
    switch (index.column()) {
    case Title:
        return memo.title.isEmpty() ? m_words(u"(無題)"_s, u"(untitled)"_s) : memo.title.left(kLongestShown);
    case Category:
        return memo.category.left(kLongestShown);
    case Time:
        return memo.publishTime.left(kLongestShown);
    case Lock:
        return memo.isLocked ? m_words(u"あり"_s, u"Yes"_s) : QString();
    default:
        return {};
    }
}

QVariant MemoListModel::headerData(int section, Qt::Orientation orientation, int role) const {
    if (orientation != Qt::Horizontal || role != Qt::DisplayRole)
        return {};
    switch (section) {
    case Title:
        return m_words(u"タイトル"_s, u"Title"_s);
    case Category:
        return m_words(u"分類"_s, u"Category"_s);
    case Time:
        return m_words(u"保存した日時"_s, u"Saved"_s);
    default:
        return m_words(u"ロック"_s, u"Locked"_s);
    }
}

} // namespace velloria::memo
