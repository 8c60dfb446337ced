// Table LogDB: which log page stands for which month.
#pragma once

#include "store/entry.h"

#include <vector>

namespace velloria::registers {

/// Each operation opens its own connection. Throws platform::Failure as FileRegister does.
class LogRegister {
public:
    explicit LogRegister(QString databaseFile);

    /// All rows in the order in which they were added.
    std::vector<store::LogRow> listLogs() const;
    bool FindLog(const QString& fileName) const;
    void addLog(const store::LogRow& row) const;
    /// Adds the row unless its month has a log.
    void addLogOfMonth(const store::LogRow& row) const;
    /// Removes the first row of this name and month; a null month is a missing one, a missing name is an empty one.
    void DeleteLog(const store::LogRow& row) const;

private:
    QString m_file;
};

} // namespace velloria::registers
