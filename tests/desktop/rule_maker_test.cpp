// The maker of rules as a person works it.
#include "makers_home.h"

using namespace Qt::StringLiterals;

namespace velloria::tests {
namespace {

class Rule : public Makers {
protected:
    static inline const QString kNoNumber =
        QStringLiteral("exclamation: 不正な文字列が入力されました。\r\n数字を入力してください。");
    static inline const QString kOutOfRange = QStringLiteral("exclamation: 値の範囲は、0～100%でお願いします。");

    void SetUp() override {
        Makers::SetUp();
        maker = &openRule();
    }
    desktop::LineBox& width() { return lineBox(*maker, u"txtWidth"_s); }
    bool isAlignable() { return box(*maker, u"cmbAlign"_s).isEnabled(); }

    QPointer<editor::frmHTMLMakeHR> maker;
};

TEST_F(Rule, StartsWithAPlainOne) {
    EXPECT_EQ(maker->windowTitle(), u"HTML Editor(HR)"_s);
    EXPECT_EQ(lineBox(*maker, u"txtSize"_s).text(), u"2"_s);
    EXPECT_EQ(width().text(), u"100"_s);
    EXPECT_EQ(box(*maker, u"cmbWidthUnit"_s).currentText(), u"%"_s);
    EXPECT_EQ(box(*maker, u"cmbWidthUnit"_s).itemText(1), u"px"_s);
    EXPECT_EQ(box(*maker, u"cmbAlign"_s).currentText(), u"真ん中[center]"_s);
    EXPECT_EQ(box(*maker, u"cmbAlign"_s).itemText(0) + box(*maker, u"cmbAlign"_s).itemText(2), u"左[left]右[right]"_s);
    EXPECT_EQ(box(*maker, u"cmbColor"_s).currentText(), QString());
    EXPECT_FALSE(isAlignable());
    EXPECT_EQ(boxes(), QStringList());
}

TEST_F(Rule, AttributesComeInTheirOrderAndTheUnitDoesNotCount) {
    retype(width(), u"50"_s);
    pick(box(*maker, u"cmbWidthUnit"_s), 1);
    pick(box(*maker, u"cmbAlign"_s), 2);
    click(*maker, u"chkNoshade"_s);
    retype(box(*maker, u"cmbColor"_s), u"#ff0000"_s);
    click(*maker, u"Btn_OK"_s);
    EXPECT_EQ(pane().text(), u"<HR Size=2 Width=50% Align='Right' NOSHADE Color='#ff0000'>"_s);
    EXPECT_EQ(boxes(), QStringList());
}

TEST_F(Rule, TheWidthIsTestedAtEveryChange) {
    width().setFocus();
    QTest::keyClick(&width(), Qt::Key_End);
    QTest::keyClicks(&width(), u"0"_s); // 1000
    EXPECT_EQ(boxes(), QStringList{kOutOfRange});
    QTest::keyClick(&width(), Qt::Key_Backspace);
    EXPECT_EQ(boxes().size(), 1);
    retype(width(), {});
    EXPECT_EQ(boxes().size(), 2);
    EXPECT_EQ(boxes().last(), kNoNumber);
    EXPECT_TRUE(width().hasFocus());
    QTest::keyClicks(&width(), u"x5"_s);
    EXPECT_EQ(boxes().size(), 4);
    retype(width(), u"0"_s);
    EXPECT_EQ(boxes().size(), 5);
    EXPECT_EQ(boxes().last(), kOutOfRange);
    retype(width(), u"101"_s); // 1 and 10 pass
    EXPECT_EQ(boxes().size(), 6);
    EXPECT_EQ(boxes().last(), kOutOfRange);
}

TEST_F(Rule, AWidthThatIsComposedIsTestedWhenItIsComplete) {
    width().setFocus();
    width().selectAll();
    compose(width(), u"ご"_s);
    compose(width(), u"５"_s);
    EXPECT_EQ(boxes(), QStringList());
    compose(width(), {}, u"５"_s);
    EXPECT_EQ(boxes(), QStringList());
    EXPECT_TRUE(isAlignable());
}

TEST_F(Rule, OnlyANarrowerOneCanBeAligned) {
    retype(width(), u"5"_s);
    EXPECT_TRUE(isAlignable());
    EXPECT_EQ(box(*maker, u"cmbAlign"_s).palette().color(QPalette::Button), maker->palette().color(QPalette::Base));
    retype(width(), u"100"_s);
    EXPECT_FALSE(isAlignable());
    EXPECT_EQ(box(*maker, u"cmbAlign"_s).palette().color(QPalette::Active, QPalette::Button),
              maker->palette().color(QPalette::Active, QPalette::Button));
}

TEST_F(Rule, WhatIsNoNumberFailsAtOkAndTheMakerStays) {
    expectedFailures = 2;
    retype(lineBox(*maker, u"txtSize"_s), u"thick"_s);
    click(*maker, u"Btn_OK"_s);
    ASSERT_TRUE(maker);
    EXPECT_TRUE(desk.texts(u"failure"_s).last().contains(u"太さ"_s));
    retype(lineBox(*maker, u"txtSize"_s), u"3"_s);
    retype(width(), {});
    click(*maker, u"Btn_OK"_s);
    ASSERT_TRUE(maker);
    EXPECT_TRUE(desk.texts(u"failure"_s).last().contains(u"幅"_s));
    EXPECT_EQ(pane().text(), QString());
    retype(width(), u"50"_s);
    click(*maker, u"Btn_OK"_s);
    EXPECT_EQ(pane().text(), u"<HR Size=3 Width=50%>"_s);
}

} // namespace
} // namespace velloria::tests
