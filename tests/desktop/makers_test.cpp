// The makers as a person works them, and the tag list that opens them.
#include "editor/forms/frmHTMLMakeFont.h"
#include "editor/forms/frmHTMLMakeHR.h"
#include "editor/forms/frmHTMLMakeList.h"

#include "core/keys.h"
#include "desktop/qt_desk.h"
#include "editor_home.h"

#include <QColorDialog>
#include <QFontDatabase>
#include <QMdiArea>
#include <QPlainTextEdit>
#include <QRadioButton>

using namespace Qt::StringLiterals;

namespace velloria::tests {
namespace {

constexpr int kFont = 12;
constexpr int kRule = 13;
constexpr int kList = 14;

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
        pick(combo(u"ComboTag"_s), index);
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
        keys(*QApplication::focusWidget(), u"!"_s);
        EXPECT_EQ(pane().text().size(), before.size() + 1);
    }

    QString colourFile() { return session.MyPath + u"colorname.csv"_s; }
};

TEST_F(Makers, EachPlainTagGoesToTheShownPane) {
    core::WriteIni(session.DiaryIniFile, core::keys::kPTagAdd, u"class=a"_s);
    const QMap<int, std::pair<QString, QString>> expected{
        {0, {u"<BR>"_s, u""_s}},         {1, {u"<P class=a>"_s, u"</P>"_s}},
        {2, {u"<B>"_s, u"</B>"_s}},      {3, {u"<I>"_s, u"</I>"_s}},
        {4, {u"<U>"_s, u"</U>"_s}},      {5, {u"<S>"_s, u"</S>"_s}},
        {6, {u"<em>"_s, u"</em>"_s}},    {7, {u"<strong>"_s, u"</strong>"_s}},
        {8, {u"<ins>"_s, u"</ins>"_s}},  {9, {u"<del>"_s, u"</del>"_s}},
        {10, {u"<SUP>"_s, u"</SUP>"_s}}, {11, {u"<SUB>"_s, u"</SUB>"_s}},
        {15, {u"<q>"_s, u"</q>"_s}},     {16, {u"<BLOCKQUOTE>"_s, u"</BLOCKQUOTE>"_s}},
        {17, {u"<TT>"_s, u"</TT>"_s}},   {18, {u"<PRE>"_s, u"</PRE>"_s}},
        {19, {u"<XMP>"_s, u"</XMP>"_s}}};
    for (int tab = 0; tab < 3; ++tab) {
        clickTab(tab);
        for (auto tag = expected.begin(); tag != expected.end(); ++tag) {
            const auto& [opening, closing] = tag.value();
            pane(tab).setText(u"x"_s);
            pane(tab).selectAll();
            pick(combo(u"ComboTag"_s), tag.key());
            EXPECT_EQ(pane(tab).text(), opening + u'x' + closing) << tab << " " << tag.key();
            EXPECT_EQ(pane(tab).selectionStart(), pane(tab).text().size());
            EXPECT_TRUE(pane(tab).hasFocus());

            pane(tab).setText({});
            clickTool(u"InsertTag"_s);
            EXPECT_EQ(pane(tab).text(), opening + closing) << tab << " " << tag.key();
            EXPECT_EQ(pane(tab).selectionStart(), pane(tab).text().size());
            pick(combo(u"ComboTag"_s), tag.key());
            EXPECT_EQ(pane(tab).text(), opening + closing + opening + closing) << "the same item counts again";
        }
        EXPECT_EQ(tabs().currentIndex(), tab);
    }
}

TEST_F(Makers, AMakerWritesIntoTheFirstPaneWhateverPaneIsShown) {
    struct Case {
        int index;
        QString selected;
        QString alone;
    };
    const Case cases[] = {{kFont, u"a<FONT Size=\"4\">word</FONT>"_s, u"<FONT Size=\"4\"></FONT>"_s},
                          {kRule, u"a<HR Size=2>"_s, u"<HR Size=2>"_s},
                          {kList, u"a<UL TYPE='disk'><li></UL>"_s, u"<UL TYPE='disk'><li></UL>"_s}};
    for (const Case& c : cases) {
        for (int tab = 0; tab < 3; ++tab) {
            for (const bool isSelected : {true, false}) {
                pane().setText(isSelected ? u"aword"_s : u""_s);
                if (isSelected) {
                    QTextCursor cursor = pane().textCursor();
                    cursor.setPosition(1);
                    cursor.movePosition(QTextCursor::End, QTextCursor::KeepAnchor);
                    pane().setTextCursor(cursor);
                }
                pane(1).setText(u"extend"_s);
                pane(2).setText(u"excerpt"_s);
                clickTab(tab);
                pick(combo(u"ComboTag"_s), c.index);
                ASSERT_TRUE(isAnyOpen());
                QWidget* maker = QApplication::activeModalWidget();
                ASSERT_TRUE(maker);
                click(*maker, u"Btn_OK"_s);
                EXPECT_EQ(pane().text(), isSelected ? c.selected : c.alone) << c.index << " " << tab;
                EXPECT_EQ(pane().selectionStart(), pane().text().size());
                EXPECT_EQ(pane(1).text(), u"extend"_s);
                EXPECT_EQ(pane(2).text(), u"excerpt"_s);
                EXPECT_TRUE(isSavable());
                expectGivenBack();
            }
        }
    }
}

TEST_F(Makers, TheMainWindowTakesNoInputWhileOneIsOpen) {
    for (const int index : {kFont, kRule, kList}) {
        pick(combo(u"ComboTag"_s), index);
        QWidget* maker = QApplication::activeModalWidget();
        ASSERT_TRUE(maker);
        ASSERT_TRUE(becomesActive(*maker));
        EXPECT_TRUE(maker->windowFlags() & Qt::WindowStaysOnTopHint);
        EXPECT_EQ(maker->parentWidget(), &top());
        EXPECT_TRUE(top().isEnabled()) << "it looks as it did";
        QTest::mouseClick(top().windowHandle(), Qt::LeftButton, Qt::NoModifier,
                          title().mapTo(&top(), title().rect().center()));
        QTest::keyClick(top().windowHandle(), Qt::Key_A);
        QTest::keyClick(top().windowHandle(), Qt::Key_U, Qt::ControlModifier);
        settle();
        EXPECT_FALSE(title().hasFocus());
        EXPECT_EQ(title().text() + pane().text(), QString());
        EXPECT_EQ(boxes(), QStringList());
        QTest::keyClick(maker, Qt::Key_Escape);
        expectGivenBack();
        pane().setText({});
    }
}

TEST_F(Makers, EveryWayOutGivesTheMainWindowBack) {
    const std::function<void(QWidget&)> ways[] = {
        [](QWidget& maker) { click(maker, u"Btn_OK"_s); },
        [](QWidget& maker) { click(maker, u"Btn_Cancel"_s); },
        [](QWidget& maker) { QTest::keyClick(&maker, Qt::Key_Escape); },
        [](QWidget& maker) { QTest::keyClick(&maker, Qt::Key_Return); },
        [](QWidget& maker) { maker.close(); },
    };
    for (const int index : {kFont, kRule, kList}) {
        for (const auto& leave : ways) {
            clickTab(2);
            pick(combo(u"ComboTag"_s), index);
            QWidget* maker = QApplication::activeModalWidget();
            ASSERT_TRUE(maker);
            ASSERT_TRUE(becomesActive(*maker));
            leave(*maker);
            expectGivenBack();
        }
    }
}

TEST_F(Makers, ACancelledOneWritesNothing) {
    pane().setText(u"word"_s);
    pane().selectAll();
    for (const int index : {kFont, kRule, kList}) {
        pick(combo(u"ComboTag"_s), index);
        click(*QApplication::activeModalWidget(), u"Btn_Cancel"_s);
        EXPECT_EQ(pane().text(), u"word"_s);
        EXPECT_EQ(pane().selectedText(), u"word"_s);
    }
}

TEST_F(Makers, WithoutTheNamesOfColoursTheOpeningFailsAndWritingGoesOn) {
    for (const int index : {kFont, kRule}) {
        ASSERT_TRUE(QFile::remove(colourFile()) || index == kRule);
        clickTab(1);
        pick(combo(u"ComboTag"_s), index);
        ++expectedFailures;
        expectGivenBack();
        EXPECT_TRUE(desk.texts(u"failure"_s).last().contains(u"colorname.csv"_s));
    }
    openList();
}

TEST_F(Makers, AListOfColoursThatIsEmptyOrBrokenDoesNoHarm) {
    for (const QByteArray& bytes : {QByteArray(), QByteArray("\"open,#FF0000\r\n"), QByteArray("\0\x81\n,", 4)}) {
        writeFile(colourFile(), bytes);
        auto& maker = openFont();
        EXPECT_EQ(box(maker, u"cmbColor"_s).count(), 0);
        QTest::keyClick(&maker, Qt::Key_Escape);
        settle();
    }
}

TEST_F(Makers, TheTagToolOpensThePickedOneAgainAndItStartsAnew) {
    auto& first = openRule();
    retype(lineBox(first, u"txtSize"_s), u"7"_s);
    retype(box(first, u"cmbColor"_s), u"red"_s);
    click(first, u"Btn_Cancel"_s);
    clickTool(u"InsertTag"_s);
    auto& second = opened<editor::frmHTMLMakeHR>();
    EXPECT_EQ(lineBox(second, u"txtSize"_s).text(), u"2"_s);
    EXPECT_EQ(box(second, u"cmbColor"_s).currentText(), QString());
    click(second, u"Btn_OK"_s);
    EXPECT_EQ(pane().text(), u"<HR Size=2>"_s);
}

TEST_F(Makers, WithoutADayAnymoreOkInsertsNothingAndThePanelSaysSo) {
    auto& maker = openList();
    contents().Contents_Initialize();
    click(maker, u"Btn_OK"_s);
    EXPECT_FALSE(isAnyOpen());
    EXPECT_EQ(pane().text(), QString());
    EXPECT_EQ(panel(), u"日記が開かれていないため、挿入しませんでした。"_s);
}

TEST_F(Makers, OneThatIsOpenGoesWithTheProgram) {
    openFont();
    context.windows.closeAll();
    EXPECT_EQ(QApplication::activeModalWidget(), nullptr);
}

TEST_F(Makers, BoxesStandAboveTheMaker) {
    auto& maker = openRule();
    desktop::QtDesk real;
    real.setMainWindow(&top());
    QWidget* owner = nullptr;
    whenShown<QMessageBox>([&](QMessageBox& message) {
        owner = message.parentWidget();
        message.accept();
    });
    real.message(platform::MessageKind::Exclamation, u"text"_s, u"Velloria"_s);
    EXPECT_EQ(owner, &maker);
}

// -- the list ---------------------------------------------------------------------------------------------------------

TEST_F(Makers, TheListStartsWithMarks) {
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

TEST_F(Makers, TheKindThatIsNotChosenIsGrey) {
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

TEST_F(Makers, LinesBecomeItems) {
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

TEST_F(Makers, BlanksOfAnItemStayWhatTheyAre) {
    auto& maker = openList();
    control<QPlainTextEdit>(maker, u"txtListContents"_s).setPlainText(u"a\u00A0b\u3000c"_s);
    click(maker, u"Btn_OK"_s);
    EXPECT_EQ(pane().text(), u"<UL TYPE='disk'><li>a\u00A0b\u3000c</UL>"_s);
}

TEST_F(Makers, NumbersAreOfTheKindThatIsTypedNotPicked) {
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

TEST_F(Makers, MarksArePicked) {
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

// -- the rule ---------------------------------------------------------------------------------------------------------

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

// -- the font ---------------------------------------------------------------------------------------------------------

TEST_F(Makers, TheFontStartsWithItsUsualSizeAndTheFontsOfTheMachine) {
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

TEST_F(Makers, TheFontTakesTypedTextsAsTheyAre) {
    auto& maker = openFont();
    click(maker, u"optRelative"_s);
    retype(box(maker, u"cmbSize"_s), u"+1"_s);
    retype(box(maker, u"cmbColor"_s), u"Re"_s); // begins as a name of the list does
    retype(box(maker, u"cmbFace"_s), u"明朝"_s);
    click(maker, u"Btn_OK"_s);
    EXPECT_EQ(pane().text(), u"<FONT Size=\"+1\" Color=\"Re\" Face=\"明朝\"></FONT>"_s);
}

TEST_F(Makers, TheFontTakesPickedItems) {
    auto& maker = openFont();
    pick(box(maker, u"cmbSize"_s), 6);
    pick(box(maker, u"cmbColor"_s), 2);
    pick(box(maker, u"cmbFace"_s), 0);
    click(maker, u"Btn_OK"_s);
    EXPECT_EQ(pane().text(),
              u"<FONT Size=\"7\" Color=\"aqua\" Face=\""_s + QFontDatabase::families().constFirst() + u"\"></FONT>"_s);
}

TEST_F(Makers, EmptyBoxesOfTheFontMakeNoAttributes) {
    auto& maker = openFont();
    retype(box(maker, u"cmbSize"_s), {});
    click(maker, u"Btn_OK"_s);
    EXPECT_EQ(pane().text(), u"<FONT></FONT>"_s);
}

// -- colours ----------------------------------------------------------------------------------------------------------

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
