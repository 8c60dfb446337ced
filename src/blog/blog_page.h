// The page of a blog that a run drives: the port between the run and the browser.
#pragma once

#include "blog/element_place.h"

#include <QString>
#include <QStringList>
#include <QUrl>

#include <chrono>
#include <exception>
#include <functional>
#include <optional>

namespace velloria::blog {

/// How a wait has ended.
enum class PageEnd {
    Complete, ///< a page is there, be it one that tells an error
    TimedOut,
    ProgramEnding, ///< the main window wants to close
};

struct Credentials {
    QString loginId;
    QString password;
};

/// What a page must know of the run.
struct PageRun {
    /// Setting a value raises the events of a person who types and chooses.
    bool raisesEvents = false;
    /// What the window that asks for a login of the server itself shows first, for that address; may be empty.
    std::function<Credentials(const QUrl& address)> credentials = {};
};

/// Thrown by a call about the page, a wait apart, once the main window wants to close.
class ProgramEnds : public std::exception {
public:
    const char* what() const noexcept override { return "the program ends"; }
};

/// Forms, links and options count from 0. Every call but stop, navigate and those about the run is about the page that
/// is there now; each throws platform::Failure when the element that it needs is not there, when the page's process is
/// gone, and when the page gives no answer. What is thrown and told never holds text of the page. In the thread of the
/// windows; calls serve events, so other commands may run in them.
class BlogPage {
public:
    virtual ~BlogPage() = default;

    virtual void beginRun(const PageRun& run) = 0;
    virtual void endRun() = 0;

    /// The window of the page comes to the front.
    virtual void bringToFront() = 0;
    /// Ends loading. The end that this gives a load is no page's end.
    virtual void stop() = 0;
    virtual void navigate(const QUrl& url) = 0;
    /// Waits for the end of the next page since the last navigate, click or submit, or since the last wait. The time in
    /// which a box of the page or of the server is open does not count. Throws when the page's process ends.
    virtual PageEnd waitComplete(std::chrono::milliseconds limit) = 0;
    /// Why the page that is there is none that the server meant to show, in a few words ("HTTP 500"); "" for a good
    /// one.
    virtual QString problem() const = 0;

    /// The address of the page that is there.
    virtual QString locationUrl() = 0;
    virtual int formCount() = 0;
    /// A form that is not there has no element.
    virtual bool hasElement(const ElementPlace& place) = 0;

    virtual void setValue(const ElementPlace& place, const QString& text) = 0;
    virtual void setChecked(const ElementPlace& place, bool isChecked) = 0;
    virtual void click(const ElementPlace& place) = 0;
    /// Sends the form as no button does: handlers of the page are not run.
    virtual void submit(int form) = 0;

    /// The texts of the options of a select.
    virtual QStringList options(const ElementPlace& place) = 0;
    /// Assigns the index itself to the option's selected state: the first option, index 0, stays as it is.
    virtual void selectOption(const ElementPlace& place, int index) = 0;

    /// The host of each link and area with an address; of a script what stands behind "javascript:" up to the first
    /// "/", "?" or "#", decoded.
    virtual QStringList linkHosts() = 0;
    virtual void clickLink(int index) = 0;

    /// Whether the page itself has emptied a text area that was set, as it was clicked or sent last: an editor that
    /// stands in its place has a text of its own.
    virtual bool hasEmptied() const = 0;
};

} // namespace velloria::blog
