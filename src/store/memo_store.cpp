#include "store/memo_store.h"

#include "store/open_old_diary.h"
#include "store/sqlite/connection.h"
#include "store/sqlite/statement.h"

#include <QCryptographicHash>
#include <QFileInfo>
#include <QHash>
#include <QSet>

using namespace Qt::StringLiterals;

namespace velloria::store {

using sqlite::Access;
using sqlite::Connection;
using sqlite::Statement;
using sqlite::Transaction;

namespace {

constexpr char kColumns[] = "SELECT rowid, PublishTime, Title, Memo, No, Category, IsPass FROM Memo ";

Memo readMemo(const Statement& row) {
    Memo memo;
    memo.row = row.integer64(0);
    memo.publishTime = row.text(1);
    memo.title = row.text(2);
    memo.text = row.text(3);
    if (row.value(4).index() != 0)
        memo.no = row.integer64(4);
    memo.category = row.text(5);
    memo.isLocked = row.boolean(6);
    return memo;
}

std::optional<Memo> first(Statement& rows) {
    return rows.next() ? std::optional(readMemo(rows)) : std::nullopt;
}

std::optional<Memo> readRow(const Connection& connection, qint64 row) {
    Statement rows(connection, QByteArray(kColumns) + "WHERE rowid = ?1");
    rows.bind(row);
    return first(rows);
}

/// The pattern of texts that hold the word, to which no sign in it means anything.
QString patternFor(const QString& word) {
    QString pattern = u"%"_s;
    for (const QChar c : word) {
        if (u"[%_"_s.contains(c))
            pattern += u'[' + QString(c) + u']';
        else
            pattern += c;
    }
    return pattern + u'%';
}

/// What the optimisation of the diary leaves of the fields that it does not copy.
bool isReset(const Memo& memo) {
    return memo.no.value_or(0) == 0 && memo.category.isEmpty() && !memo.isLocked;
}

/// The memo that somebody has seen, where it is now.
MemoOutcome find(const Connection& connection, const Memo& seen) {
    using Kind = MemoOutcome::Kind;
    const std::optional<Memo> present = readRow(connection, seen.row);
    if (present && holdSame(*present, seen))
        return {Kind::Done, *present};
    Statement same(connection, QByteArray(kColumns) + "WHERE PublishTime IS ?1 AND Title IS ?2 AND Memo IS ?3");
    same.bind(seen.publishTime, seen.title, seen.text);
    while (same.next()) {
        const Memo found = readMemo(same);
        if (holdSame(found, seen) || isReset(found))
            return {Kind::Done, found};
    }
    if (!seen.no || *seen.no == 0)
        return present ? MemoOutcome{Kind::Changed, *present} : MemoOutcome{Kind::Gone, {}};
    // Its row may be another memo's by now; the number is its own.
    Statement changed(connection, QByteArray(kColumns) + "WHERE No = ?1");
    changed.bind(*seen.no);
    if (const std::optional<Memo> found = first(changed))
        return {Kind::Changed, *found};
    return {Kind::Gone, {}};
}

qint64 nextNumber(const Connection& connection) {
    Statement rows(connection, "SELECT ifnull(max(No), 0) + 1 FROM Memo WHERE typeof(No) = 'integer'");
    rows.next();
    return std::max<qint64>(1, rows.integer64(0));
}

/// What the optimisation resets.
struct Fields {
    qint64 no;
    QByteArray category;
    bool isLocked;
};

/// Time, title and text tell a memo of one copy in another one.
QByteArray keyOf(const std::vector<sqlite::Value>& values) {
    QCryptographicHash hash(QCryptographicHash::Sha256);
    for (std::size_t i = 0; i < 3; ++i) {
        const auto* text = std::get_if<QByteArray>(&values[i]);
        hash.addData(text ? QByteArray::number(text->size()) + ':' : QByteArray("-"));
        if (text)
            hash.addData(*text);
    }
    return hash.result();
}

QMultiHash<QByteArray, Fields> readFields(const QString& copy) {
    QMultiHash<QByteArray, Fields> fields;
    const std::unique_ptr<OldDiary> old = openOldDiary(copy);
    old->open(u"Memo"_s, {u"PublishTime"_s, u"Title"_s, u"Memo"_s, u"No"_s, u"Category"_s, u"IsPass"_s});
    for (std::vector<OldValue> row; old->next(row);) {
        const auto* no = std::get_if<qint64>(&row[3]);
        const auto* category = std::get_if<QByteArray>(&row[4]);
        const auto* lock = std::get_if<qint64>(&row[5]);
        Fields found{no ? *no : 0, category ? *category : QByteArray(), lock && *lock != 0};
        found.category.detach(); // from the row
        if (found.no != 0 || !found.category.isEmpty() || found.isLocked)
            fields.insert(keyOf(row), std::move(found));
    }
    return fields;
}

constexpr char kWithoutNumber[] = "FROM Memo WHERE typeof(No) <> 'integer' OR No <= 0";

/// Those without a number.
QSet<QByteArray> keysOfReset(const Connection& connection) {
    QSet<QByteArray> keys;
    Statement rows(connection, QByteArray("SELECT PublishTime, Title, Memo ") + kWithoutNumber);
    while (rows.next())
        keys.insert(keyOf({rows.value(0), rows.value(1), rows.value(2)}));
    return keys;
}

/// Of as many copies as it takes to find all of `wanted`; a later one counts where an earlier one has nothing.
std::vector<QMultiHash<QByteArray, Fields>> readCopies(const QStringList& copies, QSet<QByteArray> wanted) {
    std::vector<QMultiHash<QByteArray, Fields>> found;
    for (const QString& copy : copies) {
        if (wanted.isEmpty())
            break;
        try {
            if (!QFileInfo::exists(copy))
                continue;
            found.push_back(readFields(copy));
        } catch (const platform::Failure&) {
            continue; // an older diary has no such columns
        }
        wanted.removeIf([&](const QByteArray& key) { return found.back().contains(key); });
    }
    return found;
}

/// The fields of a memo without a number, from the first copy that has it, each once. Of several that are the same to
/// the letter the one whose number nobody has by now, the lowest first.
std::optional<Fields> takeFields(std::vector<QMultiHash<QByteArray, Fields>>& copies, const QByteArray& key,
                                 const QSet<qint64>& numbers) {
    const auto rankOf = [&](const Fields& fields) { return std::pair(numbers.contains(fields.no), fields.no); };
    for (auto& copy : copies) {
        const auto [begin, end] = copy.equal_range(key);
        const auto same = std::min_element(
            begin, end, [&](const Fields& left, const Fields& right) { return rankOf(left) < rankOf(right); });
        if (same != end) {
            const Fields fields = *same;
            copy.erase(same);
            return fields;
        }
    }
    return std::nullopt;
}

} // namespace

MemoStore::MemoStore(const core::Run& run)
    : m_file(run.session.databaseFile())
    , m_clock(run.clock) {}

std::vector<Memo> MemoStore::list(const MemoQuery& query) const {
    const Connection connection(m_file, Access::ReadOnly);
    Statement rows(connection, "SELECT rowid, PublishTime, Title, NULL, No, Category, IsPass FROM Memo "
                               "WHERE (?1 IS NULL OR Fold(ifnull(Category, '')) = Fold(?1)) AND "
                               "(?2 IS NULL OR Title LIKE ?2 OR Category LIKE ?2 OR "
                               "(?3 OR ifnull(IsPass, 0) = 0 AND typeof(No) = 'integer' AND No > 0) AND "
                               "Memo LIKE ?2) "
                               "ORDER BY PublishTime DESC, rowid DESC");
    const QString category = query.category ? u""_s + *query.category : QString();
    rows.bind(category, query.word.isEmpty() ? QString() : patternFor(query.word), query.findsInLocked);
    std::vector<Memo> memos;
    while (rows.next())
        memos.push_back(readMemo(rows));
    return memos;
}

QStringList MemoStore::categories() const {
    const Connection connection(m_file, Access::ReadOnly);
    Statement rows(connection, "SELECT Category FROM Memo WHERE rowid IN (SELECT min(rowid) FROM Memo "
                               "WHERE Category <> '' GROUP BY Fold(Category)) ORDER BY Category COLLATE JET");
    QStringList categories;
    while (rows.next())
        categories += rows.text(0);
    return categories;
}

std::optional<Memo> MemoStore::load(qint64 row) const {
    return readRow(Connection(m_file, Access::ReadOnly), row);
}

MemoOutcome MemoStore::save(const Memo& memo, const std::optional<Memo>& seen,
                            const BeforeMemoLoss& overwritten) const {
    Connection connection(m_file, Access::ReadWrite);
    Transaction transaction(connection);
    Memo saved = memo;
    saved.row = 0;
    saved.no = std::nullopt;
    if (seen) {
        const MemoOutcome present = find(connection, *seen);
        if (present.kind != MemoOutcome::Kind::Done)
            return present;
        saved.row = present.memo.row;
        saved.no = present.memo.no.value_or(0) > 0 ? present.memo.no : seen->no;
        if (overwritten)
            overwritten(present.memo);
    }
    saved.publishTime = m_clock.now().toString(u"yyyy/MM/dd HH:mm:ss");
    if (saved.no.value_or(0) <= 0)
        saved.no = nextNumber(connection);
    const bool isNew = saved.row == 0;
    Statement statement(connection, isNew
                                        ? "INSERT OR ABORT INTO Memo (PublishTime, Title, Memo, No, Category, IsPass) "
                                          "VALUES (?1, ?2, ?3, ?4, ?5, ?6)"
                                        : "UPDATE OR ABORT Memo SET PublishTime = ?1, Title = ?2, Memo = ?3, No = ?4, "
                                          "Category = ?5, IsPass = ?6 WHERE rowid = ?7");
    if (isNew)
        statement.bind(saved.publishTime, saved.title, saved.text, *saved.no, saved.category, saved.isLocked);
    else
        statement.bind(saved.publishTime, saved.title, saved.text, *saved.no, saved.category, saved.isLocked,
                       saved.row);
    statement.run();
    if (isNew)
        saved.row = connection.lastInsertedRow();
    transaction.commit();
    return {MemoOutcome::Kind::Done, std::move(saved)};
}

MemoOutcome MemoStore::remove(const Memo& seen, const BeforeMemoLoss& removed) const {
    Connection connection(m_file, Access::ReadWrite);
    Transaction transaction(connection);
    const MemoOutcome present = find(connection, seen);
    if (present.kind != MemoOutcome::Kind::Done)
        return present;
    if (removed)
        removed(present.memo);
    Statement(connection, "DELETE FROM Memo WHERE rowid = ?1").bind(present.memo.row).run();
    transaction.commit();
    return {};
}

bool MemoStore::isLockedAsAWhole() const {
    const Connection connection(m_file, Access::ReadOnly);
    Statement rows(connection, "SELECT IsMemoPass FROM DBInfo ORDER BY rowid");
    return rows.next() && rows.boolean(0);
}

void MemoStore::setLockedAsAWhole(bool isLocked) const {
    Connection connection(m_file, Access::ReadWrite);
    Transaction transaction(connection);
    Statement(connection, "UPDATE OR ABORT DBInfo SET IsMemoPass = ?1").bind(isLocked).run();
    transaction.commit();
}

bool MemoStore::hasReset() const {
    const Connection connection(m_file, Access::ReadOnly);
    return Statement(connection, QByteArray("SELECT 1 ") + kWithoutNumber + " LIMIT 1").next();
}

bool MemoStore::takeBackReset(const QStringList& copies) const {
    QSet<QByteArray> reset = keysOfReset(Connection(m_file, Access::ReadOnly));
    if (reset.isEmpty())
        return false;
    std::vector<QMultiHash<QByteArray, Fields>> former = readCopies(copies, std::move(reset));
    Connection connection(m_file, Access::ReadWrite);
    Transaction transaction(connection);
    QSet<qint64> numbers;
    Statement present(connection, "SELECT No FROM Memo WHERE No > 0");
    while (present.next())
        numbers.insert(present.integer64(0));
    std::vector<std::pair<qint64, Fields>> found;
    Statement rows(connection,
                   QByteArray("SELECT PublishTime, Title, Memo, Category, IsPass, rowid ") + kWithoutNumber);
    while (rows.next()) {
        Fields fields{0, rows.text(3).toUtf8(), rows.boolean(4)};
        if (fields.category.isEmpty() && !fields.isLocked)
            fields = takeFields(former, keyOf({rows.value(0), rows.value(1), rows.value(2)}), numbers).value_or(fields);
        if (fields.no <= 0 || numbers.contains(fields.no))
            fields.no = 0;
        else
            numbers.insert(fields.no);
        found.emplace_back(rows.integer64(5), std::move(fields));
    }
    Statement update(connection, "UPDATE OR ABORT Memo SET No = ?1, Category = ?2, IsPass = ?3 WHERE rowid = ?4");
    qint64 next = 1;
    for (auto& [row, fields] : found) {
        for (; fields.no == 0; ++next)
            fields.no = numbers.contains(next) ? 0 : next;
        update.bind(fields.no, QByteArrayView(fields.category), fields.isLocked, row).run();
    }
    transaction.commit();
    return true;
}

} // namespace velloria::store
