// The main window: the frame of editor, calendar and browser, with the menus and the status bar.
#pragma once

#include "desktop/context.h"
#include "desktop/menu_command.h"
#include "shell/status_line.h"

#include <QAction>
#include <QHash>
#include <QMainWindow>

#include <functional>

class QMenu;

namespace velloria::desktop {
class ElidedLabel;
}

namespace velloria::shell {

/// Its menus are those of the menu table, its commands those of all parts (`menuCommands`). It is made ahead of every
/// other window, and answers the requests of the context that are its own.
class MDIFormTop : public QMainWindow {
    Q_OBJECT
public:
    explicit MDIFormTop(desktop::Context& context);

    /// Captions in the language of the settings.
    void SetMenuBarString();

    /// The first panel of the status bar (see StatusLine).
    void setStatus(const QString& text);
    /// The same for something unusual.
    void setNotice(const QString& text);

    /// The menu of the panes, at this place of the screen.
    void popUpContentsMenu(const QPoint& globalPosition);

    /// A command or menu by its fixed name; null for a name that the menus do not have.
    QAction* command(const QString& name) const { return m_actions.value(name); }

    /// Mouse messages of an icon in the notification area, which the program does not install: each comes as a position
    /// of so many pixels, in twips.
    void Picture1_MouseMove(qint32 xTwips);

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;
    /// While network work runs, it ends that first, and the window closes after it. Then the editor is asked.
    void closeEvent(QCloseEvent* event) override;

private:
    void makeMenus();
    void makeDraftRow();
    void connectCommands();
    void onCommand(const desktop::MenuCommand& command);
    void answerRequests();
    void showLine(const QString& line);

    desktop::Context& m_context;
    QHash<QString, QAction*> m_actions;
    QMenu* m_contentsPopUp = nullptr;
    desktop::ElidedLabel* m_panel = nullptr;
    bool m_isClosing = false;
    StatusLine m_statusLine;
};

} // namespace velloria::shell
