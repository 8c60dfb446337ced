#include "exchange/formats/jrnl.h"

#include "exchange/formats/html_text.h"
#include "exchange/formats/source_files.h"
#include "platform/failure.h"
#include "platform/utf8.h"

#include <QJsonArray>
#include <QJsonObject>
#include <QRegularExpression>
#include <QSet>
#include <QTime>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace velloria::exchange {
namespace {

const QString kBadDate = u"日付が正しくない日記"_s;
const QString kTag = u"タグ"_s;
const QString kStar = u"星印"_s;

[[noreturn]] void refuse(const QString& file, const QString& reason, const QString& advice = {}) {
    throw platform::Failure(u"日記を読み込めません。"_s, file, reason, u"何もインポートしていません。"_s + advice);
}

/// An entry as it stands in the file.
struct Written {
    QString date; ///< as it is written
    std::optional<QString> day;
    QTime time;
    QStringList lines;
};

/// Where the first sentence of a line ends; its end when it is the only one.
qsizetype sentenceEnd(const QString& line) {
    for (qsizetype at = 0; at < line.size(); ++at) {
        const bool isLast = at + 1 == line.size();
        if (u"。！？"_s.contains(line[at]) || (u".!?"_s.contains(line[at]) && (isLast || line[at + 1].isSpace())))
            return at + 1;
    }
    return line.size();
}

/// The title is the first line, or the first sentence of the only one.
void addEntry(const QString& day, const QTime& time, const QString& title, QStringView body, ForeignDiary& diary) {
    while (body.startsWith(u'\n'))
        body = body.sliced(1);
    while (body.endsWith(u'\n'))
        body.chop(1);
    ForeignEntry entry;
    entry.entry.day = day;
    entry.entry.title = title;
    entry.entry.contents = htmlParagraphs(body.toString());
    if (time.isValid())
        entry.entry.publishTime = day + time.toString(u" HH:mm:ss");
    diary.entries.push_back(std::move(entry));
}

// -- text -------------------------------------------------------------------------------------------------------------

const QString kDate = u"(\\d{4})[-/.](\\d{1,2})[-/.](\\d{1,2})"_s;
const QString kTime = u"(午前|午後)? ?(\\d{1,2}):(\\d{2})(?::(\\d{2}))? ?([AaPp]\\.?[Mm]\\.?)?"
                      "(?: ?(?:Z|UTC|[+-]\\d{2}:?\\d{2}))?"_s;

QTime timeOf(const QRegularExpressionMatch& match) {
    if (match.capturedLength(5) == 0)
        return {};
    int hour = match.captured(5).toInt();
    const QString half = match.captured(8).toLower();
    const bool isAfternoon = match.captured(4) == u"午後"_s || half.startsWith(u'p');
    const bool isMorning = match.captured(4) == u"午前"_s || half.startsWith(u'a');
    if (isAfternoon || isMorning)
        hour = hour % 12 + (isAfternoon ? 12 : 0);
    return QTime(hour, match.captured(6).toInt(), match.captured(7).toInt());
}

/// The entry that a line begins, with the rest of the line; nothing for a line within one.
std::optional<Written> beginning(const QString& line, const QRegularExpression& form) {
    const QRegularExpressionMatch match = form.match(line);
    if (!match.hasMatch())
        return std::nullopt;
    Written entry;
    entry.date = match.captured(1) + u'-' + match.captured(2) + u'-' + match.captured(3);
    entry.day = calendarDay(match.captured(1).toInt(), match.captured(2).toInt(), match.captured(3).toInt());
    entry.time = timeOf(match);
    if (match.capturedLength(5) > 0 && !entry.time.isValid())
        entry.day.reset();
    entry.lines += line.sliced(match.capturedEnd());
    return entry;
}

void addWritten(Written entry, ForeignDiary& diary) {
    if (!entry.day) {
        diary.losses.countNamed(kBadDate, entry.date);
        return;
    }
    while (entry.lines.size() > 1 && entry.lines.constLast().trimmed().isEmpty())
        entry.lines.removeLast();
    QString title = entry.lines.takeFirst().trimmed();
    if (title == u"*"_s || title.endsWith(u" *"_s)) {
        title = title.chopped(1).trimmed();
        diary.losses.count(kStar);
    }
    QString body = entry.lines.join(u'\n');
    static const QRegularExpression tag(u"(?<![\\w@#])[@#][\\w-]*\\w"_s,
                                        QRegularExpression::UseUnicodePropertiesOption);
    QSet<QString> tags;
    for (const QString& text : {title, body}) {
        for (auto found = tag.globalMatch(text); found.hasNext();)
            tags.insert(found.next().captured().toLower());
    }
    if (!tags.isEmpty())
        diary.losses.count(kTag, tags.size());
    if (entry.lines.isEmpty()) {
        const qsizetype end = sentenceEnd(title);
        body = title.sliced(end).trimmed();
        title.truncate(end);
    }
    addEntry(*entry.day, entry.time, title, body, diary);
}

ForeignDiary readText(const QString& text, ForeignDiary diary) {
    static const QRegularExpression bracketed(u"^\\[%1(?:[ T]+%2)?\\](?: |$)"_s.arg(kDate, kTime));
    static const QRegularExpression bare(u"^%1[ T]+%2(?: |$)"_s.arg(kDate, kTime));
    const QStringList lines = text.split(u'\n');
    const bool hasBrackets =
        std::ranges::any_of(lines, [](const QString& line) { return bracketed.match(line).hasMatch(); });
    std::optional<Written> entry;
    for (const QString& line : lines) {
        if (std::optional<Written> next = beginning(line, hasBrackets ? bracketed : bare)) {
            if (entry)
                addWritten(std::move(*entry), diary);
            entry = std::move(next);
        } else if (entry) {
            entry->lines += line;
        } else if (!line.trimmed().isEmpty()) {
            diary.losses.countNamed(u"最初の日付より前の行"_s, line.trimmed());
        }
    }
    if (entry)
        addWritten(std::move(*entry), diary);
    return diary;
}

// -- JSON -------------------------------------------------------------------------------------------------------------

void addObject(const QJsonObject& object, ForeignDiary& diary) {
    static const QRegularExpression form(u"^%1$"_s.arg(kDate));
    const QString date = object.value(u"date"_s).toString();
    const QString title = object.value(u"title"_s).toString();
    const QRegularExpressionMatch match = form.match(date);
    const std::optional<QString> day =
        match.hasMatch() ? calendarDay(match.captured(1).toInt(), match.captured(2).toInt(), match.captured(3).toInt())
                         : std::nullopt;
    if (!day) {
        diary.losses.countNamed(kBadDate, date.isEmpty() ? title : date);
        return;
    }
    if (const qsizetype tags = object.value(u"tags"_s).toArray().size())
        diary.losses.count(kTag, tags);
    if (object.value(u"starred"_s).toBool())
        diary.losses.count(kStar);
    const QString time = object.value(u"time"_s).toString();
    QTime written = QTime::fromString(time, u"H:mm"_s);
    if (!written.isValid())
        written = QTime::fromString(time, u"H:mm:ss"_s);
    const QString body = object.value(u"body"_s).toString();
    addEntry(*day, written, title, QString(body).replace(u"\r\n"_s, u"\n"_s).replace(u'\r', u'\n'), diary);
}

ForeignDiary readExport(const QString& file, const QString& text, ForeignDiary diary) {
    QJsonParseError error;
    qsizetype halves = 0;
    const QJsonDocument document = platform::parseJson(text.toUtf8(), &error, &halves);
    if (error.error != QJsonParseError::NoError)
        refuse(file, u"JSONとして読めません (%1バイト目: %2)"_s.arg(error.offset).arg(error.errorString()),
               u"ファイルが途中で切れていないか確認してください。"_s);
    const QJsonValue entries = document.object().value(u"entries"_s);
    if (!entries.isArray())
        refuse(file, u"jrnlのJSONではありません (entriesがありません)"_s);
    diary.losses.countHalves(halves);
    for (const QJsonValue entry : entries.toArray())
        addObject(entry.toObject(), diary);
    return diary;
}

} // namespace

ForeignDiary readJrnl(const QString& file) {
    ForeignDiary diary;
    const QString text = readSourceText(file, diary.losses);
    if (text.startsWith(u"gAAAAA"_s))
        refuse(file, u"暗号化された日記です"_s, u"jrnl --decryptで暗号を解いてから、もう一度実行してください。"_s);
    return QStringView(text).trimmed().startsWith(u'{') ? readExport(file, text, std::move(diary))
                                                        : readText(text, std::move(diary));
}

} // namespace velloria::exchange
