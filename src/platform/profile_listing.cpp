#include "platform/profile_listing.h"

#include "platform/profile_lines.h"

#include <QSet>

namespace velloria::platform {

std::vector<ListedLine> listProfile(const QByteArray& bytes) {
    std::vector<ListedLine> lines;
    QSet<QByteArray> sections;
    QSet<QByteArray> keys; // of the section
    QString section;
    bool isSectionRead = false;
    int number = 0;
    for (qsizetype at = 0; at < bytes.size();) {
        const Line line = lineAt(bytes, at);
        at = line.end;
        ++number;
        if (line.kind == LineKind::Header) {
            const QByteArray name = comparable(line.name);
            isSectionRead = !sections.contains(name);
            sections.insert(name);
            keys.clear();
            section = decoded(line.name);
            lines.push_back({ListedLine::Kind::Section, number, section, {}, {}, isSectionRead});
        } else if (line.kind == LineKind::Key) {
            const QByteArray name = comparable(line.name);
            const bool isFirst = !keys.contains(name);
            keys.insert(name);
            lines.push_back({ListedLine::Kind::Key, number, section, decoded(line.name),
                             decoded(withoutQuotes(line.value)), isSectionRead && isFirst});
        } else {
            const QByteArrayView text =
                withoutBlanks(QByteArrayView(bytes).sliced(line.begin, line.end - line.begin).trimmed());
            if (!text.isEmpty() && !text.startsWith(';'))
                lines.push_back({ListedLine::Kind::Lost, number, section, {}, decoded(text), false});
        }
    }
    return lines;
}

} // namespace velloria::platform
