// The copying of a diary into a fresh one, and the change of places.
#pragma once

#include "core/run.h"
#include "store/option_files.h"
#include "store/sqlite/connection.h"
#include "store/table_copy.h"
#include "store/updater.h"

#include <QDateTime>

#include <memory>

namespace velloria::store {

/// One update, as store/migration.h tells it.
class DatabaseUpdate {
public:
    DatabaseUpdate(const core::Run& run, qint16 oldVersion);

    void run();

private:
    void replaceDiary();
    void lockSource();
    void makeWorkingFiles();
    void copyAll();
    void copyInformation(OldDiary& source, const sqlite::Connection& target);
    void requireUnchangedSource() const;
    void takePlace();
    void removeWorkingFiles();

    const core::Run& m_run;
    qint16 m_version;
    QString m_diary;
    QString m_old; ///< the working files
    QString m_new;
    UpdaterLines m_updater;
    OptionFiles m_options;
    /// Of this program's own format: from the first copy to the change of places no other program writes.
    std::unique_ptr<sqlite::Connection> m_lock;
    std::pair<qint64, QDateTime> m_sourceState; ///< size and time of the other format's file
    std::vector<CopiedRows> m_copied;
};

} // namespace velloria::store
