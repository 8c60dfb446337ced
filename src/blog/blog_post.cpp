#include "blog/blog_post.h"

#include "blog/blog_run.h"
#include "blog/blog_template.h"
#include "blog/blog_user_data.h"
#include "blog/template_words.h"
#include "blog/web_address.h"
#include "core/blog_keys.h"
#include "core/ini_reader.h"

using namespace Qt::StringLiterals;

namespace velloria::blog {

namespace user = core::keys::blog_user;

BlogPost::BlogPost(const core::Run& run, BlogPage& page, std::chrono::milliseconds waitLimit)
    : m_run(run)
    , m_page(page)
    , m_waitLimit(waitLimit) {}

void BlogPost::PostBlog(const QString& blog, const BlogEntry& entry) {
    BlogRun(m_run, m_page, blog, entry, m_waitLimit).run();
}

void BlogPost::ViewBlog(const QString& blog) {
    m_page.stop();
    goTo(userAddress(blog, user::kAccessURL));
}

void BlogPost::BlogManagement(const QString& blog) {
    m_page.stop();
    const QString file = templateFile(m_run.session, blog);
    refuseHugeTemplate(file);
    const QString address = core::IniReader(file).text(core::keys::blog_template::kManageURL);
    goTo(address == words::kRequired ? userAddress(blog, user::kManagementURL) : address);
}

/// The address that the user's data hold, else the one that is typed, which is stored; "" when none is typed.
QString BlogPost::userAddress(const QString& blog, const core::Setting& row) {
    const BlogUserData data(m_run.session, blog);
    const QString address = data.value(row);
    if (!address.isEmpty())
        return address;
    const QString answer = m_run.desk.input(u"接続先URLを入力してください。"_s, u"http://"_s);
    if (answer.isEmpty()) {
        m_run.desk.message(platform::MessageKind::Critical, u"中止します。"_s);
        return {};
    }
    webAddress(answer); // one that can't be opened would be in the way of the next question
    data.store(row, answer);
    return answer;
}

void BlogPost::goTo(const QString& address) {
    if (address.isEmpty())
        return;
    const QUrl url = webAddress(address);
    m_page.bringToFront();
    m_page.navigate(url);
}

} // namespace velloria::blog
