// Which ends of loading count for a run.
#pragma once

#include "browser/forms/web_page.h"

#include <QElapsedTimer>
#include <QObject>
#include <QPointer>
#include <QTimer>

#include <functional>

namespace velloria::blog {

/// What the engine tells of loads is not enough: where one load takes another's place it tells the end of the first,
/// which nobody wants any more, or none at all. So the document itself is asked: an end is a document that is complete
/// and was not there before. The signals of the engine only say when to ask. A document whose loading was stopped is
/// never complete. A frame counts within a document that is complete already, and that nobody is leaving.
class PageEnds : public QObject {
public:
    /// `wake` is called when it is worth while to ask hasCome().
    PageEnds(browser::WebPage& page, std::function<void()> wake);

    /// To be called before another page is asked for: the document that is there now is none that is waited for.
    void leaveDocument();
    /// The same where the document has been told so itself, by the script that acts in it.
    void forget();

    /// Whether an end has come since the last of the above or since the last one that this has told. Whoever waits asks
    /// again and again.
    bool hasCome();
    /// The same for whoever waits no longer: of a document that is there, and whose server was not heard yet, too.
    bool isThere();

    /// Whether the document has been asked for a while and answers nothing.
    bool isUnanswered() const;

    /// Why the document that was told last is none that its server meant to show; "" for a good one.
    QString problem() const { return m_problem; }

private:
    void onFrame();
    void tell();
    void askDocument();
    void onAnswer(bool isEnd, bool wasSignalled, bool wasFrame);

    const QPointer<browser::WebPage> m_page;
    const std::function<void()> m_wake;
    bool m_isSignalled = false; ///< the engine has told of an end that the document was not asked about yet
    bool m_isFrame = false;     ///< the same of a frame
    QTimer m_frameEnd;          ///< runs from the end of a frame until it is clear that no load has begun
    bool m_isTaken = false;     ///< the document says that it is a new one
    bool m_isAsking = false;
    int m_turn = 0; ///< answers of an earlier one are late
    QElapsedTimer m_sinceAsked;
    QElapsedTimer m_sinceAnswered; ///< or since the first question
    QElapsedTimer m_sinceTaken;
    QString m_problem;
};

} // namespace velloria::blog
