#include "store/foreign_parts.h"

#include "platform/failure.h"
#include "store/sqlite/statement.h"

#include <QHash>

using namespace Qt::StringLiterals;

namespace velloria::store {
namespace {

using sqlite::Statement;

/// The tables of a diary, in lower case, with their columns.
const QHash<QString, QStringList>& ownParts() {
    static const QHash<QString, QStringList> parts{
        {u"contents"_s,
         {u"recordid"_s, u"day"_s, u"number"_s, u"title"_s, u"contents"_s, u"extend"_s, u"excerpt"_s, u"weather"_s,
          u"genre"_s, u"publishtime"_s, u"private"_s, u"trackback"_s, u"importmark"_s}},
        {u"filedb"_s, {u"fileid"_s, u"filename"_s, u"day"_s, u"number"_s, u"uploaded"_s, u"logged"_s}},
        {u"logdb"_s, {u"logmonth"_s, u"logfilename"_s}},
        {u"memo"_s, {u"publishtime"_s, u"title"_s, u"memo"_s, u"no"_s, u"category"_s, u"ispass"_s}},
        {u"dbinfo"_s, {u"versioninfo"_s, u"ismemopass"_s, u"ispass"_s}},
    };
    return parts;
}

QByteArray named(QString name) {
    return '"' + name.replace(u'"', u"\"\""_s).toUtf8() + '"';
}

bool hasRow(const sqlite::Connection& connection, const QByteArray& query) {
    Statement row(connection, query + " LIMIT 1");
    return row.next();
}

[[noreturn]] void refuse(const QString& file, const QString& part) {
    throw platform::Failure(
        u"日記データベースに、Velloriaのものではないデータがあります。"_s, file,
        u"%1は新しい日記に写せません"_s.arg(part),
        u"データベースは変更されていません。それを作ったプログラムで取り出して削除してから、もう一度実行してください。"_s);
}

} // namespace

void refuseForeignParts(const sqlite::Connection& connection, const QString& file) {
    Statement tables(connection, "SELECT name FROM sqlite_master WHERE type = 'table' AND name NOT GLOB 'sqlite_*' AND "
                                 "sql NOT GLOB 'CREATE VIRTUAL*' ORDER BY rowid");
    while (tables.next()) {
        const QString table = tables.text(0);
        const auto own = ownParts().constFind(table.toLower());
        if (own == ownParts().constEnd()) {
            if (hasRow(connection, "SELECT 1 FROM " + named(table)))
                refuse(file, u"テーブル「%1」"_s.arg(table));
            continue;
        }
        Statement columns(connection, "SELECT name FROM pragma_table_xinfo(?1) WHERE hidden = 0");
        columns.bind(table);
        while (columns.next()) {
            const QString column = columns.text(0);
            const QByteArray value = named(table) + '.' + named(column);
            if (!own->contains(column.toLower()) &&
                hasRow(connection, "SELECT 1 FROM " + named(table) + " WHERE " + value + " IS NOT NULL AND " + value +
                                       " IS NOT ''"))
                refuse(file, u"テーブル「%1」の列「%2」"_s.arg(table, column));
        }
    }
}

} // namespace velloria::store
