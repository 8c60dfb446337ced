#include "platform/library_file.h"

#include <QFile>

#ifdef Q_OS_LINUX
#include <link.h>

#include <cstring>
#endif

namespace velloria::platform {

#ifdef Q_OS_LINUX

// The loader maps the segments without a look at the file's length and then reads beyond it.
bool isCutLibrary(const QString& file) {
    using Header = ElfW(Ehdr);
    using Segment = ElfW(Phdr);
    QFile library(file);
    Header header;
    if (!library.open(QIODevice::ReadOnly) ||
        library.read(reinterpret_cast<char*>(&header), sizeof header) != sizeof header ||
        std::memcmp(header.e_ident, ELFMAG, SELFMAG) != 0)
        return false;
    const auto length = static_cast<quint64>(library.size());
    if (header.e_phoff > length || !library.seek(static_cast<qint64>(header.e_phoff)))
        return true;
    for (unsigned i = 0; i < header.e_phnum; ++i) {
        Segment segment;
        if (library.read(reinterpret_cast<char*>(&segment), sizeof segment) != sizeof segment)
            return true;
        const bool isInside = segment.p_offset <= length && segment.p_filesz <= length - segment.p_offset;
        if (segment.p_type == PT_LOAD && !isInside)
            return true;
    }
    return false;
}

#else

bool isCutLibrary(const QString&) {
    return false;
}

#endif

} // namespace velloria::platform
