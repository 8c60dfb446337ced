#include "store/entry_import.h"

#include "platform/failure.h"
#include "store/day_numbers.h"
#include "store/entry_row.h"
#include "store/sqlite/connection.h"
#include "store/sqlite/literal.h"

#include <QElapsedTimer>

namespace velloria::store {
namespace {

constexpr qint64 kBatchMs = 100;

} // namespace

/// A connection with a transaction under way.
class EntryImport::Batch {
public:
    explicit Batch(const QString& file)
        : m_connection(file, sqlite::Access::ReadWrite)
        , m_transaction(m_connection)
        , m_numbers(m_connection)
        , m_first(m_connection, QByteArray(kAllColumns) + "WHERE Day = ?1 ORDER BY Number, RecordID LIMIT 1")
        , m_insert(m_connection, "INSERT OR ABORT INTO Contents (Day, Title, Contents, Number) VALUES (?1, ?2, ?3, ?4)")
        , m_update(m_connection, "UPDATE OR ABORT Contents SET Title = ?1, Contents = ?2 WHERE RecordID = ?3") {
        m_age.start();
    }

    bool hasDay(const QString& day) {
        m_first.bind(day);
        const bool isThere = m_first.next();
        m_first.reset();
        return isThere;
    }

    void add(const NewEntry& entry) {
        const int number = m_numbers.nextNumber(entry.day);
        m_insert.bind(entry.day, entry.title, entry.contents, number);
        m_insert.run();
        m_numbers.added(entry.day, number);
        m_added.push_back(entry);
    }

    void overwrite(const NewEntry& entry, const std::function<void(const Entry&)>& overwritten) {
        m_first.bind(entry.day);
        if (!m_first.next()) {
            m_first.reset();
            add(entry);
            return;
        }
        const qint64 record = m_first.integer64(kRecordIdColumn);
        overwritten(readEntry(m_first));
        m_first.reset();
        m_update.bind(entry.title, entry.contents, record);
        m_update.run();
    }

    void commit() { m_transaction.commit(); }

    bool isOld() const { return m_age.elapsed() > kBatchMs; }
    const std::vector<NewEntry>& added() const { return m_added; }

private:
    sqlite::Connection m_connection;
    sqlite::Transaction m_transaction;
    DayNumbers m_numbers;
    sqlite::Statement m_first;
    sqlite::Statement m_insert;
    sqlite::Statement m_update;
    std::vector<NewEntry> m_added;
    QElapsedTimer m_age;
};

EntryImport::EntryImport(QString file)
    : m_file(std::move(file)) {}

EntryImport::~EntryImport() = default;

EntryImport::Batch& EntryImport::batch() {
    if (!m_batch)
        m_batch = std::make_unique<Batch>(m_file);
    return *m_batch;
}

bool EntryImport::hasDay(const QString& day) {
    return batch().hasDay(sqlite::literal(m_file, day));
}

void EntryImport::add(const NewEntry& entry) {
    sqlite::literal(m_file, entry.day);
    try {
        batch().add(entry);
    } catch (const platform::Failure&) {
        storeSingly(); // the engine may have taken back the whole batch
        throw;
    }
    if (m_batch->isOld())
        settle();
}

void EntryImport::overwrite(const NewEntry& entry, const std::function<void(const Entry&)>& overwritten) {
    sqlite::literal(m_file, entry.day);
    settle();
    Batch single(m_file);
    single.overwrite(entry, overwritten);
    single.commit();
    ++m_stored;
}

void EntryImport::settle() {
    if (!m_batch)
        return;
    try {
        m_batch->commit();
        m_stored += qsizetype(m_batch->added().size());
        m_batch.reset();
    } catch (const platform::Failure&) {
        storeSingly();
    }
}

/// A disk that refuses the batch may take its first entries. Throws where it refuses one.
void EntryImport::storeSingly() {
    if (!m_batch)
        return;
    const std::vector<NewEntry> entries = m_batch->added();
    m_batch.reset();
    for (const NewEntry& entry : entries) {
        Batch single(m_file);
        single.add(entry);
        single.commit();
        ++m_stored;
    }
}

} // namespace velloria::store
