#include "desktop/house_style.h"

#include "desktop/yes_no_box.h"
#include "support/desktop_home.h"

#include <QDialogButtonBox>
#include <QFileDialog>
#include <QInputDialog>
#include <QMdiArea>
#include <QMdiSubWindow>
#include <QStyleOptionTitleBar>

#include <cmath>

using namespace Qt::StringLiterals;

namespace velloria::tests {
namespace {

QPalette darkPalette() {
    QPalette dark(QColor(0x2B, 0x2B, 0x2B));
    dark.setColor(QPalette::Base, QColor(0x20, 0x20, 0x20));
    return dark;
}

double luminance(const QColor& colour) {
    const auto part = [](double value) {
        return value <= 0.03928 ? value / 12.92 : std::pow((value + 0.055) / 1.055, 2.4);
    };
    return 0.2126 * part(colour.redF()) + 0.7152 * part(colour.greenF()) + 0.0722 * part(colour.blueF());
}

/// The greatest contrast between two pixels of the place: 1 when all are alike, 21 for black on white.
double contrastIn(const QImage& picture, const QRect& place) {
    double darkest = 1;
    double lightest = 0;
    for (int y = place.top(); y <= place.bottom(); ++y) {
        for (int x = place.left(); x <= place.right(); ++x) {
            const double value = luminance(picture.pixelColor(x, y));
            darkest = std::min(darkest, value);
            lightest = std::max(lightest, value);
        }
    }
    return (lightest + 0.05) / (darkest + 0.05);
}

/// Fixture: the program's own style, and what was there before, again after the test.
class HouseStyle : public ::testing::Test {
protected:
    HouseStyle()
        : oldPalette(QApplication::palette())
        , oldStyle(QApplication::style()->name()) {
        QApplication::setStyle(new desktop::HouseStyle);
    }
    ~HouseStyle() override {
        QApplication::setStyle(oldStyle);
        QApplication::setPalette(oldPalette);
    }

    static QStringList iconsOf(QWidget& dialog) {
        dialog.show();
        QStringList found;
        for (auto* box : dialog.findChildren<QDialogButtonBox*>()) {
            for (const QAbstractButton* button : box->buttons()) {
                if (!button->icon().isNull())
                    found += button->text();
            }
        }
        return found;
    }

    QPalette oldPalette;
    QString oldStyle;
};

TEST_F(HouseStyle, ButtonsOfBoxesBearNoPictures) {
    QMessageBox message(QMessageBox::Critical, u"title"_s, u"text"_s, QMessageBox::Ok | QMessageBox::Cancel);
    EXPECT_EQ(iconsOf(message), QStringList());
    desktop::YesNoBox question(u"title"_s, u"text"_s, nullptr);
    EXPECT_EQ(iconsOf(question), QStringList());
    QInputDialog prompt;
    EXPECT_EQ(iconsOf(prompt), QStringList());
    QFileDialog file;
    EXPECT_EQ(iconsOf(file), QStringList());
}

TEST_F(HouseStyle, HintsCanBeReadInADarkPalette) {
    QPalette dark = darkPalette();
    dark.setColor(QPalette::PlaceholderText, Qt::black);
    QApplication::style()->polish(dark); // as the toolkit does with the colours of the desktop
    QApplication::setPalette(dark);
    QWidget window;
    auto* line = new QLineEdit(&window);
    line->setGeometry(0, 0, 200, 40);
    line->setPlaceholderText(u"Hint"_s);
    auto* text = new QPlainTextEdit(&window);
    text->setGeometry(0, 50, 200, 60);
    text->setPlaceholderText(u"Hint"_s);
    text->setEnabled(false);
    window.show();
    settle();
    for (QWidget* box : {static_cast<QWidget*>(line), static_cast<QWidget*>(text)}) {
        const QImage picture = box->grab().toImage();
        EXPECT_GT(contrastIn(picture, picture.rect().adjusted(5, 5, -5, -5)), 3) << box->metaObject()->className();
    }
}

TEST_F(HouseStyle, MenusShowTheirCaptionsInEveryFont) {
    const QFont before = QApplication::font();
    for (const int points : {9, 11, 13, 16, 20}) {
        QApplication::setFont(QFont(before.family(), points));
        QMenu menu;
        menu.addAction(u"カスタマイズファイルのエクスポート(&E)"_s);
        menu.addAction(u"short"_s);
        const QImage shown = menu.grab().toImage();
        menu.addAction(u"カスタマイズファイルのエクスポート(&E) and so on"_s); // the same line with room to spare
        const QImage wide = menu.grab().toImage();
        const QRect words(0, 0, shown.width() - menu.fontMetrics().height(),
                          menu.actionGeometry(menu.actions()[0]).bottom());
        EXPECT_EQ(shown.copy(words), wide.copy(words)) << points;
    }
    QApplication::setFont(before);
}

TEST_F(HouseStyle, FrameButtonsStandOutInEveryPalette) {
    for (const QPalette& palette : {oldPalette, darkPalette()}) {
        QApplication::setPalette(palette);
        QMdiArea area;
        area.resize(700, 400);
        std::array<QMdiSubWindow*, 2> children{};
        for (QMdiSubWindow*& child : children) {
            child = area.addSubWindow(new QWidget);
            child->resize(300, 200);
        }
        area.show();
        ASSERT_TRUE(becomesVisible(area));
        area.tileSubWindows();
        area.setActiveSubWindow(children[0]);
        settle();
        for (QMdiSubWindow* child : children) {
            QStyleOptionTitleBar bar;
            bar.initFrom(child);
            bar.titleBarFlags = child->windowFlags();
            bar.titleBarState = child->windowState();
            bar.subControls = QStyle::SC_All;
            bar.rect.setHeight(child->style()->pixelMetric(QStyle::PM_TitleBarHeight, &bar, child));
            const QImage picture = child->grab().toImage();
            for (const auto button :
                 {QStyle::SC_TitleBarMinButton, QStyle::SC_TitleBarMaxButton, QStyle::SC_TitleBarCloseButton}) {
                const QRect place = child->style()->subControlRect(QStyle::CC_TitleBar, &bar, button, child);
                ASSERT_FALSE(place.isEmpty());
                // Within the button's own edge.
                EXPECT_GT(contrastIn(picture, place.adjusted(4, 4, -4, -4)), 3)
                    << "button " << button << (child == children[0] ? " active" : " inactive")
                    << (palette == oldPalette ? " light" : " dark");
            }
        }
    }
}

TEST_F(HouseStyle, FrameButtonsInTheMenuBarStandOutInEveryPalette) {
    for (const QPalette& palette : {oldPalette, darkPalette()}) {
        QApplication::setPalette(palette);
        QMainWindow window;
        auto* area = new QMdiArea;
        window.setCentralWidget(area);
        window.menuBar()->addMenu(u"file"_s);
        QMdiSubWindow* child = area->addSubWindow(new QWidget);
        window.resize(600, 400);
        window.show();
        ASSERT_TRUE(becomesVisible(window));
        child->showMaximized();
        settle();
        const QWidget* corner = window.menuBar()->cornerWidget(Qt::TopRightCorner);
        ASSERT_TRUE(corner);
        const QImage picture = const_cast<QWidget*>(corner)->grab().toImage();
        EXPECT_GT(contrastIn(picture, picture.rect().adjusted(4, 4, -4, -4)), 3) << (palette == oldPalette);
    }
}

} // namespace
} // namespace velloria::tests
