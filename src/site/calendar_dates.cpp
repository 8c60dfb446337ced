#include "site/calendar_dates.h"

#include "platform/failure.h"
#include "site/division.h"

using namespace Qt::StringLiterals;

namespace velloria::site {

bool IsLeapYear(int year) {
    return (IsMultiple(year, 4) && !IsMultiple(year, 100)) || IsMultiple(year, 400);
}

int GetMonthDays(int year, int month) {
    constexpr int kDays[] = {31, 28, 31, 30, 31, 30, 31, 31, 30, 31, 30, 31};
    if (month < 1 || month > 12)
        return 0;
    return month == 2 && IsLeapYear(year) ? 29 : kDays[month - 1];
}

int GetFirstWeekday(int year, int month) {
    if (year < 2000)
        throw platform::Failure(
            u"%1年%2月のカレンダーは作成できません。"_s.arg(year).arg(month), {}, u"2000年より前の年です。"_s,
            u"元のページはそのままです。カレンダーとフレームを使わない設定にすると、この月も作成できます。"_s);
    constexpr int kMonthOffsets[] = {0, 3, 3, 6, 8, 11, 13, 16, 19, 21, 24, 26};
    const int d = year - 2000;
    const int n = d / 4 + (year - 1994) - d / 100 + d / 400;
    int m = month < 1 || month > 12 ? 0 : kMonthOffsets[month - 1];
    if (month <= 2 && IsLeapYear(year))
        --m;
    return (m + n) % 7;
}

QString GetWeekdayName(int index, const QString& type) {
    static const QString kJapanese[] = {u"日"_s, u"月"_s, u"火"_s, u"水"_s, u"木"_s, u"金"_s, u"土"_s};
    static const QString kEnglish[] = {u"Sun"_s, u"Mon"_s, u"Tue"_s, u"Wed"_s, u"Thu"_s, u"Fri"_s, u"Sat"_s};
    if (index < 0 || index > 6)
        return {};
    return type == u"1"_s ? kJapanese[index] : kEnglish[index];
}

} // namespace velloria::site
