#include "shell/forms/MDIFormTop.h"

#include "desktop/command.h"
#include "desktop/elided_label.h"
#include "desktop/twips.h"
#include "editor/forms/editor_requests.h"
#include "editor/forms/frmContents.h"
#include "editor/open_day.h"
#include "shell/forms/desktop_end.h"
#include "shell/forms/menu_commands.h"
#include "shell/menu_table.h"

#include <QAccessible>
#include <QApplication>
#include <QCloseEvent>
#include <QMdiArea>
#include <QMenu>
#include <QMenuBar>
#include <QShortcut>
#include <QStatusBar>

using namespace Qt::StringLiterals;

namespace velloria::shell {

MDIFormTop::MDIFormTop(desktop::Context& context)
    : m_context(context) {
    setObjectName(u"MDIFormTop"_s);
    setWindowTitle(u"Velloria v"_s + core::kProgramVersion.text());
    auto* area = new QMdiArea;
    area->setObjectName(u"MdiArea"_s);
    area->setHorizontalScrollBarPolicy(Qt::ScrollBarAsNeeded);
    area->setVerticalScrollBarPolicy(Qt::ScrollBarAsNeeded);
    setCentralWidget(area);
    context.mdi = area;

    m_panel = new desktop::ElidedLabel;
    m_panel->setObjectName(u"StatusPanel1"_s);
    // The first Japanese text, whose font is higher, must not take a line of pixels from the arranged children.
    m_panel->setText(u"日本語 Ag"_s);
    m_panel->setFixedHeight(m_panel->sizeHint().height());
    m_panel->clear();
    statusBar()->setObjectName(u"StatusBar"_s);
    statusBar()->addWidget(m_panel, 1);

    makeMenus();
    makeDraftRow();
    connectCommands();
    SetMenuBarString();
    answerRequests();
}

void MDIFormTop::makeMenus() {
    QList<QMenu*> open; // the menus around the present row
    for (const MenuRow& row : menuRows()) {
        open.resize(row.depth);
        const bool isSeparator = row.english.isEmpty();
        const bool isMenu = !isSeparator && &row != &menuRows().back() && (&row + 1)->depth > row.depth;
        if (isMenu) {
            auto* menu = new QMenu(this);
            menu->setObjectName(row.name);
            if (row.name == "mnuContentsPopUp"_L1)
                m_contentsPopUp = menu;
            else if (open.isEmpty())
                menuBar()->addMenu(menu);
            else
                open.last()->addMenu(menu);
            m_actions.insert(row.name, menu->menuAction());
            open.append(menu);
            continue;
        }
        auto* action = new QAction(this);
        action->setObjectName(row.name);
        action->setSeparator(isSeparator);
        open.last()->addAction(action);
        m_actions.insert(row.name, action);
    }
}

void MDIFormTop::SetMenuBarString() {
    const core::MenuLanguage language = core::menuLanguage(m_context.session);
    for (const MenuRow& row : menuRows()) {
        if (!row.english.isEmpty())
            m_actions.value(row.name)->setText(captionOf(row, language));
    }
}

/// The draft that a killed run left can be taken until it is taken or the entry is saved.
void MDIFormTop::makeDraftRow() {
    auto* row = new QAction(u"下書きを復元"_s, this);
    row->setObjectName(u"MnuRestoreDraft"_s);
    m_actions.insert(row->objectName(), row);
    QMenu* diary = command(u"MnuDiary"_s)->menu();
    diary->insertAction(command(u"MnuMinus12"_s), row);
    m_contentsPopUp->addAction(row);
    for (const QMenu* menu : {diary, m_contentsPopUp})
        connect(menu, &QMenu::aboutToShow, row,
                [this, row] { row->setVisible(m_context.windows.get<editor::OpenDay>().hasDraft()); });
    row->setVisible(false);
}

void MDIFormTop::connectCommands() {
    for (const desktop::MenuCommand& command : menuCommands(m_context))
        onCommand(command);
}

void MDIFormTop::onCommand(const desktop::MenuCommand& command) {
    const auto run = [this, action = command.action] { desktop::runCommand(m_context.desk, action); };
    if (command.name.isEmpty()) {
        connect(new QShortcut(command.keys.first(), this), &QShortcut::activated, this, run);
        return;
    }
    QAction* row = m_actions.value(command.name);
    row->setShortcuts(command.keys);
    row->setShortcutVisibleInContextMenu(true);
    connect(row, &QAction::triggered, this, run);
}

void MDIFormTop::answerRequests() {
    editor::serveRequests(m_context);
    m_context.requests.popUpContentsMenu = [this](const QPoint& position) { popUpContentsMenu(position); };
    m_context.requests.setMenuBarString = [this] { SetMenuBarString(); };
    m_context.requests.enableCommand = [this](QLatin1StringView name, bool isEnabled) {
        command(name)->setEnabled(isEnabled);
    };
}

void MDIFormTop::setStatus(const QString& text) {
    showLine(m_statusLine.tell(text));
}

void MDIFormTop::setNotice(const QString& text) {
    showLine(m_statusLine.notice(text));
}

void MDIFormTop::showLine(const QString& line) {
    m_panel->setLine(line);
    QAccessibleEvent alert(m_panel, QAccessible::Alert);
    QAccessible::updateAccessibility(&alert);
    if (m_statusLine.waitsForInput())
        qApp->installEventFilter(this);
}

bool MDIFormTop::eventFilter(QObject* watched, QEvent* event) {
    const bool isInput = event->type() == QEvent::KeyPress || event->type() == QEvent::MouseButtonPress;
    if (isInput && event->spontaneous() && m_statusLine.waitsForInput()) {
        m_statusLine.takeInput();
        qApp->removeEventFilter(this);
    }
    return QMainWindow::eventFilter(watched, event);
}

void MDIFormTop::popUpContentsMenu(const QPoint& globalPosition) {
    m_contentsPopUp->popup(globalPosition);
}

void MDIFormTop::closeEvent(QCloseEvent* event) {
    event->ignore();
    if (m_isClosing)
        return; // a box of the question below is open
    if (m_context.runs.isAnyRunning()) {
        m_context.runs.endForClosing(*this);
        return;
    }
    m_isClosing = true;
    auto* contents = m_context.windows.find<editor::frmContents>();
    const bool mayClose = !contents || contents->confirmClose();
    m_isClosing = false;
    if (!mayClose)
        return;
    event->accept();
    endDesktop(m_context);
}

void MDIFormTop::Picture1_MouseMove(qint32 xTwips) {
    constexpr int kLeftDoubleClick = 515;
    constexpr int kRightDown = 516;
    const int mouseMessage = xTwips / desktop::kTwipsPerPixel;
    if (mouseMessage == kLeftDoubleClick) {
        setWindowState(windowState() & ~Qt::WindowMinimized);
        raise();
        activateWindow();
    } else if (mouseMessage == kRightDown) {
        m_context.desk.message(platform::MessageKind::Plain,
                               u"日記作成\r\nprogramed by Qorvin\r\n\r\n左クリックで表示"_s, u"日記作成"_s);
    }
}

} // namespace velloria::shell
