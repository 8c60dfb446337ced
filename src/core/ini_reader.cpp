#include "core/ini_reader.h"

#include "platform/directory.h"
#include "platform/failure.h"

#include <limits>

using namespace Qt::StringLiterals;

namespace velloria::core {

IniReader::IniReader(QString file)
    : m_file(platform::existingPath(file))
    , m_profile(m_file) {}

QString IniReader::text(const QString& section, const QString& key) const {
    return text(section, key, u""_s);
}

QString IniReader::text(const QString& section, const QString& key, const QString& whenMissing) const {
    return m_profile.valueOr(section, key, whenMissing);
}

qint16 IniReader::number(const QString& section, const QString& key, qint16 whenMissing) const {
    const qint32 number = m_profile.number(section, key).value_or(whenMissing);
    if (number < std::numeric_limits<qint16>::min() || number > std::numeric_limits<qint16>::max())
        throw platform::Failure(u"設定の数値が範囲を超えています。"_s, m_file,
                                u"[%1] %2=%3"_s.arg(section, key).arg(number),
                                u"-32768から32767までの値に直してください。"_s);
    return qint16(number);
}

} // namespace velloria::core
