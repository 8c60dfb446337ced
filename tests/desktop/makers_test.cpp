// What all makers have in common, and the tag list that opens them.
#include "makers_home.h"

#include "core/keys.h"
#include "core/settings_change.h"
#include "desktop/qt_desk.h"

using namespace Qt::StringLiterals;

namespace velloria::tests {
namespace {

TEST_F(Makers, EachPlainTagGoesToTheShownPane) {
    core::writeQuietly(session, core::keys::kPTagAdd, u"class=a"_s);
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

} // namespace
} // namespace velloria::tests
