#include "store/jet/jet_layout.h"

#include "store/jet/jet_error.h"
#include "store/jet/jet_table.h"

#include <algorithm>

using namespace Qt::StringLiterals;

namespace velloria::store::jet {
namespace {

struct Came {
    int version;
    QStringView table;
    QStringView column; ///< null for the whole table
};

constexpr Came kCame[] = {
    {100, u"LogDB", {}},
    {110, u"Contents", u"Weather"},
    {110, u"Contents", u"Genre"},
    {150, u"Contents", u"Number"},
    {150, u"Contents", u"PublishTime"},
    {150, u"FileDB", u"Number"},
    {200, u"Contents", u"Private"},
    {200, u"Contents", u"TrackBack"},
    {200, u"Contents", u"Extend"},
    {200, u"Contents", u"Excerpt"},
    {210, u"Contents", u"ImportMark"},
    {220, u"Memo", {}},
};
/// The texts of the table Option are files since then.
constexpr int kNoOption = 101;

[[noreturn]] void refuse(const QString& what, qint64 version) {
    throw damaged(u"バージョン%1の日記に%2があります"_s.arg(version).arg(what));
}

bool hasColumn(const JetFile& file, const CatalogTable& table, QStringView name) {
    const JetTable definition(file, table.page, table.name);
    const auto isNamed = [&name](const Column& column) { return column.name.compare(name, Qt::CaseInsensitive) == 0; };
    return std::ranges::any_of(definition.columns(), isNamed);
}

} // namespace

void requireLayout(const JetFile& file, const JetCatalog& catalog, qint64 version) {
    for (const Came& came : kCame) {
        if (version >= came.version)
            continue;
        const CatalogTable* table = catalog.find(came.table.toString());
        if (table && came.column.isNull())
            refuse(u"表「%1」"_s.arg(came.table), version);
        if (table && hasColumn(file, *table, came.column))
            refuse(u"列「%1」"_s.arg(came.column), version);
    }
    if (version >= kNoOption && catalog.find(u"Option"_s))
        refuse(u"表「Option」"_s, version);
}

} // namespace velloria::store::jet
