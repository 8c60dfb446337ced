// The makers on a screen, and words to work them as a person does.
#pragma once

#include "editor/forms/frmHTMLMakeFont.h"
#include "editor/forms/frmHTMLMakeHR.h"
#include "editor/forms/frmHTMLMakeList.h"

#include "editor_home.h"

#include <stdexcept>

namespace velloria::tests {

/// Places in the tag list.
inline constexpr int kFont = 12;
inline constexpr int kRule = 13;
inline constexpr int kList = 14;

/// Fixture: an empty day in the editor, the caret in the first pane.
class Makers : public EditorHome {
protected:
    void SetUp() override {
        EditorHome::SetUp();
        clickDay(6);
        clickPane();
    }

    /// Picks the item of the tag list and waits for its maker.
    template <class Maker>
    Maker& open(int index) {
        pick(combo(QStringLiteral("ComboTag")), index);
        return opened<Maker>();
    }
    template <class Maker>
    Maker& opened() {
        auto* maker = context.windows.find<Maker>();
        if (!maker)
            throw std::runtime_error("the maker did not open");
        EXPECT_TRUE(becomesActive(*maker));
        settle();
        return *maker;
    }
    editor::frmHTMLMakeFont& openFont() { return open<editor::frmHTMLMakeFont>(kFont); }
    editor::frmHTMLMakeHR& openRule() { return open<editor::frmHTMLMakeHR>(kRule); }
    editor::frmHTMLMakeList& openList() { return open<editor::frmHTMLMakeList>(kList); }

    bool isAnyOpen() {
        return context.windows.find<editor::frmHTMLMakeFont>() || context.windows.find<editor::frmHTMLMakeHR>() ||
               context.windows.find<editor::frmHTMLMakeList>();
    }

    static void click(QWidget& window, const QString& name) {
        auto& button = control<QAbstractButton>(window, name);
        // A wide check box takes clicks on its picture and text alone.
        QTest::mouseClick(&button, Qt::LeftButton, Qt::NoModifier, {10, button.height() / 2});
        settle();
    }
    static desktop::Combo& box(const QWidget& window, const QString& name) {
        return control<desktop::Combo>(window, name);
    }
    static desktop::LineBox& lineBox(const QWidget& window, const QString& name) {
        return control<desktop::LineBox>(window, name);
    }
    /// Goes into the box and types over what is there; "" empties it.
    static void retype(QLineEdit& line, const QString& text) {
        line.setFocus();
        line.selectAll();
        if (text.isEmpty())
            QTest::keyClick(&line, Qt::Key_Delete);
        else
            keys(line, text);
    }
    static void retype(desktop::Combo& combo, const QString& text) { retype(*combo.lineEdit(), text); }

    /// A maker is gone, the main window takes input, and writing goes on in the first pane.
    void expectGivenBack() {
        settle();
        EXPECT_FALSE(isAnyOpen());
        EXPECT_EQ(QApplication::activeModalWidget(), nullptr);
        EXPECT_TRUE(becomesActive(top()));
        EXPECT_EQ(tabs().currentIndex(), 0);
        EXPECT_TRUE(pane().hasFocus());
        EXPECT_TRUE(isInsertable());
        const QString before = pane().text();
        keys(*QApplication::focusWidget(), QStringLiteral("!"));
        EXPECT_EQ(pane().text().size(), before.size() + 1);
    }

    QString colourFile() { return session.MyPath + QStringLiteral("colorname.csv"); }
};

} // namespace velloria::tests
