// A browser without pages of its own: what a blog's server would send is told by the test, and what the run does is
// kept.
#pragma once

#include "blog/blog_page.h"

#include <QHash>
#include <QList>

#include <functional>

namespace velloria::tests {

struct ScriptedElement {
    QString tag = QStringLiteral("INPUT"); ///< or "TEXTAREA", "SELECT", "BUTTON"
    QString name;
    QString type = QStringLiteral("text");
    QString value = {};
    QStringList options = {};
    QStringList leadsTo = {}; ///< the addresses of the pages that come in turn when it is clicked
    bool logsIn = false;      ///< a click does
    bool isChecked = false;
    int selected = 0;
};

struct ScriptedForm {
    QList<ScriptedElement> elements;
    QStringList leadsTo = {}; ///< when it is sent as no button does
    bool logsIn = false;      ///< so does that
};

struct ScriptedLink {
    QString host;
    QStringList leadsTo = {};
};

struct ScriptedDocument {
    QList<ScriptedForm> forms = {};
    QList<ScriptedLink> links = {};
    QString problem = {};
    QString whenLoggedOut = {}; ///< the address of what comes instead for who is not logged in
};

class ScriptedPage : public blog::BlogPage {
public:
    /// By address. What has none never comes.
    QHash<QString, ScriptedDocument> documents;
    bool isLoggedIn = false;
    /// Every call comes here first as it is kept in `done`: it may throw, or change the world.
    std::function<void(const QString& call)> beforeCall;
    bool isProgramEnding = false;
    bool isEmptying = false; ///< whatever is clicked or sent

    /// All calls in turn, as "navigate http://host/", "wait 30000", "set name=title form=1" and so on.
    QStringList done;
    blog::PageRun run;
    bool isRunning = false;

    /// The element as it is now; an error of the test when there is none.
    ScriptedElement& element(const QString& address, int form, const QString& name);
    /// The calls that begin so.
    QStringList calls(const QString& begin) const;

    void beginRun(const blog::PageRun& told) override;
    void endRun() override;
    void bringToFront() override { did(QStringLiteral("front")); }
    void stop() override;
    void navigate(const QUrl& url) override;
    blog::PageEnd waitComplete(std::chrono::milliseconds limit) override;
    QString problem() const override { return documents.value(m_address).problem; }
    QString locationUrl() override;
    int formCount() override;
    bool hasElement(const blog::ElementPlace& place) override;
    void setValue(const blog::ElementPlace& place, const QString& text) override;
    void setChecked(const blog::ElementPlace& place, bool isChecked) override;
    void click(const blog::ElementPlace& place) override;
    void submit(int form) override;
    QStringList options(const blog::ElementPlace& place) override;
    void selectOption(const blog::ElementPlace& place, int index) override;
    QStringList linkHosts() override;
    void clickLink(int index) override;
    bool hasEmptied() const override { return isEmptying; }

private:
    enum class Use { Any, Check, Click };

    void did(const QString& call);
    QList<ScriptedElement*> among(const blog::ElementPlace& place);
    ScriptedElement* find(const blog::ElementPlace& place, Use use);
    ScriptedElement& need(const blog::ElementPlace& place, Use use = Use::Any);
    void lead(const QStringList& addresses);

    QString m_address;
    QStringList m_coming; ///< addresses of what the server sends next
};

} // namespace velloria::tests
