#include "exchange/export.h"

#include "platform/code_page.h"
#include "platform/file_write.h"
#include "support/faulty_disk.h"
#include "support/test_home.h"

#include <QDir>
#include <QFile>
#include <QJsonObject>

#include <sys/stat.h>

using namespace Qt::StringLiterals;
using namespace velloria::exchange;

namespace velloria::tests {
namespace {

using store::Period;

const QString kDone = u"information: 完了！"_s;

class Export : public TestHome {
protected:
    Export() {
        QDir(home.path()).mkdir(u"out"_s);
        putFormat(u"TEXT.txt"_s, "[<--DAY-->|<--TITLE-->|<--GENRE-->|<--WEATHER-->]<--CONTENTS-->");
        settings.period = month();
        settings.contents = ExportContents::AsTheyAre;
    }

    static Period month() { return exportMonth(u"2004"_s, u"5"_s); }
    static Period day(const QString& day) { return {Period::Kind::Day, day, {}}; }
    static Period between(const QString& first, const QString& last) { return {Period::Kind::Between, first, last}; }

    void putFormat(const QString& name, const QByteArray& bytes) {
        writeFile(session.DataPath + u"ExportFormat/"_s + name, bytes);
    }
    QString out(const QString& name = {}) const { return path(u"out/"_s + name); }
    ExportOutcome exportTo(const QString& chosen) { return clsExport(run, settings).run(chosen); }
    /// The same with the answer of the dialog.
    ExportOutcome ask(const QJsonValue& answer) {
        desk.answers.append(answer);
        return clsExport(run, settings).run();
    }
    QByteArray exported() {
        EXPECT_EQ(exportTo(out(u"x.txt"_s)), ExportOutcome::Done);
        return bytesOf(out(u"x.txt"_s));
    }
    QStringList names() const { return QDir(out()).entryList(QDir::Files | QDir::Hidden, QDir::Name); }
    QJsonObject dialog() const {
        for (const QJsonValue& event : desk.events) {
            if (event[u"event"_s] == u"file"_s)
                return event.toObject();
        }
        return {};
    }
    QString panel() const { return desk.texts(u"status"_s).value(desk.texts(u"status"_s).size() - 1); }

    ExportSettings settings;
};

TEST_F(Export, OneCopyOfTheFormatForEachEntryAndOneLineEnd) {
    store::Entry entry = entryOf(u"2004/05/01"_s, u"題"_s);
    entry.contents = u"<P>日\r\nb</P>"_s;
    entry.genre = u"趣味"_s;
    entry.weather = u"晴れ"_s;
    write(entry);
    write(u"2004/05/02"_s, u"second"_s);
    EXPECT_EQ(exported(), platform::toCodePage(u"[2004/05/01|題|趣味|晴れ]<P>日\r\nb</P>\r\n"
                                               "[2004/05/02|second|一般|-]text\r\n"_s));
    EXPECT_EQ(boxes(), QStringList{kDone});
    EXPECT_EQ(panel(), u"2件の日記をエクスポートしました。"_s);
}

TEST_F(Export, AllPlacesOfAMarkAreReplacedAndTheOrderOfTheFormatIsFree) {
    putFormat(u"TEXT.txt"_s, "<--CONTENTS--><--DAY--><--CONTENTS-->\r\n<--day--><--TITLE-->");
    write(u"2004/05/01"_s, u"t"_s, u"c"_s);
    EXPECT_EQ(exported(), "c2004/05/01c\r\n<--day-->t\r\n");
}

TEST_F(Export, MarksWithinATitleAreReplacedByWhatComesBehindAndNoneWithinTheText) {
    putFormat(u"TEXT.txt"_s, "<--TITLE-->/<--CONTENTS-->");
    write(u"2004/05/01"_s, u"<--TITLE--><--DAY--><--CONTENTS-->"_s, u"<--TITLE--><--CONTENTS-->"_s);
    EXPECT_EQ(exported(), "<--TITLE-->2004/05/01<--TITLE--><--CONTENTS-->/<--TITLE--><--CONTENTS-->\r\n");
}

TEST_F(Export, AFormatWithoutTheTextWritesNoneAndAnEmptyOneIsALineEnd) {
    putFormat(u"TEXT.txt"_s, "<--TITLE-->\n");
    write(u"2004/05/01"_s, u"t"_s, u"secret"_s);
    EXPECT_EQ(exported(), "t\n\r\n");
    putFormat(u"TEXT.txt"_s, "");
    EXPECT_EQ(exported(), "\r\n");
}

TEST_F(Export, MissingValuesAreEmptyButWeatherAndGenre) {
    write(u"2004/05/01"_s, u"t"_s);
    sql(u"UPDATE Contents SET Title = NULL, Contents = NULL, Weather = NULL, Genre = NULL"_s);
    EXPECT_EQ(exported(), platform::toCodePage(u"[2004/05/01||一般|-]\r\n"_s));
    sql(u"UPDATE Contents SET Weather = '', Genre = ''"_s);
    EXPECT_EQ(exported(), "[2004/05/01|||]\r\n");
}

TEST_F(Export, PrivateEntriesComeAlong) {
    store::Entry entry = entryOf(u"2004/05/01"_s, u"secret"_s);
    entry.isPrivate = true;
    write(entry);
    EXPECT_TRUE(exported().contains("secret"));
}

TEST_F(Export, FormatAndContentsAreIndependent) {
    putFormat(u"HTML.txt"_s, "html <--CONTENTS-->");
    write(u"2004/05/01"_s, u"t"_s, u"<B>a</B><BR>&lt;"_s);
    EXPECT_TRUE(exported().endsWith("<B>a</B><BR>&lt;\r\n"));
    settings.contents = ExportContents::Converted;
    EXPECT_TRUE(exported().endsWith("]a\r\n<\r\n"));
    settings.format = ExportFormat::Html;
    EXPECT_EQ(exported(), "html a\r\n<\r\n");
    settings.contents = ExportContents::AsTheyAre;
    EXPECT_EQ(exported(), "html <B>a</B><BR>&lt;\r\n");
}

TEST_F(Export, AMarkMadeByTheConversionStaysAsItIs) {
    settings.contents = ExportContents::Converted;
    putFormat(u"TEXT.txt"_s, "<--CONTENTS-->");
    write(u"2004/05/01"_s, u"t"_s, u"&lt;--TITLE--&gt;"_s);
    EXPECT_EQ(exported(), "<--TITLE-->\r\n");
}

TEST_F(Export, EachPeriodHasItsEntries) {
    for (const QString& date : {u"2004/04/30"_s, u"2004/05/01"_s, u"2004/05/31"_s, u"2004/06/01"_s})
        write(date, date);
    putFormat(u"TEXT.txt"_s, "<--TITLE-->");
    EXPECT_EQ(exported(), "2004/05/01\r\n2004/05/31\r\n");
    settings.period = exportMonth(u"2004"_s, u"06"_s);
    EXPECT_EQ(exported(), "2004/06/01\r\n");
    settings.period = day(u"2004/04/30"_s);
    EXPECT_EQ(exported(), "2004/04/30\r\n");
    settings.period = between(u"2004/04/30"_s, u"2004/05/01"_s);
    EXPECT_EQ(exported(), "2004/04/30\r\n2004/05/01\r\n");
    settings.direction = store::SortDirection::Descending;
    EXPECT_EQ(exported(), "2004/05/01\r\n2004/04/30\r\n");
}

TEST_F(Export, AMonthIsLookedForAsItIsTyped) {
    write(u"2004/01/01"_s, u"january"_s);
    write(u"2004/10/01"_s, u"october"_s);
    putFormat(u"TEXT.txt"_s, "<--TITLE-->");
    const struct {
        QString year;
        QString month;
        QByteArray titles;
    } cases[] = {{u"2004"_s, u"1"_s, "january\r\n"},
                 {u"2004"_s, u"01"_s, "january\r\n"},
                 {u"2004"_s, u"10"_s, "october\r\n"},
                 {u"2004"_s, u""_s, ""},
                 {u"2004"_s, u"13"_s, ""},
                 {u"2004"_s, u"x"_s, ""},
                 {u"4"_s, u"1"_s, ""},
                 {u""_s, u""_s, ""},
                 {u"200%"_s, u"1"_s, "january\r\n"}};
    for (const auto& c : cases) {
        settings.period = exportMonth(c.year, c.month);
        EXPECT_EQ(exported(), c.titles) << c.year.toStdString() << '/' << c.month.toStdString();
    }
    settings.period = exportMonth(u"20\"04"_s, u"1"_s);
    EXPECT_NE(failureOf([&] { exportTo(out(u"x.txt"_s)); }), u""_s);
    EXPECT_EQ(bytesOf(out(u"x.txt"_s)), "january\r\n");
}

TEST_F(Export, APeriodWithoutEntriesIsAnEmptyFileOrNone) {
    settings.period = between(u"2004/05/02"_s, u"2004/05/01"_s);
    write(u"2004/05/01"_s, u"t"_s);
    write(u"2004/05/02"_s, u"t"_s);
    writeFile(out(u"x.txt"_s), "old");
    EXPECT_EQ(exported(), "");
    settings.unit = ExportUnit::Divided;
    ASSERT_TRUE(QFile::remove(out(u"x.txt"_s)));
    EXPECT_EQ(exportTo(out()), ExportOutcome::Done);
    EXPECT_EQ(names(), QStringList());
}

TEST_F(Export, APeriodBackwardsIsTold) {
    write(u"2004/05/01"_s, u"t"_s);
    const QString told = u"期間の開始が終了より後になっています。"_s;
    settings.period = between(u"2004/05/02"_s, u"2004/05/01"_s);
    EXPECT_EQ(exported(), "");
    EXPECT_EQ(panel(), u"0件の日記をエクスポートしました。"_s + told);
    settings.unit = ExportUnit::Divided;
    EXPECT_EQ(exportTo(out()), ExportOutcome::Done);
    EXPECT_EQ(panel(), u"0件の日記をエクスポートしました。"_s + told);
    EXPECT_EQ(boxes(), QStringList(2, kDone));
    settings.unit = ExportUnit::OneFile;
    for (const Period& period : {between(u"2004/05/01"_s, u"2004/05/01"_s), month(), day(u"2004/05/02"_s)}) {
        settings.period = period;
        exported();
        EXPECT_FALSE(panel().contains(told)) << panel().toStdString();
    }
}

TEST_F(Export, DividedFilesAreNamedByDayOrTitle) {
    write(u"2004/05/01"_s, u"題名 a"_s);
    write(u"2004/05/02"_s, u".b"_s);
    settings.unit = ExportUnit::Divided;
    EXPECT_EQ(exportTo(out()), ExportOutcome::Done);
    EXPECT_EQ(names(), (QStringList{u"2004_05_01.txt"_s, u"2004_05_02.txt"_s}));
    EXPECT_EQ(bytesOf(out(u"2004_05_02.txt"_s)), platform::toCodePage(u"[2004/05/02|.b|一般|-]text\r\n"_s));
    settings.format = ExportFormat::Html;
    settings.name = ExportName::Title;
    EXPECT_EQ(exportTo(path(u"out"_s)), ExportOutcome::Done);
    EXPECT_EQ(names(), (QStringList{u".b.htm"_s, u"2004_05_01.txt"_s, u"2004_05_02.txt"_s, u"題名 a.htm"_s}));
}

TEST_F(Export, AnEmptyTitleIsAFileWithoutAName) {
    write(u"2004/05/01"_s, u""_s);
    settings.unit = ExportUnit::Divided;
    settings.name = ExportName::Title;
    EXPECT_EQ(exportTo(out()), ExportOutcome::Done);
    EXPECT_EQ(names(), QStringList{u".txt"_s});
}

TEST_F(Export, AUserFormatKeepsItsEnding) {
    putFormat(u"mine.txt"_s, "mine <--TITLE-->");
    putFormat(u"mine.log"_s, "never read");
    write(u"2004/05/01"_s, u"t"_s);
    settings.format = ExportFormat::User;
    settings.userFormat = u"mine.log"_s;
    settings.unit = ExportUnit::Divided;
    EXPECT_EQ(exportTo(out()), ExportOutcome::Done);
    EXPECT_EQ(bytesOf(out(u"2004_05_01.log"_s)), "mine t\r\n");
    settings.userFormat = u"mine"_s;
    EXPECT_EQ(exportTo(out()), ExportOutcome::Done);
    EXPECT_EQ(names(), (QStringList{u"2004_05_01."_s, u"2004_05_01.log"_s}));
    settings.unit = ExportUnit::OneFile;
    EXPECT_EQ(exportTo(out(u"plain"_s)), ExportOutcome::Done);
    EXPECT_EQ(bytesOf(out(u"plain"_s)), "mine t\r\n");
}

TEST_F(Export, TheSecondEntryOfANameReplacesTheFirstAndThePanelSaysSo) {
    write(u"2004/05/01"_s, u"first"_s);
    write(u"2004/05/01"_s, u"second"_s);
    write(u"2004/05/01"_s, u"third"_s);
    write(u"2004/05/02"_s, u"other"_s);
    putFormat(u"TEXT.txt"_s, "<--TITLE-->");
    settings.unit = ExportUnit::Divided;
    EXPECT_EQ(exportTo(out()), ExportOutcome::Done);
    EXPECT_EQ(names(), (QStringList{u"2004_05_01.txt"_s, u"2004_05_02.txt"_s}));
    EXPECT_EQ(bytesOf(out(u"2004_05_01.txt"_s)), "third\r\n");
    EXPECT_EQ(panel(), u"4件の日記をエクスポートしました。"
                       "同じ名前のため1個のファイルを上書きし、2件の日記が残っていません。"_s);
    EXPECT_EQ(desk.events.last()[u"event"_s], u"status"_s);
    EXPECT_EQ(boxes(), QStringList{kDone});
}

TEST_F(Export, FilesOfAnEarlierExportAreCountedByThemselves) {
    write(u"2004/05/01"_s, u"t"_s);
    settings.unit = ExportUnit::Divided;
    exportTo(out());
    EXPECT_EQ(panel(), u"1件の日記をエクスポートしました。"_s);
    exportTo(out());
    EXPECT_EQ(panel(), u"1件の日記をエクスポートしました。以前からあった1個のファイルを上書きしました。"_s);
}

TEST_F(Export, OneDayDividedGoesToTheFolderOfTheChosenFile) {
    write(u"2004/05/06"_s, u"a"_s);
    write(u"2004/05/06"_s, u"b"_s);
    settings.period = day(u"2004/05/06"_s);
    settings.unit = ExportUnit::Divided;
    settings.name = ExportName::Title;
    EXPECT_EQ(ask(out(u"chosen"_s)), ExportOutcome::Done);
    EXPECT_EQ(names(), (QStringList{u"a.txt"_s, u"b.txt"_s}));
    EXPECT_EQ(dialog()[u"mode"_s], u"save"_s);
    settings.name = ExportName::Day;
    EXPECT_EQ(exportTo(out(u"chosen.txt"_s)), ExportOutcome::Done);
    EXPECT_TRUE(exists(out(u"2004_05_06.txt"_s)));
    EXPECT_FALSE(exists(out(u"chosen.txt"_s)));
}

TEST_F(Export, TheDialogFollowsPeriodUnitAndFormat) {
    const QString all = u"ALL Files(*.*)|*.*|"_s;
    const struct {
        Period period;
        ExportUnit unit;
        ExportFormat format;
        QString mode;
        QString filter;
    } cases[] = {
        {month(), ExportUnit::Divided, ExportFormat::Text, u"folder"_s, u""_s},
        {between(u"2004/05/01"_s, u"2004/05/02"_s), ExportUnit::Divided, ExportFormat::User, u"folder"_s, u""_s},
        {month(), ExportUnit::OneFile, ExportFormat::Text, u"save"_s, u"TEXT Files(*.txt)|*.txt|"_s + all},
        {month(), ExportUnit::OneFile, ExportFormat::Html, u"save"_s, u"HTML Files(*.html)|*.html|"_s + all},
        {month(), ExportUnit::OneFile, ExportFormat::User, u"save"_s, all},
        {day(u"2004/05/01"_s), ExportUnit::Divided, ExportFormat::Html, u"save"_s,
         u"HTML Files(*.html)|*.html|"_s + all}};
    settings.userFormat = u"TEXT.ini"_s;
    for (const auto& c : cases) {
        settings.period = c.period;
        settings.unit = c.unit;
        settings.format = c.format;
        desk.events = {};
        EXPECT_EQ(ask(QJsonValue()), ExportOutcome::Cancelled);
        EXPECT_EQ(dialog()[u"mode"_s], c.mode);
        EXPECT_EQ(dialog()[u"filter"_s], c.filter);
        EXPECT_EQ(dialog()[u"title"_s], c.mode == u"folder"_s ? u"フォルダの選択"_s : u"Export"_s);
        EXPECT_EQ(boxes(), QStringList{u"information: キャンセルしました"_s});
        EXPECT_EQ(names(), QStringList());
    }
}

TEST_F(Export, TheDialogAddsTheEndingOfTheBuiltInFormats) {
    class AskedDesk : public ScriptedDesk {
    public:
        std::optional<QString> choosePath(const platform::PathRequest& request) override {
            suffix = request.defaultSuffix;
            return std::nullopt;
        }
        QString suffix;
    } asked;
    const struct {
        ExportFormat format;
        ExportUnit unit;
        QString suffix;
    } cases[] = {{ExportFormat::Text, ExportUnit::OneFile, u"txt"_s},
                 {ExportFormat::Html, ExportUnit::OneFile, u"htm"_s},
                 {ExportFormat::User, ExportUnit::OneFile, u""_s},
                 {ExportFormat::Text, ExportUnit::Divided, u""_s}};
    settings.userFormat = u"mine.log"_s;
    for (const auto& c : cases) {
        settings.format = c.format;
        settings.unit = c.unit;
        EXPECT_EQ(clsExport({session, clock, asked}, settings).run(), ExportOutcome::Cancelled);
        EXPECT_EQ(asked.suffix, c.suffix);
    }
}

TEST_F(Export, OnlyTheLastFourCharactersTellAnEnding) {
    const struct {
        ExportFormat format;
        QString chosen;
        QString path;
    } cases[] = {{ExportFormat::Text, u"x"_s, u"x.txt"_s},           {ExportFormat::Text, u"x.TXT"_s, u"x.TXT"_s},
                 {ExportFormat::Text, u"x.htm"_s, u"x.htm"_s},       {ExportFormat::Text, u"x.html"_s, u"x.html.txt"_s},
                 {ExportFormat::Html, u"x.html"_s, u"x.html.htm"_s}, {ExportFormat::Html, u"x.Htm"_s, u"x.Htm"_s},
                 {ExportFormat::Html, u"x.txt"_s, u"x.txt"_s},       {ExportFormat::Html, u"x.dat"_s, u"x.dat.htm"_s},
                 {ExportFormat::User, u"x.dat"_s, u"x.dat"_s},       {ExportFormat::User, u"x"_s, u"x"_s}};
    settings.userFormat = u"TEXT.ini"_s;
    for (const auto& c : cases) {
        settings.format = c.format;
        EXPECT_EQ(exportTo(out(c.chosen)), ExportOutcome::Done);
        EXPECT_EQ(names(), QStringList{c.path});
        QFile::remove(out(c.path));
    }
}

TEST_F(Export, AnEmptyUserFormatIsRefusedInFrontOfAnyQuestion) {
    settings.format = ExportFormat::User;
    EXPECT_EQ(clsExport(run, settings).run(), ExportOutcome::Refused);
    EXPECT_EQ(boxes(), QStringList{u"critical: 定義ファイルが指定されていません。"_s});
}

TEST_F(Export, AFreshHomeHasBothFormatsAsSettingsFiles) {
    ASSERT_TRUE(QFile::remove(session.DataPath + u"ExportFormat/TEXT.txt"_s));
    write(u"2004/05/06"_s, u"花見"_s, u"<P>桜</P>"_s);
    settings.contents = ExportContents::Converted;
    EXPECT_EQ(exported(),
              platform::toCodePage(u"■ 花見\r\n2004/05/06　天気：-　ジャンル：一般\r\n\r\n桜\r\n\r\n\r\n"_s +
                                   u"-"_s.repeated(40) + u"\r\n\r\n"_s));
    settings.format = ExportFormat::Html;
    settings.contents = ExportContents::AsTheyAre;
    const QString page = platform::fromCodePage(exported());
    EXPECT_TRUE(page.contains(u"charset=Shift_JIS"_s));
    EXPECT_TRUE(page.contains(u">花見</h2>"_s));
    EXPECT_TRUE(page.contains(u"<P>桜</P>"_s));
    EXPECT_FALSE(page.contains(u"<--"_s));
}

TEST_F(Export, TheTextFileComesInFrontOfTheSettingsFile) {
    putFormat(u"TEXT.ini"_s, "ini");
    putFormat(u"TEXT.txt"_s, "txt");
    write(u"2004/05/01"_s, u"t"_s);
    EXPECT_EQ(exported(), "txt\r\n");
    ASSERT_TRUE(
        QFile::rename(session.DataPath + u"ExportFormat/TEXT.txt"_s, session.DataPath + u"ExportFormat/Text.TXT"_s));
    EXPECT_EQ(exported(), "txt\r\n");
}

TEST_F(Export, AMissingFormatIsNamedAndNothingIsWritten) {
    ASSERT_TRUE(QDir(session.DataPath + u"ExportFormat"_s).removeRecursively());
    writeFile(out(u"x.txt"_s), "old");
    QString failure = failureOf([&] { exportTo(out(u"x.txt"_s)); });
    EXPECT_TRUE(failure.contains(u"ExportFormat/TEXT.txt"_s)) << failure.toStdString();
    settings.format = ExportFormat::User;
    settings.userFormat = u"mine.log"_s;
    failure = failureOf([&] { exportTo(out(u"x.txt"_s)); });
    EXPECT_TRUE(failure.contains(u"ExportFormat/mine.txt"_s)) << failure.toStdString();
    EXPECT_EQ(bytesOf(out(u"x.txt"_s)), "old");
    EXPECT_EQ(boxes(), QStringList());
    EXPECT_EQ(desk.events.last()[u"shape"_s], u"default"_s);
}

TEST_F(Export, TheUserListHasAllFilesButTheTwoBuiltIn) {
    putFormat(u"HTML.txt"_s, "");
    putFormat(u"noending"_s, "");
    putFormat(u"b.log"_s, "");
    putFormat(u"text.txt"_s, "");
    QDir(session.DataPath + u"ExportFormat"_s).mkdir(u"folder"_s);
    EXPECT_EQ(userFormats(session),
              (QStringList{u"b.log"_s, u"HTML.ini"_s, u"noending"_s, u"TEXT.ini"_s, u"text.txt"_s}));
}

TEST_F(Export, ConverterSettingsThatAreMissingEndItWithoutAFile) {
    ASSERT_TRUE(QFile::remove(path(u"HTML2TXT.ini"_s)));
    write(u"2004/05/01"_s, u"t"_s);
    for (const ExportContents contents : {ExportContents::AsTheyAre, ExportContents::Converted}) {
        settings.contents = contents;
        EXPECT_EQ(exportTo(out(u"x.txt"_s)), ExportOutcome::Refused);
    }
    EXPECT_EQ(boxes(), QStringList(2, u"critical: HTML2TXT Initializeファイル読み込みエラー"_s));
    EXPECT_EQ(names(), QStringList());
}

TEST_F(Export, ConverterSettingsWithWordsForNumbersReadAsOff) {
    writeFile(path(u"HTML2TXT.ini"_s), "[HTML]\r\nBR=yes\r\nP=\r\n[GENERAL]\r\nENTER=x\r\n");
    settings.contents = ExportContents::Converted;
    write(u"2004/05/01"_s, u"t"_s, u"a<BR>b</P>c"_s);
    EXPECT_TRUE(exported().endsWith("]abc\r\n"));
}

TEST_F(Export, ConverterSettingsOutOfRangeEndItWithoutAFile) {
    writeFile(path(u"HTML2TXT.ini"_s), "[HR]\r\nNUM=99999999\r\n");
    write(u"2004/05/01"_s, u"t"_s);
    EXPECT_NE(failureOf([&] { exportTo(out(u"x.txt"_s)); }), u""_s);
    EXPECT_EQ(names(), QStringList());
}

TEST_F(Export, CharactersThatTheCodePageLacksAreReferencesAndCounted) {
    putFormat(u"TEXT.txt"_s, "<--TITLE--> <--CONTENTS-->");
    write(u"2004/05/01"_s, u"é〜①"_s, u"😀 &#233; ‾"_s);
    EXPECT_EQ(exported(), platform::toCodePage(u"&#233;～① &#128512; &#233; &#8254;\r\n"_s));
    EXPECT_EQ(panel(), u"1件の日記をエクスポートしました。Shift_JISにない3文字を文字参照で書きました。"_s);
}

TEST_F(Export, ATitleThatIsNoFileNameIsToldAndWhatWasWrittenStays) {
    settings.unit = ExportUnit::Divided;
    settings.name = ExportName::Title;
    QDir(out()).mkdir(u"a"_s);
    write(u"2004/05/01"_s, u"good"_s);
    write(u"2004/05/03"_s, u"behind"_s);
    const QString bad[] = {u"a/b"_s, u"../escaped"_s, u"/etc/velloria"_s, u"長"_s.repeated(100),
                           QString::fromUtf16(u"a\0b", 3)};
    for (const QString& title : bad) {
        SCOPED_TRACE(title.toStdString());
        sql(u"DELETE FROM Contents WHERE Day = '2004/05/02'"_s);
        write(u"2004/05/02"_s, title);
        const QString failure = failureOf([&] { exportTo(out()); });
        EXPECT_TRUE(failure.contains(u"2004/05/02"_s)) << failure.toStdString();
        EXPECT_TRUE(failure.contains(u"1個のファイルは残っています"_s)) << failure.toStdString();
        EXPECT_TRUE(failure.contains(u'「' + QString(title).replace(QChar(0), u'␀') + u'」')) << failure.toStdString();
        EXPECT_EQ(names(), QStringList{u"good.txt"_s});
    }
    EXPECT_FALSE(exists(path(u"escaped.txt"_s)));
    EXPECT_FALSE(exists(out(u"a/b.txt"_s)));
    EXPECT_EQ(boxes(), QStringList());
}

TEST_F(Export, AFolderThatIsGoneIsNamed) {
    settings.unit = ExportUnit::Divided;
    write(u"2004/05/01"_s, u"t"_s);
    const QString failure = failureOf([&] { exportTo(path(u"nowhere"_s)); });
    EXPECT_TRUE(failure.contains(path(u"nowhere/2004_05_01.txt"_s))) << failure.toStdString();
    EXPECT_FALSE(exists(path(u"nowhere"_s)));
}

TEST_F(Export, NothingButAFileIsReplacedAndNothingThatTheDiaryNeeds) {
    write(u"2004/05/01"_s, u"t"_s);
    putFormat(u"mine.txt"_s, "mine");
    settings.format = ExportFormat::User;
    settings.userFormat = u"mine.txt"_s;
    ASSERT_TRUE(QFile::link(session.databaseFile(), out(u"link"_s)));
    const QTemporaryDir elsewhere;
    const QString pipe = elsewhere.filePath(u"pipe"_s);
    ASSERT_EQ(::mkfifo(QFile::encodeName(pipe).constData(), 0600), 0);
    for (const QString& file : {out(), pipe, session.databaseFile(), session.DiaryIniFile, out(u"link"_s),
                                session.DataPath + u"ExportFormat/mine.txt"_s}) {
        const auto before = contentOf(home.path());
        EXPECT_NE(failureOf([&] { exportTo(file); }), u""_s) << file.toStdString();
        EXPECT_EQ(contentOf(home.path()), before) << file.toStdString();
    }
    EXPECT_TRUE(exists(pipe));
    EXPECT_FALSE(QFileInfo(pipe).isFile());
}

TEST_F(Export, NoFileOfTheProgramOrOfTheUsersSettingsIsReplaced) {
    write(u"2004/05/01"_s, u"t"_s);
    const QString formats = session.DataPath + u"ExportFormat/"_s;
    const QString data = session.DataPath;
    putFormat(u"mine.txt"_s, "mine");
    QStringList refused{path(u"HTML2TXT.ini"_s), path(u"readme"_s), formats + u"HTML.ini"_s, formats + u"other.log"_s};
    for (const char* name : {"a.ini",
                             "a.MDB",
                             "Genre.csv",
                             "a.json",
                             "rescue.jsonl",
                             "upload.tmp",
                             "diarymdb.bak",
                             "Customize/Customize.ini",
                             "rescue.damaged",
                             "upload.log",
                             "upload.lock",
                             "diarymdb.bak.1",
                             "diarymdb.bak.lock",
                             "diarymdb.replaced.bak",
                             "diarymdb.replaced-2.bak-journal",
                             "diary.mdb-wal",
                             "Diary.mdb-shm",
                             "diary.mdb-journal",
                             "URLHist.txt",
                             "findhist.txt"})
        refused += data + QString::fromLatin1(name);
    const QStringList allowed{data + u"a.txt"_s, data + u"a.htm"_s, data + u"folder/a.dat"_s, out(u"a.csv"_s)};
    ASSERT_TRUE(QDir(data).mkdir(u"folder"_s));
    for (const QString& file : refused + allowed)
        writeFile(file, "old");
    ASSERT_TRUE(QFile::link(data + u"Genre.csv"_s, out(u"link"_s)));
    ASSERT_TRUE(QFile::link(out(u"a.csv"_s), path(u"outward"_s)));
    ASSERT_TRUE(QFile::link(data, out(u"data"_s)));
    refused += {out(u"link"_s), path(u"outward"_s), out(u"data/Genre.csv"_s), data + u"../HTML2TXT.ini"_s};
    settings.format = ExportFormat::User;
    settings.userFormat = u"mine.ini"_s;
    for (const QString& file : refused) {
        const auto before = contentOf(home.path());
        const QString failure = failureOf([&] { exportTo(file); });
        EXPECT_TRUE(failure.contains(file) && failure.contains(u"日記に必要なファイルです"_s)) << file.toStdString();
        EXPECT_EQ(contentOf(home.path()), before) << file.toStdString();
    }
    for (const QString& file : allowed + QStringList{path(u"new.txt"_s), data + u"new.csv"_s}) {
        EXPECT_EQ(exportTo(file), ExportOutcome::Done) << file.toStdString();
        EXPECT_EQ(bytesOf(file), "mine\r\n");
    }
    settings.unit = ExportUnit::Divided;
    settings.name = ExportName::Title;
    sql(u"UPDATE Contents SET Title = 'a'"_s);
    EXPECT_NE(failureOf([&] { exportTo(data); }), u""_s);
    EXPECT_EQ(bytesOf(data + u"a.ini"_s), "old");
}

TEST_F(Export, TheUsersFolderIsKeptWhereverTheWorkingFoldersLie) {
    write(u"2004/05/01"_s, u"t"_s);
    session.DataPath = path(u"working/"_s);
    ASSERT_TRUE(QDir(home.path()).mkpath(u"working/ExportFormat"_s));
    putFormat(u"TEXT.txt"_s, "");
    settings.format = ExportFormat::User;
    settings.userFormat = u"TEXT"_s;
    for (const QString& file : {session.UserPath + u"rescue.jsonl"_s, session.DataPath + u"Genre.csv"_s}) {
        writeFile(file, "old");
        EXPECT_NE(failureOf([&] { exportTo(file); }), u""_s) << file.toStdString();
        EXPECT_EQ(bytesOf(file), "old");
    }
}

TEST_F(Export, AFullDiskInTheMiddleOfDividedFilesTellsHowManyStay) {
    for (int i = 1; i <= 5; ++i)
        write(u"2004/05/0%1"_s.arg(i), u"t"_s, QString(i == 4 ? 400'000 : 100'000, u'x'));
    settings.unit = ExportUnit::Divided;
    writeFile(out(u"2004_05_04.txt"_s), "old");
    {
        FaultyDisk disk(home.path());
        disk.leaveRoom(500'000);
        const QString failure = failureOf([&] { exportTo(out()); });
        EXPECT_TRUE(failure.contains(u"2004/05/04"_s)) << failure.toStdString();
        EXPECT_TRUE(failure.contains(u"3個のファイルは残っています"_s)) << failure.toStdString();
    }
    EXPECT_EQ(names(),
              (QStringList{u"2004_05_01.txt"_s, u"2004_05_02.txt"_s, u"2004_05_03.txt"_s, u"2004_05_04.txt"_s}));
    EXPECT_EQ(bytesOf(out(u"2004_05_03.txt"_s)).count('x'), 100'000);
    EXPECT_EQ(bytesOf(out(u"2004_05_04.txt"_s)), "old");
}

TEST_F(Export, AFullDiskInTheMiddleLeavesTheOldFile) {
    for (int i = 1; i <= 20; ++i)
        write(u"2004/05/%1"_s.arg(i, 2, 10, QChar(u'0')), u"t"_s, QString(100'000, u'x'));
    writeFile(out(u"x.txt"_s), "old");
    for (const QString& name : {u"x.txt"_s, u"new.txt"_s}) {
        FaultyDisk disk(home.path());
        disk.leaveRoom(300'000);
        EXPECT_NE(failureOf([&] { exportTo(out(name)); }), QString()) << name.toStdString();
    }
    EXPECT_EQ(names(), QStringList{u"x.txt"_s});
    EXPECT_EQ(bytesOf(out(u"x.txt"_s)), "old");
}

TEST_F(Export, ADiaryThatCantBeReadLeavesTheOldFile) {
    writeFile(out(u"x.txt"_s), "old");
    writeFile(session.databaseFile(), "no database at all, however long it may be");
    EXPECT_NE(failureOf([&] { exportTo(out(u"x.txt"_s)); }), u""_s);
    EXPECT_EQ(bytesOf(out(u"x.txt"_s)), "old");
    EXPECT_EQ(names(), QStringList{u"x.txt"_s});
}

TEST_F(Export, LongWorkTellsHowFarItIs) {
    sql(u"WITH RECURSIVE n(i) AS (SELECT 1 UNION ALL SELECT i + 1 FROM n WHERE i < 1500) "
        "INSERT INTO Contents (Day, Number, Title) SELECT '2004/05/01', i, 't' FROM n"_s);
    exportTo(out(u"x.txt"_s));
    QStringList progress;
    for (const QJsonValue& event : desk.events) {
        if (event[u"event"_s] == u"progress"_s)
            progress += u"%1/%2"_s.arg(event[u"value"_s].toInt()).arg(event[u"max"_s].toInt());
    }
    EXPECT_EQ(progress, (QStringList{u"512/1500"_s, u"1024/1500"_s}));
    EXPECT_EQ(panel(), u"1500件の日記をエクスポートしました。"_s);
}

TEST_F(Export, AFolderWhoseNameBeginsLikeTheUsersIsNotTheUsers) {
    write(u"2004/05/01"_s, u"t"_s);
    const QString neighbour = session.UserPath.chopped(1) + u"-old/"_s;
    ASSERT_TRUE(QDir().mkpath(neighbour));
    for (const QString& name : {u"a.ini"_s, u"a.csv"_s, u"a.txt"_s}) {
        writeFile(neighbour + name, "old");
        settings.format = ExportFormat::User;
        settings.userFormat = u"mine"_s + name.sliced(1);
        putFormat(u"mine.txt"_s, "new");
        EXPECT_EQ(exportTo(neighbour + name), ExportOutcome::Done) << name.toStdString();
        EXPECT_EQ(bytesOf(neighbour + name), "new\r\n");
    }
}

} // namespace
} // namespace velloria::tests
