#include "core/stored_name.h"

#include "platform/profile_file.h"

using namespace Qt::StringLiterals;

namespace velloria::core {
namespace {

/// Characters that the code page writes as others.
constexpr char16_t kOneWay[] = {0x00A2, 0x00A3, 0x00AC, 0x2014, 0x2016, 0x2212, 0x301C};

QString referenceTo(char16_t character) {
    return u"&#%1;"_s.arg(int(character));
}

} // namespace

QString storedName(QString name) {
    for (const char16_t character : kOneWay)
        name.replace(QChar(character), referenceTo(character));
    return name;
}

QString nameOfStored(QString stored) {
    for (const char16_t character : kOneWay)
        stored.replace(referenceTo(character), QChar(character));
    return stored;
}

QString keptOfPath(const QString& path) {
    const QString name = u"x"_s;
    const auto profile = platform::ProfileFile::fromBytes(platform::changedProfile({}, name, name, storedName(path)));
    return nameOfStored(profile.valueOr(name, name, {}));
}

bool fitsSetting(const QString& path) {
    return keptOfPath(path) == path;
}

} // namespace velloria::core
