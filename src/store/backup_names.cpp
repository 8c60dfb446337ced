#include "store/backup_names.h"

#include <QRegularExpression>
#include <QSet>

#include <algorithm>
#include <set>

using namespace Qt::StringLiterals;

namespace velloria::store {
namespace {

constexpr std::size_t kDays = 14;
constexpr qsizetype kMonths = 12;

/// What is kept of days with copies.
QSet<QDate> keptOf(const std::set<QDate, std::greater<>>& newestFirst) {
    QSet<QDate> kept;
    QSet<QDate> months;
    std::size_t count = 0;
    for (const QDate& day : newestFirst) {
        const QDate month(day.year(), day.month(), 1);
        const bool isNewestOfMonth = !months.contains(month) && months.size() < kMonths;
        months.insert(month);
        if (++count <= kDays || isNewestOfMonth)
            kept.insert(day);
    }
    return kept;
}

} // namespace

QString BackupName::text() const {
    const QString name = u"diary-%1"_s.arg(day.toString(u"yyyyMMdd"_s));
    return (copy == 1 ? name : name + u"-%1"_s.arg(copy)) + u".mdb"_s;
}

std::optional<BackupName> BackupName::parse(const QString& name) {
    static const QRegularExpression kForm(u"\\Adiary-([0-9]{4})([0-9]{2})([0-9]{2})(?:-([2-4]))?\\.mdb\\z"_s);
    const QRegularExpressionMatch match = kForm.match(name);
    if (!match.hasMatch())
        return std::nullopt;
    const QDate day(match.captured(1).toInt(), match.captured(2).toInt(), match.captured(3).toInt());
    if (!day.isValid())
        return std::nullopt;
    return BackupName{day, match.captured(4).isEmpty() ? 1 : match.captured(4).toInt()};
}

QStringList surplusBackups(const QStringList& names, QDate today) {
    std::set<QDate, std::greater<>> days;
    for (const QString& name : names) {
        const auto backup = BackupName::parse(name);
        if (backup && backup->copy == 1 && backup->day <= today)
            days.insert(backup->day);
    }
    const QSet<QDate> kept = keptOf(days);
    QStringList surplus;
    for (const QString& name : names) {
        const auto backup = BackupName::parse(name);
        if (!backup || backup->day > today)
            continue;
        if (backup->copy == 1 ? !kept.contains(backup->day) : backup->day < today)
            surplus += name;
    }
    return surplus;
}

} // namespace velloria::store
