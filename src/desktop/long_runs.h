// Routines that work on while events are served: the upload, the check for a new version, the optimise, a
// post to a blog.
#pragma once

#include <QPointer>
#include <QSet>
#include <QWidget>

#include <functional>

namespace velloria::desktop {

enum class LongRoutine { Upload, UpdateCheck, Optimize, PostBlog };

/// Keeps each of them from starting inside itself, and the main window from closing under any.
class LongRuns {
public:
    /// Runs the routine; while the same one runs already, only a beep sounds. What it throws goes to the caller.
    void run(LongRoutine routine, const std::function<void()>& action);

    bool isAnyRunning() const { return !m_running.isEmpty(); }

    /// The main window wants to close, which it can't while one runs: they are to end, and after the last of them it
    /// is closed from the event loop.
    void endForClosing(QWidget& mainWindow) { m_closing = &mainWindow; }
    /// What a routine asks wherever other commands may have run.
    bool isEnding() const { return !m_closing.isNull(); }

private:
    void finished(LongRoutine routine);

    QSet<LongRoutine> m_running;
    QPointer<QWidget> m_closing;
};

} // namespace velloria::desktop
