// A box of one line.
#pragma once

#include <QLineEdit>

namespace velloria::desktop {

/// Line breaks that are pasted or set become blanks, any other character is what it was. Text may be dropped on it, a
/// file may not: its address is no text.
class LineBox : public QLineEdit {
    Q_OBJECT
public:
    explicit LineBox(QWidget* parent = nullptr);

    /// Makes what an input method is composing part of the text.
    void commitComposition();
    bool isComposing() const { return !m_preedit.isEmpty(); }

Q_SIGNALS:
    /// The text is another one than at the last signal. Nothing while an input method composes: one for each commit.
    void changed();
    void focused();

protected:
    void inputMethodEvent(QInputMethodEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void focusInEvent(QFocusEvent* event) override;
    void dragEnterEvent(QDragEnterEvent* event) override;

private:
    void checkText();
    void pasteText();

    QString m_seen;
    QString m_preedit;
    bool m_isInInputMethodEvent = false;
};

/// Makes a box as wide as so many digits need in its font.
void keepShort(QLineEdit& box, int digits);

} // namespace velloria::desktop
