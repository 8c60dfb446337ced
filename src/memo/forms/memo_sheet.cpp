#include "memo/forms/memo_sheet.h"

#include "ui_frmMemo.h"

#include <QMenu>

using namespace Qt::StringLiterals;

namespace velloria::memo {

using store::Memo;

MemoSheet::MemoSheet(Ui::frmMemo& ui, QObject* parent)
    : QObject(parent)
    , m_ui(ui) {
    desktop::LineBox& category = ui.cmbCategory->makeEditable();
    connect(ui.txtTitle, &desktop::LineBox::changed, this, [this] { noteChange(m_isTitleChanged); });
    connect(&category, &desktop::LineBox::changed, this, [this] { noteChange(m_isCategoryChanged); });
    connect(ui.txtMemo, &desktop::TextPane::changed, this, [this] { noteChange(m_isTextChanged); });
    connect(ui.chkLock, &QCheckBox::toggled, this, [this] {
        if (!m_isFilling)
            setModified(true);
    });
    ui.txtMemo->setUndoRedoEnabled(true);
    connect(ui.txtMemo, &desktop::TextPane::undoWanted, ui.txtMemo, &QPlainTextEdit::undo);
    connect(ui.txtMemo, &desktop::TextPane::redoWanted, ui.txtMemo, &QPlainTextEdit::redo);
    connect(ui.txtMemo, &desktop::TextPane::popUpWanted, this, &MemoSheet::showMenu);
}

void MemoSheet::showMenu(const QPoint& at) {
    QMenu* menu = m_ui.txtMemo->createStandardContextMenu();
    menu->setAttribute(Qt::WA_DeleteOnClose);
    menu->popup(at);
}

void MemoSheet::noteChange(bool& field) {
    if (m_isFilling)
        return;
    field = true;
    setModified(true);
}

void MemoSheet::setModified(bool isModified) {
    m_isModified = isModified;
    if (!isModified)
        m_isTitleChanged = m_isCategoryChanged = m_isTextChanged = false;
    Q_EMIT changed();
    if (isModified)
        Q_EMIT modified();
}

void MemoSheet::fill(const Memo& memo) {
    m_isFilling = true;
    m_ui.txtTitle->setText(memo.title);
    m_ui.cmbCategory->setEditText(memo.category);
    m_ui.txtMemo->setText(memo.text);
    m_ui.chkLock->setChecked(memo.isLocked);
    m_isFilling = false;
}

void MemoSheet::show(const std::optional<Memo>& seen, bool isClosed) {
    m_seen = seen;
    m_isClosed = isClosed;
    fill(seen.value_or(Memo()));
    m_ui.txtMemo->document()->clearUndoRedoStacks();
    m_ui.pages->setCurrentWidget(isClosed ? m_ui.closedPage : m_ui.textPage);
    m_ui.txtTitle->setReadOnly(isClosed);
    for (QWidget* control : {static_cast<QWidget*>(m_ui.cmbCategory), static_cast<QWidget*>(m_ui.chkLock)})
        control->setEnabled(!isClosed);
    setModified(false);
}

void MemoSheet::type(const Memo& draft) {
    fill(draft);
    m_isTitleChanged = m_isCategoryChanged = m_isTextChanged = true;
    setModified(true);
}

void MemoSheet::setSaved(const Memo& saved) {
    m_seen = saved;
    setModified(false);
}

Memo MemoSheet::typed() const {
    Memo memo = m_seen.value_or(Memo());
    // A new one has no missing values.
    if (m_isTitleChanged || !m_seen)
        memo.title = u""_s + m_ui.txtTitle->text();
    if (m_isCategoryChanged || !m_seen)
        memo.category = u""_s + m_ui.cmbCategory->currentText();
    if (m_isTextChanged || !m_seen)
        memo.text = u""_s + m_ui.txtMemo->text();
    memo.isLocked = m_ui.chkLock->isChecked();
    return memo;
}

bool MemoSheet::isEmpty() const {
    return m_ui.txtTitle->text().isEmpty() && m_ui.cmbCategory->currentText().isEmpty() &&
           m_ui.txtMemo->rawText().isEmpty();
}

void MemoSheet::commitCompositions() {
    m_ui.txtTitle->commitComposition();
    m_ui.txtMemo->commitComposition();
    if (auto* category = qobject_cast<desktop::LineBox*>(m_ui.cmbCategory->lineEdit()))
        category->commitComposition();
}

} // namespace velloria::memo
