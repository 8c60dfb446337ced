// The check for updates as a command of the main window, and how it ends the program.
#include "browser/forms/frmBrowser.h"
#include "core/ini.h"
#include "core/keys.h"
#include "core/program_keys.h"
#include "core/setting.h"
#include "core/settings_change.h"
#include "editor/forms/frmCalender.h"
#include "editor/forms/frmContents.h"
#include "publish/forms/frmProgress.h"
#include "support/desktop_home.h"
#include "support/http_server.h"
#include "support/silent_server.h"

#include <QDir>
#include <QElapsedTimer>
#include <QLineEdit>
#include <QPushButton>
#include <QTimer>
#include <QWebEngineHistory>
#include <QWebEngineView>

using namespace Qt::StringLiterals;

namespace velloria::tests {
namespace {

namespace keys = core::keys;

const QString kUnsaved = u"question: 変更されています。保存しますか？"_s;

class UpdateCommand : public DesktopHome {
protected:
    UpdateCommand() {
        QDir::setCurrent(working.path());
        setEndpoint(keys::kMakerSoftware, u"http://127.0.0.1/news.htm"_s);
        setEndpoint(keys::kMakerUpdateFolder, address(u"up"_s));
        showTop();
        updater().setEnabled(false);
        desk.events = {};
    }
    ~UpdateCommand() override { QDir::setCurrent(before); }

    void setEndpoint(const core::Setting& key, const QString& value) { core::writeQuietly(session, key, value); }
    QString address(const QString& name) const { return u"http://127.0.0.1:%1/%2"_s.arg(server.port()).arg(name); }
    static QByteArray answer(const QByteArray& bytes) {
        return "HTTP/1.1 200 OK\r\nContent-Length: " + QByteArray::number(bytes.size()) + "\r\n\r\n" + bytes;
    }
    QByteArray release() const {
        return answer("[Release]\r\nversion=2.2.1\r\nFileName=v.lzh\r\nURL_Full=" + address(u"v"_s).toLatin1());
    }
    void putUpdater() const {
        writeFile(path(u"UnLHA32.DLL"_s), {});
        writeFile(path(u"VellUpdater.exe"_s), "#!/bin/sh\necho x > \"${0%/*}/mark\"\n");
    }
    void press(const QString& name) { top().command(name)->trigger(); }
    QAction& updater() { return *top().command(u"MnuVellUpdater"_s); }
    bool isUpdaterStarted() const {
        return waitFor([this] { return exists(path(u"mark"_s)); });
    }
    void editAnEntry() {
        context.windows.get<editor::frmCalender>().Calender_DateClick(QDate(2004, 5, 6));
        control<QLineEdit>(context.windows.get<editor::frmContents>(), u"txtTitle"_s).insert(u"x"_s);
        desk.events = {};
    }
    QString pointerShape() const {
        QString shape;
        for (const auto event : desk.events) {
            if (event[u"event"_s] == u"pointer"_s)
                shape = event[u"shape"_s].toString();
        }
        return shape;
    }

    HttpServer server;
    QTemporaryDir working;
    QString before = QDir::currentPath();
};

TEST_F(UpdateCommand, AnOfferEnablesTheUpdaterAndNothingNewerDisablesIt) {
    server.answerWith({release()});
    desk.answers = {u"no"_s};
    press(u"MnuUpdateCheck"_s);
    EXPECT_TRUE(updater().isEnabled());
    EXPECT_EQ(boxes(), QStringList{u"question: 新しいバージョンが存在します(2.2.1)。\r\nダウンロードしますか？"_s});
    server.answerWith({answer("[Release]\r\nversion=2.2.0\r\n")});
    press(u"MnuUpdateCheck"_s);
    EXPECT_FALSE(updater().isEnabled());
    EXPECT_EQ(pointerShape(), u"default"_s);
    EXPECT_FALSE(context.runs.isAnyRunning());
    settle();
    EXPECT_TRUE(top().isVisible());
}

TEST_F(UpdateCommand, ACheckThatFailsDisablesTheUpdater) {
    updater().setEnabled(true);
    server.answerWith({"HTTP/1.1 404 Not Found\r\n\r\n"});
    press(u"MnuUpdateCheck"_s);
    EXPECT_FALSE(updater().isEnabled());
    EXPECT_EQ(boxes().last(), u"critical: update.txtの取得に失敗しました。"_s);
}

TEST_F(UpdateCommand, TheBrowserStopsAndShowsTheNewsFirst) {
    auto& browser = context.windows.get<browser::frmBrowser>();
    writeFile(session.DataPath + u"a.htm"_s, "text");
    browser.Navigate(session.DataPath + u"a.htm"_s);
    server.answerWith({answer("[Release]\r\nversion=1\r\n")});
    press(u"MnuUpdateCheck"_s);
    EXPECT_TRUE(browser.isVisible());
    EXPECT_EQ(desk.events.first()[u"event"_s], u"navigate"_s);
    EXPECT_EQ(desk.texts(u"navigate"_s), QStringList{u"http://127.0.0.1/news.htm"_s});
    EXPECT_EQ(browser.LocationURL(), u""_s);
    writeFile(session.DataPath + u"b.htm"_s, "text");
    browser.bDocumentComplete = false;
    browser.Navigate(session.DataPath + u"b.htm"_s);
    ASSERT_TRUE(waitFor([&] { return browser.bDocumentComplete; }));
    const auto* view = browser.findChild<QWebEngineView*>();
    ASSERT_NE(view, nullptr);
    EXPECT_EQ(view->history()->count(), 1) << "what was to be loaded is not";
    EXPECT_TRUE(browser.LocationURL().endsWith(u"b.htm"_s));
}

TEST_F(UpdateCommand, TheStartedUpdaterEndsTheProgramBehindTheCommand) {
    putUpdater();
    server.answerWith({release(), answer("archive")});
    desk.answers = {u"yes"_s, u"yes"_s};
    press(u"MnuUpdateCheck"_s);
    EXPECT_EQ(desk.texts(u"failure"_s), QStringList());
    EXPECT_EQ(pointerShape(), u"default"_s);
    EXPECT_TRUE(top().isVisible());
    settle();
    EXPECT_FALSE(top().isVisible());
    EXPECT_EQ(bytesOf(path(u"v.lzh"_s)), "archive");
    EXPECT_TRUE(isUpdaterStarted());
}

TEST_F(UpdateCommand, TheUpdaterEndsTheProgramThroughTheUnsavedQuestion) {
    putUpdater();
    updater().setEnabled(true);
    editAnEntry();
    desk.answers = {u"no"_s};
    press(u"MnuVellUpdater"_s);
    EXPECT_TRUE(top().isVisible());
    settle();
    EXPECT_EQ(boxes(), QStringList{kUnsaved});
    EXPECT_FALSE(top().isVisible());
    EXPECT_TRUE(isUpdaterStarted());
    EXPECT_EQ(core::ReadIni(working.filePath(u"update.txt"_s), u"CurrentVersion"_s, u"version"_s), u"2.2.0"_s);
}

TEST_F(UpdateCommand, AnEntryThatCanNotBeSavedKeepsTheProgram) {
    putUpdater();
    updater().setEnabled(true);
    editAnEntry();
    control<QLineEdit>(context.windows.get<editor::frmContents>(), u"txtTitle"_s).clear();
    desk.answers = {u"yes"_s};
    press(u"MnuVellUpdater"_s);
    settle();
    EXPECT_EQ(boxes(), (QStringList{kUnsaved, u"critical: タイトルを入力してください！"_s}));
    EXPECT_TRUE(top().isVisible());
    EXPECT_FALSE(context.runs.isEnding());
}

TEST_F(UpdateCommand, AnUpdaterThatDoesNotStartIsAFailureAndTheProgramStays) {
    putUpdater();
    writeFile(path(u"VellUpdater.exe"_s), "MZ not for here");
    updater().setEnabled(true);
    press(u"MnuVellUpdater"_s);
    ASSERT_EQ(desk.texts(u"failure"_s).size(), 1);
    EXPECT_TRUE(desk.texts(u"failure"_s)[0].contains(u"VellUpTmp.exe"_s));
    settle();
    EXPECT_TRUE(top().isVisible());
}

TEST_F(UpdateCommand, ADownloadIsStoppedThoughItsServerIsSilent) {
    server.answerWith({release(), "HTTP/1.1 200 OK\r\nContent-Length: 5000\r\n\r\nstart"});
    server.stayOpen();
    desk.answers = {u"yes"_s};
    auto& progress = context.windows.get<publish::frmProgress>();
    QElapsedTimer sincePressed;
    QTimer pressing;
    QObject::connect(&pressing, &QTimer::timeout, &top(), [&] {
        if (desk.texts(u"status"_s).last() == u"Downloading "_s + address(u"v"_s) && !progress.isStopWanted()) {
            progress.display({{}, {}, {}, 1, 0, false, false, true});
            sincePressed.start();
            control<QPushButton>(progress, u"Btn_Stop"_s).click();
        }
    });
    pressing.start(100);
    press(u"MnuUpdateCheck"_s);
    ASSERT_TRUE(sincePressed.isValid());
    EXPECT_LT(sincePressed.elapsed(), 20000) << "long before the network gives up";
    EXPECT_EQ(boxes(), QStringList{u"question: 新しいバージョンが存在します(2.2.1)。\r\nダウンロードしますか？"_s});
    EXPECT_EQ(desk.texts(u"status"_s).last(), u"ダウンロードを中止しました。"_s);
    EXPECT_FALSE(exists(path(u"v.lzh"_s)));
    EXPECT_FALSE(updater().isEnabled());
}

TEST_F(UpdateCommand, WhileOneRunsItsCommandsOnlyBeepAndAClosedWindowEndsIt) {
    const SilentServer silent;
    setEndpoint(keys::kMakerUpdateFolder, silent.address());
    putUpdater();
    bool wasPressed = false;
    QTimer::singleShot(300, &top(), [&] {
        ASSERT_TRUE(context.runs.isAnyRunning());
        updater().setEnabled(true);
        const qsizetype shown = desk.events.size();
        press(u"MnuUpdateCheck"_s);
        press(u"MnuVellUpdater"_s);
        EXPECT_EQ(desk.events.size(), shown);
        EXPECT_FALSE(exists(path(u"VellUpTmp.exe"_s)));
        top().close();
        EXPECT_TRUE(top().isVisible()) << "the routine still works with its windows";
        wasPressed = true;
    });
    press(u"MnuUpdateCheck"_s);
    EXPECT_TRUE(wasPressed);
    EXPECT_EQ(boxes(), QStringList());
    EXPECT_EQ(desk.texts(u"failure"_s), QStringList());
    EXPECT_FALSE(updater().isEnabled());
    EXPECT_EQ(pointerShape(), u"default"_s);
    settle();
    EXPECT_FALSE(top().isVisible());
}

} // namespace
} // namespace velloria::tests
