// One table of a Jet file: its columns and its rows.
#pragma once

#include "store/jet/jet_value.h"

#include <functional>
#include <optional>
#include <vector>

namespace velloria::store::jet {

/// Whether a table has as many rows as its definition says.
enum class Counts { MustAgree, Open };

/// All here throw JetError for a file that says what can't be.
class JetTable {
public:
    /// Reads the definition on the page. `file` outlives it.
    JetTable(const JetFile& file, quint32 page, const QString& name);
    ~JetTable();
    JetTable(const JetTable&) = delete;
    JetTable& operator=(const JetTable&) = delete;

    const std::vector<Column>& columns() const { return m_columns; }
    /// The column's number, without regard to case. Throws JetError for one that is not there.
    int column(const QString& name) const;
    /// Rows by the definition; 0 as well in a file that was not closed properly.
    qint64 definedCount() const { return m_table->num_rows; }

    /// Finds every live row, on whichever page it has come to lie. Throws JetError, with how many are readable, when a
    /// page or a row isn't, or when the counts must agree and don't. The order is that of the counting column where
    /// there is one, else as they lie. Tells each page as progress.
    std::vector<Place> scan(const std::function<void()>& progress, Counts counts = Counts::MustAgree) const;

    /// The fields of a row, in the order of the columns, good until another page is read.
    std::vector<Field> fieldsAt(const Place& place) const;

private:
    struct Found {
        qint64 number; ///< of the counting column
        Place place;
    };
    struct Scan;

    std::optional<quint32> nextPage(quint32 page) const;
    void scanPage(quint32 page, Scan& scan) const;
    Place resolved(const Place& place) const;
    Found foundAt(const Place& place) const;
    void noteForgottenPages(Scan& scan, const std::function<void()>& progress) const;
    void compareCounts(Scan& scan, const std::function<void()>& progress) const;
    bool isAnyRowDouble(const std::vector<Found>& found) const;
    void requireSoundCounts(const RowBytes& row, const Place& place) const;

    const JetFile& m_file;
    MdbCatalogEntry m_entry{};
    MdbTableDef* m_table = nullptr;
    std::vector<Column> m_columns;
    int m_counter = -1;
    int m_mostColumns = 0; ///< that a row may have, with deleted columns
};

} // namespace velloria::store::jet
