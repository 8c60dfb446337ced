// One run to a blog: the steps of a post, and what is told of its end.
#pragma once

#include "blog/blog_order.h"
#include "blog/blog_page.h"
#include "blog/blog_user_data.h"
#include "blog/page_driver.h"

#include <chrono>

namespace velloria::blog {

/// For one run. Other commands are served while it waits, so it holds all that it needs: who the user is, the entry,
/// and what settings and template say at its start.
class BlogRun {
public:
    /// `page` outlives this, clock and desk of `run` too.
    BlogRun(const core::Run& run, BlogPage& page, const QString& blog, const BlogEntry& entry,
            std::chrono::milliseconds waitLimit);

    /// Throws nothing of the page and of the machine: it is told.
    void run();

private:
    enum class End { Posted, Refused, NoPostingPage, Failed, TimedOut, ProgramEnding };

    End post();
    std::optional<End> connect();
    End fillAndSend();
    void enter(const QString& stage);
    End endOfWait() const;
    PageRun pageRun() const;
    Credentials credentials(const QUrl& address) const;

    void tell(End end);
    void tellPosted();
    QString remember();

    core::Session m_session;
    const core::Run m_run;
    BlogPage& m_page;
    const QString m_blog;
    const BlogEntry m_entry;
    BlogProtocol m_protocol;
    const BlogUserData m_data;
    PageDriver m_driver;
    BlogOrder m_order;
    QString m_stage;
    bool m_hasEmptied = false; ///< the page, as it sent the post
    QString m_problem;         ///< of the page that answered the post
};

} // namespace velloria::blog
