// The keys of the site settings, each spelt once. An odd spelling is the file format's.
#pragma once

#include "site/site_settings.h"

namespace velloria::site::keys {

namespace general {
inline constexpr SiteKey kHPTitle{SettingsFile::Customize, QLatin1StringView("General"), QLatin1StringView("HPTitle")};
inline constexpr SiteKey kStyleSheetURL{SettingsFile::Customize, QLatin1StringView("General"),
                                        QLatin1StringView("StyleSheetURL")};
inline constexpr SiteKey kHeadTag{SettingsFile::Customize, QLatin1StringView("General"), QLatin1StringView("HeadTag")};
inline constexpr SiteKey kHeadTagDiv{SettingsFile::Customize, QLatin1StringView("General"),
                                     QLatin1StringView("HeadTag_Div")};
inline constexpr SiteKey kHeadTagDivLog{SettingsFile::Customize, QLatin1StringView("General"),
                                        QLatin1StringView("HeadTag_Div_Log")};
inline constexpr SiteKey kTitleAlign{SettingsFile::Customize, QLatin1StringView("General"),
                                     QLatin1StringView("TitleAlign")};
inline constexpr SiteKey kDayTitleAlign{SettingsFile::Customize, QLatin1StringView("General"),
                                        QLatin1StringView("DayTitleAlign")};
inline constexpr SiteKey kUseLog{SettingsFile::Customize, QLatin1StringView("General"), QLatin1StringView("UseLog")};
inline constexpr SiteKey kLogType{SettingsFile::Customize, QLatin1StringView("General"), QLatin1StringView("LogType")};
inline constexpr SiteKey kLogAlign{SettingsFile::Customize, QLatin1StringView("General"),
                                   QLatin1StringView("LogAlign")};
inline constexpr SiteKey kWeather{SettingsFile::Customize, QLatin1StringView("General"), QLatin1StringView("Weather")};
inline constexpr SiteKey kGenre{SettingsFile::Customize, QLatin1StringView("General"), QLatin1StringView("Genre")};
/// Read with the others and used by nothing: old sets have it.
inline constexpr SiteKey kUseCategory{SettingsFile::Customize, QLatin1StringView("General"),
                                      QLatin1StringView("UseCategory")};
inline constexpr SiteKey kVellLinkOn{SettingsFile::Customize, QLatin1StringView("General"),
                                     QLatin1StringView("VellLinkOn")};
inline constexpr SiteKey kVellLinkText{SettingsFile::Customize, QLatin1StringView("General"),
                                       QLatin1StringView("VellLinkText")};
} // namespace general

namespace body {
inline constexpr SiteKey kTextColor{SettingsFile::Customize, QLatin1StringView("Body"), QLatin1StringView("TextColor")};
inline constexpr SiteKey kBackColor{SettingsFile::Customize, QLatin1StringView("Body"), QLatin1StringView("BackColor")};
inline constexpr SiteKey kLinkColor{SettingsFile::Customize, QLatin1StringView("Body"), QLatin1StringView("LinkColor")};
inline constexpr SiteKey kALinkColor{SettingsFile::Customize, QLatin1StringView("Body"),
                                     QLatin1StringView("ALinkColor")};
inline constexpr SiteKey kVLinkColor{SettingsFile::Customize, QLatin1StringView("Body"),
                                     QLatin1StringView("VLinkColor")};
inline constexpr SiteKey kBackImage{SettingsFile::Customize, QLatin1StringView("Body"), QLatin1StringView("BackImage")};
inline constexpr SiteKey kUpText{SettingsFile::Customize, QLatin1StringView("Body"), QLatin1StringView("UpText")};
inline constexpr SiteKey kDownText{SettingsFile::Customize, QLatin1StringView("Body"), QLatin1StringView("DownText")};
inline constexpr SiteKey kUpTextLog{SettingsFile::Customize, QLatin1StringView("Body"),
                                    QLatin1StringView("UpText_Log")};
inline constexpr SiteKey kDownTextLog{SettingsFile::Customize, QLatin1StringView("Body"),
                                      QLatin1StringView("DownText_Log")};
inline constexpr SiteKey kUpTextDiv{SettingsFile::Customize, QLatin1StringView("Body"),
                                    QLatin1StringView("UpText_Div")};
inline constexpr SiteKey kDownTextDiv{SettingsFile::Customize, QLatin1StringView("Body"),
                                      QLatin1StringView("DownText_Div")};
inline constexpr SiteKey kUpTextDivLog{SettingsFile::Customize, QLatin1StringView("Body"),
                                       QLatin1StringView("UpText_Div_Log")};
inline constexpr SiteKey kDownTextDivLog{SettingsFile::Customize, QLatin1StringView("Body"),
                                         QLatin1StringView("DownText_Div_Log")};
} // namespace body

namespace day_list {
inline constexpr SiteKey kUse{SettingsFile::Customize, QLatin1StringView("DayList"), QLatin1StringView("Use")};
inline constexpr SiteKey kType{SettingsFile::Customize, QLatin1StringView("DayList"), QLatin1StringView("Type")};
inline constexpr SiteKey kAddTitle{SettingsFile::Customize, QLatin1StringView("DayList"),
                                   QLatin1StringView("AddTitle")};
inline constexpr SiteKey kMarginLeft{SettingsFile::Customize, QLatin1StringView("DayList"),
                                     QLatin1StringView("MarginLeft")};
} // namespace day_list

namespace calender {
inline constexpr SiteKey kUse{SettingsFile::Customize, QLatin1StringView("Calender"), QLatin1StringView("Use")};
inline constexpr SiteKey kType{SettingsFile::Customize, QLatin1StringView("Calender"), QLatin1StringView("Type")};
inline constexpr SiteKey kFirstDayOfWeek{SettingsFile::Customize, QLatin1StringView("Calender"),
                                         QLatin1StringView("FirstDayOfWeek")};
inline constexpr SiteKey kTableAlign{SettingsFile::Customize, QLatin1StringView("Calender"),
                                     QLatin1StringView("TableAlign")};
inline constexpr SiteKey kNoBorder{SettingsFile::Customize, QLatin1StringView("Calender"),
                                   QLatin1StringView("NoBorder")};
inline constexpr SiteKey kBorderSize{SettingsFile::Customize, QLatin1StringView("Calender"),
                                     QLatin1StringView("BorderSize")};
inline constexpr SiteKey kCellPadding{SettingsFile::Customize, QLatin1StringView("Calender"),
                                      QLatin1StringView("CellPadding")};
inline constexpr SiteKey kTableBGColor{SettingsFile::Customize, QLatin1StringView("Calender"),
                                       QLatin1StringView("TableBGColor")};
inline constexpr SiteKey kTRBGColorTop{SettingsFile::Customize, QLatin1StringView("Calender"),
                                       QLatin1StringView("TRBGColorTop")};
inline constexpr SiteKey kTRBGColor{SettingsFile::Customize, QLatin1StringView("Calender"),
                                    QLatin1StringView("TRBGColor")};
inline constexpr SiteKey kBorderColor{SettingsFile::Customize, QLatin1StringView("Calender"),
                                      QLatin1StringView("BorderColor")};
inline constexpr SiteKey kBorderColorLight{SettingsFile::Customize, QLatin1StringView("Calender"),
                                           QLatin1StringView("BorderColorLight")};
inline constexpr SiteKey kBorderColorDark{SettingsFile::Customize, QLatin1StringView("Calender"),
                                          QLatin1StringView("BorderColorDark")};
} // namespace calender

namespace contents {
inline constexpr SiteKey kHTMLType{SettingsFile::Customize, QLatin1StringView("Contents"),
                                   QLatin1StringView("HTMLType")};
inline constexpr SiteKey kTableBorder{SettingsFile::Customize, QLatin1StringView("Contents"),
                                      QLatin1StringView("TableBorder")};
inline constexpr SiteKey kCellspacing{SettingsFile::Customize, QLatin1StringView("Contents"),
                                      QLatin1StringView("Cellspacing")};
inline constexpr SiteKey kTableWidth{SettingsFile::Customize, QLatin1StringView("Contents"),
                                     QLatin1StringView("TableWidth")};
inline constexpr SiteKey kTableBGColor{SettingsFile::Customize, QLatin1StringView("Contents"),
                                       QLatin1StringView("TableBGColor")};
inline constexpr SiteKey kTBorderColor{SettingsFile::Customize, QLatin1StringView("Contents"),
                                       QLatin1StringView("TBorderColor")};
inline constexpr SiteKey kTitleFTColor{SettingsFile::Customize, QLatin1StringView("Contents"),
                                       QLatin1StringView("TitleFTColor")};
inline constexpr SiteKey kTitleBGColor{SettingsFile::Customize, QLatin1StringView("Contents"),
                                       QLatin1StringView("TitleBGColor")};
inline constexpr SiteKey kTitleSpanTag{SettingsFile::Customize, QLatin1StringView("Contents"),
                                       QLatin1StringView("TitleSpanTag")};
inline constexpr SiteKey kDayBGColor{SettingsFile::Customize, QLatin1StringView("Contents"),
                                     QLatin1StringView("DayBGColor")};
inline constexpr SiteKey kDayFTColor{SettingsFile::Customize, QLatin1StringView("Contents"),
                                     QLatin1StringView("DayFTColor")};
inline constexpr SiteKey kContentsBGColor{SettingsFile::Customize, QLatin1StringView("Contents"),
                                          QLatin1StringView("ContentsBGColor")};
inline constexpr SiteKey kContentsFTColor{SettingsFile::Customize, QLatin1StringView("Contents"),
                                          QLatin1StringView("ContentsFTColor")};
inline constexpr SiteKey kDayContentsAlign{SettingsFile::Customize, QLatin1StringView("Contents"),
                                           QLatin1StringView("DayContentsAlign")};
} // namespace contents

namespace page_move_link {
inline constexpr SiteKey kPageMoveOn{SettingsFile::Customize, QLatin1StringView("PageMoveLink"),
                                     QLatin1StringView("PageMoveOn")};
inline constexpr SiteKey kAlign{SettingsFile::Customize, QLatin1StringView("PageMoveLink"), QLatin1StringView("Align")};
inline constexpr SiteKey kLanguage{SettingsFile::Customize, QLatin1StringView("PageMoveLink"),
                                   QLatin1StringView("Language")};
inline constexpr SiteKey kSeparetor{SettingsFile::Customize, QLatin1StringView("PageMoveLink"),
                                    QLatin1StringView("Separetor")};
} // namespace page_move_link

namespace calender_window {
inline constexpr SiteKey kTextColor{SettingsFile::Customize, QLatin1StringView("CalenderWindow"),
                                    QLatin1StringView("TextColor")};
inline constexpr SiteKey kBGColor{SettingsFile::Customize, QLatin1StringView("CalenderWindow"),
                                  QLatin1StringView("BGColor")};
inline constexpr SiteKey kBGImage{SettingsFile::Customize, QLatin1StringView("CalenderWindow"),
                                  QLatin1StringView("BGImage")};
inline constexpr SiteKey kHeadTag{SettingsFile::Customize, QLatin1StringView("CalenderWindow"),
                                  QLatin1StringView("HeadTag")};
inline constexpr SiteKey kUpText{SettingsFile::Customize, QLatin1StringView("CalenderWindow"),
                                 QLatin1StringView("UpText")};
inline constexpr SiteKey kDownText{SettingsFile::Customize, QLatin1StringView("CalenderWindow"),
                                   QLatin1StringView("DownText")};
} // namespace calender_window

namespace divide {
inline constexpr SiteKey kDiaryDivide{SettingsFile::Frame, QLatin1StringView("Divide"),
                                      QLatin1StringView("DiaryDivide")};
inline constexpr SiteKey kDiaryTerm{SettingsFile::Frame, QLatin1StringView("Divide"), QLatin1StringView("DiaryTerm")};
inline constexpr SiteKey kDiaryOnTop{SettingsFile::Frame, QLatin1StringView("Divide"), QLatin1StringView("DiaryOnTop")};
inline constexpr SiteKey kTopLink{SettingsFile::Frame, QLatin1StringView("Divide"), QLatin1StringView("TopLink")};
inline constexpr SiteKey kLogDivide{SettingsFile::Frame, QLatin1StringView("Divide"), QLatin1StringView("LogDivide")};
inline constexpr SiteKey kUseFileName2Day{SettingsFile::Frame, QLatin1StringView("Divide"),
                                          QLatin1StringView("UseFileName2Day")};
} // namespace divide

namespace frame {
inline constexpr SiteKey kFrameOn{SettingsFile::Frame, QLatin1StringView("Frame"), QLatin1StringView("FrameOn")};
inline constexpr SiteKey kCalenderFrameSize{SettingsFile::Frame, QLatin1StringView("Frame"),
                                            QLatin1StringView("CalenderFrameSize")};
inline constexpr SiteKey kBorder{SettingsFile::Frame, QLatin1StringView("Frame"), QLatin1StringView("Border")};
inline constexpr SiteKey kScrolling{SettingsFile::Frame, QLatin1StringView("Frame"), QLatin1StringView("Scrolling")};
inline constexpr SiteKey kResize{SettingsFile::Frame, QLatin1StringView("Frame"), QLatin1StringView("Resize")};
} // namespace frame

namespace rss {
inline constexpr SiteKey kRSSOn{SettingsFile::Rss, QLatin1StringView("GENERAL"), QLatin1StringView("RSSOn")};
inline constexpr SiteKey kTitle{SettingsFile::Rss, QLatin1StringView("Setting"), QLatin1StringView("Title")};
inline constexpr SiteKey kHPURL{SettingsFile::Rss, QLatin1StringView("Setting"), QLatin1StringView("HPURL")};
inline constexpr SiteKey kDiaryURL{SettingsFile::Rss, QLatin1StringView("Setting"), QLatin1StringView("DiaryURL")};
inline constexpr SiteKey kDescription{SettingsFile::Rss, QLatin1StringView("Setting"),
                                      QLatin1StringView("Description")};
inline constexpr SiteKey kManagingAuthor{SettingsFile::Rss, QLatin1StringView("RSS2.0"),
                                         QLatin1StringView("ManagingAuthor")};
inline constexpr SiteKey kWebMaster{SettingsFile::Rss, QLatin1StringView("RSS2.0"), QLatin1StringView("WebMaster")};
inline constexpr SiteKey kAuthor{SettingsFile::Rss, QLatin1StringView("ATOM"), QLatin1StringView("Author")};
} // namespace rss

namespace halo_scan {
inline constexpr SiteKey kHaloScanOn{SettingsFile::HaloScan, QLatin1StringView("GENERAL"),
                                     QLatin1StringView("HaloScanOn")};
inline constexpr SiteKey kUserName{SettingsFile::HaloScan, QLatin1StringView("GENERAL"), QLatin1StringView("UserName")};
} // namespace halo_scan

namespace endpoints {
inline constexpr SiteKey kHomePage{SettingsFile::Endpoints, QLatin1StringView("Maker"), QLatin1StringView("HomePage")};
inline constexpr SiteKey kScript{SettingsFile::Endpoints, QLatin1StringView("HaloScan"), QLatin1StringView("Script")};
inline constexpr SiteKey kHome{SettingsFile::Endpoints, QLatin1StringView("HaloScan"), QLatin1StringView("Home")};
inline constexpr SiteKey kLogo{SettingsFile::Endpoints, QLatin1StringView("HaloScan"), QLatin1StringView("Logo")};
inline constexpr SiteKey kAlt{SettingsFile::Endpoints, QLatin1StringView("HaloScan"), QLatin1StringView("Alt")};
} // namespace endpoints

} // namespace velloria::site::keys
