#include "support/vectors.h"

#include "platform/code_page.h"

#include <QFile>

#include <cstdlib>

using namespace Qt::StringLiterals;

namespace velloria::tests {
namespace {

/// Calls `unit` for each text unit and `byte` for each `\xHH` of an escaped cell.
template <typename Unit, typename Byte>
void unescape(const QString& cell, Unit unit, Byte byte) {
    for (qsizetype i = 0; i < cell.size(); ++i) {
        if (cell[i] != u'\\' || i + 1 == cell.size()) {
            unit(cell[i]);
            continue;
        }
        const QChar kind = cell[++i];
        if (kind == u'r')
            unit(QChar(u'\r'));
        else if (kind == u'n')
            unit(QChar(u'\n'));
        else if (kind == u't')
            unit(QChar(u'\t'));
        else if (kind == u'0')
            unit(QChar(u'\0'));
        else if (kind == u'x') {
            byte(cell.mid(i + 1, 2).toUShort(nullptr, 16));
            i += 2;
        } else if (kind == u'u') {
            unit(QChar(cell.mid(i + 1, 4).toUShort(nullptr, 16)));
            i += 4;
        } else
            unit(kind);
    }
}

} // namespace

bool VectorRow::has(const char* column) const {
    return cells.value(column) != u"\\N"_s;
}

QString VectorRow::text(const char* column) const {
    QString text;
    unescape(
        cells.value(column), [&](QChar c) { text += c; }, [&](ushort b) { text += QChar(b); });
    return text;
}

QByteArray VectorRow::bytes(const char* column) const {
    QByteArray bytes;
    QString pending;
    const auto flush = [&] {
        bytes += platform::toCodePage(pending);
        pending.clear();
    };
    unescape(
        cells.value(column), [&](QChar c) { pending += c; },
        [&](ushort b) {
            flush();
            bytes += char(b);
        });
    flush();
    return bytes;
}

std::vector<VectorRow> readVectors(const char* name) {
    QFile file(dataPath(u"platform/"_s + QString::fromLatin1(name)));
    if (!file.open(QIODevice::ReadOnly))
        std::abort();
    // Decoded as a whole: a cell that is decoded by itself would lose a byte order mark.
    QStringList lines = QString::fromUtf8(file.readAll()).split(u'\n');
    const QList<QByteArray> header = lines.takeFirst().toLatin1().split('\t');
    std::vector<VectorRow> rows;
    for (qsizetype i = 0; i < lines.size(); ++i) {
        if (lines[i].isEmpty() && i + 1 == lines.size())
            continue;
        const QStringList cells = lines[i].split(u'\t');
        VectorRow row;
        row.line = int(i) + 2;
        for (qsizetype c = 0; c < header.size(); ++c)
            row.cells.insert(header[c], cells.value(c));
        rows.push_back(row);
    }
    if (rows.empty())
        std::abort();
    return rows;
}

QString dataPath(const QString& name) {
    return QStringLiteral(VELLORIA_TEST_DATA "/") + name;
}

} // namespace velloria::tests
