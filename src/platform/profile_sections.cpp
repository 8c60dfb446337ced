#include "platform/profile_sections.h"

#include "platform/file_read.h"
#include "platform/profile_lines.h"

#include <QSet>

namespace velloria::platform {

QStringList profileSections(const QString& file) {
    const QByteArray bytes = readFileIfThere(file).value_or(QByteArray());
    QStringList names;
    QSet<QByteArray> seen;
    for (qsizetype at = 0; at < bytes.size();) {
        const Line line = lineAt(bytes, at);
        at = line.end;
        if (line.kind != LineKind::Header || line.name.isEmpty() || seen.contains(comparable(line.name)))
            continue;
        seen.insert(comparable(line.name));
        names += decoded(line.name);
    }
    return names;
}

} // namespace velloria::platform
