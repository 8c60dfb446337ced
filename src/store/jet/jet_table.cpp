#include "store/jet/jet_table.h"

#include "store/jet/jet_error.h"

#include <QSet>

#include <algorithm>
#include <tuple>

using namespace Qt::StringLiterals;

namespace velloria::store::jet {
namespace {

constexpr unsigned kMostColumns = 255;
constexpr unsigned kMostIndexes = 1000;

void requireSoundDefinition(const MdbTableDef& table) {
    if (table.num_cols == 0 || table.num_cols > kMostColumns || table.num_real_idxs > kMostIndexes)
        throw damaged(u"表の定義が壊れています"_s);
    if (!table.usage_map || table.map_sz < 5 || table.usage_map[0] > 1)
        throw damaged(u"表のページの一覧が壊れています"_s);
}

JetError damagedRow(const Place& place) {
    return damaged(u"ページ%1の行%2が壊れています"_s.arg(place.page).arg(place.slot));
}

} // namespace

/// A scan goes on behind damage, to tell how much is readable.
struct JetTable::Scan {
    std::vector<Found> found;
    QSet<quint32> pages;
    QString firstDamage;

    void note(const QString& damage) {
        if (firstDamage.isEmpty())
            firstDamage = damage;
    }
};

JetTable::JetTable(const JetFile& file, quint32 page, const QString& name)
    : m_file(file) {
    m_entry.mdb = file.handle();
    m_entry.object_type = MDB_TABLE;
    m_entry.table_pg = page;
    const QByteArray utf8 = name.toUtf8().first(qMin(name.toUtf8().size(), qsizetype(MDB_MAX_OBJ_NAME)));
    std::copy(utf8.begin(), utf8.end(), m_entry.object_name);
    if (page == 0 || page >= file.pageCount())
        throw damaged(u"表の定義がありません"_s);
    m_table = mdb_read_table(&m_entry);
    if (!m_table)
        throw damaged(u"表の定義が壊れています"_s);
    try {
        requireSoundDefinition(*m_table);
        m_mostColumns = mdb_get_int16(file.handle()->pg_buf, file.handle()->fmt->tab_num_cols_offset - 4);
        const GPtrArray* columns = mdb_read_columns(m_table); // goes on from the page that was read
        if (!columns || columns->len != m_table->num_cols)
            throw damaged(u"表の列の定義が壊れています"_s);
        for (guint i = 0; i < columns->len; ++i) {
            const auto* column = static_cast<const MdbColumn*>(g_ptr_array_index(columns, i));
            m_columns.push_back({QString::fromUtf8(column->name), column->col_type, column->col_size,
                                 column->is_fixed != 0, column->is_long_auto != 0, column->row_col_num});
            if (m_columns.back().isCounter && column->col_type == MDB_LONGINT)
                m_counter = int(i);
        }
    } catch (...) {
        mdb_free_tabledef(m_table);
        throw;
    }
}

JetTable::~JetTable() {
    mdb_free_tabledef(m_table);
}

int JetTable::column(const QString& name) const {
    for (size_t i = 0; i < m_columns.size(); ++i) {
        if (m_columns[i].name.compare(name, Qt::CaseInsensitive) == 0)
            return int(i);
    }
    throw JetError(Fault::NoColumn, u"「%1」の列「%2」"_s.arg(QString::fromUtf8(m_entry.object_name), name));
}

std::optional<quint32> JetTable::nextPage(quint32 page) const {
    const gint32 next = mdb_map_find_next(m_file.handle(), m_table->usage_map, unsigned(m_table->map_sz), page);
    if (next < 0)
        throw damaged(u"表のページの一覧が壊れています"_s);
    return quint32(next) > page ? std::optional(quint32(next)) : std::nullopt;
}

/// Where the row of a live slot lies: there, or where it has moved to.
Place JetTable::resolved(const Place& place) const {
    if ((m_file.slotAt(place.slot) & JetFile::kPointer) == 0)
        return place;
    const RowBytes row = m_file.rowAt(place.slot);
    if (row.length >= 4) {
        const auto pointer = quint32(mdb_get_int32(m_file.handle()->pg_buf, row.start));
        const Place moved{pointer >> 8, quint16(pointer & 0xff)};
        if (m_file.readRows(moved.page, quint32(m_entry.table_pg)) && moved.slot < m_file.slotCount() &&
            (m_file.slotAt(moved.slot) & (JetFile::kNotLive | JetFile::kPointer)) == JetFile::kNotLive)
            return moved;
    }
    throw damaged(u"ページ%1の行%2の移動先を読めません"_s.arg(place.page).arg(place.slot));
}

JetTable::Found JetTable::foundAt(const Place& place) const {
    const std::vector<Field> fields = fieldsAt(place);
    if (m_counter < 0)
        return {0, place};
    const OldValue number = valueOf(m_file, m_columns[m_counter], fields[m_counter]);
    if (!std::holds_alternative<qint64>(number))
        throw damagedRow(place);
    return {std::get<qint64>(number), place};
}

void JetTable::scanPage(quint32 page, Scan& scan) const {
    const auto owner = quint32(m_entry.table_pg);
    if (!m_file.readRows(page, owner)) {
        scan.note(u"ページ%1はこの表のページではありません"_s.arg(page));
        return;
    }
    const int slots = m_file.slotCount();
    for (int slot = 0; slot < slots; ++slot) {
        m_file.readRows(page, owner); // a moved row has led elsewhere
        if ((m_file.slotAt(slot) & JetFile::kNotLive) != 0)
            continue;
        try {
            scan.found.push_back(foundAt(resolved({page, quint16(slot)})));
        } catch (const JetError& error) {
            scan.note(error.reason());
        }
    }
}

/// Where the definition doesn't say how many rows there are, no page with live ones may be missing in its list.
void JetTable::noteForgottenPages(Scan& scan, const std::function<void()>& progress) const {
    for (quint32 page = 1; page < m_file.pageCount(); ++page) {
        progress();
        if (scan.pages.contains(page) || !m_file.readRows(page, quint32(m_entry.table_pg)))
            continue;
        for (int slot = 0; slot < m_file.slotCount(); ++slot) {
            if ((m_file.slotAt(slot) & JetFile::kNotLive) == 0)
                scan.note(u"ページ%1が一覧にありません"_s.arg(page));
        }
    }
}

void JetTable::compareCounts(Scan& scan, const std::function<void()>& progress) const {
    const auto count = qint64(scan.found.size());
    if (definedCount() != 0 && count != definedCount())
        scan.note(u"件数が合いません"_s);
    if (definedCount() == 0 && count != 0)
        noteForgottenPages(scan, progress);
}

std::vector<Place> JetTable::scan(const std::function<void()>& progress, Counts counts) const {
    Scan scan;
    try {
        for (std::optional<quint32> page = nextPage(0); page; page = nextPage(*page)) {
            progress();
            scan.pages.insert(*page);
            scanPage(*page, scan);
        }
    } catch (const JetError& error) {
        scan.note(error.reason());
    }
    const auto count = qint64(scan.found.size());
    if (counts == Counts::MustAgree)
        compareCounts(scan, progress);
    const auto placeOf = [](const Found& found) { return std::tuple(found.place.page, found.place.slot); };
    std::vector<Found> byPlace = scan.found;
    std::sort(byPlace.begin(), byPlace.end(), [&](const Found& a, const Found& b) { return placeOf(a) < placeOf(b); });
    if (std::adjacent_find(byPlace.begin(), byPlace.end(),
                           [&](const Found& a, const Found& b) { return placeOf(a) == placeOf(b); }) != byPlace.end())
        scan.note(u"同じ行が二度現れます"_s);

    std::stable_sort(scan.found.begin(), scan.found.end(),
                     [](const Found& a, const Found& b) { return a.number < b.number; });
    if (m_counter >= 0 && isAnyRowDouble(scan.found))
        scan.note(u"同じ行が二度現れます"_s);

    if (!scan.firstDamage.isEmpty()) {
        JetError error = damaged(scan.firstDamage);
        error.read = count;
        error.expected = definedCount() != 0 ? definedCount() : -1;
        throw error;
    }
    std::vector<Place> places;
    places.reserve(scan.found.size());
    for (const Found& found : scan.found)
        places.push_back(found.place);
    return places;
}

/// A page that was written in the place of another has rows that are there already, to the byte; those of the other are
/// lost. The counts may agree by chance. `found` is in the order of the counter.
bool JetTable::isAnyRowDouble(const std::vector<Found>& found) const {
    const auto bytesAt = [this](const Place& place) {
        m_file.readRows(place.page, quint32(m_entry.table_pg));
        const RowBytes row = m_file.rowAt(place.slot);
        return QByteArray(reinterpret_cast<const char*>(m_file.handle()->pg_buf) + row.start, row.length);
    };
    const auto isDouble = [&](const Found& a, const Found& b) {
        return a.number == b.number && bytesAt(a.place) == bytesAt(b.place);
    };
    return std::adjacent_find(found.begin(), found.end(), isDouble) != found.end();
}

/// A row that says that it is older than some columns must not hold fields of them: with a wrong count of its columns
/// it would lose values in silence.
void JetTable::requireSoundCounts(const RowBytes& row, const Place& place) const {
    const bool isJet3 = m_file.isJet3();
    const int countBytes = isJet3 ? 1 : 2;
    const auto countAt = [&](int at) {
        if (at < row.start || at + countBytes > row.start + row.length)
            throw damagedRow(place);
        return isJet3 ? mdb_get_byte(m_file.handle()->pg_buf, at) : mdb_get_int16(m_file.handle()->pg_buf, at);
    };
    const int columns = countAt(row.start);
    if (columns > m_mostColumns)
        throw damagedRow(place);
    if (m_table->num_var_cols == 0 || m_mostColumns != int(m_columns.size()))
        return; // no fields of varying length, or a column was deleted and is still counted
    const int nullBytes = (columns + 7) / 8;
    const int varying = countAt(row.start + row.length - nullBytes - countBytes);
    const auto isVarying = [&](const Column& column) { return !column.isFixed && column.number < columns; };
    if (varying > std::count_if(m_columns.begin(), m_columns.end(), isVarying))
        throw damagedRow(place);
}

std::vector<Field> JetTable::fieldsAt(const Place& place) const {
    if (!m_file.readRows(place.page, quint32(m_entry.table_pg)))
        throw damaged(u"ページ%1はこの表のページではありません"_s.arg(place.page));
    const RowBytes row = m_file.rowAt(place.slot);
    requireSoundCounts(row, place);
    std::vector<MdbField> cracked(m_columns.size());
    if (mdb_crack_row(m_table, row.start, size_t(row.length), cracked.data()) < 0)
        throw damagedRow(place);
    const auto* page = reinterpret_cast<const char*>(m_file.handle()->pg_buf);
    const QByteArrayView rowBytes(page + row.start, row.length);
    std::vector<Field> fields;
    fields.reserve(m_columns.size());
    for (size_t i = 0; i < m_columns.size(); ++i) {
        const bool isNull = cracked[i].is_null != 0;
        if (isNull || m_columns[i].type == MDB_BOOL) {
            fields.push_back({isNull, {}});
            continue;
        }
        const auto* value = static_cast<const char*>(cracked[i].value);
        if (!value || cracked[i].siz < 0 || value < rowBytes.begin() || cracked[i].siz > rowBytes.end() - value)
            throw damagedRow(place);
        fields.push_back({false, QByteArrayView(value, cracked[i].siz)});
    }
    return fields;
}

} // namespace velloria::store::jet
