#include "store/jet/jet_catalog.h"

#include "store/jet/jet_error.h"
#include "store/jet/jet_table.h"

using namespace Qt::StringLiterals;

namespace velloria::store::jet {
namespace {

constexpr quint32 kCatalogPage = 2;
constexpr qint64 kTable = 1;
constexpr qint64 kSystemOrHidden = 0x80000002;
constexpr qint64 kPageMask = 0xffffff;

} // namespace

JetCatalog::JetCatalog(const JetFile& file, const std::function<void()>& progress) {
    try {
        read(file, progress);
    } catch (const JetError& error) {
        throw damaged(u"表の一覧が壊れています: "_s + error.reason()); // its counts are no rows of a diary
    }
}

void JetCatalog::read(const JetFile& file, const std::function<void()>& progress) {
    const JetTable list(file, kCatalogPage, u"MSysObjects"_s);
    const int columns[] = {list.column(u"Id"_s), list.column(u"Name"_s), list.column(u"Type"_s),
                           list.column(u"Flags"_s)};
    const auto isNumber = [&](int column) {
        const int type = list.columns()[column].type;
        return type == MDB_INT || type == MDB_LONGINT;
    };
    for (const int column : columns)
        requireKnownKind(list.columns()[column]);
    if (!isNumber(columns[0]) || !isNumber(columns[2]) || !isNumber(columns[3]))
        throw damaged(u"列の種類が違います"_s);

    // A table that is missing is noticed when it is wanted.
    for (const Place& place : list.scan(progress, Counts::Open)) {
        const std::vector<Field> fields = list.fieldsAt(place);
        const auto value = [&](int column) { return valueOf(file, list.columns()[column], fields[column]); };
        const auto number = [&](int column) {
            const OldValue found = value(column);
            return std::holds_alternative<qint64>(found) ? std::get<qint64>(found) : 0;
        };
        if (number(columns[2]) != kTable || (number(columns[3]) & kSystemOrHidden) != 0)
            continue;
        const OldValue name = value(columns[1]);
        if (const auto* utf8 = std::get_if<QByteArray>(&name))
            m_tables.push_back({QString::fromUtf8(*utf8), quint32(number(columns[0]) & kPageMask)});
    }
    if (m_tables.empty())
        throw damaged(u"表が一つもありません"_s);
}

const CatalogTable* JetCatalog::find(const QString& name) const {
    for (const CatalogTable& table : m_tables) {
        if (table.name.compare(name, Qt::CaseInsensitive) == 0)
            return &table;
    }
    return nullptr;
}

} // namespace velloria::store::jet
