#include "support/golden.h"

#include "platform/code_page.h"
#include "support/vectors.h"

#include <gtest/gtest.h>

#include <QFile>

using namespace Qt::StringLiterals;

namespace velloria::tests {
namespace {

/// A line with its line end made visible, so that a missing CR shows.
std::string shown(const QString& name, const QList<QByteArray>& lines, qsizetype at) {
    if (at >= lines.size())
        return "(no such line)";
    const QString text = name.endsWith(u".xml"_s) ? QString::fromUtf8(lines[at]) : platform::fromCodePage(lines[at]);
    return QString(text).replace(u'\r', u"<CR>"_s).toStdString();
}

} // namespace

void expectGolden(const QString& name, const QByteArray& bytes) {
    QFile file(dataPath(name));
    if (!file.open(QIODevice::ReadOnly)) {
        ADD_FAILURE() << "no golden file " << file.fileName().toStdString();
        return;
    }
    const QByteArray golden = file.readAll();
    if (bytes == golden)
        return;
    const QList<QByteArray> expected = golden.split('\n');
    const QList<QByteArray> found = bytes.split('\n');
    qsizetype line = 0;
    while (line < expected.size() && line < found.size() && expected[line] == found[line])
        ++line;
    ADD_FAILURE() << name.toStdString() << " differs in line " << line + 1
                  << "\nexpected: " << shown(name, expected, line) << "\nfound:    " << shown(name, found, line);
}

} // namespace velloria::tests
