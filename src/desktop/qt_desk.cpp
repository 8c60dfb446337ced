#include "desktop/qt_desk.h"

#include "core/path_names.h"
#include "desktop/window_place.h"
#include "desktop/yes_no_box.h"
#include "platform/failure.h"

#include <QApplication>
#include <QFileDialog>
#include <QFileInfo>
#include <QInputDialog>
#include <QLabel>
#include <QLayout>
#include <QScreen>
#include <QScrollArea>
#include <QScrollBar>
#include <QTextEdit>
#include <QTimer>
#include <QWindow>

using namespace Qt::StringLiterals;

namespace velloria::desktop {
namespace {

QMessageBox::Icon iconOf(platform::MessageKind kind) {
    switch (kind) {
    case platform::MessageKind::Critical:
        return QMessageBox::Critical;
    case platform::MessageKind::Question:
        return QMessageBox::Question;
    case platform::MessageKind::Exclamation:
        return QMessageBox::Warning;
    case platform::MessageKind::Information:
        return QMessageBox::Information;
    case platform::MessageKind::Plain:
        break;
    }
    return QMessageBox::NoIcon;
}

QFileDialog::FileMode fileModeOf(platform::PathMode mode) {
    switch (mode) {
    case platform::PathMode::Open:
        return QFileDialog::ExistingFile;
    case platform::PathMode::Save:
        return QFileDialog::AnyFile;
    case platform::PathMode::Folder:
        break;
    }
    return QFileDialog::Directory;
}

/// Native dialogs may match with regard to case, so both spellings of the letters are told.
QString nameFilterOf(const FileFilter& filter) {
    QStringList patterns;
    for (const QString& told : filter.patterns) {
        const QString pattern = told == u"*.*"_s ? u"*"_s : told; // it means names without a dot as well
        patterns += pattern;
        if (pattern.toUpper() != pattern)
            patterns += pattern.toUpper();
    }
    // Of the parentheses the last ones are the patterns, and these are hidden.
    return filter.label + u" ("_s + patterns.join(u' ') + u')';
}

/// A dialog over the window that asks, which has the keyboard again after it. The window may go while the dialog is
/// open, and takes it along.
template <typename Dialog>
class Over {
public:
    explicit Over(Dialog* dialog)
        : m_window(dialog->parentWidget())
        , m_dialog(dialog) {}
    ~Over() {
        delete m_dialog;
        if (!m_window || !m_window->isVisible())
            return;
        m_window->raise();
        m_window->activateWindow();
    }
    Over(const Over&) = delete;
    Over& operator=(const Over&) = delete;

    Dialog* operator->() const { return m_dialog; }
    /// Shows the dialog and waits; false as well when its window took it along.
    bool isAccepted() const { return m_dialog->exec() == QDialog::Accepted && m_dialog; }

private:
    QPointer<QWidget> m_window;
    QPointer<Dialog> m_dialog;
};

/// Keys that were meant for what lies behind a box do not answer it before somebody can have read it.
class FirstMoment : public QObject {
public:
    explicit FirstMoment(QWidget& box)
        : QObject(&box)
        , m_box(box) {
        constexpr std::chrono::seconds kMoment{1};
        qApp->installEventFilter(this);
        QTimer::singleShot(kMoment, this, &QObject::deleteLater);
    }

protected:
    bool eventFilter(QObject* watched, QEvent* event) override {
        const bool isKey = event->type() == QEvent::KeyPress || event->type() == QEvent::ShortcutOverride;
        if (!isKey || !(watched == m_box.windowHandle() || watched == &m_box))
            return false;
        event->accept();
        return true;
    }

private:
    const QWidget& m_box;
};

/// What the dialog would take for a file name if it were handed a folder that is not there.
QString startFolder(const QString& folder) {
    return !folder.isEmpty() && QFileInfo(folder).isDir() ? folder : QDir::homePath();
}

/// A text that is half as high as the screen scrolls: the button would lie below the edge.
void letScroll(QMessageBox& box) {
    auto* label = box.findChild<QLabel*>(u"qt_msgbox_label"_s);
    const int highest = box.screen()->availableSize().height() / 2;
    if (!label || label->sizeHint().height() < highest)
        return;
    auto* area = new QScrollArea(&box);
    delete box.layout()->replaceWidget(label, area);
    area->setWidget(label);
    area->setFrameShape(QFrame::NoFrame);
    area->setMinimumSize(label->sizeHint().width() + area->verticalScrollBar()->sizeHint().width(), highest);
}

/// The toolkit's own pane of details is low and for the mouse alone.
void openUpDetails(QMessageBox& box) {
    constexpr int kLines = 14;
    constexpr int kCharacters = 64;
    auto* pane = box.findChild<QTextEdit*>();
    if (!pane)
        return;
    const QFontMetrics metrics = pane->fontMetrics();
    const QSize third = box.screen()->availableSize() / 3;
    const int frame = 2 * (pane->frameWidth() + int(pane->document()->documentMargin()));
    pane->setFixedHeight(std::min(kLines * metrics.lineSpacing() + frame, third.height()));
    pane->setMinimumWidth(std::min(kCharacters * metrics.averageCharWidth() + frame, 2 * third.width()));
    pane->setTextInteractionFlags(Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard);
    pane->setFocusPolicy(Qt::StrongFocus);
    pane->setTabChangesFocus(true);
    pane->setAccessibleName(u"詳細"_s);
    // It grows downwards after the click, perhaps below the edge.
    const auto moveIn = [&box] {
        box.move(movedInto(box.frameGeometry(), box.screen()->availableGeometry()).topLeft());
    };
    for (QAbstractButton* button : box.buttons()) {
        if (box.buttonRole(button) == QMessageBox::ActionRole)
            QObject::connect(button, &QAbstractButton::clicked, &box, moveIn, Qt::QueuedConnection);
    }
}

} // namespace

QList<FileFilter> parseFilter(const QString& filter) {
    const QStringList parts = filter.split(u'|', Qt::SkipEmptyParts);
    QList<FileFilter> filters;
    for (qsizetype i = 0; i + 1 < parts.size(); i += 2)
        filters += FileFilter{parts[i], parts[i + 1].split(u';', Qt::SkipEmptyParts)};
    return filters;
}

void QtDesk::setMainWindow(QWidget* window) {
    m_mainWindow = window;
    QObject::connect(qApp, &QApplication::focusChanged, window, [this](QWidget*, QWidget* focus) {
        // A box that has just been answered asks nothing itself, and word of the window behind it is on its way.
        if (focus && !focus->window()->isModal())
            m_lastActive = focus->window();
    });
}

/// The window that asks: the one that blocks the others, else the one that somebody works in, or worked in last when
/// they have turned to another program meanwhile.
QWidget* QtDesk::owner() const {
    if (QWidget* modal = QApplication::activeModalWidget())
        return modal;
    for (QWidget* window : {QApplication::activeWindow(), m_lastActive.data(), m_mainWindow.data()}) {
        if (window && window->isVisible())
            return window;
    }
    return nullptr;
}

void QtDesk::prepareBox() const {
    if (beforeBox)
        beforeBox();
}

void QtDesk::message(platform::MessageKind kind, const QString& text, const QString& title) {
    showBox(kind, text, title, Comes::Asked);
}

void QtDesk::detailedMessage(platform::MessageKind kind, const QString& text, const QString& details) {
    showBox(kind, text, u"Velloria"_s, Comes::Asked, details);
}

void QtDesk::showBox(platform::MessageKind kind, const QString& text, const QString& title, Comes comes,
                     const QString& details) const {
    prepareBox();
    const Over box(new QMessageBox(iconOf(kind), title, shownText(text), QMessageBox::Ok, owner()));
    box->setTextFormat(Qt::PlainText);
    box->setDetailedText(shownText(details)); // "" has no button; arranges the box anew
    openUpDetails(*box.operator->());
    letScroll(*box.operator->());
    if (comes == Comes::Unasked)
        new FirstMoment(*box.operator->());
    box->exec();
}

bool QtDesk::ask(const QString& text, const QString& title) {
    prepareBox();
    const Over box(new YesNoBox(title, text, owner()));
    letScroll(*box.operator->());
    return box->isYes();
}

std::optional<QString> QtDesk::choosePath(const platform::PathRequest& request) {
    prepareBox();
    const Over dialog(new QFileDialog(owner(), request.title, startFolder(request.folder)));
    dialog->setAcceptMode(request.mode == platform::PathMode::Save ? QFileDialog::AcceptSave : QFileDialog::AcceptOpen);
    dialog->setFileMode(fileModeOf(request.mode));
    dialog->setOption(QFileDialog::HideNameFilterDetails);
    dialog->setOption(QFileDialog::DontConfirmOverwrite, !request.asksBeforeReplacing);
    dialog->setOption(QFileDialog::ShowDirsOnly, request.mode == platform::PathMode::Folder);
    QStringList filters;
    for (const FileFilter& filter : parseFilter(request.filter))
        filters += nameFilterOf(filter);
    if (!filters.isEmpty())
        dialog->setNameFilters(filters);
    dialog->setDefaultSuffix(request.defaultSuffix);
    if (!request.name.isEmpty())
        dialog->selectFile(request.name);
    if (!dialog.isAccepted() || dialog->selectedFiles().isEmpty())
        return std::nullopt;
    return dialog->selectedFiles().constFirst();
}

QString QtDesk::input(const QString& text, const QString& whenAsked, const QString& title) {
    prepareBox();
    const Over dialog(new QInputDialog(owner()));
    dialog->setWindowTitle(title);
    dialog->setLabelText(shownText(text));
    dialog->setTextValue(whenAsked);
    return dialog.isAccepted() ? dialog->textValue() : QString();
}

std::optional<platform::Passwords> QtDesk::passwords(const QString& caption, platform::PasswordLines lines) {
    prepareBox();
    return askPasswords ? askPasswords(owner(), caption, lines) : std::nullopt;
}

void QtDesk::status(const QString& text) {
    if (showStatus)
        showStatus(text);
}

void QtDesk::notice(const QString& text) {
    if (showNotice)
        showNotice(text);
}

void QtDesk::pointer(platform::Pointer shape) {
    if (!m_mainWindow)
        return;
    // The window's own pointer, not a stack of overriding ones: whatever was left behind is gone with the next call.
    if (shape == platform::Pointer::Hourglass)
        m_mainWindow->setCursor(Qt::WaitCursor);
    else
        m_mainWindow->unsetCursor();
}

void QtDesk::progress(const QString& text, int value, int max) {
    status(u"%1 (%2/%3)"_s.arg(text).arg(value).arg(max));
    QCoreApplication::processEvents(QEventLoop::ExcludeUserInputEvents);
}

void QtDesk::progressWindow(const platform::ProgressWindow& shown) {
    if (showProgressWindow)
        showProgressWindow(shown);
}

void QtDesk::closeProgressWindow() {
    if (endProgressWindow)
        endProgressWindow();
}

void QtDesk::updaterWindow(const platform::UpdaterWindow& shown) {
    if (showUpdaterWindow)
        showUpdaterWindow(shown);
}

void QtDesk::closeUpdaterWindow() {
    if (endUpdaterWindow)
        endUpdaterWindow();
}

void QtDesk::pump() {
    QCoreApplication::processEvents();
}

void QtDesk::sound(const QString& command) {
    if (playSound)
        playSound(command);
}

void QtDesk::navigate(const QString& url) {
    if (showPage)
        showPage(url);
}

void QtDesk::failure(const platform::Failure& failure) {
    pointer(platform::Pointer::Default);
    status(u"エラー："_s + failure.line());
    showBox(platform::MessageKind::Critical, failure.text(), u"Velloria"_s, Comes::Unasked);
}

} // namespace velloria::desktop
