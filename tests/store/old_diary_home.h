// Diaries of older versions, made by hand.
#pragma once

#include "core/files.h"
#include "store/diary_home.h"

#include <QFile>

#include <sqlite3.h>
#include <stdexcept>

namespace velloria::tests {

/// Fixture: words to put a diary of any version in the place of the present one, and to read what became of it.
class OldDiaryHome : public DiaryHome {
protected:
    QString old() const { return core::files::kUpdatedDiary.in(session); }
    QString fresh() const { return core::files::kFreshDiary.in(session); }

    /// Runs SQL on a file, which is made when it is missing.
    static void sqlOn(const QString& database, const QString& statements) {
        sqlite3* handle = nullptr;
        char* error = nullptr;
        sqlite3_open(QFile::encodeName(database).constData(), &handle);
        const int code = sqlite3_exec(handle, statements.toUtf8().constData(), nullptr, nullptr, &error);
        const std::string reason = error ? error : "";
        sqlite3_free(error);
        sqlite3_close(handle);
        if (code != SQLITE_OK)
            throw std::runtime_error(reason);
    }

    /// Each row of a query on a file as one text, its values parted by "|".
    static QStringList rowsOf(const QString& database, const QString& query) {
        sqlite3* handle = nullptr;
        QStringList rows;
        const auto take = [](void* target, int count, char** values, char**) {
            QStringList row;
            for (int i = 0; i < count; ++i)
                row += values[i] ? QString::fromUtf8(values[i]) : QStringLiteral("NULL");
            *static_cast<QStringList*>(target) += row.join(QChar(u'|'));
            return 0;
        };
        sqlite3_open_v2(QFile::encodeName(database).constData(), &handle, SQLITE_OPEN_READWRITE, nullptr);
        if (sqlite3_exec(handle, query.toUtf8().constData(), take, &rows, nullptr) != SQLITE_OK)
            rows += QString::fromUtf8(sqlite3_errmsg(handle));
        sqlite3_close(handle);
        return rows;
    }
    QStringList rows(const QString& query) const { return rowsOf(file(), query); }

    /// An empty diary as this version had it.
    void makeOld(int version) {
        QFile::remove(file());
        const auto from = [version](int since, const char* columns) {
            return QLatin1StringView(version >= since ? columns : "");
        };
        QString made = QStringLiteral("CREATE TABLE Contents (RecordID INTEGER PRIMARY KEY AUTOINCREMENT, Day TEXT, "
                                      "Title TEXT, Contents TEXT");
        made += from(110, ", Weather TEXT, Genre TEXT") + from(150, ", Number INTEGER, PublishTime TEXT");
        made += from(200, ", Private INTEGER, TrackBack TEXT, Extend TEXT, Excerpt TEXT");
        made += from(210, ", ImportMark TEXT");
        made += QStringLiteral("); CREATE TABLE FileDB (FileID INTEGER PRIMARY KEY AUTOINCREMENT, FileName TEXT, "
                               "Day TEXT, Uploaded INTEGER, Logged INTEGER");
        made += from(150, ", Number INTEGER") + QStringLiteral(");");
        made += from(100, "CREATE TABLE LogDB (LogMonth TEXT, LogFileName TEXT);");
        if (version < 101)
            made +=
                QStringLiteral("CREATE TABLE [Option] (Header TEXT, Footer TEXT, Header_Log TEXT, Footer_Log TEXT);");
        if (version >= 100)
            made += QStringLiteral("CREATE TABLE DBInfo (VersionInfo INTEGER") +
                    from(220, ", IsMemoPass INTEGER, IsPass INTEGER") +
                    QStringLiteral("); INSERT INTO DBInfo (VersionInfo) VALUES (%1);").arg(version);
        made += from(220, "CREATE TABLE Memo (PublishTime TEXT, Title TEXT, Memo TEXT, No INTEGER, Category TEXT, "
                          "IsPass INTEGER);");
        sqlOn(file(), made);
    }

    /// The same with rows in each table: a day in another form, a missing value in each column, text of all sorts.
    void fillOld(int version) {
        makeOld(version);
        const QString columns = QStringLiteral("Day, Title, Contents") +
                                QLatin1StringView(version >= 110 ? ", Weather, Genre" : "") +
                                QLatin1StringView(version >= 150 ? ", Number, PublishTime" : "") +
                                QLatin1StringView(version >= 200 ? ", Private, TrackBack, Extend, Excerpt" : "") +
                                QLatin1StringView(version >= 210 ? ", ImportMark" : "");
        const auto row = [version](const char* first, const char* weather, const char* number, const char* flags,
                                   const char* mark) {
            return QStringLiteral("(%1%2%3%4%5)")
                .arg(QString::fromUtf8(first), QString::fromUtf8(version >= 110 ? weather : ""),
                     QString::fromUtf8(version >= 150 ? number : ""), QString::fromUtf8(version >= 200 ? flags : ""),
                     QString::fromUtf8(version >= 210 ? mark : ""));
        };
        sqlOn(file(),
              QStringLiteral("INSERT INTO Contents (%1) VALUES %2, %3, %4, %5")
                  .arg(columns,
                       row("'2001/3/4', '表 ''\"', 'a' || char(13) || char(10) || '𠮷'", ", '晴れ', '映画'",
                           ", 2, '2001/03/05 01:02:03'", ", 1, 't', 'e', 'x'", ", 'm'"),
                       row("NULL, NULL, NULL", ", NULL, NULL", ", NULL, NULL", ", NULL, NULL, NULL, NULL", ", NULL"),
                       row("'someday', '', ''", ", '', ''", ", 3, ''", ", 0, '', '', ''", ", ''"),
                       row("'2001/03/04', 'last', 'b'", ", '-', '一般'", ", 1, '2001/03/04 00:00:00'",
                           ", 0, '', NULL, NULL", ", ''")));
        const bool hasNumber = version >= 150;
        sqlOn(file(),
              QStringLiteral("INSERT INTO FileDB (FileName, Day, Uploaded, Logged%1) VALUES ('a.gif', 'ALL', "
                             "1, 0%2), ('b.gif', '2001/3/4', 0, 1%3), ('c.gif', NULL, NULL, NULL%4)")
                  .arg(QLatin1StringView(hasNumber ? ", Number" : ""), QLatin1StringView(hasNumber ? ", 0" : ""),
                       QLatin1StringView(hasNumber ? ", 2" : ""), QLatin1StringView(hasNumber ? ", NULL" : "")));
        if (version >= 100)
            sqlOn(file(), QStringLiteral("INSERT INTO LogDB VALUES ('2001/03', 'log.htm'), (NULL, NULL)"));
        if (version < 101)
            sqlOn(file(), QStringLiteral("INSERT INTO [Option] VALUES ('<b>頭</b>', 'é', '', NULL), ('second', '', "
                                         "'', '')"));
        if (version >= 220)
            sqlOn(file(), QStringLiteral("INSERT INTO Memo VALUES ('2001/03/04', 't', 'memo', 7, 'c', 1), (NULL, NULL, "
                                         "NULL, NULL, NULL, NULL); UPDATE DBInfo SET IsMemoPass = 1, IsPass = NULL"));
    }
};

} // namespace velloria::tests
