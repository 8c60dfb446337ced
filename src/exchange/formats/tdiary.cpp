#include "exchange/formats/tdiary.h"

#include "exchange/formats/source_files.h"
#include "exchange/formats/tdiary_sections.h"
#include "platform/failure.h"

#include <QDateTime>
#include <QFileInfo>
#include <QHash>
#include <QRegularExpression>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace velloria::exchange {
namespace {

const QString kBegin = u"TDIARY2."_s;
constexpr int kLastYear = 9999;

/// A day of a ".td2", a comment of a ".tdc".
struct Record {
    QHash<QString, QString> head;
    QString body;
    bool isWhole = true; ///< its last line is there
};

/// Nothing for a file of another kind.
std::optional<std::vector<Record>> readRecords(const QString& text) {
    if (!text.startsWith(kBegin))
        return std::nullopt;
    const QStringList lines = text.split(u'\n');
    std::vector<Record> records;
    for (qsizetype at = 1; at < lines.size();) {
        Record record;
        for (; at < lines.size() && !lines[at].isEmpty(); ++at)
            record.head.insert(lines[at].section(u':', 0, 0), lines[at].section(u':', 1).trimmed());
        const qsizetype begin = ++at;
        QStringList body;
        for (; at < lines.size() && lines[at] != u"."_s; ++at)
            body += lines[at].startsWith(u'.') ? lines[at].sliced(1) : lines[at];
        record.isWhole = at < lines.size();
        record.body = body.join(u'\n');
        ++at;
        if (!record.head.isEmpty() || begin < lines.size())
            records.push_back(record);
    }
    return records;
}

class Reader {
public:
    ForeignDiary diary;

    void readMonth(const std::vector<Record>& records) {
        for (const Record& record : records)
            readDay(record);
    }

    void readComments(const std::vector<Record>& records) {
        diary.losses.count(u"コメント"_s, qsizetype(records.size()));
    }

private:
    void readDay(const Record& record) {
        static const QRegularExpression form(u"^(\\d{4})(\\d{2})(\\d{2})$"_s);
        const QString written = record.head.value(u"Date"_s);
        const QRegularExpressionMatch match = form.match(written);
        const std::optional<QString> day =
            calendarDay(match.captured(1).toInt(), match.captured(2).toInt(), match.captured(3).toInt());
        if (!day)
            return diary.losses.countNamed(u"日付が読めない日"_s, written);
        if (!record.isWhole)
            diary.losses.countNamed(u"途中で切れた日 (読めたところまで)"_s, *day);
        const QString style = record.head.value(u"Format"_s, u"tDiary"_s);
        if (!isKnownStyle(style))
            diary.losses.count(u"スタイル%1の日 (文字のまま残します)"_s.arg(style));
        countCalls(record.body);
        const std::vector<TDiarySection> sections = sectionsOf(style, record.body);
        const QString title = record.head.value(u"Title"_s);
        if (!title.isEmpty() && (sections.empty() || !sections.front().title.isEmpty()))
            diary.losses.count(u"日の題名"_s);
        for (const TDiarySection& section : sections)
            add(record, *day, section, &section == &sections.front() ? title : QString());
    }

    void add(const Record& record, const QString& day, const TDiarySection& section, const QString& title) {
        ForeignEntry foreign;
        store::Entry& entry = foreign.entry;
        entry.day = day;
        bool isTime = false;
        const qint64 time = record.head.value(u"Last-Modified"_s).toLongLong(&isTime);
        const QDateTime written = QDateTime::fromSecsSinceEpoch(time);
        if (isTime && time > 0 && written.date().year() <= kLastYear)
            entry.publishTime = written.toString(u"yyyy/MM/dd HH:mm:ss"_s);
        entry.title = section.title.isEmpty() ? title : section.title;
        entry.genre = section.categories.value(0);
        if (section.categories.size() > 1)
            diary.losses.count(u"二つ目からのカテゴリ"_s, section.categories.size() - 1);
        entry.contents = section.html.trimmed();
        entry.isPrivate = record.head.value(u"Visible"_s) == u"false"_s;
        diary.entries.push_back(std::move(foreign));
    }

    void countCalls(const QString& body) {
        if (const qsizetype calls = body.count(u"{{"_s) + body.count(u"<%="_s))
            diary.losses.count(u"プラグインの呼び出し (文字のまま残します)"_s, calls);
    }
};

bool isMonth(const QString& file) {
    return file.endsWith(u".td2"_s, Qt::CaseInsensitive);
}

} // namespace

ForeignDiary readTDiary(const QString& path) {
    Reader reader;
    Losses& losses = reader.diary.losses;
    if (!QFileInfo(path).isDir()) {
        const std::optional<std::vector<Record>> records = readRecords(readSourceText(path, losses));
        if (!records)
            throw platform::Failure(u"日記を読み込めません。"_s, path,
                                    u"tDiaryのデータではありません (「TDIARY2.」で始まりません)"_s,
                                    u"何もインポートしていません。"_s);
        reader.readMonth(*records);
        return std::move(reader.diary);
    }
    QStringList files = filesBelow(path, losses);
    files.removeIf(
        [](const QString& file) { return !isMonth(file) && !file.endsWith(u".tdc"_s, Qt::CaseInsensitive); });
    requireSize(path, files);
    for (const QString& file : std::as_const(files)) {
        const std::optional<QString> text = readOneText(file, losses);
        const std::optional<std::vector<Record>> records = text ? readRecords(*text) : std::nullopt;
        if (records && isMonth(file))
            reader.readMonth(*records);
        else if (records)
            reader.readComments(*records);
        else if (text)
            losses.countNamed(u"tDiaryのデータではないファイル"_s, QFileInfo(file).fileName());
    }
    return std::move(reader.diary);
}

} // namespace velloria::exchange
