// The maker of fonts as a person works it.
#include "makers_home.h"

#include <QFontDatabase>
#include <QRadioButton>

using namespace Qt::StringLiterals;

namespace velloria::tests {
namespace {

using FontMaker = Makers;

TEST_F(FontMaker, TheFontStartsWithItsUsualSizeAndTheFontsOfTheMachine) {
    auto& maker = openFont();
    EXPECT_EQ(maker.windowTitle(), u"HTML Editor(Font)"_s);
    EXPECT_TRUE(control<QRadioButton>(maker, u"optAbsolute"_s).isChecked());
    EXPECT_EQ(control<QRadioButton>(maker, u"optAbsolute"_s).text(), u"絶対値"_s);
    EXPECT_EQ(control<QRadioButton>(maker, u"optRelative"_s).text(), u"相対値"_s);
    EXPECT_EQ(box(maker, u"cmbSize"_s).currentText(), u"4"_s);
    EXPECT_EQ(box(maker, u"cmbColor"_s).currentText(), QString());
    EXPECT_EQ(box(maker, u"cmbFace"_s).currentText(), QString());
    EXPECT_EQ(box(maker, u"cmbFace"_s).count(), QFontDatabase::families().size());
    EXPECT_GT(box(maker, u"cmbFace"_s).count(), 0);
    click(maker, u"optRelative"_s);
    EXPECT_EQ(box(maker, u"cmbSize"_s).currentText(), u"+2"_s);
    EXPECT_EQ(box(maker, u"cmbSize"_s).count(), 12);
    EXPECT_EQ(box(maker, u"cmbSize"_s).findText(u"0"_s), -1);
    click(maker, u"optAbsolute"_s);
    EXPECT_EQ(box(maker, u"cmbSize"_s).currentText(), u"4"_s);
    EXPECT_EQ(box(maker, u"cmbSize"_s).count(), 7);
}

TEST_F(FontMaker, TheFontTakesTypedTextsAsTheyAre) {
    auto& maker = openFont();
    click(maker, u"optRelative"_s);
    retype(box(maker, u"cmbSize"_s), u"+1"_s);
    retype(box(maker, u"cmbColor"_s), u"Re"_s); // begins as a name of the list does
    retype(box(maker, u"cmbFace"_s), u"明朝"_s);
    click(maker, u"Btn_OK"_s);
    EXPECT_EQ(pane().text(), u"<FONT Size=\"+1\" Color=\"Re\" Face=\"明朝\"></FONT>"_s);
}

TEST_F(FontMaker, TheFontTakesPickedItems) {
    auto& maker = openFont();
    pick(box(maker, u"cmbSize"_s), 6);
    pick(box(maker, u"cmbColor"_s), 2);
    pick(box(maker, u"cmbFace"_s), 0);
    click(maker, u"Btn_OK"_s);
    EXPECT_EQ(pane().text(),
              u"<FONT Size=\"7\" Color=\"aqua\" Face=\""_s + QFontDatabase::families().constFirst() + u"\"></FONT>"_s);
}

TEST_F(FontMaker, EmptyBoxesOfTheFontMakeNoAttributes) {
    auto& maker = openFont();
    retype(box(maker, u"cmbSize"_s), {});
    click(maker, u"Btn_OK"_s);
    EXPECT_EQ(pane().text(), u"<FONT></FONT>"_s);
}

} // namespace
} // namespace velloria::tests
