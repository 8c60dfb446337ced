#include "plain_month.h"

#include <chrono>
#include <cstdio>
#include <filesystem>
#include <iconv.h>
#include <set>
#include <sqlite3.h>
#include <stdexcept>
#include <vector>

namespace velloria::bench {

const char kPlainSettings[] = "[General]\r\n"
                              "HPTitle=Diary\r\n"
                              "TitleAlign=Left\r\n"
                              "DayTitleAlign=Left\r\n"
                              "UseLog=1\r\n"
                              "LogType=Normal\r\n"
                              "LogAlign=Left\r\n"
                              "Weather=1\r\n"
                              "Genre=1\r\n"
                              "VellLinkOn=0\r\n"
                              "[Body]\r\n"
                              "TextColor=#404040\r\n"
                              "BackColor=#F6F4EE\r\n"
                              "LinkColor=#2F6F73\r\n"
                              "ALinkColor=#C2663D\r\n"
                              "VLinkColor=#6B6A86\r\n"
                              "[DayList]\r\n"
                              "Use=1\r\n"
                              "Type=Table\r\n"
                              "AddTitle=1\r\n"
                              "MarginLeft=8\r\n"
                              "[Calender]\r\n"
                              "Use=1\r\n"
                              "Type=1\r\n"
                              "TableAlign=Right\r\n"
                              "NoBorder=1\r\n"
                              "CellPadding=4\r\n"
                              "TableBGColor=#FFFFFF\r\n"
                              "TRBGColorTop=#E3ECE7\r\n"
                              "TRBGColor=#FFFFFF\r\n"
                              "[Contents]\r\n"
                              "HTMLType=1\r\n"
                              "TableWidth=100\r\n"
                              "TableBGColor=#FFFFFF\r\n"
                              "TBorderColor=#C9D6D0\r\n"
                              "TitleFTColor=#24504D\r\n"
                              "TitleBGColor=#E3ECE7\r\n"
                              "TitleSpanTag=font-weight:bold\r\n"
                              "DayBGColor=#E3ECE7\r\n"
                              "DayFTColor=#5A716C\r\n"
                              "ContentsBGColor=#FFFFFF\r\n"
                              "ContentsFTColor=#404040\r\n"
                              "DayContentsAlign=Left\r\n"
                              "[PageMoveLink]\r\n"
                              "PageMoveOn=1\r\n"
                              "Align=Center\r\n"
                              "Language=Japanese\r\n";

namespace {

struct Entry {
    std::string day;
    std::string number;
    std::string title;
    std::string contents;
    std::string extend;
    bool hasExtend = false;
    std::string weather;
    std::string genre;
};

class Query {
public:
    Query(sqlite3* database, const std::string& sql) {
        if (sqlite3_prepare_v2(database, sql.c_str(), -1, &m_statement, nullptr) != SQLITE_OK)
            throw std::runtime_error(sqlite3_errmsg(database));
    }
    ~Query() { sqlite3_finalize(m_statement); }
    Query(const Query&) = delete;
    Query& operator=(const Query&) = delete;

    bool next() { return sqlite3_step(m_statement) == SQLITE_ROW; }
    bool isNull(int column) const { return sqlite3_column_type(m_statement, column) == SQLITE_NULL; }
    std::string text(int column) const {
        const auto* bytes = reinterpret_cast<const char*>(sqlite3_column_text(m_statement, column));
        return bytes ? std::string(bytes, std::size_t(sqlite3_column_bytes(m_statement, column))) : std::string();
    }

private:
    sqlite3_stmt* m_statement = nullptr;
};

std::vector<Entry> readEntries(sqlite3* database, const PlainMonth& month) {
    const std::string key = month.year + '/' + month.month;
    Query rows(database, "SELECT Day, Number, Title, Contents, Extend, Excerpt, Weather, Genre, PublishTime, Private, "
                         "ImportMark, RecordID FROM Contents WHERE Day >= '" +
                             key + "' AND Day < '" + key + "0'" + (month.withPrivate ? "" : " AND Private = 0") +
                             " ORDER BY Day DESC, Number DESC, RecordID DESC");
    std::vector<Entry> entries;
    while (rows.next())
        entries.push_back({rows.text(0), rows.text(1), rows.text(2), rows.text(3), rows.text(4), !rows.isNull(4),
                           rows.text(6), rows.text(7)});
    return entries;
}

void printHead(std::string& page, const PlainMonth& month) {
    page += "<HTML lang=\"ja\">\r\n<HEAD>\r\n"
            "<meta http-equiv=Content-Type content=\"text/html; charset=shift_jis\">\r\n"
            "<meta name=Generator content=\"Velloria v2.2.0\">\r\n<TITLE>Diary</TITLE>\r\n\r\n</HEAD>\r\n"
            "<BODY TEXT='#404040' BGCOLOR='#F6F4EE' background='' link='#2F6F73' alink='#C2663D' vlink='#6B6A86'>\r\n"
            "<!-- 上追加テキスト(ここから) by Velloria -->\r\n\r\n<!-- 上追加テキスト(ここまで) by Velloria  -->\r\n"
            "<a name=this_month></a><H3 align=Left><a name=TOP>" +
            month.year + "年" + std::to_string(std::stoi(month.month)) + "月分</a></H3>\r\n\r\n";
}

void printCalendar(std::string& page, const PlainMonth& month, const std::vector<Entry>& entries) {
    using namespace std::chrono;
    std::set<std::string> days;
    for (const Entry& entry : entries)
        days.insert(entry.day);
    const year_month first = year(std::stoi(month.year)) / std::stoi(month.month);
    const int count = int(unsigned((first / last).day()));
    const int daysBefore = int(unsigned(((first - months(1)) / last).day()));
    const int weekday = int(std::chrono::weekday(sys_days(first / 1)).c_encoding());

    page += "<DIV ALIGN=RIGHT>\r\n<table bgcolor='#FFFFFF' cellpadding=4>\r\n<tr align=center bgcolor='#E3ECE7'>"
            "<td><font color='red'>日</font></td><td>月</td><td>火</td><td>水</td><td>木</td><td>金</td>"
            "<td><font color='blue'>土</font></td></tr>\r\n";
    for (int row = 0; row * 7 - weekday < count; ++row) {
        page += "<tr align=center bgcolor='#FFFFFF'>";
        for (int column = 0; column < 7; ++column) {
            const int number = row * 7 - weekday + column + 1;
            if (number < 1 || number > count) {
                page += "<td><font color='gray'>" + std::to_string(number < 1 ? daysBefore + number : number - count) +
                        "</font></td>";
                continue;
            }
            char day[16];
            std::snprintf(day, sizeof day, "%s/%s/%02d", month.year.c_str(), month.month.c_str(), number);
            if (days.count(day))
                page += "<td><a href=./" + month.name + '#' + day + " target=\"_self\">" + std::to_string(number) +
                        "</a></td>";
            else
                page += "<td>" + std::to_string(number) + "</td>";
        }
        page += "</tr>\r\n";
    }
    page += "</table>\r\n</DIV>\r\n<BR>\r\n";
}

void printList(std::string& page, const std::vector<Entry>& entries) {
    page += "<div style=margin-left:8pt>\r\n<TABLE>\r\n";
    for (const Entry& entry : entries)
        page += "<TR><TD><a href=\"#" + entry.day + '_' + entry.number + "\">" + entry.day + "</a></TD><TD>[" +
                entry.genre + "]　</TD><TD>" + entry.title + "</TD></TR>\r\n";
    page += "</TABLE>\r\n</div>\r\n\r\n<HR>\r\n\r\n";
}

const char* pictureOf(const std::string& weather) {
    if (weather == "晴")
        return "Shinny.gif";
    if (weather == "曇")
        return "Cloudy.gif";
    if (weather == "雨")
        return "Rainy.gif";
    if (weather == "雪")
        return "Snowy.gif";
    return weather == "雷" ? "Thunder.gif" : nullptr;
}

void printEntry(std::string& page, const Entry& entry) {
    const char* picture = pictureOf(entry.weather);
    page += "<A Name=\"" + entry.day +
            "\"></A>\r\n<DIV ALIGN=Left>\r\n"
            "<TABLE BORDER=0 BGCOLOR=\"#FFFFFF\" CELLSPACING=0 BORDERCOLOR=#C9D6D0 width=100%>\r\n"
            "<TR><TD ALIGN=Left BGCOLOR=#E3ECE7 WIDTH=100%><A NAME=\"" +
            entry.day + '_' + entry.number + "\"><FONT COLOR=#24504D><SPAN STYLE=\"font-weight:bold\">" + entry.title +
            "</SPAN></A></FONT></TD><TD ALIGN=RIGHT BGCOLOR=#E3ECE7><FONT COLOR=#5A716C><NOBR>[" + entry.genre +
            "]</NOBR></FONT></TD><TD ALIGN=RIGHT BGCOLOR=#E3ECE7><FONT COLOR=#5A716C>" + entry.day + "</FONT></TD>";
    if (picture)
        page += std::string("<TD width=16pt BGCOLOR=#E3ECE7><IMG SRC=\"./DiaryParts/") + picture + "\"></TD>";
    page += std::string("</TR>\r\n<TR><TD COLSPAN=") + (picture ? "4" : "3") +
            " BGCOLOR=#FFFFFF><FONT COLOR=#404040><!--[Contents]--><br>" + entry.contents + "\r\n";
    if (entry.hasExtend)
        page += "\r\n<!--[extend]--><br>" + entry.extend;
    page += "</FONT></TD></TR>\r\n</TABLE></DIV>\r\n"
            "<DIV ALIGN=\"RIGHT\"><A HREF=\"#this_month\">top</A></DIV><BR>\r\n";
}

void printFoot(std::string& page, sqlite3* database, const PlainMonth& month) {
    page += "<div align=Center style=margin-left:8pt>\r\n<A HREF=\"./" + month.name +
            "\">先頭へ</A>\r\n</DIV>\r\n"
            "<HR>\r\n<P Align=Left>\r\n<div style=margin-left:8pt>\r\n<A HREF=\"#this_month\">今月分</A><BR>\r\n";
    Query logs(database, "SELECT LogMonth, LogFileName FROM LogDB ORDER BY rowid");
    while (logs.next())
        page += "<A HREF=\"./DiaryLog/" + logs.text(1) + "\">" + logs.text(0) + "月分</A><BR>\r\n";
    page += "</DIV>\r\n</P>\r\n<!-- 下追加テキスト(ここから) By Velloria -->\r\n\r\n"
            "<!-- 下追加テキスト(ここまで) By Velloria -->\r\n</BODY>\r\n</HTML>\r\n";
}

std::string toCodePage(std::string text) {
    iconv_t converter = iconv_open("CP932", "UTF-8");
    std::string bytes(text.size(), '\0');
    char* from = text.data();
    char* to = bytes.data();
    std::size_t fromLeft = text.size();
    std::size_t toLeft = bytes.size();
    const bool isDone = iconv(converter, &from, &fromLeft, &to, &toLeft) != std::size_t(-1);
    iconv_close(converter);
    if (!isDone)
        throw std::runtime_error("a character that code page 932 lacks");
    bytes.resize(bytes.size() - toLeft);
    return bytes;
}

void writeFile(const std::string& path, const std::string& bytes) {
    const std::string temporary = path + ".new";
    std::FILE* file = std::fopen(temporary.c_str(), "wb");
    if (!file || std::fwrite(bytes.data(), 1, bytes.size(), file) != bytes.size() || std::fclose(file) != 0 ||
        std::rename(temporary.c_str(), path.c_str()) != 0)
        throw std::runtime_error("can't write " + path);
}

/// The rest of Save HTML: which files of the month and of all months does the site folder still lack?
void lookForFiles(sqlite3* database, const PlainMonth& month) {
    const std::string key = month.year + '/' + month.month;
    Query files(database, "SELECT FileName, Day FROM FileDB WHERE Day IS NOT NULL ORDER BY FileID");
    Query common(database, "SELECT FileName FROM FileDB WHERE Day = 'ALL' AND Uploaded = 0 ORDER BY FileID");
    const auto look = [&](const std::string& name) {
        if (!std::filesystem::exists(month.folder + "/DiaryParts/" + name))
            throw std::runtime_error("the site folder lacks " + name);
    };
    while (files.next()) {
        if (files.text(1).substr(0, 7) == key)
            look(files.text(0));
    }
    while (common.next())
        look(common.text(0));
}

} // namespace

void writePlainMonth(const PlainMonth& month) {
    sqlite3* database = nullptr;
    if (sqlite3_open_v2(month.database.c_str(), &database, SQLITE_OPEN_READONLY, nullptr) != SQLITE_OK)
        throw std::runtime_error("can't open " + month.database);
    const std::vector<Entry> entries = readEntries(database, month);
    std::string page;
    printHead(page, month);
    printCalendar(page, month, entries);
    printList(page, entries);
    for (const Entry& entry : entries)
        printEntry(page, entry);
    printFoot(page, database, month);
    writeFile(month.folder + '/' + month.name, toCodePage(std::move(page)));
    if (!month.uploadList.empty()) {
        writeFile(month.uploadList, month.folder + ',' + month.name + "\r\n");
        lookForFiles(database, month);
    }
    sqlite3_close(database);
}

} // namespace velloria::bench
