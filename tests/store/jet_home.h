// Diaries of the older programs, whole and damaged.
#pragma once

#include "store/diary_home.h"
#include "store/jet_diary.h"

#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

#include <algorithm>

namespace velloria::tests {

class JetHome : public DiaryHome {
protected:
    using Row = std::vector<store::OldValue>;

    static QString sample(const QString& name) { return QStringLiteral(VELLORIA_TEST_DATA "/jet/%1.mdb").arg(name); }

    /// Every row of the table, and the count that was told before.
    static std::vector<Row> rowsOf(store::OldDiary& diary, const QString& table, const QStringList& columns) {
        const qint64 count = diary.open(table, columns);
        std::vector<Row> rows;
        for (Row row; diary.next(row);)
            rows.push_back(row);
        EXPECT_EQ(qint64(rows.size()), count);
        return rows;
    }

    static std::vector<Row> rowsOf(const QString& file, const QString& table, const QStringList& columns) {
        store::JetDiary diary(file);
        return rowsOf(diary, table, columns);
    }

    /// What stands beside the file about what it holds.
    static QJsonObject contentsOf(const QString& name) {
        QFile file(QStringLiteral(VELLORIA_TEST_DATA "/jet/%1.json").arg(name));
        EXPECT_TRUE(file.open(QIODevice::ReadOnly));
        return QJsonDocument::fromJson(file.readAll()).object();
    }

    static store::OldValue valueOf(const QJsonValue& value) {
        if (value.isNull() || value.isUndefined())
            return {};
        if (value.isBool())
            return qint64(value.toBool());
        if (value.isDouble())
            return qint64(value.toInteger());
        return value.toString().toUtf8();
    }
};

} // namespace velloria::tests
