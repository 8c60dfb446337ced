#include "store/jet/jet_reader.h"

#include "store/jet/jet_catalog.h"
#include "store/jet/jet_error.h"
#include "store/jet/jet_layout.h"
#include "store/jet/jet_table.h"

using namespace Qt::StringLiterals;

namespace velloria::store::jet {
namespace {

/// The columns' numbers, each of a kind that can be read.
std::vector<int> columnsOf(const JetTable& table, const QStringList& names) {
    std::vector<int> columns;
    for (const QString& name : names) {
        columns.push_back(table.column(name));
        requireKnownKind(table.columns()[columns.back()]);
    }
    return columns;
}

Row rowAt(const JetFile& file, const JetTable& table, const std::vector<int>& columns, const Place& place) {
    const std::vector<Field> fields = table.fieldsAt(place);
    Row row;
    for (const int column : columns)
        row.values.push_back(valueOf(file, table.columns()[column], fields[column]));
    return row;
}

/// That of its first row; 0 without a row.
qint64 versionOf(const JetFile& file, const JetCatalog& catalog, const std::function<void()>& progress) {
    const CatalogTable* entry = catalog.find(u"DBInfo"_s);
    if (!entry) {
        // Both came with the same version: without its number every later column would be left behind.
        if (catalog.find(u"LogDB"_s))
            throw damaged(u"表「DBInfo」がありません"_s);
        return 0;
    }
    const JetTable table(file, entry->page, entry->name);
    const std::vector<int> columns = columnsOf(table, {u"VersionInfo"_s});
    const std::vector<Place> places = table.scan(progress);
    if (places.empty())
        return 0;
    const OldValue value = rowAt(file, table, columns, places.front()).values.front();
    if (std::holds_alternative<QByteArray>(value))
        throw damaged(u"「VersionInfo」が数ではありません"_s);
    const auto* number = std::get_if<qint64>(&value);
    return number ? *number : 0;
}

} // namespace

void tellVersion(const QString& name, JetOutput& output) {
    const JetFile file(name);
    const auto progress = [&output] { output.showProgress(); };
    const JetCatalog catalog(file, progress);
    if (!catalog.find(u"DBInfo"_s) && !catalog.find(u"Contents"_s))
        throw JetError(Fault::NotReadable, u"日記の表がありません"_s);
    const Version version{versionOf(file, catalog, progress)};
    requireLayout(file, catalog, version.number);
    output.write(version);
}

void tellTable(const QString& name, const QString& tableName, const QStringList& columnNames, JetOutput& output) {
    const JetFile file(name);
    const auto progress = [&output] { output.showProgress(); };
    const JetCatalog catalog(file, progress);
    const CatalogTable* entry = catalog.find(tableName);
    if (!entry)
        throw JetError(Fault::NoTable, u"「%1」"_s.arg(tableName));
    const JetTable table(file, entry->page, entry->name);
    const std::vector<int> columns = columnsOf(table, columnNames);
    const std::vector<Place> places = table.scan(progress);
    output.write(Begin{qint64(places.size())});
    qint64 sent = 0;
    try {
        for (const Place& place : places) {
            output.write(rowAt(file, table, columns, place));
            ++sent;
        }
    } catch (JetError& error) {
        error.read = sent;
        error.expected = qint64(places.size());
        throw;
    }
    output.write(End{sent, table.definedCount()});
}

} // namespace velloria::store::jet
