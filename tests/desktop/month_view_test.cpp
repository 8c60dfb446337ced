// The month of the calendar window by itself.
#include "desktop/month_view.h"
#include "support/desktop_home.h"
#include "support/print.h"

#include <QSignalSpy>
#include <QToolButton>

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

namespace velloria::desktop {
namespace {

class Month : public ::testing::Test {
protected:
    Month() {
        layout.addWidget(&view);
        layout.addWidget(&other);
        window.resize(300, 300);
        window.show();
        EXPECT_TRUE(tests::becomesVisible(window));
        window.activateWindow();
        EXPECT_TRUE(tests::becomesActive(window));
        view.setValue({2004, 5, 6});
        view.setFocus();
        clicks.clear();
    }
    void click(const QDate& day) {
        QTest::mouseClick(&view, Qt::LeftButton, Qt::NoModifier, view.cellOf(day).center());
    }
    QToolButton& button(const QString& name) { return *view.findChild<QToolButton*>(name); }
    QList<QDate> clicked() const {
        QList<QDate> days;
        for (const QList<QVariant>& call : clicks)
            days += call.first().toDate();
        return days;
    }

    QWidget window;
    QVBoxLayout layout{&window};
    MonthView view;
    QLineEdit other;
    QSignalSpy clicks{&view, &MonthView::dateClicked};
};

TEST_F(Month, WeeksBeginOnSundayAndSixOfThemAreShown) {
    // 2004/05/01 is a Saturday: the last cell of the first week.
    EXPECT_TRUE(view.cellOf({2004, 4, 24}).isEmpty());
    EXPECT_EQ(view.cellOf({2004, 4, 25}).left(), 0);
    EXPECT_EQ(view.cellOf({2004, 5, 1}).top(), view.cellOf({2004, 4, 25}).top());
    EXPECT_EQ(view.cellOf({2004, 5, 2}).left(), 0);
    EXPECT_FALSE(view.cellOf({2004, 6, 5}).isEmpty());
    EXPECT_TRUE(view.cellOf({2004, 6, 6}).isEmpty());
    // 2004/08/01 is a Sunday.
    view.setValue({2004, 8, 1});
    EXPECT_EQ(view.cellOf({2004, 8, 1}).left(), 0);
    EXPECT_TRUE(view.cellOf({2004, 7, 31}).isEmpty());
}

TEST_F(Month, AClickTellsItsDayTheValueAndGreyDaysToo) {
    for (const QDate& day : {QDate(2004, 5, 6), QDate(2004, 5, 31), QDate(2004, 4, 30), QDate(2004, 6, 5)})
        click(day);
    EXPECT_EQ(clicked(), (QList<QDate>{{2004, 5, 6}, {2004, 5, 31}, {2004, 4, 30}, {2004, 6, 5}}));
    EXPECT_EQ(view.value(), QDate(2004, 5, 6)) << "the owner sets it";
    EXPECT_EQ(view.highlighted(), QDate(2004, 5, 6)) << "a click that came to nothing leaves no trace";
}

TEST_F(Month, AClickThatIsTakenTurnsThePage) {
    QObject::connect(&view, &MonthView::dateClicked, &view, &MonthView::setValue);
    click({2004, 6, 1});
    EXPECT_EQ(view.value(), QDate(2004, 6, 1));
    EXPECT_EQ(view.shownMonth(), QDate(2004, 6, 1));
    EXPECT_EQ(clicks.size(), 1);
}

TEST_F(Month, ADoubleClickActsOnce) {
    QObject::connect(&view, &MonthView::dateClicked, &view, &MonthView::setValue);
    const QPoint place = view.cellOf({2004, 4, 27}).center();
    QTest::mouseClick(&view, Qt::LeftButton, Qt::NoModifier, place);
    QTest::mouseDClick(&view, Qt::LeftButton, Qt::NoModifier, place);
    QTest::mouseRelease(&view, Qt::LeftButton, Qt::NoModifier, place);
    EXPECT_EQ(clicked(), QList<QDate>{QDate(2004, 4, 27)});
    const QPoint samePage = view.cellOf({2004, 4, 20}).center();
    QTest::mouseClick(&view, Qt::LeftButton, Qt::NoModifier, samePage);
    QTest::mouseDClick(&view, Qt::LeftButton, Qt::NoModifier, samePage);
    QTest::mouseRelease(&view, Qt::LeftButton, Qt::NoModifier, samePage);
    EXPECT_EQ(clicked(), (QList<QDate>{{2004, 4, 27}, {2004, 4, 20}}));
}

TEST_F(Month, OnlyAClickThatEndsWhereItBeganCounts) {
    QTest::mousePress(&view, Qt::LeftButton, Qt::NoModifier, view.cellOf({2004, 5, 6}).center());
    QTest::mouseRelease(&view, Qt::LeftButton, Qt::NoModifier, view.cellOf({2004, 5, 20}).center());
    QTest::mouseClick(&view, Qt::RightButton, Qt::NoModifier, view.cellOf({2004, 5, 6}).center());
    QTest::mouseClick(&view, Qt::LeftButton, Qt::NoModifier, {view.width() / 2, 4});
    EXPECT_EQ(clicks.size(), 0);
}

TEST_F(Month, ButtonsAndWheelTurnPagesAndPickNothing) {
    QTest::mouseClick(&button(u"NextMonth"_s), Qt::LeftButton);
    EXPECT_EQ(view.shownMonth(), QDate(2004, 6, 1));
    QTest::mouseClick(&button(u"PreviousMonth"_s), Qt::LeftButton);
    QTest::mouseClick(&button(u"PreviousMonth"_s), Qt::LeftButton);
    EXPECT_EQ(view.shownMonth(), QDate(2004, 4, 1));
    for (const int delta : {-120, -60, -60}) {
        QWheelEvent event({5, 50}, view.mapToGlobal(QPointF(5, 50)), {}, {0, delta}, Qt::NoButton, Qt::NoModifier,
                          Qt::NoScrollPhase, false);
        QCoreApplication::sendEvent(&view, &event);
    }
    EXPECT_EQ(view.shownMonth(), QDate(2004, 6, 1));
    EXPECT_EQ(view.value(), QDate(2004, 5, 6));
    EXPECT_EQ(view.highlighted(), QDate(2004, 5, 6));
    EXPECT_EQ(clicks.size(), 0);
}

TEST_F(Month, APageThatWasTurnedToStaysWhenTheFocusGoes) {
    QTest::mouseClick(&button(u"NextMonth"_s), Qt::LeftButton);
    other.setFocus();
    EXPECT_EQ(view.shownMonth(), QDate(2004, 6, 1));
}

TEST_F(Month, ArrowAndPageKeysMoveAHighlightAlone) {
    const QList<std::pair<Qt::Key, QDate>> moves{
        {Qt::Key_Right, {2004, 5, 7}}, {Qt::Key_Down, {2004, 5, 14}},    {Qt::Key_Left, {2004, 5, 13}},
        {Qt::Key_Up, {2004, 5, 6}},    {Qt::Key_PageDown, {2004, 6, 6}}, {Qt::Key_PageUp, {2004, 5, 6}},
        {Qt::Key_Home, {2004, 5, 1}},  {Qt::Key_Left, {2004, 4, 30}},    {Qt::Key_End, {2004, 4, 30}}};
    for (const auto& [key, day] : moves) {
        QTest::keyClick(&view, key);
        EXPECT_EQ(view.highlighted(), day) << key;
        EXPECT_EQ(view.shownMonth(), QDate(day.year(), day.month(), 1));
    }
    EXPECT_EQ(view.value(), QDate(2004, 5, 6));
    EXPECT_EQ(clicks.size(), 0);
}

TEST_F(Month, EnterPicksTheHighlight) {
    for (const Qt::Key key : {Qt::Key_Return, Qt::Key_Enter, Qt::Key_Space}) {
        QTest::keyClick(&view, Qt::Key_Right);
        QTest::keyClick(&view, key);
    }
    EXPECT_EQ(clicked(), (QList<QDate>{{2004, 5, 7}, {2004, 5, 7}, {2004, 5, 7}}));
}

TEST_F(Month, LeavingSnapsTheHighlightBack) {
    QTest::keyClick(&view, Qt::Key_PageDown);
    other.setFocus();
    EXPECT_EQ(view.highlighted(), QDate(2004, 5, 6));
    EXPECT_EQ(view.shownMonth(), QDate(2004, 5, 1));
}

TEST_F(Month, SettingTheValueTellsNobody) {
    view.setValue({2010, 1, 2});
    EXPECT_EQ(clicks.size(), 0);
    EXPECT_EQ(view.highlighted(), QDate(2010, 1, 2));
    EXPECT_EQ(view.shownMonth(), QDate(2010, 1, 1));
}

TEST_F(Month, TheHighlightIsReadOut) {
    QTest::keyClick(&view, Qt::Key_Right);
    EXPECT_TRUE(view.accessibleName().contains(u"2004/05/07"_s)) << view.accessibleName().toStdString();
}

TEST_F(Month, TheFirstAndTheLastMonthEndTheCalendar) {
    view.setValue({9999, 12, 31});
    QTest::keyClick(&view, Qt::Key_Right);
    QTest::mouseClick(&button(u"NextMonth"_s), Qt::LeftButton);
    EXPECT_EQ(view.shownMonth(), QDate(9999, 12, 1));
    EXPECT_EQ(view.highlighted(), QDate(9999, 12, 31));
    view.setValue({1, 1, 1});
    QTest::keyClick(&view, Qt::Key_Left);
    QTest::mouseClick(&button(u"PreviousMonth"_s), Qt::LeftButton);
    EXPECT_EQ(view.shownMonth(), QDate(1, 1, 1));
}

TEST_F(Month, DaysWithEntriesAndPrivateOnesLookDifferent) {
    view.resize(view.minimumSizeHint());
    const QDate day(2004, 5, 20);
    for (const QDate& value : {QDate(2004, 5, 6), day}) {
        view.setValue(value);
        const auto drawn = [&] { return view.grab(view.cellOf(day)).toImage(); };
        view.setMarkedDays({});
        const QImage plain = drawn();
        view.setMarkedDays({{day}, {day}});
        const QImage isPublic = drawn();
        EXPECT_NE(isPublic, plain);
        view.setMarkedDays({{day}, {}});
        EXPECT_NE(drawn(), plain);
        EXPECT_NE(drawn(), isPublic);
    }
}

TEST_F(Month, TodayKeepsItsFrameWhicheverDayIsChosen) {
    const QDate today(2004, 5, 20);
    for (const QDate& value : {QDate(2004, 5, 6), today, QDate(2004, 6, 1)}) {
        view.setToday({});
        view.setValue(value);
        view.setValue({2004, 5, value.day()});
        if (value.month() == 6) // today on a neighbouring page
            view.setValue(value);
        const QDate seen = value.month() == 6 ? QDate(2004, 5, 31) : today;
        const auto drawn = [&] { return view.grab(view.cellOf(seen)).toImage(); };
        const QImage plain = drawn();
        view.setToday(seen);
        EXPECT_NE(drawn(), plain) << value.day();
    }
}

TEST_F(Month, ThePrivateDayHasATip) {
    view.setMarkedDays({{QDate(2004, 5, 20), QDate(2004, 5, 21)}, {QDate(2004, 5, 21)}});
    const auto hover = [this](const QDate& day) {
        const QPoint place = view.cellOf(day).center();
        QHelpEvent event(QEvent::ToolTip, place, view.mapToGlobal(place));
        QCoreApplication::sendEvent(&view, &event);
        return QToolTip::isVisible() ? QToolTip::text() : QString();
    };
    EXPECT_EQ(hover({2004, 5, 20}), u"非公開"_s);
    QToolTip::hideText();
    EXPECT_TRUE(tests::waitFor([] { return !QToolTip::isVisible(); }));
    EXPECT_EQ(hover({2004, 5, 21}), u""_s);
    EXPECT_EQ(hover({2004, 5, 22}), u""_s);
}

TEST_F(Month, WhatADayIsIsReadOut) {
    view.setToday({2004, 5, 6});
    view.setMarkedDays({{QDate(2004, 5, 6), QDate(2004, 5, 7)}, {QDate(2004, 5, 7)}});
    EXPECT_EQ(view.accessibleName(), u"日付 2004/05/06 今日 日記あり 非公開"_s);
    QTest::keyClick(&view, Qt::Key_Right);
    EXPECT_EQ(view.accessibleName(), u"日付 2004/05/07 日記あり"_s);
}

} // namespace
} // namespace velloria::desktop
