// What the program does in the page of a blog: one script for every operation.
#pragma once

#include "blog/blog_page.h"

#include <QString>
#include <QVariant>

#include <optional>

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
    ClickLink
};

struct PageRequest {
    PageCall call = PageCall::FormCount;
    ElementPlace place = {};   ///< of the element, where one is meant
    QString text = {};         ///< to be set
    bool isChecked = false;    ///< to be set
    int index = 0;             ///< of an option, a link or a form
    bool raisesEvents = false; ///< of a person who types and chooses
};

/// The script of one request. It is ASCII alone, holds what is asked as a value, and is meant for a world of its own,
/// where nothing that a page's scripts have changed is seen; names that a page gives to its elements hide nothing from
/// it.
QString pageScript(const PageRequest& request);

/// What the script has answered; none when the page did not let it. Throws platform::Failure when the page says that
/// the request can't be done; that is told in words of our own.
std::optional<QVariant> pageAnswer(const QVariant& answered, const PageRequest& request);

} // namespace velloria::blog
