// Posting to a blog: the browser is driven through the pages that a person would use.
#pragma once

#include "blog/blog_entry.h"
#include "blog/blog_page.h"
#include "core/run.h"
#include "core/setting.h"

#include <chrono>

namespace velloria::blog {

/// The run and what stands beside it, in the thread of the windows, which go on being served:
///
///     BlogPost(run, page).PostBlog(u"WordPress"_s, entry);
///
/// What the user sees of it are questions, the status panel and the box at its end; "blog.log" keeps the steps. Nothing
/// is tried twice. What the user typed on the way is stored before the page is touched.
class BlogPost {
public:
    /// How long a page may take.
    static constexpr std::chrono::milliseconds kWaitLimit = std::chrono::seconds(30);

    /// Both outlive this.
    BlogPost(const core::Run& run, BlogPage& page, std::chrono::milliseconds waitLimit = kWaitLimit);

    /// From the first step to the last; `blog` is the template's name. What goes wrong is told and not thrown. The
    /// texts of the entry are never changed, and the flags are those of "Blog.ini" whatever the entry's own.
    void PostBlog(const QString& blog, const BlogEntry& entry);

    /// Shows the blog as its readers see it. Throws platform::Failure, BlogManagement too, for an address that is not
    /// of the web, and when the machine refuses.
    void ViewBlog(const QString& blog);
    /// Shows the service's own pages for the blog; a template without their address does nothing.
    void BlogManagement(const QString& blog);

private:
    QString userAddress(const QString& blog, const core::Setting& row);
    void goTo(const QString& address);

    const core::Run m_run;
    BlogPage& m_page;
    const std::chrono::milliseconds m_waitLimit;
};

} // namespace velloria::blog
