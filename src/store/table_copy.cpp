#include "store/table_copy.h"

#include "core/date_forms.h"
#include "core/day_key.h"
#include "platform/failure.h"
#include "platform/text_fold.h"
#include "platform/utf8.h"
#include "store/sqlite/statement.h"

#include <QHashFunctions>
#include <QRegularExpression>

#include <optional>

using namespace Qt::StringLiterals;

namespace velloria::store {

using platform::Failure;
using sqlite::Statement;

namespace {

QByteArray asText(const OldValue& value) {
    const auto* number = std::get_if<qint64>(&value);
    return number ? QByteArray::number(*number) : std::get<QByteArray>(value);
}

/// Elsewhere points part the numbers of a time, but a diary's day is a date. Nothing for another text.
QString withSlashes(const QString& day) {
    static const QRegularExpression points(u"^ *[0-9]{1,4}\\.[0-9]{1,2}\\.[0-9]{1,2} *$"_s);
    QString plain = platform::fold(day);
    return points.match(plain).hasMatch() ? plain.replace(u'.', u'/') : QString();
}

/// The date that a text means, in the one form; a text that is none as it stands.
QByteArray asDay(const QByteArray& utf8, int yearNow) {
    const QString text = platform::fromUtf8(utf8);
    // What nearly all are; a year below 1000 may mean another one.
    if (core::isDayKey(text) && text[0] != u'0')
        return utf8;
    const QString slashed = withSlashes(text);
    const QString day = core::formatTextAsDate(slashed.isEmpty() ? text : slashed, u"yyyy/mm/dd", yearNow);
    return day == text || (!slashed.isEmpty() && !core::isDayKey(day)) ? utf8 : day.toUtf8();
}

QString shown(const OldValue& value) {
    constexpr int kLongest = 40;
    return std::holds_alternative<std::monostate>(value) ? QString() : platform::fromUtf8(asText(value)).left(kLongest);
}

qint64 lastRow(const sqlite::Connection& connection, const QByteArray& table) {
    Statement row(connection, "SELECT max(rowid) FROM " + table);
    return row.next() ? row.integer64(0) : 0;
}

} // namespace

void addToChecksum(std::size_t& checksum, const OldValue& value) {
    checksum = qHash(quint64(value.index()), checksum);
    if (const auto* number = std::get_if<qint64>(&value)) {
        checksum = qHash(quint64(*number), checksum);
    } else if (const auto* utf8 = std::get_if<QByteArray>(&value)) {
        checksum = qHash(quint64(utf8->size()), checksum);
        checksum = qHashBits(utf8->constData(), std::size_t(utf8->size()), checksum);
    }
}

TableCopy::TableCopy(OldDiary& source, const sqlite::Connection& target, QString file, qint16 version, int yearNow)
    : m_source(source)
    , m_target(target)
    , m_file(std::move(file))
    , m_version(version)
    , m_yearNow(yearNow) {}

CopiedRows TableCopy::copy(const TableRule& rule, const std::function<void(qint64)>& counted,
                           const std::function<void(qint64)>& copied) {
    m_rule = &rule;
    m_rowNumber = 0;
    const QStringList sourceColumns = rule.columnsOf(m_version);
    const qsizetype day = sourceColumns.indexOf(u"Day"_s);
    QByteArrayList columns;
    QByteArrayList parameters;
    for (const ColumnRule& column : rule.columns) {
        columns += column.name;
        parameters += "?";
    }
    const qint64 expected = m_source.open(QString::fromLatin1(rule.name), sourceColumns);
    counted(expected);
    const QByteArray before = QByteArray::number(lastRow(m_target, rule.name));
    CopiedRows rows{"SELECT " + columns.join(", ") + " FROM " + rule.name + " WHERE rowid > " + before +
                    " ORDER BY rowid"};
    Statement insert(m_target, QByteArray("INSERT OR ABORT INTO ") + rule.name + " (" + columns.join(", ") +
                                   ") VALUES (" + parameters.join(", ") + ')');
    std::vector<OldValue> values(rule.columns.size());
    while (m_source.next(m_row)) {
        ++m_rowNumber;
        std::size_t at = 0;
        for (std::size_t i = 0; i < values.size(); ++i) {
            const ColumnRule& column = rule.columns[i];
            if (m_version >= column.since)
                values[i] = converted(column, m_row[at++]);
            else
                values[i] = column.fromDay ? column.fromDay(m_row[std::size_t(day)]) : column.otherwise;
            addToChecksum(rows.checksum, values[i]);
        }
        insert.bind(values).run();
        ++rows.count;
        copied(rows.count);
    }
    if (rows.count != expected)
        throw Failure(u"日記データベースを最後まで読み取れません。"_s, m_file,
                      u"テーブル「%1」の%2行のうち%3行を読み取りました"_s.arg(QLatin1StringView(rule.name))
                          .arg(expected)
                          .arg(rows.count));
    return rows;
}

OldValue TableCopy::converted(const ColumnRule& column, const OldValue& value) const {
    if (std::holds_alternative<std::monostate>(value))
        return column.whenNull;
    switch (column.kind) {
    case ColumnKind::Day:
        return asDay(asText(value), m_yearNow);
    case ColumnKind::Number:
        return wholeNumber(column, value);
    case ColumnKind::Flag:
        return qint64(std::get<qint64>(wholeNumber(column, value)) != 0);
    case ColumnKind::Text:
        break;
    }
    return asText(value);
}

OldValue TableCopy::wholeNumber(const ColumnRule& column, const OldValue& value) const {
    bool isNumber = true;
    const auto* number = std::get_if<qint64>(&value);
    const qint64 whole = number ? *number : std::get<QByteArray>(value).trimmed().toLongLong(&isNumber);
    if (!isNumber || whole != qint16(whole))
        refuse(column, shown(value));
    return whole;
}

void TableCopy::refuse(const ColumnRule& column, const QString& value) const {
    QStringList row;
    for (const OldValue& field : m_row) {
        if (constexpr int kShownFields = 2; row.size() < kShownFields)
            row += shown(field);
    }
    throw Failure(u"日記データベースに、新しい形式で書けない値があります。"_s, m_file,
                  u"テーブル「%1」の%2行目(%3)の「%4」が「%5」です"_s.arg(QLatin1StringView(m_rule->name))
                      .arg(m_rowNumber)
                      .arg(row.join(u' '), QLatin1StringView(column.name), value));
}

void requireCopied(const QString& file, const std::vector<CopiedRows>& tables) {
    const sqlite::Connection connection(file, sqlite::Access::ReadOnly);
    for (const CopiedRows& table : tables) {
        qint64 count = 0;
        std::size_t checksum = 0;
        Statement rows(connection, table.query);
        while (rows.next()) {
            ++count;
            for (int i = 0; i < rows.columns(); ++i)
                addToChecksum(checksum, rows.borrowed(i));
        }
        if (count != table.count || checksum != table.checksum)
            throw Failure(u"コピーした日記が元の日記と一致しません。"_s, file,
                          u"%1行のうち%2行 (%3)"_s.arg(table.count).arg(count).arg(QString::fromLatin1(table.query)));
    }
}

} // namespace velloria::store
