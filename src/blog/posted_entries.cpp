#include "blog/posted_entries.h"

#include "core/files.h"
#include "core/path_names.h"
#include "platform/failure.h"
#include "platform/file_write.h"
#include "platform/utf8.h"

#include <QJsonDocument>
#include <QJsonObject>

using namespace Qt::StringLiterals;

namespace velloria::blog {
namespace {

constexpr unsigned kOwnerOnly = 0600;
/// Of the file's end, which is asked for at every look at an entry: years of posts.
constexpr qint64 kMostBytes = 4 << 20;

const QString kDay = u"day"_s;
const QString kNumber = u"number"_s;
const QString kTitle = u"title"_s;
const QString kBlog = u"blog"_s;
const QString kTime = u"time"_s;

/// A last line that was cut, by a kill or a full disk, must not swallow the next one.
QByteArray endOfLastLine(const QString& file) {
    const QByteArray last = platform::readEndIfThere(file, 1).value_or(QByteArray());
    return last.isEmpty() || last == "\n" ? QByteArray() : QByteArray("\n");
}

} // namespace

void rememberPost(const core::Run& run, const BlogEntry& entry, const QString& blog) {
    const QString file = core::files::kBlogPosts.in(run.session);
    const QJsonObject post{{kDay, entry.day},
                           {kNumber, entry.number},
                           {kTitle, entry.title},
                           {kBlog, blog},
                           {kTime, run.clock.now().toString(u"yyyy/MM/dd HH:mm:ss")}};
    const platform::FolderLock lock(core::GetParentFolder(file));
    platform::appendToFile(file, endOfLastLine(file) + QJsonDocument(post).toJson(QJsonDocument::Compact) + '\n',
                           kOwnerOnly);
}

std::optional<PostedEntry> lastPost(const core::Session& session, const QString& day, int number, const QString& blog) {
    QByteArray posts;
    try {
        posts = platform::readEndIfThere(core::files::kBlogPosts.in(session), kMostBytes).value_or(QByteArray());
    } catch (const platform::Failure&) {
        return std::nullopt;
    }
    const QList<QByteArray> lines = posts.split('\n');
    const QByteArray mention = day.toUtf8(); // to read the lines of other days is most of the work
    for (auto line = lines.crbegin(); line != lines.crend(); ++line) {
        if (!line->contains(mention))
            continue;
        const QJsonObject post = platform::parseJson(*line, nullptr).object();
        if (post[kDay] == day && post[kNumber] == number && post[kBlog] == blog)
            return PostedEntry{post[kTitle].toString(), post[kTime].toString()};
    }
    return std::nullopt;
}

QString postedNotice(const PostedEntry& post, const QString& blog) {
    return u"この日記は %1 に「%2」として%3へ投稿済みです。"_s.arg(post.time, post.title, blog);
}

} // namespace velloria::blog
