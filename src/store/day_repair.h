// Days whose texts and numbers can be put right in one way alone.
#pragma once

#include "store/sqlite/connection.h"

#include <QMap>
#include <QStringList>

#include <vector>

namespace velloria::store {

/// What is wrong when it is made, on a connection in whose transaction it is mended. Throws platform::Failure.
class DayRepair {
public:
    explicit DayRepair(const sqlite::Connection& connection);

    bool isNeeded() const { return !m_days.isEmpty(); }
    /// Returns a line each for what was changed.
    QStringList run();

private:
    struct Row {
        QString day;
        qint64 record = 0;
        qint64 oldNumber = 0;
        int rank = 0; ///< of what stands for the number: a missing one, a number, a text
        bool isPrivate = false;
        qint64 number = 0;
    };

    void addEntriesDays();
    void addFilesDays();
    QStringList mend(const QString& day, const QStringList& spellings);
    std::vector<Row> rowsOf(const QStringList& spellings) const;
    QStringList moveFiles(const QString& day, const QStringList& spellings, const std::vector<Row>& rows) const;

    const sqlite::Connection& m_connection;
    QMap<QString, QStringList> m_days;      ///< to be mended, with each other text for the same day
    QMap<QString, QStringList> m_filesDays; ///< the same texts in the register of files
};

} // namespace velloria::store
