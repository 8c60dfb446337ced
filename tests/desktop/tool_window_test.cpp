#include "desktop/tool_window.h"

#include "core/keys.h"
#include "desktop/window_place.h"
#include "editor_home.h"
#include "every_window.h"

#include <QMdiArea>
#include <QPushButton>

using namespace Qt::StringLiterals;

namespace velloria::tests {
namespace {

const core::PlaceSettings& kPlace = core::keys::kFindPlace;

class Beside : public desktop::ToolWindow {
public:
    explicit Beside(desktop::Context& context)
        : ToolWindow(context, u"Beside"_s, Blocks::Nothing, &kPlace) {
        resize(300, 200);
    }
};

class Blocking : public desktop::ToolWindow {
public:
    explicit Blocking(desktop::Context& context)
        : ToolWindow(context, u"Blocking"_s, Blocks::MainWindow) {}
};

class ToolWindow : public EditorHome {};

TEST_F(ToolWindow, IsOneOfAKindAndComesToTheFrontWhenCalledAgain) {
    auto& first = shownWindow<Beside>(context);
    top().activateWindow();
    EXPECT_TRUE(becomesActive(top()));
    EXPECT_EQ(&shownWindow<Beside>(context), &first);
    EXPECT_TRUE(becomesActive(first));
}

TEST_F(ToolWindow, IsDestroyedHoweverItCloses) {
    const std::function<void(QDialog&)> ways[] = {[](QDialog& window) { window.close(); },
                                                  [](QDialog& window) { QTest::keyClick(&window, Qt::Key_Escape); },
                                                  [](QDialog& window) { window.accept(); }};
    for (const auto& leave : ways) {
        leave(shownWindow<Beside>(context));
        settle();
        EXPECT_EQ(context.windows.find<Beside>(), nullptr);
    }
}

TEST_F(ToolWindow, EnterOnTheCancelButtonOfAnyOfThemCancels) {
    int tried = 0;
    forEveryWindow(context, [&](desktop::ToolWindow& window) {
        auto* cancel = window.findChild<QPushButton*>(u"Btn_Cancel"_s);
        if (!cancel || !becomesActive(window))
            return;
        for (const QPushButton* button : window.findChildren<QPushButton*>())
            QObject::disconnect(button, &QPushButton::clicked, nullptr, nullptr);
        QStringList pressed;
        for (QPushButton* button : window.findChildren<QPushButton*>())
            QObject::connect(button, &QPushButton::clicked, &window, [&, button] { pressed += button->objectName(); });
        cancel->setFocus();
        QTest::keyClick(cancel, Qt::Key_Return);
        EXPECT_EQ(pressed, QStringList{u"Btn_Cancel"_s}) << window.objectName().toStdString();
        for (const QPushButton* button : window.findChildren<QPushButton*>())
            QObject::disconnect(button, &QPushButton::clicked, nullptr, nullptr);
        ++tried;
    });
    EXPECT_GT(tried, 8);
}

TEST_F(ToolWindow, ComesUpInTheMiddleOfTheMainWindowAndThenWhereItWasLeft) {
    auto& first = shownWindow<Beside>(context);
    const QPoint middle = top().frameGeometry().center();
    EXPECT_LT((first.frameGeometry().center() - middle).manhattanLength(), 80);
    first.move(120, 90);
    settle();
    first.close();
    settle();
    EXPECT_EQ(desktop::readPlace(session, kPlace).left, 120 * 15);
    EXPECT_EQ(desktop::readPlace(session, kPlace).top, 90 * 15);
    EXPECT_EQ(desktop::readPlace(session, kPlace).height, std::nullopt);
    EXPECT_EQ(shownWindow<Beside>(context).pos(), QPoint(120, 90));
}

TEST_F(ToolWindow, AnEdgeOfZeroStaysInTheMiddle) {
    auto& first = shownWindow<Beside>(context);
    const QPoint middle = first.pos();
    for (const auto& [left, topEdge] : {std::pair{0, 90}, {120, 0}, {0, 0}, {120, 90}}) {
        context.windows.unload<Beside>();
        desktop::writePlace(session, kPlace, {topEdge * 15, left * 15, {}, {}});
        const QPoint pos = shownWindow<Beside>(context).pos();
        EXPECT_EQ(pos.x(), left == 0 ? middle.x() : left) << left << ' ' << topEdge;
        EXPECT_EQ(pos.y(), topEdge == 0 ? middle.y() : topEdge) << left << ' ' << topEdge;
    }
}

TEST_F(ToolWindow, AWindowThatWasNeverShownKeepsNoPlace) {
    context.windows.get<Beside>();
    context.windows.unload<Beside>();
    EXPECT_EQ(desktop::readPlace(session, kPlace).left, std::nullopt);
}

TEST_F(ToolWindow, ABlockingOneTakesTheInputAndLeavesTheLook) {
    clickDay(6);
    auto& window = shownWindow<Blocking>(context);
    EXPECT_TRUE(top().isEnabled());
    EXPECT_TRUE(title().isEnabled());
    EXPECT_EQ(QApplication::activeModalWidget(), &window);
    QTest::mouseClick(top().windowHandle(), Qt::LeftButton, Qt::NoModifier,
                      title().mapTo(&top(), title().rect().center()));
    QTest::keyClick(top().windowHandle(), Qt::Key_A);
    settle();
    EXPECT_EQ(title().text(), u""_s);

    bool isGivenBack = false;
    window.giveBackTo([&] {
        isGivenBack = true;
        pane().setFocus();
    });
    window.close();
    settle();
    EXPECT_TRUE(isGivenBack);
    EXPECT_TRUE(becomesActive(top()));
    EXPECT_TRUE(pane().hasFocus());
    keys(pane(), u"a"_s);
    EXPECT_EQ(pane().text(), u"a"_s);
}

TEST_F(ToolWindow, WhatAMakerInsertsGoesToTheFirstPane) {
    clickDay(6);
    clickTab(1);
    keys(pane(1), u"extend"_s);
    EXPECT_TRUE(contents().day().insertAtCaretOfContents(u"word"_s));
    EXPECT_EQ(tabs().currentIndex(), 0);
    EXPECT_TRUE(pane().hasFocus());
    pane().selectAll();
    EXPECT_TRUE(contents().day().insertIntoContents([](const QString& text) { return u'<' + text + u'>'; }));
    EXPECT_EQ(pane().text(), u"<word>"_s);
    pane().selectAll();
    EXPECT_TRUE(contents().day().insertAtCaretOfContents(u"!"_s));
    EXPECT_EQ(pane().text(), u"!<word>"_s);
    EXPECT_EQ(pane().textCursor().position(), 1);
    EXPECT_EQ(pane(1).text(), u"extend"_s);
    EXPECT_TRUE(isSavable());
}

TEST_F(ToolWindow, WithoutADayNothingIsInsertedAndThePanelSaysSo) {
    EXPECT_FALSE(contents().day().insertAtCaretOfContents(u"word"_s));
    EXPECT_EQ(pane().text(), u""_s);
    EXPECT_EQ(panel(), u"日記が開かれていないため、挿入しませんでした。"_s);
}

TEST_F(ToolWindow, AChangeFromOutsideIsShownUnlessTheEntryIsBeingEdited) {
    writeDay({u"one"_s, u"two"_s});
    clickDay(6);
    pick(combo(u"ComboNumber"_s), 0);
    writeDay({u"three"_s});
    contents().day().daysChanged({kDay});
    EXPECT_EQ(caption(), u"2004/05/06分の日記[1/3]"_s);
    EXPECT_FALSE(isSavable());

    clickPane();
    keys(pane(), u"x"_s);
    const QString edited = pane().text();
    diary().DeleteEntry(kDay, 2);
    contents().day().daysChanged({kDay});
    EXPECT_EQ(pane().text(), edited);
    EXPECT_EQ(panel(), u"2004/05/06の日記は編集中のため、変更された内容を表示していません。"_s);

    diary().DeleteEntry(kDay, 2);
    writeDay({u"four"_s, u"five"_s});
    sql(u"UPDATE Contents SET PublishTime = '2004/05/06 07:00:00' WHERE Number > 1"_s);
    contents().day().daysChanged({kDay});
    EXPECT_EQ(caption(), u"2004/05/06分の日記[1/3]"_s);
    diary().DeleteEntry(kDay, 1);
    contents().day().daysChanged({kDay});
    EXPECT_EQ(caption(), u"2004/05/06分の日記[3/3]"_s);
    clickTool(u"SaveToMDBOnly"_s);
    EXPECT_EQ(rows(), (QStringList{u"3one"_s, u"2five"_s, u"1four"_s}));
    EXPECT_TRUE(rescued().isEmpty());

    clickDay(7);
    diary().DeleteEntry(kDay, 1);
    contents().day().daysChanged({kDay});
    EXPECT_EQ(caption(), u"2004/05/07分の日記[1/1]"_s) << "another day is none of its business";
}

} // namespace
} // namespace velloria::tests
