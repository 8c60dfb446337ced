// Reads the tables of tests/data/platform: UTF-8, one header line, cells parted by TAB.
#pragma once

#include <QByteArray>
#include <QHash>
#include <QString>

#include <optional>
#include <vector>

namespace velloria::tests {

/// One row: cell by column name. A cell that is `\N` alone is absent. Escapes are turned back: `\\`, `\r`, `\n`, `\t`,
/// `\0`, `\xHH` one byte or control character, `\uHHHH` one 16-bit unit.
class VectorRow {
public:
    bool has(const char* column) const;
    QString text(const char* column) const;
    /// The cell as file bytes: code page 932, `\xHH` a raw byte.
    QByteArray bytes(const char* column) const;
    int line = 0;

    QHash<QByteArray, QString> cells; ///< as they stand in the file
};

/// All rows of tests/data/platform/`name`. Ends the test program when the file is missing or empty.
std::vector<VectorRow> readVectors(const char* name);

/// tests/data/`name`.
QString dataPath(const QString& name);

} // namespace velloria::tests
