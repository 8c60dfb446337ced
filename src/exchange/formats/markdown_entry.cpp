#include "exchange/formats/markdown_entry.h"

#include "core/day_key.h"
#include "exchange/formats/balanced_html.h"
#include "exchange/formats/written_date.h"

#include <QDateTime>

using namespace Qt::StringLiterals;

namespace velloria::exchange {
namespace {

using store::Entry;

const QString kMarks = u"velloria"_s;
/// Where the postscript begins. Hugo, which knows the mark without blanks, leaves out all that stands before it in
/// HTML.
const QString kMore = u"<!-- more -->"_s;

/// A text of an entry and where the file shows it; "" is the body.
struct Field {
    QString name;
    QString Entry::*text;
    QString shownIn;
};

const std::vector<Field>& fields() {
    static const std::vector<Field> all{{u"Title"_s, &Entry::title, u"title"_s},
                                        {u"Contents"_s, &Entry::contents, {}},
                                        {u"Extend"_s, &Entry::extend, {}},
                                        {u"Excerpt"_s, &Entry::excerpt, u"description"_s},
                                        {u"Weather"_s, &Entry::weather, u"weather"_s},
                                        {u"Genre"_s, &Entry::genre, u"categories"_s},
                                        {u"PublishTime"_s, &Entry::publishTime, u"date"_s}};
    return all;
}

/// `text` with nothing in it that the makers of sites take for a command of theirs: the page reads the same.
QString harmless(QString text) {
    text.replace(u"\r\n"_s, u"\n"_s).replace(u'\r', u'\n');
    text.removeIf([](QChar character) { return character < u' ' && character != u'\n' && character != u'\t'; });
    text.replace(u"{{<"_s, u"&#123;{<"_s).replace(u"{{%"_s, u"&#123;{%"_s);
    const QString comment = u"<!--  more  -->"_s;
    return text.replace(kMore, comment).replace(u"<!--more-->"_s, comment);
}

/// Within a block element Markdown leaves HTML alone.
QString block(const QString& text) {
    return text.isEmpty() ? QString() : u"<div>\n"_s + balancedHtml(harmless(text)) + u"\n</div>\n"_s;
}

QString unblocked(QString text) {
    text = text.trimmed();
    if (text.startsWith(u"<div>\n"_s) && text.endsWith(u"\n</div>"_s))
        text = text.sliced(6, std::max<qsizetype>(text.size() - 13, 0));
    return text.replace(u'\n', u"\r\n"_s);
}

QString dateOf(const Entry& entry) {
    QString date = QString(entry.day).replace(u'/', u'-');
    const QDateTime time = QDateTime::fromString(entry.publishTime, u"yyyy/MM/dd HH:mm:ss"_s);
    if (time.isValid() && core::dayKey(time.date()) == entry.day) {
        const int minutes = time.offsetFromUtc() / 60;
        date += time.toString(u"'T'HH:mm:ss"_s) + (minutes < 0 ? u'-' : u'+') +
                QTime(0, 0).addSecs(std::abs(minutes) * 60).toString(u"HH:mm"_s);
    }
    return date;
}

/// What the file shows of an entry.
FrontMatter shown(const Entry& entry) {
    FrontMatter matter;
    matter.isThere = true;
    const auto set = [&](const QString& key, const QString& text, FrontValue::Kind kind = FrontValue::Kind::Text) {
        matter.values.insert(key, {.kind = kind, .texts = {text}});
    };
    if (!entry.title.isNull())
        set(u"title"_s, entry.title);
    set(u"date"_s, dateOf(entry));
    if (entry.isPrivate) {
        set(u"draft"_s, u"true"_s);
        set(u"published"_s, u"false"_s);
    }
    if (!entry.genre.isEmpty())
        set(u"categories"_s, entry.genre, FrontValue::Kind::List);
    if (!entry.weather.isEmpty() && entry.weather != u"-"_s)
        set(u"weather"_s, entry.weather);
    if (!entry.excerpt.isEmpty())
        set(u"description"_s, entry.excerpt);
    matter.body = block(entry.contents);
    if (!entry.extend.isEmpty())
        matter.body += u"\n"_s + kMore + u"\n\n"_s + block(entry.extend);
    return matter;
}

/// What the file shows, without the marks.
Entry readShown(const FrontMatter& matter) {
    const auto text = [&](const QString& key) {
        const QString found = matter.values.value(key).text();
        return found.isNull() ? u""_s : found;
    };
    Entry entry;
    entry.title = text(u"title"_s);
    entry.excerpt = text(u"description"_s);
    entry.genre = text(u"categories"_s);
    entry.weather = matter.values.contains(u"weather"_s) ? text(u"weather"_s) : u"-"_s;
    entry.isPrivate = matter.isHidden();
    if (const std::optional<WrittenDate> date = writtenDate(text(u"date"_s))) {
        entry.day = date->day;
        entry.publishTime = date->publishTime();
    }
    const qsizetype more = matter.body.indexOf(kMore);
    entry.contents = unblocked(matter.body.first(more < 0 ? matter.body.size() : more));
    entry.extend = more < 0 ? u""_s : unblocked(matter.body.sliced(more + kMore.size()));
    return entry;
}

bool isSame(const QString& left, const QString& right) {
    return left == right && left.isNull() == right.isNull();
}

/// A text as all readers of YAML take it, whatever it holds.
QString quoted(const QString& text) {
    if (text.isNull())
        return u"null"_s;
    QString written = u"\""_s;
    for (const QChar character : text) {
        const char16_t code = character.unicode();
        if (code == u'"' || code == u'\\')
            written += u'\\' + QString(character);
        else if (code == u'\n')
            written += u"\\n"_s;
        else if (code < 0x20 || (code >= 0x7F && code <= 0xA0) || code == 0x2028 || code == 0x2029 || code == 0xFEFF ||
                 (code >= 0xFDD0 && code <= 0xFDEF) || code >= 0xFFFE)
            written += u"\\u%1"_s.arg(code, 4, 16, QChar(u'0'));
        else
            written += character;
    }
    return written + u'"';
}

} // namespace

QByteArray markdownFile(const Entry& entry) {
    const FrontMatter matter = shown(entry);
    QString text = u"---\n"_s;
    for (const QString& key :
         {u"title"_s, u"date"_s, u"draft"_s, u"published"_s, u"categories"_s, u"weather"_s, u"description"_s}) {
        if (!matter.values.contains(key))
            continue;
        const FrontValue value = matter.values.value(key);
        const bool isPlain = key == u"date"_s || key == u"draft"_s || key == u"published"_s;
        const QString written = isPlain ? value.text() : quoted(value.text());
        text += key + u": "_s + (value.kind == FrontValue::Kind::List ? u'[' + written + u']' : written) + u'\n';
    }
    text += u"markup: html\nrender_with_liquid: false\nexcerpt_separator: \"%1\"\n"_s.arg(kMore);
    text += kMarks + u":\n  Number: %1\n"_s.arg(entry.number);
    const Entry seen = readShown(matter);
    for (const Field& field : fields()) {
        if (!isSame(seen.*field.text, entry.*field.text))
            text += u"  %1: "_s.arg(field.name) + quoted(entry.*field.text) + u'\n';
    }
    return QString(text + u"---\n"_s + matter.body).toUtf8();
}

bool isOwnMarkdown(const FrontMatter& matter) {
    return matter.values.value(kMarks).kind == FrontValue::Kind::Map &&
           matter.values.value(u"markup"_s).text() == u"html"_s;
}

Entry ownEntry(const FrontMatter& matter) {
    const QMap<QString, QString> marks = matter.values.value(kMarks).map;
    Entry entry = readShown(matter);
    entry.number = std::max(marks.value(u"Number"_s).toInt(), 1);
    Entry kept = entry;
    for (const Field& field : fields()) {
        if (marks.contains(field.name))
            kept.*field.text = marks.value(field.name);
    }
    const FrontMatter was = shown(kept);
    for (const Field& field : fields()) {
        const bool isUnchanged =
            field.shownIn.isNull() ? was.body == matter.body
                                   : was.values.value(field.shownIn).texts == matter.values.value(field.shownIn).texts;
        if (isUnchanged)
            entry.*field.text = kept.*field.text;
    }
    return entry;
}

} // namespace velloria::exchange
