#include "site/calendar_page.h"

#include "core/numbers.h"
#include "core/path_names.h"
#include "core/site_keys.h"
#include "site/calendar_dates.h"

using namespace Qt::StringLiterals;

namespace velloria::site {
namespace {

class Grid {
public:
    Grid(MonthRun& run, int year, int month, QString target)
        : m_run(run)
        , m_page(run.pages.append(run.plan.calenderFile()))
        , m_year(year)
        , m_month(month)
        , m_target(std::move(target))
        , m_firstDayOfWeek(run.settings.number(keys::calender::kFirstDayOfWeek))
        , m_rowStart(u"<tr align=center bgcolor='"_s + run.settings.text(keys::calender::kTRBGColor) + u"'>"_s) {}

    void print() {
        const int firstWeekday = GetFirstWeekday(m_year, m_month);
        printAlignment();
        printTableStart();
        printWeekdays();
        const int next = printFirstRow(firstWeekday);
        printFurtherRows(next);
        m_page.print(u"</table>"_s);
        m_page.print(u"</DIV>"_s);
    }

private:
    void printAlignment() {
        const QString align = m_run.settings.text(keys::calender::kTableAlign).toLower();
        if (align == u"right"_s || align == u"center"_s || align == u"left"_s)
            m_page.print(u"<DIV ALIGN="_s, align.toUpper(), u">"_s);
    }

    void printTableStart() {
        const SiteSettings& settings = m_run.settings;
        const QString start = u"<table bgcolor='"_s + settings.text(keys::calender::kTableBGColor) +
                              u"' cellpadding="_s + QString::number(settings.number(keys::calender::kCellPadding));
        if (settings.isOn(keys::calender::kNoBorder)) {
            m_page.print(start, u">"_s);
            return;
        }
        m_page.print(start, u" border="_s, QString::number(settings.number(keys::calender::kBorderSize)),
                     u" bordercolor='"_s, settings.text(keys::calender::kBorderColor), u"' bordercolorlight='"_s,
                     settings.text(keys::calender::kBorderColorLight), u"' bordercolordark='"_s,
                     settings.text(keys::calender::kBorderColorDark), u"'>"_s);
    }

    void printWeekdays() {
        const QString type = m_run.settings.text(keys::calender::kType);
        QString row = u"<tr align=center bgcolor='"_s + m_run.settings.text(keys::calender::kTRBGColorTop) + u"'>"_s;
        for (int i = 0; i <= 6; ++i) {
            const int weekday = m_firstDayOfWeek + i;
            const QString name = GetWeekdayName(weekday, type);
            if (weekday == 0)
                row += u"<td><font color='red'>"_s + name + u"</font></td>"_s;
            else if (weekday == 6)
                row += u"<td><font color='blue'>"_s + name + u"</font></td>"_s;
            else
                row += u"<td>"_s + name + u"</td>"_s;
        }
        m_page.print(row, u"</tr>"_s);
    }

    /// Returns the first day of the second row.
    int printFirstRow(int firstWeekday) {
        const int daysBefore = m_month == 1 ? GetMonthDays(m_year - 1, 12) : GetMonthDays(m_year, m_month - 1);
        QString row = m_rowStart;
        for (int day = daysBefore - (firstWeekday + m_firstDayOfWeek); day <= daysBefore; ++day)
            row += greyCell(day);
        int c = m_firstDayOfWeek;
        for (; c <= 5 - firstWeekday + m_firstDayOfWeek; ++c)
            row += dayCell(c + 1);
        m_page.print(row, u"</tr>"_s);
        return c + 1;
    }

    void printFurtherRows(int next) {
        const int days = GetMonthDays(m_year, m_month);
        while (next <= days) {
            QString row = m_rowStart;
            int greyDay = 1;
            for (int position = 0; position < 7; ++position)
                row += next <= days ? dayCell(next++) : greyCell(greyDay++);
            m_page.print(row, u"</tr>"_s);
        }
    }

    static QString greyCell(int day) { return u"<td><font color='gray'>"_s + QString::number(day) + u"</font></td>"_s; }

    QString dayCell(int day) const {
        const QString number = QString::number(day);
        const QString date = u"%1/%2/%3"_s.arg(m_year).arg(core::twoDigits(m_month), core::twoDigits(day));
        if (!m_run.days.contains(date))
            return u"<td>"_s + number + u"</td>"_s;
        return u"<td><a href=./"_s + address(date) + u" target=\""_s + m_target + u"\">"_s + number + u"</a></td>"_s;
    }

    QString address(const QString& date) const {
        const std::optional<QString> otherFile = m_run.plan.otherFileOf(date);
        if (otherFile && m_run.plan.hasDayFiles())
            return *otherFile;
        return otherFile.value_or(core::GetFileName(m_run.plan.diaryFile())) + u'#' + date;
    }

    MonthRun& m_run;
    Page& m_page;
    int m_year;
    int m_month;
    QString m_target;
    int m_firstDayOfWeek;
    QString m_rowStart;
};

} // namespace

void MakeCalender(MonthRun& run, int year, int month, const QString& target) {
    Grid(run, year, month, target).print();
}

} // namespace velloria::site
