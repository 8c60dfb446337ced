// The start of a run: user, folders, first-run files, database version, settings files.
#pragma once

#include "core/run.h"
#include "shell/factory_files.h"

#include <optional>

namespace velloria::shell {

/// What the login window gives: nothing when it is cancelled.
struct Login {
    QString id;
    QString password;
};

enum class StartResult {
    Ready,
    Ended, ///< the user cancelled, or a box has said why there is no going on
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

private:
    StartResult resolveUser(const std::optional<Login>& login);
    void resolveSingleUser();
    void requireStorableHome() const;
    bool copyFirstSettings() const;
    void copyFirstDiary() const;
    void readStoredPaths();
    StartResult checkDataFolder();
    void checkDatabase();
    void addCustomizeFiles();
    void findSettingsFiles();

    FactoryFiles factory() const { return FactoryFiles(m_session); }

    core::Session& m_session;
    platform::Desk& m_desk;
    const platform::Clock& m_clock;
};

} // namespace velloria::shell
