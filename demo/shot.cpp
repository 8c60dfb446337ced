// Opens a diary in the program's windows, waits for its page in the browser, and saves a picture of the main window.
//
//     velloria-shot HOME PICTURE [YYYY/MM/DD [FONT]]
//
// Where PICTURE is a folder, it gets a picture of every window, to be looked at one by one. FONT is what all windows
// are written in, as the toolkit spells it ("Sans Serif,13" or "Sans Serif,11,-1,5,700,0,0,0,0,0").
#include "app/surroundings.h"
#include "blog/blog_template.h"
#include "blog/forms/frmBlogManager.h"
#include "browser/forms/frmBrowser.h"
#include "browser/forms/frmPrevDiaryViewer.h"
#include "browser/forms/web_page.h"
#include "core/day_key.h"
#include "core/keys.h"
#include "core/settings_change.h"
#include "desktop/qt_desk.h"
#include "desktop/tool_window.h"
#include "desktop/yes_no_box.h"
#include "editor/forms/frmCalender.h"
#include "editor/forms/frmContents.h"
#include "editor/forms/frmHTMLMakeFont.h"
#include "editor/forms/frmHTMLMakeHR.h"
#include "editor/forms/frmHTMLMakeList.h"
#include "platform/failure.h"
#include "publish/forms/frmProgress.h"
#include "shell/forms/desktop_start.h"
#include "shell/forms/frmAbout.h"
#include "shell/forms/frmDBUpdater.h"
#include "shell/forms/frmLogin.h"
#include "shell/forms/frmPassword.h"
#include "shell/forms/MDIFormTop.h"
#include "shell/forms/StartForm.h"
#include "site/same_day_page.h"

#include <QAbstractButton>
#include <QApplication>
#include <QComboBox>
#include <QElapsedTimer>
#include <QFileInfo>
#include <QMenu>
#include <QMessageBox>
#include <QPixmap>
#include <QScreen>
#include <QTabWidget>
#include <QThread>
#include <QTimer>

using namespace Qt::StringLiterals;

namespace velloria {
namespace {

/// Serves the windows until `isDone` or 30 seconds are over.
template <typename Condition>
bool waitFor(Condition isDone) {
    constexpr int kPatienceMs = 30'000;
    QElapsedTimer timer;
    timer.start();
    while (!isDone() && timer.elapsed() < kPatienceMs) {
        QApplication::processEvents(QEventLoop::AllEvents, 50);
        QThread::msleep(5);
    }
    return isDone();
}

/// What is complete is drawn a little later.
void waitForDrawing() {
    constexpr int kDrawingMs = 1500;
    QElapsedTimer drawing;
    drawing.start();
    waitFor([&] { return drawing.elapsed() > kDrawingMs; });
}

bool save(QWidget& window, const QString& picture) {
    if (window.screen()->grabWindow(window.winId()).save(picture))
        return true;
    qCritical("%s can't be saved", qUtf8Printable(picture));
    return false;
}

/// Shows a window, saves its picture, and hides it.
void shootWindow(QWidget& window, const QString& picture) {
    window.show();
    waitForDrawing();
    save(window, picture);
    window.hide();
}

/// In the middle of its work.
void shootUpdater(desktop::Context& context, const QString& picture) {
    auto& updater = context.windows.get<shell::frmDBUpdater>();
    updater.display(
        {u"アップデートを開始します。\r\nテンポラリファイル作成中。\r\nテンポラリファイル作成完了。\r\n"
         "日記の内容のコピーを開始。\r\n日記の内容のコピーを終了。\r\nファイル登録データベースのコピーを開始。"_s,
         120, 48});
    shootWindow(updater, picture);
    context.windows.unload<shell::frmDBUpdater>();
}

/// The window that is open beside the main window, which it ends; each of its tabs and categories has a picture.
void shootToolWindow(shell::MDIFormTop& top, const QString& folder) {
    for (auto* window : top.findChildren<desktop::ToolWindow*>()) {
        waitForDrawing();
        save(*window, folder + window->objectName() + u".png"_s);
        auto* tabs = window->findChild<QTabWidget*>();
        for (int i = 1; tabs && i < tabs->count(); ++i) {
            tabs->setCurrentIndex(i);
            waitForDrawing();
            save(*window, folder + window->objectName() + u'_' + QString::number(i + 1) + u".png"_s);
        }
        auto* categories = window->findChild<QComboBox*>(u"cmbCategory"_s);
        for (int i = 1; categories && i < categories->count(); ++i) {
            categories->setCurrentIndex(i);
            Q_EMIT categories->activated(i);
            waitForDrawing();
            save(*window, folder + window->objectName() + u'_' + QString::number(i + 1) + u".png"_s);
        }
        window->close();
    }
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
}

void shootToolWindows(desktop::Context& context, const QString& folder) {
    auto& top = context.windows.get<shell::MDIFormTop>();
    for (const QString& command :
         {u"MnuFindDiary"_s, u"ResistLogs"_s, u"ResistOtherFiles"_s, u"MnuTextExport"_s, u"MnuMakeLog"_s,
          u"MnuHTML2TXT"_s, u"mnuEnvironment"_s, u"MnuPref"_s, u"mnuExportCust"_s, u"MnuCustomizeSelect"_s,
          u"MnuCustomize"_s, u"MnuDeleteImportDiary"_s, u"MnuOtherImport"_s, u"mnuInsertURL"_s, u"MnuUserManager"_s,
          u"MnuBackups"_s}) {
        top.command(command)->trigger();
        shootToolWindow(top, folder);
    }
    context.windows.get<editor::frmHTMLMakeFont>().showWindow();
    shootToolWindow(top, folder);
    context.windows.get<editor::frmHTMLMakeHR>().showWindow();
    shootToolWindow(top, folder);
    context.windows.get<editor::frmHTMLMakeList>().showWindow();
    shootToolWindow(top, folder);
    core::writeQuietly(context.session, core::keys::kManagedBlog, blog::blogNames(context.session).value(0));
    context.windows.get<blog::frmBlogManager>().showWindow();
    shootToolWindow(top, folder);
}

/// The box of a post that failed, with its details open.
void shootDetails(desktop::Context& context, const QString& picture) {
    QTimer::singleShot(0, [&] {
        if (!waitFor([] { return qobject_cast<QMessageBox*>(QApplication::activeModalWidget()); }))
            return;
        auto& box = *qobject_cast<QMessageBox*>(QApplication::activeModalWidget());
        for (QAbstractButton* button : box.buttons()) {
            if (box.buttonRole(button) == QMessageBox::ActionRole)
                button->click();
        }
        waitForDrawing();
        save(box, picture);
        box.accept();
    });
    QString steps;
    for (int step = 10; step < 30; ++step)
        steps +=
            u"21:00:%1 読み込み: http://127.0.0.1:8090/post/with/a/long/path/%1/of/the/service/new.cgi\r\n"_s.arg(step);
    context.desk.detailedMessage(platform::MessageKind::Critical,
                                 u"エラーが発生しました。\r\nError_Code:本文挿入エラー"_s, steps);
}

void shootAll(desktop::Context& context, const QString& folder) {
    auto& top = context.windows.get<shell::MDIFormTop>();
    save(top, folder + u"MDIFormTop.png"_s);
    for (QMenu* menu : top.findChildren<QMenu*>()) {
        if (menu->objectName().startsWith(u"Mnu"_s, Qt::CaseInsensitive)) {
            menu->popup(top.mapToGlobal(QPoint(20, 20)));
            waitFor([&] { return menu->isVisible(); });
            QApplication::processEvents();
            menu->grab().save(folder + u"menu_"_s + menu->objectName() + u".png"_s);
            menu->close();
        }
    }
    shell::frmLogin login(u"taro"_s);
    shootWindow(login, folder + u"frmLogin.png"_s);
    shell::frmPassword password(u"パスワードの入力"_s, platform::PasswordLines::WithConfirmation, nullptr);
    shootWindow(password, folder + u"frmPassword.png"_s);
    shell::frmAbout about(context);
    shootWindow(about, folder + u"frmAbout.png"_s);
    shootWindow(context.windows.get<shell::StartForm>(), folder + u"StartForm.png"_s);
    auto& progress = context.windows.get<publish::frmProgress>();
    progress.display({u"FTP by Velloria"_s, u"HTMLファイルアップロード"_s,
                      u"ファイル「diary200405.htm」のアップロードに成功しました。(3/12)"_s, 12, 3});
    shootWindow(progress, folder + u"frmProgress.png"_s);
    shootUpdater(context, folder + u"frmDBUpdater.png"_s);
    auto& viewer = context.windows.get<browser::frmPrevDiaryViewer>();
    const QString oldPage = context.session.DataPath + u"oldtmp.htm"_s;
    site::MakeSameDayPage(context, oldPage, context.session.EnterDay);
    viewer.showPage(u"過去の日記"_s, oldPage);
    shootWindow(viewer, folder + u"frmPrevDiaryViewer.png"_s);
    context.windows.unload<browser::frmPrevDiaryViewer>();
    shootToolWindows(context, folder);
    desktop::YesNoBox question(u"Velloria"_s, u"更新されていますが、保存されていません。\r\n保存しますか？"_s, &top);
    shootWindow(question, folder + u"question.png"_s);
    shootDetails(context, folder + u"details.png"_s);
}

int shoot(const QString& home, const QString& picture, const QString& day) {
    core::Session session;
    const platform::FixedClock clock(QDateTime(QDate::fromString(day, u"yyyy/MM/dd"_s), QTime(21, 0)));
    desktop::QtDesk desk;
    desktop::Context context{{session, clock, desk}};
    desk.showStatus = [&](const QString& text) {
        if (auto* top = context.windows.find<shell::MDIFormTop>())
            top->setStatus(text);
    };
    desk.showPage = [&](const QString& address) { context.windows.get<browser::frmBrowser>().Navigate(address); };
    if (shell::startDesktop(context, home) == shell::StartResult::Ended)
        return 1;
    auto& top = context.windows.get<shell::MDIFormTop>();
    top.setGeometry(top.screen()->availableGeometry());
    QApplication::processEvents();
    context.windows.get<editor::frmCalender>().Calender_DateClick(QDate::fromString(day, u"yyyy/MM/dd"_s));
    top.command(u"mnuStandard"_s)->trigger();
    auto& browser = context.windows.get<browser::frmBrowser>();
    if (!waitFor([&] { return browser.bDocumentComplete; })) {
        qCritical("the page did not come up");
        return 1;
    }
    waitForDrawing();
    if (QFileInfo(picture).isDir()) {
        shootAll(context, picture + u'/');
        return 0;
    }
    return save(top, picture) ? 0 : 1;
}

} // namespace
} // namespace velloria

int main(int argc, char** argv) {
    velloria::app::letBrowserRunAsRoot();
    velloria::browser::registerEventScheme();
    QApplication application(argc, argv);
    velloria::app::prepareApplication(application);
    const QStringList words = QApplication::arguments();
    if (words.size() < 3 || words.size() > 5) {
        qCritical("usage: velloria-shot HOME PICTURE [YYYY/MM/DD [FONT]]");
        return 2;
    }
    if (QFont font; words.size() == 5 && font.fromString(words[4]))
        QApplication::setFont(font);
    try {
        return velloria::shoot(words[1], words[2], words.value(3, u"2026/11/20"_s));
    } catch (const velloria::platform::Failure& failure) {
        qCritical("%s", failure.what());
        return 1;
    }
}
