#include "core/date_forms.h"

#include "core/numbers.h"
#include "platform/text_fold.h"

#include <QLocale>
#include <QRegularExpression>
#include <QStringList>

#include <array>
#include <cmath>
#include <initializer_list>

using namespace Qt::StringLiterals;

namespace velloria::core {
namespace {

using YearMonthDay = std::array<int, 3>;

/// The day from which a date's number counts, and the day of a time alone.
QDate dayZero() {
    return QDate(1899, 12, 30);
}

int fullYear(int year) {
    if (year < 30)
        return 2000 + year;
    return year < 100 ? 1900 + year : year;
}

std::optional<QDate> firstDayAmong(std::initializer_list<YearMonthDay> readings) {
    for (const auto& [year, month, day] : readings) {
        if (year <= 9999 && QDate::isValid(year, month, day))
            return QDate(year, month, day);
    }
    return std::nullopt;
}

/// "2004/1/5", "1/5", "1/2004". The order of the readings decides what an ambiguous text means.
std::optional<QDate> dayOfNumbers(const QString& text, int yearNow) {
    static const QRegularExpression form(uR"(^(\d{1,9})(?: ?[/,-] ?| )(\d{1,9})(?:(?: ?[/,-] ?| )(\d{1,9}))?$)"_s);
    const QRegularExpressionMatch match = form.match(text);
    if (!match.hasMatch())
        return std::nullopt;
    const int a = match.captured(1).toInt();
    const int b = match.captured(2).toInt();
    if (!match.hasCaptured(3))
        return firstDayAmong({{yearNow, a, b}, {yearNow, b, a}, {fullYear(b), a, 1}, {fullYear(a), b, 1}});
    const int c = match.captured(3).toInt();
    return firstDayAmong({{fullYear(a), b, c}, {fullYear(a), c, b}, {fullYear(c), a, b}, {fullYear(c), b, a}});
}

/// The year before the first of an era.
int yearAhead(const QString& era) {
    if (era == u"明治")
        return 1867;
    if (era == u"大正")
        return 1911;
    if (era == u"昭和")
        return 1925;
    return era == u"平成" ? 1988 : 2018;
}

/// "2004年1月5日", "2004年1月", "1月5日", "平成16年1月5日", "平成元年1月8日".
std::optional<QDate> dayOfJapanese(const QString& text, int yearNow) {
    static const QRegularExpression form(
        u"^(?:(?:(?<era>明治|大正|昭和|平成|令和)(?<ofEra>0?[1-9]|[1-9][0-9]|元)|(?<year>[0-9]{1,4}))年 ?)?"
        u"(?<month>[0-9]{1,2})月 ?(?:(?<day>[0-9]{1,2})日)?$"_s);
    const QRegularExpressionMatch match = form.match(text);
    if (!match.hasMatch())
        return std::nullopt;
    int year = yearNow;
    if (match.hasCaptured(u"ofEra"))
        year = yearAhead(match.captured(u"era")) + qMax(match.captured(u"ofEra").toInt(), 1); // 元 is the first
    else if (match.hasCaptured(u"year"))
        year = fullYear(match.captured(u"year").toInt());
    else if (!match.hasCaptured(u"day"))
        return std::nullopt;
    const int day = match.hasCaptured(u"day") ? match.captured(u"day").toInt() : 1;
    return firstDayAmong({{year, match.captured(u"month").toInt(), day}});
}

/// "12:30", "1:2:3", and with points "13.50". Invalid when the word is no time.
QTime timeOf(const QString& word) {
    static const QRegularExpression form(uR"(^(\d{1,9})[:.](\d{1,9})(?:[:.](\d{1,9}))?$)"_s);
    const QRegularExpressionMatch match = form.match(word);
    if (!match.hasMatch())
        return QTime();
    return QTime(match.captured(1).toInt(), match.captured(2).toInt(), match.captured(3).toInt());
}

bool looksLikeTime(const QString& word) {
    return word.contains(u':') || word.contains(u'.');
}

std::optional<QDateTime> momentOfNumber(double number) {
    if (number <= -657435 || number >= 2958466)
        return std::nullopt; // before the year 100 or after 9999
    const double days = std::trunc(number);
    const double seconds = std::round(std::abs(number - days) * 86400); // a time counts forward on every day
    return QDateTime(dayZero().addDays(qint64(days)), QTime(0, 0), Qt::UTC).addSecs(qint64(seconds));
}

} // namespace

std::optional<QDateTime> parseDate(QStringView text, int yearNow) {
    QStringList words = platform::fold(text).replace(u'\t', u' ').split(u' ', Qt::SkipEmptyParts);
    if (words.isEmpty())
        return std::nullopt;

    // The time stands behind the day or in front of it.
    QTime time(0, 0);
    if (looksLikeTime(words.last()))
        time = timeOf(words.takeLast());
    else if (looksLikeTime(words.first()))
        time = timeOf(words.takeFirst());
    if (!time.isValid())
        return std::nullopt;
    if (words.isEmpty())
        return QDateTime(dayZero(), time, Qt::UTC);

    const QString rest = words.join(u' ');
    std::optional<QDate> day = dayOfNumbers(rest, yearNow);
    if (!day)
        day = dayOfJapanese(rest, yearNow);
    if (!day)
        return std::nullopt;
    return QDateTime(*day, time, Qt::UTC);
}

std::optional<QDate> fullDay(QStringView text) {
    static const QRegularExpression form(
        uR"(^(?:([0-9]{4})(?: ?([/.-]) ?([0-9]{1,2}) ?\2 ?([0-9]{1,2})|年 ?([0-9]{1,2})月 ?([0-9]{1,2})日))"_s
        uR"(|(?:明治|大正|昭和|平成|令和)(?:[0-9]{1,2}|元)年 ?[0-9]{1,2}月 ?[0-9]{1,2}日)(?: 0?0:00(?::00)?)?$)"_s);
    const QString plain = platform::fold(text).simplified();
    const QRegularExpressionMatch match = form.match(plain);
    if (!match.hasMatch())
        return std::nullopt;
    if (match.hasCaptured(1)) {
        const int first = match.hasCaptured(3) ? 3 : 5;
        const QDate day(match.captured(1).toInt(), match.captured(first).toInt(), match.captured(first + 1).toInt());
        return day.isValid() ? std::optional(day) : std::nullopt;
    }
    const std::optional<QDateTime> moment = parseDate(plain, 0); // an era has its own year
    return moment ? std::optional(moment->date()) : std::nullopt;
}

QString formatDate(const QDateTime& moment, QStringView form) {
    QString pattern = form.toString().toLower();
    pattern.replace(u'm', u'M').replace(u'n', u'm').replace(u'h', u'H');
    return QLocale::c().toString(moment, pattern);
}

QString formatTextAsDate(const QString& text, QStringView form, int yearNow) {
    std::optional<QDateTime> moment = parseDate(text, yearNow);
    if (!moment) {
        if (const std::optional<double> number = numericValue(text))
            moment = momentOfNumber(*number);
    }
    return moment ? formatDate(*moment, form) : text;
}

} // namespace velloria::core
