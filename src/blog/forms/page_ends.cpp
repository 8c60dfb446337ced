#include "blog/forms/page_ends.h"

#include "blog/forms/page_script.h"

#include <QWebEngineScript>

#include <chrono>
#include <utility>

namespace velloria::blog {
namespace {

using namespace std::chrono_literals;

constexpr auto kWithoutSignal = 250ms; ///< the document is asked all the same
constexpr auto kAnswerIsLost = 1000ms; ///< with the document that was asked
constexpr auto kSignalIsLost = 1000ms; ///< that tells what the server thinks of the document
constexpr auto kLoadBegins = 250ms;    ///< after the answer to a click, and is told of
constexpr auto kIsHung = 5000ms;

bool isOver(const QElapsedTimer& timer, std::chrono::milliseconds time) {
    return !timer.isValid() || timer.hasExpired(time.count());
}

} // namespace

PageEnds::PageEnds(browser::WebPage& page, std::function<void()> wake)
    : m_page(&page)
    , m_wake(std::move(wake)) {
    connect(&page, &browser::WebPage::loadComplete, this, [this] {
        m_isSignalled = true;
        m_wake();
    });
    m_frameEnd.setSingleShot(true);
    m_frameEnd.setInterval(kLoadBegins);
    connect(&page, &browser::WebPage::frameComplete, this, [this] {
        if (!m_frameEnd.isActive())
            m_frameEnd.start();
    });
    connect(&m_frameEnd, &QTimer::timeout, this, &PageEnds::onFrame);
}

/// A frame of a page that is being left may go on until the next one is there: its ends are not what is waited for.
void PageEnds::onFrame() {
    m_isFrame = m_page && !m_page->isLoading();
    m_wake();
}

void PageEnds::leaveDocument() {
    forget();
    m_page->runJavaScript(pageScript({.call = PageCall::Leave}), QWebEngineScript::ApplicationWorld);
}

void PageEnds::forget() {
    ++m_turn;
    m_frameEnd.stop();
    m_isSignalled = m_isFrame = m_isTaken = m_isAsking = false;
    m_sinceAsked.invalidate();
    m_sinceAnswered.invalidate();
}

bool PageEnds::isUnanswered() const {
    return m_isAsking && m_sinceAnswered.hasExpired(std::chrono::milliseconds(kIsHung).count());
}

bool PageEnds::hasCome() {
    if (m_isTaken && (m_isSignalled || m_isFrame || isOver(m_sinceTaken, kSignalIsLost))) {
        tell();
        return true;
    }
    const bool isWorthWhile = m_isSignalled || m_isFrame || isOver(m_sinceAsked, kWithoutSignal);
    if (!m_isTaken && isWorthWhile && (!m_isAsking || isOver(m_sinceAsked, kAnswerIsLost)))
        askDocument();
    return false;
}

bool PageEnds::isThere() {
    if (!m_isTaken)
        return false;
    tell();
    return true;
}

void PageEnds::tell() {
    m_problem = m_isSignalled ? m_page->problem() : QString();
    forget();
}

void PageEnds::askDocument() {
    m_isAsking = true;
    m_sinceAsked.start();
    if (!m_sinceAnswered.isValid())
        m_sinceAnswered.start();
    const PageRequest request{.call = PageCall::TakeEnd, .isFrame = m_isFrame};
    m_page->runJavaScript(
        pageScript(request), QWebEngineScript::ApplicationWorld,
        [self = QPointer(this), request, turn = m_turn, wasSignalled = m_isSignalled](const QVariant& answered) {
            if (self && self->m_turn == turn)
                self->onAnswer(pageAnswer(answered, request).value.toBool(), wasSignalled, request.isFrame);
        });
}

void PageEnds::onAnswer(bool isEnd, bool wasSignalled, bool wasFrame) {
    m_isAsking = false;
    m_sinceAnswered.start();
    if (isEnd) {
        m_isTaken = true;
        m_sinceTaken.start();
    } else { // what was told came from a document that nobody waits for
        m_isSignalled = m_isSignalled && !wasSignalled;
        m_isFrame = m_isFrame && !wasFrame;
    }
    m_wake();
}

} // namespace velloria::blog
