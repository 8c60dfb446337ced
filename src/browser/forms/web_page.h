// The page of the embedded browser windows: what may be navigated to, and what pages may do.
#pragma once

#include "browser/forms/box_time.h"
#include "browser/forms/frmAuthentication.h"
#include "desktop/context.h"

#include <QUrl>
#include <QWebEnginePage>

#include <functional>
#include <memory>

class QAuthenticator;
class QWebEngineLoadingInfo;

namespace velloria::browser {

/// Makes the scheme "event:" known, by which a page closes its window. To be called before the application is made.
void registerEventScheme();

/// Where a link to the web leads that is clicked in the page.
enum class WebLinks { OpenHere, OpenInBrowser };

/// Pages of the disk may show what lies in the web; pages of the web reach no file (see FileGuard). Permissions are
/// refused, boxes of scripts go through the desk, and the console is nobody's. A page that shows box after box can be
/// read without its scripts. Where a server asks for user and password, so does a window.
class WebPage : public QWebEnginePage {
    Q_OBJECT
public:
    WebPage(QWebEngineProfile& profile, desktop::Context& context, WebLinks webLinks, QWidget* view);
    ~WebPage() override { *m_isAlive = false; }

    /// Loads the address anew, also when it is shown already or only its mark differs. An invalid one loads nothing.
    void navigate(const QUrl& url);

    /// Runs in each page from the next one on, in a world of its own; it takes the place of one of the same name,
    /// and "" takes that away.
    void setScript(const QString& name, const QString& source);

    /// Ends loading; a navigation that is under way shows nothing.
    void stop();

    bool isLoading() const { return m_isLoading; }

    /// Why the document that is shown is none that its server meant to show ("HTTP 500"); "" for a good one.
    QString problem() const { return m_problem; }

    /// How long the page has waited for answers to its boxes and its server's.
    std::chrono::milliseconds timeInBoxes() const { return m_boxTime->total(); }

    /// A run works in the page: a window that a script opens would take its place, and is not shown.
    bool isDriven = false;

    /// What the window that asks for a server's login shows first; may be empty.
    std::function<Login(const QUrl& address)> proposedLogin;

Q_SIGNALS:
    /// The page shows a document: a load came to its end (an error page is one too), or the page went to another mark.
    void documentComplete();
    /// The same without the mark: there is a document that was not there before.
    void loadComplete();
    /// A frame within a document that was complete already shows its own.
    void frameComplete();
    /// The page navigated to "event:`name`", which was cancelled.
    void eventNamed(const QString& name);
    /// A new window was asked for, or the web from a page that does not go there itself.
    void addressOpened(const QUrl& url);

protected:
    bool acceptNavigationRequest(const QUrl& url, NavigationType type, bool isMainFrame) override;
    void javaScriptAlert(const QUrl& origin, const QString& text) override;
    bool javaScriptConfirm(const QUrl& origin, const QString& text) override;
    bool javaScriptPrompt(const QUrl& origin, const QString& text, const QString& proposal, QString* answer) override;
    void javaScriptConsoleMessage(JavaScriptConsoleMessageLevel level, const QString& message, int line,
                                  const QString& source) override;

private:
    void setRights();
    void insertScripts();
    void goToMark(bool isOn);
    void onLoading(const QWebEngineLoadingInfo& info);
    void onUrl(const QUrl& url);
    void login(const QUrl& address, QAuthenticator& answer);
    bool mayOpen(const QUrl& url) const;
    void showBox(const std::function<void()>& box);
    void stopScripts();
    void readWithoutScripts();
    void allowScripts();

    desktop::Context& m_context;
    const WebLinks m_webLinks;
    const QString m_frameToken; ///< what a frame says on the console when it is complete; no page can guess it
    QUrl m_shown;               ///< the address as it was last told
    QUrl m_target;              ///< to be loaded again once the page has gone to its mark
    bool m_isLoading = false;
    bool m_isComplete = false; ///< the document that is shown; a load that was stopped leaves it as it was
    bool m_wasRefused = false; ///< the document that comes next tells of the one that was not shown
    QString m_problem;
    const std::shared_ptr<BoxTime> m_boxTime = std::make_shared<BoxTime>();
    int m_boxes = 0;               ///< of scripts of the shown document
    bool m_isStopped = false;      ///< its scripts were stopped
    bool m_isLoginRefused = false; ///< by the person: a document asks once
    bool m_isReadingAgain = false; ///< the navigation that comes next is the same document without them
    const std::shared_ptr<bool> m_isAlive = std::make_shared<bool>(true); ///< for what the engine answers too late
};

} // namespace velloria::browser
