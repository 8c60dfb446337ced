#include "desktop/window_place.h"

#include "core/keys.h"
#include "desktop/twips.h"
#include "support/desktop_home.h"
#include "support/disk_watch.h"

#include <QScreen>

using namespace Qt::StringLiterals;

namespace velloria::tests {
namespace {

class WindowPlace : public FactoryHome {
protected:
    WindowPlace() { session.DiaryIniFile = file; }

    const core::PlaceSettings& settings = core::keys::kParentFormPlace;
    const QString file = path(u"diary.ini"_s);
};

TEST_F(WindowPlace, IsFifteenTwipsToAPixel) {
    EXPECT_EQ(desktop::toTwips(279), 4185);
    EXPECT_EQ(desktop::fromTwips(3250), 217);
    EXPECT_EQ(desktop::fromTwips(-8), -1);
    EXPECT_EQ(desktop::fromTwips(57'600), 3840);
}

TEST_F(WindowPlace, IsReadIn32Bits) {
    writeFile(file, "[ParentForm]\r\nTop=0\r\nLeft=-45000\r\nWidth=57600\r\nHeight=abc\r\n");
    const desktop::WindowPlace place = desktop::readPlace(session, settings);
    EXPECT_EQ(place.top, 0);
    EXPECT_EQ(place.left, -45'000);
    EXPECT_EQ(place.width, 57'600);
    EXPECT_EQ(place.height, 0);
    EXPECT_EQ(desktop::readPlace(session, core::keys::kFindPlace).top, std::nullopt);
}

TEST_F(WindowPlace, WritesWhatIsTold) {
    desktop::WindowPlace place = desktop::placeOf(QRect(10, 20, 300, 400));
    place.height.reset();
    desktop::writePlace(session, settings, place);
    EXPECT_EQ(bytesOf(file), "[ParentForm]\r\nTop=300\r\nLeft=150\r\nWidth=4500\r\n");
}

TEST_F(WindowPlace, IsWrittenInOnePiece) {
    const DiskWatch watch;
    desktop::writePlace(session, settings, desktop::placeOf(QRect(10, 20, 300, 400)));
    EXPECT_EQ(watch.synced().filter(u".velltmp-"_s).size(), 1);
}

TEST_F(WindowPlace, MovesAWindowOntoItsArea) {
    const QRect area(0, 0, 1000, 800);
    EXPECT_EQ(desktop::movedInto({-50, 900, 300, 200}, area), QRect(0, 600, 300, 200));
    EXPECT_EQ(desktop::movedInto({10, 20, 3000, 2000}, area), area);
    EXPECT_EQ(desktop::movedInto({10, 20, -5, 0}, area), QRect(10, 20, 1, 1));
    EXPECT_EQ(desktop::movedInto({700, 500, 300, 300}, area), QRect(700, 500, 300, 300));
}

TEST_F(WindowPlace, MovesAWindowBesideAnother) {
    const QRect area(0, 0, 1000, 600);
    const QRect viewer(0, 10, 480, 500);
    EXPECT_EQ(desktop::movedBeside(viewer, {0, 200, 400, 400}, area), QRect(400, 10, 480, 500));
    EXPECT_EQ(desktop::movedBeside(viewer, {600, 200, 400, 400}, area), QRect(120, 10, 480, 500));
    EXPECT_EQ(desktop::movedBeside(viewer, {0, 200, 700, 400}, area), QRect(700, 10, 300, 500)) << "narrower";
    EXPECT_EQ(desktop::movedBeside(viewer, {0, 0, 1000, 600}, area), QRect(800, 10, 200, 500)) << "no room at all";
}

TEST_F(WindowPlace, BeyondEveryScreenComesBack) {
    for (const qint32 far : {1'000'000'000, -1'000'000'000, 2'147'483'647}) {
        QWidget window;
        window.resize(300, 200);
        desktop::restorePlace(window, {far, far, far, far}, {});
        EXPECT_TRUE(window.screen()->availableGeometry().contains(window.geometry())) << far;
        EXPECT_GE(window.width(), 200) << far;
        EXPECT_GE(window.height(), 150) << far;
    }
}

TEST_F(WindowPlace, LeavesRoomForTheFrame) {
    const QMargins frame(4, 30, 4, 6);
    const QRect area = QGuiApplication::primaryScreen()->availableGeometry();
    QWidget window;
    window.resize(area.size());
    desktop::restorePlace(window, {}, frame);
    EXPECT_EQ(window.size(), area.size().shrunkBy(frame));
    desktop::restorePlace(window, {1, area.right() * 15, area.height() * 15, {}}, frame);
    EXPECT_TRUE(area.contains(QRect(window.pos(), window.size().grownBy(frame))));
}

TEST_F(WindowPlace, AnEdgeOfZeroIsNotTold) {
    const QRect area = QGuiApplication::primaryScreen()->availableGeometry();
    const QPoint middle = QRect(area.center() - QPoint(149, 99), QSize(300, 200)).topLeft();
    const std::tuple<qint32, qint32, QPoint> cases[] = {
        {450, 600, {30, 40}}, {0, 600, {middle.x(), 40}}, {450, 0, {30, middle.y()}}, {-15, 15, {0, 1}}};
    for (const auto& [left, top, expected] : cases) {
        QWidget window;
        window.resize(300, 200);
        desktop::restorePlace(window, {top, left, {}, {}}, {});
        EXPECT_LE((window.pos() - expected).manhattanLength(), 1) << left << ' ' << top;
        QWidget placed;
        placed.resize(300, 200);
        placed.move(70, 80);
        desktop::restorePlace(placed, {top, left, {}, {}}, {});
        EXPECT_EQ(placed.x(), left == 0 ? 70 : expected.x()) << left << ' ' << top;
        EXPECT_EQ(placed.y(), top == 0 ? 80 : expected.y()) << left << ' ' << top;
    }
    QWidget window;
    desktop::restorePlace(window, {0, 0, {}, {}}, {});
    EXPECT_FALSE(window.testAttribute(Qt::WA_Moved)) << "the screen places it";
}

} // namespace
} // namespace velloria::tests
