// How the program talks to the person in front of it. Logic never opens a window: it asks the Desk.
#pragma once

#include <QString>

#include <optional>

namespace velloria::platform {

class Failure;

enum class MessageKind { Critical, Question, Exclamation, Information, Plain };
enum class Pointer { Default, Hourglass };
enum class PathMode { Open, Save, Folder };

/// What the password window has lines for.
enum class PasswordLines { One, WithConfirmation };

/// What was typed there.
struct Passwords {
    QString password;
    QString confirmation; ///< "" without its line
};

/// What a file or folder dialog is to show.
struct PathRequest {
    PathMode mode = PathMode::Open;
    QString title;
    QString filter; ///< pairs of text and pattern, parted by "|"
    QString folder; ///< where it starts; the user's home folder when it is missing
    /// Without the dot; what the dialog adds to a name without an ending, so that it can ask before it replaces a file.
    QString defaultSuffix = {};
    QString name = {};               ///< the file name that a dialog to save proposes
    bool asksBeforeReplacing = true; ///< a dialog to save does; not where whoever asks for the name has a question
};

/// What the one progress window of network work shows.
struct ProgressWindow {
    QString caption;
    QString title;
    QString text; ///< line ends are CR LF
    int max = 0;
    int value = 0;               ///< may lie above `max`; the bar is then full
    bool isOkEnabled = false;    ///< OK closes it
    bool isFrameEnabled = false; ///< so does its frame
    bool isStopEnabled = false;  ///< it has a button by which the user ends the work
};

/// What the window of a database update shows.
struct UpdaterWindow {
    QString text; ///< every line so far; line ends are CR LF
    int max = 100;
    int value = 0;
};

/// The desktop answers with windows, the command line tool with the terminal, tests with a script. Line ends within a
/// text are CR LF.
class Desk {
public:
    virtual ~Desk() = default;

    /// A box with OK alone.
    virtual void message(MessageKind kind, const QString& text, const QString& title = QStringLiteral("Velloria")) = 0;
    /// The same with a button that shows how it came to that, some lines for somebody who looks for the reason. Desks
    /// without windows do without them.
    virtual void detailedMessage(MessageKind kind, const QString& text, const QString& details);
    /// A question with Yes and No; true for Yes.
    virtual bool ask(const QString& text, const QString& title = QStringLiteral("Velloria")) = 0;
    /// A file or folder dialog; nothing when it is cancelled.
    virtual std::optional<QString> choosePath(const PathRequest& request) = 0;
    /// A prompt for one line, `whenAsked` in it at the start; "" when it is cancelled.
    virtual QString input(const QString& text, const QString& whenAsked,
                          const QString& title = QStringLiteral("Velloria")) = 0;
    /// The password window under this caption; nothing when it is cancelled.
    virtual std::optional<Passwords> passwords(const QString& caption, PasswordLines lines) = 0;

    /// The first panel of the status bar.
    virtual void status(const QString& text) = 0;
    /// A line of that panel about something unusual, which the routine lines of the browser must not wipe out.
    virtual void notice(const QString& text) { status(text); }
    virtual void pointer(Pointer shape) = 0;
    /// How far long work has come, on the one progress line.
    virtual void progress(const QString& text, int value, int max) = 0;
    /// Shows the progress window as told; it is drawn when this returns.
    virtual void progressWindow(const ProgressWindow& shown) = 0;
    virtual void closeProgressWindow() = 0;
    /// Shows the window of a database update as told. Until it is closed windows paint and timers run, but nothing of
    /// what a person does reaches the program: the wish to close it is fulfilled after that.
    virtual void updaterWindow(const UpdaterWindow& shown) = 0;
    virtual void closeUpdaterWindow() = 0;
    /// Serves once what is waiting, the user's input too: other commands may run in here.
    virtual void pump() = 0;
    /// Passes a command such as `Play "x.wav"` to the player of sounds, which goes on by itself. What can't be played
    /// is silent.
    virtual void sound(const QString& command) = 0;
    /// Sends the embedded browser to an address.
    virtual void navigate(const QString& url) = 0;
    /// The critical box of a run-time failure and its line on the status panel.
    virtual void failure(const Failure& failure) = 0;

private:
    friend class Hourglass;
    int m_hourglasses = 0;
};

inline void Desk::detailedMessage(MessageKind kind, const QString& text, const QString& /*details*/) {
    message(kind, text);
}

/// The hourglass, for as long as this lives: no way out of a command leaves it behind, and a step of one does not take
/// away what the whole has set.
class Hourglass {
public:
    explicit Hourglass(Desk& desk)
        : m_desk(desk) {
        if (++m_desk.m_hourglasses == 1)
            m_desk.pointer(Pointer::Hourglass);
    }
    ~Hourglass() {
        if (--m_desk.m_hourglasses == 0)
            m_desk.pointer(Pointer::Default);
    }
    Hourglass(const Hourglass&) = delete;
    Hourglass& operator=(const Hourglass&) = delete;

private:
    Desk& m_desk;
};

} // namespace velloria::platform
