#include "site/month_run.h"

#include "core/numbers.h"
#include "core/path_names.h"

using namespace Qt::StringLiterals;

namespace velloria::site {

QString dividedPageName(const QString& diaryFile, int page) {
    return core::GetBaseName(core::GetFileName(diaryFile)) + u'_' + core::twoDigits(page) + u".htm"_s;
}

} // namespace velloria::site
