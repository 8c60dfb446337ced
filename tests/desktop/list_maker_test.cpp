// The maker of lists as a person works it.
#include "makers_home.h"

#include <QPlainTextEdit>
#include <QRadioButton>

using namespace Qt::StringLiterals;

namespace velloria::tests {
namespace {

using ListMaker = Makers;

TEST_F(ListMaker, TheListStartsWithMarks) {
    auto& maker = openList();
    EXPECT_EQ(maker.windowTitle(), u"HTML Editor(List)"_s);
    EXPECT_TRUE(control<QRadioButton>(maker, u"optTypeUL"_s).isChecked());
    EXPECT_EQ(control<QRadioButton>(maker, u"optTypeUL"_s).text(), u"記号 <UL>"_s);
    EXPECT_EQ(control<QRadioButton>(maker, u"optTypeOL"_s).text(), u"番号 <OL>"_s);
    const auto itemsOf = [&](const QString& name) {
        QStringList items;
        for (int i = 0; i < box(maker, name).count(); ++i)
            items += box(maker, name).itemText(i);
        return items;
    };
    EXPECT_EQ(itemsOf(u"cmbUL"_s), (QStringList{u"●(黒丸)"_s, u"○(白丸)"_s, u"■(四角)"_s}));
    EXPECT_EQ(itemsOf(u"cmbOL"_s), (QStringList{u"算用数字(1,2,...)"_s, u"ﾛｰﾏ数字大(i,ii,...)"_s,
                                                u"ﾛｰﾏ数字小(I,II...)"_s, u"英字大(A,B,...)"_s, u"英字小(a,b,...)"_s}));
    EXPECT_EQ(box(maker, u"cmbUL"_s).currentIndex(), 0);
    EXPECT_EQ(box(maker, u"cmbOL"_s).currentText(), u"算用数字(1,2,3,...)"_s);
    EXPECT_EQ(lineBox(maker, u"txtOLStart"_s).text(), u"1"_s);
    EXPECT_EQ(control<QCheckBox>(maker, u"chkDeleteLastLi"_s).text(), u"最後にある改行のみの行は削除"_s);
    EXPECT_FALSE(control<QCheckBox>(maker, u"chkDeleteLastLi"_s).isChecked());
}

TEST_F(ListMaker, TheKindThatIsNotChosenIsGrey) {
    auto& maker = openList();
    const auto isOn = [&](const QString& name) { return control<QWidget>(maker, name).isEnabled(); };
    EXPECT_TRUE(isOn(u"cmbUL"_s));
    EXPECT_FALSE(isOn(u"cmbOL"_s));
    EXPECT_FALSE(isOn(u"txtOLStart"_s));
    click(maker, u"optTypeOL"_s);
    EXPECT_FALSE(isOn(u"cmbUL"_s));
    EXPECT_TRUE(isOn(u"cmbOL"_s));
    EXPECT_TRUE(isOn(u"txtOLStart"_s));
    click(maker, u"optTypeUL"_s);
    EXPECT_TRUE(isOn(u"cmbUL"_s));
    EXPECT_FALSE(isOn(u"txtOLStart"_s));
}

TEST_F(ListMaker, LinesBecomeItems) {
    for (const bool drops : {false, true}) {
        pane().setText({});
        auto& maker = openList();
        auto& items = control<QPlainTextEdit>(maker, u"txtListContents"_s);
        items.setFocus();
        QTest::keyClicks(&items, u"a"_s);
        QTest::keyClick(&items, Qt::Key_Return); // a line end here, not the OK button
        QTest::keyClicks(&items, u"b"_s);
        QTest::keyClick(&items, Qt::Key_Return, Qt::ShiftModifier);
        if (drops)
            click(maker, u"chkDeleteLastLi"_s);
        click(maker, u"Btn_OK"_s);
        EXPECT_EQ(pane().text(),
                  drops ? u"<UL TYPE='disk'><li>a<li>b</UL>"_s : u"<UL TYPE='disk'><li>a<li>b<li></UL>"_s);
    }
}

TEST_F(ListMaker, BeginsInTheText) {
    auto& maker = openList();
    EXPECT_TRUE(control<QPlainTextEdit>(maker, u"txtListContents"_s).hasFocus());
    keys(*QApplication::focusWidget(), u"a"_s);
    click(maker, u"Btn_OK"_s);
    EXPECT_EQ(pane().text(), u"<UL TYPE='disk'><li>a</UL>"_s);
}

TEST_F(ListMaker, BlanksOfAnItemStayWhatTheyAre) {
    auto& maker = openList();
    control<QPlainTextEdit>(maker, u"txtListContents"_s).setPlainText(u"a\u00A0b\u3000c"_s);
    click(maker, u"Btn_OK"_s);
    EXPECT_EQ(pane().text(), u"<UL TYPE='disk'><li>a\u00A0b\u3000c</UL>"_s);
}

TEST_F(ListMaker, NumbersAreOfTheKindThatIsTypedNotPicked) {
    const auto made = [&](const std::function<void(QWidget&)>& fill) {
        pane().setText({});
        auto& maker = openList();
        click(maker, u"optTypeOL"_s);
        fill(maker);
        click(maker, u"Btn_OK"_s);
        return pane().text();
    };
    EXPECT_EQ(made([](QWidget&) {}), u"<OL TYPE='' START='1'><li></OL>"_s);
    EXPECT_EQ(made([](QWidget& maker) { retype(box(maker, u"cmbOL"_s), u"2"_s); }),
              u"<OL TYPE='i' START='1'><li></OL>"_s);
    EXPECT_EQ(made([this](QWidget& maker) { pick(box(maker, u"cmbOL"_s), 2); }), u"<OL TYPE='' START='1'><li></OL>"_s);
    EXPECT_EQ(made([](QWidget& maker) { retype(lineBox(maker, u"txtOLStart"_s), u"5"_s); }),
              u"<OL TYPE='' START='5'><li></OL>"_s);
}

TEST_F(ListMaker, MarksArePicked) {
    auto& maker = openList();
    pick(box(maker, u"cmbUL"_s), 2);
    click(maker, u"Btn_OK"_s);
    EXPECT_EQ(pane().text(), u"<UL TYPE='square'><li></UL>"_s);
}

class StartBox : public Makers {
protected:
    static inline const QString kComplaint =
        QStringLiteral("exclamation: 不正な文字列が与えられました。\r\nここには数値を入力してください。");

    void SetUp() override {
        Makers::SetUp();
        maker = &openList();
        click(*maker, u"optTypeOL"_s);
        start = &lineBox(*maker, u"txtOLStart"_s);
        retype(*start, u"x"_s);
    }

    QPointer<editor::frmHTMLMakeList> maker;
    desktop::LineBox* start = nullptr;
};

TEST_F(StartBox, IsCheckedWhenItIsLeft) {
    QTest::keyClick(start, Qt::Key_Tab);
    settle();
    EXPECT_EQ(boxes(), QStringList{kComplaint});
    EXPECT_TRUE(start->hasFocus());
    QTest::mouseClick(control<QPlainTextEdit>(*maker, u"txtListContents"_s).viewport(), Qt::LeftButton);
    settle();
    EXPECT_EQ(boxes().size(), 2);
    EXPECT_TRUE(start->hasFocus());
    retype(*start, u"３"_s);
    QTest::keyClick(start, Qt::Key_Tab);
    settle();
    EXPECT_EQ(boxes().size(), 2);
    EXPECT_FALSE(start->hasFocus());
}

TEST_F(StartBox, IsNotCheckedByCancelOrAClosingWindow) {
    QTest::mousePress(&control<QAbstractButton>(*maker, u"Btn_Cancel"_s), Qt::LeftButton);
    settle();
    EXPECT_EQ(boxes(), QStringList());
    QTest::mouseRelease(&control<QAbstractButton>(*maker, u"Btn_Cancel"_s), Qt::LeftButton);
    expectGivenBack();
    const std::function<void(QWidget&)> ways[] = {[](QWidget& window) { window.close(); },
                                                  [](QWidget& window) { QTest::keyClick(&window, Qt::Key_Escape); }};
    for (const auto& leave : ways) {
        auto& again = openList();
        click(again, u"optTypeOL"_s);
        retype(lineBox(again, u"txtOLStart"_s), u"x"_s);
        leave(again);
        expectGivenBack();
    }
    EXPECT_EQ(boxes(), QStringList());
}

TEST_F(StartBox, IsNotCheckedWhileAMenuOrAnotherWindowHasTheFocusForAWhile) {
    QMenu menu;
    menu.addAction(u"x"_s);
    menu.popup(start->mapToGlobal(QPoint(0, 0)));
    settle();
    menu.close();
    settle();
    QWidget other;
    other.setWindowModality(Qt::ApplicationModal);
    other.show();
    other.activateWindow();
    ASSERT_TRUE(becomesActive(other));
    settle();
    EXPECT_FALSE(start->hasFocus());
    other.close();
    maker->activateWindow();
    ASSERT_TRUE(becomesActive(*maker));
    EXPECT_TRUE(start->hasFocus());
    EXPECT_EQ(boxes(), QStringList());
}

TEST_F(StartBox, IsNotCheckedOnceItNoLongerCounts) {
    click(*maker, u"optTypeUL"_s);
    EXPECT_EQ(boxes(), QStringList());
    click(*maker, u"Btn_OK"_s);
    EXPECT_EQ(pane().text(), u"<UL TYPE='disk'><li></UL>"_s);
}

TEST_F(StartBox, ThatIsNoNumberIsRefusedAtOkWithOneBox) {
    expectedFailures = 2;
    click(*maker, u"Btn_OK"_s);
    ASSERT_TRUE(maker);
    EXPECT_EQ(desk.texts(u"failure"_s).size(), 1);
    QTest::keyClick(start, Qt::Key_Return);
    settle();
    ASSERT_TRUE(maker) << "it stays with what was typed";
    EXPECT_EQ(start->text(), u"x"_s);
    EXPECT_EQ(boxes().filter(kComplaint), QStringList());
    EXPECT_EQ(pane().text(), QString());
    retype(*start, u"2"_s);
    QTest::keyClick(start, Qt::Key_Return);
    expectGivenBack();
    EXPECT_EQ(pane().text(), u"<OL TYPE='' START='2'><li></OL>!"_s);
}

} // namespace
} // namespace velloria::tests
