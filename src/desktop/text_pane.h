// A pane of plain text: what is typed is what is kept, character by character.
#pragma once

#include <QPlainTextEdit>

namespace velloria::desktop {

/// The control has no undo of its own and takes plain text alone. Texts that leave it end their lines with CR LF, those
/// for the clipboard as the platform does; texts that come in may use any line ends. Tab leaves it.
class TextPane : public QPlainTextEdit {
    Q_OBJECT
public:
    explicit TextPane(QWidget* parent = nullptr);

    /// The whole text without loss: U+00A0 and U+2028 are what they were.
    QString text() const;
    /// Replaces the text and puts the caret at its beginning.
    void setText(const QString& text);

    /// The text as the control holds it, U+2029 between its lines: what undo keeps, since carets count in it.
    const QString& rawText() const { return m_seen; }
    /// Brings back a text and caret of this form, changing no more than what differs.
    void restore(const QString& rawText, int caret);

    int selectionStart() const { return textCursor().selectionStart(); }
    QString selectedText() const;
    /// One change; the caret stands behind `text`.
    void replaceSelection(const QString& text);

    /// Makes what an input method is composing part of the text.
    void commitComposition();
    bool isComposing() const { return m_isComposing; }

Q_SIGNALS:
    /// The text is another one than at the last signal. Nothing while an input method composes: one for each commit.
    void changed();
    void focused();
    /// The right button went up, or a key asked for the menu.
    void popUpWanted(const QPoint& globalPosition);
    void lineBreakWanted(); ///< Shift+Enter
    void paragraphWanted(); ///< Ctrl+Enter
    void undoWanted();
    void redoWanted();
    /// A file was dropped that is a picture by its name. Any other file is refused.
    void imageDropped(const QString& path);

protected:
    bool event(QEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void focusInEvent(QFocusEvent* event) override;
    void dragEnterEvent(QDragEnterEvent* event) override;
    void dragMoveEvent(QDragMoveEvent* event) override;
    void dropEvent(QDropEvent* event) override;
    void inputMethodEvent(QInputMethodEvent* event) override;
    QMimeData* createMimeDataFromSelection() const override;
    bool canInsertFromMimeData(const QMimeData* source) const override;
    void insertFromMimeData(const QMimeData* source) override;

private:
    void checkText();
    /// What the key does here, nothing for a key of the control.
    void (TextPane::*actionOf(const QKeyEvent& event) const)();
    void popUpAtCaret();

    QString m_seen;
    QString m_preedit;
    bool m_isComposing = false;
    bool m_isInInputMethodEvent = false;
};

} // namespace velloria::desktop
