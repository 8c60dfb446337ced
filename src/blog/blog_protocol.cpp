#include "blog/blog_protocol.h"

#include "core/files.h"
#include "platform/failure.h"
#include "platform/file_write.h"
#include "platform/utf8.h"

#include <algorithm>

using namespace Qt::StringLiterals;

namespace velloria::blog {
namespace {

constexpr unsigned kOwnerOnly = 0600;
constexpr qint64 kMostBytes = 1 << 20; ///< of a file that is read: a run has some dozens of lines
constexpr qsizetype kLongestLine = 2000;

} // namespace

BlogProtocol::BlogProtocol(const core::Run& run, const QString& blog)
    : m_clock(run.clock)
    , m_file(core::files::kBlogLog.in(run.session)) {
    try {
        platform::replaceFile(m_file.fileName(), QByteArray(), platform::Durability::Derived, kOwnerOnly);
        platform::limitMode(m_file.fileName(), kOwnerOnly);
        m_file.open(QIODevice::WriteOnly | QIODevice::Append | QIODevice::Unbuffered);
    } catch (const platform::Failure&) {
        // the lines are still there for whoever asks at the end of the run
    }
    add(u"テンプレート: "_s + blog);
}

void BlogProtocol::add(const QString& line) {
    QString shown = line.left(kLongestLine);
    // What a template or a server says must not pass for a line of ours, nor move the cursor of a terminal.
    std::ranges::replace_if(
        shown, [](QChar character) { return character.category() == QChar::Other_Control; }, u'.');
    m_lines += m_clock.now().toString(u"yyyy/MM/dd HH:mm:ss ") + shown;
    if (m_file.isOpen())
        m_file.write(m_lines.last().toUtf8() + '\n');
}

QStringList lastProtocol(const core::Session& session) {
    const std::optional<QByteArray> bytes = platform::readFileIfThere(core::files::kBlogLog.in(session), kMostBytes);
    return platform::fromUtf8(bytes.value_or(QByteArray())).split(u'\n', Qt::SkipEmptyParts);
}

} // namespace velloria::blog
