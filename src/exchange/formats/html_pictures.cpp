#include "exchange/formats/html_pictures.h"

#include "core/files.h"

#include <QDir>
#include <QFileInfo>
#include <QRegularExpression>
#include <QUrl>

using namespace Qt::StringLiterals;

namespace velloria::exchange {
namespace {

const QStringList kPictureEndings{u"jpg"_s, u"jpeg"_s, u"png"_s,  u"gif"_s, u"webp"_s,
                                  u"bmp"_s, u"svg"_s,  u"avif"_s, u"heic"_s};

/// An address as it was before HTML and the URL took their marks for it.
QString plainAddress(QString address) {
    address.replace(u"&quot;"_s, u"\""_s).replace(u"&#39;"_s, u"'"_s).replace(u"&amp;"_s, u"&"_s);
    return QUrl::fromPercentEncoding(address.toUtf8());
}

/// `written` where it leads to `file` within "DiaryParts", else null.
QString partAddress(const QString& written, const QString& file) {
    const QString name = core::files::kParts.below({}) + u'/' + QFileInfo(file).fileName();
    return written == name || written == u"./"_s + name ? written : QString();
}

bool leadsElsewhere(const QString& address) {
    static const QRegularExpression scheme(u"^([A-Za-z][A-Za-z0-9+.-]*:|//|#)"_s);
    return address.isEmpty() || scheme.match(address).hasMatch();
}

} // namespace

std::optional<QString> pictureFile(const QString& root, const QString& folder, const QString& address) {
    const QFileInfo file(QDir(folder), address);
    const QString found = file.canonicalFilePath();
    const QString within = QFileInfo(root).canonicalFilePath();
    if (found.isEmpty() || !file.isFile() || !file.isReadable() || !found.startsWith(within + u'/') ||
        !kPictureEndings.contains(file.suffix().toLower()))
        return std::nullopt;
    return found;
}

QString withPictures(const QString& html, const PictureOf& pictureOf, ForeignEntry& entry, Losses& losses) {
    static const QRegularExpression attribute(
        uR"re((<(?:img|a)\b[^<>]*?\s(?:src|href)\s*=\s*)(?:"([^"]*)"|'([^']*)'))re"_s,
        QRegularExpression::CaseInsensitiveOption);
    QString changed;
    qsizetype copied = 0;
    for (auto found = attribute.globalMatch(html); found.hasNext();) {
        const QRegularExpressionMatch match = found.next();
        const int group = match.hasCaptured(2) ? 2 : 3;
        const QString address = plainAddress(match.captured(group).trimmed());
        const std::optional<QString> file = pictureOf(address);
        if (file) {
            const QString placeholder = picturePlaceholder(entry);
            entry.pictures.push_back({*file, placeholder, partAddress(match.captured(group), *file)});
            changed += QStringView(html).sliced(copied, match.capturedStart(group) - copied);
            changed += placeholder;
            copied = match.capturedEnd(group);
        } else if (!leadsElsewhere(address) && match.capturedView(1).startsWith(u"<img", Qt::CaseInsensitive)) {
            losses.countNamed(u"見つからない画像"_s, address);
        }
    }
    if (copied == 0)
        return html;
    changed += QStringView(html).sliced(copied);
    return changed;
}

} // namespace velloria::exchange
