#include "core/text_file.h"

#include "platform/code_page.h"
#include "platform/directory.h"
#include "platform/failure.h"
#include "platform/file_write.h"

using namespace Qt::StringLiterals;

namespace velloria::core {

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
    QString text = platform::decodeReferences(ReadTextFile(path));
    if (text.isEmpty())
        return {};
    text.replace(u"\r\n"_s, u"\n"_s);
    if (text.endsWith(u'\n'))
        text.chop(1);
    return text.split(u'\n');
}

void writeLines(const QString& path, const QStringList& lines) {
    QString text;
    for (QString line : lines)
        text += line.replace(u'\r', u' ').replace(u'\n', u' ') + u"\r\n"_s;
    platform::replaceFile(path, platform::toCodePage(text), platform::Durability::Derived);
}

} // namespace velloria::core
