#include "publish/upload_log.h"

#include "platform/failure.h"
#include "platform/file_write.h"

#include <algorithm>

using namespace Qt::StringLiterals;

namespace velloria::publish {
namespace {

constexpr qint64 kMostBytes = 4 << 20; ///< of one run
constexpr qsizetype kLongestLine = 2000;
constexpr QByteArrayView kHeading = "=== "; ///< no other line begins like this

/// The last run in a log, "" when there is none.
QByteArray lastRun(const QString& file) {
    const QByteArray bytes = '\n' + platform::readEndIfThere(file, 2 * kMostBytes).value_or(QByteArray());
    const qsizetype start = bytes.lastIndexOf('\n' + kHeading.toByteArray());
    return start < 0 ? QByteArray() : bytes.sliced(start + 1);
}

} // namespace

UploadLog::UploadLog(const QString& file, const QString& heading)
    : m_file(file)
    , m_room(kMostBytes) {
    constexpr unsigned kOwnerOnly = 0600;
    try {
        platform::replaceFile(file, lastRun(file), platform::Durability::Derived, kOwnerOnly);
    } catch (const platform::Failure&) {
        return;
    }
    if (m_file.open(QIODevice::WriteOnly | QIODevice::Append | QIODevice::Unbuffered))
        write(QString::fromLatin1(kHeading) + heading);
}

void UploadLog::add(const QString& line) {
    if (m_room <= 0)
        return;
    write(line);
    if (m_room <= 0)
        write(u"(...)"_s);
}

void UploadLog::end(const QString& line) {
    write(u"--- "_s + line);
}

void UploadLog::write(const QString& line) {
    if (!m_file.isOpen())
        return;
    QString shown = line.left(kLongestLine);
    // A server's line must not pass for one of ours, nor move the cursor of a terminal.
    std::ranges::replace_if(
        shown, [](QChar character) { return character < u' ' || character == u'\x7f'; }, u'.');
    const QByteArray bytes = shown.toUtf8() + '\n';
    m_room -= bytes.size();
    m_file.write(bytes);
}

} // namespace velloria::publish
