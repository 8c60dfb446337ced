// How the main window comes up and goes down.
#include "browser/forms/frmBrowser.h"
#include "browser/forms/frmPrevDiaryViewer.h"
#include "core/keys.h"
#include "core/program_keys.h"
#include "core/settings.h"
#include "desktop/command.h"
#include "desktop/window_place.h"
#include "editor/forms/frmCalender.h"
#include "editor/forms/frmContents.h"
#include "platform/directory.h"
#include "publish/forms/frmProgress.h"
#include "shell/forms/arrangement.h"
#include "shell/forms/MDIFormTop.h"
#include "shell/forms/StartForm.h"
#include "shell/shutdown.h"

#include <QApplication>
#include <QCloseEvent>
#include <QElapsedTimer>
#include <QMdiArea>
#include <QMdiSubWindow>
#include <QMenuBar>
#include <QScreen>
#include <QShortcut>
#include <QThread>
#include <QWindow>

using namespace Qt::StringLiterals;

namespace velloria::shell {
namespace {

constexpr QSize kFirstSize(1024, 720);

/// Serves the screen until it has drawn the window, and so has told its frame.
void waitForFrame(const QWidget& window) {
    constexpr int kPatienceMs = 500; // a window that comes up minimised is not drawn
    QElapsedTimer timer;
    timer.start();
    while (!window.windowHandle()->isExposed() && timer.elapsed() < kPatienceMs) {
        QApplication::processEvents(QEventLoop::ExcludeUserInputEvents);
        QThread::msleep(1);
    }
}

} // namespace

void MDIFormTop::completeStart() {
    const core::Session& session = m_context.session;
    const auto step = [this](const std::function<void()>& action) { desktop::runCommand(m_context.desk, action); };
    m_context.desk.pointer(platform::Pointer::Hourglass);
    if (session.IsLogin)
        setWindowTitle(windowTitle() + u" [User:"_s + session.UserID + u']');
    restoreFrame(); // a place that can't be read ends the start: the window's own end would write another one over it
    step([this] {
        auto& calendar = m_context.windows.get<editor::frmCalender>();
        calendar.showChild();
        calendar.showDay(QDate::fromString(m_context.session.EnterDay, u"yyyy/MM/dd"_s));
    });
    step([this] {
        if (!m_context.session.IsLogin)
            return; // the last end of this user's run took the preview away
        SaveTmpFile();
        m_context.desk.pointer(platform::Pointer::Hourglass);
    });
    step([this] {
        const qint16 position = core::Settings(m_context.session).number(core::keys::kWindowPosition);
        if (position == 1)
            Arrangement(m_context).mnuStandard();
        else if (position == 2)
            Arrangement(m_context).mnuLoadWndPos();
    });
    step([this] { enableUpdater(); });
    m_context.windows.unload<StartForm>();
    m_context.desk.pointer(platform::Pointer::Default);
    SetMenuBarString();
    showOptionalParts();
    if (m_context.windows.get<editor::frmContents>().day().hasDraft())
        m_context.desk.notice(
            u"保存されていない下書きがあります。「日記」メニューの「下書きを復元」で復元できます。"_s);
}

void MDIFormTop::restoreFrame() {
    const core::Session& session = m_context.session;
    const desktop::WindowPlace kept = desktop::readPlace(session, core::keys::kParentFormPlace);
    desktop::WindowPlace place = kept;
    // One edge alone is applied behind the showing: the other one is where the screen puts it.
    if (place.left.value_or(0) == 0 || place.top.value_or(0) == 0) {
        place.left.reset();
        place.top.reset();
    }
    resize(kFirstSize);
    desktop::restorePlace(*this, place, {});
    qint16 maximize = 0;
    desktop::runCommand(m_context.desk,
                        [&] { maximize = core::Settings(session).number(core::keys::kWindowMaximize); });
    if (maximize == 1)
        showMaximized();
    else
        show();
    waitForFrame(*this);
    if (!isMaximized())
        desktop::restorePlace(*this, kept, desktop::frameOf(*this));
    // The arrangement needs the area at the size that it has on the screen.
    QApplication::processEvents(QEventLoop::ExcludeUserInputEvents);
}

void MDIFormTop::enableUpdater() {
    const core::Settings settings(m_context.session);
    const QString file = platform::existingPath(settings.file(core::SettingsFile::Update));
    command(u"MnuVellUpdater"_s)->setEnabled(platform::fileExists(file) && settings.number(core::keys::kUpdated) != 1);
}

void MDIFormTop::showOptionalParts() {
    const core::Session& session = m_context.session;
    command(u"mnuVellMemo"_s)->setEnabled(platform::fileExists(session.MyPath + u"VellMemo.exe"_s));
    if (!session.IsLarkportDll)
        hideCommands({u"MnuMTExport"_s, u"MnuMTImport"_s, u"MnuLarkportDll"_s});
    if (!session.IsWrenportDll)
        hideCommands({u"MnuHTNExport"_s, u"MnuHTNImport"_s, u"MnuWrenportDll"_s});
    if (!session.IsVellInfoDll)
        hideCommands({u"MnuVellInfo"_s, u"MnuVellInfoDll"_s});
    if (!session.IsChimerDll)
        hideCommands({u"MnuPING"_s, u"MnuChimerDll"_s});
    if (session.IsLarkportDll || session.IsWrenportDll)
        hideCommands({u"MnuImportNoFunction"_s});
    if (session.IsLarkportDll || session.IsWrenportDll || session.IsVellInfoDll || session.IsChimerDll)
        hideCommands({u"MnuNoPlugin"_s});
}

void MDIFormTop::hideCommands(const QStringList& names) {
    for (const QString& name : names)
        command(name)->setVisible(false);
}

void MDIFormTop::addShortcuts() {
    command(u"MnuAddDiary"_s)->setShortcut(QKeySequence(u"Ctrl+N"_s));
    command(u"MnuSaveDiary"_s)->setShortcuts({QKeySequence(u"Ctrl+U"_s), QKeySequence(u"Ctrl+S"_s)});
    command(u"MnuFindDiary"_s)->setShortcut(QKeySequence(u"Ctrl+F"_s));
    command(u"MnuExit"_s)->setShortcut(QKeySequence(u"Ctrl+Q"_s));
    command(u"MnuManual"_s)->setShortcut(QKeySequence(u"F1"_s));
    // The panes have these keys themselves. Here they stand behind the captions alone: a menu that hangs on no bar
    // takes no keys.
    for (const auto& [name, keys] : {std::pair{"mnuUndo"_L1, "Ctrl+Z"_L1},
                                     {"mnuRedo"_L1, "Ctrl+Y"_L1},
                                     {"mnuCopy"_L1, "Ctrl+C"_L1},
                                     {"mnuCut"_L1, "Ctrl+X"_L1},
                                     {"mnuPaste"_L1, "Ctrl+V"_L1}}) {
        command(name)->setShortcut(QKeySequence(QString(keys)));
        command(name)->setShortcutVisibleInContextMenu(true);
    }
    const auto add = [this](const QString& keys, auto action) {
        connect(new QShortcut(QKeySequence(keys), this), &QShortcut::activated, this,
                [this, action] { desktop::runCommand(m_context.desk, action); });
    };
    add(u"Ctrl+P"_s, [this] { m_context.windows.get<editor::frmContents>().Btn5Click_ToolBar(); });
    for (const int index : {0, 1, 2})
        add(u"Ctrl+%1"_s.arg(index + 1),
            [this, index] { m_context.windows.get<editor::frmContents>().showPane(index); });
    add(u"F6"_s, [this] {
        if (menuBar()->hasFocus() && m_context.mdi->activeSubWindow())
            m_context.mdi->activeSubWindow()->setFocus();
        else
            menuBar()->setFocus(Qt::ShortcutFocusReason);
    });
    add(u"Ctrl+F6"_s, [this] { m_context.mdi->activateNextSubWindow(); });
    add(u"Ctrl+Shift+F6"_s, [this] { m_context.mdi->activatePreviousSubWindow(); });
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
    const auto* contents = m_context.windows.find<editor::frmContents>();
    const bool mayClose = !contents || m_context.windows.get<editor::frmContents>().confirmClose();
    m_isClosing = false;
    if (!mayClose)
        return;
    event->accept();
    finish();
}

void MDIFormTop::finish() {
    keepSettings();
    if (auto* contents = m_context.windows.find<editor::frmContents>())
        contents->day().dropDraft();
    // Unloading keeps what they hold for the next time: positions, histories and search site, the selected blog.
    m_context.windows.unload<browser::frmPrevDiaryViewer>();
    m_context.windows.unload<publish::frmProgress>();
    m_context.windows.unload<browser::frmBrowser>();
    m_context.windows.unload<editor::frmCalender>();
    QCoreApplication::exit();
}

void MDIFormTop::keepSettings() {
    const core::Session& session = m_context.session;
    desktop::runCommand(m_context.desk, [&] {
        if (session.IsLogin)
            removeGeneratedPages(session);
    });
    if (!isMaximized() && !isMinimized())
        desktop::writePlace(session, core::keys::kParentFormPlace, desktop::placeOf(*this, {pos(), size()}));
}

void MDIFormTop::keepDraft() {
    if (auto* contents = m_context.windows.find<editor::frmContents>()) {
        contents->commitComposition();
        contents->day().keepDraft();
    }
}

void MDIFormTop::keepForTheEnd() {
    keepDraft();
    keepSettings();
    if (auto* browser = m_context.windows.find<browser::frmBrowser>())
        desktop::runCommand(m_context.desk, [&] { browser->keep(); });
}

} // namespace velloria::shell
