#include "exchange/formats/joplin.h"

#include "exchange/formats/html_pictures.h"
#include "exchange/formats/markdown_html.h"
#include "exchange/formats/source_files.h"
#include "exchange/formats/written_date.h"
#include "platform/failure.h"

#include <QDir>
#include <QFileInfo>
#include <QHash>
#include <QRegularExpression>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace velloria::exchange {
namespace {

/// One file: what it is stands in the lines "key: value" at its end.
struct Item {
    QString title;
    QString body;
    QHash<QString, QString> keys;

    QString key(const QString& name) const { return keys.value(name); }
    bool isSet(const QString& name) const {
        const QString value = key(name);
        return !value.isEmpty() && value.toDouble() != 0;
    }
};

enum class Type { Note = 1, Notebook = 2, Resource = 4, Tag = 5, TagOfNote = 6 };

/// Nothing for a file that is none of Joplin's.
std::optional<Item> readItem(const QString& text) {
    static const QRegularExpression line(u"^([a-z_]+):(?: (.*))?$"_s);
    Item item;
    const QStringList lines = text.split(u'\n');
    qsizetype first = lines.size();
    while (first > 0 && (!lines[first - 1].isEmpty() || first == lines.size())) {
        const QRegularExpressionMatch match = line.match(lines[first - 1]);
        if (!match.hasMatch() && !lines[first - 1].isEmpty())
            break;
        item.keys.insert(match.captured(1), match.captured(2));
        --first;
    }
    if (!item.keys.contains(u"id"_s) || !item.keys.contains(u"type_"_s) || (first > 0 && !lines[first - 1].isEmpty()))
        return std::nullopt;
    item.title = lines[0];
    // A blank line stands on both sides of the body.
    if (first > 3)
        item.body = lines.sliced(2, first - 3).join(u'\n');
    return item;
}

class Notes {
public:
    explicit Notes(QString folder)
        : m_folder(std::move(folder)) {
        const QDir resources(m_folder + u"/resources"_s);
        for (const QString& name : resources.entryList(QDir::Files))
            m_resources.insert(QFileInfo(name).completeBaseName(), resources.filePath(name));
    }

    ForeignDiary read() {
        readItems();
        for (const Item& note : std::as_const(m_notes))
            add(note);
        std::ranges::stable_sort(m_diary.entries, {},
                                 [](const ForeignEntry& entry) { return entry.entry.publishTime; });
        return std::move(m_diary);
    }

private:
    void readItems() {
        QStringList files = filesBelow(m_folder, m_diary.losses);
        files.removeIf([&](const QString& file) {
            return QFileInfo(file).path() != m_folder || !file.endsWith(u".md"_s, Qt::CaseInsensitive);
        });
        requireSize(m_folder, files);
        for (const QString& file : files) {
            const std::optional<QString> text = readOneText(file, m_diary.losses);
            if (!text)
                continue;
            if (const std::optional<Item> item = readItem(*text))
                take(*item);
            else
                m_diary.losses.countNamed(u"Joplinのものではないファイル"_s, QFileInfo(file).fileName());
        }
    }

    void take(const Item& item) {
        switch (Type(item.key(u"type_"_s).toInt())) {
        case Type::Note:
            m_notes += item;
            break;
        case Type::Notebook:
            m_notebooks.insert(item.key(u"id"_s), item.title);
            break;
        case Type::TagOfNote:
            m_diary.losses.count(u"タグ"_s);
            break;
        case Type::Resource:
        case Type::Tag:
            break;
        default:
            m_diary.losses.count(u"そのほかの項目 (type_ %1)"_s.arg(item.key(u"type_"_s)));
        }
    }

    void add(const Item& note) {
        Losses& losses = m_diary.losses;
        const QString name = note.title.isEmpty() ? note.key(u"id"_s) : note.title;
        if (note.isSet(u"encryption_applied"_s))
            return losses.countNamed(u"暗号化されたノート (Joplinで復号してから書き出してください)"_s,
                                     note.key(u"id"_s));
        if (note.isSet(u"deleted_time"_s))
            return losses.countNamed(u"ごみ箱のノート"_s, name);
        QString created = note.key(u"user_created_time"_s);
        if (created.isEmpty())
            created = note.key(u"created_time"_s);
        const std::optional<WrittenDate> date = momentIn(created, {});
        if (!date)
            return losses.countNamed(u"日付が読めないノート"_s, name);
        countKeys(note);
        m_diary.entries.push_back(entryOf(note, *date));
    }

    ForeignEntry entryOf(const Item& note, const WrittenDate& date) {
        ForeignEntry foreign;
        foreign.entry.day = date.day;
        foreign.entry.publishTime = date.publishTime();
        foreign.entry.title = note.title;
        foreign.entry.genre = m_notebooks.value(note.key(u"parent_id"_s)).simplified();
        const bool isHtml = note.key(u"markup_language"_s) == u"2"_s;
        const QString html = isHtml ? note.body : htmlOfMarkdown(note.body, LineBreaks::Breaks);
        foreign.entry.contents = withPictures(
            html.trimmed(), [&](const QString& address) { return picture(address); }, foreign, m_diary.losses);
        return foreign;
    }

    std::optional<QString> picture(const QString& address) const {
        if (!address.startsWith(u":/"_s))
            return std::nullopt;
        const QString file = m_resources.value(address.sliced(2).section(u'#', 0, 0));
        return file.isEmpty() ? std::nullopt : pictureFile(m_folder, m_folder, file);
    }

    void countKeys(const Item& note) {
        if (note.isSet(u"latitude"_s) || note.isSet(u"longitude"_s))
            m_diary.losses.count(u"場所"_s);
        if (!note.key(u"source_url"_s).isEmpty())
            m_diary.losses.count(u"出典のURL"_s);
        if (note.isSet(u"is_todo"_s))
            m_diary.losses.count(u"ToDoの印"_s);
    }

    QString m_folder;
    QHash<QString, QString> m_resources; ///< paths by id
    QHash<QString, QString> m_notebooks; ///< titles by id
    QList<Item> m_notes;
    ForeignDiary m_diary;
};

} // namespace

ForeignDiary readJoplin(const QString& path) {
    if (!QFileInfo(path).isDir())
        throw platform::Failure(u"日記を読み込めません。"_s, path, u"フォルダではありません"_s,
                                u"何もインポートしていません。Joplinで「RAW」形式を選んで書き出したフォルダを指定して"
                                "ください (JEXファイルは、tarで展開したフォルダを指定できます)。"_s);
    return Notes(QDir::cleanPath(path)).read();
}

} // namespace velloria::exchange
