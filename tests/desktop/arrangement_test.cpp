#include "browser/forms/frmBrowser.h"
#include "core/ini.h"
#include "core/keys.h"
#include "editor/forms/frmCalender.h"
#include "editor/forms/frmContents.h"
#include "platform/file_write.h"
#include "support/desktop_home.h"

#include <QMdiArea>
#include <QScrollBar>

using namespace Qt::StringLiterals;

namespace velloria::tests {
namespace {

class Arrangement : public DesktopHome {
protected:
    Arrangement() { showTop(); }

    desktop::MdiChild& calendar() { return context.windows.get<editor::frmCalender>(); }
    desktop::MdiChild& contents() { return context.windows.get<editor::frmContents>(); }
    desktop::MdiChild& browser() { return context.windows.get<browser::frmBrowser>(); }
    QSize inner() const { return context.mdi->viewport()->size(); }
    void press(const QString& name) {
        top().command(name)->trigger();
        settle();
    }
    QString stored(const QString& section, const QString& key) {
        return core::ReadIni(session.DiaryIniFile, section, key);
    }
};

TEST_F(Arrangement, StandardPutsTheEditorBelowTheCalendarAndTheBrowserBeside) {
    const QSize size = inner();
    press(u"mnuStandard"_s);
    EXPECT_EQ(calendar().pos(), QPoint(0, 0));
    EXPECT_EQ(contents().geometry(), QRect(0, 217, 279, size.height() - 217));
    EXPECT_EQ(browser().geometry(), QRect(279, 0, size.width() - 282, size.height()));
    for (const desktop::MdiChild* child : {&calendar(), &contents(), &browser()})
        EXPECT_TRUE(child->isVisible());
}

TEST_F(Arrangement, StandardFitsTheAreaWithoutScrolling) {
    press(u"mnuStandard"_s);
    EXPECT_FALSE(context.mdi->horizontalScrollBar()->isVisible());
    EXPECT_FALSE(context.mdi->verticalScrollBar()->isVisible());
    EXPECT_LE(calendar().height(), 217);
    EXPECT_LE(calendar().width(), 279);
    EXPECT_GE(calendar().height(), 200);
}

TEST_F(Arrangement, StaysWhenTheStatusPanelGetsItsFirstText) {
    press(u"mnuStandard"_s);
    top().setStatus(u"Webページ表示完了！"_s);
    settle();
    EXPECT_FALSE(context.mdi->verticalScrollBar()->isVisible());
}

TEST_F(Arrangement, FillsTheAreaAlsoWhereItScrolledBefore) {
    press(u"mnuStandard"_s);
    browser().move(2000, 2000);
    settle();
    ASSERT_TRUE(context.mdi->horizontalScrollBar()->isVisible());
    for (const QString& name : {u"mnuStandard"_s, u"MnuVertical"_s}) {
        browser().move(2000, 2000);
        settle();
        press(name);
        EXPECT_FALSE(context.mdi->horizontalScrollBar()->isVisible()) << name.toStdString();
        EXPECT_FALSE(context.mdi->verticalScrollBar()->isVisible()) << name.toStdString();
        EXPECT_GE(browser().geometry().right(), inner().width() - 4) << name.toStdString();
    }
}

TEST_F(Arrangement, ShowsThePreviewOrElseTheShortManual) {
    press(u"mnuStandard"_s);
    EXPECT_EQ(desk.texts(u"navigate"_s), QStringList{session.MyPath + u"SimpleManual.mht"_s});
    writeFile(session.DataPath + u"tmp.htm"_s, "page");
    press(u"mnuStandard"_s);
    EXPECT_EQ(desk.texts(u"navigate"_s).last(), session.DataPath + u"tmp.htm"_s);
}

TEST_F(Arrangement, IsKeptAndRestored) {
    press(u"mnuStandard"_s);
    calendar().move(10, 20);
    contents().setGeometry(30, 40, 300, 310);
    browser().setGeometry(50, 60, 400, 410);
    press(u"mnuSaveWndPos"_s);
    EXPECT_EQ(stored(u"Calender"_s, u"Top"_s), u"300"_s);
    EXPECT_EQ(stored(u"Calender"_s, u"Left"_s), u"150"_s);
    EXPECT_EQ(stored(u"Calender"_s, u"Width"_s), u""_s);
    EXPECT_EQ(stored(u"DiaryEditer"_s, u"Height"_s), u"4650"_s);
    EXPECT_EQ(stored(u"Browser"_s, u"Width"_s), u"6000"_s);
    press(u"mnuStandard"_s);
    press(u"mnuLoadWndPos"_s);
    EXPECT_EQ(calendar().pos(), QPoint(10, 20));
    EXPECT_EQ(contents().geometry(), QRect(30, 40, 300, 310));
    EXPECT_EQ(browser().geometry(), QRect(50, 60, 400, 410));
}

TEST_F(Arrangement, WhatWasNeverKeptTakesTheStandard) {
    const QSize size = inner();
    press(u"mnuLoadWndPos"_s);
    EXPECT_EQ(contents().geometry(), QRect(0, 217, 279, size.height() - 217));
    EXPECT_EQ(browser().geometry(), QRect(279, 0, size.width() - 282, size.height()));
}

TEST_F(Arrangement, ASizeOfNothingTakesTheStandardOfThatWindowAlone) {
    const QSize size = inner();
    press(u"mnuStandard"_s);
    contents().setGeometry(0, 0, 300, 310);
    browser().setGeometry(0, 0, 400, 410);
    press(u"mnuSaveWndPos"_s);
    for (const QString& nothing : {u"0"_s, u"-15"_s}) {
        core::WriteIni(session.DiaryIniFile, u"Browser"_s, u"Height"_s, nothing);
        press(u"mnuLoadWndPos"_s);
        EXPECT_EQ(browser().geometry(), QRect(0, 0, 400, size.height())) << nothing.toStdString();
        EXPECT_EQ(contents().geometry(), QRect(0, 0, 300, 310));
    }
}

TEST_F(Arrangement, AMaximisedChildIsKeptAtItsNormalPlace) {
    press(u"mnuStandard"_s);
    const QRect before = browser().geometry();
    browser().showMaximized();
    settle();
    press(u"mnuSaveWndPos"_s);
    EXPECT_EQ(stored(u"Browser"_s, u"Width"_s), QString::number(before.width() * 15));
    press(u"mnuLoadWndPos"_s);
    EXPECT_FALSE(browser().isMaximized());
    EXPECT_EQ(browser().geometry(), before);
}

TEST_F(Arrangement, VerticalMakesColumnsOfWhatIsSeen) {
    press(u"mnuStandard"_s);
    press(u"MnuVertical"_s);
    const QSize size = inner();
    EXPECT_EQ(calendar().geometry(), QRect(0, 0, size.width() / 3, 2 * 214)) << "no longer than is of use";
    EXPECT_EQ(contents().x(), calendar().geometry().right() + 1);
    EXPECT_EQ(contents().height(), size.height());
    EXPECT_EQ(browser().geometry().right(), size.width() - 1);
    contents().close();
    press(u"MnuVertical"_s);
    EXPECT_EQ(calendar().geometry(), QRect(0, 0, size.width() / 2, 2 * 214));
    EXPECT_EQ(browser().geometry(), QRect(size.width() / 2, 0, size.width() - size.width() / 2, size.height()));
    EXPECT_FALSE(contents().isVisible());
    browser().close();
    press(u"MnuVertical"_s);
    EXPECT_EQ(calendar().size(), QSize(2 * 279, 2 * 214));
}

TEST_F(Arrangement, StandardFollowsUponColumns) {
    press(u"mnuStandard"_s);
    const QRect places[] = {calendar().geometry(), contents().geometry(), browser().geometry()};
    for (const QString& name : {u"mnuStandard"_s, u"mnuLoadWndPos"_s}) {
        press(u"MnuVertical"_s);
        press(name);
        EXPECT_EQ(calendar().geometry(), places[0]) << name.toStdString();
        EXPECT_EQ(contents().geometry(), places[1]) << name.toStdString();
        EXPECT_EQ(browser().geometry(), places[2]) << name.toStdString();
        EXPECT_FALSE(calendar().geometry().intersects(contents().geometry()));
    }
    calendar().showMaximized();
    press(u"mnuStandard"_s);
    EXPECT_EQ(calendar().geometry(), places[0]);
    calendar().showMinimized();
    press(u"mnuStandard"_s);
    EXPECT_EQ(calendar().geometry(), places[0]);
}

TEST_F(Arrangement, TheCalendarHasALeastAndALargestSize) {
    press(u"mnuStandard"_s);
    calendar().setGeometry(0, 0, 20, 20);
    settle();
    for (const char* name : {"Btn_New", "Btn_Delete", "Btn_Find", "Btn_BlogControl", "cmbBlog", "cmbBlogAction"}) {
        auto& widget = control<QWidget>(calendar(), QLatin1StringView(name));
        EXPECT_EQ(widget.visibleRegion().boundingRect(), widget.rect()) << name;
    }
    EXPECT_LE(calendar().width(), 279);
    calendar().setGeometry(0, 0, 2000, 2000);
    EXPECT_EQ(calendar().size(), QSize(2 * 279, 2 * 214));
    calendar().showMaximized();
    settle();
    EXPECT_GE(calendar().width(), inner().width()) << "maximised, it fills the area";
    calendar().showNormal();
    settle();
    EXPECT_EQ(calendar().size(), QSize(2 * 279, 2 * 214));
    calendar().showMinimized();
    settle();
    EXPECT_LT(calendar().height(), 60);
    calendar().showNormal();
    settle();
    EXPECT_EQ(calendar().size(), QSize(2 * 279, 2 * 214));
    calendar().setGeometry(0, 0, 20, 20);
    EXPECT_GT(calendar().height(), 150) << "the limits are there again";
}

TEST_F(Arrangement, AClosedWindowComesBackWithWhatItHeld) {
    press(u"mnuStandard"_s);
    calendar().close();
    EXPECT_FALSE(calendar().isVisible());
    press(u"MnuCalender"_s);
    EXPECT_TRUE(calendar().isVisible());
    EXPECT_TRUE(calendar().widget()->isVisible());
}

TEST_F(Arrangement, BringsBackWhatWasKeptOutOfReach) {
    for (const QString& far : {u"2147483647"_s, u"-2147483648"_s, u"900000"_s, u"400000"_s}) {
        for (const QString& section : {u"Calender"_s, u"DiaryEditer"_s, u"Browser"_s}) {
            for (const QString& key : {u"Top"_s, u"Left"_s, u"Height"_s, u"Width"_s})
                core::WriteIni(session.DiaryIniFile, section, key, far);
        }
        press(u"mnuLoadWndPos"_s);
        const QRect area(QPoint(), inner());
        for (const desktop::MdiChild* child : {&calendar(), &contents(), &browser()}) {
            const QRect titleBar(child->pos(), QSize(child->width(), 20));
            EXPECT_GE(titleBar.intersected(area).width(), 60) << far.toStdString();
            EXPECT_EQ(titleBar.intersected(area).height(), 20) << far.toStdString();
            EXPECT_LE(child->width(), 30'000);
        }
    }
}

TEST_F(Arrangement, LeavesAChildHalfOutsideWhereItWasKept) {
    press(u"mnuStandard"_s);
    browser().setGeometry(inner().width() - 100, 50, 600, 400);
    const QRect kept = browser().geometry();
    press(u"mnuSaveWndPos"_s);
    press(u"mnuStandard"_s);
    press(u"mnuLoadWndPos"_s);
    EXPECT_EQ(browser().geometry(), kept);
}

} // namespace
} // namespace velloria::tests
