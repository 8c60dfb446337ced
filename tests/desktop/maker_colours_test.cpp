// The row of colours that two makers share.
#include "makers_home.h"

#include <QColorDialog>

using namespace Qt::StringLiterals;

namespace velloria::tests {
namespace {

class ColourBox : public Makers, public testing::WithParamInterface<int> {
protected:
    void SetUp() override {
        Makers::SetUp();
        writeFile(colourFile(), "red,#FF0000\r\naqua,#00FFFF\r\nbroken,zzz\r\n");
        pick(combo(u"ComboTag"_s), GetParam());
        maker = QApplication::activeModalWidget();
        ASSERT_TRUE(maker);
        ASSERT_TRUE(becomesActive(*maker));
    }
    desktop::Combo& colour() { return box(*maker, u"cmbColor"_s); }
    QString exchanged(const QString& text) {
        colour().setEditText(text);
        click(*maker, u"Btn_Color_Exchange"_s);
        return colour().currentText();
    }
    /// The colour that the dialog starts with, and what becomes of the box.
    std::pair<QColor, QString> picked(const QString& text, const std::function<void(QColorDialog&)>& leave) {
        colour().setEditText(text);
        QColor start;
        whenShown<QColorDialog>([&](QColorDialog& dialog) {
            start = dialog.currentColor();
            EXPECT_EQ(dialog.parentWidget(), maker);
            EXPECT_FALSE(dialog.testOption(QColorDialog::ShowAlphaChannel));
            leave(dialog);
        });
        click(*maker, u"Btn_GetColorDialog"_s);
        return {start, colour().currentText()};
    }

    QPointer<QWidget> maker;
};

TEST_P(ColourBox, ListsTheNamesInTheOrderOfTheFile) {
    EXPECT_EQ(colour().count(), 3);
    EXPECT_EQ(colour().itemText(0), u"red"_s);
    EXPECT_EQ(colour().itemText(1), u"aqua"_s);
    EXPECT_EQ(colour().currentText(), QString());
    EXPECT_EQ(colour().completer(), nullptr);
    EXPECT_EQ(colour().insertPolicy(), QComboBox::NoInsert);
    EXPECT_EQ(control<QAbstractButton>(*maker, u"Btn_Color_Exchange"_s).text(), u"⇔"_s);
    EXPECT_EQ(control<QAbstractButton>(*maker, u"Btn_GetColorDialog"_s).text(), u"..."_s);
}

TEST_P(ColourBox, ExchangesNameAndNumberAndLeavesWhatHasNoOtherForm) {
    EXPECT_EQ(exchanged(u"RED"_s), u"#FF0000"_s);
    EXPECT_EQ(exchanged(u"#Ff0000"_s), u"red"_s);
    for (const QString& text : {u"#00FF00"_s, u"#ZZZZZZ"_s, u"#"_s, u"No Such"_s, u""_s})
        EXPECT_EQ(exchanged(text), text);
    EXPECT_EQ(boxes(), QStringList());
}

TEST_P(ColourBox, TheExchangeReadsTheFileAnewAndSaysWhenItIsGone) {
    writeFile(colourFile(), "red,#EE0000\r\n");
    EXPECT_EQ(exchanged(u"red"_s), u"#EE0000"_s);
    ASSERT_TRUE(QFile::remove(colourFile()));
    expectedFailures = 1;
    EXPECT_EQ(exchanged(u"red"_s), u"red"_s);
    EXPECT_EQ(desk.texts(u"failure"_s).size(), 1);
    EXPECT_TRUE(maker && maker->isVisible());
}

TEST_P(ColourBox, TheDialogStartsWithTheColourAndGivesANumber) {
    const auto take = [](QColorDialog& dialog) {
        dialog.setCurrentColor(QColor(1, 0xAB, 255));
        dialog.accept();
    };
    const struct {
        QString text;
        QColor start;
    } cases[] = {{u""_s, Qt::black}, {u"Red"_s, Qt::red}, {u"#00ff00"_s, Qt::green}, {u"#0000FF"_s, Qt::blue}};
    for (const auto& c : cases)
        EXPECT_EQ(picked(c.text, take), std::pair(c.start, u"#01ABFF"_s)) << c.text.toStdString();
}

TEST_P(ColourBox, ACancelledDialogChangesNothing) {
    for (const QString& text : {u""_s, u"Red"_s, u"#00ff00"_s})
        EXPECT_EQ(picked(text, [](QColorDialog& dialog) { dialog.reject(); }).second, text);
    EXPECT_EQ(boxes(), QStringList());
    EXPECT_TRUE(maker && maker->isVisible());
}

TEST_P(ColourBox, ATextThatIsNoColourEndsWithoutAWord) {
    for (const QString& text : {u"#fff"_s, u"#gggggg"_s, u"#"_s, u"unknown"_s, u"broken"_s, u" "_s}) {
        colour().setEditText(text);
        click(*maker, u"Btn_GetColorDialog"_s); // a dialog would wait for ever
        EXPECT_EQ(colour().currentText(), text);
    }
    ASSERT_TRUE(QFile::remove(colourFile()));
    colour().setEditText(u"red"_s);
    click(*maker, u"Btn_GetColorDialog"_s);
    EXPECT_EQ(colour().currentText(), u"red"_s);
    EXPECT_EQ(boxes(), QStringList());
}

INSTANTIATE_TEST_SUITE_P(InBothMakers, ColourBox, testing::Values(kFont, kRule));

} // namespace
} // namespace velloria::tests
