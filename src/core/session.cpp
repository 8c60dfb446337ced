#include "core/session.h"

using namespace Qt::StringLiterals;

namespace velloria::core {

QString Version::text() const {
    return u"%1.%2.%3"_s.arg(major).arg(minor).arg(revision);
}

qint32 Version::joined() const {
    return u"%1%2%3"_s.arg(major).arg(minor).arg(revision).toInt();
}

} // namespace velloria::core
