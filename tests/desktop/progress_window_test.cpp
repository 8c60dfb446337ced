#include "publish/forms/frmProgress.h"
#include "support/desktop_home.h"

#include <QCloseEvent>
#include <QLabel>
#include <QProgressBar>
#include <QPushButton>
#include <QtTest/qtestspontaneevent.h>

using namespace Qt::StringLiterals;

namespace velloria::tests {
namespace {

class ProgressWindow : public DesktopHome {
protected:
    ProgressWindow() { showTop(); }
    publish::frmProgress& progress() { return context.windows.get<publish::frmProgress>(); }
    void display(const platform::ProgressWindow& shown) {
        progress().display(shown);
        EXPECT_TRUE(becomesVisible(progress()));
    }
    void displayText(const QString& shown, bool mayBeClosed = false) {
        display({{}, {}, shown, 1, 0, mayBeClosed, mayBeClosed});
    }
    QString text(const QString& label) { return control<QLabel>(progress(), label).text(); }
    QProgressBar& bar() { return control<QProgressBar>(progress(), u"ProgressBar1"_s); }
    QPushButton& ok() { return control<QPushButton>(progress(), u"Btn_OK"_s); }
    /// The request of the window's frame; whether it was obeyed.
    bool closeByFrame() {
        QCloseEvent request;
        QSpontaneKeyEvent::setSpontaneous(&request);
        qApp->notify(&progress(), &request); // sendEvent would make it one of the program's
        return request.isAccepted();
    }
};

TEST_F(ProgressWindow, ShowsWhatItIsTold) {
    display({u"FTP by Velloria"_s, u"エラー"_s, u"一\r\n(two & three)"_s, 40, 3, false});
    EXPECT_EQ(progress().windowTitle(), u"FTP by Velloria"_s);
    EXPECT_EQ(text(u"txtTitle"_s), u"エラー"_s);
    EXPECT_EQ(text(u"txtText"_s), u"一\n(two & three)"_s);
    EXPECT_EQ(bar().maximum(), 40);
    EXPECT_EQ(bar().value(), 3);
    EXPECT_FALSE(ok().isEnabled());
    EXPECT_EQ(progress().windowModality(), Qt::NonModal);
    EXPECT_FALSE(progress().windowFlags() & Qt::WindowStaysOnTopHint);
    EXPECT_EQ(progress().windowIcon().cacheKey(), top().windowIcon().cacheKey());
}

TEST_F(ProgressWindow, ABarAboveItsMaximumIsFullAndOneWithoutMaximumEmpty) {
    display({{}, {}, {}, 3, 12});
    EXPECT_EQ(bar().value(), 3);
    display({{}, {}, {}, 0, 0});
    EXPECT_EQ(bar().maximum(), 1) << "0 would be the bar of work without an end";
    EXPECT_EQ(bar().value(), 0);
}

TEST_F(ProgressWindow, StandsInTheMiddleOfTheMainWindow) {
    displayText(u"1"_s);
    settle();
    const QPoint distance = progress().frameGeometry().center() - top().frameGeometry().center();
    EXPECT_LT(distance.manhattanLength(), 60);
}

TEST_F(ProgressWindow, TheFrameClosesItOnlyWhenItMayBeClosed) {
    displayText(u"1"_s);
    EXPECT_FALSE(closeByFrame());
    EXPECT_TRUE(progress().isVisible());
    displayText(u"2"_s, true);
    EXPECT_TRUE(ok().isEnabled());
    EXPECT_TRUE(closeByFrame());
}

TEST_F(ProgressWindow, OkClosesItWhereTheFrameMayNot) {
    display({{}, {}, u"1"_s, 1, 0, true, false});
    EXPECT_TRUE(ok().isEnabled());
    EXPECT_FALSE(closeByFrame());
    ok().click();
    EXPECT_FALSE(progress().isVisible());
}

TEST_F(ProgressWindow, OkClosesItAndTheNextRunShowsItAsNew) {
    displayText(u"1"_s, true);
    ok().click();
    EXPECT_FALSE(progress().isVisible());
    EXPECT_TRUE(progress().EnableBatsuBtn);
    displayText(u"2"_s);
    EXPECT_TRUE(progress().isVisible());
    EXPECT_FALSE(ok().isEnabled());
    EXPECT_FALSE(closeByFrame());
}

TEST_F(ProgressWindow, WorkThatCanBeStoppedHasAButtonForThat) {
    auto& stop = control<QPushButton>(progress(), u"Btn_Stop"_s);
    displayText(u"1"_s);
    EXPECT_FALSE(stop.isVisible());
    platform::ProgressWindow shown{{}, {}, u"2"_s, 1, 0, false, false, true};
    display(shown);
    EXPECT_TRUE(stop.isVisible());
    EXPECT_FALSE(progress().isStopWanted());
    stop.click();
    EXPECT_TRUE(progress().isStopWanted());
    EXPECT_FALSE(stop.isEnabled());
    display(shown);
    EXPECT_TRUE(progress().isStopWanted()) << "the work has not looked yet";
    displayText(u"3"_s, true);
    EXPECT_FALSE(stop.isVisible());
    display(shown);
    EXPECT_FALSE(progress().isStopWanted()) << "other work begins";
    EXPECT_TRUE(stop.isEnabled());
}

TEST_F(ProgressWindow, DoesNotHoldUpTheEndOfTheProgram) {
    displayText(u"1"_s);
    top().close();
    EXPECT_EQ(context.windows.find<publish::frmProgress>(), nullptr);
    EXPECT_FALSE(top().isVisible());
}

TEST_F(ProgressWindow, ALongNameDoesNotWidenIt) {
    displayText(u"1"_s);
    const int width = progress().width();
    displayText(QString(u"ファイル「"_s) + QString(200, u'あ') + u"」をアップロード中。(0/1)"_s);
    settle();
    EXPECT_LE(progress().width(), std::max(width, 500));
    auto& label = control<QLabel>(progress(), u"txtText"_s);
    EXPECT_GE(label.height(), label.heightForWidth(label.width())) << "all of it is seen";
}

} // namespace
} // namespace velloria::tests
