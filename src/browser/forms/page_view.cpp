#include "browser/forms/page_view.h"

#include "core/menu_language.h"
#include "desktop/clipboard.h"
#include "desktop/command.h"

#include <QClipboard>
#include <QContextMenuEvent>
#include <QDropEvent>
#include <QGuiApplication>
#include <QMenu>
#include <QPrintDialog>
#include <QPrinter>
#include <QTimer>
#include <QWebEngineContextMenuRequest>
#include <QWebEngineHistory>

#include <array>

using namespace Qt::StringLiterals;

namespace velloria::browser {
namespace {

using Action = QWebEnginePage::WebAction;

/// A row of the menu that the engine does itself; a line stands above it where told.
struct PageCommand {
    Action action;
    QStringView name;
    QStringView english;
    QStringView japanese;
    bool hasLineAbove = false;
};

constexpr std::array kPageCommands{
    PageCommand{Action::Back, u"PageBack", u"&Back", u"戻る(&B)"},
    PageCommand{Action::Forward, u"PageForward", u"&Forward", u"進む(&F)"},
    PageCommand{Action::Reload, u"PageReload", u"&Reload", u"更新(&R)"},
    PageCommand{Action::Copy, u"PageCopy", u"&Copy", u"コピー(&C)", true},
    PageCommand{Action::SelectAll, u"PageSelectAll", u"Select &All", u"すべて選択(&A)"},
    PageCommand{Action::CopyLinkToClipboard, u"PageCopyLink", u"Copy &Link URL", u"リンクのURLをコピー(&L)", true},
    PageCommand{Action::DownloadImageToDisk, u"PageSaveImage", u"Save &Image...", u"画像を保存(&I)..."},
    PageCommand{Action::SavePage, u"PageSave", u"&Save Page...", u"ページを保存(&S)...", true},
};

bool isUseful(const QWebEnginePage& page, const QWebEngineContextMenuRequest& place, Action action) {
    switch (action) {
    case Action::Back:
        return page.history()->canGoBack();
    case Action::Forward:
        return page.history()->canGoForward();
    case Action::Copy:
        return page.hasSelection();
    case Action::CopyLinkToClipboard:
        return place.linkUrl().isValid();
    case Action::DownloadImageToDisk:
        return place.mediaType() == QWebEngineContextMenuRequest::MediaTypeImage && place.mediaUrl().isValid();
    default:
        return true;
    }
}

} // namespace

PageView::PageView(desktop::Context& context, QWidget* parent)
    : QWebEngineView(parent)
    , m_context(context) {}

void PageView::contextMenuEvent(QContextMenuEvent* event) {
    auto* menu = new QMenu(this);
    menu->setObjectName(u"PageMenu"_s);
    menu->setAttribute(Qt::WA_DeleteOnClose);
    desktop::runCommand(m_context.desk, [&] { fillMenu(*menu); });
    menu->popup(event->globalPos());
}

void PageView::fillMenu(QMenu& menu) {
    const bool isEnglish = core::menuLanguage(m_context.session) == core::MenuLanguage::English;
    const QWebEngineContextMenuRequest& place = *lastContextMenuRequest();
    const auto add = [&](const PageCommand& command, auto run) {
        if (command.hasLineAbove)
            menu.addSeparator();
        QAction* row = menu.addAction((isEnglish ? command.english : command.japanese).toString());
        row->setObjectName(command.name.toString());
        connect(row, &QAction::triggered, this, [this, run] { desktop::runCommand(m_context.desk, run); });
        return row;
    };
    for (const PageCommand& command : kPageCommands) {
        QAction* row = nullptr;
        if (command.action == Action::CopyLinkToClipboard)
            row = add(command, [this, address = place.linkUrl()] { copyAddress(address); });
        else
            row = add(command, [this, action = command.action] { page()->triggerAction(action); });
        row->setEnabled(isUseful(*page(), place, command.action));
    }
    add({Action::NoWebAction, u"PagePrint", u"&Print...", u"印刷(&P)..."}, [this] { printPage(); });
}

/// As the address box shows it, with nothing but ASCII: it goes into mails and pages.
void PageView::copyAddress(const QUrl& address) const {
    QGuiApplication::clipboard()->setText(QString::fromLatin1(address.toEncoded()));
}

/// The engine reads the printer's settings while it prints: the printer lives until it says that it is done.
void PageView::printPage() {
    auto printer = std::make_shared<QPrinter>(QPrinter::HighResolution);
    printer->setDocName(page()->title());
    QPrintDialog dialog(printer.get(), this);
    if (dialog.exec() != QDialog::Accepted)
        return;
    m_context.desk.status(u"印刷しています..."_s);
    connect(
        this, &QWebEngineView::printFinished, this,
        [this, printer](bool isDone) {
            m_context.desk.status(isDone ? u"ページを印刷しました。"_s : u"ページを印刷できませんでした。"_s);
        },
        Qt::SingleShotConnection);
    print(printer.get());
}

// ---- what is dropped

/// Always a copy: a file manager removes what was moved.
bool PageView::acceptsPicture(QDropEvent& event) const {
    if (!m_context.requests.isEntryOpen() || !desktop::droppedImage(event)) {
        event.ignore();
        return false;
    }
    event.setDropAction(Qt::CopyAction);
    event.accept();
    return true;
}

void PageView::dragEnterEvent(QDragEnterEvent* event) {
    acceptsPicture(*event);
}

void PageView::dragMoveEvent(QDragMoveEvent* event) {
    acceptsPicture(*event);
}

void PageView::dragLeaveEvent(QDragLeaveEvent* event) {
    event->accept(); // the engine was never told that something came
}

void PageView::dropEvent(QDropEvent* event) {
    if (!acceptsPicture(*event))
        return;
    // After the drop: the maker may have a box to show, and whoever drags waits for the drop's end.
    QTimer::singleShot(0, this, [this, path = *desktop::droppedImage(*event)] {
        desktop::runCommand(m_context.desk, [&] { m_context.requests.makeImage(path); });
    });
}

} // namespace velloria::browser
