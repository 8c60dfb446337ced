#include "core/ini.h"
#include "core/keys.h"
#include "core/settings_change.h"
#include "desktop/browser_home.h"
#include "desktop/small_web.h"
#include "editor/forms/frmContents.h"
#include "editor/forms/frmHTMLMakeImage.h"

#include <QClipboard>
#include <QDropEvent>
#include <QMenu>
#include <QMimeData>
#include <QPrintDialog>
#include <QPrinter>

using namespace Qt::StringLiterals;

namespace velloria::tests {
namespace {

const QByteArray kPicture = QByteArray::fromBase64("R0lGODdhAQABAIAAAP8AAAAAACwAAAAAAQABAAACAkQBADs=");

/// A page with a link, a picture and a text, one below the other.
class PageMenu : public BrowserHome {
protected:
    PageMenu() {
        writeFile(pagePath(u"DiaryParts/a.gif"_s), kPicture);
        writePage(u"first.htm"_s, "<title>first</title>first");
        writePage(u"page.htm"_s,
                  "<html><head><title>page</title><style>body { margin: 0 } a, img, p { display: block; height: 60px;"
                  " width: 200px; margin: 0 }</style></head><body><a href=\"first.htm#\x93\xFA\">link</a>"
                  "<img src=\"DiaryParts/a.gif\"><p>some text</p></body></html>");
        browser().showChild();
        browser().place({0, 0, 700, 600});
        open(pagePath(u"page.htm"_s));
    }

    QWebEngineView& view() { return viewOf(browser()); }

    /// The menu at a place of the page, as the right button brings it up.
    QMenu* menuAt(const QPoint& place) {
        QMenu* menu = nullptr;
        EXPECT_TRUE(doUntil([&] { QTest::mouseClick(view().focusProxy(), Qt::RightButton, Qt::NoModifier, place); },
                            [&] {
                                menu = view().findChild<QMenu*>(u"PageMenu"_s);
                                return menu && menu->isVisible();
                            }));
        return menu;
    }
    QMenu* menuAtLink() { return menuAt({20, 20}); }
    QMenu* menuAtPicture() { return menuAt({20, 80}); }
    QMenu* menuAtText() { return menuAt({20, 130}); }

    static QAction& row(const QMenu& menu, const QString& name) { return control<QAction>(menu, name); }
    static void pick(QMenu* menu, const QString& name) {
        ASSERT_TRUE(row(*menu, name).isEnabled()) << name.toStdString();
        QTest::mouseClick(menu, Qt::LeftButton, Qt::NoModifier, menu->actionGeometry(&row(*menu, name)).center());
        settle();
    }
    static QStringList captions(const QMenu& menu) {
        QStringList texts;
        for (const QAction* action : menu.actions())
            texts += action->isSeparator() ? u"-"_s : action->text();
        return texts;
    }
    static QStringList enabled(const QMenu& menu) {
        QStringList names;
        for (const QAction* action : menu.actions()) {
            if (!action->isSeparator() && action->isEnabled())
                names += action->objectName();
        }
        return names;
    }
    static void closeMenu(QMenu* menu) {
        menu->close();
        settle();
    }
};

TEST_F(PageMenu, SpeaksTheLanguageOfTheMenus) {
    QMenu* menu = menuAtText();
    EXPECT_EQ(captions(*menu),
              (QStringList{u"戻る(&B)"_s, u"進む(&F)"_s, u"更新(&R)"_s, u"-"_s, u"コピー(&C)"_s, u"すべて選択(&A)"_s,
                           u"-"_s, u"リンクのURLをコピー(&L)"_s, u"画像を保存(&I)..."_s, u"-"_s,
                           u"ページを保存(&S)..."_s, u"印刷(&P)..."_s}));
    closeMenu(menu);
    core::writeQuietly(session, core::keys::kMenuLanguage, u"English"_s);
    menu = menuAtText();
    EXPECT_EQ(captions(*menu),
              (QStringList{u"&Back"_s, u"&Forward"_s, u"&Reload"_s, u"-"_s, u"&Copy"_s, u"Select &All"_s, u"-"_s,
                           u"Copy &Link URL"_s, u"Save &Image..."_s, u"-"_s, u"&Save Page..."_s, u"&Print..."_s}));
    closeMenu(menu);
}

TEST_F(PageMenu, OffersWhatIsOfUseWhereItOpens) {
    QMenu* menu = menuAtText();
    const QStringList always{u"PageReload"_s, u"PageSelectAll"_s, u"PageSave"_s, u"PagePrint"_s};
    EXPECT_EQ(enabled(*menu), always);
    closeMenu(menu);
    menu = menuAtLink();
    EXPECT_TRUE(enabled(*menu).contains(u"PageCopyLink"_s));
    EXPECT_FALSE(enabled(*menu).contains(u"PageSaveImage"_s));
    closeMenu(menu);
    menu = menuAtPicture();
    EXPECT_TRUE(enabled(*menu).contains(u"PageSaveImage"_s));
    EXPECT_FALSE(enabled(*menu).contains(u"PageCopyLink"_s));
    closeMenu(menu);
}

TEST_F(PageMenu, GoesBackAndForwardAndReadsAnew) {
    open(pagePath(u"first.htm"_s));
    pick(menuAtText(), u"PageBack"_s);
    EXPECT_TRUE(becomesTrue(browser(), u"document.title == 'page'"_s));
    pick(menuAtText(), u"PageForward"_s);
    EXPECT_TRUE(becomesTrue(browser(), u"document.title == 'first'"_s));
    writePage(u"first.htm"_s, "<title>changed</title>");
    pick(menuAtText(), u"PageReload"_s);
    EXPECT_TRUE(becomesTrue(browser(), u"document.title == 'changed'"_s));
}

TEST_F(PageMenu, SelectsAndCopies) {
    QApplication::clipboard()->clear();
    pick(menuAtText(), u"PageSelectAll"_s);
    EXPECT_TRUE(waitFor([this] { return view().page()->hasSelection(); }));
    pick(menuAtText(), u"PageCopy"_s);
    EXPECT_TRUE(waitFor([] { return QApplication::clipboard()->text().contains(u"some text"_s); }))
        << QApplication::clipboard()->text().toStdString();
}

TEST_F(PageMenu, CopiesTheAddressOfALink) {
    pick(menuAtLink(), u"PageCopyLink"_s);
    EXPECT_EQ(QApplication::clipboard()->text(),
              QString::fromLatin1(QUrl::fromLocalFile(pagePath(u"first.htm"_s)).toEncoded()) + u"#%E6%97%A5"_s);
}

TEST_F(PageMenu, SavesAPicture) {
    desk.answers = {path(u"saved.gif"_s)};
    pick(menuAtPicture(), u"PageSaveImage"_s);
    EXPECT_TRUE(waitFor([this] { return panel() == u"ファイル %1 を保存しました。"_s.arg(path(u"saved.gif"_s)); }));
    EXPECT_EQ(bytesOf(path(u"saved.gif"_s)), kPicture);
}

TEST_F(PageMenu, SavesAPictureOfTheWebFromAPageOfTheDisk) {
    SmallWeb web;
    web.headers = "Content-Type: image/gif\r\n";
    web.pages["/a.gif"] = kPicture;
    writePage(u"page.htm"_s, "<body style=\"margin: 0\"><img width=200 height=160 src=\"" +
                                 web.address(u"/a.gif"_s).toLatin1() + "\">");
    open(pagePath(u"page.htm"_s));
    desk.answers = {path(u"saved.gif"_s)};
    pick(menuAtPicture(), u"PageSaveImage"_s);
    EXPECT_TRUE(waitFor([this] { return exists(path(u"saved.gif"_s)); }));
    EXPECT_TRUE(waitFor([this] { return bytesOf(path(u"saved.gif"_s)) == kPicture; }));
}

TEST_F(PageMenu, SavesThePage) {
    for (const QString& name : {u"saved.mhtml"_s, u"saved.htm"_s}) {
        desk.answers = {path(name)};
        pick(menuAtText(), u"PageSave"_s);
        EXPECT_TRUE(waitFor([&] { return panel() == u"ファイル %1 を保存しました。"_s.arg(path(name)); }))
            << panel().toStdString();
        // The engine tells the end a moment before all of it is in the file.
        EXPECT_TRUE(waitFor([&] { return bytesOf(path(name)).contains("some text"); })) << name.toStdString();
        EXPECT_EQ(bytesOf(path(name)).startsWith("From: "), name == u"saved.mhtml"_s);
    }
}

TEST_F(PageMenu, PrintsThePage) {
    const QString paper = path(u"paper.pdf"_s);
    whenShown<QPrintDialog>([&](QPrintDialog& dialog) {
        dialog.printer()->setOutputFormat(QPrinter::PdfFormat);
        dialog.printer()->setOutputFileName(paper);
        dialog.done(QDialog::Accepted);
    });
    pick(menuAtText(), u"PagePrint"_s);
    EXPECT_TRUE(waitFor([this] { return panel() == u"ページを印刷しました。"_s; })) << panel().toStdString();
    EXPECT_TRUE(bytesOf(paper).startsWith("%PDF"));
}

// ---- drops

class PageDrop : public PageMenu {
protected:
    /// Drags it over the page and lets go; whether the page took it.
    bool drop(const QMimeData& data) {
        const auto send = [&](auto&& event) {
            QCoreApplication::sendEvent(&view(), &event);
            return event.isAccepted();
        };
        const auto actions = Qt::CopyAction | Qt::MoveAction;
        const bool isTaken = send(QDragEnterEvent({20, 20}, actions, &data, Qt::LeftButton, Qt::NoModifier));
        if (isTaken) {
            send(QDragMoveEvent({20, 20}, actions, &data, Qt::LeftButton, Qt::NoModifier));
            send(QDropEvent({20, 20}, actions, &data, Qt::LeftButton, Qt::NoModifier));
        } else {
            send(QDropEvent({20, 20}, actions, &data, Qt::LeftButton, Qt::NoModifier)); // whoever asks nobody
        }
        settle();
        return isTaken;
    }
    static void setFile(QMimeData& data, const QString& file) {
        data.setUrls({QUrl::fromLocalFile(file)});
        data.setText(u"file://"_s + file);
    }
};

TEST_F(PageDrop, LeadsNowhere) {
    const QSignalSpy begun(&view(), &QWebEngineView::loadStarted);
    for (const QString& file : {pagePath(u"first.htm"_s), pagePath(u"DiaryParts/a.gif"_s), session.DataPath}) {
        QMimeData data;
        setFile(data, file);
        EXPECT_FALSE(drop(data)) << file.toStdString();
    }
    QMimeData link;
    link.setUrls({QUrl(u"http://127.0.0.1:1/"_s)});
    link.setText(u"http://127.0.0.1:1/"_s);
    EXPECT_FALSE(drop(link));
    EXPECT_EQ(run(browser(), u"document.title"_s).toString(), u"page"_s);
    EXPECT_TRUE(nothingElseComes(1));
    EXPECT_EQ(begun.size(), 1) << "the last page alone";
    EXPECT_EQ(context.windows.find<editor::frmHTMLMakeImage>(), nullptr);
}

TEST_F(PageDrop, OpensTheImageMakerForAPictureWhileAnEntryIsOpen) {
    context.windows.get<editor::frmContents>().day().openDay(session.EnterDay);
    QMimeData data;
    setFile(data, pagePath(u"first.htm"_s));
    EXPECT_FALSE(drop(data));
    setFile(data, pagePath(u"DiaryParts/a.gif"_s));
    EXPECT_TRUE(drop(data));
    EXPECT_TRUE(nothingElseComes(1));
    const auto* maker = context.windows.find<editor::frmHTMLMakeImage>();
    ASSERT_TRUE(maker);
    EXPECT_EQ(control<QLineEdit>(*maker, u"txt_FilePath"_s).text(), pagePath(u"DiaryParts/a.gif"_s));
    EXPECT_EQ(bytesOf(pagePath(u"DiaryParts/a.gif"_s)), kPicture);
}

} // namespace
} // namespace velloria::tests
