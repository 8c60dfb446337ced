// What people see of an upload while it runs, and why it ended.
#pragma once

#include "publish/internet.h"
#include "publish/progress_view.h"

#include <functional>

namespace velloria::publish {

/// The progress window and the status panel of one run. What fails is told here at once, and each call that tells it is
/// false, so that a step can return it; the first failure ends the run. In the thread of the windows.
///
///     progress.show(title, u"送信中"_s); // serves other commands; throws when the program is about to end
///     if (!internet.putFile(file, name, type))
///         return progress.refused(title, text); // progress.reason() says why
class UploadProgress {
public:
    /// Both outlive this. `isProgramEnding` may be empty; it is asked wherever other commands may have run.
    UploadProgress(const Internet& internet, platform::Desk& desk, std::function<bool()> isProgramEnding);

    ProgressView& view() { return m_view; }

    /// Shows what is being done and lets other commands run. Throws platform::Failure when the program is about to end.
    void show(const QString& text);
    void show(const QString& title, const QString& text);

    /// Tells a failure, and is false like the step that failed.
    bool fail(const QString& title, const QString& text, const QString& status);
    /// The same for a refusal of the network; the status panel gets its words.
    bool refused(const QString& title, const QString& text);
    /// The same under the text that stands there.
    bool refused();
    /// The same for a folder that can't be entered, for that reason.
    bool notEntered(const QString& folder, const QString& reason);

    /// Puts it after the reason, unless it is in there.
    void addReason(const QString& reason);
    void setReason(const QString& reason) { m_reason = reason; }
    /// Why the run ended, "" while nothing has failed.
    const QString& reason() const { return m_reason; }

private:
    void pump();

    const Internet& m_internet;
    platform::Desk& m_desk;
    std::function<bool()> m_isProgramEnding;
    ProgressView m_view;
    QString m_reason;
};

} // namespace velloria::publish
