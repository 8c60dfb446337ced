// The upload as a command of the main window: other commands go on beside it, and the program waits for its end.
#include "core/ini.h"
#include "editor/forms/frmCalender.h"
#include "editor/forms/frmContents.h"
#include "support/desktop_home.h"
#include "support/fault_server.h"

#include <QJsonObject>
#include <QLineEdit>

#include <unistd.h>

using namespace Qt::StringLiterals;

namespace velloria::tests {
namespace {

class UploadCommand : public DesktopHome {
protected:
    void SetUp() override {
        if (!server.isRunning() && geteuid() != 0)
            GTEST_SKIP() << "port 21 can't be opened: only the superuser may";
        ASSERT_TRUE(server.isRunning());
        const auto set = [&](const QString& key, const QString& value) {
            core::WriteIni(session.DiaryIniFile, u"FTP"_s, key, value);
        };
        set(u"URL"_s, server.host());
        set(u"ID"_s, u"u"_s);
        set(u"PASV"_s, u"1"_s);
        writeFile(path(u"x.htm"_s), "<html>\r\n");
        writeFile(session.UserPath + u"upload.tmp"_s, (path(u""_s) + u",x.htm\r\n"_s).toUtf8());
        showTop();
        desk.events = {};
    }
    void press(const QString& name) { top().command(name)->trigger(); }
    void stallTheServer() { server.on(u"STOR"_s, QJsonObject{{u"stall"_s, true}}); }
    /// While the server is waited for, timers run and the user's input does not.
    template <typename Action>
    void whileWaiting(Action action) {
        QTimer::singleShot(50, &top(), [=, this] {
            if (server.countOf("STOR x.htm") > 0)
                action();
            else
                whileWaiting(action);
        });
    }
    QStringList texts() const {
        QStringList all;
        for (const auto event : desk.events) {
            const QString text = event[u"text"_s].toString();
            if (event[u"event"_s] == u"progress"_s && (all.isEmpty() || all.last() != text))
                all += text;
        }
        return all;
    }

    FaultServer server;
};

TEST_F(UploadCommand, SendsThePages) {
    press(u"MnuFTPUp"_s);
    EXPECT_EQ(texts().last(), u"日記のアップロードに成功しました。"_s);
    EXPECT_EQ(server.content("x.htm"), "<html>\r\n");
    EXPECT_FALSE(context.runs.isAnyRunning());
}

TEST_F(UploadCommand, ASecondOneOnlyBeepsWhileTheFirstRuns) {
    stallTheServer();
    bool wasPressed = false;
    whileWaiting([&] {
        const qsizetype before = desk.events.size();
        press(u"MnuFTPUp"_s);
        EXPECT_EQ(desk.events.size(), before);
        wasPressed = true;
        top().close();
    });
    press(u"MnuFTPUp"_s);
    EXPECT_TRUE(wasPressed);
    EXPECT_EQ(server.countOf("connected"), 1);
}

TEST_F(UploadCommand, OtherCommandsGoOnMeanwhile) {
    stallTheServer();
    bool wasPressed = false;
    whileWaiting([&] {
        press(u"MnuWriteDiary"_s);
        EXPECT_TRUE(context.windows.get<editor::frmContents>().isVisible());
        wasPressed = true;
        top().close();
    });
    press(u"MnuFTPUp"_s);
    EXPECT_TRUE(wasPressed);
}

TEST_F(UploadCommand, ClosingTheMainWindowEndsItThroughItsFailureAndThenTheProgram) {
    stallTheServer();
    whileWaiting([&] {
        top().close();
        EXPECT_TRUE(top().isVisible()) << "the routine still works with its windows";
    });
    press(u"MnuFTPUp"_s);
    EXPECT_TRUE(top().isVisible());
    EXPECT_TRUE(texts().last().endsWith(u"\r\n不明なエラーで終了しました。"_s)) << texts().last().toStdString();
    EXPECT_EQ(desk.events.last()[u"shape"_s], u"default"_s);
    EXPECT_FALSE(exists(session.UserPath + u"uploadold.tmp"_s));
    settle();
    EXPECT_FALSE(top().isVisible());
}

TEST_F(UploadCommand, AProgramThatWasNotEndedAfterAllUploadsAgain) {
    context.windows.get<editor::frmCalender>().Calender_DateClick(QDate(2004, 5, 6));
    auto& title = control<QLineEdit>(context.windows.get<editor::frmContents>(), u"txtTitle"_s);
    title.insert(u"x"_s);
    title.clear();
    desk.answers = {u"yes"_s}; // to save it, which is refused without a title
    stallTheServer();
    whileWaiting([&] { top().close(); });
    press(u"MnuFTPUp"_s);
    settle();
    EXPECT_TRUE(top().isVisible());
    EXPECT_EQ(boxes().last(), u"critical: タイトルを入力してください！"_s);
    server.on(u"STOR"_s, {});
    press(u"MnuFTPUp"_s);
    EXPECT_EQ(texts().last(), u"日記のアップロードに成功しました。"_s);
}

TEST_F(UploadCommand, APingWithoutItsPluginIsAFailureBehindTheGoodRun) {
    core::WriteIni(session.DiaryIniFile, u"FTP"_s, u"PING"_s, u"1"_s);
    press(u"MnuFTPUp"_s);
    EXPECT_EQ(texts().last(), u"日記のアップロードに成功しました。"_s);
    ASSERT_EQ(desk.texts(u"failure"_s).size(), 1);
    EXPECT_TRUE(desk.texts(u"failure"_s)[0].contains(u"Chimer.dll"_s));
    EXPECT_FALSE(context.runs.isAnyRunning());
}

} // namespace
} // namespace velloria::tests
