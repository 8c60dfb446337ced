// The settings of the site: of a customize set, of frames, feeds and the comment service.
//
// What a dialog writes and a page reads has its row here; so has what a set for others must not tell of its user. A row
// of a customize set stands in the list at the end as well.
#pragma once

#include "core/setting.h"

namespace velloria::core::keys {

namespace general {
inline constexpr SettingsSection kSection{SettingsFile::Customize, u"General"};
inline constexpr Setting kHPTitle = kSection.text(u"HPTitle").personal();
inline constexpr Setting kStyleSheetURL = kSection.text(u"StyleSheetURL").personal();
inline constexpr Setting kHeadTag = kSection.pieceName(u"HeadTag").personal();
inline constexpr Setting kHeadTagDiv = kSection.pieceName(u"HeadTag_Div").personal();
inline constexpr Setting kHeadTagDivLog = kSection.pieceName(u"HeadTag_Div_Log");
inline constexpr Setting kTitleAlign = kSection.text(u"TitleAlign");
inline constexpr Setting kDayTitleAlign = kSection.text(u"DayTitleAlign");
inline constexpr Setting kUseLog = kSection.flag(u"UseLog");
inline constexpr Setting kLogType = kSection.text(u"LogType");
inline constexpr Setting kLogAlign = kSection.text(u"LogAlign");
inline constexpr Setting kWeather = kSection.flag(u"Weather");
inline constexpr Setting kGenre = kSection.flag(u"Genre");
/// Read with the others and used by nothing: old sets have it.
inline constexpr Setting kUseCategory = kSection.flag(u"UseCategory");
inline constexpr Setting kVellLinkOn = kSection.flag(u"VellLinkOn");
inline constexpr Setting kVellLinkText = kSection.text(u"VellLinkText");
} // namespace general

namespace body {
inline constexpr SettingsSection kSection{SettingsFile::Customize, u"Body"};
inline constexpr Setting kTextColor = kSection.text(u"TextColor");
inline constexpr Setting kBackColor = kSection.text(u"BackColor");
inline constexpr Setting kLinkColor = kSection.text(u"LinkColor");
inline constexpr Setting kALinkColor = kSection.text(u"ALinkColor");
inline constexpr Setting kVLinkColor = kSection.text(u"VLinkColor");
inline constexpr Setting kBackImage = kSection.text(u"BackImage").personal();
inline constexpr Setting kUpText = kSection.pieceName(u"UpText").personal();
inline constexpr Setting kDownText = kSection.pieceName(u"DownText").personal();
inline constexpr Setting kUpTextLog = kSection.pieceName(u"UpText_Log").personal();
inline constexpr Setting kDownTextLog = kSection.pieceName(u"DownText_Log").personal();
inline constexpr Setting kUpTextDiv = kSection.pieceName(u"UpText_Div").personal();
inline constexpr Setting kDownTextDiv = kSection.pieceName(u"DownText_Div").personal();
inline constexpr Setting kUpTextDivLog = kSection.pieceName(u"UpText_Div_Log").personal();
inline constexpr Setting kDownTextDivLog = kSection.pieceName(u"DownText_Div_Log").personal();
} // namespace body

namespace day_list {
inline constexpr SettingsSection kSection{SettingsFile::Customize, u"DayList"};
inline constexpr Setting kUse = kSection.flag(u"Use");
inline constexpr Setting kType = kSection.text(u"Type");
inline constexpr Setting kAddTitle = kSection.flag(u"AddTitle");
inline constexpr Setting kMarginLeft = kSection.number(u"MarginLeft");
} // namespace day_list

namespace calender {
inline constexpr SettingsSection kSection{SettingsFile::Customize, u"Calender"};
inline constexpr Setting kUse = kSection.flag(u"Use");
inline constexpr Setting kType = kSection.text(u"Type");
inline constexpr Setting kFirstDayOfWeek = kSection.number(u"FirstDayOfWeek");
inline constexpr Setting kTableAlign = kSection.text(u"TableAlign");
inline constexpr Setting kNoBorder = kSection.flag(u"NoBorder");
inline constexpr Setting kBorderSize = kSection.number(u"BorderSize");
inline constexpr Setting kCellPadding = kSection.number(u"CellPadding");
inline constexpr Setting kTableBGColor = kSection.text(u"TableBGColor");
inline constexpr Setting kTRBGColorTop = kSection.text(u"TRBGColorTop");
inline constexpr Setting kTRBGColor = kSection.text(u"TRBGColor");
inline constexpr Setting kBorderColor = kSection.text(u"BorderColor");
inline constexpr Setting kBorderColorLight = kSection.text(u"BorderColorLight");
inline constexpr Setting kBorderColorDark = kSection.text(u"BorderColorDark");
} // namespace calender

namespace contents {
inline constexpr SettingsSection kSection{SettingsFile::Customize, u"Contents"};
inline constexpr Setting kHTMLType = kSection.text(u"HTMLType");
inline constexpr Setting kTableBorder = kSection.number(u"TableBorder");
inline constexpr Setting kCellspacing = kSection.number(u"Cellspacing");
inline constexpr Setting kTableWidth = kSection.number(u"TableWidth");
inline constexpr Setting kTableBGColor = kSection.text(u"TableBGColor");
inline constexpr Setting kTBorderColor = kSection.text(u"TBorderColor");
inline constexpr Setting kTitleFTColor = kSection.text(u"TitleFTColor");
inline constexpr Setting kTitleBGColor = kSection.text(u"TitleBGColor");
inline constexpr Setting kTitleSpanTag = kSection.text(u"TitleSpanTag");
inline constexpr Setting kDayBGColor = kSection.text(u"DayBGColor");
inline constexpr Setting kDayFTColor = kSection.text(u"DayFTColor");
inline constexpr Setting kContentsBGColor = kSection.text(u"ContentsBGColor");
inline constexpr Setting kContentsFTColor = kSection.text(u"ContentsFTColor");
inline constexpr Setting kDayContentsAlign = kSection.text(u"DayContentsAlign");
} // namespace contents

namespace page_move_link {
inline constexpr SettingsSection kSection{SettingsFile::Customize, u"PageMoveLink"};
inline constexpr Setting kPageMoveOn = kSection.flag(u"PageMoveOn");
inline constexpr Setting kAlign = kSection.text(u"Align");
inline constexpr Setting kLanguage = kSection.text(u"Language");
inline constexpr Setting kSeparetor = kSection.text(u"Separetor");
} // namespace page_move_link

namespace calender_window {
inline constexpr SettingsSection kSection{SettingsFile::Customize, u"CalenderWindow"};
inline constexpr Setting kTextColor = kSection.text(u"TextColor");
inline constexpr Setting kBGColor = kSection.text(u"BGColor");
inline constexpr Setting kBGImage = kSection.text(u"BGImage").personal();
inline constexpr Setting kHeadTag = kSection.pieceName(u"HeadTag").personal();
inline constexpr Setting kUpText = kSection.pieceName(u"UpText").personal();
inline constexpr Setting kDownText = kSection.pieceName(u"DownText").personal();
} // namespace calender_window

namespace divide {
inline constexpr SettingsSection kSection{SettingsFile::Frame, u"Divide"};
inline constexpr Setting kDiaryDivide = kSection.flag(u"DiaryDivide");
inline constexpr Setting kDiaryTerm = kSection.number(u"DiaryTerm");
inline constexpr Setting kDiaryOnTop = kSection.flag(u"DiaryOnTop");
inline constexpr Setting kTopLink = kSection.text(u"TopLink");
inline constexpr Setting kLogDivide = kSection.flag(u"LogDivide");
inline constexpr Setting kUseFileName2Day = kSection.flag(u"UseFileName2Day");
} // namespace divide

namespace frame {
inline constexpr SettingsSection kSection{SettingsFile::Frame, u"Frame"};
inline constexpr Setting kFrameOn = kSection.flag(u"FrameOn");
inline constexpr Setting kCalenderFrameSize = kSection.text(u"CalenderFrameSize");
inline constexpr Setting kBorder = kSection.text(u"Border");
inline constexpr Setting kScrolling = kSection.flag(u"Scrolling");
inline constexpr Setting kResize = kSection.flag(u"Resize");
} // namespace frame

namespace rss {
inline constexpr SettingsSection kGeneral{SettingsFile::Rss, u"General"};
inline constexpr Setting kRSSOn = kGeneral.flag(u"RSSOn");
inline constexpr SettingsSection kSetting{SettingsFile::Rss, u"Setting"};
inline constexpr Setting kTitle = kSetting.text(u"Title", u"日記");
inline constexpr Setting kHPURL = kSetting.text(u"HPURL");
inline constexpr Setting kDiaryURL = kSetting.text(u"DiaryURL");
inline constexpr Setting kDescription = kSetting.text(u"Description", u"日記です。");
inline constexpr SettingsSection kRss2{SettingsFile::Rss, u"RSS2.0"};
inline constexpr Setting kManagingAuthor = kRss2.text(u"ManagingAuthor");
inline constexpr Setting kWebMaster = kRss2.text(u"WebMaster");
inline constexpr SettingsSection kAtom{SettingsFile::Rss, u"ATOM"};
inline constexpr Setting kAuthor = kAtom.text(u"Author");
} // namespace rss

namespace halo_scan {
inline constexpr SettingsSection kSection{SettingsFile::HaloScan, u"GENERAL"};
inline constexpr Setting kHaloScanOn = kSection.flag(u"HaloScanOn");
inline constexpr Setting kUserName = kSection.text(u"UserName");
} // namespace halo_scan

/// "Blog.ini": what a post gets, if nobody says otherwise.
namespace blog {
inline constexpr SettingsSection kSimple{SettingsFile::Blog, u"SIMPLE"};
inline constexpr Setting kStatus = kSimple.flag(u"Status", u"1");
inline constexpr Setting kAcceptComment = kSimple.flag(u"AcceptComment", u"1");
inline constexpr Setting kAcceptTrackBack = kSimple.flag(u"AcceptTrackBack", u"1");
inline constexpr Setting kPandBRTag = SettingsSection{SettingsFile::Blog, u"PandBRTag"}.flag(u"Type", u"1");
} // namespace blog

/// Who made a customize set that was exported.
namespace author {
inline constexpr SettingsSection kSection{SettingsFile::Customize, u"Author"};
inline constexpr Setting kName = kSection.text(u"Name");
inline constexpr Setting kURL = kSection.text(u"URL");
inline constexpr Setting kEmail = kSection.text(u"E-mail");
} // namespace author

/// Every setting of a customize set, in the order in which they stand above.
inline constexpr const Setting* kCustomizeSet[] = {
    &general::kHPTitle,
    &general::kStyleSheetURL,
    &general::kHeadTag,
    &general::kHeadTagDiv,
    &general::kHeadTagDivLog,
    &general::kTitleAlign,
    &general::kDayTitleAlign,
    &general::kUseLog,
    &general::kLogType,
    &general::kLogAlign,
    &general::kWeather,
    &general::kGenre,
    &general::kUseCategory,
    &general::kVellLinkOn,
    &general::kVellLinkText,
    &body::kTextColor,
    &body::kBackColor,
    &body::kLinkColor,
    &body::kALinkColor,
    &body::kVLinkColor,
    &body::kBackImage,
    &body::kUpText,
    &body::kDownText,
    &body::kUpTextLog,
    &body::kDownTextLog,
    &body::kUpTextDiv,
    &body::kDownTextDiv,
    &body::kUpTextDivLog,
    &body::kDownTextDivLog,
    &day_list::kUse,
    &day_list::kType,
    &day_list::kAddTitle,
    &day_list::kMarginLeft,
    &calender::kUse,
    &calender::kType,
    &calender::kFirstDayOfWeek,
    &calender::kTableAlign,
    &calender::kNoBorder,
    &calender::kBorderSize,
    &calender::kCellPadding,
    &calender::kTableBGColor,
    &calender::kTRBGColorTop,
    &calender::kTRBGColor,
    &calender::kBorderColor,
    &calender::kBorderColorLight,
    &calender::kBorderColorDark,
    &contents::kHTMLType,
    &contents::kTableBorder,
    &contents::kCellspacing,
    &contents::kTableWidth,
    &contents::kTableBGColor,
    &contents::kTBorderColor,
    &contents::kTitleFTColor,
    &contents::kTitleBGColor,
    &contents::kTitleSpanTag,
    &contents::kDayBGColor,
    &contents::kDayFTColor,
    &contents::kContentsBGColor,
    &contents::kContentsFTColor,
    &contents::kDayContentsAlign,
    &page_move_link::kPageMoveOn,
    &page_move_link::kAlign,
    &page_move_link::kLanguage,
    &page_move_link::kSeparetor,
    &calender_window::kTextColor,
    &calender_window::kBGColor,
    &calender_window::kBGImage,
    &calender_window::kHeadTag,
    &calender_window::kUpText,
    &calender_window::kDownText,
};

} // namespace velloria::core::keys
