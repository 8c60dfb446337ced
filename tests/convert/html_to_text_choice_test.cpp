#include "convert/html_to_text_choice.h"

#include "core/ini.h"
#include "support/test_home.h"

#include <QFile>
#include <QRegularExpression>

#include <sys/stat.h>

using namespace Qt::StringLiterals;
using namespace velloria::convert;

namespace velloria::tests {
namespace {

class HtmlToTextChoiceFile : public FactoryHome {
protected:
    QString file() const { return path(u"HTML2TXT.ini"_s); }
    QString key(const QString& section, const QString& name) const { return core::ReadIni(file(), section, name); }
    /// "section/key" of every line, in the file's order.
    QStringList keys() const {
        QStringList keys;
        QString section;
        for (const QString& line : pageOf(file()).split(QRegularExpression(u"\r?\n"_s))) {
            if (line.startsWith(u'['))
                section = line.mid(1, line.size() - 2);
            else if (line.contains(u'='))
                keys += section + u'/' + line.section(u'=', 0, 0);
        }
        return keys;
    }
};

TEST_F(HtmlToTextChoiceFile, ReadsAsTheFileHasIt) {
    writeFile(file(), "[GENERAL]\r\nMODE=HTML\r\nENTER=0\r\nA_LINK_TAG_TYPE=2\r\n[HTML]\r\nIMG=0\r\nAHREFSharp=-1\r\n"
                      "[HR]\r\nNUM=7\r\n[HTML2HTML]\r\nBR=1\r\nLIST=-1\r\nBLOCKQUOTE=3\r\n");
    const auto choice = readHtmlToTextChoice(file());
    ASSERT_TRUE(choice);
    EXPECT_FALSE(choice->isTextMode);
    QStringList tags;
    for (std::size_t i = 0; i < choice->htmlTags.size(); ++i)
        tags += choice->htmlTags[i] ? listedHtmlTags()[i].toString() : QString();
    tags.removeAll(QString());
    EXPECT_EQ(tags, (QStringList{u"BR"_s, u"BLOCKQUOTE"_s, u"LIST"_s}));
    QStringList off;
    for (std::size_t i = 0; i < choice->textBoxes.size(); ++i)
        off += choice->textBoxes[i] ? QString() : textModeBoxes()[i].toString();
    off.removeAll(QString());
    EXPECT_EQ(off, (QStringList{u"IMG"_s, u"ENTER"_s}));
    EXPECT_EQ(choice->ruleLength, u"7"_s);
    EXPECT_EQ(choice->linkTagType, 2);
}

TEST_F(HtmlToTextChoiceFile, TheListHasThirteenTagsInItsOrder) {
    QStringList tags;
    for (const QStringView tag : listedHtmlTags())
        tags += tag.toString();
    EXPECT_EQ(tags.join(u' '), u"BR P XMP SPAN S SUP SUB TT PRE BLOCKQUOTE HR TABLE LIST"_s);
}

TEST_F(HtmlToTextChoiceFile, NothingIsReadFromAMissingFileOrNumbersOutOfRange) {
    EXPECT_FALSE(readHtmlToTextChoice(path(u"none.ini"_s)));
    writeFile(file(), "[HR]\r\nNUM=99999\r\n");
    EXPECT_FALSE(readHtmlToTextChoice(file()));
}

TEST_F(HtmlToTextChoiceFile, TheListIsWrittenAsMinusOneAndTheBoxesAsOne) {
    HtmlToTextChoice choice;
    choice.isTextMode = false;
    choice.htmlTags.fill(true);
    choice.htmlTags[1] = false;
    choice.ruleLength = u"12"_s;
    choice.textBoxes[3] = false;
    EXPECT_TRUE(saveHtmlToTextChoice(file(), choice));
    EXPECT_EQ(key(u"GENERAL"_s, u"MODE"_s), u"HTML"_s);
    EXPECT_EQ(key(u"HTML2HTML"_s, u"BR"_s), u"-1"_s);
    EXPECT_EQ(key(u"HTML2HTML"_s, u"P"_s), u"0"_s);
    EXPECT_EQ(key(u"HTML2HTML"_s, u"LIST"_s), u"-1"_s);
    EXPECT_EQ(key(u"HTML"_s, u"HR"_s), u"1"_s);
    EXPECT_EQ(key(u"HTML"_s, u"IMG"_s), u"0"_s);
    EXPECT_EQ(key(u"HR"_s, u"NUM"_s), u"12"_s);
    choice.isTextMode = true;
    EXPECT_TRUE(saveHtmlToTextChoice(file(), choice));
    EXPECT_EQ(key(u"GENERAL"_s, u"MODE"_s), u"TEXT"_s);
}

TEST_F(HtmlToTextChoiceFile, SettingsWithoutAControlBecomeZero) {
    const QString names[] = {u"A"_s, u"EM"_s, u"STRONG"_s, u"INS"_s, u"DEL"_s,
                             u"Q"_s, u"U"_s,  u"I"_s,      u"B"_s,   u"HR_Num"_s};
    for (const QString& name : names)
        core::WriteIni(file(), u"HTML2HTML"_s, name, u"1"_s);
    EXPECT_TRUE(saveHtmlToTextChoice(file(), *readHtmlToTextChoice(file())));
    for (const QString& name : names)
        EXPECT_EQ(key(u"HTML2HTML"_s, name), u"0"_s) << name.toStdString();
}

TEST_F(HtmlToTextChoiceFile, TheLinkTreatmentIsTheBoxForLineBreaksWhateverIsChosen) {
    HtmlToTextChoice choice;
    for (const int type : {0, 1, 2}) {
        choice.linkTagType = type;
        choice.textBoxes.back() = true;
        EXPECT_TRUE(saveHtmlToTextChoice(file(), choice));
        EXPECT_EQ(key(u"GENERAL"_s, u"A_LINK_TAG_TYPE"_s) + key(u"GENERAL"_s, u"ENTER"_s), u"11"_s);
        choice.textBoxes.back() = false;
        EXPECT_TRUE(saveHtmlToTextChoice(file(), choice));
        EXPECT_EQ(key(u"GENERAL"_s, u"A_LINK_TAG_TYPE"_s) + key(u"GENERAL"_s, u"ENTER"_s), u"00"_s);
    }
}

TEST_F(HtmlToTextChoiceFile, AnEmptyFileGetsItsKeysInTheFixedOrder) {
    writeFile(file(), "");
    EXPECT_TRUE(saveHtmlToTextChoice(file(), HtmlToTextChoice()));
    QStringList wanted{u"GENERAL/MODE"_s, u"GENERAL/ENTER"_s, u"GENERAL/A_LINK_TAG_TYPE"_s};
    for (const char* name :
         {"BR",    "P",    "XMP", "SPAN", "S",      "SUP", "SUB", "TT", "PRE", "BLOCKQUOTE", "HR", "HR_Num",
          "TABLE", "LIST", "A",   "EM",   "STRONG", "INS", "DEL", "Q",  "U",   "I",          "B"})
        wanted += u"HTML2HTML/"_s + QLatin1StringView(name);
    for (const char* name : {"HR", "BR", "P", "IMG", "ANAME", "AHREF", "AHREFSharp"})
        wanted += u"HTML/"_s + QLatin1StringView(name);
    wanted += u"HR/NUM"_s;
    EXPECT_EQ(keys(), wanted);
}

TEST_F(HtmlToTextChoiceFile, UnknownKeysAndCommentsStay) {
    writeFile(file(), "; mine\r\n[GENERAL]\r\nMine=1\r\nMODE=TEXT\r\n[Mine]\r\nx=y\r\n");
    EXPECT_TRUE(saveHtmlToTextChoice(file(), HtmlToTextChoice()));
    EXPECT_TRUE(bytesOf(file()).startsWith("; mine\r\n[GENERAL]\r\nMine=1\r\nMODE=TEXT\r\n"));
    EXPECT_EQ(key(u"Mine"_s, u"x"_s), u"y"_s);
}

TEST_F(HtmlToTextChoiceFile, ARuleLengthThatIsNoNumberChangesNothing) {
    const QByteArray before = bytesOf(file());
    for (const QString& length : {u""_s, u"x"_s, u"99999"_s}) {
        HtmlToTextChoice choice;
        choice.isTextMode = false;
        choice.ruleLength = length;
        EXPECT_NE(failureOf([&] { saveHtmlToTextChoice(file(), choice); }), u""_s) << length.toStdString();
        EXPECT_EQ(bytesOf(file()), before);
    }
}

TEST_F(HtmlToTextChoiceFile, AFileThatTakesNothingIsNoticed) {
    EXPECT_FALSE(saveHtmlToTextChoice(path(u"gone/HTML2TXT.ini"_s), HtmlToTextChoice()));
    HtmlToTextChoice choice;
    choice.isTextMode = false;
    ASSERT_EQ(::chmod(QFile::encodeName(file()).constData(), 0444), 0);
    EXPECT_FALSE(saveHtmlToTextChoice(file(), choice));
    ASSERT_EQ(::chmod(QFile::encodeName(file()).constData(), 0644), 0);
    EXPECT_TRUE(saveHtmlToTextChoice(file(), choice));
}

} // namespace
} // namespace velloria::tests
