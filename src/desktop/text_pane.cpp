#include "desktop/text_pane.h"

#include "desktop/clipboard.h"

#include <QGuiApplication>
#include <QInputMethod>
#include <QKeyEvent>
#include <QMimeData>
#include <QTextBlock>
#include <QTextDocument>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace velloria::desktop {
namespace {

/// Any line ends as the control holds them.
QString toRaw(QString text) {
    return text.replace("\r\n"_L1, "\n"_L1).replace(u'\r', u'\n').replace(u'\n', QChar(QChar::ParagraphSeparator));
}

QString withLineEnds(QString raw, QLatin1StringView lineEnd) {
    return raw.replace(QChar(QChar::ParagraphSeparator), lineEnd);
}

/// Takes a picture that is dragged here. Always a copy: a file manager removes what was moved.
bool acceptImage(QDropEvent& event) {
    if (!droppedImage(event))
        return false;
    event.setDropAction(Qt::CopyAction);
    event.accept();
    return true;
}

} // namespace

TextPane::TextPane(QWidget* parent)
    : QPlainTextEdit(parent) {
    setUndoRedoEnabled(false);
    setTabChangesFocus(true);
    // The menu opens when the button goes up; a menu event comes when it goes down.
    setContextMenuPolicy(Qt::PreventContextMenu);
    viewport()->setContextMenuPolicy(Qt::PreventContextMenu);
    connect(this, &QPlainTextEdit::textChanged, this, &TextPane::checkText);
}

QString TextPane::text() const {
    return withLineEnds(m_seen, "\r\n"_L1);
}

void TextPane::setText(const QString& text) {
    restore(toRaw(text), 0);
}

void TextPane::restore(const QString& rawText, int caret) {
    const QString& old = m_seen;
    const qsizetype most = std::min(old.size(), rawText.size());
    qsizetype beginning = std::mismatch(old.begin(), old.begin() + most, rawText.begin()).first - old.begin();
    if (beginning > 0 && old[beginning - 1].isHighSurrogate())
        --beginning;
    qsizetype end =
        std::mismatch(old.rbegin(), old.rbegin() + (most - beginning), rawText.rbegin()).first - old.rbegin();
    if (end > 0 && old[old.size() - end].isLowSurrogate())
        --end;
    QTextCursor cursor(document());
    cursor.setPosition(int(beginning));
    cursor.setPosition(int(old.size() - end), QTextCursor::KeepAnchor);
    if (cursor.hasSelection() || rawText.size() > beginning + end)
        cursor.insertText(rawText.sliced(beginning, rawText.size() - beginning - end));
    cursor.setPosition(std::clamp(caret, 0, int(m_seen.size())));
    setTextCursor(cursor);
}

QString TextPane::selectedText() const {
    return withLineEnds(textCursor().selectedText(), "\r\n"_L1);
}

void TextPane::replaceSelection(const QString& text) {
    QTextCursor cursor = textCursor();
    cursor.insertText(toRaw(text));
    setTextCursor(cursor);
    ensureCursorVisible();
}

void TextPane::commitComposition() {
    if (!m_isComposing)
        return;
    QGuiApplication::inputMethod()->commit();
    if (!m_isComposing)
        return;
    // An input method that doesn't answer must not take the text with it.
    QInputMethodEvent commit;
    commit.setCommitString(m_preedit);
    QCoreApplication::sendEvent(this, &commit);
}

void TextPane::checkText() {
    if (m_isInInputMethodEvent)
        return;
    const QString present = document()->toRawText();
    if (present == m_seen)
        return;
    m_seen = present;
    Q_EMIT changed();
}

void TextPane::inputMethodEvent(QInputMethodEvent* event) {
    m_isInInputMethodEvent = true;
    QPlainTextEdit::inputMethodEvent(event);
    m_isInInputMethodEvent = false;
    m_preedit = event->preeditString();
    m_isComposing = !m_preedit.isEmpty();
    // A composition that begins over a selection removes it at once: that belongs to what it ends in.
    if (!m_isComposing || !event->commitString().isEmpty())
        checkText();
}

auto TextPane::actionOf(const QKeyEvent& event) const -> void (TextPane::*)() {
    const Qt::KeyboardModifiers modifiers = event.modifiers() & ~Qt::KeypadModifier;
    const bool isEnter = event.key() == Qt::Key_Return || event.key() == Qt::Key_Enter;
    if (isEnter && modifiers == Qt::ShiftModifier)
        return &TextPane::lineBreakWanted;
    if (isEnter && modifiers == Qt::ControlModifier)
        return &TextPane::paragraphWanted;
    if (event.matches(QKeySequence::Undo) || (event.key() == Qt::Key_Z && modifiers == Qt::ControlModifier))
        return &TextPane::undoWanted;
    if (event.matches(QKeySequence::Redo) || (event.key() == Qt::Key_Y && modifiers == Qt::ControlModifier))
        return &TextPane::redoWanted;
    if (event.key() == Qt::Key_Menu || (event.key() == Qt::Key_F10 && modifiers == Qt::ShiftModifier))
        return &TextPane::popUpAtCaret;
    return nullptr;
}

bool TextPane::event(QEvent* event) {
    if (event->type() == QEvent::ShortcutOverride && actionOf(*static_cast<QKeyEvent*>(event))) {
        event->accept();
        return true;
    }
    return QPlainTextEdit::event(event);
}

void TextPane::keyPressEvent(QKeyEvent* event) {
    const auto action = actionOf(*event);
    if (!action) {
        QPlainTextEdit::keyPressEvent(event);
        return;
    }
    event->accept();
    // While it composes, the keys are the input method's.
    if (!m_isComposing)
        (this->*action)();
}

void TextPane::popUpAtCaret() {
    ensureCursorVisible();
    Q_EMIT popUpWanted(viewport()->mapToGlobal(cursorRect().bottomLeft()));
}

void TextPane::mouseReleaseEvent(QMouseEvent* event) {
    QPlainTextEdit::mouseReleaseEvent(event);
    if (event->button() == Qt::RightButton)
        Q_EMIT popUpWanted(event->globalPosition().toPoint());
}

void TextPane::focusInEvent(QFocusEvent* event) {
    QPlainTextEdit::focusInEvent(event);
    Q_EMIT focused();
}

void TextPane::dragEnterEvent(QDragEnterEvent* event) {
    if (!acceptImage(*event))
        QPlainTextEdit::dragEnterEvent(event);
}

void TextPane::dragMoveEvent(QDragMoveEvent* event) {
    if (!acceptImage(*event))
        QPlainTextEdit::dragMoveEvent(event);
}

void TextPane::dropEvent(QDropEvent* event) {
    if (acceptImage(*event))
        Q_EMIT imageDropped(*droppedImage(*event));
    else
        QPlainTextEdit::dropEvent(event);
}

QMimeData* TextPane::createMimeDataFromSelection() const {
    // The platform's line ends: on Windows the toolkit makes CR LF of them.
    auto* copied = new QMimeData;
    copied->setText(withLineEnds(textCursor().selectedText(), "\n"_L1));
    return copied;
}

bool TextPane::canInsertFromMimeData(const QMimeData* source) const {
    return isText(*source);
}

void TextPane::insertFromMimeData(const QMimeData* source) {
    if (isText(*source))
        replaceSelection(textOf(*source));
}

} // namespace velloria::desktop
