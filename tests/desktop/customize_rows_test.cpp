// Every row of every panel of the customize dialog: load, change, apply, cancel, and what the page makes of it.
#include "customize_home.h"
#include "site/month_page.h"

using namespace Qt::StringLiterals;

namespace velloria::tests {
namespace {

using Kind = site::RowKind;
using Panel = site::CustomizePanel;

class CustomizeRows : public CustomizeHome {
protected:
    static std::vector<site::CustomizeRow> rows() {
        std::vector<site::CustomizeRow> rows;
        for (const site::CustomizeCategory& category : site::customizeCategories()) {
            for (const site::CustomizeGroup& group : site::groupsOf(category.panel))
                rows.insert(rows.end(), group.rows.begin(), group.rows.end());
        }
        return rows;
    }
    static QString key(const site::CustomizeRow& row) {
        return row.setting->section.toString() + u' ' + row.setting->name.toString();
    }
    static QString name(const QString& kind, const site::CustomizeRow& row) { return kind + row.name.toString(); }

    /// Two values that the row can hold.
    static std::pair<QString, QString> values(const site::CustomizeRow& row) {
        switch (row.kind) {
        case Kind::Number:
            return {u"3"_s, u"7"_s};
        case Kind::Flag:
            // All rows mean something with the first values.
            return row.name == u"NoBorder" ? std::pair(u"0"_s, u"1"_s) : std::pair(u"1"_s, u"0"_s);
        case Kind::Choice:
            return {row.options.front().value.toString(), row.options.back().value.toString()};
        case Kind::Colour:
            return {u"#111111"_s, u"peru"_s};
        case Kind::Text:
        case Kind::Picture:
            break;
        }
        return {u"一 つ"_s, u"二;=é"_s};
    }
    QString shown(const site::CustomizeRow& row) {
        switch (row.kind) {
        case Kind::Flag:
            return field<QCheckBox>(name(u"chk"_s, row)).isChecked() ? u"1"_s : u"0"_s;
        case Kind::Choice:
            for (const site::RowOption& option : row.options) {
                if (field<QRadioButton>(name(u"opt"_s, row) + option.value.toString()).isChecked())
                    return option.value.toString();
            }
            return {};
        case Kind::Colour:
            return box(name(u"cmbColor_"_s, row)).currentText();
        case Kind::Picture:
            return line(name(u"txt"_s, row) + u"BGImage"_s).text();
        default:
            return line(name(u"txt"_s, row)).text();
        }
    }
    void change(const site::CustomizeRow& row, const QString& value) {
        switch (row.kind) {
        case Kind::Flag: {
            auto& flag = field<QCheckBox>(name(u"chk"_s, row));
            if (flag.isChecked() != (value == u"1"))
                flag.click();
            break;
        }
        case Kind::Choice:
            field<QRadioButton>(name(u"opt"_s, row) + value).click();
            break;
        case Kind::Colour:
            box(name(u"cmbColor_"_s, row)).setEditText(value);
            break;
        case Kind::Picture:
            line(name(u"txt"_s, row) + u"BGImage"_s).setText(value);
            break;
        default:
            line(name(u"txt"_s, row)).setText(value);
        }
        settle();
    }
};

TEST_F(CustomizeRows, HaveEachSettingOfASetButThoseThatNobodyChooses) {
    QSet<QString> edited;
    for (const site::CustomizeRow& row : rows())
        edited += key(row);
    for (const site::CustomizeCategory& category : site::customizeCategories()) {
        for (const core::Setting* setting : {category.up, category.down}) {
            if (setting)
                edited += setting->section.toString() + u' ' + setting->name.toString();
        }
    }
    QStringList missing;
    for (const core::Setting* setting : core::keys::kCustomizeSet) {
        const QString name = setting->section.toString() + u' ' + setting->name.toString();
        if (!edited.contains(name))
            missing += name;
    }
    EXPECT_EQ(missing,
              (QStringList{u"General HeadTag_Div_Log"_s, u"General UseCategory"_s, u"Calender FirstDayOfWeek"_s}));
}

TEST_F(CustomizeRows, ShowWhatTheSetHolds) {
    for (const bool isSecond : {false, true}) {
        for (const site::CustomizeRow& row : rows())
            setSetting(*row.setting, isSecond ? values(row).second : values(row).first);
        open();
        for (const site::CustomizeRow& row : rows())
            EXPECT_EQ(shown(row), isSecond ? values(row).second : values(row).first) << key(row).toStdString();
        EXPECT_FALSE(canApply());
        press(u"Btn_Cancel"_s);
        EXPECT_FALSE(isOpen());
    }
    EXPECT_TRUE(boxes().isEmpty());
}

TEST_F(CustomizeRows, ReachTheirOwnSettingAndNoOther) {
    for (const site::CustomizeRow& row : rows())
        setSetting(*row.setting, values(row).first);
    open();
    for (const site::CustomizeRow& row : rows()) {
        SCOPED_TRACE(key(row).toStdString());
        change(row, values(row).second);
        EXPECT_TRUE(canApply());
        EXPECT_EQ(stored(*row.setting), values(row).first);
        press(u"Btn_Apply"_s);
        EXPECT_FALSE(canApply());
        for (const site::CustomizeRow& other : rows())
            EXPECT_EQ(stored(*other.setting), key(other) == key(row) ? values(other).second : values(other).first)
                << key(other).toStdString();
        change(row, values(row).first);
        press(u"Btn_Apply"_s);
    }
}

TEST_F(CustomizeRows, AreLeftByACancelAsTheyWere) {
    for (const site::CustomizeRow& row : rows())
        setSetting(*row.setting, values(row).first);
    const QByteArray before = set();
    for (const site::CustomizeRow& row : rows()) {
        open();
        change(row, values(row).second);
        desk.answers = {u"no"_s};
        press(u"Btn_Cancel"_s);
        EXPECT_FALSE(isOpen());
        EXPECT_EQ(set(), before) << key(row).toStdString();
    }
}

TEST_F(CustomizeRows, OfASetWithoutKeysShowWhatAPageMakesOfIt) {
    writeFile(session.CustIniFile, "");
    open();
    for (const site::CustomizeRow& row : rows()) {
        const QString nothing = row.kind == Kind::Flag ? u"0"_s : row.whenEmpty.toString();
        EXPECT_EQ(shown(row), nothing) << key(row).toStdString();
    }
}

TEST_F(CustomizeRows, KeepAChoiceThatTheyDontKnowUntilAnOptionIsChosen) {
    setSetting(core::keys::general::kTitleAlign, u"justify"_s);
    setSetting(core::keys::general::kWeather, u"1x"_s);
    open();
    for (const QString& option : {u"Center"_s, u"Left"_s, u"Right"_s})
        EXPECT_FALSE(field<QRadioButton>(u"optTitleAlign"_s + option).isChecked());
    EXPECT_TRUE(field<QCheckBox>(u"chkWeather"_s).isChecked());
    press(u"Btn_OK"_s);
    EXPECT_EQ(stored(core::keys::general::kTitleAlign), u"justify"_s);
}

TEST_F(CustomizeRows, WriteTheWordsOfTheFile) {
    open();
    for (const QString& option : {u"optCalenderType2"_s, u"optHTMLType1"_s, u"optDayListTypeTable"_s,
                                  u"optLogTypeJavaScript"_s, u"optTitleAlignCenter"_s, u"optLanguageEnglish"_s})
        field<QRadioButton>(option).click();
    field<QCheckBox>(u"chkGenre"_s).setChecked(true);
    field<QCheckBox>(u"chkWeather"_s).setChecked(false);
    press(u"Btn_Apply"_s);
    namespace keys = core::keys;
    EXPECT_EQ(stored(keys::calender::kType), u"2"_s);
    EXPECT_EQ(stored(keys::contents::kHTMLType), u"1"_s);
    EXPECT_EQ(stored(keys::day_list::kType), u"Table"_s);
    EXPECT_EQ(stored(keys::general::kLogType), u"JavaScript"_s);
    EXPECT_EQ(stored(keys::general::kTitleAlign), u"Center"_s);
    EXPECT_EQ(stored(keys::page_move_link::kLanguage), u"English"_s);
    EXPECT_EQ(stored(keys::general::kGenre), u"1"_s);
    EXPECT_EQ(stored(keys::general::kWeather), u"0"_s);
}

TEST_F(CustomizeRows, LeaveUnknownKeysAndThoseWithoutAControl) {
    writeFile(session.CustIniFile, "; mine\r\n[Calender]\r\nFirstDayOfWeek=1\r\n[Mine]\r\nx=y\r\n[General]\r\n"
                                   "HeadTag_Div_Log=head\r\nUseCategory=1\r\n");
    open();
    press(u"Btn_OK"_s);
    const QByteArray after = set();
    for (const char* kept :
         {"; mine\r\n", "FirstDayOfWeek=1\r\n", "[Mine]\r\nx=y\r\n", "HeadTag_Div_Log=head\r\n", "UseCategory=1\r\n"})
        EXPECT_TRUE(after.contains(kept)) << kept;
}

TEST_F(CustomizeRows, LetANumberThatNoPageCanUseBeMended) {
    setSetting(core::keys::calender::kBorderSize, u"99999"_s);
    open();
    EXPECT_EQ(line(u"txtBorderSize"_s).text(), u"99999"_s);
    line(u"txtBorderSize"_s).setText(u"2"_s);
    press(u"Btn_OK"_s);
    EXPECT_EQ(stored(core::keys::calender::kBorderSize), u"2"_s);
}

TEST_F(CustomizeRows, AreDisabledWhileTheyMeanNothing) {
    open();
    for (const site::CustomizeRow& row : rows()) {
        if (row.needs.isEmpty())
            continue;
        const bool mustBeOff = row.needs.startsWith(u'!');
        auto& flag = field<QCheckBox>(row.needs.sliced(mustBeOff ? 1 : 0).toString());
        QWidget* control =
            row.kind == Kind::Choice
                ? field<QRadioButton>(name(u"opt"_s, row) + row.options.front().value.toString()).parentWidget()
            : row.kind == Kind::Colour ? static_cast<QWidget*>(&box(name(u"cmbColor_"_s, row)))
            : row.kind == Kind::Flag   ? static_cast<QWidget*>(&field<QCheckBox>(name(u"chk"_s, row)))
                                       : &line(name(u"txt"_s, row));
        flag.setChecked(true);
        EXPECT_EQ(control->isEnabled(), !mustBeOff) << key(row).toStdString();
        flag.setChecked(false);
        EXPECT_EQ(control->isEnabled(), mustBeOff) << key(row).toStdString();
    }
}

// ---- what the page makes of them

/// The page on which a setting shows: the month, a divided page of it, the left frame.
enum class Seen { Month, Divided, Frame };

struct Effect {
    const core::Setting& setting;
    QString value;
    Seen seen;
    QString inPage; ///< what the page then holds, and held not before
};

TEST_F(CustomizeRows, ChangeThePage) {
    namespace keys = core::keys;
    const Effect effects[] = {
        {keys::general::kHPTitle, u"題"_s, Seen::Month, u"<TITLE>題"_s},
        {keys::general::kStyleSheetURL, u"x.css"_s, Seen::Month, u"x.css"_s},
        {keys::general::kTitleAlign, u"Right"_s, Seen::Month, u"<H3 align=Right><a name=TOP>"_s},
        {keys::general::kDayTitleAlign, u"Right"_s, Seen::Month, u"<H3 ALIGN=Right STYLE"_s},
        {keys::general::kUseLog, u"1"_s, Seen::Frame, u"<P Align="_s},
        {keys::general::kLogType, u"JavaScript"_s, Seen::Month, u"GetSelectionText"_s},
        {keys::general::kLogAlign, u"Right"_s, Seen::Frame, u"<P Align=Right>"_s},
        {keys::general::kWeather, u"1"_s, Seen::Month, u"<IMG SRC=\"./DiaryParts/"_s},
        {keys::general::kGenre, u"1"_s, Seen::Month, u"[一般]"_s},
        {keys::general::kVellLinkOn, u"1"_s, Seen::Month, u">Velloria</a>"_s},
        {keys::general::kVellLinkText, u"made by #"_s, Seen::Month, u"made by <a "_s},
        {keys::body::kTextColor, u"#010203"_s, Seen::Month, u"TEXT='#010203'"_s},
        {keys::body::kBackColor, u"#010203"_s, Seen::Month, u"'#010203'"_s},
        {keys::body::kLinkColor, u"#010203"_s, Seen::Month, u"'#010203'"_s},
        {keys::body::kALinkColor, u"#010203"_s, Seen::Month, u"'#010203'"_s},
        {keys::body::kVLinkColor, u"#010203"_s, Seen::Month, u"'#010203'"_s},
        {keys::body::kBackImage, u"sky.gif"_s, Seen::Month, u"sky.gif"_s},
        {keys::day_list::kUse, u"1"_s, Seen::Month, u"#2004/05/02_1\">2004/05/02</a>"_s},
        {keys::day_list::kType, u"Table"_s, Seen::Month, u"<TR><TD><a href"_s},
        {keys::day_list::kAddTitle, u"1"_s, Seen::Month, u"2004/05/02</a>　二日"_s},
        {keys::day_list::kMarginLeft, u"7"_s, Seen::Month, u"margin-left:7pt"_s},
        {keys::calender::kUse, u"1"_s, Seen::Month, u"cellpadding="_s},
        {keys::calender::kType, u"1"_s, Seen::Month, u">水<"_s},
        {keys::calender::kTableAlign, u"Right"_s, Seen::Month, u"<DIV ALIGN=RIGHT>\r\n<table"_s},
        {keys::calender::kNoBorder, u"1"_s, Seen::Month, u"cellpadding=0>"_s},
        {keys::calender::kBorderSize, u"7"_s, Seen::Month, u"border=7 bordercolor"_s},
        {keys::calender::kCellPadding, u"7"_s, Seen::Month, u"cellpadding=7"_s},
        {keys::calender::kTableBGColor, u"#010203"_s, Seen::Month, u"<table bgcolor='#010203'"_s},
        {keys::calender::kTRBGColorTop, u"#010203"_s, Seen::Month, u"<tr align=center bgcolor='#010203'"_s},
        {keys::calender::kTRBGColor, u"#010203"_s, Seen::Month, u"bgcolor='#010203'"_s},
        {keys::calender::kBorderColor, u"#010203"_s, Seen::Month, u"bordercolor='#010203'"_s},
        {keys::calender::kBorderColorLight, u"#010203"_s, Seen::Month, u"bordercolorlight='#010203'"_s},
        {keys::calender::kBorderColorDark, u"#010203"_s, Seen::Month, u"bordercolordark='#010203'"_s},
        {keys::contents::kHTMLType, u"1"_s, Seen::Month, u"<TABLE BORDER="_s},
        {keys::contents::kTableBorder, u"7"_s, Seen::Month, u"<TABLE BORDER=7"_s},
        {keys::contents::kCellspacing, u"7"_s, Seen::Month, u"CELLSPACING=7"_s},
        {keys::contents::kTableWidth, u"70"_s, Seen::Month, u"width=70%"_s},
        {keys::contents::kTableBGColor, u"#010203"_s, Seen::Month, u"BGCOLOR=\"#010203\" CELLSPACING"_s},
        {keys::contents::kTBorderColor, u"#010203"_s, Seen::Month, u"BORDERCOLOR=#010203"_s},
        {keys::contents::kTitleFTColor, u"#010203"_s, Seen::Month, u"COLOR:#010203;BACKGROUND"_s},
        {keys::contents::kTitleBGColor, u"#010203"_s, Seen::Month, u"BACKGROUND:#010203"_s},
        {keys::contents::kTitleSpanTag, u"font-size:7pt"_s, Seen::Month, u"<SPAN STYLE=\"font-size:7pt\">"_s},
        {keys::contents::kDayBGColor, u"#010203"_s, Seen::Month, u"BGCOLOR=#010203"_s},
        {keys::contents::kDayFTColor, u"#010203"_s, Seen::Month, u"<FONT COLOR=#010203"_s},
        {keys::contents::kContentsBGColor, u"#010203"_s, Seen::Month, u"BACKGROUND:#010203"_s},
        {keys::contents::kContentsFTColor, u"#010203"_s, Seen::Month, u"COLOR:#010203;BACKGROUND"_s},
        {keys::contents::kDayContentsAlign, u"Right"_s, Seen::Month, u" align=Right>"_s},
        {keys::page_move_link::kPageMoveOn, u"1"_s, Seen::Divided, u">Previous<"_s},
        {keys::page_move_link::kAlign, u"Right"_s, Seen::Divided, u"<div align=Right style"_s},
        {keys::page_move_link::kLanguage, u"Japanese"_s, Seen::Divided, u">戻る<"_s},
        {keys::page_move_link::kSeparetor, u"＊＊"_s, Seen::Divided, u"＊＊"_s},
        {keys::calender_window::kTextColor, u"#010203"_s, Seen::Frame, u"TEXT=\"#010203\""_s},
        {keys::calender_window::kBGColor, u"#010203"_s, Seen::Frame, u"BGColor=\"#010203\""_s},
        {keys::calender_window::kBGImage, u"sky.gif"_s, Seen::Frame, u"background=\"sky.gif\""_s},
    };
    // What must be on beside the setting for it to be seen.
    const QMap<QString, QString> beside{
        {u"LogAlign"_s, u"chkUseLog"_s},          {u"LogType"_s, u"chkUseLog"_s},
        {u"VellLinkText"_s, u"chkVellLinkOn"_s},  {u"MarginLeft"_s, u"chkDayListUse"_s},
        {u"DayListType"_s, u"chkDayListUse"_s},   {u"AddTitle"_s, u"chkDayListUse"_s},
        {u"PageMoveAlign"_s, u"chkPageMoveOn"_s}, {u"Language"_s, u"chkPageMoveOn"_s},
        {u"Separetor"_s, u"chkPageMoveOn"_s},
    };
    const QSet<QString> ofTable{u"TableBorder"_s, u"Cellspacing"_s, u"TableWidth"_s, u"TableBG"_s,
                                u"TBorder"_s,     u"DayBG"_s,       u"DayFT"_s};
    store::Entry sunny = entryOf(u"2004/05/03"_s, u"晴れ"_s);
    sunny.weather = u"晴"_s;
    write(sunny);
    const auto make = [this](Seen seen) {
        setSetting(core::keys::frame::kFrameOn, seen == Seen::Frame ? u"1"_s : u"0"_s);
        setSetting(core::keys::divide::kDiaryDivide, seen == Seen::Divided ? u"1"_s : u"0"_s);
        setSetting(core::keys::divide::kDiaryTerm, u"1"_s);
        site::MonthPage(context).MakeHTML(path(u"x.htm"_s), u"2004/05"_s, site::PageKind::Current, site::MakeList::No,
                                          site::WithPrivate::No);
        const QMap<Seen, QString> files{
            {Seen::Month, u"x.htm"_s}, {Seen::Divided, u"x_02.htm"_s}, {Seen::Frame, u"x_C.htm"_s}};
        return pageOf(path(files[seen]));
    };
    std::map<QString, const Effect*> byKey;
    for (const Effect& effect : effects)
        byKey[effect.setting.section.toString() + u' ' + effect.setting.name.toString()] = &effect;
    for (const site::CustomizeRow& row : rows()) {
        SCOPED_TRACE(key(row).toStdString());
        ASSERT_TRUE(byKey.contains(key(row))) << "what does the page make of it?";
        const Effect& effect = *byKey[key(row)];
        writeFile(session.CustIniFile, "");
        open();
        const QString name = row.name.toString();
        if (beside.contains(name))
            field<QCheckBox>(beside[name]).click();
        if (ofTable.contains(name))
            field<QRadioButton>(u"optHTMLType1"_s).click();
        if (row.setting->section == u"Calender" && name != u"CalenderUse")
            field<QCheckBox>(u"chkCalenderUse"_s).click();
        press(u"Btn_Apply"_s);
        EXPECT_FALSE(make(effect.seen).contains(effect.inPage)) << effect.inPage.toStdString();
        change(row, effect.value);
        press(u"Btn_Apply"_s);
        EXPECT_TRUE(make(effect.seen).contains(effect.inPage)) << make(effect.seen).toStdString();
        press(u"Btn_Cancel"_s);
    }
}

} // namespace
} // namespace velloria::tests
