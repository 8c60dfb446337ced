// The main window: the frame of editor, calendar and browser, with the menus and the status bar.
#pragma once

#include "desktop/context.h"
#include "exchange/clipboard_import.h"
#include "shell/menu_table.h"
#include "shell/status_line.h"
#include "site/save_html.h"

#include <QAction>
#include <QHash>
#include <QMainWindow>

#include <functional>
#include <optional>

class QMenu;

namespace velloria::desktop {
class ElidedLabel;
}

namespace velloria::publish {
struct UpdateCalls;
}

namespace velloria::shell {

class MDIFormTop : public QMainWindow {
    Q_OBJECT
public:
    explicit MDIFormTop(desktop::Context& context);

    /// The part of the start that has windows, behind the session's: this window at its place, the calendar, the
    /// arrangement, what the optional files beside the program switch on and off. A failure on the way is told and the
    /// rest goes on.
    void completeStart();

    /// Writes the preview page of the month of `EnterDay`, under the hourglass. Throws platform::Failure.
    void SaveTmpFile();

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

    /// Says that a command is still to come.
    void tellNotYetThere(const QString& name);

    /// What is unsaved in the editor, and half composed, goes to the draft.
    void keepDraft();
    /// The machine ends the program, perhaps while a box is open: the draft and what the windows hold for the next time
    /// are kept, and nobody is asked. The caller ends the process at once: an open question that saw its event loop end
    /// would take that for a No.
    void keepForTheEnd();

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;
    void closeEvent(QCloseEvent* event) override;

private:
    void makeMenus();
    void addShortcuts();
    void connectCommands();
    void connectFileCommands();
    void connectDiaryCommands();
    void connectToolCommands();
    void connectNetworkCommands();
    void connectWindowCommands();
    void connectPopUpCommands();
    void onCommand(const QString& name, std::function<void()> action);
    void offerDraft();

    void restoreFrame();
    void enableUpdater();
    void showOptionalParts();
    void hideCommands(const QStringList& names);

    void saveHtml(platform::Outcome (site::SaveHtml::*save)());
    void flushHistory(const QString& question, const QString& fileName, void (MDIFormTop::*reload)());
    void reloadAddresses();
    void reloadWords();
    void importClipboard(bool (exchange::ClipboardImport::*import)(const std::optional<QString>&,
                                                                   exchange::ParagraphTags));
    bool paintWhileWaiting();
    bool isStopWanted() const;
    bool serveDownload();
    void FTP_Execute();
    void MnuPING();
    void MnuUpdateCheck();
    void MnuVellUpdater();
    publish::UpdateCalls updateCalls();
    void mnuVellMemo();
    void MnuVellInfo();
    void showVersion(const QString& fileName);
    void showManual(const QString& fileName);

    void showLine(const QString& line);
    void finish();
    void keepSettings();

    desktop::Context& m_context;
    QHash<QString, QAction*> m_actions;
    QMenu* m_contentsPopUp = nullptr;
    QAction* m_restoreDraft = nullptr;
    desktop::ElidedLabel* m_panel = nullptr;
    bool m_isClosing = false;
    StatusLine m_statusLine;
};

} // namespace velloria::shell
