#include "exchange/formats/rednotebook.h"

#include "exchange/formats/html_pictures.h"
#include "exchange/formats/rednotebook_markup.h"
#include "exchange/formats/source_files.h"
#include "exchange/formats/yaml.h"
#include "platform/failure.h"

#include <QDir>
#include <QFileInfo>
#include <QRegularExpression>
#include <QUrl>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace velloria::exchange {
namespace {

/// One part of a day.
struct Part {
    QString title;
    QString text;
};

/// The first line that is not blank from `line` on; the end when there is none.
qsizetype firstWords(const QStringList& lines, qsizetype line) {
    while (line < lines.size() && lines[line].trimmed().isEmpty())
        ++line;
    return line;
}

Part partOf(QStringList lines) {
    const qsizetype first = firstWords(lines, 0);
    Part part;
    if (first < lines.size()) {
        if (const std::optional<QString> heading = redNotebookHeading(lines[first])) {
            part.title = *heading;
            lines.remove(0, first + 1);
        }
    }
    part.text = lines.join(u'\n');
    return part;
}

/// A day parts where a heading follows a rule.
std::vector<Part> partsOf(const QString& text) {
    const QStringList lines = text.split(u'\n');
    std::vector<Part> parts;
    qsizetype begin = 0;
    for (qsizetype line = 0; line < lines.size(); ++line) {
        if (!isRedNotebookRule(lines[line]))
            continue;
        const qsizetype next = firstWords(lines, line + 1);
        if (next == lines.size() || !redNotebookHeading(lines[next]))
            continue;
        parts.push_back(partOf(lines.mid(begin, line - begin)));
        begin = next;
    }
    parts.push_back(partOf(lines.mid(begin)));
    std::erase_if(parts, [](const Part& part) { return part.title.isEmpty() && part.text.trimmed().isEmpty(); });
    return parts;
}

class Month {
public:
    Month(const QString& file, ForeignDiary& diary)
        : m_file(file)
        , m_name(QFileInfo(file).completeBaseName())
        , m_diary(diary) {}

    void read() {
        const YamlNode days = parseYaml(readSource(m_file), m_file);
        if (days.kind != YamlNode::Kind::Map && !days.isNull())
            throw platform::Failure(u"日記を読み込めません。"_s, m_file, u"RedNotebookの月のファイルではありません"_s,
                                    u"何もインポートしていません。"_s);
        for (const auto& [number, content] : days.members)
            readDay(number, content);
    }

private:
    void readDay(const QString& number, const YamlNode& content) {
        bool isNumber = false;
        const int day = number.toInt(&isNumber);
        const std::optional<QString> key =
            isNumber ? calendarDay(m_name.left(4).toInt(), m_name.mid(5).toInt(), day) : std::nullopt;
        if (!key) {
            m_diary.losses.countNamed(u"日付が正しくない日記"_s, m_name + u'-' + number);
            return;
        }
        QString text;
        for (const auto& [name, value] : content.members) {
            if (name == u"text" && value.kind == YamlNode::Kind::Scalar)
                text = value.isNull() ? QString() : value.text;
            else
                countTag(value);
        }
        if (content.kind == YamlNode::Kind::Scalar && !content.isNull())
            text = content.text;
        if (content.kind == YamlNode::Kind::Sequence)
            m_diary.losses.countNamed(u"読めない日"_s, *key);
        text.replace(u"\r\n"_s, u"\n"_s).replace(u'\r', u'\n');
        for (const Part& part : partsOf(text))
            add(*key, part);
    }

    /// A tag counts for each thing that was written under it.
    void countTag(const YamlNode& entries) {
        m_diary.losses.count(u"タグ"_s, std::max<qsizetype>(1, qsizetype(entries.members.size())));
    }

    void add(const QString& day, const Part& part) {
        ForeignEntry entry;
        entry.entry.day = day;
        entry.entry.title = part.title;
        const RedNotebookLinks links{.picture = [&](const QString& address) { return pictureOf(entry, address); },
                                     .day = [&](const QString& target) { return linkTo(target, day); }};
        entry.entry.contents = redNotebookHtml(part.text, links, m_diary.losses);
        m_diary.entries.push_back(std::move(entry));
    }

    /// One that lies in the diary's folder comes along, any other stays where it is.
    QString pictureOf(ForeignEntry& entry, const QString& address) {
        const QUrl url(address);
        const bool isLocal = url.scheme().isEmpty() || url.isLocalFile();
        if (!isLocal)
            return address;
        // The program writes the path as it is, percent signs and all.
        const QString path = address.startsWith(u"file://"_s) ? address.sliced(7) : address;
        const QString folder = QFileInfo(m_file).path();
        bool isElsewhere = false;
        for (const QString& candidate : {path, url.toLocalFile()}) {
            if (candidate.isEmpty())
                continue;
            if (const std::optional<QString> file = pictureFile(folder, folder, candidate)) {
                entry.pictures.push_back({*file, picturePlaceholder(entry)});
                return entry.pictures.back().placeholder;
            }
            isElsewhere |= QFileInfo(QDir(folder), candidate).isFile();
        }
        m_diary.losses.countNamed(isElsewhere ? u"日記のフォルダにない画像"_s : u"見つからない画像"_s,
                                  QFileInfo(path).fileName());
        return address;
    }

    /// A day has its place on the page of its month.
    QString linkTo(const QString& target, const QString& day) {
        QString key = target;
        key.replace(u'-', u'/');
        if (key.left(7) == day.left(7))
            return u'#' + key;
        m_diary.losses.count(u"ほかの月の日へのリンク"_s);
        return {};
    }

    QString m_file;
    QString m_name; ///< "yyyy-mm"
    ForeignDiary& m_diary;
};

} // namespace

ForeignDiary readRedNotebook(const QString& folder) {
    static const QRegularExpression month(u"^\\d{4}-\\d{2}\\.txt$"_s);
    const QDir directory(folder);
    requireReadable(folder);
    QStringList files;
    for (const QString& name : directory.entryList(QDir::Files, QDir::Name).filter(month))
        files += directory.filePath(name);
    requireSize(folder, files);
    ForeignDiary diary;
    for (const QString& file : files)
        Month(file, diary).read();
    return diary;
}

} // namespace velloria::exchange
