// The values of a row.
#pragma once

#include "store/jet/jet_file.h"
#include "store/old_diary.h"

namespace velloria::store::jet {

/// What the definition of a table says of a column.
struct Column {
    QString name;
    int type;
    int size; ///< in bytes
    bool isFixed;
    bool isCounter;
    int number; ///< in the rows; a row that has fewer columns is older than this one
};

/// One field of a row; a column that a row is older than is missing in it.
struct Field {
    bool isNull;
    QByteArrayView bytes; ///< within the page that was read last
};

/// Throws JetError for a kind of column that no diary has.
void requireKnownKind(const Column& column);

/// A text is UTF-8. A Boolean has no missing value: it is one. Throws JetError for bytes that are no value of the
/// column.
OldValue valueOf(const JetFile& file, const Column& column, const Field& field);

/// Days since 1899/12/30, the time of day behind the point, as "yyyy/mm/dd" or "yyyy/mm/dd hh:nn:ss". Throws JetError
/// outside the years 100 to 9999.
QString dateOf(double days);

} // namespace velloria::store::jet
