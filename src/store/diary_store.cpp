#include "store/diary_store.h"

#include "core/day_key.h"
#include "platform/failure.h"
#include "store/day_numbers.h"
#include "store/entry_files.h"
#include "store/entry_line.h"
#include "store/entry_row.h"
#include "store/entry_writer.h"
#include "store/sqlite/connection.h"
#include "store/sqlite/literal.h"
#include "store/sqlite/statement.h"

#include <QSet>

using namespace Qt::StringLiterals;

namespace velloria::store {

using sqlite::Access;
using sqlite::Connection;
using sqlite::literal;
using sqlite::pattern;
using sqlite::Statement;
using sqlite::Transaction;

namespace {

constexpr int kLargestNumber = 32767;

std::vector<Entry> readEntries(Statement& rows) {
    std::vector<Entry> entries;
    while (rows.next())
        entries.push_back(readEntry(rows));
    return entries;
}

QStringList readTexts(Statement& rows) {
    QStringList texts;
    while (rows.next())
        texts += rows.text(0);
    return texts;
}

std::vector<EntryKey> readKeys(Statement& rows) {
    std::vector<EntryKey> keys;
    while (rows.next())
        keys.push_back({rows.text(0), rows.integer(1)});
    return keys;
}

/// Rows of one month (or any beginning of a day key): `head` WHERE the month, then `tail`.
template <typename Read>
auto readMonth(const QString& file, const QString& month, const QByteArray& head, const QByteArray& tail, Read read) {
    const sqlite::MonthCondition condition = sqlite::daysBeginningWith(file, month);
    const Connection connection(file, Access::ReadOnly);
    Statement rows(connection, head + "WHERE " + condition.sql + tail);
    rows.bind(condition.first, condition.second);
    return read(rows);
}

std::vector<Entry> entriesOfDay(const Connection& connection, const QString& file, const QString& day) {
    Statement rows(connection, QByteArray(kAllColumns) + "WHERE Day = ?1 ORDER BY Number DESC, RecordID DESC");
    rows.bind(literal(file, day));
    return readEntries(rows);
}

int countInOtherYears(const Connection& connection, const QString& file, const QString& day) {
    Statement rows(connection, "SELECT count(*) FROM Contents WHERE substr(Day, -6) = ?1 AND Day <> ?2");
    rows.bind(literal(file, day).mid(4), day);
    rows.next();
    return rows.integer(0);
}

DaysWithEntries readDaysAround(const Connection& connection, const QString& file, const QString& month) {
    DaysWithEntries days;
    const QDate first = QDate::fromString(month + u"/01"_s, u"yyyy/MM/dd");
    if (!first.isValid())
        return days;
    for (const int step : {-1, 0, 1}) {
        const QString key = core::monthOf(core::dayKey(first.addMonths(step)));
        const sqlite::MonthCondition condition = sqlite::daysBeginningWith(file, key);
        Statement rows(connection, "SELECT Day, max(Private = 0) FROM Contents WHERE " + condition.sql +
                                       " GROUP BY Day ORDER BY Day");
        rows.bind(condition.first, condition.second);
        while (rows.next()) {
            days.all += rows.text(0);
            if (rows.boolean(1))
                days.withPublic += rows.text(0);
        }
    }
    return days;
}

sqlite::MonthCondition conditionOf(const QString& file, const Period& period) {
    switch (period.kind) {
    case Period::Kind::Month:
        return sqlite::daysBeginningWith(file, period.first);
    case Period::Kind::Day:
        return {"Day = ?1 AND ?2 = ''", literal(file, period.first), u""_s};
    case Period::Kind::Between:
        break;
    }
    return {"Day BETWEEN ?1 AND ?2", literal(file, period.first), literal(file, period.last)};
}

QByteArray orderOf(const Period& period, SortDirection direction) {
    if (period.kind == Period::Kind::Day)
        return " ORDER BY RecordID";
    return direction == SortDirection::Ascending ? " ORDER BY Day ASC, Number, RecordID"
                                                 : " ORDER BY Day DESC, Number, RecordID";
}

void tell(const BeforeLoss& beforeLoss, const std::vector<Entry>& rows) {
    if (beforeLoss && !rows.empty())
        beforeLoss(rows);
}

} // namespace

DiaryStore::DiaryStore(const core::Run& run)
    : DiaryStore(run.session.databaseFile(), run.clock) {}

DiaryStore::DiaryStore(QString file, const platform::Clock& clock)
    : m_file(std::move(file))
    , m_clock(clock) {}

QString DiaryStore::present() const {
    return m_clock.now().toString(u"yyyy/MM/dd HH:mm:ss");
}

std::vector<Entry> DiaryStore::LoadDay(const QString& day) const {
    return entriesOfDay(Connection(m_file, Access::ReadOnly), m_file, day);
}

std::optional<Entry> DiaryStore::LoadEntry(const QString& day, int number) const {
    const Connection connection(m_file, Access::ReadOnly);
    Statement rows(connection, QByteArray(kAllColumns) + "WHERE Number = ?1 AND Day = ?2 ORDER BY RecordID");
    rows.bind(number, literal(m_file, day));
    if (!rows.next())
        return std::nullopt;
    return readEntry(rows);
}

std::vector<EntryKey> DiaryStore::saveEntries(std::vector<Entry> entries, PublishTime publishTime,
                                              const BeforeLoss& overwritten) const {
    std::vector<EntryLine> lines;
    lines.reserve(entries.size());
    for (Entry& entry : entries)
        lines.push_back({std::move(entry)});
    return saveLines(std::move(lines), publishTime, overwritten);
}

std::vector<EntryKey> DiaryStore::saveLines(std::vector<EntryLine> lines, PublishTime publishTime,
                                            const BeforeLoss& overwritten) const {
    Connection connection(m_file, Access::ReadWrite);
    Transaction transaction(connection);
    EntryWriter writer(connection);
    std::vector<qint64> records;
    records.reserve(lines.size());
    for (auto& [entry, isRescued] : lines) {
        literal(m_file, entry.day);
        if (publishTime == PublishTime::Now || entry.publishTime.isNull())
            entry.publishTime = present();
        if (publishTime == PublishTime::Now)
            entry.importMark = QString();
        if (isRescued)
            writer.spareTheTaken(entry);
        records.push_back(writer.write(entry));
    }
    writer.repairTouchedDays();
    std::vector<EntryKey> keys;
    keys.reserve(lines.size());
    for (std::size_t i = 0; i < lines.size(); ++i)
        keys.push_back({lines[i].entry.day, writer.numberOf(lines[i].entry, records[i])});
    tell(overwritten, writer.overwritten());
    transaction.commit();
    return keys;
}

std::vector<EntryKey> DiaryStore::addEntries(std::vector<Addition> additions) const {
    Connection connection(m_file, Access::ReadWrite);
    Transaction transaction(connection);
    EntryWriter writer(connection);
    Statement addFile(connection, "INSERT OR ABORT INTO FileDB (FileName, Day, Number, Uploaded, Logged) "
                                  "VALUES (?1, ?2, ?3, 0, 0)");
    std::vector<EntryKey> keys;
    keys.reserve(additions.size());
    for (auto& [entry, files] : additions) {
        literal(m_file, entry.day);
        entry.number = 0; // the next one, behind a repair: it stays the entry's own
        writer.write(entry);
        if (entry.number > kLargestNumber)
            throw platform::Failure(u"日記を追加できません。"_s, m_file,
                                    u"%1の日記が%2件を超えます"_s.arg(entry.day).arg(kLargestNumber),
                                    u"データベースは変更されていません。"_s);
        keys.push_back({entry.day, entry.number});
        for (const QString& file : files)
            addFile.bind(literal(m_file, file), entry.day, entry.number).run();
    }
    transaction.commit();
    return keys;
}

void DiaryStore::DeleteEntry(const QString& day, int number, const BeforeLoss& deleted) const {
    Connection connection(m_file, Access::ReadWrite);
    Transaction transaction(connection);
    Statement rows(connection, QByteArray(kAllColumns) + "WHERE Day = ?1 AND Number = ?2");
    rows.bind(literal(m_file, day), number);
    const std::vector<Entry> entries = readEntries(rows);
    Statement(connection, "DELETE FROM Contents WHERE Day = ?1 AND Number = ?2").bind(day, number).run();
    EntryFiles(connection).withhold(entries);
    DayNumbers(connection).repair(day);
    tell(deleted, entries);
    transaction.commit();
}

void DiaryStore::DeleteImportBatch(const QString& mark, const BeforeLoss& deleted) const {
    Connection connection(m_file, Access::ReadWrite);
    Transaction transaction(connection);
    Statement rows(connection, QByteArray(kAllColumns) + "WHERE Fold(ImportMark) = Fold(?1) ORDER BY Day, Number");
    rows.bind(literal(m_file, mark));
    const std::vector<Entry> entries = readEntries(rows);
    QSet<QString> days;
    for (const Entry& entry : entries)
        days.insert(entry.day);
    Statement(connection, "DELETE FROM Contents WHERE Fold(ImportMark) = Fold(?1)").bind(mark).run();
    EntryFiles(connection).withhold(entries);
    DayNumbers numbers(connection);
    for (const QString& day : std::as_const(days))
        numbers.repair(day);
    tell(deleted, entries);
    transaction.commit();
}

void DiaryStore::repairDay(const QString& day) const {
    Connection connection(m_file, Access::ReadWrite);
    Transaction transaction(connection);
    DayNumbers(connection).repair(literal(m_file, day));
    transaction.commit();
}

QStringList DiaryStore::ListImportBatches() const {
    const Connection connection(m_file, Access::ReadOnly);
    Statement rows(connection,
                   "SELECT ImportMark FROM Contents WHERE RecordID IN (SELECT min(RecordID) FROM Contents "
                   "WHERE ImportMark <> '' GROUP BY Fold(ImportMark)) ORDER BY ImportMark COLLATE JET DESC");
    return readTexts(rows);
}

QStringList DiaryStore::ListGenres() const {
    const Connection connection(m_file, Access::ReadOnly);
    Statement rows(connection, "SELECT Genre FROM Contents WHERE RecordID IN (SELECT min(RecordID) FROM Contents "
                               "WHERE Fold(Genre) <> Fold(?1) GROUP BY Fold(Genre)) ORDER BY Genre COLLATE JET");
    rows.bind(u"一般"_s);
    return readTexts(rows);
}

int DiaryStore::SameDayInOtherYears(const QString& day) const {
    return countInOtherYears(Connection(m_file, Access::ReadOnly), m_file, day);
}

std::vector<Entry> DiaryStore::SameDayEntries(const QString& day) const {
    const Connection connection(m_file, Access::ReadOnly);
    Statement rows(connection, QByteArray(kAllColumns) +
                                   "WHERE substr(Day, -6) = ?1 AND Day <> ?2 ORDER BY Day DESC, Number, RecordID");
    rows.bind(literal(m_file, day).mid(4), day);
    return readEntries(rows);
}

DayPicture DiaryStore::pictureOf(const QString& day) const {
    const Connection connection(m_file, Access::ReadOnly);
    DayPicture picture{entriesOfDay(connection, m_file, day), countInOtherYears(connection, m_file, day) > 0};
    try {
        picture.daysAround = readDaysAround(connection, m_file, core::monthOf(day));
    } catch (const platform::Failure&) {
        // What is wrong with a day beside it keeps nobody from this one.
    }
    return picture;
}

DaysWithEntries DiaryStore::daysAround(const QString& month) const {
    return readDaysAround(Connection(m_file, Access::ReadOnly), m_file, month);
}

QStringList DiaryStore::DaysOfMonth(const QString& month) const {
    return readMonth(m_file, month, "SELECT Day FROM Contents ", " GROUP BY Day ORDER BY Day", readTexts);
}

QStringList DiaryStore::PublicDaysOfMonth(const QString& month) const {
    return readMonth(m_file, month, "SELECT Day FROM Contents ", " AND Private = 0 GROUP BY Day ORDER BY Day",
                     readTexts);
}

std::vector<Entry> DiaryStore::EntriesOfMonth(const QString& month) const {
    return readMonth(m_file, month, kAllColumns, " ORDER BY Day DESC, Number DESC, RecordID DESC", readEntries);
}

std::vector<Entry> DiaryStore::PublicEntriesOfMonth(const QString& month) const {
    return readMonth(m_file, month, kAllColumns, " AND Private = 0 ORDER BY Day DESC, Number DESC, RecordID DESC",
                     readEntries);
}

std::vector<Entry> DiaryStore::EntryListOfMonth(const QString& month, Entries entries) const {
    return readMonth(m_file, month,
                     "SELECT Day, Number, Title, NULL, NULL, NULL, Weather, Genre, PublishTime, Private, ImportMark "
                     "FROM Contents ",
                     QByteArray(entries == Entries::Public ? " AND Private = 0" : "") +
                         " ORDER BY Day DESC, Number DESC, RecordID DESC",
                     readEntries);
}

std::vector<Entry> DiaryStore::EntriesForFeed(const QString& month) const {
    return readMonth(m_file, month,
                     "SELECT Day, Number, Title, Contents, NULL, NULL, NULL, Genre, PublishTime, Private, NULL FROM "
                     "Contents ",
                     " AND Private = 0 ORDER BY Day DESC, Number DESC, RecordID DESC", readEntries);
}

std::optional<QString> DiaryStore::LatestPublicDay() const {
    const Connection connection(m_file, Access::ReadOnly);
    // Down the index to the first public row: the cost does not grow with the diary.
    Statement rows(connection, "SELECT Day FROM Contents WHERE Private = 0 ORDER BY Day DESC LIMIT 1");
    if (!rows.next())
        return std::nullopt;
    return rows.text(0);
}

QStringList DiaryStore::months() const {
    const Connection connection(m_file, Access::ReadOnly);
    Statement rows(connection, "SELECT DISTINCT substr(Day, 1, 7) FROM Contents ORDER BY 1");
    return readTexts(rows);
}

void DiaryStore::FindEntries(const FindQuery& query, const std::function<void(Entry&)>& each) const {
    const Connection connection(m_file, Access::ReadOnly);
    Statement rows(
        connection,
        "SELECT Day, Number, Title, Contents, Extend, NULL, Weather, Genre, NULL, Private, NULL FROM Contents "
        "WHERE (Contents LIKE ?1 OR Title LIKE ?1) AND (?2 IS NULL OR Genre LIKE ?2) "
        "ORDER BY Day DESC, Number");
    const QString genre = query.genre ? u""_s + *query.genre : QString(); // NULL for all
    rows.bind(u'%' + pattern(m_file, query.word) + u'%', pattern(m_file, genre));
    while (rows.next()) {
        Entry entry = readEntry(rows);
        each(entry);
    }
}

void DiaryStore::ExportEntries(const Period& period, SortDirection direction,
                               const std::function<void(Entry&, int count)>& each) const {
    const sqlite::MonthCondition condition = conditionOf(m_file, period);
    const Connection connection(m_file, Access::ReadOnly);
    Statement count(connection, "SELECT count(*) FROM Contents WHERE " + condition.sql);
    count.bind(condition.first, condition.second);
    count.next();
    const int entries = count.integer(0);
    Statement rows(connection, "SELECT Day, Number, Title, Contents, NULL, NULL, Weather, Genre, NULL, Private, NULL "
                               "FROM Contents WHERE " +
                                   condition.sql + orderOf(period, direction));
    rows.bind(condition.first, condition.second);
    while (rows.next()) {
        Entry entry = readEntry(rows);
        each(entry, entries);
    }
}

std::vector<EntryKey> DiaryStore::AllEntryKeys() const {
    const Connection connection(m_file, Access::ReadOnly);
    Statement rows(connection, "SELECT Day, Number FROM Contents GROUP BY Day, Number ORDER BY Day DESC, Number");
    return readKeys(rows);
}

} // namespace velloria::store
