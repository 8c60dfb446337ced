// A diary of an older version, updated by hand.
#pragma once

#include "platform/file_write.h"
#include "store/migration.h"
#include "store/old_diary_home.h"
#include "store/optimize_command.h"

#include <QFileInfo>

namespace velloria::tests {

using namespace Qt::StringLiterals;

inline constexpr int kGivenOut[] = {0, 100, 101, 110, 150, 200, 210, 220};

inline const QString kAllContents =
    u"SELECT Day, Title, Contents, Weather, Genre, Number, PublishTime, Private, TrackBack, "
    "Extend, Excerpt, ImportMark FROM Contents ORDER BY RecordID"_s;
inline const QString kAllFiles = u"SELECT FileName, Day, Number, Uploaded, Logged FROM FileDB ORDER BY FileID"_s;

class Migration : public OldDiaryHome {
protected:
    void update(int version) {
        desk.events = {};
        store::UpdateDatabase(run, qint16(version));
    }
    QString failureOfUpdate(int version) {
        return failureOf([&] { update(version); });
    }
    bool optimize(const QJsonArray& answers = {u"yes"_s}) {
        desk.events = {};
        desk.answers = answers;
        return store::optimizeCommand(run);
    }

    /// What the updater's window was told, as "max:value" of its bar and the lines that each telling added.
    QStringList shown() const {
        QStringList shown;
        QString before = u"アップデートを開始します。"_s;
        QString lastBar;
        for (const QJsonValue& event : desk.events) {
            if (event[u"caption"_s] != u"Velloria DB Updater"_s)
                continue;
            const QString text = event[u"text"_s].toString();
            EXPECT_TRUE(text.startsWith(before)) << "a line is gone";
            const QString added = text.sliced(before.size());
            EXPECT_TRUE(added.isEmpty() || added.startsWith(u"\r\n"_s));
            const QString bar = u"%1:%2"_s.arg(event[u"max"_s].toInt()).arg(event[u"value"_s].toInt());
            if (!added.isEmpty())
                shown += added.sliced(2);
            if (bar != lastBar)
                shown += bar;
            before = text;
            lastBar = bar;
        }
        return shown;
    }
    QStringList lines() const {
        QStringList lines = shown();
        lines.removeIf([](const QString& line) { return line.contains(u':'); });
        return lines;
    }

    QString piece(const QString& name) const { return session.DataPath + u"Customize/"_s + name; }
    QStringList leftBehind() const {
        QStringList left;
        for (const QString& name : {old(), fresh()}) {
            for (const QString& ending : {u""_s, u"-journal"_s, u"-wal"_s})
                left += exists(name + ending) ? QStringList{QFileInfo(name + ending).fileName()} : QStringList();
        }
        return left;
    }
};

/// The present form of the rows that fillOld wrote.
inline QStringList contentsFrom(int version) {
    const auto since = [version](int first, const QString& there, const QString& missing) {
        return version >= first ? there : missing;
    };
    const auto row = [&](const QString& first, const QString& weather, const QString& genre, const QString& number,
                         const QString& time, const QString& day, const QString& flags, const QString& mark) {
        return first + u'|' + since(110, weather + u'|' + genre, u"-|一般"_s) + u'|' + since(150, number, u"1"_s) +
               u'|' + since(150, time, day + u" 00:00:00"_s) + u'|' + since(200, flags, u"0|||"_s) + u'|' +
               since(210, mark, u""_s);
    };
    return {row(u"2001/03/04|表 '\"|a\r\n𠮷"_s, u"晴れ"_s, u"映画"_s, u"2"_s, u"2001/03/05 01:02:03"_s, u"2001/3/4"_s,
                u"1|t|e|x"_s, u"m"_s),
            row(u"|NULL|NULL"_s, u"NULL"_s, u"NULL"_s, u"1"_s, u"NULL"_s, u""_s, u"0|NULL|NULL|NULL"_s, u"NULL"_s),
            row(u"someday||"_s, u""_s, u""_s, u"3"_s, u""_s, u"someday"_s, u"0|||"_s, u""_s),
            row(u"2001/03/04|last|b"_s, u"-"_s, u"一般"_s, u"1"_s, u"2001/03/04 00:00:00"_s, u"2001/03/04"_s,
                u"0||NULL|NULL"_s, u""_s)};
}

inline QStringList tableLines(int version) {
    QStringList lines{u"テンポラリファイル作成中。"_s,
                      u"テンポラリファイル作成完了。"_s,
                      u"日記の内容のコピーを開始。"_s,
                      u"日記の内容のコピーを終了。"_s,
                      u"ファイル登録データベースのコピーを開始。"_s,
                      u"ファイル登録データベースのコピーを終了。"_s};
    if (version >= 100)
        lines += {u"ログ登録データベースのコピーを開始。"_s, u"ログ登録データベースのコピーを終了。"_s};
    else
        lines += u"ログ登録データベースのコピーはスキップ。"_s;
    if (version >= 220)
        lines += {u"ベロリアメモデータのコピーを開始。"_s, u"ベロリアメモデータのコピーを終了。"_s};
    if (version < 101)
        lines += {u"オプションの書き出し開始。"_s, u"オプションの書き出しを終了。"_s};
    if (version >= 220)
        lines += {u"Database Informationのコピーを開始。"_s, u"Database Informationのコピーを終了。"_s};
    return lines + QStringList{u"データベースの更新終了。"_s, u"復元中。"_s, u"復元完了。"_s,
                               u"テンポラリファイルの削除中。"_s, u"テンポラリファイルの削除完了。"_s};
}

} // namespace velloria::tests
