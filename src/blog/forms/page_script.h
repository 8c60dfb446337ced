// What the program does in the page of a blog: one script for every operation.
#pragma once

#include "blog/blog_page.h"

#include <QString>
#include <QVariant>

namespace velloria::blog {

/// What is asked of the page.
enum class PageCall {
    FormCount,
    HasElement,
    SetValue,
    SetChecked,
    Click,
    Submit,
    Options,
    Select,
    LinkHosts,
    ClickLink,
    Leave,   ///< the document is none that is waited for
    TakeEnd, ///< whether the document is complete and was not told of before; from now on it was
};

struct PageRequest {
    PageCall call = PageCall::FormCount;
    ElementPlace place = {};   ///< of the element, where one is meant
    QString text = {};         ///< to be set
    bool isChecked = false;    ///< to be set
    int index = 0;             ///< of an option, a link or a form
    bool raisesEvents = false; ///< of a person who types and chooses
    bool isFrame = false;      ///< a frame of the document has come to an end: it may have been told of before
};

/// The script of one request. It is ASCII alone, holds what is asked as a value, and is meant for a world of its own,
/// where nothing that a page's scripts have changed is seen; names that a page gives to its elements hide nothing from
/// it.
QString pageScript(const PageRequest& request);

/// What the script has answered.
struct PageAnswer {
    bool isValid = false; ///< the page has let the script answer
    QString refusal;      ///< why what was asked can't be done, in words of our own; "" when it was done
    QVariant value;
};
PageAnswer pageAnswer(const QVariant& answered, const PageRequest& request);

} // namespace velloria::blog
