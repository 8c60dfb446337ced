#include "site/division.h"

#include "core/site_keys.h"
#include "platform/failure.h"

#include <cmath>

using namespace Qt::StringLiterals;

namespace velloria::site {

Division Division::read(const SiteSettings& settings) {
    Division division;
    const int divide = settings.number(keys::divide::kDiaryDivide);
    division.divided = divide == 0 ? Divided::No : divide == 1 ? Divided::Yes : Divided::Unlinked;
    division.daysPerPage = settings.number(keys::divide::kDiaryTerm);
    if (division.daysPerPage == 0)
        division.daysPerPage = 31;
    if (settings.number(keys::divide::kDiaryOnTop) != 1)
        division.firstPage = FirstPage::OnPageOfItsOwn;
    if (division.hasOneDayPerPage() && settings.number(keys::divide::kUseFileName2Day) == 1)
        division.names = PageNames::Day;
    return division;
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
