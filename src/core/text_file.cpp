#include "core/text_file.h"

#include "platform/code_page.h"
#include "platform/directory.h"
#include "platform/failure.h"
#include "platform/file_write.h"

using namespace Qt::StringLiterals;

namespace velloria::core {
namespace {

/// The field that starts at `at`, which moves behind the comma that ends it.
QString takeField(const QString& line, qsizetype& at) {
    while (at < line.size() && (line[at] == u' ' || line[at] == u'\t'))
        ++at;
    const bool isQuoted = at < line.size() && line[at] == u'"';
    const qsizetype start = isQuoted ? at + 1 : at;
    qsizetype end = line.indexOf(isQuoted ? u'"' : u',', start);
    if (end < 0)
        end = line.size();
    const qsizetype comma = line.indexOf(u',', end);
    at = comma < 0 ? line.size() : comma + 1;
    return line.mid(start, end - start);
}

} // namespace

QString ReadTextFile(const QString& path) {
    if (!platform::fileExists(path))
        return {};
    try {
        return platform::fromCodePage(platform::readFile(platform::existingPath(path)));
    } catch (const platform::Failure&) {
        return {};
    }
}

QStringList readLines(const QString& path) {
    const std::optional<QByteArray> bytes = platform::readFileIfThere(platform::existingPath(path));
    return bytes ? linesOf(platform::fromCodePage(*bytes)) : QStringList();
}

QStringList linesOf(QString text) {
    text = platform::decodeReferences(text);
    if (text.isEmpty())
        return {};
    text.replace(u"\r\n"_s, u"\n"_s);
    if (text.endsWith(u'\n'))
        text.chop(1);
    return text.split(u'\n');
}

std::pair<QString, QString> twoFields(const QString& line) {
    qsizetype at = 0;
    QString first = takeField(line, at);
    return {first, takeField(line, at)};
}

void writeLines(const QString& path, const QStringList& lines) {
    QString text;
    for (QString line : lines)
        text += line.replace(u'\r', u' ').replace(u'\n', u' ') + u"\r\n"_s;
    platform::replaceFile(path, platform::toCodePage(text), platform::Durability::Derived);
}

} // namespace velloria::core
