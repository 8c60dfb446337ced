#include "exchange/formats/markdown_diary.h"

#include "core/day_key.h"
#include "exchange/formats/front_matter.h"
#include "exchange/formats/html_pictures.h"
#include "exchange/formats/markdown_entry.h"
#include "exchange/formats/markdown_html.h"
#include "exchange/formats/source_files.h"
#include "exchange/formats/written_date.h"
#include "platform/failure.h"

#include <QDateTime>
#include <QDir>
#include <QFileInfo>
#include <QRegularExpression>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace velloria::exchange {
namespace {

/// One file, and what settles its place among the others of its day.
struct Document {
    ForeignEntry foreign;
    int number = 0; ///< 0 for none
    qsizetype place = 0;
};

struct Source {
    QString root; ///< what the person named, or the folder of the file
    QString file;

    QString folder() const { return QFileInfo(file).path(); }
    QString shown() const { return QDir(root).relativeFilePath(file); }
    bool isDraft() const { return shown().split(u'/').contains(u"_drafts"_s); }
    /// The name that may bear date and title: that of the folder for a page with files of its own.
    QString name() const {
        const QFileInfo info(file);
        return info.completeBaseName() == u"index"_s ? QFileInfo(info.path()).fileName() : info.completeBaseName();
    }
};

/// What the makers of sites keep beside the posts.
bool isOfSite(const QString& relative) {
    static const QStringList others{u"archetypes"_s, u"layouts"_s, u"node_modules"_s,
                                    u"public"_s,     u"themes"_s,  u"vendor"_s};
    QStringList folders = relative.split(u'/');
    const QString name = folders.takeLast();
    return name == u"_index.md"_s || std::ranges::any_of(folders, [](const QString& folder) {
               return others.contains(folder) ||
                      (folder.startsWith(u'_') && folder != u"_posts"_s && folder != u"_drafts"_s);
           });
}

bool isMarkdown(const QString& file) {
    static const QStringList endings{u"md"_s, u"markdown"_s, u"mkd"_s, u"mkdn"_s, u"mdown"_s};
    return endings.contains(QFileInfo(file).suffix().toLower());
}

struct DatedName {
    std::optional<WrittenDate> date;
    QString title; ///< "No Title" of "2024-03-10-no-title"; the name itself without a date
};

DatedName readName(const QString& name) {
    static const QRegularExpression form(u"^(\\d{4}-\\d{1,2}-\\d{1,2})(?:[-_ ](.*))?$"_s);
    const QRegularExpressionMatch match = form.match(name);
    if (!match.hasMatch())
        return {{}, name};
    QStringList words = match.captured(2).split(u'-', Qt::SkipEmptyParts);
    for (QString& word : words)
        word = word.first(1).toUpper() + word.sliced(1).toLower();
    return {writtenDate(match.captured(1)), words.join(u' ')};
}

/// Behind "categories" one text is as many as it has words.
QStringList wordsOf(const FrontMatter& matter, const QString& many, const QString& one) {
    const FrontValue several = matter.values.value(many);
    QStringList words = several.kind == FrontValue::Kind::Text
                            ? several.text().split(QRegularExpression(u"\\s+"_s), Qt::SkipEmptyParts)
                            : several.texts;
    words += matter.values.value(one).texts;
    words.removeAll(u""_s);
    return words;
}

/// Which picture an address of the source means: one beside it, or in the folders that a site is served from.
PictureOf picturesOf(const Source& source) {
    return [source](const QString& address) -> std::optional<QString> {
        if (!address.startsWith(u'/'))
            return pictureFile(source.root, source.folder(), address);
        for (const QString& served : {u"static"_s, u"."_s, u"assets"_s}) {
            if (const auto file = pictureFile(source.root, source.root + u'/' + served, address.sliced(1)))
                return file;
        }
        return std::nullopt;
    };
}

/// The body in front of the mark at which a site breaks an entry off, and the rest.
void takeTexts(const FrontMatter& matter, store::Entry& entry) {
    const FrontValue separator = matter.values.value(u"excerpt_separator"_s);
    const QString more = separator.text().isEmpty() ? u"<!--more-->"_s : separator.text();
    const QString mark = u"<!--more-->"_s;
    QString markdown = matter.body;
    const qsizetype at = markdown.indexOf(more);
    if (at >= 0)
        markdown.replace(at, more.size(), u"\n\n"_s + mark + u"\n\n"_s);
    // Rendered as one, so that both see the same references.
    const QString html = htmlOfMarkdown(markdown);
    const qsizetype broken = at < 0 ? -1 : html.indexOf(mark);
    entry.contents = html.first(broken < 0 ? html.size() : broken).trimmed();
    entry.extend = broken < 0 ? u""_s : html.sliced(broken + mark.size()).trimmed();
}

void countCommands(const QString& body, Losses& losses) {
    static const QRegularExpression command(u"\\{\\{[<%]|\\{%"_s);
    qsizetype commands = 0;
    for (auto found = command.globalMatch(body); found.hasNext(); found.next())
        ++commands;
    if (commands)
        losses.count(u"サイトの命令 ({{< >}}、{% %}。文字のまま残します)"_s, commands);
}

void countOthers(const FrontMatter& matter, Losses& losses) {
    static const QStringList known{u"title"_s,    u"date"_s,        u"draft"_s,  u"published"_s,        u"categories"_s,
                                   u"category"_s, u"tags"_s,        u"tag"_s,    u"weather"_s,          u"excerpt"_s,
                                   u"summary"_s,  u"description"_s, u"layout"_s, u"excerpt_separator"_s};
    for (const QString& key : matter.values.keys()) {
        if (!known.contains(key))
            losses.countNamed(u"先頭のほかの項目"_s, key);
    }
}

void readHead(const FrontMatter& matter, const Source& source, store::Entry& entry, Losses& losses) {
    const auto text = [&](const QString& key) { return matter.values.value(key).text(); };
    entry.title = text(u"title"_s).simplified();
    if (entry.title.isEmpty())
        entry.title = readName(source.name()).title;
    entry.isPrivate = matter.isHidden() || source.isDraft();
    entry.weather = text(u"weather"_s).simplified();
    for (const QString& key : {u"excerpt"_s, u"summary"_s, u"description"_s}) {
        if (entry.excerpt.isEmpty())
            entry.excerpt = text(key);
    }
    const QStringList categories = wordsOf(matter, u"categories"_s, u"category"_s);
    entry.genre = categories.value(0).simplified();
    if (categories.size() > 1)
        losses.count(u"二つ目からのカテゴリ"_s, categories.size() - 1);
    if (const QStringList tags = wordsOf(matter, u"tags"_s, u"tag"_s); !tags.isEmpty())
        losses.count(u"タグ"_s, tags.size());
    countOthers(matter, losses);
    losses.countHalves(matter.halves);
}

/// The head's date, else that of the name; a draft without either is of the day on which it was written.
std::optional<WrittenDate> dateOf(const FrontMatter& matter, const Source& source, Losses& losses) {
    const FrontValue date = matter.values.value(u"date"_s);
    if (!date.text().isEmpty()) {
        const std::optional<WrittenDate> read = writtenDate(date.text());
        if (!read)
            losses.countNamed(u"日付が読めないファイル"_s, source.shown() + u": "_s + date.text());
        return read;
    }
    std::optional<WrittenDate> named = readName(source.name()).date;
    if (!named && source.isDraft()) {
        const QDateTime written = QFileInfo(source.file).lastModified();
        named = WrittenDate{core::dayKey(written.date()), written.time().toString(u"HH:mm:ss"_s)};
    }
    if (!named)
        losses.countNamed(u"日付のないファイル"_s, source.shown());
    return named;
}

std::optional<Document> readDocument(const Source& source, const QString& text, Losses& losses) {
    const FrontMatter matter = readFrontMatter(text);
    Document document;
    store::Entry& entry = document.foreign.entry;
    if (isOwnMarkdown(matter)) {
        entry = ownEntry(matter);
        document.foreign.isOwn = true;
        document.number = entry.number;
        if (entry.day.isNull()) {
            losses.countNamed(u"日付が読めないファイル"_s, source.shown());
            return std::nullopt;
        }
    } else {
        const std::optional<WrittenDate> date = dateOf(matter, source, losses);
        if (!date)
            return std::nullopt;
        readHead(matter, source, entry, losses);
        entry.day = date->day;
        entry.publishTime = date->publishTime();
        takeTexts(matter, entry);
        countCommands(matter.body, losses);
    }
    for (QString store::Entry::*part : {&store::Entry::contents, &store::Entry::extend, &store::Entry::excerpt}) {
        if (document.foreign.isOwn)
            entry.*part = withParts(entry.*part, source.root, document.foreign, losses);
        else if (part != &store::Entry::excerpt)
            entry.*part = withPictures(entry.*part, picturesOf(source), document.foreign, losses);
    }
    return document;
}

/// One of many: what is wrong with it is counted, and the others are none the worse for it.
std::optional<Document> readOne(const Source& source, Losses& losses) {
    const std::optional<QString> text = readOneText(source.file, losses);
    if (!text)
        return std::nullopt;
    try {
        return readDocument(source, *text, losses);
    } catch (const platform::Failure& failure) {
        losses.countNamed(u"先頭の項目が読めないファイル"_s, source.shown() + u": "_s + failure.reason());
        return std::nullopt;
    }
}

std::optional<Document> readAlone(const Source& source, Losses& losses) {
    const QString text = readSourceText(source.file, losses);
    try {
        return readDocument(source, text, losses);
    } catch (const platform::Failure& failure) {
        throw platform::Failure(failure.whatFailed(), source.file, failure.reason(), u"何もインポートしていません。"_s);
    }
}

} // namespace

ForeignDiary readMarkdownDiary(const QString& path) {
    ForeignDiary diary;
    std::vector<Document> documents;
    const auto add = [&](std::optional<Document> document) {
        if (document) {
            document->place = qsizetype(documents.size());
            documents.push_back(std::move(*document));
        }
    };
    if (QFileInfo(path).isDir()) {
        QStringList files = filesBelow(path, diary.losses);
        files.removeIf(
            [&](const QString& file) { return !isMarkdown(file) || isOfSite(QDir(path).relativeFilePath(file)); });
        requireSize(path, files);
        for (const QString& file : std::as_const(files))
            add(readOne({path, file}, diary.losses));
    } else {
        add(readAlone({QFileInfo(path).path(), path}, diary.losses));
    }
    std::ranges::sort(documents, {}, [](const Document& document) {
        const store::Entry& entry = document.foreign.entry;
        return std::tuple(entry.day, document.number, document.number ? QString() : entry.publishTime, document.place);
    });
    for (Document& document : documents)
        diary.entries.push_back(std::move(document.foreign));
    return diary;
}

} // namespace velloria::exchange
