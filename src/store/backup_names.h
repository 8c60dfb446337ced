// The names of the daily copies of the diary, and which of them are kept.
//
// "diary-yyyymmdd.mdb" is the last copy of its day. One that it displaced is "diary-yyyymmdd-2.mdb", the one before
// that "-3", and so on to "-4".
#pragma once

#include <QDate>
#include <QString>
#include <QStringList>

#include <optional>

namespace velloria::store {

/// The last copy of a day and those that it displaced.
inline constexpr int kCopiesOfDay = 4;

struct BackupName {
    QDate day;
    int copy = 1; ///< 1 is the last one of the day, kCopiesOfDay the oldest

    QString text() const;
    /// Nothing for a name that is not exactly one of these, or of a day that does not exist.
    static std::optional<BackupName> parse(const QString& name);
};

/// Of the names in the folder of the copies those that are not kept on `today`. Kept are the 14 newest days, the newest
/// day of each of the 12 newest months, what was displaced today, and every name that is none of these. A day that is
/// still to come was named by a clock that went wrong: it counts for nothing and stays until it has come.
QStringList surplusBackups(const QStringList& names, QDate today);

} // namespace velloria::store
