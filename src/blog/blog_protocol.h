// "blog.log" in the user's folder: the steps of the last run to a blog.
#pragma once

#include "core/run.h"

#include <QFile>
#include <QStringList>

namespace velloria::blog {

/// Begun by the constructor, which empties the file; then a line for each step. UTF-8, a line each, behind its time.
/// Readable by its owner alone. It holds addresses, stages and what was found; a password, an address's query and text
/// of a page or an entry never come here. A disk that refuses is done without: it is a help after a failure.
class BlogProtocol {
public:
    BlogProtocol(const core::Run& run, const QString& blog);

    void add(const QString& line);
    /// All lines so far, parted by CR LF.
    QString text() const { return m_lines.join(QStringLiteral("\r\n")); }

private:
    const platform::Clock& m_clock;
    QFile m_file;
    QStringList m_lines;
};

/// The protocol of the last run; none when there was no run. Throws platform::Failure when it can't be read.
QStringList lastProtocol(const core::Session& session);

} // namespace velloria::blog
