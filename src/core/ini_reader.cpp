#include "core/ini_reader.h"

#include "core/stored_name.h"
#include "platform/directory.h"
#include "platform/failure.h"

#include <limits>

using namespace Qt::StringLiterals;

namespace velloria::core {
namespace {

/// Without a copy: the reading of a key is done before the row can go.
QString held(QStringView view) {
    return QString::fromRawData(view.data(), view.size());
}

bool isNumber(const Setting& setting) {
    return setting.kind == SettingKind::Number || setting.kind == SettingKind::Flag;
}

} // namespace

IniReader::IniReader(const QString& file, qint64 mostBytes)
    : m_file(platform::existingPath(file))
    , m_profile(m_file, mostBytes) {}

QString IniReader::text(const Setting& setting) const {
    const QString text = m_profile.valueOr(held(setting.section), held(setting.name), held(setting.whenMissing));
    return setting.kind == SettingKind::Path ? nameOfStored(text) : text;
}

qint16 IniReader::number(const Setting& setting) const {
    Q_ASSERT(isNumber(setting));
    const qint32 number = wideNumber(setting).value_or(setting.whenMissing.toShort());
    if (number < std::numeric_limits<qint16>::min() || number > std::numeric_limits<qint16>::max())
        throw platform::Failure(u"設定の数値が範囲を超えています。"_s, m_file,
                                u"[%1] %2=%3"_s.arg(setting.section, setting.name).arg(number),
                                u"-32768から32767までの値に直してください。"_s);
    return qint16(number);
}

std::optional<qint32> IniReader::wideNumber(const Setting& setting) const {
    return m_profile.number(held(setting.section), held(setting.name));
}

bool IniReader::isOn(const Setting& setting) const {
    return wideNumber(setting).value_or(setting.whenMissing.toInt()) == 1;
}

} // namespace velloria::core
