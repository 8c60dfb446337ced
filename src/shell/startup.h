// The start of a run: user, folders, first-run files, database version, settings files.
#pragma once

#include "core/run.h"
#include "shell/factory_files.h"
#include "shell/start_result.h"

#include <optional>

namespace velloria::shell {

/// What the login window gives: nothing when it is cancelled.
struct Login {
    QString id;
    QString password;
};

class Startup {
public:
    /// The session of the run is filled.
    explicit Startup(const core::Run& run);

    /// The start up to the windows: enter and prepare.
    StartResult run(const QString& myPath, const std::optional<Login>& login);

    /// The user, and where their settings are, with the program's folder as `myPath`. `login` counts when there is a
    /// user file. Throws platform::Failure when a file refuses.
    StartResult enter(const QString& myPath, const std::optional<Login>& login);

    /// Folders, database, settings files and the rest of the session. Throws platform::Failure when a file or the
    /// database refuses.
    StartResult prepare();

    /// What went wrong on the way and kept nobody from their diary, or why the start has ended without a box that says
    /// so; "" when nothing did. The former has been told as a notice, which windows that were not there could not show.
    const QString& notice() const { return m_notice; }

private:
    StartResult resolveUser(const std::optional<Login>& login);
    void resolveSingleUser();
    void requireStorableHome() const;
    bool copyFirstSettings() const;
    void copyFirstDiary() const;
    void beginEmptyDiary() const;
    void readStoredPaths();
    StartResult checkDataFolder();
    void checkDatabase();
    void backUpForToday();
    void tell(const QString& notice);

    FactoryFiles factory() const { return FactoryFiles(m_session); }

    core::Run m_run;
    core::Session& m_session;
    platform::Desk& m_desk;
    QString m_notice;
};

} // namespace velloria::shell
