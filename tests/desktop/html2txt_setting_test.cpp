#include "convert/forms/frmHTML2TXTSetting.h"

#include "core/ini.h"
#include "support/desktop_home.h"
#include "support/disk_watch.h"

using namespace Qt::StringLiterals;

namespace velloria::tests {
namespace {

class ConverterSettings : public DesktopHome {
protected:
    void SetUp() override { showTop(); }

    QString file() const { return path(u"HTML2TXT.ini"_s); }
    QString key(const QString& section, const QString& name) const { return core::ReadIni(file(), section, name); }
    void open() {
        top().command(u"MnuHTML2TXT"_s)->trigger();
        settle();
        ASSERT_TRUE(window());
        ASSERT_TRUE(window()->isVisible());
    }
    convert::frmHTML2TXTSetting* window() { return context.windows.find<convert::frmHTML2TXTSetting>(); }
    template <class Control>
    Control& field(const QString& name) {
        return control<Control>(*window(), name);
    }
    QListWidget& list() { return field<QListWidget>(u"ListView1"_s); }
    void press(const QString& name) {
        field<QPushButton>(name).click();
        settle();
    }
    static inline const QStringList kBoxes{u"chkBR"_s,    u"chkHR"_s,    u"chkP"_s,          u"chkIMG"_s,
                                           u"chkANAME"_s, u"chkAHREF"_s, u"chkAHREFSharp"_s, u"chkENTER"_s};
};

TEST_F(ConverterSettings, ShowsTheFile) {
    writeFile(file(), "[GENERAL]\r\nMODE=HTML\r\nENTER=0\r\nA_LINK_TAG_TYPE=2\r\n[HTML]\r\nIMG=0\r\n[HR]\r\nNUM=9\r\n"
                      "[HTML2HTML]\r\nXMP=-1\r\nLIST=1\r\n");
    open();
    EXPECT_EQ(window()->windowTitle(), u"Velloria - HTML2TEXT Setting -"_s);
    EXPECT_EQ(field<QTabWidget>(u"TabStrip1"_s).count(), 3);
    EXPECT_TRUE(field<QRadioButton>(u"optMODE_HTML"_s).isChecked());
    EXPECT_FALSE(field<QRadioButton>(u"optMODE_TEXT"_s).isChecked());
    QStringList tags;
    QStringList checked;
    for (int i = 0; i < list().count(); ++i) {
        tags += list().item(i)->text();
        if (list().item(i)->checkState() == Qt::Checked)
            checked += list().item(i)->text();
    }
    EXPECT_EQ(tags.join(u' '), u"BR P XMP SPAN S SUP SUB TT PRE BLOCKQUOTE HR TABLE LIST"_s);
    EXPECT_EQ(checked, (QStringList{u"XMP"_s, u"LIST"_s}));
    QStringList off;
    for (const QString& name : kBoxes) {
        if (!field<QCheckBox>(name).isChecked())
            off += name;
    }
    EXPECT_EQ(off, (QStringList{u"chkIMG"_s, u"chkENTER"_s}));
    EXPECT_EQ(field<QLineEdit>(u"txtHR_NUM"_s).text(), u"9"_s);
    EXPECT_TRUE(field<QRadioButton>(u"opt_A_LINK_TAG_TYPE2"_s).isChecked());
    EXPECT_FALSE(field<QRadioButton>(u"opt_A_LINK_TAG_TYPE1"_s).isChecked());
}

TEST_F(ConverterSettings, ALinkTreatmentThatNobodyKnowsLeavesAllThreeOff) {
    core::WriteIni(file(), u"GENERAL"_s, u"A_LINK_TAG_TYPE"_s, u"7"_s);
    open();
    for (const QString& type : {u"0"_s, u"1"_s, u"2"_s})
        EXPECT_FALSE(field<QRadioButton>(u"opt_A_LINK_TAG_TYPE"_s + type).isChecked());
    field<QRadioButton>(u"opt_A_LINK_TAG_TYPE1"_s).click();
    field<QRadioButton>(u"opt_A_LINK_TAG_TYPE0"_s).click();
    EXPECT_FALSE(field<QRadioButton>(u"opt_A_LINK_TAG_TYPE1"_s).isChecked());
}

TEST_F(ConverterSettings, EachControlReachesItsOwnKey) {
    const struct {
        QString control;
        QString section;
        QString key;
    } cases[] = {{u"chkBR"_s, u"HTML"_s, u"BR"_s},
                 {u"chkHR"_s, u"HTML"_s, u"HR"_s},
                 {u"chkP"_s, u"HTML"_s, u"P"_s},
                 {u"chkIMG"_s, u"HTML"_s, u"IMG"_s},
                 {u"chkANAME"_s, u"HTML"_s, u"ANAME"_s},
                 {u"chkAHREF"_s, u"HTML"_s, u"AHREF"_s},
                 {u"chkAHREFSharp"_s, u"HTML"_s, u"AHREFSharp"_s},
                 {u"chkENTER"_s, u"GENERAL"_s, u"ENTER"_s}};
    for (const auto& c : cases) {
        SCOPED_TRACE(c.control.toStdString());
        open();
        for (const QString& name : kBoxes)
            field<QCheckBox>(name).setChecked(name != c.control);
        press(u"Btn_OK"_s);
        EXPECT_FALSE(window());
        for (const auto& other : cases)
            EXPECT_EQ(key(other.section, other.key), &other == &c ? u"0"_s : u"1"_s) << other.key.toStdString();
    }
}

TEST_F(ConverterSettings, OkWritesModeListAndRuleAndResetsTheRest) {
    const QStringList others{u"A"_s, u"EM"_s, u"STRONG"_s, u"INS"_s, u"DEL"_s,
                             u"Q"_s, u"U"_s,  u"I"_s,      u"B"_s,   u"HR_Num"_s};
    for (const QString& other : others)
        core::WriteIni(file(), u"HTML2HTML"_s, other, u"1"_s);
    core::WriteIni(file(), u"HTML2HTML"_s, u"Mine"_s, u"kept"_s);
    open();
    field<QRadioButton>(u"optMODE_HTML"_s).click();
    for (int i = 0; i < list().count(); ++i)
        list().item(i)->setCheckState(i % 2 ? Qt::Checked : Qt::Unchecked);
    field<QLineEdit>(u"txtHR_NUM"_s).setText(u"3"_s);
    field<QRadioButton>(u"opt_A_LINK_TAG_TYPE2"_s).click();
    press(u"Btn_OK"_s);
    EXPECT_EQ(key(u"GENERAL"_s, u"MODE"_s), u"HTML"_s);
    for (int i = 0; const char* tag :
                    {"BR", "P", "XMP", "SPAN", "S", "SUP", "SUB", "TT", "PRE", "BLOCKQUOTE", "HR", "TABLE", "LIST"})
        EXPECT_EQ(key(u"HTML2HTML"_s, QLatin1StringView(tag)), i++ % 2 ? u"-1"_s : u"0"_s) << tag;
    EXPECT_EQ(key(u"HR"_s, u"NUM"_s), u"3"_s);
    EXPECT_EQ(key(u"GENERAL"_s, u"A_LINK_TAG_TYPE"_s), u"1"_s);
    for (const QString& other : others)
        EXPECT_EQ(key(u"HTML2HTML"_s, other), u"0"_s) << other.toStdString();
    EXPECT_EQ(key(u"HTML2HTML"_s, u"Mine"_s), u"kept"_s);
    EXPECT_TRUE(boxes().isEmpty());
    EXPECT_FALSE(window());
}

TEST_F(ConverterSettings, CancelWritesNothing) {
    const QByteArray before = bytesOf(file());
    for (const bool byKey : {false, true}) {
        open();
        field<QRadioButton>(u"optMODE_HTML"_s).click();
        if (byKey)
            QTest::keyClick(window(), Qt::Key_Escape);
        else
            press(u"Btn_Cancel"_s);
        settle();
        EXPECT_FALSE(window());
        EXPECT_EQ(bytesOf(file()), before);
    }
}

TEST_F(ConverterSettings, AFileThatCantBeReadIsToldAndTheWindowStays) {
    ASSERT_TRUE(QFile::remove(file()));
    open();
    EXPECT_EQ(boxes(), QStringList{u"critical: 設定ファイルの読み込みに失敗しました。"_s});
    EXPECT_TRUE(field<QRadioButton>(u"optMODE_TEXT"_s).isChecked());
    EXPECT_TRUE(field<QCheckBox>(u"chkENTER"_s).isChecked());
    EXPECT_EQ(field<QLineEdit>(u"txtHR_NUM"_s).text(), u"5"_s);
    press(u"Btn_OK"_s);
    EXPECT_EQ(key(u"GENERAL"_s, u"MODE"_s), u"TEXT"_s);
    EXPECT_EQ(boxes().size(), 1);
}

TEST_F(ConverterSettings, AFailedSaveIsToldAndTheWindowClosesAllTheSame) {
    open();
    field<QRadioButton>(u"optMODE_HTML"_s).click();
    ASSERT_TRUE(QFile::setPermissions(file(), QFile::ReadOwner));
    press(u"Btn_OK"_s);
    EXPECT_EQ(boxes(), QStringList{u"critical: 設定ファイルの保存に失敗しました。"_s});
    EXPECT_FALSE(window());
}

TEST_F(ConverterSettings, ARuleLengthThatIsNoNumberFailsAndKeepsTheWindow) {
    const QByteArray before = bytesOf(file());
    open();
    int failures = 0;
    for (const QString& length : {u"five"_s, u""_s, u"99999"_s}) {
        field<QLineEdit>(u"txtHR_NUM"_s).setText(length);
        press(u"Btn_OK"_s);
        EXPECT_EQ(desk.texts(u"failure"_s).size(), ++failures) << length.toStdString();
        ASSERT_TRUE(window());
        EXPECT_EQ(bytesOf(file()), before);
    }
}

TEST_F(ConverterSettings, ANumberOutOfRangeIsToldAndLeavesTheControlsAtTheirStart) {
    writeFile(file(), "[GENERAL]\r\nMODE=HTML\r\n[HR]\r\nNUM=99999\r\n");
    open();
    EXPECT_EQ(boxes(), QStringList{u"critical: 設定ファイルの読み込みに失敗しました。"_s});
    EXPECT_TRUE(field<QRadioButton>(u"optMODE_TEXT"_s).isChecked());
    EXPECT_EQ(field<QLineEdit>(u"txtHR_NUM"_s).text(), u"5"_s);
}

TEST_F(ConverterSettings, TheLinkTreatmentIsTheBoxForLineBreaksWhateverIsChosen) {
    for (const QString& type : {u"0"_s, u"1"_s, u"2"_s}) {
        for (const bool isOn : {true, false}) {
            open();
            field<QRadioButton>(u"opt_A_LINK_TAG_TYPE"_s + type).click();
            field<QCheckBox>(u"chkENTER"_s).setChecked(isOn);
            press(u"Btn_OK"_s);
            EXPECT_EQ(key(u"GENERAL"_s, u"A_LINK_TAG_TYPE"_s), isOn ? u"1"_s : u"0"_s) << type.toStdString();
        }
    }
}

TEST_F(ConverterSettings, AnEmptyFileGetsItsKeysInTheFixedOrder) {
    writeFile(file(), "; mine\r\n");
    open();
    press(u"Btn_OK"_s);
    QByteArray names;
    for (const QByteArray& line : bytesOf(file()).split('\n')) {
        if (line.startsWith('['))
            names += line.trimmed();
        else if (line.contains('='))
            names += line.left(line.indexOf('=')) + ' ';
    }
    EXPECT_EQ(names,
              "[GENERAL]MODE ENTER A_LINK_TAG_TYPE "
              "[HTML2HTML]BR P XMP SPAN S SUP SUB TT PRE BLOCKQUOTE HR HR_Num TABLE LIST A EM STRONG INS DEL Q U "
              "I B [HTML]HR BR P IMG ANAME AHREF AHREFSharp [HR]NUM ");
}

TEST_F(ConverterSettings, OkReplacesTheFileOnce) {
    open();
    field<QRadioButton>(u"optMODE_HTML"_s).click();
    const DiskWatch watch;
    press(u"Btn_OK"_s);
    EXPECT_EQ(watch.synced().size(), 2) << "the file and its folder";
}

} // namespace
} // namespace velloria::tests
