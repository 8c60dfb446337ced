#include "browser/forms/frmBrowser.h"
#include "core/ini.h"
#include "core/keys.h"
#include "core/settings.h"
#include "core/settings_change.h"
#include "editor/forms/frmCalender.h"
#include "editor/forms/frmContents.h"
#include "site/forms/frmFind.h"
#include "support/desktop_home.h"

#include <QJsonObject>
#include <QMenu>
#include <QMenuBar>

using namespace Qt::StringLiterals;

namespace velloria::tests {
namespace {

class MainWindow : public DesktopHome {
protected:
    void setLanguage(const QString& language) {
        core::writeQuietly(session, core::keys::kMenuLanguage, language);
        top().SetMenuBarString();
    }
    QString caption(const QString& name) { return top().command(name)->text(); }
    void press(const QString& name) { top().command(name)->trigger(); }

    /// Captions of a menu in order, "-" for a separator.
    static QStringList captionsOf(const QMenu& menu) {
        QStringList captions;
        for (const QAction* action : menu.actions()) {
            if (action->objectName() != u"MnuRestoreDraft"_s)
                captions += action->isSeparator() ? u"-"_s : action->text();
        }
        return captions;
    }
    QMenu& menu(const QString& name) { return control<QMenu>(top(), name); }
};

TEST_F(MainWindow, HasItsMenusInOrder) {
    QStringList bar;
    for (const QAction* action : top().menuBar()->actions())
        bar += action->menu()->objectName();
    EXPECT_EQ(bar,
              (QStringList{u"MnuFile"_s, u"MnuDiary"_s, u"MnuTool"_s, u"MnuOption"_s, u"MnuWindow"_s, u"MnuHelp"_s}));
    EXPECT_EQ(captionsOf(menu(u"MnuFile"_s)),
              (QStringList{u"クリップボードから読み込む"_s, u"-"_s, u"HTMLファイルに保存(&S)"_s,
                           u"名前を付けてHTMLファイルに保存(&A)"_s, u"-"_s, u"日記エクスポート"_s, u"日記インポート"_s,
                           u"-"_s, u"ログ作成(&L)"_s, u"-"_s, u"カスタマイズファイルのインポート(&I)"_s,
                           u"カスタマイズファイルのエクスポート(&E)"_s, u"-"_s, u"終了(&X)"_s}));
    EXPECT_EQ(captionsOf(menu(u"mnuContentsPopUp"_s)),
              (QStringList{u"元に戻す"_s, u"やりなおし"_s, u"-"_s, u"コピー"_s, u"切り取り"_s, u"貼り付け"_s, u"-"_s,
                           u"ブラウザからURLを取得"_s, u"画像を挿入"_s, u"クリップボードから読み込む"_s}));
    EXPECT_EQ(captionsOf(menu(u"mnuInsertFromClipboard"_s)), (QStringList{u"そのまま"_s, u"HTMLに変換"_s}));
}

TEST_F(MainWindow, IsEnglishForEnglishAlone) {
    for (const QString& language : {u"Japanese"_s, u"english"_s, u"x"_s, u""_s}) {
        setLanguage(language);
        EXPECT_EQ(caption(u"MnuSaveDiary"_s), u"日記を保存する(&U)"_s) << language.toStdString();
    }
    setLanguage(u"English"_s);
    EXPECT_EQ(caption(u"MnuSaveDiary"_s), u"Save Diary(&U)"_s);
    EXPECT_EQ(caption(u"mnuUndo"_s), u"Undo"_s);
    EXPECT_EQ(caption(u"mnuCopy"_s), u"コピー"_s);
    EXPECT_EQ(caption(u"MnuFile"_s), u"&File"_s);
    EXPECT_EQ(caption(u"MnuTool"_s), u"&Tools"_s);
}

TEST_F(MainWindow, PlaceholdersDoNothing) {
    desk.events = {};
    for (const QString& name : {u"MnuNoPlugin"_s, u"MnuImportNoFunction"_s})
        press(name);
    EXPECT_EQ(desk.events, QJsonArray());
}

TEST_F(MainWindow, SaveHtmlWithoutATargetAsksForOne) {
    desk.answers = {path(u"site/d"_s)};
    press(u"MnuSaveHTML"_s);
    EXPECT_TRUE(exists(path(u"site/d.htm"_s)));
    EXPECT_EQ(panel(), u"HTMLファイル %1 を保存しました。"_s.arg(path(u"site/d.htm"_s)));
    EXPECT_EQ(core::Settings(session).text(core::keys::kSaveFileName), u"d.htm"_s);
    press(u"MnuSaveHTML_D"_s); // knows it now
    EXPECT_EQ(desk.answers.size(), 0);
    desk.answers = {QJsonValue::Null};
    const auto before = contentOf(home.path());
    press(u"MnuSaveHTMLAS"_s);
    EXPECT_EQ(contentOf(home.path()), before);
}

TEST_F(MainWindow, TellsAFailureAndGoesOn) {
    session.FilePath = path(u"gone/"_s);
    session.FileName = u"x.htm"_s;
    press(u"MnuSaveHTML"_s);
    EXPECT_EQ(desk.texts(u"failure"_s).size(), 1);
}

TEST_F(MainWindow, FlushesAHistoryBehindAQuestion) {
    const QString file = session.UserPath + u"URLHist.txt"_s;
    const QString stray = session.DataPath + u"FindHist.txt"_s;
    writeFile(file, "http://a.example/\r\n");
    writeFile(stray, "word\r\n");
    desk.answers = {u"no"_s, u"no"_s};
    press(u"MnuRefreshURLHist"_s);
    press(u"MnuRefreshFindHist"_s);
    EXPECT_EQ(boxes(), (QStringList{u"question: URL履歴を消去しますか？"_s, u"question: 検索履歴を消去しますか？"_s}));
    EXPECT_TRUE(exists(file));
    EXPECT_TRUE(exists(stray));
    desk.answers = {u"yes"_s, u"yes"_s, u"yes"_s};
    press(u"MnuRefreshURLHist"_s);
    press(u"MnuRefreshFindHist"_s);
    press(u"MnuRefreshFindHist"_s); // nothing is there any more
    EXPECT_FALSE(exists(file));
    EXPECT_FALSE(exists(stray));
}

TEST_F(MainWindow, SendsTheBrowserToManualsAndTheMaker) {
    press(u"MnuSimpleManual"_s);
    press(u"MnuHP"_s);
    press(u"MnuMyBlog"_s);
    press(u"MnuVellInfoBlog"_s);
    EXPECT_EQ(desk.texts(u"navigate"_s),
              (QStringList{session.MyPath + u"SimpleManual.mht"_s, u"https://www.example.com/velloria/"_s,
                           u"https://www.example.com/blog/"_s, u"https://www.example.com/velloria/news/"_s}));
}

TEST_F(MainWindow, SaysThatAManualIsMissing) {
    QFile::remove(session.MyPath + u"SimpleManual.mht"_s);
    press(u"MnuSimpleManual"_s);
    EXPECT_EQ(desk.texts(u"failure"_s).size(), 1);
    EXPECT_EQ(desk.texts(u"navigate"_s).size(), 0);
}

TEST_F(MainWindow, StartsNoCompanionThatIsNotThere) {
    press(u"mnuVellMemo"_s);
    EXPECT_EQ(boxes(), QStringList{u"critical: VellMemo.exeが存在しません。"_s});
}

TEST_F(MainWindow, ShowsTheVersionOfAPlugin) {
    QFile::copy(QStringLiteral(VELLORIA_PLUGIN_STUB), session.MyPath + u"Chimer.dll"_s);
    press(u"MnuChimerDll"_s);
    EXPECT_EQ(boxes(), QStringList{u"plain: Chimer.dll Version 1.2.3"_s});
    EXPECT_EQ(desk.events.last()[u"title"_s], u"Chimer.dll"_s);
    press(u"MnuLarkportDll"_s);
    EXPECT_EQ(desk.texts(u"failure"_s).size(), 1);
}

TEST_F(MainWindow, ShowsTheDiaryInformationOfAPlugin) {
    QFile::copy(QStringLiteral(VELLORIA_PLUGIN_STUB), session.MyPath + u"VellInfo.dll"_s);
    const QString page = session.DataPath + u"VellInfo_result.htm"_s;
    writeFile(page, "old");
    press(u"MnuVellInfo"_s);
    EXPECT_EQ(bytesOf(page), "<HTML>");
    session.dbFileName = u"refused.mdb"_s;
    press(u"MnuVellInfo"_s);
    EXPECT_EQ(boxes(), QStringList{u"critical: パスのエラーです"_s});
    EXPECT_FALSE(exists(page));
    EXPECT_EQ(desk.texts(u"navigate"_s), (QStringList{page, page}));
}

TEST_F(MainWindow, ShowsThePreviewMadeAnew) {
    write(u"2004/05/06"_s, u"fresh"_s);
    press(u"MnuBrowse"_s);
    EXPECT_TRUE(pageOf(session.DataPath + u"tmp.htm"_s).contains(u"fresh"_s));
    EXPECT_EQ(desk.texts(u"navigate"_s), QStringList{session.DataPath + u"tmp.htm"_s});
    EXPECT_TRUE(context.windows.get<browser::frmBrowser>().isVisibleTo(&top()));
}

TEST_F(MainWindow, ShowsTheManualWhereThePreviewCannotBeMade) {
    writeFile(session.databaseFile(), "no diary");
    press(u"MnuBrowse"_s);
    EXPECT_EQ(desk.texts(u"failure"_s).size(), 1);
    EXPECT_EQ(desk.texts(u"navigate"_s), QStringList{session.MyPath + u"SimpleManual.mht"_s});
}

TEST_F(MainWindow, KnowsTheMouseMessagesOfItsIcon) {
    top().Picture1_MouseMove(514 * 15);
    EXPECT_EQ(boxes(), QStringList());
    top().Picture1_MouseMove(516 * 15);
    EXPECT_EQ(boxes(), QStringList{u"plain: 日記作成\r\nprogramed by Qorvin\r\n\r\n左クリックで表示"_s});
    EXPECT_EQ(desk.events.last()[u"title"_s], u"日記作成"_s);
    showTop();
    top().showMinimized();
    settle();
    top().Picture1_MouseMove(515 * 15);
    EXPECT_FALSE(top().isMinimized());
}

TEST_F(MainWindow, WritesTodayByTheClock) {
    write(u"2004/05/06"_s, u"today"_s);
    session.EnterDay = u"2004/05/01"_s;
    press(u"MnuWriteDiary"_s);
    EXPECT_EQ(session.EnterDay, u"2004/05/06"_s);
    EXPECT_EQ(context.windows.get<editor::frmContents>().windowTitle(), u"2004/05/06分の日記[1/1]"_s);
}

TEST_F(MainWindow, OffersADraftOnlyWhileThereIsOne) {
    const QAction& draft = control<QAction>(top(), u"MnuRestoreDraft"_s);
    top().popUpContentsMenu({});
    EXPECT_FALSE(draft.isVisible());
    menu(u"mnuContentsPopUp"_s).close();
    context.windows.unload<editor::frmContents>();
    {
        auto& contents = context.windows.get<editor::frmContents>();
        context.windows.get<editor::frmCalender>().Calender_DateClick(QDate(2004, 5, 6));
        control<QLineEdit>(contents, u"txtTitle"_s).insert(u"half"_s);
        contents.day().keepDraft();
    }
    context.windows.unload<editor::frmContents>(); // as after a kill
    context.windows.get<editor::frmContents>();
    top().popUpContentsMenu({});
    EXPECT_TRUE(draft.isVisible());
    menu(u"mnuContentsPopUp"_s).close();
}

TEST_F(MainWindow, ALongStatusDoesNotWidenIt) {
    const int before = top().minimumSizeHint().width();
    top().setStatus(QString(2000, u'あ'));
    EXPECT_EQ(top().minimumSizeHint().width(), before);
    EXPECT_EQ(control<QLabel>(top(), u"StatusPanel1"_s).text().size(), 2000);
}

TEST_F(MainWindow, ANoticeOutlastsWhatTheBrowserTells) {
    showTop();
    auto& shown = control<QLabel>(top(), u"StatusPanel1"_s);
    top().setNotice(u"下書きがあります"_s);
    top().setStatus(u"Webページ表示中..."_s);
    top().setStatus(u"Webページ表示完了！"_s);
    EXPECT_EQ(shown.text(), u"下書きがあります"_s);
    top().setStatus(u"2004/05/06の日記を保存しました。"_s);
    EXPECT_EQ(shown.text(), u"2004/05/06の日記を保存しました。"_s);
    top().setNotice(u"もう一つ"_s);
    QTest::keyClick(top().windowHandle(), Qt::Key_Shift);
    top().setStatus(u"Webページ表示完了！"_s);
    EXPECT_EQ(shown.text(), u"Webページ表示完了！"_s);
}

TEST_F(MainWindow, ALongStatusEndsInDotsAndIsItsTip) {
    showTop();
    auto& shown = control<QLabel>(top(), u"StatusPanel1"_s);
    const auto drawn = [&](const QString& text) {
        top().setStatus(text);
        return shown.grab().toImage();
    };
    const QImage whole = drawn(u"短い"_s);
    EXPECT_EQ(shown.toolTip(), u"短い"_s);
    const QString text(2000, u'あ');
    const qsizetype fitting = shown.fontMetrics().elidedText(text, Qt::ElideRight, shown.width()).size();
    EXPECT_EQ(drawn(text), drawn(QString(fitting - 1, u'あ') + u'…'));
    EXPECT_NE(drawn(text), whole);
    top().setStatus(u"<b>"_s);
    EXPECT_EQ(shown.toolTip(), u"&lt;b&gt;"_s);
}

TEST_F(MainWindow, ShowsItsKeysBehindTheCaptions) {
    const std::pair<QString, QString> keys[] = {{u"MnuSaveDiary"_s, u"Ctrl+U"_s}, {u"MnuFindDiary"_s, u"Ctrl+F"_s},
                                                {u"MnuAddDiary"_s, u"Ctrl+N"_s},  {u"mnuUndo"_s, u"Ctrl+Z"_s},
                                                {u"mnuRedo"_s, u"Ctrl+Y"_s},      {u"mnuCopy"_s, u"Ctrl+C"_s},
                                                {u"mnuCut"_s, u"Ctrl+X"_s},       {u"mnuPaste"_s, u"Ctrl+V"_s}};
    for (const QString& language : {u"Japanese"_s, u"English"_s}) {
        setLanguage(language);
        for (const auto& [name, shortcut] : keys) {
            EXPECT_EQ(top().command(name)->shortcut().toString(), shortcut) << name.toStdString();
            EXPECT_FALSE(caption(name).contains(u'\t')) << name.toStdString();
        }
    }
    EXPECT_TRUE(top().command(u"mnuUndo"_s)->isShortcutVisibleInContextMenu());
    const auto& find = control<QPushButton>(context.windows.get<editor::frmCalender>(), u"Btn_Find"_s);
    EXPECT_EQ(find.toolTip(), u"日記を検索します (Ctrl+F)"_s);
}

TEST_F(MainWindow, TakesItsShortcutsFromEveryWindow) {
    showTop();
    context.windows.get<editor::frmCalender>().showChild();
    settle();
    QTest::keyClick(top().windowHandle(), 'n', Qt::ControlModifier);
    settle();
    EXPECT_EQ(context.windows.get<editor::frmContents>().windowTitle(), u"2004/05/06分の日記[1/1]"_s);
    QTest::keyClick(top().windowHandle(), 'f', Qt::ControlModifier);
    ASSERT_TRUE(context.windows.find<site::frmFind>());
    EXPECT_TRUE(context.windows.find<site::frmFind>()->isVisible());
    context.windows.unload<site::frmFind>();
    top().activateWindow();
    EXPECT_TRUE(becomesActive(top()));
    QTest::keyClick(top().windowHandle(), Qt::Key_F1);
    EXPECT_EQ(desk.texts(u"navigate"_s), QStringList{session.MyPath + u"Manual.mht"_s});
    QTest::keyClick(top().windowHandle(), 'w', Qt::ControlModifier);
    EXPECT_TRUE(context.windows.get<editor::frmContents>().isVisible());
    QTest::keyClick(top().windowHandle(), Qt::Key_F6);
    EXPECT_TRUE(top().menuBar()->hasFocus());
    QTest::keyClick(top().windowHandle(), Qt::Key_F6);
    EXPECT_FALSE(top().menuBar()->hasFocus());
    QTest::keyClick(top().windowHandle(), 'q', Qt::ControlModifier);
    settle();
    EXPECT_FALSE(top().isVisible());
}

} // namespace
} // namespace velloria::tests
