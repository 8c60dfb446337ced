#include "site/division.h"

#include "core/site_keys.h"
#include "platform/failure.h"

#include <cmath>

using namespace Qt::StringLiterals;

namespace velloria::site {

Division Division::read(const SiteSettings& settings) {
    Division division;
    division.diaryDivide = settings.number(keys::divide::kDiaryDivide);
    division.diaryTerm = settings.number(keys::divide::kDiaryTerm);
    if (division.diaryTerm == 0)
        division.diaryTerm = 31;
    division.diaryOnTop = settings.number(keys::divide::kDiaryOnTop);
    if (division.diaryDivide == 1 && division.diaryTerm == 1)
        division.useFileName2Day = settings.number(keys::divide::kUseFileName2Day);
    return division;
}

void Division::countPages(const QStringList& days) {
    dayPage.fill(-1);
    int page = diaryOnTop == 1 ? 0 : 1;
    int daysOnPage = 1;
    for (const QString& day : days) {
        dayPage[std::size_t(dayOfMonth(day) - 1)] = qint16(page);
        if (daysOnPage == diaryTerm) {
            daysOnPage = 1;
            ++page;
        } else {
            ++daysOnPage;
        }
    }
    // A last page that is exactly full has opened one page too many.
    lastPage = IsMultiple(double(days.size()), diaryTerm) ? page - 1 : page;
}

int Division::pageOf(const QString& day) const {
    return dayPage[std::size_t(dayOfMonth(day) - 1)];
}

bool IsMultiple(double a, double b) {
    return std::fmod(a, b) == 0;
}

int dayOfMonth(const QString& day) {
    bool isNumber = false;
    const int number = QStringView(day).last(qMin<qsizetype>(2, day.size())).toInt(&isNumber);
    if (!isNumber || number < 1 || number > 31)
        throw platform::Failure(u"日付として読めない日記があります。"_s, {}, u"日「%1」"_s.arg(day),
                                u"「velloria-cli entry delete 日 番号 --as-stored」で、控えを残して取り除けます。"_s);
    return number;
}

} // namespace velloria::site
