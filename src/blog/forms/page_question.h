// A request to the document that is shown, and its answer.
#pragma once

#include "blog/forms/page_script.h"
#include "browser/forms/web_page.h"
#include "platform/failure.h"

#include <QElapsedTimer>
#include <QPointer>

#include <functional>
#include <memory>
#include <optional>

namespace velloria::blog {

/// Is put to the document when it is made. An answer that comes when this is gone changes nothing.
class PageQuestion {
public:
    /// `wake` is called when it is worth while to ask isSettled().
    PageQuestion(browser::WebPage& page, PageRequest request, std::function<void()> wake);
    ~PageQuestion();
    PageQuestion(const PageQuestion&) = delete;
    PageQuestion& operator=(const PageQuestion&) = delete;

    /// Whether the answer is there, or can't come any more. It is lost with the document: a question is then put to the
    /// next one, while what changes something is done once or not at all. Whoever waits asks again and again.
    bool isSettled();
    /// Throws platform::Failure when there is none that is of use.
    QVariant answer() const;

private:
    struct Answer {
        std::optional<QVariant> value;
        bool isLost = false;
        std::function<void()> wake;
    };

    void put(const PageRequest& request, const std::function<void(Answer&, const QVariant&)>& take);
    void putAgain();

    const QPointer<browser::WebPage> m_page;
    const PageRequest m_request;
    const std::shared_ptr<Answer> m_answer = std::make_shared<Answer>();
    QElapsedTimer m_sincePut;
};

/// What ends a step in the page.
platform::Failure cantGoOn(const QString& reason, const QString& advice = {});
platform::Failure noAnswer();

} // namespace velloria::blog
