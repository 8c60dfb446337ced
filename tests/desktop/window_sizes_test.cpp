// Every window in small and large fonts and on small screens: nothing is cut, and its buttons are on the screen.
#include "browser/forms/frmAuthentication.h"
#include "browser/forms/frmBrowser.h"
#include "browser/forms/frmGetImg.h"
#include "desktop/dialog_size.h"
#include "desktop/elided_label.h"
#include "editor_home.h"
#include "every_window.h"
#include "shell/forms/frmAbout.h"
#include "shell/forms/frmDBUpdater.h"
#include "shell/forms/frmLogin.h"
#include "shell/forms/frmPassword.h"

#include <QMdiArea>
#include <QScreen>
#include <QScrollArea>
#include <QScrollBar>
#include <QUrl>

using namespace Qt::StringLiterals;

namespace velloria::tests {
namespace {

struct FontCase {
    const char* name;
    int points;
    QFont::Weight weight;
};

/// The font of all windows, set before the first one is made.
class FontFirst : public testing::WithParamInterface<FontCase> {
protected:
    FontFirst() { QApplication::setFont(QFont(m_before.family(), GetParam().points, GetParam().weight)); }
    ~FontFirst() { QApplication::setFont(m_before); }

private:
    const QFont m_before = QApplication::font();
};

/// What a control needs to show all of its words; nothing for one without words.
QSize neededBy(const QWidget& control) {
    if (qobject_cast<const QPushButton*>(&control) || qobject_cast<const QToolButton*>(&control))
        return control.fontMetrics().size(Qt::TextShowMnemonic, static_cast<const QAbstractButton&>(control).text());
    const auto* label = qobject_cast<const QLabel*>(&control);
    const bool isLine = label && !label->wordWrap() && !qobject_cast<const desktop::ElidedLabel*>(label);
    const bool isPartOfBox =
        qobject_cast<QComboBox*>(control.parentWidget()) || qobject_cast<QAbstractSpinBox*>(control.parentWidget());
    const bool isBox = qobject_cast<const QComboBox*>(&control) || qobject_cast<const QAbstractSpinBox*>(&control) ||
                       (qobject_cast<const QLineEdit*>(&control) && !isPartOfBox);
    const bool isChoice = qobject_cast<const QCheckBox*>(&control) || qobject_cast<const QRadioButton*>(&control);
    return isLine || isBox || isChoice ? control.minimumSizeHint() : QSize();
}

/// Names of the controls of a window that show less than they hold.
QStringList cutControls(const QWidget& window) {
    QStringList names;
    for (const QWidget* control : window.findChildren<QWidget*>()) {
        const QSize needed = neededBy(*control);
        if (!control->isVisible() || !needed.isValid())
            continue;
        const bool isWhole = control->visibleRegion().boundingRect() == control->rect();
        if (!isWhole || control->width() < needed.width() || control->height() < needed.height())
            names += control->objectName();
    }
    return names;
}

class WindowSizes : public FontFirst, public EditorHome {
protected:
    void SetUp() override {
        EditorHome::SetUp();
        clickDay(6);
    }

    /// Shows every window but the child windows, one after the other.
    template <class Look>
    void forEveryDialog(Look look) {
        forEveryWindow(context, look);
        shell::frmLogin login(u""_s);
        shell::frmPassword password(u"新しいパスワードの入力"_s, platform::PasswordLines::WithConfirmation, nullptr);
        shell::frmAbout about(context);
        browser::frmGetImg images(context);
        browser::frmAuthentication serverLogin(QUrl(u"http://a.long.host.example:8080/"_s), u"realm"_s, nullptr);
        shell::frmDBUpdater updater(context);
        updater.display({u"ファイル登録データベースのコピーを開始。"_s, 100, 50});
        for (QWidget* dialog :
             std::initializer_list<QWidget*>{&login, &password, &about, &images, &serverLogin, &updater}) {
            dialog->show();
            EXPECT_TRUE(becomesVisible(*dialog));
            look(*dialog);
            dialog->close();
        }
    }
};

TEST_P(WindowSizes, TheStandardArrangementCutsNothing) {
    top().command(u"mnuStandard"_s)->trigger();
    settle();
    EXPECT_EQ(cutControls(calendar()), QStringList());
    EXPECT_EQ(cutControls(contents()), QStringList());
    for (const desktop::MdiChild* child : std::initializer_list<desktop::MdiChild*>{&calendar(), &contents()}) {
        const auto& area = *child->findChild<QScrollArea*>();
        EXPECT_FALSE(area.horizontalScrollBar()->isVisible()) << child->objectName().toStdString();
        EXPECT_FALSE(area.verticalScrollBar()->isVisible()) << child->objectName().toStdString();
    }
    EXPECT_GE(tabs().tabBar()->width(), tabs().tabBar()->sizeHint().width());
    EXPECT_LE(calendar().geometry().bottom(), contents().y());
    EXPECT_EQ(contents().x(), 0);
    EXPECT_GE(contents().width(), 279);
    EXPECT_EQ(context.windows.get<browser::frmBrowser>().x(), contents().width());
    EXPECT_FALSE(context.mdi->horizontalScrollBar()->isVisible());
    EXPECT_FALSE(context.mdi->verticalScrollBar()->isVisible());
}

TEST_P(WindowSizes, ATabKeepsItsBeginningInANarrowWindow) {
    contents().place({285, 0, 200, 500});
    settle();
    QTabBar& bar = *tabs().tabBar();
    EXPECT_LE(bar.geometry().right(), tabs().width());
    for (int i = 0; i < bar.count(); ++i)
        EXPECT_TRUE(bar.rect().contains(bar.tabRect(i))) << i;
    for (const QToolButton* button : bar.findChildren<QToolButton*>())
        EXPECT_FALSE(button->isVisible());
    EXPECT_EQ(bar.elideMode(), Qt::ElideRight);
    EXPECT_TRUE(bar.tabToolTip(0).startsWith(u"内容 Content"_s));
}

TEST_P(WindowSizes, EveryWindowShowsAllThatItHolds) {
    forEveryDialog([](const QWidget& window) {
        EXPECT_EQ(cutControls(window), QStringList()) << window.objectName().toStdString();
        EXPECT_TRUE(window.screen()->availableGeometry().contains(window.frameGeometry()))
            << window.objectName().toStdString();
    });
}

INSTANTIATE_TEST_SUITE_P(Fonts, WindowSizes,
                         testing::Values(FontCase{"Points9", 9, QFont::Normal}, FontCase{"Points11", 11, QFont::Normal},
                                         FontCase{"Points13", 13, QFont::Normal},
                                         FontCase{"Points11Bold", 11, QFont::Bold},
                                         FontCase{"Points13Bold", 13, QFont::Bold}),
                         [](const auto& font) { return font.param.name; });

class SmallScreen : public WindowSizes {};

TEST_P(SmallScreen, EveryWindowFitsAScreenOf1024By560) {
    constexpr int kTitleBar = 30;
    forEveryDialog([](const QWidget& window) {
        EXPECT_LE(window.width(), 1024) << window.objectName().toStdString();
        EXPECT_LE(window.height(), 560 - kTitleBar) << window.objectName().toStdString();
        EXPECT_FALSE(window.findChild<QScrollArea*>()) << "without scrolling";
    });
}

INSTANTIATE_TEST_SUITE_P(Fonts, SmallScreen, testing::Values(FontCase{"Points9", 9, QFont::Normal}),
                         [](const auto& font) { return font.param.name; });

class LargeFont : public WindowSizes {};

TEST_P(LargeFont, TheContentsScrollAboveTheButtons) {
    top().command(u"mnuInsertURL"_s)->trigger();
    settle();
    auto& window = context.windows.get<editor::frmHTMLMakeImage>();
    ASSERT_TRUE(becomesActive(window));
    EXPECT_TRUE(window.screen()->availableGeometry().contains(window.frameGeometry()));
    ASSERT_TRUE(window.findChild<QScrollArea*>());
    const auto isSeen = [&](const QString& name) {
        const auto& widget = control<QWidget>(window, name);
        return widget.visibleRegion().boundingRect() == widget.rect();
    };
    EXPECT_TRUE(isSeen(u"Btn_OK"_s));
    EXPECT_TRUE(isSeen(u"Btn_Cancel"_s));
    EXPECT_FALSE(isSeen(u"txt_InsertTag"_s));
    // From the first box through all of them: what has the focus is seen.
    control<QWidget>(window, u"txt_FilePath"_s).setFocus();
    QStringList order;
    while (!order.contains(window.focusWidget()->objectName())) {
        order += window.focusWidget()->objectName();
        EXPECT_FALSE(window.focusWidget()->visibleRegion().isEmpty()) << order.last().toStdString();
        QTest::keyClick(window.focusWidget(), Qt::Key_Tab);
    }
    EXPECT_EQ(order.first(), u"txt_FilePath"_s);
    EXPECT_EQ(order.last(), u"Btn_Cancel"_s) << order.join(u' ').toStdString();
    EXPECT_LT(order.indexOf(u"txt_AddDiv"_s), order.indexOf(u"chk_Resist"_s));
    EXPECT_LT(order.indexOf(u"chk_Resist"_s), order.indexOf(u"txt_InsertTag"_s));
}

INSTANTIATE_TEST_SUITE_P(Fonts, LargeFont, testing::Values(FontCase{"Points30", 30, QFont::Normal}),
                         [](const auto& font) { return font.param.name; });

TEST(DialogSize, AWideFormGivesWayToANarrowScreen) {
    QDialog dialog;
    dialog.setMinimumSize(400, 0);
    auto* rows = new QVBoxLayout(&dialog);
    rows->addWidget(new QLabel(u"text"_s, &dialog));
    rows->addWidget(new QPushButton(u"OK"_s, &dialog));
    desktop::sizeInto(dialog, {800, 600});
    EXPECT_EQ(dialog.width(), 400);
    desktop::sizeInto(dialog, {300, 200});
    EXPECT_EQ(dialog.width(), 300);
}

TEST(DialogSize, KeepsWhatIsHiddenHiddenAndAlignmentAndStretch) {
    QDialog dialog;
    auto* rows = new QVBoxLayout(&dialog);
    auto* hidden = new QLabel(u"hidden"_s, &dialog);
    hidden->hide();
    rows->addWidget(hidden);
    auto* pane = new QPlainTextEdit(&dialog);
    pane->setMinimumHeight(500);
    rows->addWidget(pane, 1);
    auto* buttons = new QHBoxLayout;
    auto* ok = new QPushButton(u"OK"_s, &dialog);
    buttons->addWidget(ok);
    rows->addLayout(buttons);
    desktop::sizeInto(dialog, {300, 200});
    dialog.show();
    EXPECT_TRUE(becomesVisible(dialog));
    EXPECT_LE(dialog.height(), 200);
    EXPECT_LE(dialog.width(), 300);
    EXPECT_FALSE(hidden->isVisible());
    EXPECT_EQ(ok->visibleRegion().boundingRect(), ok->rect());
    EXPECT_TRUE(pane->isVisible());
    EXPECT_GE(pane->height(), 500);
    EXPECT_LT(pane->visibleRegion().boundingRect().height(), 200);
}

} // namespace
} // namespace velloria::tests
