// What a run is to post, and where: entry, settings and addresses, settled before the page is touched.
#pragma once

#include "blog/blog_entry.h"
#include "blog/blog_protocol.h"
#include "blog/blog_template.h"
#include "core/run.h"

#include <optional>

namespace velloria::blog {

struct BlogOrder {
    BlogTemplate blogTemplate;
    QString postUrl;
    QString nextUrl;

    QString title;
    QString body; ///< as the service takes it
    QString genre;

    bool isPublic = true;
    bool acceptsComments = true;
    bool acceptsTrackbacks = true;
};

/// Reads all settings and asks what must be asked; an address that is typed counts from the next run on. Nothing when
/// the entry can't be posted, which is told, or the user does not want it. Throws platform::Failure when the machine
/// refuses, and for a setting that is no number.
std::optional<BlogOrder> takeOrder(const core::Run& run, const QString& blog, const BlogEntry& entry,
                                   BlogProtocol& protocol);

} // namespace velloria::blog
