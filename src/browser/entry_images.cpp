#include "browser/entry_images.h"

#include "core/path_names.h"
#include "platform/directory.h"

#include <QRegularExpression>

using namespace Qt::StringLiterals;

namespace velloria::browser {
namespace {

/// The full path of what stands in a tag. "..\" in front goes with the separators: the site's folders are those of the
/// data folder, seen from its pages.
QString fullPathOf(QString source, const QString& dataPath) {
    if (source.contains(u"://"_s) || core::isAbsoluteFolder(source))
        return source;
    source.replace(u'/', core::nativeSeparator()).replace(u'\\', core::nativeSeparator());
    qsizetype start = 0;
    while (start < source.size() && (source[start] == u'.' || source[start] == core::nativeSeparator()))
        ++start;
    return dataPath + source.sliced(start);
}

} // namespace

std::vector<EntryImage> imagesOf(const QString& body, const QString& dataPath) {
    static const QRegularExpression image(u"<IMG\\s[^>]*?\\bSRC\\s*=\\s*(?:\"([^\"]*)\"|'([^']*)'|([^\\s>]+))"_s,
                                          QRegularExpression::CaseInsensitiveOption);
    std::vector<EntryImage> images;
    for (auto found = image.globalMatch(body); found.hasNext();) {
        const QRegularExpressionMatch tag = found.next();
        const QString source = tag.captured(tag.lastCapturedIndex());
        if (source.isEmpty())
            continue;
        const QString path = fullPathOf(source, dataPath);
        images.push_back({core::GetFileName(path), path, platform::fileExists(path)});
    }
    return images;
}

} // namespace velloria::browser
