// The posting form: what goes into it, and how it is sent. Its switches are in blog_switches.h.
#pragma once

#include "blog/page_driver.h"

namespace velloria::blog {

/// Each function is a step of the run, in this order. Throws what the page throws: an element that is not there among
/// it.
class BlogForm {
public:
    /// Both outlive this.
    BlogForm(const BlogTemplate& blogTemplate, PageDriver& driver);

    /// What comes before anything is filled in: whether the box of genres is there, which counts when it is used, and
    /// the link that one service wants to be clicked.
    void open();

    void writeTitle(const QString& title);
    void writeBody(const QString& body);
    /// A genre that the page does not have selects nothing.
    void chooseGenre(const QString& genre);

    void post(bool isPublic);
    /// Sends the page that asks whether the post is right, where the service has one.
    void confirm();

private:
    void writeText(QStringView key, const TemplateElement& element, const QString& text);
    void clickYahooLink();
    void send(QStringView key, const TemplateElement& element, int form);

    const BlogTemplate& m_template;
    PageDriver& m_driver;
};

} // namespace velloria::blog
