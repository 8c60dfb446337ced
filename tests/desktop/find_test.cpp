#include "site/forms/frmFind.h"

#include "browser/forms/frmPrevDiaryViewer.h"
#include "core/ini.h"
#include "core/site_keys.h"
#include "desktop/browser_home.h"
#include "editor/forms/frmCalender.h"

#include <QCheckBox>
#include <QClipboard>
#include <QMimeData>
#include <QPushButton>

using namespace Qt::StringLiterals;

namespace velloria::tests {
namespace {

class Find : public BrowserHome {
protected:
    void open() {
        top().command(u"MnuFindDiary"_s)->trigger();
        settle();
        ASSERT_TRUE(form());
        ASSERT_TRUE(becomesActive(*form()));
    }
    site::frmFind* form() { return context.windows.find<site::frmFind>(); }
    QLineEdit& line(const QString& name) { return control<QLineEdit>(*form(), name); }
    QCheckBox& check(const QString& name) { return control<QCheckBox>(*form(), name); }
    QComboBox& genres() { return control<QComboBox>(*form(), u"cmbGenre"_s); }
    void press(const QString& button) {
        QTest::mouseClick(&control<QPushButton>(*form(), button), Qt::LeftButton);
        settle();
    }
    browser::frmPrevDiaryViewer* viewer() { return context.windows.find<browser::frmPrevDiaryViewer>(); }
    bool isShown() {
        return becomesTrue(*viewer(), u"document.readyState == 'complete' && document.title == '検索結果'"_s);
    }
    QString findFor(const QString& word) {
        open();
        line(u"txtFindWord"_s).setText(word);
        press(u"Btn_OK"_s);
        return viewer() && isShown() ? textOf(*viewer()) : QString();
    }
};

TEST_F(Find, TheWordThatIsPastedIsTheOneThatWasCopied) {
    auto* data = new QMimeData;
    data->setData(u"text/plain;charset=utf-8"_s, u"\uFEFFword"_s.toUtf8());
    data->setData(u"text/plain"_s, u"\uFEFFword"_s.toUtf8());
    QGuiApplication::clipboard()->setMimeData(data);
    open();
    QTest::keyClick(&line(u"txtFindWord"_s), Qt::Key_V, Qt::ControlModifier);
    EXPECT_EQ(line(u"txtFindWord"_s).text(), u"\uFEFFword"_s);
}

TEST_F(Find, StartsWithTheWordAloneSwitchedOn) {
    open();
    EXPECT_EQ(form()->windowTitle(), u"検索条件の設定"_s);
    EXPECT_TRUE(line(u"txtFindWord"_s).hasFocus());
    EXPECT_EQ(check(u"chkTerm"_s).text() + check(u"chkGenre"_s).text(), u"検索期間ジャンル"_s);
    for (const QString& name : {u"txtStart"_s, u"txtEnd"_s})
        EXPECT_FALSE(line(name).isEnabled());
    EXPECT_FALSE(genres().isEnabled());
    EXPECT_EQ(genres().currentIndex(), -1);
    EXPECT_EQ(line(u"txtFindWord"_s).toolTip(), u"検索する言葉を入れて下さい(現在は、１単語のみ検索できます)。"_s);
    EXPECT_EQ(line(u"txtEnd"_s).toolTip(), u"検索する期間の終了日付を入れて下さい(YYYY/MM/DD)。"_s);
    check(u"chkTerm"_s).click();
    check(u"chkGenre"_s).click();
    EXPECT_TRUE(line(u"txtStart"_s).isEnabled() && line(u"txtEnd"_s).isEnabled() && genres().isEnabled());
    check(u"chkTerm"_s).click();
    EXPECT_FALSE(line(u"txtStart"_s).isEnabled());
}

TEST_F(Find, OffersTheGenresOfTheFileAndMakesNone) {
    const QString list = session.DataPath + u"Genre.csv"_s;
    QFile::remove(list);
    open();
    ASSERT_EQ(genres().count(), 1);
    EXPECT_EQ(genres().itemText(0), u"一般"_s);
    EXPECT_FALSE(exists(list));
    press(u"Btn_Cancel"_s);
    writeFile(list, "\x88\xea\x94\xca\r\nb\r\n"); // 一般
    open();
    ASSERT_EQ(genres().count(), 2);
    EXPECT_EQ(genres().itemText(1), u"b"_s);
}

TEST_F(Find, OpensFromTheCalendarAsWell) {
    auto& calendar = context.windows.get<editor::frmCalender>();
    calendar.showChild();
    settle();
    QTest::mouseClick(&control<QPushButton>(calendar, u"Btn_Find"_s), Qt::LeftButton);
    settle();
    ASSERT_TRUE(form());
    EXPECT_TRUE(form()->isVisible());
}

TEST_F(Find, StaysOpenUntilEverythingIsRight) {
    open();
    press(u"Btn_OK"_s);
    line(u"txtFindWord"_s).setText(u"花"_s);
    check(u"chkTerm"_s).click();
    line(u"txtEnd"_s).setText(u"2004/1/5"_s);
    press(u"Btn_OK"_s);
    line(u"txtStart"_s).setText(u"2004/1/6"_s);
    press(u"Btn_OK"_s);
    line(u"txtStart"_s).setText(u"2004/1/4"_s);
    check(u"chkGenre"_s).click();
    press(u"Btn_OK"_s);
    EXPECT_EQ(boxes(),
              (QStringList{u"critical: 検索語が設定されていません。"_s,
                           u"critical: 開始期間が正しく設定されていません。\r\n(YYYY/MM/DD形式で入力して下さい)"_s,
                           u"critical: 開始と終了期間が逆転しています。\r\n(正しい期間を入力し直して下さい)"_s,
                           u"critical: ジャンルが選択されていません。\r\n(ジャンルを選択して下さい)"_s}));
    ASSERT_TRUE(form() && form()->isVisible());
    EXPECT_EQ(line(u"txtFindWord"_s).text(), u"花"_s);
    EXPECT_FALSE(viewer());
    genres().setCurrentIndex(0);
    press(u"Btn_OK"_s);
    EXPECT_FALSE(form());
    ASSERT_TRUE(viewer());
    ASSERT_TRUE(isShown());
    EXPECT_TRUE(pageOf(session.DataPath + u"findtmp.htm"_s)
                    .contains(u"<p>期間：2004/01/04～2004/01/05</p>\r\n"
                              "<p>ジャンル：一般</p><hr>\r\n"_s));
}

TEST_F(Find, ShowsWhatItFoundAndUnloads) {
    write(u"2004/05/06"_s, u"花見"_s, u"花が咲く"_s);
    write(u"2004/05/07"_s, u"題"_s, u"梅の花、—～①é"_s);
    const QString text = findFor(u"花"_s);
    EXPECT_FALSE(form());
    ASSERT_TRUE(viewer());
    EXPECT_TRUE(viewer()->isVisible());
    EXPECT_EQ(viewer()->windowTitle(), u"検索結果(2件見つかりました)"_s);
    EXPECT_EQ(panel(), u"検索結果(キーワード花で2件見つかりました)"_s);
    EXPECT_TRUE(text.contains(u"キーワード：花"_s)) << text.toStdString();
    EXPECT_TRUE(text.contains(u"[2004/05/07]題"_s)) << text.toStdString();
    EXPECT_TRUE(text.contains(u"梅の花、―～①é"_s)) << text.toStdString();
    const QString style = u"(s => [s.fontStyle, s.color, s.backgroundColor].join())(getComputedStyle(document."
                          "querySelector('span[style*=italic]')))"_s;
    EXPECT_EQ(run(*viewer(), style).toString(), u"italic,rgb(255, 0, 0),rgb(255, 255, 0)"_s);
    open();
    EXPECT_EQ(line(u"txtFindWord"_s).text(), QString());
}

TEST_F(Find, TheResultIsClosedByItsButton) {
    write(u"2004/05/06"_s, u"花"_s);
    findFor(u"花"_s);
    run(*viewer(), u"document.getElementsByName('Close')[0].click()"_s);
    EXPECT_TRUE(waitFor([this] { return !viewer(); }));
}

TEST_F(Find, ALinkOfTheListLeadsToItsEntry) {
    write(u"2004/05/06"_s, u"花"_s, u"a<br>"_s.repeated(300));
    write(u"2004/05/05"_s, u"花"_s, u"b<br>"_s.repeated(300));
    findFor(u"花"_s);
    run(*viewer(), u"document.querySelector('a[href=\"#2004/05/05_1\"]').click()"_s);
    EXPECT_TRUE(becomesTrue(*viewer(), u"Math.abs(document.getElementsByName('2004/05/05_1')[0]"
                                       ".getBoundingClientRect().top) < 60"_s));
}

TEST_F(Find, AWordWithADoubleQuoteFailsAndTheFormStays) {
    open();
    line(u"txtFindWord"_s).setText(u"a\"b"_s);
    press(u"Btn_OK"_s);
    EXPECT_EQ(desk.texts(u"failure"_s).size(), 1);
    ASSERT_TRUE(form() && form()->isVisible());
    EXPECT_EQ(line(u"txtFindWord"_s).text(), u"a\"b"_s);
    EXPECT_FALSE(viewer());
}

TEST_F(Find, ASecondSearchShowsInTheSameViewer) {
    write(u"2004/05/06"_s, u"花"_s);
    findFor(u"花"_s);
    const auto* first = viewer();
    findFor(u"月"_s);
    EXPECT_EQ(viewer(), first);
    EXPECT_EQ(viewer()->windowTitle(), u"検索結果(0件見つかりました)"_s);
    EXPECT_TRUE(becomesTrue(*viewer(), u"document.body.innerText.includes('検索結果0件。')"_s));
}

TEST_F(Find, TheResultComesToTheFrontOfAllWindows) {
    write(u"2004/05/06"_s, u"花"_s);
    for (int search = 0; search < 2; ++search) {
        findFor(u"花"_s);
        EXPECT_TRUE(becomesActive(*viewer())) << search;
        top().activateWindow();
        EXPECT_TRUE(becomesActive(top()));
    }
    viewer()->showMinimized();
    settle();
    findFor(u"花"_s);
    EXPECT_FALSE(viewer()->isMinimized());
}

TEST_F(Find, ShowsAPictureFromWhereverItLies) {
    QImage picture(8, 4, QImage::Format_RGB32);
    picture.fill(Qt::red);
    const auto put = [&](const QString& name) {
        QDir().mkpath(QFileInfo(session.DataPath + name).path());
        ASSERT_TRUE(picture.save(session.DataPath + name));
    };
    put(u"DiaryParts/new 新.png"_s);
    put(u"DiaryLog/DiaryParts/old.png"_s);
    put(u"DiaryParts/Rainy.gif.png"_s);
    write(u"2004/05/06"_s, u"花"_s,
          u"<img id=a src=\"./DiaryParts/new 新.png\"><img id=b src=\"./DiaryParts/old.png\">"
          "<img id=c src=\"./DiaryParts/none.png\"><img id=d src=\"DiaryParts/Rainy.gif.png\">"_s);
    findFor(u"花"_s);
    EXPECT_TRUE(pageOf(session.DataPath + u"findtmp.htm"_s).contains(u"src=\"./DiaryLog/DiaryParts/new 新.png\""_s));
    EXPECT_TRUE(becomesTrue(*viewer(), u"[...document.images].every(i => i.complete)"_s));
    EXPECT_EQ(
        run(*viewer(), u"['a', 'b', 'c', 'd'].map(i => document.getElementById(i).naturalWidth).join()"_s).toString(),
        u"8,8,0,8"_s);
}

TEST_F(Find, WorksByKeysAlone) {
    write(u"2004/05/06"_s, u"house"_s);
    open();
    QTest::keyClicks(QApplication::focusWidget(), u"house"_s);
    const QStringList expected{u"chkTerm"_s,  u"txtStart"_s, u"txtEnd"_s,    u"chkGenre"_s,
                               u"cmbGenre"_s, u"Btn_OK"_s,   u"Btn_Cancel"_s};
    check(u"chkTerm"_s).setChecked(true);
    check(u"chkGenre"_s).setChecked(true);
    QStringList order;
    for (qsizetype i = 0; i < expected.size(); ++i) {
        QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab);
        order += QApplication::focusWidget()->objectName();
    }
    EXPECT_EQ(order, expected);
    check(u"chkTerm"_s).setChecked(false);
    check(u"chkGenre"_s).setChecked(false);
    line(u"txtFindWord"_s).setFocus();
    QTest::keyClick(&line(u"txtFindWord"_s), Qt::Key_Return);
    settle();
    EXPECT_FALSE(form());
    EXPECT_EQ(panel(), u"検索結果(キーワードhouseで1件見つかりました)"_s);
    open();
    QTest::keyClick(&line(u"txtFindWord"_s), Qt::Key_Escape);
    settle();
    EXPECT_FALSE(form());
}

TEST_F(Find, ComesUpWhereItWasLeft) {
    open();
    form()->move(150, 120);
    settle();
    press(u"Btn_Cancel"_s);
    EXPECT_EQ(core::ReadIni(session.DiaryIniFile, u"Find"_s, u"Left"_s), u"2250"_s);
    EXPECT_EQ(core::ReadIni(session.DiaryIniFile, u"Find"_s, u"Top"_s), u"1800"_s);
    open();
    EXPECT_EQ(form()->pos(), QPoint(150, 120));
}

} // namespace
} // namespace velloria::tests
