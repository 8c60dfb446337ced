#include "site/forms/customize_rows.h"

#include "core/site_keys.h"

namespace velloria::site {
namespace {

namespace keys = core::keys;

constexpr auto kText = RowKind::Text;
constexpr auto kNumber = RowKind::Number;
constexpr auto kFlag = RowKind::Flag;
constexpr auto kChoice = RowKind::Choice;
constexpr auto kColour = RowKind::Colour;
constexpr auto kPicture = RowKind::Picture;

// In this order the options are asked which of them is on.
constexpr RowOption kAligns[] = {{u"Center", u"中央"}, {u"Left", u"左"}, {u"Right", u"右"}};
constexpr RowOption kLogTypes[] = {{u"Normal", u"リンク"}, {u"JavaScript", u"選択ボックス"}};
constexpr RowOption kListTypes[] = {{u"List", u"箇条書き"}, {u"Table", u"表"}};
constexpr RowOption kWeekdays[] = {{u"1", u"日本語"}, {u"2", u"英語"}};
constexpr RowOption kForms[] = {{u"0", u"標準"}, {u"1", u"表"}};
constexpr RowOption kLanguages[] = {{u"Japanese", u"日本語"}, {u"English", u"英語"}};

constexpr CustomizeRow kSite[] = {
    {kText, u"HPTitle", u"サイトのタイトル", &keys::general::kHPTitle},
    {kText, u"StyleSheetURL", u"スタイルシートのURL", &keys::general::kStyleSheetURL},
    {kChoice, u"TitleAlign", u"月の見出しの位置", &keys::general::kTitleAlign, kAligns},
    {kChoice, u"DayTitleAlign", u"日記のタイトルの位置", &keys::general::kDayTitleAlign, kAligns},
    {kFlag, u"Weather", u"天気を表示する", &keys::general::kWeather},
    {kFlag, u"Genre", u"ジャンルを表示する", &keys::general::kGenre},
};
constexpr CustomizeRow kDayList[] = {
    {kFlag, u"DayListUse", u"日記の一覧を表示する", &keys::day_list::kUse},
    {kChoice, u"DayListType", u"一覧の形式", &keys::day_list::kType, kListTypes, u"List", u"chkDayListUse"},
    {kFlag, u"AddTitle", u"一覧に日記のタイトルを付ける", &keys::day_list::kAddTitle, {}, {}, u"chkDayListUse"},
    {kNumber, u"MarginLeft", u"左の余白(ポイント)", &keys::day_list::kMarginLeft},
};
constexpr CustomizeRow kLog[] = {
    {kFlag, u"UseLog", u"過去のログの一覧を表示する", &keys::general::kUseLog},
    {kChoice, u"LogType", u"ログの一覧の形式", &keys::general::kLogType, kLogTypes, {}, u"chkUseLog"},
    {kChoice, u"LogAlign", u"ログの一覧の位置", &keys::general::kLogAlign, kAligns, {}, u"chkUseLog"},
};
constexpr CustomizeRow kCredit[] = {
    {kFlag, u"VellLinkOn", u"ページの最後にプログラムへのリンクを付ける", &keys::general::kVellLinkOn},
    {kText,
     u"VellLinkText",
     u"リンクの文(#がリンクになります)",
     &keys::general::kVellLinkText,
     {},
     {},
     u"chkVellLinkOn"},
};
constexpr CustomizeGroup kGeneral[] = {
    {u"ページ", 0, kSite}, {u"最後の行", 0, kCredit}, {u"日記の一覧", 1, kDayList}, {u"ログ", 1, kLog}};

constexpr CustomizeRow kBodyColours[] = {
    {kColour, u"Text", u"文字色", &keys::body::kTextColor},
    {kColour, u"Back", u"背景色", &keys::body::kBackColor},
    {kColour, u"Link", u"リンクの色", &keys::body::kLinkColor},
    {kColour, u"ALink", u"選択中のリンクの色", &keys::body::kALinkColor},
    {kColour, u"VLink", u"表示済みのリンクの色", &keys::body::kVLinkColor},
};
constexpr CustomizeRow kBodyPicture[] = {{kPicture, u"", u"背景画像", &keys::body::kBackImage}};
constexpr CustomizeGroup kBody[] = {{u"色", 0, kBodyColours}, {u"背景", 0, kBodyPicture}};

constexpr CustomizeRow kCalenderForm[] = {
    {kFlag, u"CalenderUse", u"カレンダーを表示する", &keys::calender::kUse},
    {kChoice, u"CalenderType", u"曜日の表記", &keys::calender::kType, kWeekdays, u"2"},
    {kChoice, u"TableAlign", u"カレンダーの位置", &keys::calender::kTableAlign, kAligns},
    {kFlag, u"NoBorder", u"枠線を指定しない", &keys::calender::kNoBorder},
    {kNumber, u"BorderSize", u"枠線の太さ", &keys::calender::kBorderSize, {}, {}, u"!chkNoBorder"},
    {kNumber, u"CellPadding", u"セルの余白", &keys::calender::kCellPadding},
};
constexpr CustomizeRow kCalenderColours[] = {
    {kColour, u"CalTableBG", u"表の背景色", &keys::calender::kTableBGColor},
    {kColour, u"CalTRBGTop", u"曜日の行の背景色", &keys::calender::kTRBGColorTop},
    {kColour, u"CalTRBG", u"日の行の背景色", &keys::calender::kTRBGColor},
    {kColour, u"CalBorder", u"枠線の色", &keys::calender::kBorderColor, {}, {}, u"!chkNoBorder"},
    {kColour, u"CalBorderLight", u"枠線の明るい色", &keys::calender::kBorderColorLight, {}, {}, u"!chkNoBorder"},
    {kColour, u"CalBorderDark", u"枠線の暗い色", &keys::calender::kBorderColorDark, {}, {}, u"!chkNoBorder"},
};
constexpr CustomizeGroup kCalender[] = {{u"表示", 0, kCalenderForm}, {u"色", 1, kCalenderColours}};

constexpr CustomizeRow kEntryForm[] = {
    {kChoice, u"HTMLType", u"日記の形式", &keys::contents::kHTMLType, kForms, u"0"},
    {kChoice, u"DayContentsAlign", u"日記全体の位置", &keys::contents::kDayContentsAlign, kAligns},
    {kNumber, u"TableBorder", u"枠線の太さ", &keys::contents::kTableBorder},
    {kNumber, u"Cellspacing", u"セルの間隔", &keys::contents::kCellspacing},
    {kNumber, u"TableWidth", u"表の幅(%)", &keys::contents::kTableWidth},
    {kText, u"TitleSpanTag", u"タイトルのスタイル(STYLE)", &keys::contents::kTitleSpanTag},
};
constexpr CustomizeRow kEntryColours[] = {
    {kColour, u"TableBG", u"表の背景色", &keys::contents::kTableBGColor},
    {kColour, u"TBorder", u"枠線の色", &keys::contents::kTBorderColor},
    {kColour, u"TitleFT", u"タイトルの文字色", &keys::contents::kTitleFTColor},
    {kColour, u"TitleBG", u"タイトルの背景色", &keys::contents::kTitleBGColor},
    {kColour, u"DayFT", u"日付の文字色", &keys::contents::kDayFTColor},
    {kColour, u"DayBG", u"日付の背景色", &keys::contents::kDayBGColor},
    {kColour, u"ContentsFT", u"本文の文字色", &keys::contents::kContentsFTColor},
    {kColour, u"ContentsBG", u"本文の背景色", &keys::contents::kContentsBGColor},
};
constexpr CustomizeGroup kContents[] = {{u"形式", 0, kEntryForm}, {u"色", 1, kEntryColours}};

constexpr CustomizeRow kMoveLink[] = {
    {kFlag, u"PageMoveOn", u"分割したページの間を移動するリンクを付ける", &keys::page_move_link::kPageMoveOn},
    {kChoice, u"PageMoveAlign", u"リンクの位置", &keys::page_move_link::kAlign, kAligns, u"Left", u"chkPageMoveOn"},
    {kChoice, u"Language", u"リンクの言葉", &keys::page_move_link::kLanguage, kLanguages, u"English", u"chkPageMoveOn"},
    {kText, u"Separetor", u"リンクの間の文字", &keys::page_move_link::kSeparetor, {}, {}, u"chkPageMoveOn"},
};
constexpr CustomizeGroup kPageMoveLink[] = {{u"リンク", 0, kMoveLink}};

constexpr CustomizeRow kFrameColours[] = {
    {kColour, u"LFrameText", u"文字色", &keys::calender_window::kTextColor},
    {kColour, u"LFrameBG", u"背景色", &keys::calender_window::kBGColor},
};
constexpr CustomizeRow kFramePicture[] = {{kPicture, u"LFrame", u"背景画像", &keys::calender_window::kBGImage}};
constexpr CustomizeGroup kCalenderFrame[] = {{u"色", 0, kFrameColours}, {u"背景", 0, kFramePicture}};

} // namespace

std::span<const CustomizeGroup> groupsOf(CustomizePanel panel) {
    switch (panel) {
    case CustomizePanel::General:
        return kGeneral;
    case CustomizePanel::Body:
        return kBody;
    case CustomizePanel::Calender:
        return kCalender;
    case CustomizePanel::Contents:
        return kContents;
    case CustomizePanel::PageMoveLink:
        return kPageMoveLink;
    case CustomizePanel::CalenderFrame:
        return kCalenderFrame;
    case CustomizePanel::Head:
    case CustomizePanel::HeadFoot:
        return {};
    }
    Q_UNREACHABLE();
}

QStringView nameOf(CustomizePanel panel) {
    constexpr QStringView kNames[] = {u"optGeneral",  u"OptHead",     u"optBody",         u"optHeadFoot",
                                      u"optCalender", u"optContents", u"optPageMoveLink", u"optCalenderFrame"};
    return kNames[int(panel)];
}

} // namespace velloria::site
