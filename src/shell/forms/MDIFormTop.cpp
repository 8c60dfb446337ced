#include "shell/forms/MDIFormTop.h"

#include "desktop/command.h"
#include "desktop/elided_label.h"
#include "editor/forms/editor_requests.h"

#include <QAccessible>
#include <QApplication>
#include <QMdiArea>
#include <QMenu>
#include <QMenuBar>
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
    editor::serveRequests(context);
    context.requests.popUpContentsMenu = [this](const QPoint& position) { popUpContentsMenu(position); };

    m_panel = new desktop::ElidedLabel;
    m_panel->setObjectName(u"StatusPanel1"_s);
    // The first Japanese text, whose font is higher, must not take a line of pixels from the arranged children.
    m_panel->setText(u"日本語 Ag"_s);
    m_panel->setFixedHeight(m_panel->sizeHint().height());
    m_panel->clear();
    statusBar()->setObjectName(u"StatusBar"_s);
    statusBar()->addWidget(m_panel, 1);

    makeMenus();
    connectCommands();
    addShortcuts();
    SetMenuBarString();
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

void MDIFormTop::onCommand(const QString& name, std::function<void()> action) {
    QAction* menuCommand = m_actions.value(name);
    menuCommand->disconnect(this);
    connect(menuCommand, &QAction::triggered, this,
            [this, action = std::move(action)] { desktop::runCommand(m_context.desk, action); });
}

void MDIFormTop::tellNotYetThere(const QString& name) {
    m_context.desk.message(platform::MessageKind::Plain,
                           u"「%1」はまだ使えません。"_s.arg(plainCaption(command(name)->text())), u"Velloria"_s);
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
    offerDraft();
    m_contentsPopUp->popup(globalPosition);
}

} // namespace velloria::shell
