// The page of a blog in the browser window.
#pragma once

#include "blog/blog_page.h"
#include "desktop/context.h"

#include <QObject>
#include <QPointer>

#include <memory>

class QEventLoop;

namespace velloria::browser {
class WebPage;
}

namespace velloria::blog {

class PageEnds;
struct PageRequest;

/// Drives the page that frmBrowser shows; the engine starts with the first stop or navigate at the latest. A window
/// that goes while this lives is a page that is gone. What it asks of the page runs in a world of its own, which the
/// page's scripts neither see nor change.
class EnginePage : public BlogPage {
public:
    /// `context` outlives this. A page that lets a request stand for `answerLimit` gives no answer.
    explicit EnginePage(desktop::Context& context, std::chrono::milliseconds answerLimit = std::chrono::seconds(30));
    ~EnginePage() override;

    void beginRun(const PageRun& run) override;
    void endRun() override;
    void bringToFront() override;
    void stop() override;
    void navigate(const QUrl& url) override;
    PageEnd waitComplete(std::chrono::milliseconds limit) override;
    QString problem() const override;
    QString locationUrl() override;
    int formCount() override;
    bool hasElement(const ElementPlace& place) override;
    void setValue(const ElementPlace& place, const QString& text) override;
    void setChecked(const ElementPlace& place, bool isChecked) override;
    void click(const ElementPlace& place) override;
    void submit(int form) override;
    QStringList options(const ElementPlace& place) override;
    void selectOption(const ElementPlace& place, int index) override;
    QStringList linkHosts() override;
    void clickLink(int index) override;
    bool hasEmptied() const override { return m_hasEmptied; }

private:
    /// How serving events has ended.
    enum class Served { Until, ProcessGone, Ending, TimedOut };

    browser::WebPage& page();
    void onProcessGone();
    void wake();
    Served serve(const std::function<bool()>& isDone, std::chrono::milliseconds limit);
    QVariant ask(const PageRequest& request);
    void act(const PageRequest& request);
    void endHungProcess();

    desktop::Context& m_context;
    const std::chrono::milliseconds m_answerLimit;
    QPointer<browser::WebPage> m_page; ///< none before the first use
    bool m_hasPage = false;
    PageRun m_run;
    bool m_isRunning = false;
    std::unique_ptr<PageEnds> m_ends; ///< of that page
    bool m_isProcessGone = false;
    bool m_hasEmptied = false;
    QPointer<QEventLoop> m_loop; ///< that serves events now
    QObject m_listener;          ///< receives what the page tells, and nothing more when this is gone
};

} // namespace velloria::blog
