// The page of "VellInfo.dll" as a reader has it: its texts, tables and drawings.
#pragma once

#include <QMap>
#include <QString>
#include <QStringList>
#include <QXmlStreamReader>

#include <stdexcept>

namespace velloria::tests {

struct InformationTable {
    QStringList heads;
    QList<QStringList> rows;
    QStringList sums;

    static quint64 number(const QString& cell) { return QString(cell).remove(u',').toULongLong(); }

    /// The number in the column of this name, in the row that begins so.
    quint64 at(const QString& row, const QString& column) const {
        for (const QStringList& cells : rows) {
            if (cells.value(0) == row)
                return number(cells.value(heads.indexOf(column)));
        }
        throw std::runtime_error("no row " + row.toStdString());
    }
    quint64 sumOf(qsizetype column) const {
        quint64 sum = 0;
        for (const QStringList& cells : rows)
            sum += number(cells.value(column));
        return sum;
    }
};

/// Read as XML, which throws when the page is not well-formed.
class InformationPage {
public:
    explicit InformationPage(const QByteArray& bytes)
        : m_reader(bytes) {
        while (!m_reader.atEnd()) {
            if (m_reader.readNext() == QXmlStreamReader::StartElement)
                readElement();
        }
        if (m_reader.hasError())
            throw std::runtime_error(m_reader.errorString().toStdString() + " in line " +
                                     std::to_string(m_reader.lineNumber()));
    }

    QMap<QString, InformationTable> tables; ///< by their ids
    QMap<QString, QString> texts;           ///< of elements that have an id
    QStringList links;                      ///< addresses that lead out of the page
    QStringList elements;                   ///< names, in turn
    QStringList loaded;                     ///< attributes that make a browser fetch something, or run it
    int drawings = 0;                       ///< that are told to a screen reader
    int dumbDrawings = 0;                   ///< of them, without a name or a description
    QString text;

private:
    /// The element that was just begun, up to its end; gives its text.
    QString readElement() {
        const QString name = m_reader.name().toString();
        const QXmlStreamAttributes attributes = m_reader.attributes();
        elements += name;
        for (const QXmlStreamAttribute& attribute : attributes) {
            const QString key = attribute.name().toString();
            if (key == u"src" || key == u"data" || key.startsWith(u"on") || (key == u"href" && name != u"a"))
                loaded += name + u' ' + key;
        }
        const QString link = attributes.value(QLatin1String("href")).toString();
        if (!link.isEmpty() && !link.startsWith(u'#'))
            links += link;
        const QString id = attributes.value(QLatin1String("id")).toString();
        const bool isDrawing = name == u"svg" && attributes.value(QLatin1String("role")) == u"img";
        drawings += isDrawing;
        const QString outer = m_table;
        if (name == u"table")
            m_table = id;
        if (name == u"tr")
            m_cells.clear();
        QString inner;
        QStringList children;
        while (!m_reader.atEnd() && m_reader.readNext() != QXmlStreamReader::EndElement) {
            if (m_reader.isStartElement()) {
                children += m_reader.name().toString();
                inner += readElement();
            } else if (m_reader.isCharacters()) {
                inner += m_reader.text();
                text += m_reader.text();
            }
        }
        if (isDrawing && (attributes.value(QLatin1String("aria-label")).isEmpty() || !children.contains(u"title") ||
                          !children.contains(u"desc")))
            ++dumbDrawings;
        if (name == u"td" || name == u"th")
            m_cells += inner;
        if (name == u"tr")
            m_rows += m_cells;
        if (name == u"thead")
            tables[m_table].heads = m_rows.takeFirst();
        if (name == u"tbody")
            tables[m_table].rows = std::exchange(m_rows, {});
        if (name == u"tfoot")
            tables[m_table].sums = m_rows.takeFirst();
        m_table = outer;
        if (name == u"table")
            m_table.clear();
        if (!id.isEmpty())
            texts[id] = inner;
        return inner;
    }

    QXmlStreamReader m_reader;
    QString m_table;
    QStringList m_cells;
    QList<QStringList> m_rows;
};

} // namespace velloria::tests
