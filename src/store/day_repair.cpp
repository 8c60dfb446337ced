#include "store/day_repair.h"

#include "core/date_forms.h"
#include "core/day_key.h"
#include "store/row_check.h"
#include "store/sqlite/statement.h"

#include <algorithm>
#include <tuple>

using namespace Qt::StringLiterals;

namespace velloria::store {

using sqlite::Statement;

namespace {

/// The key of a day in another form; nothing for a key and for what may be any day.
QString keyOf(const QString& text) {
    const std::optional<QDate> date = core::isDayKey(text) ? std::nullopt : core::fullDay(text);
    return date ? core::dayKey(*date) : QString();
}

} // namespace

DayRepair::DayRepair(const sqlite::Connection& connection)
    : m_connection(connection) {
    addEntriesDays();
    addFilesDays();
}

void DayRepair::addEntriesDays() {
    Statement days(m_connection, "SELECT DISTINCT Day FROM Contents WHERE typeof(Day) = 'text'");
    while (days.next()) {
        const QString text = days.text(0);
        if (const QString key = keyOf(text); !key.isNull())
            m_days[key] += text;
    }
    Statement numbers(m_connection, kDaysOutOfOrder);
    while (numbers.next()) {
        const QString text = numbers.text(0);
        const QString key = keyOf(text);
        m_days[key.isNull() ? text : key]; // may be the only thing that is wrong with it
    }
}

/// A file's day is put right when it has that entry.
void DayRepair::addFilesDays() {
    Statement days(m_connection, "SELECT DISTINCT Day, Number FROM FileDB WHERE typeof(Day) = 'text'");
    Statement entry(m_connection, "SELECT 1 FROM Contents WHERE Day = ?1 AND Number = ?2");
    while (days.next()) {
        const QString text = days.text(0);
        const QString key = keyOf(text);
        if (key.isNull())
            continue;
        if (!m_filesDays[key].contains(text))
            m_filesDays[key] += text;
        entry.bind(key, days.integer(1));
        if (entry.next())
            m_days[key];
        entry.reset();
    }
}

QStringList DayRepair::run() {
    QStringList mended;
    for (auto day = m_days.cbegin(); day != m_days.cend(); ++day)
        mended += mend(day.key(), day.value());
    return mended;
}

QStringList DayRepair::mend(const QString& day, const QStringList& spellings) {
    std::vector<Row> rows = rowsOf(QStringList{day} + spellings);
    Statement set(m_connection, "UPDATE OR ABORT Contents SET Day = ?1, Number = ?2 WHERE RecordID = ?3");
    QStringList moved;
    qint64 number = 0;
    for (Row& row : rows) {
        row.number = ++number;
        const bool isRenumbered = row.rank != 1 || row.oldNumber != row.number;
        if (isRenumbered || row.day != day)
            set.bind(day, row.number, row.record).run();
        if (isRenumbered)
            moved += (row.day == day ? QString() : u"「%1」の"_s.arg(row.day)) +
                     u"%1→%2"_s.arg(row.oldNumber).arg(row.number);
    }
    QStringList mended;
    for (const QString& spelling : spellings) {
        const auto count = std::ranges::count(rows, spelling, &Row::day);
        mended += u"日付の形を直しました: 「%1」→%2 (%3件)"_s.arg(spelling, day).arg(count);
    }
    if (!moved.isEmpty())
        mended += u"番号を付け直しました: %1 (%2)"_s.arg(day, moved.join(u"、"_s));
    return mended + moveFiles(day, spellings, rows);
}

std::vector<DayRepair::Row> DayRepair::rowsOf(const QStringList& spellings) const {
    std::vector<Row> rows;
    Statement entries(m_connection, "SELECT RecordID, Number, Private, typeof(Number) FROM Contents WHERE Day = ?1");
    for (const QString& spelling : spellings) {
        entries.bind(spelling);
        while (entries.next()) {
            const QString type = entries.text(3);
            const int rank = type == u"null"_s ? 0 : type == u"integer"_s ? 1 : 2;
            rows.push_back({spelling, entries.integer64(0), entries.integer64(1), rank, entries.boolean(2)});
        }
        entries.reset();
    }
    std::ranges::sort(rows, {}, [](const Row& row) { return std::tuple(row.rank, row.oldNumber, row.record); });
    return rows;
}

/// They name their entry by day and number. A row that may mean several entries goes with a private one, so that its
/// file does not go to the site; then with one whose day it has to the letter. A negative number means no entry, but a
/// private one that is gone.
QStringList DayRepair::moveFiles(const QString& day, const QStringList& spellings, const std::vector<Row>& rows) const {
    struct File {
        qint64 id = 0;
        QString name;
        QString day;
        qint64 oldNumber = 0;
    };
    QStringList texts = QStringList{day} + spellings + m_filesDays.value(day);
    texts.removeDuplicates();
    std::vector<File> files;
    Statement select(m_connection, "SELECT FileID, FileName, Day, Number FROM FileDB WHERE Day = ?1 "
                                   "AND Number >= 0 ORDER BY FileID");
    for (const QString& text : texts) {
        select.bind(text);
        while (select.next())
            files.push_back({select.integer64(0), select.text(1), select.text(2), select.integer64(3)});
        select.reset();
    }
    Statement set(m_connection, "UPDATE OR ABORT FileDB SET Day = ?1, Number = ?2 WHERE FileID = ?3");
    QStringList mended;
    for (const File& file : files) {
        const Row* owner = nullptr;
        for (const Row& row : rows) {
            const auto rank = [&](const Row& r) { return std::tuple(r.isPrivate, r.day == file.day); };
            if (row.oldNumber == file.oldNumber && (!owner || rank(row) > rank(*owner)))
                owner = &row;
        }
        if (!owner || (owner->number == file.oldNumber && file.day == day))
            continue;
        set.bind(day, owner->number, file.id).run();
        mended += u"登録ファイルの日記を直しました: %1 (%2 %3→%4 %5)"_s.arg(file.name, file.day)
                      .arg(file.oldNumber)
                      .arg(day)
                      .arg(owner->number);
    }
    return mended;
}

} // namespace velloria::store
