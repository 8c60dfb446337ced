// "blogposts.jsonl" in the user's folder: which entries were posted to which blog, and when.
#pragma once

#include "blog/blog_entry.h"
#include "core/run.h"

#include <optional>

namespace velloria::blog {

/// One post: {"day": "yyyy/mm/dd", "number": 1, "title": "...", "blog": "<template>", "time": "yyyy/mm/dd hh:nn:ss"}.
struct PostedEntry {
    QString title; ///< as it was then
    QString time;
};

/// Adds a line, which is on the disk when this returns. Readable by its owner alone. Throws platform::Failure.
void rememberPost(const core::Run& run, const BlogEntry& entry, const QString& blog);

/// The last post of the entry of that day and number to the blog. Lines that are none are passed over, and a file that
/// can't be read holds none: nothing depends on it.
std::optional<PostedEntry> lastPost(const core::Session& session, const QString& day, int number, const QString& blog);

/// How a person is told of it; `blog` as lastPost takes it.
QString postedNotice(const PostedEntry& post, const QString& blog);

} // namespace velloria::blog
