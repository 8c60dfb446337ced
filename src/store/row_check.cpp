#include "store/row_check.h"

#include "core/date_forms.h"
#include "core/day_key.h"
#include "store/sqlite/connection.h"
#include "store/sqlite/statement.h"

#include <algorithm>

using namespace Qt::StringLiterals;

namespace velloria::store {

using sqlite::Connection;
using sqlite::Statement;
using sqlite::Value;

namespace {

/// A column of an entry, and what people call it.
struct Column {
    const char* name;
    QStringView label;
    bool isNeeded = false;
};

constexpr Column kColumns[] = {
    {"Day", u"日付", true},
    {"Number", u"番号", true},
    {"Title", u"タイトル", true},
    {"Contents", u"内容", true},
    {"Extend", u"追記"},
    {"Excerpt", u"概要"},
    {"Weather", u"天気"},
    {"Genre", u"ジャンル"},
    {"PublishTime", u"保存日時", true},
    {"Private", u"公開・非公開", true},
    {"TrackBack", u"トラックバック"},
    {"ImportMark", u"読み込みの印"},
};
constexpr int kDay = 0;
constexpr int kNumber = 1;
constexpr int kTitle = 2;
constexpr int kExtend = 4;
constexpr int kPublishTime = 8;

void checkDays(const Connection& connection, QStringList& findings) {
    Statement rows(connection, "SELECT Day, count(*), typeof(Day) = 'text' FROM Contents WHERE Day IS NOT NULL "
                               "GROUP BY Day ORDER BY Day");
    while (rows.next()) {
        const QString day = rows.text(0);
        const bool isText = rows.boolean(2); // what is none equals no day that somebody looks for
        if (isText && core::isDayKey(day))
            continue;
        if (const std::optional<QDate> date = isText ? core::fullDay(day) : std::nullopt)
            findings += u"日付の形がちがう日: 「%1」(%2件、%3のこと)"_s.arg(day, rows.text(1), core::dayKey(*date));
        else
            findings += u"日付として読めない日: 「%1」(%2件)"_s.arg(day, rows.text(1));
    }
}

void checkNumbers(const Connection& connection, QStringList& findings) {
    Statement rows(connection, kDaysOutOfOrder);
    while (rows.next())
        findings += u"番号が1からの連番でない日: %1 (%2)"_s.arg(rows.text(0), rows.text(1));
}

/// An entry from the clipboard has no more than day, number, title and text until somebody saves it.
bool isUnsavedImport(const std::vector<Value>& row) {
    return std::all_of(row.begin() + kExtend, row.begin() + kPublishTime + 1, isMissing);
}

QString shownLabels(const std::vector<Value>& row, bool (*isMeant)(const std::vector<Value>&, int)) {
    QStringList labels;
    for (int i = 0; i < int(row.size()); ++i) {
        if (isMeant(row, i))
            labels += kColumns[i].label.toString();
    }
    return labels.join(u"、"_s);
}

bool lacks(const std::vector<Value>& row, int i) {
    return kColumns[i].isNeeded && isMissing(row[i]) && !(i == kPublishTime && isUnsavedImport(row));
}

void checkEntries(const Connection& connection, QStringList& findings) {
    QByteArrayList names;
    for (const Column& column : kColumns)
        names += column.name;
    Statement rows(connection, "SELECT " + names.join(", ") + " FROM Contents ORDER BY Day, Number, RecordID");
    std::vector<Value> row(std::size(kColumns));
    while (rows.next()) {
        for (int i = 0; i < int(row.size()); ++i)
            row[i] = rows.value(i);
        const QString missing = shownLabels(row, lacks);
        const QString broken = shownLabels(row, [](const auto& r, int i) { return isBroken(r[i]); });
        const QString entry = rows.text(kDay) + u' ' + rows.text(kNumber);
        if (!missing.isEmpty())
            findings += u"値のない日記: %1 (%2)"_s.arg(entry, missing);
        if (!broken.isEmpty())
            findings += u"文字の壊れた日記: %1 (%2)"_s.arg(entry, broken);
        if (row[kTitle] == Value(QByteArray()))
            findings += u"タイトルのない日記: "_s + entry;
    }
}

void checkImportGroups(const Connection& connection, QStringList& findings) {
    Statement rows(connection, "SELECT ImportMark, Day, Number FROM Contents WHERE ImportMark <> '' "
                               "GROUP BY Fold(ImportMark) HAVING count(*) = 1 ORDER BY ImportMark");
    while (rows.next())
        findings += u"日記が一つだけの読み込みグループ: 「%1」(%2 %3)"_s.arg(rows.text(0), rows.text(1), rows.text(2));
}

} // namespace

bool isMissing(const Value& value) {
    return std::holds_alternative<std::monostate>(value);
}

bool isBroken(const Value& value) {
    const auto* text = std::get_if<QByteArray>(&value);
    return text && (!text->isValidUtf8() || text->contains("\xEF\xBF\xBD"));
}

void checkRows(const Connection& connection, QStringList& findings) {
    checkDays(connection, findings);
    checkNumbers(connection, findings);
    checkEntries(connection, findings);
    checkImportGroups(connection, findings);
}

} // namespace velloria::store
