#include "desktop/editor_home.h"

#include "core/ini.h"
#include "desktop/clipboard.h"

#include <QClipboard>
#include <QMimeData>

using namespace Qt::StringLiterals;

namespace velloria::tests {
namespace {

class Clipboard : public EditorHome {
protected:
    static QString entryText(const QString& day, const QString& title, const QString& contents = u"c"_s) {
        return u"＜日付＞%1＜／日付＞\n＜タイトル＞%2＜／タイトル＞\n＜内容＞%3＜／内容＞\n"_s.arg(day, title,
                                                                                                   contents);
    }
    static void copy(const QString& text) { QGuiApplication::clipboard()->setText(text); }
    void import(const QString& kind) {
        desk.events = {};
        top().command(u"mnu_DiaryfromClipboard_Use"_s + kind)->trigger();
        settle();
    }
    void choose(const QString& command) {
        top().command(command)->trigger();
        settle();
    }
    bool isMarked(const QDate& day) { return month().markedDays().withEntries.contains(day); }
};

TEST_F(Clipboard, ImportsWhatIsCopiedAndShowsThePreview) {
    copy(entryText(u"2004/05/06"_s, u"t1"_s) + entryText(u"2004/05/09"_s, u"t2"_s));
    import(u"FormattedText"_s);
    EXPECT_EQ(boxes(), QStringList{u"information: 読み込み完了!\r\n2004/05/06\r\n2004/05/09"_s});
    EXPECT_EQ(desk.texts(u"status"_s), (QStringList{u"Clipboardから読み込み完了！"_s, u"Webページ表示中..."_s}));
    EXPECT_EQ(desk.texts(u"navigate"_s), QStringList{session.DataPath + u"tmp.htm#"_s + session.EnterDay});
    EXPECT_TRUE(pageOf(session.DataPath + u"tmp.htm"_s).contains(u"t1"_s));
    EXPECT_TRUE(isMarked({2004, 5, 9}));
}

TEST_F(Clipboard, ATextOfAnotherProgramKeepsAMarkInFront) {
    const auto copyBytes = [](const QByteArray& utf8) {
        auto* data = new QMimeData;
        data->setData(u"text/plain;charset=utf-8"_s, utf8);
        data->setData(u"text/plain"_s, utf8);
        QGuiApplication::clipboard()->setMimeData(data);
    };
    clickDay(6);
    for (const QString& text : {u"\uFEFFa"_s, u"a\uFEFF"_s, u"日"_s}) {
        copyBytes(text.toUtf8());
        EXPECT_EQ(desktop::clipboardText(), text);
        pane().setText(u""_s);
        pane().paste();
        EXPECT_EQ(pane().text(), text);
        title().setText(u"old"_s);
        title().selectAll();
        QTest::keyClick(&title(), Qt::Key_V, Qt::ControlModifier);
        EXPECT_EQ(title().text(), text);
    }
}

TEST_F(Clipboard, TheCleanEditorShowsWhatWasImported) {
    writeDay({u"old"_s});
    clickDay(6);
    copy(entryText(kDay, u"new"_s, u"new text"_s));
    answer(u"yes"_s);
    import(u"FormattedText"_s);
    EXPECT_EQ(title().text(), u"new"_s);
    EXPECT_EQ(pane().text(), u"new text"_s);
    EXPECT_FALSE(isSavable());
    EXPECT_EQ(rescued(), QStringList{u"old"_s});
}

TEST_F(Clipboard, AnEditorWithChangesKeepsThemAndSaysSo) {
    writeDay({u"old"_s});
    clickDay(6);
    clickPane();
    keys(pane(), u"typed"_s);
    copy(entryText(kDay, u"new"_s, u"new text"_s));
    answer(u"yes"_s);
    import(u"FormattedText"_s);
    EXPECT_TRUE(pane().text().contains(u"typed"_s));
    EXPECT_TRUE(isSavable());
    EXPECT_TRUE(panel().contains(kDay)) << panel().toStdString();
}

TEST_F(Clipboard, WhatCameBeforeAFailureIsShownAndNoPreviewIsMade) {
    clickDay(6);
    copy(entryText(kDay, u"t1"_s) + u"＜日付＞2004/05/07＜／日付＞"_s);
    ++expectedFailures;
    import(u"FormattedText"_s);
    EXPECT_EQ(title().text(), u"t1"_s);
    EXPECT_EQ(desk.texts(u"navigate"_s), QStringList());
    EXPECT_TRUE(isMarked({2004, 5, 6}));
}

TEST_F(Clipboard, ARefusalChangesAndShowsNothing) {
    QGuiApplication::clipboard()->clear();
    import(u"FormattedText"_s);
    EXPECT_EQ(boxes(), QStringList{u"critical: クリップボードの中に何も入っていません。"_s});
    QImage picture(4, 4, QImage::Format_RGB32);
    QGuiApplication::clipboard()->setImage(picture);
    import(u"PlainText"_s);
    EXPECT_EQ(boxes(), QStringList{u"critical: クリップボードのデータが適切な形式ではありません。"_s});
    for (const QString& type : {u"text/html"_s, u"text/uri-list"_s}) {
        auto* data = new QMimeData;
        data->setData(type, "file:///tmp/x");
        QGuiApplication::clipboard()->setMimeData(data);
        import(u"FormattedText"_s);
        EXPECT_EQ(boxes(), QStringList{u"critical: クリップボードのデータが適切な形式ではありません。"_s});
    }
    EXPECT_EQ(desk.texts(u"navigate"_s), QStringList());
    EXPECT_EQ(sqlValue(u"SELECT count(*) FROM Contents"_s), u"0"_s);
}

TEST_F(Clipboard, PlainTextGetsParagraphsAsTheSettingsSay) {
    core::WriteIni(session.DiaryIniFile, u"ALL"_s, u"ClipWithHTML"_s, u"2"_s);
    copy(u"a\n\nb"_s);
    for (const QString& text : {u"2004"_s, u"05"_s, u"06"_s, u"t"_s})
        answer(text);
    import(u"PlainText"_s);
    EXPECT_EQ(diary().LoadEntry(kDay, 1)->contents, u"<P>a</P>\r\n<P>b</P>"_s);
    EXPECT_EQ(desk.texts(u"navigate"_s).size(), 1);
    copy(u"c"_s);
    for (const QString& text : {u"2004"_s, u"05"_s, u"06"_s, u"no"_s})
        answer(text);
    import(u"PlainText"_s);
    EXPECT_EQ(desk.texts(u"navigate"_s), QStringList());
    EXPECT_EQ(diary().LoadEntry(kDay, 1)->contents, u"<P>a</P>\r\n<P>b</P>"_s);
}

TEST_F(Clipboard, IsInsertedAtTheCaretOfThePaneInFront) {
    clickDay(6);
    clickTab(1);
    clickPane(1);
    keys(pane(1), u"abc"_s);
    QTextCursor cursor = pane(1).textCursor();
    cursor.setPosition(1);
    cursor.setPosition(2, QTextCursor::KeepAnchor);
    pane(1).setTextCursor(cursor);
    copy(u"x\n\ny"_s);
    choose(u"mnuInsertFromCB_PlainText"_s);
    EXPECT_EQ(pane(1).text(), u"ax\r\n\r\nybc"_s) << "what was selected stays";
    EXPECT_TRUE(pane(1).selectedText().isEmpty());
    EXPECT_TRUE(isSavable());
    choose(u"mnuInsertFromCB_ExchangedText"_s);
    EXPECT_EQ(pane(1).text(), u"ax\r\n\r\ny<P>x</P>\r\n<P>y</P>bc"_s);
    EXPECT_EQ(pane(0).text(), QString());
    choose(u"mnuUndo"_s);
    EXPECT_EQ(pane(1).text(), u"ax\r\n\r\nybc"_s);
}

TEST_F(Clipboard, TheEditorLeavesTheKeyOfTheImportsAlone) {
    core::WriteIni(session.DiaryIniFile, u"ALL"_s, u"ClipWithHTML"_s, u"1"_s);
    clickDay(6);
    copy(u"x"_s);
    choose(u"mnuInsertFromCB_PlainText"_s);
    EXPECT_EQ(pane().text(), u"x"_s);
}

TEST_F(Clipboard, WithoutTextTheEditorSaysSoAndChangesNothing) {
    writeDay({u"old"_s});
    clickDay(6);
    QGuiApplication::clipboard()->clear();
    choose(u"mnuInsertFromCB_PlainText"_s);
    EXPECT_EQ(boxes(), QStringList{u"critical: クリップボードの中に何も入っていません。"_s});
    EXPECT_FALSE(isSavable());
}

TEST_F(Clipboard, WithoutADayNothingIsInserted) {
    copy(u"x"_s);
    choose(u"mnuInsertFromCB_PlainText"_s);
    choose(u"mnuInsertFromCB_ExchangedText"_s);
    EXPECT_EQ(pane().text(), QString());
    EXPECT_FALSE(isSavable());
}

} // namespace
} // namespace velloria::tests
