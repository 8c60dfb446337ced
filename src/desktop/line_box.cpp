#include "desktop/line_box.h"

#include "desktop/clipboard.h"

#include <QClipboard>
#include <QDragEnterEvent>
#include <QGuiApplication>
#include <QInputMethod>
#include <QInputMethodEvent>
#include <QKeyEvent>
#include <QMimeData>

#include <limits>

using namespace Qt::StringLiterals;

namespace velloria::desktop {
namespace {

/// Line breaks are blanks, one each; the text keeps its length but for CR LF.
QString inOneLine(QString text) {
    text.replace("\r\n"_L1, " "_L1);
    for (const QChar lineEnd :
         {QChar(u'\r'), QChar(u'\n'), QChar(QChar::ParagraphSeparator), QChar(QChar::LineSeparator)})
        text.replace(lineEnd, u' ');
    return text;
}

} // namespace

LineBox::LineBox(QWidget* parent)
    : QLineEdit(parent) {
    setMaxLength(std::numeric_limits<int>::max()); // a long title from elsewhere must not be cut by a save
    connect(this, &QLineEdit::textChanged, this, &LineBox::checkText);
}

void LineBox::checkText() {
    if (m_isInInputMethodEvent)
        return;
    const QString inLine = inOneLine(text());
    if (inLine != text()) {
        const qsizetype caret = inOneLine(text().left(cursorPosition())).size();
        setText(inLine); // comes back here
        setCursorPosition(int(caret));
        return;
    }
    if (inLine == m_seen)
        return;
    m_seen = inLine;
    Q_EMIT changed();
}

void LineBox::commitComposition() {
    if (!isComposing())
        return;
    QGuiApplication::inputMethod()->commit();
    if (!isComposing())
        return;
    // An input method that doesn't answer must not take the text with it.
    QInputMethodEvent commit;
    commit.setCommitString(m_preedit);
    QCoreApplication::sendEvent(this, &commit);
}

void LineBox::inputMethodEvent(QInputMethodEvent* event) {
    m_isInInputMethodEvent = true;
    QLineEdit::inputMethodEvent(event);
    m_isInInputMethodEvent = false;
    m_preedit = event->preeditString();
    if (m_preedit.isEmpty() || !event->commitString().isEmpty())
        checkText();
}

void LineBox::keyPressEvent(QKeyEvent* event) {
    if (!event->matches(QKeySequence::Paste)) {
        QLineEdit::keyPressEvent(event);
        return;
    }
    event->accept();
    pasteText();
}

/// The toolkit's own paste takes U+FEFF in front for a file's signature.
void LineBox::pasteText() {
    const QMimeData* copied = QGuiApplication::clipboard()->mimeData();
    if (copied && !isReadOnly())
        insert(textOf(*copied));
}

void LineBox::dragEnterEvent(QDragEnterEvent* event) {
    if (isText(*event->mimeData()))
        QLineEdit::dragEnterEvent(event);
    else
        event->ignore();
}

void LineBox::focusInEvent(QFocusEvent* event) {
    QLineEdit::focusInEvent(event);
    Q_EMIT focused();
}

void keepShort(QLineEdit& box, int digits) {
    box.ensurePolished();
    const QFontMetrics metrics = box.fontMetrics();
    const int text = (digits + 1) * metrics.horizontalAdvance(u'0');
    // The toolkit's own hint is that of 17 letters within the same frame and margins.
    box.setFixedWidth(box.sizeHint().width() - 17 * metrics.horizontalAdvance(u'x') + text);
}

} // namespace velloria::desktop
