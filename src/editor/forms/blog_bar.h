// The blog bar of the calendar: a blog, what is to be done with it, and the button that does it.
#pragma once

#include "blog/blog_post.h"
#include "desktop/combo.h"
#include "editor/open_day.h"

#include <functional>

namespace velloria::desktop {
struct Context;
} // namespace velloria::desktop

namespace velloria::editor {

/// Tip and picture of the button tell what it would do now, and whether the shown entry was posted to the blog before.
class BlogBar : public QObject {
    Q_OBJECT
public:
    /// Belongs to the button.
    BlogBar(desktop::Context& context, desktop::Combo& blogs, desktop::Combo& actions, QPushButton& button);

    /// The list of blogs as the data folder has their templates now; what is picked stays.
    void fillBlogs();
    /// The template's name; "" when none is picked.
    QString selectedBlog() const { return m_blogs.currentText(); }

    /// Each drives the browser to its end while events are served; called meanwhile, each only beeps. Without a blog
    /// the first status panel says so.
    void PostBlog(const QString& blog);
    void ViewBlog();
    void BlogManagement();

    /// The chosen one of them with the picked blog.
    void Btn_BlogControl_Click();

    /// How long each page of a run may take.
    std::chrono::milliseconds waitLimit = blog::BlogPost::kWaitLimit;

    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void refresh();
    void drive(const QString& blog, const std::function<void(blog::BlogPost&)>& action);
    blog::BlogEntry openEntry();
    QString tip() const;

    desktop::Context& m_context;
    OpenDay& m_day;
    desktop::Combo& m_blogs;
    desktop::Combo& m_actions;
    QPushButton& m_button;
    const QString m_tipWithoutBlog;
};

} // namespace velloria::editor
