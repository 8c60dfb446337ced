// Whether the user is logged in at a blog service, by what its page shows, and the login.
#pragma once

#include "blog/blog_user_data.h"
#include "blog/page_driver.h"
#include "platform/desk.h"

namespace velloria::blog {

/// Throws what the page throws, and platform::Failure when the user's data can't be read or stored.
class BlogLogin {
public:
    /// All of these outlive this.
    BlogLogin(const BlogTemplate& blogTemplate, const BlogUserData& data, platform::Desk& desk, PageDriver& driver);

    /// Asks the page that is there.
    bool isNeeded();

    /// Fills in the login form and sends it, and waits for what comes of it. Asks for what the user's data lack and
    /// stores it. False when a wait has ended without a page.
    bool logIn(const QString& postUrl, const QString& nextUrl);

private:
    QString reason(int formCount, const QString& address);
    QString stored(const core::Setting& row, const QString& question);
    void fill(const QString& nextUrl);
    void send();

    const BlogTemplate& m_template;
    const BlogUserData& m_data;
    platform::Desk& m_desk;
    PageDriver& m_driver;
};

} // namespace velloria::blog
