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

std::optional<QString> fileWithin(const QString& root, const QString& folder, const QString& address) {
    const QFileInfo file(QDir(folder), address);
    const QString found = file.canonicalFilePath();
    const QString within = QFileInfo(root).canonicalFilePath();
    if (found.isEmpty() || !file.isFile() || !file.isReadable() || !found.startsWith(within + u'/'))
        return std::nullopt;
    return found;
}

bool leadsElsewhere(const QString& address) {
    static const QRegularExpression scheme(u"^([A-Za-z][A-Za-z0-9+.-]*:|//|#)"_s);
    return address.isEmpty() || scheme.match(address).hasMatch();
}

} // namespace

std::optional<QString> pictureFile(const QString& root, const QString& folder, const QString& address) {
    return kPictureEndings.contains(QFileInfo(address).suffix().toLower()) ? fileWithin(root, folder, address)
                                                                           : std::nullopt;
}

std::vector<PartAddress> partAddresses(const QString& html) {
    static const QRegularExpression form(
        uR"re(["']\s*((?:\./)?DiaryParts/([^"'<>/\\?#]+))[^"'<>/\\]*["']|((?:\./)?DiaryParts/([^"'<>\s/\\?#]+)))re"_s,
        QRegularExpression::CaseInsensitiveOption);
    std::vector<PartAddress> addresses;
    for (auto found = form.globalMatch(html); found.hasNext();) {
        const QRegularExpressionMatch match = found.next();
        const int group = match.hasCaptured(1) ? 1 : 3;
        const QString name = plainAddress(match.captured(group + 1)).trimmed();
        if (!name.isEmpty() && name != u".."_s && !name.contains(u'/'))
            addresses.push_back({match.capturedStart(group), match.capturedLength(group), name});
    }
    return addresses;
}

QString withParts(const QString& html, const QString& root, ForeignEntry& entry, Losses& losses) {
    QString changed;
    qsizetype copied = 0;
    for (const PartAddress& address : partAddresses(html)) {
        const std::optional<QString> file = fileWithin(root, root, core::files::kParts.name + u'/' + address.name);
        if (!file) {
            losses.countNamed(u"見つからないファイル"_s, address.name);
            continue;
        }
        const QString placeholder = picturePlaceholder(entry);
        entry.pictures.push_back({*file, placeholder, html.sliced(address.begin, address.size)});
        changed += QStringView(html).sliced(copied, address.begin - copied);
        changed += placeholder;
        copied = address.begin + address.size;
    }
    return copied == 0 ? html : changed.append(QStringView(html).sliced(copied));
}

QString withPictures(const QString& html, const PictureOf& pictureOf, ForeignEntry& entry, Losses& losses) {
    static const QRegularExpression attribute(
        uR"re((<(?:img|a)\b[^<>]*?\s(?:src|href)\s*=\s*)(?:"([^"]*)"|'([^']*)'|([^\s"'<>]+)))re"_s,
        QRegularExpression::CaseInsensitiveOption);
    QString changed;
    qsizetype copied = 0;
    for (auto found = attribute.globalMatch(html); found.hasNext();) {
        const QRegularExpressionMatch match = found.next();
        const int group = int(match.lastCapturedIndex());
        const QString address = plainAddress(match.captured(group).trimmed());
        const std::optional<QString> file = pictureOf(address);
        if (file) {
            const QString placeholder = picturePlaceholder(entry);
            entry.pictures.push_back({*file, placeholder});
            changed += QStringView(html).sliced(copied, match.capturedStart(group) - copied);
            changed += placeholder;
            copied = match.capturedEnd(group);
        } else if (!leadsElsewhere(address)) {
            const bool isPicture = match.capturedView(1).startsWith(u"<img", Qt::CaseInsensitive);
            losses.countNamed(
                isPicture ? u"見つからない画像"_s : u"ほかのファイルやページへのリンク (そのまま残します)"_s, address);
        }
    }
    return copied == 0 ? html : changed.append(QStringView(html).sliced(copied));
}

} // namespace velloria::exchange
