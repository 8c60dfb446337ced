// The list of memos as the window shows it.
#pragma once

#include "memo/words.h"
#include "store/memo.h"

#include <QAbstractTableModel>

#include <vector>

namespace velloria::memo {

class MemoListModel : public QAbstractTableModel {
    Q_OBJECT
public:
    enum Column { Title, Category, Time, Lock, kColumns };

    MemoListModel(Words words, QObject* parent);

    /// Without their texts.
    void setMemos(std::vector<store::Memo> memos);
    const store::Memo& memoAt(int row) const { return m_memos[std::size_t(row)]; }
    /// The row that shows the memo stored there; -1 when none does.
    int rowOf(qint64 storedRow) const;

    int rowCount(const QModelIndex& parent = {}) const override;
    int columnCount(const QModelIndex& parent = {}) const override;
    QVariant data(const QModelIndex& index, int role) const override;
    QVariant headerData(int section, Qt::Orientation orientation, int role) const override;

private:
    Words m_words;
    std::vector<store::Memo> m_memos;
};

} // namespace velloria::memo
