#include "convert/html_to_text.h"

#include "convert/literal_html_to_text.h"
#include "platform/failure.h"
#include "support/patience.h"

#include <gtest/gtest.h>

#include <QFile>
#include <QTemporaryDir>

#include <random>
#include <string>

using namespace Qt::StringLiterals;
using velloria::convert::clsHTML2TEXT;
using velloria::platform::Failure;

namespace velloria::tests {
namespace {

struct Setting {
    const char* section;
    const char* key;
    int missing;
    const char* name;
};

/// Every number of the file, in the order in which SaveValue writes them after the mode.
const Setting kSettings[] = {
    {"HTML2HTML", "BR", 0, "HTML_BR"},
    {"HTML2HTML", "P", 0, "HTML_P"},
    {"HTML2HTML", "XMP", 0, "HTML_XMP"},
    {"HTML2HTML", "SPAN", 0, "HTML_SPAN"},
    {"HTML2HTML", "S", 0, "HTML_S"},
    {"HTML2HTML", "SUP", 0, "HTML_SUP"},
    {"HTML2HTML", "SUB", 0, "HTML_SUB"},
    {"HTML2HTML", "TT", 0, "HTML_TT"},
    {"HTML2HTML", "PRE", 0, "HTML_PRE"},
    {"HTML2HTML", "BLOCKQUOTE", 0, "HTML_BLOCKQUOTE"},
    {"HTML2HTML", "HR", 0, "HTML_HR"},
    {"HTML2HTML", "HR_Num", 0, "HTML_HR_Num"},
    {"HTML2HTML", "TABLE", 0, "HTML_TABLE"},
    {"HTML2HTML", "LIST", 0, "HTML_LIST"},
    {"HTML2HTML", "A", 0, "HTML_A"},
    {"HTML2HTML", "EM", 0, "HTML_EM"},
    {"HTML2HTML", "STRONG", 0, "HTML_STRONG"},
    {"HTML2HTML", "INS", 0, "HTML_INS"},
    {"HTML2HTML", "DEL", 0, "HTML_DEL"},
    {"HTML2HTML", "Q", 0, "HTML_Q"},
    {"HTML2HTML", "U", 0, "HTML_U"},
    {"HTML2HTML", "I", 0, "HTML_I"},
    {"HTML2HTML", "B", 0, "HTML_B"},
    {"HTML", "HR", 1, "HR"},
    {"HR", "NUM", 5, "HR_NUM"},
    {"HTML", "BR", 1, "BR"},
    {"HTML", "P", 1, "P"},
    {"HTML", "IMG", 1, "IMG"},
    {"HTML", "ANAME", 1, "ANAME"},
    {"HTML", "AHREF", 1, "AHREF"},
    {"HTML", "AHREFSharp", 1, "AHREFSharp"},
    {"GENERAL", "ENTER", 1, "ENTER"},
    {"GENERAL", "A_LINK_TAG_TYPE", 1, "A_LINK_TAG_TYPE"},
};

QString latin(const char* text) {
    return QString::fromLatin1(text);
}

/// A folder with a settings file, and converters that read it.
class HtmlToText : public testing::Test {
protected:
    QString path(const QString& name = u"settings.ini"_s) const { return m_folder.filePath(name); }

    void write(const QByteArray& content) const {
        QFile file(path());
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
        file.write(content);
    }

    QByteArray content() const {
        QFile file(path());
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
    }

    /// Text mode with the defaults but for what `lines` of an INI file say.
    clsHTML2TEXT text(const QByteArray& lines = {}) const {
        write(lines);
        clsHTML2TEXT converter;
        EXPECT_TRUE(converter.Initialize(path()));
        return converter;
    }

    /// HTML mode with the defaults but for the lines `keys` of its section ("B=1\r\nHR_Num=3").
    clsHTML2TEXT html(const QByteArray& keys = {}, const QByteArray& general = {}) const {
        return text("[GENERAL]\r\nMODE=HTML\r\n" + general + "\r\n[HTML2HTML]\r\n" + keys + "\r\n");
    }

    static clsHTML2TEXT withPbr(clsHTML2TEXT converter, int value) {
        converter.SetValue(u"PBR"_s, QString::number(value));
        return converter;
    }

    QTemporaryDir m_folder;
};

std::string converted(const clsHTML2TEXT& converter, const std::string& html) {
    QString text = QString::fromStdString(html);
    return converter.Execute(text).toStdString();
}

QString repeated(const char* text, int times) {
    return QString::fromUtf8(text).repeated(times);
}

// Settings ----------------------------------------------------------------------------------------------------------

TEST_F(HtmlToText, ANewConverterHasAnEmptyModeAndOnlyZeros) {
    const clsHTML2TEXT converter;
    EXPECT_EQ(converter.GetValue(u"MODE"_s), u""_s);
    for (const Setting& setting : kSettings)
        EXPECT_EQ(converter.GetValue(latin(setting.name)), u"0"_s) << setting.name;
    EXPECT_EQ(converter.GetValue(u"PBR"_s), u"0"_s);
}

TEST_F(HtmlToText, ANewConverterWorksInHtmlMode) {
    EXPECT_EQ(converted(clsHTML2TEXT(), "<b>a</b>\n\n\n<P>"), "<b>a</b>\r\n\r\n\r\n<P>");
}

TEST_F(HtmlToText, MissingKeysTakeTheirDefaults) {
    const clsHTML2TEXT converter = text();
    EXPECT_EQ(converter.GetValue(u"MODE"_s), u"TEXT"_s);
    for (const Setting& setting : kSettings)
        EXPECT_EQ(converter.GetValue(latin(setting.name)), QString::number(setting.missing)) << setting.name;
}

TEST_F(HtmlToText, EachNumberIsReadFromItsOwnSectionAndKey) {
    for (const Setting& setting : kSettings) {
        const clsHTML2TEXT converter = text(QByteArray("[") + setting.section + "]\r\n" + setting.key + "=-321\r\n");
        for (const Setting& other : kSettings) {
            const int expected = &other == &setting ? -321 : other.missing;
            EXPECT_EQ(converter.GetValue(latin(other.name)), QString::number(expected))
                << setting.name << " / " << other.name;
        }
    }
}

TEST_F(HtmlToText, AnEmptyNumberReadsAsZeroAndAnEmptyModeMeansHtml) {
    const clsHTML2TEXT converter = text("[GENERAL]\r\nMODE=\r\n[HR]\r\nNUM=\r\n");
    EXPECT_EQ(converter.GetValue(u"HR_NUM"_s), u"0"_s);
    EXPECT_EQ(converted(converter, "<hr>"), "<hr>");
}

TEST_F(HtmlToText, OnlyTheExactModeWordMeansText) {
    for (const char* mode : {"text", "Text", "TEXTS", "HTML", "x"})
        EXPECT_EQ(converted(text(QByteArray("[GENERAL]\r\nMODE=") + mode + "\r\n"), "a<i>"), "a<i>") << mode;
    EXPECT_EQ(converted(text("[GENERAL]\r\nMODE=TEXT\r\n"), "a<i>"), "a");
}

TEST_F(HtmlToText, InitializeSetsPbrBackToZero) {
    clsHTML2TEXT converter = withPbr(text(), 2);
    EXPECT_EQ(converter.GetValue(u"PBR"_s), u"2"_s);
    EXPECT_TRUE(converter.Initialize(path()));
    EXPECT_EQ(converter.GetValue(u"PBR"_s), u"0"_s);
}

TEST_F(HtmlToText, PbrIsNeverReadFromTheFile) {
    EXPECT_EQ(text("[]\r\nPBR=1\r\n=1\r\n[GENERAL]\r\nPBR=1\r\n[HTML2HTML]\r\nPBR=1\r\n").GetValue(u"PBR"_s), u"0"_s);
}

TEST_F(HtmlToText, InitializeWithoutAFileIsFalseAndChangesNothing) {
    clsHTML2TEXT converter = withPbr(text("[HR]\r\nNUM=7\r\n"), 1);
    for (const QString& missing : {QString(), path(u"missing.ini"_s), m_folder.path()}) {
        EXPECT_FALSE(converter.Initialize(missing)) << missing.toStdString();
        EXPECT_EQ(converter.GetValue(u"HR_NUM"_s), u"7"_s);
        EXPECT_EQ(converter.GetValue(u"MODE"_s), u"TEXT"_s);
        EXPECT_EQ(converter.GetValue(u"PBR"_s), u"1"_s);
    }
}

TEST_F(HtmlToText, ANumberOutOfRangeFailsAndChangesNothing) {
    clsHTML2TEXT converter = text("[HR]\r\nNUM=7\r\n");
    write("[GENERAL]\r\nMODE=HTML\r\n[HR]\r\nNUM=9\r\n[HTML]\r\nP=32768\r\n");
    EXPECT_THROW(converter.Initialize(path()), Failure);
    EXPECT_EQ(converter.GetValue(u"HR_NUM"_s), u"7"_s);
    EXPECT_EQ(converter.GetValue(u"MODE"_s), u"TEXT"_s);
}

TEST_F(HtmlToText, SaveValueWritesTheModeThenEveryNumberInItsOrder) {
    clsHTML2TEXT converter;
    converter.SetValue(u"MODE"_s, u"HTML"_s);
    converter.SetValue(u"ENTER"_s, u"1"_s);
    converter.SetValue(u"HTML_BR"_s, u"-1"_s);
    converter.SetValue(u"HR_NUM"_s, u"12"_s);
    converter.SetValue(u"PBR"_s, u"2"_s);
    ASSERT_TRUE(converter.SaveValue(path()));
    // Within a section new keys come in the order of writing; so do new sections.
    EXPECT_EQ(content().toStdString(),
              "[GENERAL]\r\nMODE=HTML\r\nENTER=1\r\nA_LINK_TAG_TYPE=1\r\n"
              "[HTML2HTML]\r\nBR=-1\r\nP=0\r\nXMP=0\r\nSPAN=0\r\nS=0\r\nSUP=0\r\nSUB=0\r\nTT=0\r\nPRE=0\r\n"
              "BLOCKQUOTE=0\r\nHR=0\r\nHR_Num=0\r\nTABLE=0\r\nLIST=0\r\nA=0\r\nEM=0\r\nSTRONG=0\r\nINS=0\r\nDEL=0\r\n"
              "Q=0\r\nU=0\r\nI=0\r\nB=0\r\n"
              "[HTML]\r\nHR=0\r\nBR=0\r\nP=0\r\nIMG=0\r\nANAME=0\r\nAHREF=0\r\nAHREFSharp=0\r\n"
              "[HR]\r\nNUM=12\r\n");
}

TEST_F(HtmlToText, SavedSettingsReadBackEqual) {
    clsHTML2TEXT saved;
    int value = -16;
    saved.SetValue(u"MODE"_s, u"日記"_s);
    for (const Setting& setting : kSettings)
        saved.SetValue(latin(setting.name), QString::number(++value));
    ASSERT_TRUE(saved.SaveValue(path()));
    clsHTML2TEXT read;
    ASSERT_TRUE(read.Initialize(path()));
    EXPECT_EQ(read.GetValue(u"MODE"_s), u"日記"_s);
    for (const Setting& setting : kSettings)
        EXPECT_EQ(read.GetValue(latin(setting.name)), saved.GetValue(latin(setting.name))) << setting.name;
}

TEST_F(HtmlToText, SaveValueIntoAMissingFolderIsFalseAndMakesNothing) {
    EXPECT_FALSE(clsHTML2TEXT().SaveValue(path(u"missing/settings.ini"_s)));
    EXPECT_FALSE(QFile::exists(path(u"missing"_s)));
    EXPECT_FALSE(clsHTML2TEXT().SaveValue(u"settings-without-a-folder.ini"_s));
    EXPECT_FALSE(clsHTML2TEXT().SaveValue(QString()));
}

TEST_F(HtmlToText, SetValueIsFalseOnlyForAnEmptyKey) {
    clsHTML2TEXT converter = text();
    EXPECT_FALSE(converter.SetValue(u""_s, u"1"_s));
    EXPECT_FALSE(converter.SetValue(QString(), u"no number"_s));
    EXPECT_TRUE(converter.SetValue(u"HTML_CENTER"_s, u"no number"_s));
    EXPECT_TRUE(converter.SetValue(u"HR_NUM"_s, u"3"_s));
    EXPECT_EQ(converted(converter, "<hr>"), "---\r\n");
}

TEST_F(HtmlToText, EachNameSetsItsOwnValue) {
    for (const Setting& setting : kSettings) {
        const QString name = latin(setting.name);
        if (name == u"ENTER" || name == u"A_LINK_TAG_TYPE")
            continue;
        clsHTML2TEXT converter = text();
        EXPECT_TRUE(converter.SetValue(name, u" -77 "_s));
        for (const Setting& other : kSettings) {
            const int expected = &other == &setting ? -77 : other.missing;
            EXPECT_EQ(converter.GetValue(latin(other.name)), QString::number(expected))
                << setting.name << " / " << other.name;
        }
    }
}

TEST_F(HtmlToText, NamesCompareExactly) {
    clsHTML2TEXT converter = text();
    for (const QString& name : {u"hr_num"_s, u"HR_Num"_s, u" HR_NUM"_s, u"NUM"_s, u"HTML_HR_NUM"_s, u"mode"_s}) {
        EXPECT_TRUE(converter.SetValue(name, u"9"_s));
        EXPECT_EQ(converter.GetValue(name), u""_s);
    }
    EXPECT_EQ(converter.GetValue(u"HR_NUM"_s), u"5"_s);
    EXPECT_EQ(converter.GetValue(u"HTML_HR_Num"_s), u"0"_s);
    EXPECT_EQ(converter.GetValue(u"MODE"_s), u"TEXT"_s);
}

TEST_F(HtmlToText, EnterAlsoSetsTheLinkTagTypeWhoseOwnNameIsIgnored) {
    clsHTML2TEXT converter = text();
    EXPECT_TRUE(converter.SetValue(u"A_LINK_TAG_TYPE"_s, u"2"_s));
    EXPECT_TRUE(converter.SetValue(u"A_LINK_TAG_TYPE"_s, u"no number"_s));
    EXPECT_EQ(converter.GetValue(u"A_LINK_TAG_TYPE"_s), u"1"_s);
    EXPECT_TRUE(converter.SetValue(u"ENTER"_s, u"2"_s));
    EXPECT_EQ(converter.GetValue(u"ENTER"_s), u"2"_s);
    EXPECT_EQ(converter.GetValue(u"A_LINK_TAG_TYPE"_s), u"2"_s);
}

TEST_F(HtmlToText, ValuesAreConvertedTo16Bits) {
    clsHTML2TEXT converter;
    EXPECT_TRUE(converter.SetValue(u"HR_NUM"_s, u"2.5"_s));
    EXPECT_EQ(converter.GetValue(u"HR_NUM"_s), u"2"_s);
    EXPECT_TRUE(converter.SetValue(u"HR_NUM"_s, u"-32768"_s));
    EXPECT_EQ(converter.GetValue(u"HR_NUM"_s), u"-32768"_s);
    for (const QString& refused : {u"32768"_s, u"many"_s, u""_s}) {
        EXPECT_THROW(converter.SetValue(u"HR_NUM"_s, refused), Failure) << refused.toStdString();
        EXPECT_EQ(converter.GetValue(u"HR_NUM"_s), u"-32768"_s);
    }
    EXPECT_TRUE(converter.SetValue(u"MODE"_s, u"many"_s));
    EXPECT_EQ(converter.GetValue(u"MODE"_s), u"many"_s);
}

TEST_F(HtmlToText, GetValueOfAnUnknownKeyIsEmpty) {
    EXPECT_EQ(text().GetValue(u"HTML_CENTER"_s), u""_s);
    EXPECT_EQ(text().GetValue(u""_s), u""_s);
}

// Both modes --------------------------------------------------------------------------------------------------------

TEST_F(HtmlToText, EmptyInputYieldsEmptyOutput) {
    EXPECT_EQ(converted(text(), ""), "");
    EXPECT_EQ(converted(html(), ""), "");
    QString none;
    EXPECT_EQ(withPbr(text(), 1).Execute(none), QString());
}

TEST_F(HtmlToText, ATextWithoutATagPassesButForLineEndsBreaksAndEntities) {
    for (const clsHTML2TEXT& converter : {text(), html("BR=1")}) {
        EXPECT_EQ(converted(converter, "a\n\n\nb"), "a\r\nb");
        EXPECT_EQ(converted(converter, "日記 > a \"b\" &nbsp; 😀\t"), "日記 > a \"b\" &nbsp; 😀\t");
        EXPECT_EQ(converted(converter, "a\nb\rc\r\nd"), "a\r\nb\r\nc\r\nd");
        EXPECT_EQ(converted(converter, "&lt;a&gt; &amp; &AMP;&lt &quot;"), "<a> & &AMP;&lt &quot;");
    }
}

TEST_F(HtmlToText, AnyMixOfLineEndsIsNormalised) {
    const clsHTML2TEXT converter = text("[GENERAL]\r\nENTER=0\r\n");
    EXPECT_EQ(converted(converter, "a\r\r\nb"), "a\r\n\r\nb");
    EXPECT_EQ(converted(converter, "a\n\rb"), "a\r\n\r\nb");
    EXPECT_EQ(converted(converter, "\r\n\n\r\r"), "\r\n\r\n\r\n\r\n");
    EXPECT_EQ(converted(converter, "a\r<b>\nb"), "a\r\nb") << "a removed tag brings the two together";
}

TEST_F(HtmlToText, RunsOfBreaksCollapseAsOftenAsThreeStandInARow) {
    const clsHTML2TEXT converter = text();
    for (int count = 1; count <= 60; ++count) {
        const int expected = count % 2 == 1 ? 1 : 2; // 3 gives 1, 4 gives 2, 5 gives 1, 9 gives 1 by way of 3
        EXPECT_EQ(converted(converter, "a" + repeated("\r\n", count).toStdString() + "b"),
                  "a" + repeated("\r\n", expected).toStdString() + "b")
            << count;
    }
    EXPECT_EQ(converted(converter, "\n\n\na\n \n\nb\n\n\n"), "\r\na\r\n \r\n\r\nb\r\n");
    EXPECT_EQ(converted(converter, "a<br>\r\n<p></p>b"), "a\r\nb");
}

TEST_F(HtmlToText, BreaksDoNotCollapseWithEnterOff) {
    EXPECT_EQ(converted(text("[GENERAL]\r\nENTER=0\r\n"), "a\n\n\n\nb"), "a\r\n\r\n\r\n\r\nb");
    EXPECT_EQ(converted(html({}, "ENTER=0"), "a\n\n\n\nb"), "a\r\n\r\n\r\n\r\nb");
}

TEST_F(HtmlToText, EntitiesAreReplacedInTheirOrderOnePassEach) {
    const std::pair<const char*, const char*> cases[] = {
        {"&amp;amp;", "&amp;"},
        {"&amp;lt;", "<"},
        {"&amp;gt;", ">"},
        {"&amp;amp;lt;", "&amp;lt;"},
        {"&lt;lt;", "<lt;"},
        {"&amp;&lt;", "&<"},
        {"&&amp;;", "&&;"},
        {"&&amp;lt;", "&<"},
        {"&", "&"},
        {"&a", "&a"},
        {"&amp", "&amp"},
        {"&lt", "&lt"},
        {"&am&amp;p;", "&am&p;"},
        {"&Lt;", "&Lt;"},
        {"&amp;amp;amp;", "&amp;amp;"},
        {"&amp;lt", "&lt"},
        {"&lt;b&gt;", "<b>"},
        {"&l\nt;", "&l\r\nt;"},
    };
    for (const auto& [given, expected] : cases) {
        EXPECT_EQ(converted(text(), given), expected);
        EXPECT_EQ(converted(html(), given), expected);
    }
}

TEST_F(HtmlToText, AnOpeningBracketSwallowsEverythingUpToTheNextClosingOne) {
    EXPECT_EQ(converted(text(), "a < b and c > d"), "a  d");
    EXPECT_EQ(converted(html("B=1"), "a < b and c > d"), "a < b and c > d");
    EXPECT_EQ(converted(html("B=1"), "a <b and c > d"), "a  d");
    EXPECT_EQ(converted(text(), "<a<b>c>d"), "c>d");
    EXPECT_EQ(converted(text(), "<>a"), "a");
}

TEST_F(HtmlToText, ATagEndsAtTheFirstClosingBracketEvenInQuotes) {
    EXPECT_EQ(converted(text(), "<img alt=\"a>b\" src=\"c\">"), "[イメージ:a:]b\" src=\"c\">");
    EXPECT_EQ(converted(html("I=1"), "<i title=\"a>b\">"), "b\">");
}

TEST_F(HtmlToText, ABracketThatNeverClosesStaysWithAllBehindIt) {
    for (const clsHTML2TEXT& converter : {text(), html("B=1\r\nBR=1\r\nHR=1")}) {
        EXPECT_EQ(converted(converter, "I <3 you"), "I <3 you");
        EXPECT_EQ(converted(converter, "<b>a<br\n<b &amp; <hr"), "a<br\r\n<b & <hr");
        EXPECT_EQ(converted(converter, "<"), "<");
    }
}

TEST_F(HtmlToText, OnlyAsciiLettersOfATagAreTakenForTheirCapitals) {
    EXPECT_EQ(converted(html("S=1\r\nLIST=1\r\nI=1"), "<ſ><lı><ı></ſ>"), "<ſ><lı><ı></ſ>");
    EXPECT_EQ(converted(text(), "<img ſrc=\"a\">"), "[イメージ::]");
}

TEST_F(HtmlToText, PbrTakesTheLineBreaksOutOfTheCallersOwnText) {
    for (const int pbr : {1, 2, -1, 7}) {
        QString given = u"a\r\nb\r\r\n\nc\nd<p\r\n>"_s;
        EXPECT_EQ(withPbr(text(), pbr).Execute(given).left(2), u"ab"_s);
        EXPECT_EQ(given, u"ab\r\nc\nd<p>"_s) << pbr;
    }
    QString kept = u"a\r\nb"_s;
    const QString copy = kept;
    EXPECT_EQ(withPbr(text(), 0).Execute(kept), copy);
    EXPECT_EQ(kept, copy);
}

TEST_F(HtmlToText, PbrChangesOnlyTheCallersString) {
    QString given = u"a\r\nb"_s;
    const QString shared = given;
    withPbr(text(), 1).Execute(given);
    EXPECT_EQ(shared, u"a\r\nb"_s);
}

TEST_F(HtmlToText, WithPbrThreeBreaksDoNotCollapseBehindParagraphs) {
    EXPECT_EQ(converted(withPbr(text(), 1), "a\r\n\r\n\r\nb</p></p>c"), "ab\r\n\r\n\r\n\r\nc");
    EXPECT_EQ(converted(withPbr(text(), 3), "a</p>b"), "a\r\n\r\nb");
}

TEST_F(HtmlToText, WithPbr2LineEndsStayAsTheyAre) {
    EXPECT_EQ(converted(withPbr(text(), 2), "a\rb\nc\r\r\nd\r\n&lt;"), "a\rb\nc\rd<");
    EXPECT_EQ(converted(withPbr(text(), 1), "a\rb\nc\r\r\nd\r\n&lt;"), "a\r\nb\r\nc\r\nd<");
}

TEST_F(HtmlToText, LongTextsTakeLinearTime) {
    constexpr int kMany = 1'000'000;
    clsHTML2TEXT inText = text();
    clsHTML2TEXT inHtml = html("B=1");
    const double start = processorSeconds();
    for (const clsHTML2TEXT& converter : {inText, inHtml, withPbr(inText, 1), withPbr(inHtml, 2)}) {
        for (const char* part : {"<", "\r\n", "&amp;", "<b>", "&", "\r", "'", ">"}) {
            QString given = repeated(part, kMany);
            converter.Execute(given);
        }
        for (const char* part : {"img ", "a ", "a \"", "src=\"", "<", "\r\n", "A a "}) {
            QString image = u"<img "_s + repeated(part, kMany) + u'>';
            converter.Execute(image);
            QString link = u"<a "_s + repeated(part, kMany) + u"></a>"_s;
            converter.Execute(link);
        }
    }
    EXPECT_LT(processorSeconds() - start, 60) << "a quadratic step would take hours";
    QString breaks = repeated("\r\n", kMany);
    EXPECT_EQ(inText.Execute(breaks), u"\r\n\r\n"_s);
    QString open = repeated("<", kMany);
    EXPECT_EQ(inText.Execute(open), open);
}

// Text mode ---------------------------------------------------------------------------------------------------------

TEST_F(HtmlToText, WithTheDefaultsParagraphsBecomeLines) {
    EXPECT_EQ(converted(text(), "<p>one</p><p>two</p>"), "one\r\ntwo\r\n");
    EXPECT_EQ(converted(text(), "<P class=\"x\">one</P >"), "one\r\n");
}

TEST_F(HtmlToText, ARuleIsARowOfDashesWithNoBreakInFront) {
    EXPECT_EQ(converted(text(), "a<hr>b"), "a-----\r\nb");
    EXPECT_EQ(converted(text("[HR]\r\nNUM=1\r\n"), "<HR size=1>"), "-\r\n");
    EXPECT_EQ(converted(text("[HR]\r\nNUM=0\r\n"), "<hr>"), "\r\n");
    EXPECT_EQ(converted(text("[HR]\r\nNUM=-4\r\n"), "<hr>"), "\r\n");
    EXPECT_EQ(converted(text("[HTML]\r\nHR=0\r\n"), "a<hr>b"), "ab");
}

TEST_F(HtmlToText, ABreakTagIsALineBreakInAllItsForms) {
    EXPECT_EQ(converted(text(), "a<BR>b<br />c<Br clear=all>d"), "a\r\nb\r\nc\r\nd");
    EXPECT_EQ(converted(text("[HTML]\r\nBR=0\r\n"), "a<br>b"), "ab");
}

TEST_F(HtmlToText, AParagraphEndIsOneBreakOrTwoWithPbr) {
    EXPECT_EQ(converted(text(), "a</p>b</PRE>c</param>d"), "a\r\nb\r\nc\r\nd");
    EXPECT_EQ(converted(withPbr(text(), 1), "a</p>b"), "a\r\n\r\nb");
    EXPECT_EQ(converted(withPbr(text(), 2), "<p>a</p>b"), "a\r\n\r\nb");
    EXPECT_EQ(converted(text("[HTML]\r\nP=0\r\n"), "a</p>b"), "ab");
}

TEST_F(HtmlToText, OtherTagsAndShortOnesLeaveNothing) {
    EXPECT_EQ(converted(text(), "<b>a</b><table><tr><td>b</td></table><!-- c --><a>d<a\nhref=\"u\">e<h>f<>g"),
              "abdefg");
}

TEST_F(HtmlToText, AnImageBecomesItsTextAndSourceInAnyOrder) {
    EXPECT_EQ(converted(text(), "<img src=\"a\" alt=\"b\">"), "[イメージ:b:a]");
    EXPECT_EQ(converted(text(), "<IMG ALT='b' WIDTH=\"3\" SRC = 'a' />"), "[イメージ:b:a]");
    EXPECT_EQ(converted(text("[HTML]\r\nIMG=0\r\n"), "a<img src=\"a\">b"), "ab");
}

TEST_F(HtmlToText, OddImageTagsComeOutAsTheRulesHaveIt) {
    const std::pair<const char*, const char*> cases[] = {
        {"<img src=a.gif>", "[イメージ::]"}, // unquoted: the value is not parted from its "="
        {"<img src= a.gif alt= b>", "[イメージ:b:a.gif]"},
        {"<img src = a.gif>", "[イメージ::]"},          // split at blanks, "src" and "=" are two pieces
        {"<img src= a.gif alt=\"b\">", "[イメージ::]"}, // one quote, and blanks no longer split
        {"<img>", "[イメージ::]"},
        {"<img src=\"a\">", "[イメージ::a]"},
        {"<img alt=\"\" src=\"a\">", "[イメージ::a]"},
        {"<img src=\"a\" src=\"b\" alt=\"c\" alt=\"\">", "[イメージ::b]"}, // the later attribute wins
        {"<img src=\"a", "<img src=\"a"},
        {"<img src=\"a>", "[イメージ::a]"},
        {"<Img src=\"a\" alt=\"b\">", "[イメージ:b:]"}, // the tag's name goes in upper or lower case alone
        {"<img src=\"my IMG img 1.gif\">", "[イメージ::my 1.gif]"},
        {"<img src=\"imIMG g 1\">", "[イメージ::1]"},     // IMG goes first and may leave an img
        {"<img src=\"IMimg G 1\">", "[イメージ::IMG 1]"}, // but not the other way round
        {"<img alt=\"SRC=\" src=\"a\">", "[イメージ:SRC=:a]"},
        {"<img alt=\"x<y\" src='a'>", "[イメージ:xy:a]"},
        {"<img alt=\"it's\" src=\"a\">", "[イメージ:it:a]"}, // a single quote counts as a double one
        {"<img data-src=\"a\">", "[イメージ::]"},
        {"<img src\t=\"a\">", "[イメージ::]"}, // blanks only
        {"<img\nsrc=\"a\" alt=\"b\">", "[イメージ:b:]"},
        {"<image src=\"a\">", "[イメージ::]"},
        {"<imp>", "[イメージ::]"},
    };
    for (const auto& [given, expected] : cases)
        EXPECT_EQ(converted(text(), given), expected) << given;
}

TEST_F(HtmlToText, ALinkPutsItsTargetInFrontOfItsText) {
    EXPECT_EQ(converted(text(), "<a href=\"u\">x</a>"), "[リンク:u]x");
    EXPECT_EQ(converted(text(), "<A TARGET='_top' HREF = 'u'>x</A>y"), "[リンク:u]xy");
}

TEST_F(HtmlToText, LinkTagTypesKeepTheTagOrPutTheTargetBehind) {
    const char* given = "<A HREF=\"u\">x</A><a href='v'>y</a>";
    EXPECT_EQ(converted(text("[GENERAL]\r\nA_LINK_TAG_TYPE=0\r\n"), given), "<A HREF=\"u\">x</a><a href='v'>y</a>");
    EXPECT_EQ(converted(text("[GENERAL]\r\nA_LINK_TAG_TYPE=1\r\n"), given), "[リンク:u]x[リンク:v]y");
    EXPECT_EQ(converted(text("[GENERAL]\r\nA_LINK_TAG_TYPE=2\r\n"), given), "x(u)y(v)");
    EXPECT_EQ(converted(text("[GENERAL]\r\nA_LINK_TAG_TYPE=3\r\n"), given), "xy");
}

TEST_F(HtmlToText, AKeptLinkTagStaysAsItStands) {
    EXPECT_EQ(converted(text("[GENERAL]\r\nA_LINK_TAG_TYPE=0\r\n"), "<a  Href='u a b' x=\"&amp;\">x</a>"),
              "<a  Href='u a b' x=\"&\">x</a>");
}

TEST_F(HtmlToText, OddLinkTagsComeOutAsTheRulesHaveIt) {
    const std::pair<const char*, const char*> cases[] = {
        {"<a href=u>", "[リンク:]"},
        {"<a href= u>", "[リンク:u]"},
        {"<a href= u >", "[リンク:u]"},
        {"<a title=\"t\">", "[リンク:]"},
        {"<a href=\"http://x/a b/A c\">", "[リンク:http://x/b/c]"}, // "a " goes anywhere in the tag
        {"<a class=\"c\" href=\"u\" href='v'>", "[リンク:v]"},
        {"<a\thref=\"u\">", ""},
        {"<abbr href=\"u\">", ""},
    };
    for (const auto& [given, expected] : cases)
        EXPECT_EQ(converted(text(), given), expected) << given;
}

TEST_F(HtmlToText, NamedAnchorsGetNoLinkTreatmentUnlessToldOtherwise) {
    EXPECT_EQ(converted(text(), "<a name=\"n\">x</a><A NAMED href=\"u\">"), "x");
    EXPECT_EQ(converted(text("[HTML]\r\nANAME=0\r\n"), "<a name=\"n\">x</a>"), "[リンク:]x");
    EXPECT_EQ(converted(text(), "<a href=\"u\" name=\"n\">"), "[リンク:u]");
}

TEST_F(HtmlToText, LinksIntoTheSamePageGetNoLinkTreatmentUnlessToldOtherwise) {
    EXPECT_EQ(converted(text(), "<a href=\"#n\">x</a><A HREF=#n>y</A>"), "xy");
    EXPECT_EQ(converted(text(), "<a href='#n'>x</a><a  href=\"#n\">"), "[リンク:#n]x[リンク:#n]")
        << "seen only in two forms";
    EXPECT_EQ(converted(text("[HTML]\r\nAHREFSharp=0\r\n"), "<a href=\"#n\">x</a><a href=#n>"),
              "[リンク:#n]x[リンク:]");
}

TEST_F(HtmlToText, WithLinksOffOnlyTheTagsGo) {
    EXPECT_EQ(converted(text("[HTML]\r\nAHREF=0\r\n"), "<a href=\"u\">x</a>"), "x");
    EXPECT_EQ(converted(text("[HTML]\r\nAHREF=0\r\n[GENERAL]\r\nA_LINK_TAG_TYPE=0\r\n"), "<a href=\"u\">x</a>"),
              "x</a>");
    EXPECT_EQ(converted(text("[HTML]\r\nAHREF=0\r\nANAME=0\r\nAHREFSharp=0\r\n"), "<a name=\"n\">x<a href=\"#n\">y"),
              "xy");
}

TEST_F(HtmlToText, ALinkEndCountsWhateverItsStartWas) {
    const clsHTML2TEXT kept = text("[GENERAL]\r\nA_LINK_TAG_TYPE=0\r\n");
    const clsHTML2TEXT behind = text("[GENERAL]\r\nA_LINK_TAG_TYPE=2\r\n");
    EXPECT_EQ(converted(kept, "<a name=\"n\">x</a>"), "x</a>");
    EXPECT_EQ(converted(behind, "<a name=\"n\">x</a>"), "x()");
    EXPECT_EQ(converted(behind, "<a href=\"u\">x</ADDRESS>y</a>"), "x(u)y()");
    EXPECT_EQ(converted(kept, "</abbr>"), "</a>");
    EXPECT_EQ(converted(behind, "<a href=\"u\"><a name=\"n\">x</a>"), "x(u)") << "a dropped anchor leaves the link";
    EXPECT_EQ(converted(behind, "<a href=\"u\"><a href=v>x</a>"), "x()");
}

TEST_F(HtmlToText, TheLinkIsNotCarriedOverToTheNextText) {
    const clsHTML2TEXT behind = text("[GENERAL]\r\nA_LINK_TAG_TYPE=2\r\n");
    EXPECT_EQ(converted(behind, "<a href=\"u\">x"), "x");
    EXPECT_EQ(converted(behind, "y</a>"), "y()");
}

// HTML mode ---------------------------------------------------------------------------------------------------------

TEST_F(HtmlToText, WithNothingOnEveryTagStays) {
    const char* given = "<p class=\"x\"><BR/><b>a</b><HR><li>b<a href='u'>c</a></SUP><blockquote></p><!-- d -->";
    EXPECT_EQ(converted(html(), given), given);
}

struct Dropped {
    const char* key;
    const char* tags; ///< between blanks
    const char* text = "";
};

const Dropped kDropped[] = {
    {"BLOCKQUOTE", "<BLOCKQUOTE> <blockquote\tcite=\"u\"> </blockquote> </BLOCKQUOT>"},
    {"TABLE",
     "<CAPTION> </caption> <table\tborder=\"0\"> </TABLE> <tr> <Td\tnowrap> <th> </tr> </td> </Th> <THEAD> </thead>"},
    {"STRONG", "<STRONG> </strong>"},
    {"SPAN", "<span\tclass=\"x\"> </SPAN>"},
    {"TT", "<tt> </TT>"},
    {"LIST", "<ul> <OL> <dl> <DT> <dd> </UL> </ol> </DL> </dt> </DD> </li>"},
    {"LIST", "<li> <LI\ttype=1> <link>", "\r\n・"},
    {"EM", "<em> </EM> <embed> </embed>"},
    {"XMP", "<xmp> </XMP> </xml>"},
    {"SUP", "<sup>"},
    {"SUB", "<SUB> <submit>"},
    {"PRE", "<pre> </PRE> <preview>"},
    {"INS", "<ins> </INS> </input>"},
    {"DEL", "<DEL\tdatetime=\"x\"> </del>"},
    {"S", "<s> </S> <strike> <SPAN\tclass> </span> <strong> </STRONG> <sup> <sub> </sup> </SUB> <small> <script>"},
    {"Q", "<q> </Q>"},
    {"U", "<u> </U> <ul> </ul>"},
    {"I", "<i> </I> <img\tsrc=\"a\"> <ins> </ins> <input> <iframe>"},
    {"B", "<b> </B> <br> <BR\t/> <blockquote> </blockquote> <big> <body>"},
    {"BR", "<br> <BR\t/> <brx>", "\r\n"},
    {"P", "<p> <P\tclass=\"x\"> <pre> <param>"},
    {"P", "</p> </PRE> </P\t>", "\r\n"},
    {"HR", "<hr> <HR\tsize=1>", "\r\n"},
};

TEST_F(HtmlToText, EachFlagDropsItsTagsAndAllThatBeginLikeThem) {
    for (const Dropped& row : kDropped) {
        for (const QString& tag : QString::fromUtf8(row.tags).split(u' ')) {
            const std::string given = "a" + tag.toStdString() + "b";
            EXPECT_EQ(converted(html(QByteArray(row.key) + "=1"), given), std::string("a") + row.text + "b")
                << row.key << " " << given;
            EXPECT_EQ(converted(html(QByteArray(row.key) + "=-1"), given), std::string("a") + row.text + "b")
                << row.key << " " << given;
        }
    }
}

TEST_F(HtmlToText, NoFlagDropsATagThatIsNotItsOwn) {
    for (const QString& tag :
         u"<p> </p> <br> <hr> <tt> </tt> <td> </td> <table> </table> <caption> </caption> <li> </li> "
         "<ul> </ul> <em> </em> <xmp> </xmp> <sup> </sup> <sub> </sub> <pre> </pre> <ins> </ins> <del> "
         "</del> <s> </s> <q> </q> <u> </u> <i> </i> <b> </b> <span> </span> <strong> </strong> "
         "<blockquote> </blockquote> <a> </a> <h1> </h1> <center> <font> <!----> <> <?>"_s.split(u' ')) {
        for (const Setting& setting : kSettings) {
            if (qstrcmp(setting.section, "HTML2HTML") != 0)
                continue;
            LiteralHtmlToText literal;
            literal.values.insert(latin(setting.name), 1);
            QString given = tag;
            const std::string expected = literal.execute(given).toStdString();
            EXPECT_EQ(converted(html(QByteArray(setting.key) + "=1"), tag.toStdString()), expected)
                << setting.name << " " << tag.toStdString();
        }
    }
}

TEST_F(HtmlToText, TheLinkFlagHasNoEffect) {
    EXPECT_EQ(converted(html("A=1"), "<a href=\"u\">x</a>"), "<a href=\"u\">x</a>");
}

TEST_F(HtmlToText, EndsOfSupAndSubGoOnlyWithTheShorterFlag) {
    EXPECT_EQ(converted(html("SUP=1\r\nSUB=1"), "<sup>a</sup><sub>b</sub>"), "a</sup>b</sub>");
    EXPECT_EQ(converted(html("SUP=1\r\nS=1"), "<sup>a</sup>"), "a");
}

TEST_F(HtmlToText, TheLongerPrefixIsAskedFirst) {
    EXPECT_EQ(converted(html("P=1"), "<pre>a</pre>b"), "a\r\nb");
    EXPECT_EQ(converted(html("P=1\r\nPRE=1"), "<pre>a</pre>b"), "ab");
    EXPECT_EQ(converted(html("BR=1\r\nB=1"), "a<br>b"), "a\r\nb");
    EXPECT_EQ(converted(html("LIST=1\r\nU=1"), "<ul><li>a</ul>"), "\r\n・a");
}

TEST_F(HtmlToText, AListItemAlwaysStartsWithABreak) {
    EXPECT_EQ(converted(html("LIST=1"), "<ul>\r\n<li>a</li><li>b</li></ul>"), "\r\n\r\n・a\r\n・b");
}

TEST_F(HtmlToText, ARuleOfHtmlModeHasItsOwnNumberOfDashes) {
    EXPECT_EQ(converted(html("HR=1\r\nHR_Num=3"), "a<hr>b"), "a---\r\nb");
    EXPECT_EQ(converted(html("HR=1\r\nHR_Num=-3"), "a<hr>b"), "a\r\nb");
    EXPECT_EQ(converted(html("HR_Num=3"), "a<hr>b"), "a<hr>b");
}

TEST_F(HtmlToText, AParagraphEndOfHtmlModeIsTwoBreaksWithPbr1) {
    EXPECT_EQ(converted(withPbr(html("P=1"), 1), "<p>a</p>b"), "a\r\n\r\nb");
    EXPECT_EQ(converted(withPbr(html(), 1), "<p>a</p>\r\nb"), "<p>a</p>b");
}

TEST_F(HtmlToText, WithPbr2ParagraphsAndBreaksStayInTheirPlainForm) {
    for (const QByteArray& keys : {QByteArray(), QByteArray("BR=1\r\nP=1")}) {
        const clsHTML2TEXT converter = withPbr(html(keys), 2);
        EXPECT_EQ(converted(converter, "<p class=\"x\">a<br />b\r\n</p >"), "<P>a<BR>b</P>");
        EXPECT_EQ(converted(converter, "<pre>a</pre><param>"), "<P>a</P><P>");
    }
}

TEST_F(HtmlToText, ABreakKeptByPbr2IsStillDroppedByTheBoldFlag) {
    EXPECT_EQ(converted(withPbr(html("B=1"), 2), "a<br>b</p>"), "ab</P>");
    EXPECT_EQ(converted(withPbr(html("PRE=1"), 2), "<pre>a</pre>"), "a");
}

// Against the literal converter -------------------------------------------------------------------------------------

class RandomHtml {
public:
    explicit RandomHtml(unsigned seed)
        : m_random(seed) {}

    int below(int limit) { return int(m_random() % unsigned(limit)); }

    QString text() {
        QString result;
        for (int parts = below(30); parts > 0; --parts)
            result += part();
        return result;
    }

private:
    QString part() {
        static const QStringList kPlain{
            u"a"_s,     u" "_s,    u"日記"_s, u"\r\n"_s, u"\r\n"_s, u"\n"_s, u"\r"_s, u"\r\n\r\n\r\n"_s,
            u"&amp;"_s, u"amp;"_s, u"lt;"_s,  u"&lt;"_s, u"&gt;"_s, u"&"_s,  u">"_s,  u"<"_s,
            u"\""_s,    u"😀"_s,    u"img "_s, u"a "_s};
        switch (below(3)) {
        case 0:
            return kPlain[below(int(kPlain.size()))];
        case 1:
            return attributeTag();
        default:
            return tag();
        }
    }

    QString tag() {
        static const QStringList kNames =
            u"P PRE BR B BIG BLOCKQUOTE HR H1 TABLE TR TD TH TT CAPTION SPAN STRONG S SUP SUB UL OL LI LINK DL DT DD "
            u"EM XMP "
            "INS DEL Q U I IMG A ADDRESS CAPTIO TABL BLOCKQUOT DE PR XM IN ſ ı"_s.split(u' ');
        static const QStringList kTails{u">"_s, u">"_s, u">"_s, u" />"_s, u" x>"_s, u"\r\n>"_s, u"<"_s, u""_s};
        const QString name = kNames[below(int(kNames.size()))];
        return (below(2) ? u"<"_s : u"</"_s) + (below(2) ? name : name.toLower()) + kTails[below(int(kTails.size()))];
    }

    QString attributeTag() {
        static const QStringList kParts{u"href="_s,    u"HREF ="_s, u"src="_s, u" SRC= "_s, u"alt="_s, u"ALT = "_s,
                                        u"\""_s,       u"\""_s,     u"'"_s,    u"\"u\""_s,  u"'#n'"_s, u"#"_s,
                                        u" "_s,        u"x"_s,      u"a "_s,   u"A "_s,     u"img "_s, u"IMG "_s,
                                        u"imIMG g "_s, u"aA  "_s,   u"<"_s,    u"name="_s,  u"\r\n"_s, u"日"_s};
        static const QStringList kStarts{u"<img "_s,     u"<IMG "_s,       u"<a "_s,      u"<A "_s,  u"<a href=\""_s,
                                         u"<A HREF=#"_s, u"<a href=\"#"_s, u"<a name="_s, u"<Img "_s};
        QString result = kStarts[below(int(kStarts.size()))];
        for (int parts = below(8); parts > 0; --parts)
            result += kParts[below(int(kParts.size()))];
        return result + u">"_s;
    }

    std::mt19937 m_random;
};

TEST_F(HtmlToText, RandomTextsUnderRandomSettingsComeOutAsTheLiteralConverterHasThem) {
    RandomHtml random(20040506);
    for (int round = 0; round < 300; ++round) {
        LiteralHtmlToText literal;
        literal.mode = random.below(2) ? u"TEXT"_s : u"HTML"_s;
        const int density = 1 + random.below(6); // one flag in so many is off
        for (const Setting& setting : kSettings) {
            const QString name = latin(setting.name);
            const bool isFlag = name != u"A_LINK_TAG_TYPE" && !name.contains(u"NUM", Qt::CaseInsensitive);
            literal.values.insert(name, isFlag ? random.below(density) != 0 : random.below(5) - 1);
        }
        QByteArray lines;
        for (const char* section : {"GENERAL", "HTML", "HR", "HTML2HTML"}) {
            lines += QByteArray("[") + section + "]\r\nMODE=" + literal.mode.toLatin1() + "\r\n";
            for (const Setting& setting : kSettings) {
                if (qstrcmp(setting.section, section) == 0)
                    lines +=
                        setting.key + ('=' + QByteArray::number(literal.values.value(latin(setting.name)))) + "\r\n";
            }
        }
        const int pbr = random.below(3);
        literal.values.insert(u"PBR"_s, pbr);
        const clsHTML2TEXT converter = withPbr(text(lines), pbr);
        for (int i = 0; i < 100; ++i) {
            const QString given = random.text();
            QString left = given;
            QString right = given;
            ASSERT_EQ(converter.Execute(left).toStdString(), literal.execute(right).toStdString())
                << lines.constData() << "PBR=" << pbr << "\n"
                << given.toStdString();
            ASSERT_EQ(left, right);
        }
    }
}

} // namespace
} // namespace velloria::tests
