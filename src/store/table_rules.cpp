#include "store/table_rules.h"

using namespace Qt::StringLiterals;

namespace velloria::store {
namespace {

OldValue text(const char* utf8) {
    return QByteArray(utf8);
}

OldValue number(qint64 value) {
    return value;
}

QByteArray dayOf(const OldValue& day) {
    if (const auto* number = std::get_if<qint64>(&day))
        return QByteArray::number(*number);
    const auto* utf8 = std::get_if<QByteArray>(&day);
    return utf8 ? *utf8 : QByteArray();
}

/// The day as it stood, in whatever form.
OldValue midnightOf(const OldValue& day) {
    return dayOf(day) + " 00:00:00";
}

OldValue entryOf(const OldValue& day) {
    return number(dayOf(day) == "ALL" ? 0 : 1);
}

} // namespace

QStringList TableRule::columnsOf(qint16 version) const {
    QStringList names;
    for (const ColumnRule& column : columns) {
        if (version >= column.since)
            names += QString::fromLatin1(column.name);
    }
    return names;
}

const std::vector<TableRule>& tableRules() {
    using enum ColumnKind;
    static const std::vector<TableRule> rules{
        {"Contents",
         0,
         u"日記の内容のコピーを開始。"_s,
         u"日記の内容のコピーを終了。"_s,
         {{"Day", Day, 0, {}, text("")},
          {"Title"},
          {"Contents"},
          {"Weather", Text, 110, text("-")},
          {"Genre", Text, 110, text("一般")},
          {"Number", Number, 150, number(1), number(1)},
          {"PublishTime", Text, 150, {}, {}, midnightOf},
          {"Private", Flag, 200, number(0), number(0)},
          {"TrackBack", Text, 200, text("")},
          {"Extend", Text, 200, text("")},
          {"Excerpt", Text, 200, text("")},
          {"ImportMark", Text, 210, text("")}}},
        {"FileDB",
         0,
         u"ファイル登録データベースのコピーを開始。"_s,
         u"ファイル登録データベースのコピーを終了。"_s,
         {{"FileName"},
          {"Day"},
          {"Uploaded", Flag, 0, {}, number(0)},
          {"Logged", Flag, 0, {}, number(0)},
          {"Number", Number, 150, {}, number(0), entryOf}}},
        {"LogDB",
         100,
         u"ログ登録データベースのコピーを開始。"_s,
         u"ログ登録データベースのコピーを終了。"_s,
         {{"LogMonth"}, {"LogFileName"}}},
        {"Memo",
         220,
         u"ベロリアメモデータのコピーを開始。"_s,
         u"ベロリアメモデータのコピーを終了。"_s,
         {{"PublishTime"}, {"Title"}, {"Memo"}}},
    };
    return rules;
}

} // namespace velloria::store
