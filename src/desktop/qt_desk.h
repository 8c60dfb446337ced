// The Desk of the desktop: windows.
#pragma once

#include "platform/desk.h"

#include <QLineEdit>
#include <QPointer>

#include <functional>

class QMainWindow;
class QMessageBox;

namespace velloria::desktop {

class QtDesk : public platform::Desk {
public:
    void message(platform::MessageKind kind, const QString& text, const QString& title) override;
    void detailedMessage(platform::MessageKind kind, const QString& text, const QString& details) override;
    bool ask(const QString& text, const QString& title) override;
    std::optional<QString> choosePath(const platform::PathRequest& request) override;
    QString input(const QString& text, const QString& whenAsked, const QString& title) override;
    std::optional<platform::Passwords> passwords(const QString& caption, platform::PasswordLines lines) override;
    void status(const QString& text) override;
    void notice(const QString& text) override;
    void pointer(platform::Pointer shape) override;
    void progress(const QString& text, int value, int max) override;
    void progressWindow(const platform::ProgressWindow& shown) override;
    void closeProgressWindow() override;
    void updaterWindow(const platform::UpdaterWindow& shown) override;
    void closeUpdaterWindow() override;
    void pump() override;
    void sound(const QString& command) override;
    void navigate(const QString& url) override;
    void failure(const platform::Failure& failure) override;

    /// What is shown before the main window is there has no owner.
    void setMainWindow(QWidget* window);

    // What the program's windows do for the ports. Each may be left empty.
    std::function<void()> beforeBox; ///< runs before every box and dialog: a splash picture must not cover it
    std::function<void(const QString&)> showStatus;
    std::function<void(const QString&)> showNotice;
    std::function<void(const QString&)> showPage;
    std::function<void(const platform::ProgressWindow&)> showProgressWindow;
    std::function<void()> endProgressWindow;
    std::function<void(const platform::UpdaterWindow&)> showUpdaterWindow;
    std::function<void()> endUpdaterWindow;
    std::function<void(const QString&)> playSound;
    /// `owner` is the window that asks, if there is one.
    std::function<std::optional<platform::Passwords>(QWidget* owner, const QString& caption,
                                                     platform::PasswordLines lines)>
        askPasswords;

private:
    /// An unasked box takes no keys in its first second: somebody may be typing.
    enum class Comes { Asked, Unasked };

    QWidget* owner() const;
    void showBox(platform::MessageKind kind, const QString& text, const QString& title, Comes comes,
                 const QString& details = {}) const;
    void prepareBox() const;

    QPointer<QWidget> m_mainWindow;
    QPointer<QWidget> m_lastActive;
};

/// The name filters of a file dialog from pairs of text and patterns: "HTML Files(*.htm)|*.htm;*html|".
struct FileFilter {
    QString label;
    QStringList patterns;
};
QList<FileFilter> parseFilter(const QString& filter);

} // namespace velloria::desktop
