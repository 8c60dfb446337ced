// A picture that is dragged out of a page, by the mouse as the screen tells it.
#include "browser/forms/frmBrowser.h"
#include "editor/forms/frmHTMLMakeImage.h"
#include "real_keys.h"

#include <QWebEngineView>

using namespace Qt::StringLiterals;

namespace velloria::tests {
namespace {

/// Counts what is dragged over the windows.
struct Drags : QObject {
    Drags() { qApp->installEventFilter(this); }
    bool eventFilter(QObject*, QEvent* event) override {
        entered += event->type() == QEvent::DragEnter;
        return false;
    }
    int entered = 0;
};

class PageDrag : public RealKeys {
protected:
    void SetUp() override {
        RealKeys::SetUp();
        QImage picture(300, 300, QImage::Format_RGB32);
        picture.fill(Qt::red);
        ASSERT_TRUE(picture.save(session.DataPath + u"Cloudy.png"_s));
        writeFile(session.DataPath + u"page.htm"_s, "<body style='margin:0'><img src=Cloudy.png></body>");
        auto& browser = context.windows.get<browser::frmBrowser>();
        browser.place({710, 0, 380, 600});
        browser.showChild();
        browser.bDocumentComplete = false;
        browser.Navigate(session.DataPath + u"page.htm"_s);
        ASSERT_TRUE(waitFor([&] { return browser.bDocumentComplete; }));
        view = browser.findChild<QWebEngineView*>(u"WebBrowser"_s);
        ASSERT_TRUE(view);
        // It is drawn after that.
        ASSERT_TRUE(waitFor([&] {
            QTest::qWait(50);
            const QPoint place = view->mapToGlobal(kOnThePicture);
            const QImage drawn = view->screen()->grabWindow(0, place.x(), place.y(), 1, 1).toImage();
            return drawn.pixelColor(0, 0) == QColor(Qt::red);
        }));
    }
    static QStringList moveTo(const QPoint& place) {
        return {u"mousemove"_s, QString::number(place.x()), QString::number(place.y()), u"sleep"_s, u"0.1"_s};
    }
    /// Drags the picture there and lets go.
    void drag(const QPoint& target) {
        const QPoint start = view->mapToGlobal(kOnThePicture);
        begin(moveTo(start) + QStringList{u"mousedown"_s, u"1"_s});
        spy.isDown = spy.isStroke = false; // the only key comes after the drop
        // The drag has events of its own, so what follows is done beside it.
        QTimer moves;
        int step = 0;
        QObject::connect(&moves, &QTimer::timeout, [&] {
            if (!isAllPressed())
                return;
            if (drags.entered == 0) {
                step = (step + 5) % 100;
                begin(moveTo(start + QPoint(step, step)));
                return;
            }
            moves.stop();
            begin(moveTo(target) + moveTo(target + QPoint(3, 3)) + moveTo(target + QPoint(6, 6)) +
                  QStringList{u"mouseup"_s, u"1"_s, u"sleep"_s, u"0.3"_s, u"key"_s, u"Shift_L"_s});
        });
        moves.start(50);
        EXPECT_TRUE(waitFor([&] { return spy.isStroke; }));
        EXPECT_GT(drags.entered, 0) << "no drag began";
        settle();
    }

    static constexpr QPoint kOnThePicture{60, 60};
    Drags drags;
    QWebEngineView* view = nullptr;
};

TEST_F(PageDrag, DoesNothingWithinTheProgram) {
    for (const QPoint& target : {view->mapToGlobal(QPoint(100, 350)), pane().mapToGlobal(QPoint(100, 100))}) {
        drags.entered = 0;
        drag(target);
        EXPECT_FALSE(context.windows.find<editor::frmHTMLMakeImage>());
        EXPECT_EQ(pane().toPlainText(), QString());
    }
}

} // namespace
} // namespace velloria::tests
