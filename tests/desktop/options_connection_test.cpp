// The trial of an account from the options: it uses what the boxes hold, keeps nothing, and can be left at any time.
#include "options_home.h"
#include "support/fault_server.h"

#include <QJsonObject>
#include <QLabel>

#include <unistd.h>

using namespace Qt::StringLiterals;

namespace velloria::tests {
namespace {

class OptionsConnection : public OptionsHome {
protected:
    void SetUp() override {
        if (!server.isRunning() && geteuid() != 0)
            GTEST_SKIP() << "port 21 can't be opened: only the superuser may";
        ASSERT_TRUE(server.isRunning());
        OptionsHome::SetUp();
        open();
        box<QTabWidget>("TabStrip1").setCurrentIndex(2);
        line("txtFTP_URL").setText(server.host());
        line("txtFTP_ID").setText(u"u"_s);
        line("txtFTP_Pass").setText(u"p"_s);
        box<QCheckBox>("chkFTP_PASV").setChecked(true);
    }
    QString found() { return box<QLabel>("labelFTP_Test").text(); }
    void stallTheServer() { server.on(u"USER"_s, QJsonObject{{u"stall"_s, true}}); }
    /// A user's click; what follows it runs in the windows' own time.
    void test() {
        button("Btn_TestFTP").click();
        EXPECT_EQ(button("Btn_TestFTP").text(), u"中止"_s);
    }
    bool ends() {
        return waitFor([this] { return button("Btn_TestFTP").text() == u"接続を試す"_s; });
    }
    /// Runs `action` once the server has the user's name, and stalls.
    template <typename Action>
    void whileWaiting(Action action) {
        QTimer::singleShot(20, &top(), [=, this] {
            if (server.countOf("USER u") > 0)
                action();
            else
                whileWaiting(action);
        });
    }
    void leave() {
        desk.answers = {u"no"_s};
        press("Btn_Cancel");
    }

    FaultServer server;
};

TEST_F(OptionsConnection, TriesWhatTheBoxesHoldAndKeepsNothing) {
    server.makeFolder("diary");
    line("txtFTP_Folder").setText(u"diary"_s);
    const QMap<QString, QByteArray> before = contentOf(home.path());
    test();
    ASSERT_TRUE(ends());
    EXPECT_TRUE(found().startsWith(u"接続できました（暗号化なし）。フォルダ「diary」に入れました。250"_s))
        << found().toStdString();
    EXPECT_EQ(desk.texts(u"status"_s).last(), found());
    EXPECT_EQ(contentOf(home.path()), before);
    EXPECT_EQ(server.countOf("CWD diary"), 1);
    leave();
}

TEST_F(OptionsConnection, ALongWordOfTheServerLeavesTheWindowOnTheScreen) {
    const int width = window()->width();
    server.on(u"PASS"_s, QJsonObject{{u"reply"_s, u"530 "_s + QString(200, u'x') + u"\r\n"_s}});
    test();
    ASSERT_TRUE(ends());
    settle();
    EXPECT_LE(window()->minimumSizeHint().width(), width) << "what the layout will ask for";
    EXPECT_EQ(box<QLabel>("labelFTP_Test").toolTip(), found()) << "to be read whole";
    EXPECT_TRUE(found().contains(QString(200, u'x')));
    leave();
}

TEST_F(OptionsConnection, TheKindOfEncryptionIsThatOfTheBoxes) {
    box<QRadioButton>("optTLS_Required").click();
    test();
    ASSERT_TRUE(ends());
    EXPECT_TRUE(found().contains(u"サーバーは暗号化に応じません。"_s)) << found().toStdString();
    leave();
}

TEST_F(OptionsConnection, ChangesMeanwhileAreNoneOfIt) {
    stallTheServer();
    bool wasChanged = false;
    whileWaiting([&] {
        line("txtFTP_ID").setText(u"other"_s);
        box<QTabWidget>("TabStrip1").setCurrentIndex(0);
        press("Btn_Apply");
        wasChanged = key("FTP", "ID") == u"other"_s;
        button("Btn_TestFTP").click(); // stops it
    });
    test();
    ASSERT_TRUE(ends());
    EXPECT_TRUE(wasChanged);
    EXPECT_EQ(found(), u"接続の確認をやめました。"_s);
    EXPECT_EQ(server.countOf("USER u"), 1);
    press("Btn_Cancel");
}

TEST_F(OptionsConnection, ClosingTheDialogEndsIt) {
    stallTheServer();
    bool wasClosed = false;
    whileWaiting([&] {
        leave();
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        wasClosed = true;
    });
    test();
    ASSERT_TRUE(waitFor([&] { return wasClosed && !context.runs.isAnyRunning(); }));
    EXPECT_FALSE(window());
    settle();
}

TEST_F(OptionsConnection, TheMainWindowClosesAfterIt) {
    leave();
    open();
    line("txtFTP_URL").setText(server.host());
    line("txtFTP_ID").setText(u"u"_s);
    stallTheServer();
    whileWaiting([&] { top().close(); });
    test();
    EXPECT_TRUE(waitFor([&] { return !top().isVisible(); }));
    EXPECT_FALSE(context.runs.isAnyRunning());
}

TEST_F(OptionsConnection, NoUploadRunsBesideIt) {
    stallTheServer();
    bool wasPressed = false;
    whileWaiting([&] {
        const qsizetype before = desk.events.size();
        top().command(u"MnuFTPUp"_s)->trigger();
        EXPECT_EQ(desk.events.size(), before);
        wasPressed = true;
        button("Btn_TestFTP").click();
    });
    test();
    ASSERT_TRUE(ends());
    EXPECT_TRUE(wasPressed);
    EXPECT_EQ(server.countOf("connected"), 1);
    context.runs.run(desktop::LongRoutine::Upload, [&] {
        test();
        EXPECT_TRUE(ends());
    });
    EXPECT_EQ(found(), u"アップロードが終わってから試してください。"_s);
    EXPECT_EQ(server.countOf("connected"), 1);
    leave();
}

} // namespace
} // namespace velloria::tests
