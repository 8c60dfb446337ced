#include "blog/forms/page_question.h"

#include <QWebEngineScript>

#include <utility>

using namespace Qt::StringLiterals;

namespace velloria::blog {
namespace {

constexpr std::chrono::milliseconds kPutAgain{1000};

bool changesNothing(PageCall call) {
    return call == PageCall::FormCount || call == PageCall::HasElement || call == PageCall::Options ||
           call == PageCall::LinkHosts;
}

} // namespace

platform::Failure cantGoOn(const QString& reason, const QString& advice) {
    return {u"ブログのページを操作できません。"_s, {}, reason, advice};
}

platform::Failure noAnswer() {
    return cantGoOn(u"ページが応答しません。"_s);
}

PageQuestion::PageQuestion(browser::WebPage& page, PageRequest request, std::function<void()> wake)
    : m_page(&page)
    , m_request(std::move(request)) {
    m_answer->wake = std::move(wake);
    put(m_request, [](Answer& answer, const QVariant& value) { answer.value = value; });
}

PageQuestion::~PageQuestion() {
    m_answer->wake = {};
}

void PageQuestion::put(const PageRequest& request, const std::function<void(Answer&, const QVariant&)>& take) {
    m_sincePut.start();
    m_page->runJavaScript(pageScript(request), QWebEngineScript::ApplicationWorld,
                          [answer = m_answer, take](const QVariant& value) {
                              take(*answer, value);
                              if (answer->wake)
                                  answer->wake();
                          });
}

bool PageQuestion::isSettled() {
    const bool isSettled = m_answer->value || m_answer->isLost;
    if (!isSettled && m_page && m_sincePut.hasExpired(kPutAgain.count()))
        putAgain();
    return isSettled;
}

/// A document answers in the order in which it is asked: one that answers this and not what was asked before is another
/// one.
void PageQuestion::putAgain() {
    if (changesNothing(m_request.call))
        put(m_request, [](Answer& answer, const QVariant& value) { answer.value = value; });
    else
        put({.call = PageCall::FormCount}, [](Answer& answer, const QVariant&) { answer.isLost = !answer.value; });
}

QVariant PageQuestion::answer() const {
    if (m_answer->isLost)
        throw cantGoOn(u"操作の間に別のページになりました。"_s);
    const PageAnswer told = pageAnswer(m_answer->value.value_or(QVariant()), m_request);
    if (!told.isValid)
        throw noAnswer();
    if (!told.refusal.isEmpty())
        throw cantGoOn(told.refusal, u"テンプレートがこのページに合っているか確かめてください。"_s);
    return told.value;
}

} // namespace velloria::blog
