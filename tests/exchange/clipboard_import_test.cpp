#include "exchange/clipboard_import.h"

#include "core/ini.h"
#include "support/disk_watch.h"
#include "support/patience.h"
#include "support/test_home.h"

#include <QJsonDocument>

using namespace Qt::StringLiterals;

namespace velloria::tests {
namespace {

using exchange::ParagraphTags;

constexpr char16_t kTaken[] = u"2004/05/06は、すでに入力済みです。\r\n上書きしますか？";

class ClipboardImport : public TestHome {
protected:
    ClipboardImport() { desk.events = {}; }
    ~ClipboardImport() override { EXPECT_TRUE(desk.answers.isEmpty()) << "a question that was expected was not asked"; }

    static QString element(const QString& name, const QString& text) { return u"＜%1＞%2＜／%1＞"_s.arg(name, text); }
    static QString entryText(const QString& day, const QString& title, const QString& contents = u"c"_s) {
        return element(u"日付"_s, day) + element(u"タイトル"_s, title) + element(u"内容"_s, contents);
    }

    bool importFormatted(const std::optional<QString>& text, ParagraphTags tags = ParagraphTags::None) {
        exchange::ClipboardImport import(run);
        try {
            const bool isDone = import.ImportFormattedClipboard(text, tags);
            days = import.writtenDays();
            return isDone;
        } catch (...) {
            days = import.writtenDays();
            throw;
        }
    }
    bool importPlain(const std::optional<QString>& text, ParagraphTags tags = ParagraphTags::None) {
        exchange::ClipboardImport import(run);
        const bool isDone = import.ImportPlainClipboard(text, tags);
        days = import.writtenDays();
        return isDone;
    }
    void answer(const QStringList& texts) {
        for (const QString& text : texts)
            desk.answers.append(text);
    }

    /// Every entry as "day number title contents", by day and number.
    QStringList rows() {
        QStringList rows;
        for (const store::EntryKey& key : diary().AllEntryKeys()) {
            const store::Entry row = *diary().LoadEntry(key.day, key.number);
            rows.prepend(row.day + u' ' + QString::number(row.number) + u' ' + row.title + u' ' + row.contents);
        }
        return rows;
    }
    QStringList shown() {
        QStringList texts;
        for (const QJsonValue& event : desk.events) {
            const QString kind = event[u"kind"_s].toString(event[u"event"_s].toString());
            if (kind != u"status"_s && kind != u"pointer"_s)
                texts += kind + u": "_s + event[u"text"_s].toString();
        }
        return texts;
    }
    QStringList rescued() {
        QStringList titles;
        if (!exists(session.UserPath + u"rescue.jsonl"_s))
            return titles;
        for (const QByteArray& line : bytesOf(session.UserPath + u"rescue.jsonl"_s).split('\n')) {
            if (!line.isEmpty())
                titles += QJsonDocument::fromJson(line).object()[u"Title"_s].toString();
        }
        return titles;
    }

    QStringList days;
};

TEST_F(ClipboardImport, RefusesAClipboardWithoutText) {
    EXPECT_FALSE(importFormatted(std::nullopt));
    EXPECT_FALSE(importPlain(std::nullopt));
    EXPECT_EQ(shown(), QStringList(2, u"critical: クリップボードのデータが適切な形式ではありません。"_s));
}

TEST_F(ClipboardImport, RefusesAnEmptyText) {
    EXPECT_FALSE(importFormatted(u""_s));
    EXPECT_FALSE(importPlain(QString()));
    EXPECT_EQ(shown(), QStringList(2, u"critical: クリップボードの中に何も入っていません。"_s));
}

TEST_F(ClipboardImport, RefusesATextWithoutADay) {
    for (const QString& text : {u"x"_s, u"<日付>2004/05/06</日付>"_s, QString(5000, QChar(0)),
                                element(u"タイトル"_s, u"t"_s) + element(u"内容"_s, u"c"_s)})
        EXPECT_FALSE(importFormatted(text));
    EXPECT_EQ(shown(), QStringList(4, u"critical: クリップボードの中に有効なデータがありませんでした。"_s));
    EXPECT_EQ(rows(), QStringList());
}

TEST_F(ClipboardImport, TakesEveryEntryAndSaysWhichDays) {
    EXPECT_TRUE(importFormatted(u"前置き"_s + entryText(u"2004/05/06"_s, u"t1"_s, u"c1"_s) + u"\nbetween\n"_s +
                                entryText(u"2004/05/07"_s, u"t2"_s, u"c2"_s) + u"\n"_s));
    EXPECT_EQ(rows(), (QStringList{u"2004/05/06 1 t1 c1"_s, u"2004/05/07 1 t2 c2"_s}));
    EXPECT_EQ(shown(), QStringList{u"information: 読み込み完了!\r\n2004/05/06\r\n2004/05/07"_s});
    EXPECT_EQ(desk.texts(u"status"_s).last(), u"Clipboardから読み込み完了！"_s);
    EXPECT_EQ(days, (QStringList{u"2004/05/06"_s, u"2004/05/07"_s}));
}

TEST_F(ClipboardImport, LeavesEveryOtherFieldOfANewRowAtItsDefault) {
    importFormatted(entryText(u"2004/05/06"_s, u"t"_s));
    EXPECT_EQ(sqlValue(u"SELECT Number || ' ' || (Weather IS NULL) || (Genre IS NULL) || (PublishTime IS NULL) || "
                       "(Extend IS NULL) || (Excerpt IS NULL) || ' ' || Private || '[' || TrackBack || '][' || "
                       "ImportMark || ']' FROM Contents"_s),
              u"1 11111 0[][]"_s);
}

TEST_F(ClipboardImport, NeedsNoLineEndBetweenEntries) {
    EXPECT_TRUE(importFormatted(entryText(u"2004/05/06"_s, u"t1"_s) + entryText(u"2004/05/07"_s, u"t2"_s)));
    EXPECT_EQ(rows(), (QStringList{u"2004/05/06 1 t1 c"_s, u"2004/05/07 1 t2 c"_s}));
}

TEST_F(ClipboardImport, LosesTheOneCharacterBehindAnEntryAlone) {
    const QString second = entryText(u"2004/05/07"_s, u"t2"_s);
    for (const QString& between : {u"\r\n"_s, u"\n"_s, u"\r"_s, u"\n\n\n"_s, u"x"_s, u"-----"_s}) {
        sql(u"DELETE FROM Contents"_s);
        EXPECT_TRUE(importFormatted(entryText(u"2004/05/06"_s, u"t1"_s) + between + second));
        EXPECT_EQ(rows().size(), 2) << between.toStdString();
    }
}

TEST_F(ClipboardImport, TakesTitleAndContentsInAnyOrder) {
    EXPECT_TRUE(importFormatted(element(u"タイトル"_s, u"t1"_s) + element(u"日付"_s, u"2004/05/06"_s) + u"between"_s +
                                element(u"内容"_s, u"c1"_s)));
    EXPECT_EQ(rows(), QStringList{u"2004/05/06 1 t1 c1"_s});
}

TEST_F(ClipboardImport, MakesEveryLineEndCrLf) {
    importFormatted(entryText(u"2004/05/06"_s, u"t"_s, u"a\nb\rc\r\nd"_s));
    EXPECT_EQ(diary().LoadEntry(u"2004/05/06"_s, 1)->contents, u"a\r\nb\r\nc\r\nd"_s);
}

TEST_F(ClipboardImport, MakesParagraphsOfTheContentsAlone) {
    core::WriteIni(session.DiaryIniFile, u"DiaryEditer"_s, u"P_TagAdd"_s, u"class=a"_s);
    importFormatted(entryText(u"2004/05/06"_s, u"t\nu"_s, u"a\n\nb"_s), ParagraphTags::Added);
    EXPECT_EQ(diary().LoadEntry(u"2004/05/06"_s, 1)->contents, u"<P class=a>a</P>\r\n<P class=a>b</P>"_s);
    EXPECT_EQ(diary().LoadEntry(u"2004/05/06"_s, 1)->title, u"t\r\nu"_s);
}

TEST_F(ClipboardImport, EveryNumberAboveZeroSwitchesParagraphsOn) {
    for (const auto& [value, tags] :
         std::initializer_list<std::pair<QString, ParagraphTags>>{{u"0"_s, ParagraphTags::None},
                                                                  {u"1"_s, ParagraphTags::Added},
                                                                  {u"2"_s, ParagraphTags::Added},
                                                                  {u"-1"_s, ParagraphTags::None},
                                                                  {u"x"_s, ParagraphTags::None}}) {
        core::WriteIni(session.DiaryIniFile, u"ALL"_s, u"ClipWithHTML"_s, value);
        EXPECT_EQ(exchange::importedParagraphs(session), tags) << value.toStdString();
    }
    core::DeleteIniKey(session.DiaryIniFile, u"ALL"_s, u"ClipWithHTML"_s);
    EXPECT_EQ(exchange::importedParagraphs(session), ParagraphTags::None);
}

TEST_F(ClipboardImport, StoresADayThatIsNoneAsItStands) {
    EXPECT_TRUE(importFormatted(entryText(u"2004/3/5"_s, u"t1"_s) + entryText(u"あした"_s, u"t2"_s) +
                                entryText(u""_s, u""_s, u""_s)));
    EXPECT_EQ(rows().size(), 3);
    EXPECT_EQ(shown(), QStringList{u"information: 読み込み完了!\r\n2004/3/5\r\nあした\r\n"_s});
    EXPECT_EQ(sqlValue(u"SELECT Title IS NULL OR Contents IS NULL FROM Contents WHERE Day = ''"_s), u"0"_s);
}

TEST_F(ClipboardImport, AsksBeforeItOverwritesTheFirstRowOfADay) {
    store::Entry first = entryOf(u"2004/05/06"_s, u"old"_s);
    first.weather = u"雨"_s;
    first.genre = u"旅"_s;
    first.extend = u"more"_s;
    first.isPrivate = true;
    write(first);
    write(u"2004/05/06"_s, u"second"_s);
    const QString time = sqlValue(u"SELECT PublishTime FROM Contents WHERE Number = 1"_s);
    answer({u"yes"_s});
    EXPECT_TRUE(importFormatted(entryText(u"2004/05/06"_s, u"new"_s, u"new text"_s)));
    EXPECT_EQ(shown().first(), u"question: "_s + QString::fromUtf16(kTaken));
    EXPECT_EQ(rows(), (QStringList{u"2004/05/06 2 second text"_s, u"2004/05/06 1 new new text"_s}));
    const store::Entry row = *diary().LoadEntry(u"2004/05/06"_s, 1);
    EXPECT_EQ(row.weather + row.genre + row.extend, u"雨旅more"_s);
    EXPECT_TRUE(row.isPrivate);
    EXPECT_EQ(row.publishTime, time);
    EXPECT_EQ(rescued(), QStringList{u"old"_s});
    EXPECT_EQ(days, QStringList{u"2004/05/06"_s});
}

TEST_F(ClipboardImport, OverwritesTheLowestNumberWhateverItIs) {
    write(u"2004/05/06"_s, u"a"_s);
    sql(u"UPDATE Contents SET Number = 7"_s);
    sql(u"INSERT INTO Contents (Day, Number, Title) VALUES ('2004/05/06', 9, 'b')"_s);
    answer({u"yes"_s});
    importFormatted(entryText(u"2004/05/06"_s, u"new"_s));
    EXPECT_EQ(sqlValue(u"SELECT group_concat(Title) FROM (SELECT Title FROM Contents ORDER BY Number)"_s), u"new,b"_s);
}

TEST_F(ClipboardImport, TheSecondEntryOfADayFindsTheFirst) {
    answer({u"no"_s, u"no"_s});
    EXPECT_TRUE(importFormatted(entryText(u"2004/05/06"_s, u"t1"_s) + entryText(u"2004/05/06"_s, u"t2"_s)));
    EXPECT_EQ(rows(), QStringList{u"2004/05/06 1 t1 c"_s});
    EXPECT_EQ(shown().first(), u"question: "_s + QString::fromUtf16(kTaken));
}

TEST_F(ClipboardImport, TwoTimesNoSkipsOneEntryAlone) {
    write(u"2004/05/06"_s, u"old"_s);
    answer({u"no"_s, u"no"_s});
    EXPECT_TRUE(importFormatted(entryText(u"2004/05/06"_s, u"t1"_s) + entryText(u"2004/05/07"_s, u"t2"_s)));
    EXPECT_EQ(rows(), (QStringList{u"2004/05/06 1 old text"_s, u"2004/05/07 1 t2 c"_s}));
    EXPECT_EQ(
        shown(),
        (QStringList{u"question: "_s + QString::fromUtf16(kTaken),
                     u"question: その内容は、別の日の内容にしますか？(タイトルは以下の通りです)\r\n[タイトル：t1]"_s,
                     u"information: 読み込み完了!\r\n2004/05/07"_s}));
    EXPECT_EQ(days, QStringList{u"2004/05/07"_s});
    EXPECT_EQ(rescued(), QStringList());
}

TEST_F(ClipboardImport, TakesAnotherDayThatIsTyped) {
    write(u"2004/05/06"_s, u"old"_s);
    startAt(u"2004/05/06 10:00:00"_s);
    desk.events = {};
    answer({u"no"_s, u"yes"_s, u"2004"_s, u"05"_s, u"08"_s});
    EXPECT_TRUE(importFormatted(entryText(u"2004/05/06"_s, u"t1"_s, u"a\n\nb"_s), ParagraphTags::Added));
    EXPECT_EQ(shown().sliced(2),
              (QStringList{u"input: 年を入力してください(例:2003)。"_s, u"input: 月を入力してください(例:03)。"_s,
                           u"input: 日を入力してください(例:01)。"_s, u"information: 読み込み完了!\r\n2004/05/08"_s}));
    EXPECT_EQ(diary().LoadEntry(u"2004/05/08"_s, 1)->contents, u"<P>a</P>\r\n<P>b</P>"_s);
    QStringList defaults;
    for (const QJsonValue& event : desk.events) {
        if (event[u"event"_s] == u"input"_s)
            defaults += event[u"default"_s].toString();
    }
    EXPECT_EQ(defaults, (QStringList{u"2004"_s, u"05"_s, u"06"_s}));
}

TEST_F(ClipboardImport, RefusesAnotherDayOfAnotherLengthAndGoesOn) {
    write(u"2004/05/06"_s, u"old"_s);
    answer({u"no"_s, u"yes"_s, u"2004"_s, u"3"_s, u"5"_s});
    EXPECT_TRUE(importFormatted(entryText(u"2004/05/06"_s, u"t1"_s) + entryText(u"2004/05/07"_s, u"t2"_s)));
    EXPECT_TRUE(shown().contains(u"critical: そのフォーマットは正しくありません。その日付の登録は中止します。"_s));
    EXPECT_EQ(rows(), (QStringList{u"2004/05/06 1 old text"_s, u"2004/05/07 1 t2 c"_s}));
}

TEST_F(ClipboardImport, OfAnotherDayTheLengthAloneIsLookedAt) {
    write(u"2004/05/06"_s, u"old"_s);
    answer({u"no"_s, u"yes"_s, u"abcd"_s, u"99"_s, u"zz"_s});
    EXPECT_TRUE(importFormatted(entryText(u"2004/05/06"_s, u"t1"_s)));
    EXPECT_EQ(days, QStringList{u"abcd/99/zz"_s});
}

TEST_F(ClipboardImport, RefusesAnotherDayThatIsTaken) {
    write(u"2004/05/06"_s, u"old"_s);
    answer({u"no"_s, u"yes"_s, u"2004"_s, u"05"_s, u"06"_s});
    EXPECT_TRUE(importFormatted(entryText(u"2004/05/06"_s, u"t1"_s)));
    EXPECT_TRUE(shown().contains(u"critical: その日付(2004/05/06)は存在します。その日付の登録は中止します。"_s));
    EXPECT_EQ(rows(), QStringList{u"2004/05/06 1 old text"_s});
}

TEST_F(ClipboardImport, AnEmptyPartOfAnotherDayEndsThatEntry) {
    write(u"2004/05/06"_s, u"old"_s);
    answer({u"no"_s, u"yes"_s, u"2004"_s, u""_s, u"06"_s});
    EXPECT_TRUE(importFormatted(entryText(u"2004/05/06"_s, u"t1"_s)));
    EXPECT_EQ(shown().sliced(5),
              (QStringList{u"information: 2004//06の入力を中止します。"_s, u"information: 読み込み完了!"_s}));
    EXPECT_EQ(days, QStringList());
}

TEST_F(ClipboardImport, KeepsWhatCameBeforeHalfAnEntry) {
    const QString whole = entryText(u"2004/05/06"_s, u"t1"_s);
    for (const QString& half : {u"＜日付＞2004/05/07"_s, u"＜日付＞2004/05/07＜／日付＞＜タイトル＞t"_s,
                                element(u"日付"_s, u"2004/05/07"_s) + element(u"タイトル"_s, u"t"_s) + u"＜内容＞c"_s,
                                element(u"日付"_s, u"2004/05/07"_s) + element(u"内容"_s, u"c"_s)}) {
        sql(u"DELETE FROM Contents"_s);
        const QString failure = failureOf([&] { importFormatted(whole + half); });
        EXPECT_TRUE(failure.contains(u"それより前の1件の日記は読み込みました"_s)) << failure.toStdString();
        EXPECT_TRUE(failure.contains(u"クリップボードの2番目の日記を読み取れません。"_s)) << failure.toStdString();
        EXPECT_EQ(rows(), QStringList{u"2004/05/06 1 t1 c"_s}) << half.toStdString();
        EXPECT_EQ(days, QStringList{u"2004/05/06"_s});
        EXPECT_NE(failureOf([&] { importFormatted(half); }), QString());
    }
}

TEST_F(ClipboardImport, CountsOnlyWhatTheDiaryHasTaken) {
    refuseRows(u"Title = 't2'"_s);
    const QString whole = entryText(u"2004/05/06"_s, u"t1"_s) + entryText(u"2004/05/07"_s, u"t2"_s);
    const QString failure = failureOf([&] { importFormatted(whole); });
    EXPECT_TRUE(failure.startsWith(u"それより前の1件の日記は読み込みました: "_s)) << failure.toStdString();
    EXPECT_TRUE(failure.endsWith(u"残りの日記を、もう一度読み込んでください。"_s)) << failure.toStdString();
    EXPECT_EQ(days, QStringList{u"2004/05/06"_s});
    EXPECT_EQ(rows(), QStringList{u"2004/05/06 1 t1 c"_s});
    EXPECT_FALSE(failureOf([&] { importFormatted(entryText(u"2004/05/08"_s, u"t2"_s)); }).contains(u"それより前"_s));
    EXPECT_EQ(days, QStringList());
}

TEST_F(ClipboardImport, CountsOnlyWhatACommitHasTaken) {
    write(u"2004/05/06"_s, u"old"_s);
    // The first is settled before the question, the third waits for the commit at the end.
    const QString whole =
        entryText(u"2004/05/05"_s, u"t1"_s) + entryText(u"2004/05/06"_s, u"t2"_s) + entryText(u"2004/05/07"_s, u"t3"_s);
    class BreakingDesk : public ScriptedDesk {
    public:
        DiskWatch disk;

    protected:
        bool answerYesNo(const QJsonObject& question) override {
            disk.refuse(u"-journal"_s);
            return ScriptedDesk::answerYesNo(question);
        }
    } breaking;
    breaking.answers = {u"no"_s, u"no"_s};
    exchange::ClipboardImport import({session, clock, breaking});
    const QString failure = failureOf([&] { import.ImportFormattedClipboard(whole, ParagraphTags::None); });
    EXPECT_TRUE(failure.startsWith(u"それより前の1件の日記は読み込みました: "_s)) << failure.toStdString();
    EXPECT_EQ(import.writtenDays(), QStringList{u"2004/05/05"_s});
    EXPECT_EQ(rows(), (QStringList{u"2004/05/05 1 t1 c"_s, u"2004/05/06 1 old text"_s}));
}

TEST_F(ClipboardImport, AnOverwritingThatFailsAtTheCommitLeavesRowAndRescueFile) {
    write(u"2004/05/06"_s, u"old"_s);
    DiskWatch disk;
    disk.refuse(u"-journal"_s);
    answer({u"yes"_s});
    EXPECT_NE(failureOf([&] { importFormatted(entryText(u"2004/05/06"_s, u"new"_s)); }), QString());
    EXPECT_EQ(rows(), QStringList{u"2004/05/06 1 old text"_s});
    EXPECT_EQ(rescued(), QStringList());
    EXPECT_EQ(days, QStringList());
}

TEST_F(ClipboardImport, LooksForElementsInTheWholeRest) {
    // A closing tag in front of the opening one leaves nothing that could be read.
    EXPECT_NE(failureOf([&] { importFormatted(u"＜／日付＞＜日付＞2004/05/06＜／日付＞"_s); }), QString());
    // An entry without a title takes the one of the next, which keeps it.
    EXPECT_TRUE(importFormatted(element(u"日付"_s, u"2004/05/06"_s) + element(u"内容"_s, u"c"_s) + u"\n"_s +
                                entryText(u"2004/05/07"_s, u"t2"_s)));
    EXPECT_EQ(rows(), (QStringList{u"2004/05/06 1 t2 c"_s, u"2004/05/07 1 t2 c"_s}));
}

TEST_F(ClipboardImport, AMissingOpeningTagCountsAsOneInFrontOfTheRest) {
    // Four characters, those of "＜日付＞", are passed over whether it is there or not.
    EXPECT_TRUE(
        importFormatted(element(u"日付"_s, u"2004/05/06"_s) + u"t＜／タイトル＞"_s + element(u"内容"_s, u"c"_s)));
    EXPECT_EQ(diary().LoadEntry(u"2004/05/06"_s, 1)->title, u"004/05/06＜／日付＞t"_s);
}

TEST_F(ClipboardImport, ADayWithADoubleQuoteFailsAndKeepsTheRest) {
    const QString failure =
        failureOf([&] { importFormatted(entryText(u"2004/05/06"_s, u"t1"_s) + entryText(u"2004\"05/07"_s, u"t2"_s)); });
    EXPECT_TRUE(failure.contains(u"値に「\"」が含まれています"_s)) << failure.toStdString();
    EXPECT_EQ(rows(), QStringList{u"2004/05/06 1 t1 c"_s});
}

TEST_F(ClipboardImport, HoldsNoLockWhileItAsks) {
    class CuriousDesk : public ScriptedDesk {
    public:
        std::function<void()> whenAsked;
        bool ask(const QString&, const QString&) override {
            whenAsked();
            return false;
        }
    } curious;
    int asked = 0;
    curious.whenAsked = [&] {
        sql(u"INSERT INTO Contents (Day, Number, Title) VALUES ('1999/01/01', 1, 'other program')"_s);
        EXPECT_EQ(sqlValue(u"SELECT count(*) FROM Contents WHERE Title = 't1'"_s), u"1"_s);
        ++asked;
    };
    exchange::ClipboardImport import({session, clock, curious});
    EXPECT_TRUE(import.ImportFormattedClipboard(
        entryText(u"2004/05/06"_s, u"t1"_s) + entryText(u"2004/05/06"_s, u"t2"_s), ParagraphTags::None));
    EXPECT_EQ(asked, 2);
}

TEST_F(ClipboardImport, TakesNoLongerThanTheTextIsLong) {
    const double start = processorSeconds();
    QString text;
    for (int i = 0; i < 20000; ++i)
        text += element(u"日付"_s, u"d%1"_s.arg(i)) + element(u"内容"_s, u"c"_s);
    EXPECT_TRUE(importFormatted(text + element(u"タイトル"_s, u"t"_s)));
    EXPECT_EQ(sqlValue(u"SELECT count(*) || ' ' || max(Number) FROM Contents"_s), u"20000 1"_s);
    EXPECT_LT(processorSeconds() - start, 60);
}

TEST_F(ClipboardImport, PlainAsksForDayAndTitle) {
    startAt(u"2004/05/06 10:00:00"_s);
    desk.events = {};
    answer({u"2003"_s, u"12"_s, u"31"_s, u"大晦日"_s});
    EXPECT_TRUE(importPlain(u"a\n\nb"_s));
    EXPECT_EQ(shown(),
              (QStringList{u"input: 年を入力してください(例:2003)。"_s, u"input: 月を入力してください(例:03)。"_s,
                           u"input: 日を入力してください(例:01)。"_s, u"input: タイトルを入力してください。"_s,
                           u"information: 読み込み完了!\r\n2003/12/31"_s}));
    EXPECT_EQ(rows(), QStringList{u"2003/12/31 1 大晦日 a\r\n\r\nb"_s});
    EXPECT_EQ(desk.texts(u"status"_s).last(), u"Clipboardから読み込み完了！"_s);
    EXPECT_EQ(days, QStringList{u"2003/12/31"_s});
}

TEST_F(ClipboardImport, PlainAddsParagraphsToTheWholeText) {
    answer({u"2003"_s, u"12"_s, u"31"_s, u"t"_s});
    EXPECT_TRUE(importPlain(u"a\rb"_s, ParagraphTags::Added));
    EXPECT_EQ(rows(), QStringList{u"2003/12/31 1 t <P>a<BR>\r\nb</P>"_s});
}

TEST_F(ClipboardImport, PlainTakesADefaultForAnEmptyTitle) {
    answer({u"2003"_s, u"12"_s, u"31"_s, u""_s});
    EXPECT_TRUE(importPlain(u"a"_s));
    EXPECT_EQ(rows(), QStringList{u"2003/12/31 1 デフォルトのタイトル a"_s});
}

TEST_F(ClipboardImport, PlainRefusesWhatIsNoDayOfTenCharacters) {
    const QStringList cases[] = {{u"2004"_s, u"3"_s, u"5"_s},    {u"2004"_s, u"13"_s, u"32"_s},
                                 {u"2004"_s, u""_s, u"06"_s},    {u""_s, u""_s, u""_s},
                                 {u"2004"_s, u"003"_s, u"05"_s}, {u"abcd"_s, u"05"_s, u"06"_s}};
    for (const QStringList& parts : cases) {
        desk.events = {};
        answer(parts);
        EXPECT_FALSE(importPlain(u"a"_s));
        EXPECT_EQ(shown().last(), u"critical: そのフォーマットは正しくありません。その日付の登録は中止します。"_s);
    }
    EXPECT_EQ(rows(), QStringList());
}

TEST_F(ClipboardImport, PlainEndsWhenNothingMayBeOverwritten) {
    write(u"2004/05/06"_s, u"old"_s);
    answer({u"2004"_s, u"05"_s, u"06"_s, u"no"_s});
    EXPECT_FALSE(importPlain(u"a"_s));
    EXPECT_EQ(shown().last(), u"question: "_s + QString::fromUtf16(kTaken));
    EXPECT_EQ(rows(), QStringList{u"2004/05/06 1 old text"_s});
    EXPECT_EQ(days, QStringList());
}

TEST_F(ClipboardImport, PlainOverwritesTheFirstRowAndKeepsItInTheRescueFile) {
    write(u"2004/05/06"_s, u"old"_s);
    write(u"2004/05/06"_s, u"second"_s);
    answer({u"2004"_s, u"05"_s, u"06"_s, u"yes"_s, u"new"_s});
    EXPECT_TRUE(importPlain(u"a"_s));
    EXPECT_EQ(rows(), (QStringList{u"2004/05/06 2 second text"_s, u"2004/05/06 1 new a"_s}));
    EXPECT_EQ(rescued(), QStringList{u"old"_s});
}

TEST_F(ClipboardImport, KeepsARowThatCannotBeRescued) {
    write(u"2004/05/06"_s, u"old"_s);
    ASSERT_TRUE(QDir().mkpath(session.UserPath + u"rescue.jsonl"_s));
    answer({u"yes"_s});
    EXPECT_NE(failureOf([&] { importFormatted(entryText(u"2004/05/06"_s, u"new"_s)); }), QString());
    EXPECT_EQ(rows(), QStringList{u"2004/05/06 1 old text"_s});
    EXPECT_EQ(days, QStringList());
}

TEST_F(ClipboardImport, GivesTheEditorItsText) {
    EXPECT_EQ(exchange::GetClipboardText(run, u"a\n\nb"_s, ParagraphTags::None), u"a\r\n\r\nb"_s);
    EXPECT_EQ(exchange::GetClipboardText(run, u"a\n\nb"_s, ParagraphTags::Added), u"<P>a</P>\r\n<P>b</P>"_s);
    EXPECT_EQ(shown(), QStringList());
    EXPECT_EQ(exchange::GetClipboardText(run, std::nullopt, ParagraphTags::Added), QString());
    EXPECT_EQ(exchange::GetClipboardText(run, u""_s, ParagraphTags::Added), QString());
    EXPECT_EQ(shown(), (QStringList{u"critical: クリップボードのデータが適切な形式ではありません。"_s,
                                    u"critical: クリップボードの中に何も入っていません。"_s}));
}

/// Fixture: the import as a command, with what it called in turn.
class ImportCommand : public ClipboardImport {
protected:
    platform::Outcome import(exchange::ClipboardForm form, const std::optional<QString>& text) {
        return exchange::importCommand(
            run, form, text,
            {.preview =
                 [this] {
                     called += u"preview"_s;
                     if (isPreviewRefused)
                         throw platform::Failure(u"x"_s, u""_s, u""_s);
                 },
             .written = [this](const QStringList& written) { called += written.join(u' '); }});
    }

    bool isPreviewRefused = false;
    QStringList called;
};

TEST_F(ImportCommand, ShowsWhatItWroteAndTellsTheDays) {
    const QString text = entryText(u"2004/05/05"_s, u"a"_s) + entryText(u"2004/05/06"_s, u"b"_s);
    EXPECT_EQ(import(exchange::ClipboardForm::Formatted, text), platform::Outcome::Done);
    EXPECT_EQ(called, (QStringList{u"preview"_s, u"2004/05/05 2004/05/06"_s}));
}

TEST_F(ImportCommand, TagsParagraphsAsTheSettingsSay) {
    core::WriteIni(session.DiaryIniFile, u"ALL"_s, u"ClipWithHTML"_s, u"1"_s);
    answer({u"2004"_s, u"05"_s, u"06"_s, u"title"_s});
    EXPECT_EQ(import(exchange::ClipboardForm::Plain, u"text"_s), platform::Outcome::Done);
    EXPECT_EQ(rows(), QStringList{u"2004/05/06 1 title <P>text</P>"_s});
    EXPECT_EQ(called, (QStringList{u"preview"_s, u"2004/05/06"_s}));
}

TEST_F(ImportCommand, HasNothingToShowOfAnEmptyClipboard) {
    EXPECT_EQ(import(exchange::ClipboardForm::Formatted, std::nullopt), platform::Outcome::Refused);
    EXPECT_EQ(import(exchange::ClipboardForm::Plain, std::nullopt), platform::Outcome::Refused);
    EXPECT_EQ(called, QStringList());
}

TEST_F(ImportCommand, TellsTheDaysAfterAPreviewThatFails) {
    isPreviewRefused = true;
    EXPECT_NE(failureOf([&] { import(exchange::ClipboardForm::Formatted, entryText(u"2004/05/05"_s, u"a"_s)); }),
              QString());
    EXPECT_EQ(called, (QStringList{u"preview"_s, u"2004/05/05"_s}));
}

TEST_F(ImportCommand, TellsOfAnImportThatFailsWhatIsWrittenAllTheSame) {
    write(u"2004/05/06"_s, u"old"_s);
    refuseRows(u"Title = 'refused'"_s);
    answer({u"yes"_s}); // what stands before a question is settled first
    const QString text = entryText(u"2004/05/05"_s, u"a"_s) + entryText(u"2004/05/06"_s, u"refused"_s);
    EXPECT_NE(failureOf([&] { import(exchange::ClipboardForm::Formatted, text); }), QString());
    EXPECT_EQ(called, QStringList{u"2004/05/05"_s});
    EXPECT_NE(failureOf([&] { import(exchange::ClipboardForm::Formatted, entryText(u"2004/05/07"_s, u"refused"_s)); }),
              QString());
    EXPECT_EQ(called.size(), 1);
}

TEST_F(ImportCommand, TellsNoDayOfATextThatTheDiskDoesNotTake) {
    answer({u"2004"_s, u"05"_s, u"06"_s, u"title"_s});
    DiskWatch disk;
    disk.refuse(u"-journal"_s);
    EXPECT_NE(failureOf([&] { import(exchange::ClipboardForm::Plain, u"text"_s); }), QString());
    EXPECT_EQ(called, QStringList());
    EXPECT_EQ(rows(), QStringList());
}

} // namespace
} // namespace velloria::tests
