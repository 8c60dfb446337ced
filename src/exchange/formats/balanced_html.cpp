#include "exchange/formats/balanced_html.h"

#include <QHash>
#include <QSet>
#include <QStringList>

#include <algorithm>
#include <optional>

using namespace Qt::StringLiterals;

namespace velloria::exchange {
namespace {

const QSet<QString> kVoid{u"area"_s,  u"base"_s,   u"basefont"_s, u"bgsound"_s, u"br"_s,     u"col"_s,  u"embed"_s,
                          u"frame"_s, u"hr"_s,     u"img"_s,      u"input"_s,   u"keygen"_s, u"link"_s, u"meta"_s,
                          u"param"_s, u"source"_s, u"spacer"_s,   u"track"_s,   u"wbr"_s};

/// Elements whose start ends an open paragraph.
const QSet<QString> kBlocks{u"address"_s, u"article"_s, u"aside"_s, u"blockquote"_s, u"center"_s, u"details"_s,
                            u"dir"_s,     u"div"_s,     u"dl"_s,    u"fieldset"_s,   u"figure"_s, u"footer"_s,
                            u"form"_s,    u"h1"_s,      u"h2"_s,    u"h3"_s,         u"h4"_s,     u"h5"_s,
                            u"h6"_s,      u"header"_s,  u"hr"_s,    u"main"_s,       u"menu"_s,   u"nav"_s,
                            u"ol"_s,      u"p"_s,       u"pre"_s,   u"section"_s,    u"table"_s,  u"ul"_s};

/// Elements that end at the next of their kind, and within which.
struct Siblings {
    QSet<QString> names;
    QSet<QString> within;
};

const Siblings kSiblings[] = {
    {{u"li"_s}, {u"ul"_s, u"ol"_s, u"menu"_s, u"dir"_s}}, {{u"dt"_s, u"dd"_s}, {u"dl"_s}},
    {{u"td"_s, u"th"_s}, {u"table"_s, u"tr"_s}},          {{u"tr"_s}, {u"table"_s, u"tbody"_s, u"thead"_s, u"tfoot"_s}},
    {{u"tbody"_s, u"thead"_s, u"tfoot"_s}, {u"table"_s}}, {{u"option"_s}, {u"select"_s, u"optgroup"_s}},
};

/// Whoever has more of them gets the rest as text: each may be looked for up to the end.
constexpr int kMostBrokenTags = 100;

class Balance {
public:
    explicit Balance(QStringView html)
        : m_html(html) {}

    QString run() {
        for (qsizetype at = 0; at < m_html.size();) {
            const qsizetype mark = m_html.indexOf(u'<', at);
            m_written += m_html.sliced(at, (mark < 0 ? m_html.size() : mark) - at);
            if (mark < 0)
                break;
            at = takeMark(mark);
        }
        closeTo(0);
        return m_written;
    }

private:
    /// Gives the place behind what begins with "<".
    qsizetype takeMark(qsizetype at) {
        if (m_html.sliced(at).startsWith(u"<!--"))
            return takeComment(at);
        const std::optional<Tag> tag = m_brokenTags < kMostBrokenTags ? tagAt(at) : std::nullopt;
        if (!tag) {
            const bool isLikeTag = at + 1 < m_html.size() && (m_html[at + 1].isLetter() || m_html[at + 1] == u'/');
            m_brokenTags += isLikeTag ? 1 : 0;
            m_written += isLikeTag ? u"&lt;"_s : u"<"_s;
            return at + 1;
        }
        if (tag->isEnd)
            end(tag->name, m_html.sliced(at, tag->end - at));
        else
            begin(tag->name, m_html.sliced(at, tag->end - at));
        return !tag->isEnd && isRaw(tag->name) ? takeRaw(tag->name, tag->end) : tag->end;
    }

    struct Tag {
        QString name; ///< in small letters
        bool isEnd = false;
        qsizetype end = 0; ///< behind it
    };

    std::optional<Tag> tagAt(qsizetype at) const {
        Tag tag;
        tag.isEnd = at + 1 < m_html.size() && m_html[at + 1] == u'/';
        const qsizetype begin = at + (tag.isEnd ? 2 : 1);
        const auto isOfName = [](QChar character) {
            return (character.unicode() < 0x80 && character.isLetterOrNumber()) || character == u':' ||
                   character == u'-';
        };
        qsizetype place = begin;
        while (place < m_html.size() && isOfName(m_html[place]))
            ++place;
        if (place == begin || !m_html[begin].isLetter())
            return std::nullopt;
        tag.name = m_html.sliced(begin, place - begin).toString().toLower();
        // Only behind "=" does a quotation mark begin a value, which may hold ">".
        QChar quote;
        bool isValue = false;
        for (; place < m_html.size(); ++place) {
            const QChar character = m_html[place];
            if (!quote.isNull()) {
                if (character == quote)
                    quote = QChar();
            } else if (character == u'>') {
                tag.end = place + 1;
                return tag;
            } else if (isValue && (character == u'"' || character == u'\'')) {
                quote = character;
            }
            isValue = character == u'=' || (isValue && character.isSpace());
        }
        return std::nullopt;
    }

    qsizetype takeComment(qsizetype at) {
        const qsizetype end = m_html.indexOf(u"-->"_s, at + 4);
        m_written += m_html.sliced(at, (end < 0 ? m_html.size() : end + 3) - at);
        if (end < 0)
            m_written += u"-->"_s;
        return end < 0 ? m_html.size() : end + 3;
    }

    static bool isRaw(const QString& name) {
        return name == u"script"_s || name == u"style"_s || name == u"textarea"_s || name == u"title"_s;
    }

    /// No mark counts before the end tag.
    qsizetype takeRaw(const QString& name, qsizetype at) {
        const qsizetype end = m_html.indexOf(u"</"_s + name, at, Qt::CaseInsensitive);
        m_written += m_html.sliced(at, (end < 0 ? m_html.size() : end) - at);
        return end < 0 ? m_html.size() : end;
    }

    void begin(const QString& name, QStringView tag) {
        for (const Siblings& siblings : kSiblings) {
            if (siblings.names.contains(name))
                closeSibling(siblings);
        }
        if (kBlocks.contains(name) && !m_open.isEmpty() && m_open.constLast() == u"p"_s)
            closeTo(m_open.size() - 1);
        m_written += tag;
        if (!kVoid.contains(name) && !tag.endsWith(u"/>")) {
            m_places[name] += m_open.size();
            m_open += name;
        }
    }

    /// Where the innermost open one of these is; -1 when there is none.
    qsizetype innermost(const QSet<QString>& names) const {
        qsizetype place = -1;
        for (const QString& name : names) {
            const QList<qsizetype> places = m_places.value(name);
            place = places.isEmpty() ? place : std::max(place, places.constLast());
        }
        return place;
    }

    void closeSibling(const Siblings& siblings) {
        const qsizetype place = innermost(siblings.names);
        if (place > innermost(siblings.within))
            closeTo(place);
    }

    void end(const QString& name, QStringView tag) {
        const qsizetype place = innermost({name});
        if (place < 0)
            return;
        closeTo(place + 1);
        m_open.removeLast();
        m_places[name].removeLast();
        m_written += tag;
    }

    void closeTo(qsizetype size) {
        while (m_open.size() > size) {
            const QString name = m_open.takeLast();
            m_places[name].removeLast();
            m_written += u"</"_s + name + u'>';
        }
    }

    QStringView m_html;
    QString m_written = u""_s;
    QStringList m_open;
    QHash<QString, QList<qsizetype>> m_places; ///< of each name in m_open
    int m_brokenTags = 0;
};

} // namespace

QString balancedHtml(const QString& html) {
    return Balance(html).run();
}

} // namespace velloria::exchange
