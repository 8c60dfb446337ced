#include "exchange/formats/dayone.h"

#include "exchange/formats/html_pictures.h"
#include "exchange/formats/markdown_html.h"
#include "exchange/formats/source_files.h"
#include "exchange/formats/titled_markdown.h"
#include "exchange/formats/written_date.h"
#include "platform/failure.h"
#include "platform/utf8.h"

#include <QDir>
#include <QFileInfo>
#include <QHash>
#include <QJsonArray>
#include <QJsonObject>
#include <QRegularExpression>
#include <QSet>
#include <QTimeZone>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace velloria::exchange {
namespace {

const QString kFailed = u"日記を読み込めません。"_s;

[[noreturn]] void refuse(const QString& file, const QString& reason, const QString& advice = {}) {
    throw platform::Failure(kFailed, file, reason, u"何もインポートしていません。"_s + advice);
}

/// The pictures of an entry by the word that its text calls them, in the order that the entry shows them in.
struct Photo {
    QString identifier;
    QString file;
};

std::vector<Photo> photosOf(const QJsonObject& entry, const QString& folder) {
    std::vector<QJsonObject> listed;
    for (const QJsonValue& photo : entry.value(u"photos").toArray())
        listed.push_back(photo.toObject());
    std::ranges::stable_sort(listed, {}, [](const QJsonObject& photo) { return photo.value(u"orderInEntry").toInt(); });
    std::vector<Photo> photos;
    for (const QJsonObject& photo : listed) {
        const QString md5 = photo.value(u"md5").toString();
        photos.push_back({photo.value(u"identifier").toString(md5).toLower(),
                          u"%1/photos/%2.%3"_s.arg(folder, md5, photo.value(u"type").toString())});
    }
    return photos;
}

/// In front of the word for a photo in a text.
const QString kMoment = u"dayone-moment://"_s;

/// The text with the photos that it does not show itself behind it.
QString withAllPhotos(QString markdown, const std::vector<Photo>& photos) {
    static const QRegularExpression moment(kMoment + u"(\\w+)"_s, QRegularExpression::CaseInsensitiveOption);
    QSet<QString> shown;
    for (auto found = moment.globalMatch(markdown); found.hasNext();)
        shown.insert(found.next().captured(1).toLower());
    for (const Photo& photo : photos) {
        if (!shown.contains(photo.identifier))
            markdown += u"\n\n![]("_s + kMoment + photo.identifier + u')';
    }
    return markdown;
}

/// The words alone of the text that newer programs write beside the plain one.
QString plainOfRichText(const QJsonObject& entry, Losses& losses) {
    QString text;
    const QByteArray rich = entry.value(u"richText").toString().toUtf8();
    qsizetype halves = 0;
    for (const QJsonValue& piece : platform::parseJson(rich, nullptr, &halves).object().value(u"contents").toArray())
        text += piece.toObject().value(u"text").toString();
    losses.countHalves(halves);
    return text;
}

void countMembers(const QJsonObject& entry, Losses& losses) {
    if (const qsizetype tags = entry.value(u"tags").toArray().size())
        losses.count(u"タグ"_s, tags);
    const std::pair<QString, QString> members[] = {{u"location"_s, u"場所"_s},     {u"starred"_s, u"スター"_s},
                                                   {u"isPinned"_s, u"ピン"_s},     {u"audios"_s, u"音声"_s},
                                                   {u"videos"_s, u"ビデオ"_s},     {u"pdfAttachments"_s, u"PDF"_s},
                                                   {u"userActivity"_s, u"活動"_s}, {u"music"_s, u"曲"_s}};
    for (const auto& [member, name] : members) {
        const QJsonValue value = entry.value(member);
        if (value.isArray() ? !value.toArray().isEmpty() : value.isBool() ? value.toBool() : value.isObject())
            losses.count(name, value.isArray() ? value.toArray().size() : 1);
    }
}

/// Nothing, and counted, for an entry whose day is not to be known.
std::optional<WrittenDate> dateOf(const QJsonObject& entry, Losses& losses) {
    const QString created = entry.value(u"creationDate").toString();
    const QString zone = entry.value(u"timeZone").toString();
    const std::optional<WrittenDate> date = momentIn(created, zone);
    if (date && !zone.isEmpty() && !QTimeZone(zone.toUtf8()).isValid())
        losses.countNamed(u"知らないタイムゾーン (このコンピュータの時刻にします)"_s, zone);
    if (!date)
        losses.countNamed(u"日付が読めない日記"_s, created.isEmpty() ? entry.value(u"uuid").toString() : created);
    return date;
}

ForeignEntry readEntry(const QJsonObject& json, const WrittenDate& date, const QString& folder, Losses& losses) {
    ForeignEntry foreign;
    store::Entry& entry = foreign.entry;
    entry.day = date.day;
    entry.publishTime = date.publishTime();
    entry.weather = json.value(u"weather").toObject().value(u"conditionsDescription").toString().simplified();
    const std::vector<Photo> photos = photosOf(json, folder);
    QHash<QString, QString> files;
    for (const Photo& photo : photos)
        files.insert(kMoment + photo.identifier, photo.file);
    const QJsonValue written = json.value(u"text");
    const TitledMarkdown text = titledMarkdown(written.isString() ? written.toString() : plainOfRichText(json, losses));
    entry.title = text.title.isEmpty() ? firstWords(text.body) : text.title;
    const PictureOf pictureOf = [&](const QString& address) -> std::optional<QString> {
        const QString named = files.value(address.toLower());
        if (named.isEmpty())
            return std::nullopt;
        const std::optional<QString> file = pictureFile(folder, folder, named);
        if (!file)
            losses.countNamed(u"見つからない画像"_s, QFileInfo(named).fileName());
        return file;
    };
    const QString html = htmlOfMarkdown(withAllPhotos(text.body, photos), LineBreaks::Breaks);
    entry.contents = withPictures(html.trimmed(), pictureOf, foreign, losses);
    countMembers(json, losses);
    return foreign;
}

/// False for JSON that is no journal.
bool readJournal(const QString& file, ForeignDiary& diary) {
    const QByteArray bytes = readSource(file);
    if (bytes.startsWith("PK\x03\x04"))
        refuse(file, u"ZIPファイルです"_s, u"展開してから、中のJSONファイルかフォルダを指定してください。"_s);
    QJsonParseError error;
    qsizetype halves = 0;
    const QJsonObject journal =
        platform::parseJson(platform::withoutSignature(bytes).toByteArray(), &error, &halves).object();
    if (error.error != QJsonParseError::NoError)
        refuse(file, u"JSONとして読めません (%1、%2バイト目)"_s.arg(error.errorString()).arg(error.offset),
               u"ファイルが途中で切れていないか確認してください。"_s);
    if (!journal.value(u"entries").isArray())
        return false;
    diary.losses.countHalves(halves);
    const QString folder = QFileInfo(file).path();
    for (const QJsonValue& value : journal.value(u"entries").toArray()) {
        if (const std::optional<WrittenDate> date = dateOf(value.toObject(), diary.losses))
            diary.entries.push_back(readEntry(value.toObject(), *date, folder, diary.losses));
    }
    return true;
}

} // namespace

ForeignDiary readDayOne(const QString& path) {
    ForeignDiary diary;
    if (!QFileInfo(path).isDir()) {
        if (!readJournal(path, diary))
            refuse(path, u"Day OneのJSONではありません (「entries」がありません)"_s);
    } else {
        requireReadable(path);
        const QDir folder(path);
        QStringList files;
        for (const QString& name : folder.entryList({u"*.json"_s}, QDir::Files, QDir::Name))
            files += folder.filePath(name);
        requireSize(path, files);
        for (const QString& file : std::as_const(files)) {
            if (!readJournal(file, diary))
                diary.losses.countNamed(u"Day OneのJSONではないファイル"_s, QFileInfo(file).fileName());
        }
    }
    std::ranges::stable_sort(diary.entries, {}, [](const ForeignEntry& entry) { return entry.entry.publishTime; });
    return diary;
}

} // namespace velloria::exchange
