// Asks the maker's site for a newer program, fetches it, and hands over to the separate program that installs it.
#pragma once

#include "core/run.h"
#include "publish/download_http.h"

#include <functional>
#include <optional>

namespace velloria::publish {

/// What the commands need of the program around them; each may be empty.
struct UpdateCalls {
    std::function<void()> stopBrowser = {};       ///< ends what the browser loads, and brings it to the front
    std::function<void(bool)> enableUpdater = {}; ///< whether the command MnuVellUpdater can be used
    std::function<void()> endProgram = {};        ///< the updater runs and waits for this program's end
    std::function<bool()> isProgramEnding = {};   ///< asked wherever other commands may have run; true ends the check
    std::function<bool()> isStopWanted = {};      ///< whether the user has had enough of the download
};

struct UpdateResult {
    bool isDone = false;
    QString reason = {}; ///< one line for standard error, "" when it is done
};

/// The two commands, in the thread of the windows, which are served meanwhile. Every refusal of a server or of the user
/// is told in a box of theirs; one of the machine is thrown as platform::Failure, after the same ending: the session
/// closed, the pointer at rest.
class UpdateCheck {
public:
    UpdateCheck(const core::Run& run, Internet& internet, UpdateCalls calls = {});

    /// From the maker's news to the started updater. Done as well when there is nothing newer, or when the fetched
    /// archive is left for later. An archive whose name would touch any file but an earlier archive is not fetched.
    UpdateResult MnuUpdateCheck();

    /// Starts the updater, which finds the running version in "update.txt" of the working folder.
    void MnuVellUpdater();

private:
    struct Offer {
        QString version;
        QString url;
        QString fileName;
    };

    UpdateResult check();
    bool fetchOffers();
    std::optional<Offer> readOffer() const;
    bool fetchArchive(const Offer& offer);
    bool mayBeSaved(const QString& fileName) const;
    void rememberArchive(const QString& fileName) const;
    UpdateResult handOver();
    bool launch();

    void tellNoOffer();
    /// The box, and the same for standard error.
    UpdateResult refuse(const QString& text);
    QString updateFolder() const;
    QString inHome(const QString& name) const { return m_session.MyPath + name; }
    bool isProgramEnding() const { return m_calls.isProgramEnding && m_calls.isProgramEnding(); }
    void enableUpdater(bool isEnabled) const;
    void endProgram() const;

    const core::Session& m_session;
    Internet& m_internet;
    platform::Desk& m_desk;
    UpdateCalls m_calls;
    DownloadHttp m_download;
    bool m_isLaunched = false;
    QString m_refusal; ///< of an address that is not asked for
};

} // namespace velloria::publish
